#!/usr/bin/env bash
# The Debian packages, unpacked into an empty root folder: the tool runs from there, and a host builds against the development package.
source "$(dirname "$0")/common.sh"

command -v dpkg-deb >/dev/null || skip "dpkg-deb is missing"
command -v dpkg-shlibdeps >/dev/null || skip "dpkg-shlibdeps is missing (Debian package: dpkg-dev)"

work_in "$BUILD/tests/install/packages"
cpack --config "$BUILD/CPackConfig.cmake" -B "$PWD/made" >cpack.txt 2>&1 || fail "$(cat cpack.txt)"

for package in libwq-stat1 libwq-stat-dev wqstat; do
    file=$(echo made/"${package}"_1.1_*.deb)
    [ -f "$file" ] || fail "there is no package $package: $(ls made)"
    dpkg-deb --info "$file" >"$package.info"
    dpkg-deb --extract "$file" root
    dpkg-deb --control "$file" "$package.control"
done
grep -qxF ' Description: Classical statistical analyses, shared libraries' libwq-stat1.info || fail "$(cat libwq-stat1.info)"
grep -q '^ Depends:.*libc6' libwq-stat1.info || fail "libwq-stat1 does not name the libraries it needs"
grep -q '^ Depends: libwq-stat1 (= 1.1)' libwq-stat-dev.info || fail "libwq-stat-dev does not need libwq-stat1"
grep -q '^ Depends:.*libwq-stat1 (= 1.1)' wqstat.info || fail "wqstat does not need libwq-stat1"

expected=$(printf '%s\n' libwq_exact.so.1 libwq_report.so.1 libwq_stat.so.1 libwq_udf.so.1)
[ "$(dpkg-deb --contents made/libwq-stat1_*.deb | grep -oE 'libwq_[a-z]+\.so\.1 ' | tr -d ' ' | sort)" = "$expected" ] ||
    fail "libwq-stat1 does not hold the libraries"

# The tool, its libraries found beside it.
ldd root/usr/bin/wqstat | grep "libwq_stat.so.1 => $PWD/root/" || fail "wqstat does not use the libraries of the packages"
root/usr/bin/wqstat --version | grep -F 1.1 || fail "wqstat --version"
root/usr/bin/wqstat describe "$SOURCE/examples/data/nist_numacc1.txt" | grep -xF "sample size     : 3" || fail "wqstat describe"
cmp "$SOURCE/docs/wqstat.schema.json" root/usr/share/wqstat/wqstat.schema.json || fail "the schema of wqstat --json is not in the package"

# What belongs to it, each file where its reader looks for it.
declare -A kinds=([man/man1/wqstat.1.gz]=man [bash-completion/completions/wqstat]=bash [fish/vendor_completions.d/wqstat.fish]=fish
    [zsh/vendor-completions/_wqstat]=zsh)
for file in "${!kinds[@]}"; do
    root/usr/bin/wqstat --generate "${kinds[$file]}" | cmp - <(gzip --decompress --force --stdout "root/usr/share/$file") || fail "share/$file is not what the tool makes"
    dpkg-deb --fsys-tarfile made/wqstat_*.deb | tar --list | grep -xF "./usr/share/$file" ||
        fail "share/$file is not in the package of the tool"
done

# Nobody is given a right that the owner has not granted.
for package in libwq-stat1 libwq-stat-dev wqstat; do
    grep -qxF 'No licence has been granted yet. Until the owners grant one, nobody but them may use, copy, change or pass on these files.' \
        "root/usr/share/doc/$package/copyright" || fail "$package does not say which licence it has"
    gzip --decompress --stdout "root/usr/share/doc/$package/changelog.gz" | head -n 1 | grep -xF 'wq-stat (1.1) unstable; urgency=medium' ||
        fail "the changelog of $package begins with another version"
    (cd root && md5sum --check --quiet "../$package.control/md5sums") || fail "$package holds other files than it says"
done

# A host, built against the development package and run with the libraries of the other one.
"$CMAKE" -S "$hosts/three_libraries" -B host -G "$GENERATOR" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_PREFIX_PATH="$PWD/root/usr" >host.txt
"$CMAKE" --build host >>host.txt || fail "$(cat host.txt)"
PREFIX=$PWD/root/usr
own_folder host/host
expect_output "$hosts/three_libraries/expected.txt" ./host
