# Completion of ovtool in bash: commands, options, and the features of the camera. All of
# them are asked of the program, so that they are those of the installed version.

# The words of one part of a help text: commands, or options.
_ovtool_help() {
    local part=$1
    shift
    "$@" --help 2>/dev/null | awk -v part="$part" '
        /^[A-Za-z ]+:$/ || /^ *OPTIONS:$/ { section = tolower($1) }
        part == "commands" && section ~ /^subcommands/ && /^  [a-z]/ { print $1 }
        part == "options" && /^ +-/ {
            gsub(/\{[a-z]*\}/, "", $1)
            count = split($1, names, ",")
            for (i = 1; i <= count; ++i) print names[i]
        }'
}

_ovtool_features() {
    "$@" --json 2>/dev/null | sed -n 's/^ *"name": "\([^"]*\)",*$/\1/p'
}

_ovtool() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=("${COMP_WORDS[0]}") camera=() arguments=() commands words="" i
    commands=$(_ovtool_help commands "${command[@]}")
    for ((i = 1; i < COMP_CWORD; ++i)); do
        local word=${COMP_WORDS[i]}
        if grep -qxF -e "$word" <<<"$commands"; then
            command+=("$word")
            commands=$(_ovtool_help commands "${command[@]}")
        elif [[ $word == -c || $word == --camera ]] && ((i + 1 < COMP_CWORD)); then
            camera=(--camera "${COMP_WORDS[++i]}")
        elif [[ $word != -* ]]; then
            arguments+=("$word")
        fi
    done
    COMPREPLY=()
    # What follows these is the user's own; files are completed where nothing else is. Bash
    # makes words of their own of the signs in Width=640 Height=480.
    if [[ $previous == -c || $previous == --camera ]]; then
        return
    elif [[ $current == -* ]]; then
        words=$(_ovtool_help options "${command[@]}")
    elif [[ -n $commands ]]; then
        words=$commands
    elif [[ ${command[1]} == get || ${command[1]} == describe || ${command[1]} == explain ]] ||
        [[ ${command[1]} == set && $previous != "=" && (${#arguments[@]} -eq 0 || " ${arguments[*]} " == *" = "*) ]]; then
        words=$(_ovtool_features "${command[0]}" features "${camera[@]}")
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

complete -o default -F _ovtool ovtool
