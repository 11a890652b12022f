# What the scripts need, as Debian packages, and how each is recognised. Sourced, not run.

# package               how its presence shows (see is_present)
for_building='
    g++                 program g++
    cmake               program cmake
    ninja-build         program ninja
    libcli11-dev        header CLI/CLI.hpp
    libboost-dev        header boost/math/distributions.hpp
    libfontconfig-dev   header fontconfig/fontconfig.h
    libcsv-dev          header csv.h
    zlib1g-dev          header zlib.h
    libssl-dev          header openssl/evp.h
    nlohmann-json3-dev  header nlohmann/json.hpp
    libdragonbox-dev    header dragonbox-1.1.3/dragonbox/dragonbox.h
'
for_building_tests='
    libgtest-dev        header gtest/gtest.h
    libgmock-dev        header gmock/gmock.h
    locales             file /usr/share/i18n/locales/de_DE
    python3             program python3
'
for_testing='
    clang-format        program clang-format
    pkg-config          program pkg-config
    gnuplot-nox         program gnuplot
    r-base-core         program Rscript
    python3-jsonschema  file /usr/lib/python3/dist-packages/jsonschema/__init__.py
    dpkg-dev            program dpkg-shlibdeps
    mandoc              program mandoc
    fish                program fish
    file                program file
'
for_long_tests='
    clang               program clang++
    abigail-tools       program abidiff
    doxygen             program doxygen
    zsh                 program zsh
'
for_packages='
    lintian             program lintian
'
for_fuzzing='
    clang               program clang++
    libclang-rt-dev     clang_runtime fuzzer
'
for_pages='
    chromium            program chromium
    nodejs              program node
    npm                 program npm
    poppler-utils       program pdftotext
    pngquant            program pngquant
'
for_platforms='
    googletest          file /usr/src/googletest/CMakeLists.txt
    qemu-user           program qemu-aarch64
    python3             program python3
'
for_coverage='
    gcovr               program gcovr
'
for_benchmarks='
    libbenchmark-dev    header benchmark/benchmark.h
    libboost-dev        header boost/sort/spreadsort/spreadsort.hpp
    libgsl-dev          header gsl/gsl_cdf.h
    libhwy-dev          header hwy/contrib/sort/vqsort.h
    gnuplot-nox         program gnuplot
    r-base-core         program Rscript
    r-cran-data.table   file /usr/lib/R/site-library/data.table
    datamash            program datamash
    miller              program mlr
    python3             file /usr/bin/python3
    python3-numpy       file /usr/lib/python3/dist-packages/numpy
    python3-scipy       file /usr/lib/python3/dist-packages/scipy
    python3-pandas      file /usr/lib/python3/dist-packages/pandas/__init__.py
'

# is_present KIND WHAT
is_present()
{
    case $1 in
    program) command -v "$2" >/dev/null ;;
    header)
        [ -e "/usr/include/$2" ] || [ -e "/usr/local/include/$2" ] ||
            printf '#if !__has_include(<%s>)\n#error\n#endif\n' "$2" | g++ -x c++ -fsyntax-only - 2>/dev/null
        ;;
    file) [ -e "$2" ] ;;
    clang_runtime) ls "$(clang++ -print-resource-dir 2>/dev/null)"/lib/linux/libclang_rt."$2"-* >/dev/null 2>&1 ;;
    esac
}

# missing_packages LIST: those of the list that are not there, on one line.
missing_packages()
{
    local package kind what missing=()
    while read -r package kind what; do
        [ -z "$package" ] || is_present "$kind" "$what" || missing+=("$package")
    done <<<"$1"
    echo "${missing[*]}"
}

# The user who installs: nothing for root, sudo for others.
as_root=()
[ "$(id -u)" = 0 ] || as_root=(sudo -n)

# can_install: whether packages may be installed here.
can_install()
{
    command -v apt-get >/dev/null && "${as_root[@]}" true 2>/dev/null
}

# ensure_packages LIST: installs what is missing through apt when that is allowed; ends the script, naming what is missing, when not.
ensure_packages()
{
    local missing
    missing=$(missing_packages "$1")
    [ -n "$missing" ] || return 0

    if can_install; then
        echo "Installing through apt: $missing" >&2
        # shellcheck disable=SC2086 # one word per package
        { "${as_root[@]}" apt-get update -qq && "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y -qq --no-install-recommends $missing; } </dev/null >&2 ||
            echo "apt-get failed." >&2
        hash -r
        missing=$(missing_packages "$1")
        [ -n "$missing" ] || return 0
    fi

    echo "Missing: $missing" >&2
    echo "These are Debian packages; an administrator installs them with: apt-get install $missing" >&2
    exit 1
}

# ensure_packages_meanwhile LIST: does so beside what follows, up to wait_for_packages.
ensure_packages_meanwhile()
{
    if can_install; then
        ensure_packages "$1" &
        installation=$!
    else
        ensure_packages "$1"
    fi
}

wait_for_packages()
{
    [ -z "${installation-}" ] || wait "$installation" || exit 1
}
