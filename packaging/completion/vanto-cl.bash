# SPDX-License-Identifier: Apache-2.0
# Completion of vanto-cl for bash. Cameras and their features are asked for through 'vanto-cl complete', which reads
# descriptions and opens no camera.

_vanto_cl_words() {
    # With --simulate the words come from the cameras that the command itself would see.
    "${simulate[@]}" complete "$@" 2>/dev/null
}

_vanto_cl_reply() {
    local IFS=$'\n'
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2")
}

_vanto_cl() {
    local line words=() word cur command="" device="" arguments=0 index
    local -a simulate=("${COMP_WORDS[0]}")
    # The shell splits words at '=' and ':'; here they belong to the words.
    line="${COMP_LINE:0:COMP_POINT}"
    read -ra words <<<"$line"
    [[ $line == *[[:space:]] ]] && words+=("")
    cur="${words[${#words[@]}-1]}"
    for ((index = 1; index < ${#words[@]} - 1; ++index)); do
        word="${words[index]}"
        if [[ -z $command && $word == --simulate* ]]; then
            simulate+=("$word")
        elif [[ $word == -* ]]; then
            continue
        elif [[ -z $command ]]; then
            command="$word"
        else
            [[ $arguments -eq 0 ]] && device="$word"
            ((++arguments))
        fi
    done

    if [[ -z $command ]]; then
        if [[ $cur == -* ]]; then
            _vanto_cl_reply $'--help\n--version\n--simulate' "$cur"
        else
            _vanto_cl_reply "$(_vanto_cl_words commands)" "$cur"
        fi
        return
    fi
    if [[ $cur == -* ]]; then
        _vanto_cl_reply "$("${COMP_WORDS[0]}" "$command" --help 2>/dev/null | grep -oE -- '--[a-z][a-z-]*' | sort -u)" "$cur"
        return
    fi
    case "$command:$arguments" in
        config:0) _vanto_cl_reply "$(_vanto_cl_words subcommands config)" "$cur" ;;
        xml:0 | features:0 | grab:0 | get:0 | set:0 | exec:0 | watch:0 | save:0 | load:0 | read:0 | write:0)
            _vanto_cl_reply "$(_vanto_cl_words devices)" "$cur" ;;
        get:* | watch:*) _vanto_cl_reply "$(_vanto_cl_words features "$device")" "$cur" ;;
        exec:1) _vanto_cl_reply "$(_vanto_cl_words executables "$device")" "$cur" ;;
        set:*)
            if [[ $cur == *=* ]]; then
                _vanto_cl_reply "$(_vanto_cl_words entries "$device" "${cur%%=*}")" "${cur#*=}"
            else
                compopt -o nospace 2>/dev/null
                _vanto_cl_reply "$(_vanto_cl_words features "$device" | sed 's/$/=/')" "$cur"
            fi ;;
        save:1 | load:1 | describe:0 | config:*)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$cur") ;;
    esac
}

complete -F _vanto_cl vanto-cl
