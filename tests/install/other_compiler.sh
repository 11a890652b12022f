#!/usr/bin/env bash
# other_compiler.sh COMPILER: the whole project compiles with it too, warnings as errors, and gives the same figures and texts; a host
# that the first compiler built works with the libraries of this one.
source "$(dirname "$0")/common.sh"

compiler=$1
command -v "$compiler" >/dev/null || skip "there is no $compiler"
work_in "$BUILD/tests/install/other_compiler"

"$CMAKE" -S "$SOURCE" -B . -G "$GENERATOR" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE= \
    -DWQ_LIBRARY_OPTIONS=-O2 -DWQ_TOOL_OPTIONS=-O0 -DWQ_WARNINGS_AS_ERRORS=ON -DWQ_BUILD_WQSTAT_TESTS=OFF -DCMAKE_INSTALL_LIBDIR="$LIBRARIES"
"$CMAKE" --build . --target all page_programs --parallel "$(nproc)"
"$CTEST" --output-on-failure --parallel "$(nproc)" -LE 'slow|long' -R '^(test_|example)'
# Not again what gnuplot, a terminal and the system do to wqstat, whoever compiled it. From a folder of its own: a second ctest in that of the first
# would take its log.
mkdir -p wqstat
echo "subdirs(\"$BUILD/tests/wqstat\")" >wqstat/CTestTestfile.cmake
WQ_TEST_WQSTAT=$PWD/bin/wqstat "$CTEST" --test-dir wqstat --no-tests=error --output-on-failure --parallel "$(nproc)" -L '^wqstat$' -LE 'slow|long' \
    -E '^test_(pages|pictures|memory_limits|outputs|against_r)\.'

"$CMAKE" --install . --prefix installed
PREFIX=$PWD/installed bash "$SOURCE/tests/install/across_the_border.sh" "$CXX" "$PWD/across_the_border"
