#!/usr/bin/env bash
# completion.sh SHELL: the installed completion offers commands, options, their values and files, as a user of the shell meets them.
source "$(dirname "$0")/common.sh"

shell=$1
command -v "$shell" >/dev/null || skip "there is no $shell"
wqstat=$PREFIX/bin/wqstat
work_in "$BUILD/tests/install/completion.$shell"
mkdir folder
touch 'data set.txt' data.txt other.csv

case $shell in
bash)
    script=$PREFIX/share/bash-completion/completions/wqstat
    bash -n "$script" || fail "bash does not understand $script"
    source "$script"
    complete -p wqstat | grep -xF 'complete -F _wqstat wqstat' || fail "nothing completes wqstat"
    # candidates WORDS...: what is offered for the last one, in the words bash makes: it also parts them at '='.
    candidates()
    {
        COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
        _wqstat
        [ "${#COMPREPLY[@]}" = 0 ] || printf '%s\n' "${COMPREPLY[@]}"
    }
    ;;
fish)
    script=$PREFIX/share/fish/vendor_completions.d/wqstat.fish
    fish --no-execute "$script" || fail "fish does not understand $script"
    export HOME=$PWD
    candidates()
    {
        fish --no-config -c 'source $argv[1]; complete -C (string join " " -- $argv[2..])' "$script" "$@" | cut -f 1
    }
    ;;
zsh)
    script=$PREFIX/share/zsh/vendor-completions/_wqstat
    zsh -n "$script" || fail "zsh does not understand $script"
    # A zsh at a terminal of its own, which prints what it would offer when the tabulator is pressed behind the words.
    candidates()
    {
        zsh -f "$SOURCE/tests/install/zsh_candidates.zsh" "$script" "$*"
    }
    ;;
esac

# offers EXPECTED WORDS...: just these candidates, in any order; EXPECTED has blanks or line ends between them.
offers()
{
    local expected found
    expected=$(tr ' ' '\n' <<<"$1" | sort)
    shift
    found=$(candidates "$@" | sort)
    [ "$found" = "$expected" ] || fail "'$*' is completed to '$found', expected '$expected'"
}

commands=$(commands_of "$wqstat")
offers "$commands" wqstat ''
offers 'circular columns correlate' wqstat c
offers "$(options_of "$wqstat")" wqstat --
for command in $commands; do
    offers "$(options_of "$wqstat" "$command")" wqstat "$command" --
done
offers 'linear logarithmic' wqstat regress --model l
offers 'degrees' wqstat circular --unit d
offers 't_Prob t_PercentPoint' wqstat prob t_
offers '' wqstat describe --alpha ''
[ "$shell" = zsh ] || offers '' wqstat random ''  # zsh offers options where nothing else can stand
offers '--export' wqstat describe data.txt --ex
offers 'other.csv' wqstat variances data.txt oth
if [ "$shell" = fish ]; then
    offers '--model=linear --model=logarithmic' wqstat regress --model=l
elif [ "$shell" = zsh ]; then
    offers 'linear logarithmic' wqstat regress --model=l
    offers '' wqstat describe --list 0 ''
    offers 'data.txt' wqstat describe data.
    offers 'folder' wqstat describe --export fo
else
    offers 'linear logarithmic' wqstat regress --model = l
    offers 'linear logarithmic exponential power' wqstat regress --model =
    offers '' wqstat describe --list 0 ''
    [ "$(candidates wqstat describe da | sort)" = $'data set.txt\ndata.txt' ] || fail "files are not completed"
    [ "$(candidates wqstat describe --export fo)" = folder ] || fail "--export does not complete files"
fi
