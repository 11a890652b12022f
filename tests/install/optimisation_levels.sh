#!/usr/bin/env bash
# Both compilers, each with -O0, -O2 and -O3: libraries that give the same bytes in every golden report, listing and export, and the same figures
# to the last bit. The test programs of the build run with the libraries of each in place of its own. Two of them stand elsewhere: g++ -O3 in the
# release build itself, clang++ -O2 in sources.other_compiler, which run all tests. What takes long for its many groups is left to these.
source "$(dirname "$0")/common.sh"

programs=(basic_stat basic_xy_stat circular correlation frequency goodness_fit kolmogorov regression regression_multi_y single_anova two_samples)
work_in "$BUILD/tests/install/optimisation_levels"

# test_with FOLDER: the programs with the libraries there.
test_with()
{
    local LD_LIBRARY_PATH=$1 program path name found
    export LD_LIBRARY_PATH
    for program in "${programs[@]}"; do
        path=$BUILD/tests/test_$program
        [ -x "$path" ] || fail "$path was not built"
        found=$(ldd "$path")
        for name in "${core[@]}"; do
            grep -qF "libwq_$name.so.1 => $1/libwq_$name.so.1 " <<<"$found" || fail "test_$program runs with another libwq_$name"
        done
        "$path" --gtest_brief=1 --gtest_filter=-*OfManyGroups >output.txt 2>&1 || fail "test_$program with $1"$'\n'"$(tail -n 60 output.txt)"
    done
}

for compiler in g++ clang++; do
    command -v "$compiler" >/dev/null || skip "there is no $compiler"
    for level in -O0 -O2 -O3; do
        case "$compiler$level" in g++-O3 | clang++-O2) continue ;; esac
        folder=$PWD/$compiler$level
        "$CMAKE" -S "$SOURCE" -B "$folder" -G "$GENERATOR" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS="$level" \
            -DWQ_BUILD_TESTS=OFF -DWQ_BUILD_TOOLS=OFF -DWQ_BUILD_EXAMPLES=OFF -DWQ_BUILD_EXACT=OFF >output.txt 2>&1 || fail "$(cat output.txt)"
        "$CMAKE" --build "$folder" --parallel "$(nproc)" >output.txt 2>&1 || fail "$(cat output.txt)"
        test_with "$folder/lib"
        echo "$compiler $level: ${#programs[@]} test programs as ever"
    done
done
