# Completes auxctl in fish; the tool itself knows what may follow.
function __auxctl_candidates
    set -l typed (commandline -opc)
    set -l current (commandline -ct)
    set current (string unescape -- "$current"; or echo "$current") # an open quote stays
    set -l candidates ($typed[1] complete --current "$current" -- $typed[2..-1] 2>/dev/null)
    if test "$candidates[1]" = :files
        __fish_complete_path "$current"
    else
        printf '%s\n' $candidates
    end
end
complete -c auxctl -f -a '(__auxctl_candidates)'
