#!/usr/bin/env bash
# What the installed libraries export: names of wq_lib or wq_exact and the two version symbols, nothing of their inside, and just what the baseline has.
source "$(dirname "$0")/common.sh"

for name in "${family[@]}"; do
    library=$PREFIX/$LIBRARIES/libwq_$name.so.1
    symbols=$(exported "$library" --demangle | sed 's/^[0-9a-f]* *[A-Za-z] //')
    [ -n "$symbols" ] || fail "$library exports nothing"

    namespace=wq_lib
    [ "$name" = exact ] && namespace=wq_exact
    allowed="^((vtable|typeinfo|typeinfo name) for |non-virtual thunk to )?${namespace}::"
    [ "$name" = stat ] && allowed+='|^wq_stat_1Version(String|Number)$'
    if grep -vE "$allowed" <<<"$symbols" >&2; then
        fail "$library exports what is not its own"
    fi
    if grep -F "${namespace}::detail" <<<"$symbols" >&2; then
        fail "$library exports its inside"
    fi
    # Those of the baseline, no fewer and no more: what is gone breaks hosts, what is new is a promise.
    changes=$(diff <(cut -f 1 "$abi/libwq_$name.symbols") <(symbols_of "$library" | cut -f 1) |
        sed -n 's/^< /no longer exported: /p; s/^> /newly exported: /p' | c++filt) || true
    [ -z "$changes" ] || fail "$library does not export what the baseline says."$'\n'"$changes"$'\n'"$renew_hint"
    echo "$library: $(wc -l <<<"$symbols") symbols"
done

# The version symbols as a program without C++ finds them.
version=$PREFIX/$LIBRARIES/libwq_stat.so.1
[ "$(exported "$version" | grep -cE ' R wq_stat_1Version(String|Number)$')" = 2 ] ||
    fail "the version symbols are not exported by their plain names"
