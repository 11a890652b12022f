# Shared by the scripts of this folder. They are started by CTest with
#   CMAKE, CTEST, GENERATOR, CXX, CXXFLAGS   the tools and flags of the build under test
#   SOURCE, BUILD                            its source and build folder
#   PREFIX                                   the installed tree under test
#   LIBRARIES                                name of the folder in it that holds the libraries
#   WARNINGS                                 the warning options of the project
#   COMPILER_ID                              the compiler of the build, as CMake calls it
#   BUILD_TYPE                               its kind
# and work in a folder of their own, which is empty at the start.
set -euo pipefail
# (Behind a pipe it is grep, not grep -q: that one leaves at the first hit, and pipefail takes the broken pipe of who still writes for a failure.)
unset LD_LIBRARY_PATH PKG_CONFIG_PATH

hosts=$SOURCE/tests/hosts
core=(udf report stat)  # what a host of the analyses carries
family=("${core[@]}" exact)

# The committed baseline of the binary interface: what the libraries export, and how that is laid out.
abi=$SOURCE/tests/install/abi
renew_hint="A program built against an earlier version may break on a change; docs/abi-and-versions.md says what may change.
Where the change is meant and compatible (an addition), renew the baseline and commit it with the change:
    cmake --build $BUILD --target abi_baseline"

# exported LIBRARY [OPTION...]: its exported symbols as nm lists them, without the symbol of the version that they carry.
exported()
{
    nm --dynamic --defined-only --without-symbol-versions "${@:2}" "$1" | grep -v ' A WQ_[0-9]*$'
}

# symbols_of LIBRARY: what it exports, one per line: the name, and what it means.
symbols_of()
{
    local names
    names=$(exported "$1" | cut -d ' ' -f 3 | LC_ALL=C sort)
    paste <(echo "$names") <(c++filt <<<"$names")
}

fail()
{
    echo "FAILED: $*" >&2
    exit 1
}

# CTest counts a test with this line as skipped, and shows it.
skip()
{
    echo "SKIPPED: $*"
    exit 0
}

# work_in FOLDER: makes it new and goes there.
work_in()
{
    rm -rf "$1"
    mkdir -p "$1"
    cd "$1"
}

# own_folder HOST [LIBRARY...]: puts a built host, the three libraries and these into one folder, and goes there.
own_folder()
{
    mkdir own-folder
    cp "$1" own-folder/host
    local libraries=("${core[@]}" "${@:2}")
    local name
    for name in "${libraries[@]}"; do
        cp -L "$PREFIX/$LIBRARIES/libwq_$name.so.1" own-folder/
    done
    cd own-folder
    local found
    found=$(ldd "$PWD/host") || fail "ldd does not understand the host"
    for name in "${libraries[@]}"; do
        grep -qF "libwq_$name.so.1 => $PWD/libwq_$name.so.1 " <<<"$found" ||
            fail "libwq_$name.so.1 is not the one beside the host:"$'\n'"$found"
    done
}

# expect_output FILE COMMAND...: what the command prints must be the file, byte for byte.
expect_output()
{
    local expected=$1
    shift
    "$@" >output.txt 2>&1 || fail "exit status $? of $*"$'\n'"$(cat output.txt)"
    diff -u "$expected" output.txt >&2 || fail "$* printed something else than $expected"
    echo "$* printed what it should:"
    cat output.txt
}

# expect_exact_figures HOST: what a host of libwq_exact prints, beside the libraries.
expect_exact_figures()
{
    own_folder "$1" exact
    expect_output "$SOURCE/tests/golden/example_exact_anova.txt" ./host "$SOURCE/examples/data/toothgrowth_supp.txt"
}

# commands_of WQSTAT: the commands that its --help lists.
commands_of()
{
    local commands
    commands=$("$1" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
    [ "$(wc -w <<<"$commands")" -gt 10 ] || fail "wqstat --help lists these commands: $commands"
    echo "$commands"
}

# options_of WQSTAT [COMMAND]: the long options that --help lists, of the program or of a command.
options_of()
{
    "$@" --help | sed -nE 's/^  (-h,)?(--[a-z0-9-]+).*/\2/p'
}
