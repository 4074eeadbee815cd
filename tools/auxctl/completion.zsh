#compdef auxctl
# Completes auxctl in zsh; the tool itself knows what may follow.
_auxctl() {
    local -a candidates
    candidates=("${(@f)$("$words[1]" complete --current "$words[CURRENT]" -- \
        "${(@)words[2,CURRENT-1]}" 2>/dev/null)}")
    if [[ $candidates[1] == :files ]]; then
        _files
    elif [[ $candidates[1] == *= ]]; then
        compadd -S '' -- $candidates
    else
        compadd -- $candidates
    fi
}
if [[ $funcstack[1] == _auxctl ]]; then
    _auxctl "$@"
else
    compdef _auxctl auxctl
fi
