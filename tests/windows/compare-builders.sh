#!/usr/bin/env bash
# The builder of another system writes the same bytes as this system's own:
#     tests/windows/compare-builders.sh <builder> <maker of PAKs> <builder for Windows> <work folder> <game>...
# Every game is also given as a ZIP and as a PAK.
set -euo pipefail

own=$(realpath "$1")
make_pak=$(realpath "$2")
other=$(realpath "$3")
# Beside its folder stands the archive tool that Wine lacks.
tools=$(realpath "$(dirname "$other")/../tools")
work=$4
shift 4
games=()
for game in "$@"; do games+=("$(realpath "$game")"); done
tree=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

rm -rf "$work"
mkdir -p "$work"
work=$(realpath "$work")
cd "$work"

# Both builders are called with the same arguments, in folders of the same name and depth.
builder() { # <own|other> <argument>...
    local which=$1
    shift
    if [ "$which" = own ]; then
        (cd "$work/own" && "$own" "$@")
    else
        # Wine has no PowerShell, but a program of its name that does nothing and ends well.
        (cd "$work/other" && WINEDLLOVERRIDES="mscoree,mshtml,powershell.exe=" WINEPATH="Z:${tools//\//\\}" \
            "$tree/tools/wine.sh" "$other" "$@" </dev/null)
    fi
}

failed=0
for game in "${games[@]}"; do
    name=$(basename "$game")
    (cd "$game" && rm -f "$work/$name.zip" && bsdtar -c --format zip --options zip:compression=store -f "$work/$name.zip" data)
    "$make_pak" "$game" "$work/$name.pak" >/dev/null
    for input in "$game" "$work/$name.zip" "$work/$name.pak"; do
        label=$name-${input##*.}
        [ "$input" != "$game" ] || label=$name-folder
        for side in own other; do
            mkdir -p "$side/$label"
            for command in scan analyze convert repair; do
                arguments=("$input")
                [ "$command" = scan ] || arguments+=("$label/$command")
                code=0
                builder "$side" "$command" "${arguments[@]}" >"$side/$label/$command.txt" 2>"$side/$label/$command.errors" || code=$?
                echo "code $code" >>"$side/$label/$command.txt"
            done
        done
        echo "$label: $(grep -h '^code' "own/$label"/*.txt | sort -u | tr '\n' ' ')"
        "$tree/tests/windows/compare_trees.py" "own/$label" "other/$label" || failed=1
    done
done
exit $failed
