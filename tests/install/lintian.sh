#!/usr/bin/env bash
# The Debian packages have no error and no warning of lintian. The licence and an address of the makers are the owner's to give.
source "$(dirname "$0")/common.sh"

command -v lintian >/dev/null || skip "lintian is missing (Debian package: lintian)"
command -v dpkg-shlibdeps >/dev/null || skip "dpkg-shlibdeps is missing (Debian package: dpkg-dev)"

work_in "$BUILD/tests/install/lintian"
cpack --config "$BUILD/CPackConfig.cmake" -B "$PWD/made" >cpack.txt 2>&1 || fail "$(cat cpack.txt)"
[ "$(ls made/*.deb | wc -l)" = 3 ] || fail "there are other packages: $(ls made)"
lintian --no-cfg --allow-root --fail-on error,warning made/*.deb >lintian.txt 2>&1 || fail "$(cat lintian.txt)"
cat lintian.txt
