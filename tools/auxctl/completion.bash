# Completes auxctl in bash; the tool itself knows what may follow.
_auxctl() {
    local current=${COMP_WORDS[COMP_CWORD]}
    mapfile -t COMPREPLY < <("${COMP_WORDS[0]}" complete --current "$current" -- \
        "${COMP_WORDS[@]:1:COMP_CWORD-1}" 2>/dev/null)
    if [[ ${COMPREPLY[0]} == :files ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        compopt -o filenames 2>/dev/null
    elif [[ ${COMPREPLY[0]} == *= ]]; then
        compopt -o nospace 2>/dev/null
    fi
}
complete -F _auxctl auxctl
