#!/usr/bin/env bash
# fast_math_refused.sh COMPILER: no build is made under options that give up IEEE arithmetic, by whichever way they come; and none is
# refused without them. Options for the linker alone do not reach the floating-point environment of the host.
source "$(dirname "$0")/common.sh"

compiler=$1
command -v "$compiler" >/dev/null || skip "there is no $compiler"
work_in "$BUILD/tests/install/fast_math_refused.$compiler"

# configured SOURCE FOLDER OPTION...: an optimised build of the libraries alone.
configured()
{
    local source=$1 folder=$2
    shift 2
    "$CMAKE" -S "$source" -B "$folder" -G "$GENERATOR" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_BUILD_TYPE=Release \
        -DWQ_BUILD_TESTS=OFF -DWQ_BUILD_TOOLS=OFF -DWQ_BUILD_EXAMPLES=OFF -DWQ_WARNINGS_AS_ERRORS=OFF "$@" >configure.txt 2>&1 ||
        fail "$(cat configure.txt)"
}

# built FOLDER [all]: the source that looks after the options, in the smallest library; or all of that library.
built()
{
    local target=wq_udf
    if [ "${2:-}" != all ] && [ "$GENERATOR" = Ninja ]; then
        target=CMakeFiles/wq_udf.dir/cmake/ieee_arithmetic.cpp.o
        [ "$1" != host ] || target=libraries/$target
    fi
    "$CMAKE" --build "$1" --target "$target" >build.txt 2>&1
}

# refused FOLDER WHAT
refused()
{
    ! built "$1" || fail "$compiler builds with $2"
    grep -q 'error: .*fast-math' build.txt || fail "$2: the build fails for another reason"$'\n'"$(cat build.txt)"
    echo "refused: $2"
}

flags=(-ffast-math -Ofast -ffinite-math-only -funsafe-math-optimizations -fno-signed-zeros -freciprocal-math
    '-fassociative-math -fno-signed-zeros -fno-trapping-math' '-ffast-math -fno-finite-math-only')
for flag in "${flags[@]}"; do
    configured "$SOURCE" alone -DCMAKE_CXX_FLAGS_RELEASE="-O2 $flag"
    refused alone "CMAKE_CXX_FLAGS_RELEASE=-O2 $flag"
done
for flag in -ffast-math -fno-signed-zeros; do
    configured "$SOURCE" alone -DCMAKE_CXX_FLAGS="$flag" -DCMAKE_CXX_FLAGS_RELEASE=-O2
    refused alone "CMAKE_CXX_FLAGS=$flag"
    configured "$SOURCE" alone -DCMAKE_CXX_FLAGS= -DWQ_LIBRARY_OPTIONS="$flag"
    refused alone "WQ_LIBRARY_OPTIONS=$flag"
    configured "$hosts/own_options" host -DLIBRARY_SOURCE="$SOURCE" -DHOST_OPTIONS="$flag"
    refused host "add_compile_options($flag) in a host's project"
done

configured "$SOURCE" alone -DCMAKE_CXX_FLAGS= -DWQ_LIBRARY_OPTIONS= -DCMAKE_SHARED_LINKER_FLAGS=-ffast-math
built alone all || fail "the build without such options fails"$'\n'"$(cat build.txt)"
if nm alone/lib/libwq_udf.so.1 | grep set_fast_math; then
    fail "the library sets the floating-point environment of whoever loads it"
fi
configured "$hosts/own_options" host -DHOST_OPTIONS=-fno-math-errno
built host all || fail "a host's build without such options fails"$'\n'"$(cat build.txt)"
