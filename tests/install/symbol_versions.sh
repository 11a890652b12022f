#!/usr/bin/env bash
# Symbol versions: every exported symbol carries that of the SOVERSION; a host that is linked now asks for it, and one that was linked when
# there was none runs on.
source "$(dirname "$0")/common.sh"
work_in "$BUILD/tests/install/symbol_versions"

for name in "${family[@]}"; do
    library=$PREFIX/$LIBRARIES/libwq_$name.so.1
    others=$(readelf --dyn-syms --wide "$library" | awk '$7 ~ /^[0-9]+$/ && $7 > 0 && $8 !~ /@@WQ_1$/ { print $8 }')
    [ -z "$others" ] || fail "$library exports without the version WQ_1:"$'\n'"$others"
done

# as_before NAME: a library of the same name with the same symbols, functions and objects of the same size, but no versions. It is there to be
# linked with, as the libraries without versions were.
as_before()
{
    readelf --dyn-syms --wide "$PREFIX/$LIBRARIES/libwq_$1.so.1" | awk '
        $7 ~ /^[0-9]+$/ && $7 > 0 {
            sub(/@.*/, "", $8)
            printf "%s\n.globl %s\n.type %s, @%s\n.size %s, %d\n%s:\n.zero %d\n", $4 == "FUNC" ? ".text" : ".data", $8, $8,
                $4 == "FUNC" ? "function" : "object", $8, $3, $8, $3
        }' >"$1.s"
    printf '.section .note.GNU-stack,"",%%progbits\n' >>"$1.s"
    "$CXX" -shared -nostdlib -Wl,-soname,"libwq_$1.so.1" -o "before/libwq_$1.so" "$1.s"
    ! readelf --version-info "before/libwq_$1.so" | grep WQ_ || fail "before/libwq_$1.so has versions"
}
mkdir before
for name in "${core[@]}"; do
    as_before "$name"
done

# linked HOST FOLDER OPTION...: three_libraries, linked with the libraries of the folder.
linked()
{
    "$CXX" -std=c++17 "${@:3}" "$hosts/three_libraries/main.cpp" -I"$PREFIX/include" -o "$1" -L"$2" -lwq_stat -lwq_report -lwq_udf \
        '-Wl,-rpath,$ORIGIN'
}

# At a fixed address, a host has copies of the libraries' objects: these have to be found by their versions, too.
for place in "-fPIE -pie" "-fno-pie -no-pie"; do
    read -ra options <<<"$place"
    linked old before "${options[@]}"
    ! readelf --version-info old | grep WQ_ || fail "the old host asks for versions"
    linked new "$PREFIX/$LIBRARIES" "${options[@]}"
    readelf --version-info new | grep 'Name: WQ_1 ' >needed.txt || fail "the new host asks for no version"
    for host in old new; do
        rm -rf own-folder
        (own_folder "$host" && expect_output "$hosts/three_libraries/expected.txt" ./host) || exit 1
    done
done
