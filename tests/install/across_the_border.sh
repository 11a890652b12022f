#!/usr/bin/env bash
# across_the_border.sh COMPILER FOLDER: a host that COMPILER built works with the installed libraries, whichever compiler built those.
source "$(dirname "$0")/common.sh"

compiler=$1
command -v "$compiler" >/dev/null || skip "there is no $compiler"
work_in "$2"
for level in -O0 -O2; do
    rm -rf own-folder
    # shellcheck disable=SC2086 # one word per option
    "$compiler" -std=c++17 $WARNINGS -Werror "$level" -I"$PREFIX/include" "$hosts/across_the_border/main.cpp" -o host -L"$PREFIX/$LIBRARIES" \
        -lwq_stat -lwq_report -lwq_udf -Wl,-rpath,'$ORIGIN'
    (
        own_folder host
        ./host || fail "the host that $compiler $level built"
    )
done
