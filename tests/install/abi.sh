#!/usr/bin/env bash
# abi.sh: the binary interface of the libraries is that of the committed baseline in abi/: symbols, layouts, virtual functions.
# abi.sh --renew: makes the baseline anew, after a deliberate change.
source "$(dirname "$0")/common.sh"

renew=${1:-}
[ -z "$renew" ] || skip() { fail "no baseline can be made: $*"; }
[ "$COMPILER_ID" = GNU ] || skip "the baseline is for libraries built by GCC, this build uses $COMPILER_ID"
[ "$(uname -m)" = x86_64 ] || skip "the baseline is for x86_64, this is $(uname -m)"
command -v abidw >/dev/null && command -v abidiff >/dev/null || skip "abidiff is missing (Debian package: abigail-tools)"

# Symbols and layouts are the same at every optimisation; without any, the libraries are built soonest. Names of sources are those within the
# tree, whether the generator names them from the root or from the folder it builds in.
work_in "$BUILD/tests/install/abi"
{
    "$CMAKE" -S "$SOURCE" -B build -G "$GENERATOR" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS="$CXXFLAGS" \
        -DWQ_LIBRARY_OPTIONS="-g;-O0;-ffile-prefix-map=$SOURCE/=;-ffile-prefix-map=$(realpath --relative-to=build "$SOURCE")/=" \
        -DWQ_WARNINGS_AS_ERRORS=OFF -DWQ_BUILD_TESTS=OFF -DWQ_BUILD_TOOLS=OFF -DWQ_BUILD_EXAMPLES=OFF &&
        "$CMAKE" --build build --parallel 2
} >build.txt 2>&1 || fail "$(cat build.txt)"
mkdir headers
cp -r "$SOURCE/include/." "$SOURCE"/support/*/include/. "$SOURCE/exact/include/." headers

different=
for name in "${family[@]}"; do
    library=build/lib/libwq_$name.so.1
    readelf --sections --wide "$library" | grep '\.debug_info' >debug.txt || fail "$library has no debug information"
    if [ -n "$renew" ]; then
        abidw --headers-dir headers --drop-private-types --exported-interfaces-only --no-show-locs --no-corpus-path \
            --no-comp-dir-path --no-elf-needed --out-file "$abi/libwq_$name.abi" "$library"
        symbols_of "$library" >"$abi/libwq_$name.symbols"
        echo "$abi/libwq_$name.abi and .symbols are those of this source tree now"
    elif ! grep -q "elf-symbol-id='[^']*@@WQ_" "$abi/libwq_$name.abi"; then
        # Its functions would be found in no library, and abidiff would say nothing of them.
        echo "libwq_$name: the symbols of the baseline have no version"
        different=yes
    elif abidiff --headers-dir2 headers --exported-interfaces-only --harmless --no-show-locs \
        "$abi/libwq_$name.abi" "$library" >"$name.txt" 2>&1; then
        echo "libwq_$name: as in the baseline"
    else
        echo "libwq_$name:"
        cat "$name.txt"
        different=yes
    fi
done
[ -z "$different" ] || fail "the binary interface is not that of the baseline. $renew_hint"
