#!/usr/bin/env bash
# The same host without CMake: one call of the compiler with what pkg-config says, then run beside the libraries.
source "$(dirname "$0")/common.sh"
command -v pkg-config >/dev/null || skip "there is no pkg-config"
work_in "$BUILD/tests/install/pkg_config_host"

export PKG_CONFIG_PATH=$PREFIX/$LIBRARIES/pkgconfig
pkg-config --print-errors --exact-version=1.1 wq_stat
read -ra flags <<<"$(pkg-config --cflags --libs wq_stat)"
set -x
"$CXX" -std=c++17 "$hosts/three_libraries/main.cpp" -o host "${flags[@]}" -Wl,-rpath,'$ORIGIN'
{ set +x; } 2>/dev/null
own_folder host
expect_output "$hosts/three_libraries/expected.txt" ./host
