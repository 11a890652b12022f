#!/usr/bin/env bash
# A host in C loads the libraries from a folder of their own and lets them go, again and again, also after the folder was moved.
source "$(dirname "$0")/common.sh"
work_in "$BUILD/tests/install/loaded_at_run_time"

"$CXX" -x c -std=c11 -Wall -Wextra -Werror "$hosts/loaded_at_run_time/main.c" -o host -Wl,--as-needed -ldl -lm
ldd host | grep 'libstdc++' && fail "the host has libstdc++ already"

libraries_alone()
{
    mkdir "$1"
    local name
    for name in "${core[@]}"; do
        cp -L "$PREFIX/$LIBRARIES/libwq_$name.so.1" "$1/"
    done
}

libraries_alone first
./host "$PWD/first" "$PWD/second" || fail "loaded by absolute paths"
./host second "third folder" || fail "loaded by relative paths"

rm "third folder/libwq_udf.so.1"
if ./host "third folder" fourth >output.txt; then
    fail "loaded although a companion is missing from the folder"
fi
grep -q '^not loaded: libwq_udf.so.1: ' output.txt || fail "a missing companion is not told: $(cat output.txt)"
