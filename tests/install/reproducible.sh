#!/usr/bin/env bash
# Reproducible builds: the libraries and their packages, made twice, in folders of different names and from sources of different ages, are the
# same bytes.
source "$(dirname "$0")/common.sh"
work_in "$BUILD/tests/install/reproducible"
export CCACHE_DISABLE=1  # would give the second build the files of the first

# made FOLDER: builds there what is to be compared, and puts it into FOLDER/result.
made()
{
    mkdir -p "$1/source" "$1/result"
    cp -r "$SOURCE"/{CMakeLists.txt,README.md,CHANGELOG.md,cmake,docs,exact,include,src,support} "$1/source"
    find "$1/source" -exec touch --date "$2" {} +
    {
        "$CMAKE" -S "$1/source" -B "$1/build" -G "$GENERATOR" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
            -DWQ_BUILD_TESTS=OFF -DWQ_BUILD_TOOLS=OFF -DWQ_BUILD_EXAMPLES=OFF &&
            "$CMAKE" --build "$1/build" --parallel 2 && cp "$1"/build/lib/libwq_*.so.1.1 "$1/result" &&
            cpack --config "$1/build/CPackConfig.cmake" -B "$PWD/$1/packages" && cp "$1"/packages/*.deb "$1/result"
    } >"$1/log.txt" 2>&1 || fail "$(tail -n 40 "$1/log.txt")"
}

made one 2026-01-01
made folder/of/another/length 2001-02-03

[ "$(ls one/result/*.so.1.1 | wc -l)" = "${#family[@]}" ] || fail "not every library is there: $(ls one/result)"
[ "$(ls one/result/*.deb | wc -l)" = 2 ] || fail "not every package is there: $(ls one/result)"
diff -r one/result folder/of/another/length/result >&2 || fail "two builds of the same sources differ"
(cd one/result && sha256sum -- *)
