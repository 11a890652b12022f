#!/usr/bin/env bash
# headers_alone.sh COMPILER: every installed header compiles as the only one included, twice over, without a warning.
source "$(dirname "$0")/common.sh"

compiler=$1
command -v "$compiler" >/dev/null || skip "there is no $compiler"
read -ra warnings <<<"$WARNINGS"
cd "$PREFIX/include"
headers=(*/*.h)
[ "${#headers[@]}" -gt 15 ] || fail "only ${#headers[@]} headers in $PWD"

# compiles STANDARD HEADER
compiles()
{
    printf '#include <%s>\n#include <%s>\n' "$2" "$2" |
        "$compiler" -x c++ "-std=$1" "${warnings[@]}" -Werror -I . -fsyntax-only - || fail "$compiler -std=$1 does not take <$2> alone"
}

for header in "${headers[@]}"; do
    compiles c++17 "$header"
done
compiles c++20 wq_stat/wq_stat.h
compiles c++20 wq_report/csv_report.h
echo "$compiler: ${#headers[@]} headers"
