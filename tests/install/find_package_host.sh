#!/usr/bin/env bash
# A host with a CMake project of its own: find_package in the installed tree, then run beside the libraries.
source "$(dirname "$0")/common.sh"
work_in "$BUILD/tests/install/find_package_host"

"$CMAKE" -S "$hosts/wanted_versions" -B versions -DCMAKE_PREFIX_PATH="$PREFIX"
"$CMAKE" -S "$hosts/three_libraries" -B build -DCMAKE_PREFIX_PATH="$PREFIX" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_BUILD_TYPE=Release
"$CMAKE" --build build
own_folder build/host
expect_output "$hosts/three_libraries/expected.txt" ./host
