# Completes auxctl in bash; made by "auxctl completion".
_auxctl() {
    local current=${COMP_WORDS[COMP_CWORD]} typed="" words="" name
    for name in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [[ $name == -* ]] || typed+="${typed:+ }$name"
    done
    for name in @NAMES@; do
        case "$name" in
        "$typed") ;;
        "$typed "*) name=${name#"$typed "} words+=" ${name%% *}" ;;
        *) [ -n "$typed" ] || words+=" ${name%% *}" ;;
        esac
    done
    if [[ $current == -* ]]; then
        case "$typed" in
@CASES@
        esac
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current" | sort -u)
}
complete -o default -F _auxctl auxctl
