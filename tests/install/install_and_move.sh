#!/usr/bin/env bash
# Installs the build, checks what came out, and moves the tree, so that whatever remembers its first place breaks.
source "$(dirname "$0")/common.sh"

first=$PREFIX-before-the-move
rm -rf "$first" "$PREFIX"
"$CMAKE" --install "$BUILD" --prefix "$first"

expect_file()
{
    [ -e "$first/$1" ] || fail "not installed: $1"
}

expect_file "$LIBRARIES/pkgconfig/wq_stat.pc"
expect_file "$LIBRARIES/pkgconfig/wq_exact.pc"
expect_file "$LIBRARIES/cmake/wq_stat/wq_stat-config.cmake"
for name in "${family[@]}"; do
    for suffix in so so.1 so.1.1; do
        expect_file "$LIBRARIES/libwq_$name.$suffix"
    done
done

(cd "$SOURCE/include" && find . -type f) >"$first.headers"
(cd "$SOURCE/support" && find */include -type f | sed 's,^[^/]*/include,.,') >>"$first.headers"
(cd "$SOURCE/exact/include" && find . -type f) >>"$first.headers"
diff -u <(sort "$first.headers") <(cd "$first/include" && find . -type f | sort) >&2 || fail "the installed headers are not the public ones"
rm "$first.headers"

if grep -rlF -e "$first" -e "$SOURCE" -e "$BUILD" "$first" >&2; then
    fail "these installed files remember where they were built or installed"
fi
mv "$first" "$PREFIX"
