#!/usr/bin/env bash
# A host whose global object uses the library in its constructor and its destructor.
source "$(dirname "$0")/common.sh"
work_in "$BUILD/tests/install/before_and_after_main"

report=$SOURCE/tests/golden/basic_one_to_four_report.txt
{
    printf 'before main\nRandom is there\n'
    cat "$report"
    printf 'main\nafter main\nRandom is there\n'
    cat "$report"
} >expected.txt

"$CXX" -std=c++17 -I"$PREFIX/include" "$hosts/before_and_after_main/main.cpp" -o host -L"$PREFIX/$LIBRARIES" \
    -lwq_stat -lwq_report -lwq_udf -Wl,-rpath,'$ORIGIN'
own_folder host
expect_output ../expected.txt ./host
