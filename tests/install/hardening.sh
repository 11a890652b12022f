#!/usr/bin/env bash
# What is installed is hardened, and no run path, of the build tree either, has an empty entry: the loader takes that for the current folder.
source "$(dirname "$0")/common.sh"

# has FILE WHAT COMMAND PATTERN: the pattern is in what the command says of the file.
has()
{
    local found
    found=$($3 "$1")
    grep -qE "$4" <<<"$found" || fail "$1: no $2"
}

installed=()
for name in "${family[@]}"; do
    installed+=("$(readlink -f "$PREFIX/$LIBRARIES/libwq_$name.so")")
done
[ ! -e "$PREFIX/bin/wqstat" ] || installed+=("$PREFIX/bin/wqstat")

for file in "${installed[@]}"; do
    has "$file" "relocations that are read-only" 'readelf --program-headers --wide' GNU_RELRO
    has "$file" "binding at the start" 'readelf --dynamic --wide' 'BIND_NOW|\<NOW\>'
    has "$file" "stack that is not executable" 'readelf --program-headers --wide' 'GNU_STACK .* RW '
    has "$file" "place chosen by the loader" 'readelf --file-header --wide' 'Type: +DYN'
    echo "$file: read-only relocations, bound at the start"
done
for file in "$PREFIX/$LIBRARIES/libwq_stat.so" "${installed[@]:3}"; do
    has "$file" "stack protector" 'nm --dynamic --undefined-only' '__stack_chk_fail'
done

# The libraries leave no call to be checked, their buffers being looked at while they are compiled: the options themselves are looked for.
[ "$("$CMAKE" -N -L "$BUILD" | grep -c '^WQ_HARDENING:BOOL=ON$')" = 1 ] || fail "WQ_HARDENING is not the default"
commands=$(grep '"command"' "$BUILD/compile_commands.json" | grep -E -- '-Dwq_[a-z]+_EXPORTS|-o tools/wqstat/')
[ -n "$commands" ] || fail "no compile commands of the libraries"
! grep -vE -- '-fstack-protector-strong' <<<"$commands" || fail "a source is compiled without stack protector"
case $BUILD_TYPE in
Release | RelWithDebInfo | MinSizeRel)
    ! grep -vE -- '-D_FORTIFY_SOURCE=2' <<<"$commands" || fail "a source is compiled without checked C functions"
    ;;
esac

count=0
while read -r file; do
    path=$(readelf --dynamic --wide "$file" 2>/dev/null | sed -nE 's/.*\((RUNPATH|RPATH)\).*\[(.*)\]$/\2/p' || true)
    [ -n "$path" ] || continue
    count=$((count + 1))
    case ":$path:" in
    *::*) fail "$file has an empty entry in its run path $path" ;;
    esac
done < <(find "$BUILD/bin" "$BUILD/lib" "$BUILD"/tests/test_* "$PREFIX/bin" "$PREFIX/$LIBRARIES" -type f)
[ "$count" -gt 4 ] || fail "only $count files with a run path found"
echo "$count files with a run path"
