# zsh_candidates.zsh SCRIPT LINE: prints what zsh, with the completion script, offers behind the line.
# Completion works only where someone edits a line, so another zsh gets a terminal of its own, where matches are printed instead of offered.
zmodload zsh/zpty
zpty child zsh -f -i
zpty -w child "PROMPT= RPROMPT= TERM=dumb; unsetopt prompt_cr zle_bracketed_paste 2>/dev/null; stty -echo
autoload -Uz compinit && compinit -u -D && source ${(q)1}
zstyle ':completion:*' list-grouped false; zstyle ':completion:*' verbose no
compadd() {
    if [[ \${@[1,(i)(-|--)]} == *-(O|A|D)\\ * ]]; then builtin compadd \"\$@\"; return; fi
    local -a found; builtin compadd -A found \"\$@\"
    [[ \$#found = 0 ]] || print -rl -- candidate\${^found}
    builtin compadd \"\$@\"
}
show() { compstate[insert]= compstate[list]=; _main_complete; print -r -- candidates-end; compstate[insert]= compstate[list]=; exit }
zle -C show complete-word show; bindkey '^I' show
print -r -- candidates-begin"
zpty -r -m child output '*candidates-begin*' || exit 1
zpty -w -n child "$2"$'\t'
zpty -r -m child output '*candidates-end*' || exit 1
print -rl -- ${${(f)${output//$'\r'/}}} | sed -n 's/^.*candidate\([^s].*\)$/\1/p' | sort -u
