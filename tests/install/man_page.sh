#!/usr/bin/env bash
# The installed man page is well formed, and has every command with every option that --help has.
source "$(dirname "$0")/common.sh"

page=$PREFIX/share/man/man1/wqstat.1
wqstat=$PREFIX/bin/wqstat
[ -s "$page" ] || fail "there is no $page"

# section COMMAND: what the page says about a command.
section()
{
    awk -v start=".Ss $1" '$0 == start { inside = 1; next } /^\.(Ss|Sh) / { inside = 0 } inside' "$page"
}

# has OPTION TEXT: is the option described there?
has()
{
    grep -qE "^\.It Fl Fl ${1#--}( |$)" <<<"$2"
}

commands=$(commands_of "$wqstat")
count=0
for command in $commands; do
    text=$(section "$command")
    [ -n "$text" ] || fail "the man page has no section $command"
    for option in $(options_of "$wqstat" "$command"); do
        count=$((count + 1))
        [ "$option" = --help ] || has "$option" "$text" || fail "the man page has no $option of $command"
    done
done
[ "$count" -gt 50 ] || fail "only $count options were looked for"
for option in $(options_of "$wqstat"); do
    has "$option" "$(cat "$page")" || fail "the man page has no $option"
done
echo "$(wc -w <<<"$commands") commands, $count options"

command -v mandoc >/dev/null || skip "mandoc is missing (Debian package: mandoc)"
mandoc -T lint -W warning "$page" || fail "the man page is not well formed"
mandoc -T ascii "$page" | sed 's,.\x08,,g' | grep -F 'wqstat variances [options] [FILE ...]' ||
    fail "the synopsis does not print as it should"
