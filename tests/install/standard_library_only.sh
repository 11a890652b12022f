#!/usr/bin/env bash
# The sources of the analyses and their companions, and the public headers of the exact figures, include the C++17 standard library, each
# other, and nothing else but the compiler's header of the instructions of x86-64, which brings no library with it.
source "$(dirname "$0")/common.sh"

standard='algorithm any array atomic bitset cassert ccomplex cctype cerrno cfenv cfloat charconv chrono cinttypes climits clocale
    cmath codecvt complex condition_variable csetjmp csignal cstdarg cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar
    cwctype deque exception execution filesystem forward_list fstream functional future initializer_list iomanip ios iosfwd
    iostream istream iterator limits list locale map memory memory_resource mutex new numeric optional ostream queue random ratio
    regex scoped_allocator set shared_mutex sstream stack stdexcept streambuf string string_view strstream system_error thread
    tuple type_traits typeindex typeinfo unordered_map unordered_set utility valarray variant vector'
compiler='immintrin.h'

declare -A known
for name in $standard $compiler; do
    known[$name]=yes
done
include='^ *# *include *[<"]([^>"]*)[>"]'

cd "$SOURCE"
count=0
wrong=
while IFS=: read -r file line text; do
    count=$((count + 1))
    [[ $text =~ $include ]] || fail "$file:$line: not understood: $text"
    name=${BASH_REMATCH[1]}
    case $text in
    *\"*) [ -e "$(dirname "$file")/$name" ] || [ -e "src/$name" ] || [ -e "support/$name" ] || wrong+="$file:$line: $text"$'\n' ;;
    *'<wq_'*) [ -e "include/$name" ] || [ -e "support/${name%%/*}/include/$name" ] || [ -e "exact/include/$name" ] || wrong+="$file:$line: $text"$'\n' ;;
    *) [ -n "${known[$name]-}" ] || wrong+="$file:$line: $text"$'\n' ;;
    esac
done < <(grep -rnE '^ *# *include' include src support exact/include)

[ "$count" -gt 100 ] || fail "only $count #include lines found"
[ -z "$wrong" ] || fail "not of the standard library, and not of the family:"$'\n'"$wrong"
echo "$count #include lines"
