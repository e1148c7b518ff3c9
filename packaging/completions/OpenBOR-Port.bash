# bash completion for OpenBOR-Port

_openbor_port() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    # "--record=file" comes as three words.
    [[ $current == '=' ]] && before='=' current=
    if [[ $before == '=' ]]; then
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    elif [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W \
            '--diagnose --diagnostic --smoke-game --smoke-frames= --capture= --capture-every=
            --record= --replay= --autoplay --autoplay-lives= --autoplay-report= --help --version' \
            -- "$current")
        [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *= ]] && compopt -o nospace
    else
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
    fi
}

complete -F _openbor_port OpenBOR-Port
