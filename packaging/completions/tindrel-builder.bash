# bash completion for tindrel-builder

_tindrel_builder_folders() {
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -d -- "$1")
}

_tindrel_builder_games() {
    _tindrel_builder_folders "$1"
    local pattern
    for pattern in '*.[zZ][iI][pP]' '*.[rR][aA][rR]' '*.[pP][aA][kK]'; do
        local found
        mapfile -t found < <(compgen -f -X "!$pattern" -- "$1")
        COMPREPLY+=("${found[@]}")
    done
}

_tindrel_builder() {
    local current=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]}
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W \
            'scan analyze audit convert build watch repair package test --help --version' \
            -- "$current")
        return
    fi

    # "--playtest=file" comes as three words.
    local before=${COMP_WORDS[COMP_CWORD - 1]}
    [[ $current == '=' ]] && before='=' current=
    if [[ $before == '=' ]]; then
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
    fi
    if [[ $current == -* ]]; then
        local options='--as-written'
        case $command in
            watch) options+=' --run' ;;
            package) options='--windows' ;;
            test) options+=' --playtest=' ;;
        esac
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
        [[ ${COMPREPLY[0]} == *= ]] && compopt -o nospace
        return
    fi

    local place=0 i
    for ((i = 2; i < COMP_CWORD; ++i)); do
        [[ ${COMP_WORDS[i]} == -* ]] || ((++place))
    done
    case $command:$place in
        package:0 | test:0 | *:1) _tindrel_builder_folders "$current" ;;
        *:0) _tindrel_builder_games "$current" ;;
    esac
}

complete -F _tindrel_builder tindrel-builder
