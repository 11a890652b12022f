#!/usr/bin/env bash
# Names and needs of the installed libraries: they find each other in their own folder and need nothing but C++ itself.
source "$(dirname "$0")/common.sh"

# entries TAG FILE: the values of a tag in the dynamic section, one per line.
entries()
{
    readelf --dynamic --wide "$2" | sed -n "s/.*($1).*\[\(.*\)\]$/\1/p"
}

expect()
{
    [ "$2" = "$3" ] || fail "$1 is '$2', expected '$3'"
    echo "$1: $2"
}

declare -A companions=([udf]='' [report]='libwq_udf.so.1 ' [stat]='libwq_report.so.1 libwq_udf.so.1 '
    [exact]='libwq_stat.so.1 ')

for name in "${family[@]}"; do
    library=$PREFIX/$LIBRARIES/libwq_$name.so
    expect "SONAME of $name" "$(entries SONAME "$library")" "libwq_$name.so.1"
    expect "RUNPATH of $name" "$(entries RUNPATH "$library")" '$ORIGIN'
    expect "file of $name" "$(basename "$(readlink -f "$library")")" "libwq_$name.so.1.1"
    expect "companions of $name" "$(entries NEEDED "$library" | grep '^libwq_' | sort | tr '\n' ' ')" "${companions[$name]}"
    expect "other needs of $name" \
        "$(entries NEEDED "$library" | grep -vE '^(libwq_.*|libstdc\+\+\.so\.6|libm\.so\.6|libgcc_s\.so\.1|libc\.so\.6|ld-linux-.*)$')" ''
    unresolved=$(ldd -r "$library" | grep -E 'not found|undefined symbol' || true)
    expect "what $name misses" "$unresolved" ''
done
