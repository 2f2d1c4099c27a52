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

_vanto_cl_settings() { # _vanto_cl_settings DEVICE CURRENT-WORD
    if [[ $2 == *=* ]]; then
        _vanto_cl_reply "$(_vanto_cl_words entries "$1" "${2%%=*}")" "${2#*=}"
    else
        compopt -o nospace 2>/dev/null
        _vanto_cl_reply "$(_vanto_cl_words features "$1" | sed 's/$/=/')" "$2"
    fi
}

_vanto_cl_values() { # _vanto_cl_values OPTION DEVICE CURRENT-WORD
    case "$1" in
        --set) _vanto_cl_settings "$2" "$3" ;;
        --format) _vanto_cl_reply $'png\npgm\ntiff\nraw\nnone' "$3" ;;
        --visibility) _vanto_cl_reply $'beginner\nexpert\nguru\ninvisible' "$3" ;;
        -o | --output | --file)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$3") ;;
    esac
}

_vanto_cl() {
    local line words=() word cur command="" device="" option="" arguments=0 index
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
        elif [[ -n $option ]]; then
            option=""
        elif [[ $word =~ ^(-n|--count|-o|--output|--format|--timeout|--buffers|--set|--interval|--visibility|--file)$ ]]; then
            option="$word"
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
    if [[ -n $option ]]; then
        _vanto_cl_values "$option" "$device" "$cur"
        return
    fi
    if [[ $cur == -* ]]; then
        _vanto_cl_reply "$("${COMP_WORDS[0]}" "$command" --help 2>/dev/null | grep -oE -- '--[a-z][a-z-]*' | sort -u)" "$cur"
        return
    fi
    case "$command:$arguments" in
        config:0) _vanto_cl_reply "$(_vanto_cl_words subcommands config)" "$cur" ;;
        xml:0 | features:0 | grab:0 | get:0 | set:0 | exec:0 | watch:0 | save:0 | load:0 | rate:0 | read:0 | write:0)
            _vanto_cl_reply "$(_vanto_cl_words devices)" "$cur" ;;
        get:* | watch:*) _vanto_cl_reply "$(_vanto_cl_words features "$device")" "$cur" ;;
        exec:1) _vanto_cl_reply "$(_vanto_cl_words executables "$device")" "$cur" ;;
        set:*) _vanto_cl_settings "$device" "$cur" ;;
        save:1 | load:1 | describe:0 | config:*)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$cur") ;;
    esac
}

complete -F _vanto_cl vanto-cl
