#!/usr/bin/env bash
# The same hosts without CMake: one call of the compiler with what pkg-config says, then run beside the libraries.
source "$(dirname "$0")/common.sh"
command -v pkg-config >/dev/null || skip "there is no pkg-config"
work_in "$BUILD/tests/install/pkg_config_host"

export PKG_CONFIG_PATH=$PREFIX/$LIBRARIES/pkgconfig

# compiled PACKAGE SOURCE HOST
compiled()
{
    pkg-config --print-errors --exact-version=1.1 "$1"
    local flags
    read -ra flags <<<"$(pkg-config --cflags --libs "$1")"
    set -x
    "$CXX" -std=c++17 "$2" -o "$3" "${flags[@]}" -Wl,-rpath,'$ORIGIN'
    { set +x; } 2>/dev/null
}

compiled wq_stat "$hosts/three_libraries/main.cpp" host
compiled wq_exact "$SOURCE/examples/exact_anova.cpp" exact_host
(
    own_folder host
    expect_output "$hosts/three_libraries/expected.txt" ./host
)
rm -r own-folder
expect_exact_figures exact_host
