#!/usr/bin/env bash
# Hosts that do not carry shared libraries: linked statically, as a plug-in that holds the static libraries, with the sources as a subfolder.
source "$(dirname "$0")/common.sh"
work_in "$BUILD/tests/install/taken_along"

# step COMMAND...: quiet when it succeeds.
step()
{
    "$@" >step.txt 2>&1 || fail "$*"$'\n'"$(tail -n 40 step.txt)"
}

# The libraries once, static and position-independent, without the project's own programs.
configure=("$CMAKE" -G "$GENERATOR" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_BUILD_TYPE=None)
step "${configure[@]}" -S "$SOURCE" -B static -DBUILD_SHARED_LIBS=OFF -DWQ_BUILD_EXACT=OFF -DWQ_BUILD_TESTS=OFF -DWQ_BUILD_TOOLS=OFF -DWQ_BUILD_EXAMPLES=OFF
step "$CMAKE" --build static
step "$CMAKE" --install static --prefix "$PWD/installed"
for name in "${core[@]}"; do
    [ -e "installed/$LIBRARIES/libwq_$name.a" ] || fail "libwq_$name.a is not installed"
    [ ! -e "installed/$LIBRARIES/libwq_$name.so" ] || fail "libwq_$name is shared"
done

# Without libwq_exact what needs it is left out, and said to be.
step "${configure[@]}" -S "$SOURCE" -B without_exact -DWQ_BUILD_EXACT=OFF
grep -q '^WQ_BUILD_EXACT is OFF: .*wqstat' step.txt || fail "nothing says what is left out without libwq_exact: $(cat step.txt)"
for target in wq_exact wqstat accuracy test_results; do
    ! "$CMAKE" --build without_exact --target help | grep -qE "(^|/| )$target(:|$)" || fail "$target is built without libwq_exact"
done

step "${configure[@]}" -S "$hosts/three_libraries" -B linked -DCMAKE_PREFIX_PATH="$PWD/installed"
step "$CMAKE" --build linked
! readelf --dynamic linked/host | grep libwq_ || fail "the host needs a shared library"
(cd linked && expect_output "$hosts/three_libraries/expected.txt" ./host)

step "${configure[@]}" -S "$hosts/plug_in" -B plugged -DCMAKE_PREFIX_PATH="$PWD/installed"
step "$CMAKE" --build plugged
exported=$(nm --dynamic --defined-only --demangle plugged/plug_in.so | grep 'wq_lib::[A-Z]' || true)
[ -z "$exported" ] || fail "the plug-in offers the library to others"$'\n'"$exported"
(cd plugged && expect_output "$SOURCE/tests/golden/basic_one_to_four_report.txt" ./host ./plug_in.so)

step "${configure[@]}" -S "$hosts/subfolder" -B subfolder -DLIBRARY_SOURCE="$SOURCE"
step "$CMAKE" --build subfolder
(cd subfolder && expect_output "$hosts/three_libraries/expected.txt" ./host)

"$CXX" -std=c++17 -DWQ_STATIC_LIBRARIES -Iinstalled/include "$hosts/own_names/main.cpp" -o own_names -Linstalled/"$LIBRARIES" \
    -lwq_stat -lwq_report -lwq_udf
./own_names || fail "a host with an sqr and odd of its own"
