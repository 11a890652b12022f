#!/usr/bin/env bash
# Hosts with a CMake project of their own: find_package in the installed tree, then run beside the libraries.
source "$(dirname "$0")/common.sh"
work_in "$BUILD/tests/install/find_package_host"

"$CMAKE" -S "$hosts/wanted_versions" -B versions -DCMAKE_PREFIX_PATH="$PREFIX"
built()
{
    "$CMAKE" -S "$hosts/$1" -B "$1" -DCMAKE_PREFIX_PATH="$PREFIX" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_BUILD_TYPE=Release
    "$CMAKE" --build "$1"
}

built three_libraries
built exact_figures
(
    own_folder three_libraries/host
    expect_output "$hosts/three_libraries/expected.txt" ./host
)
rm -r own-folder
expect_exact_figures exact_figures/host
