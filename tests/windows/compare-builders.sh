#!/usr/bin/env bash
# The builder of another system writes the same bytes as this system's own:
#     tests/windows/compare-builders.sh <builder> <maker of PAKs> <builder for Windows> <work folder> <game>...
# Every game is also given as a ZIP and as a PAK. What names a path of the machine is compared with
# all paths written alike.
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
        (cd "$work/other" && WINEDLLOVERRIDES="mscoree,mshtml,powershell.exe=" WINEPATH="$tools" \
            "$tree/tools/wine.sh" "$other" "$@" </dev/null)
    fi
}

# Both systems' forms of the work folder and of the temporary folders become the same words.
alike() {
    sed -E -e 's#\r$##' -e 's#([A-Z]:)?[\\/]+(tmp|users[\\/]+[^\\/]+[\\/]+(AppData[\\/]+Local[\\/]+)?Temp)[\\/]+[^ |"]*#TEMP#gI' \
        -e 's#Z:##g' -e 's#\\\\?#/#g' -e "s#$work/(own|other)#WORK#g" "$1"
}

failed=0
compare_folders() { # <folder below both>
    local file list
    list=$(diff <(cd "own/$1" && find . -type f | sort) <(cd "other/$1" && find . -type f | sort)) || {
        echo "$1: other files:"
        echo "$list" | head -20
        failed=1
    }
    while IFS= read -r file; do
        cmp -s "own/$1/$file" "other/$1/$file" && continue
        if ! cmp -s <(alike "own/$1/$file") <(alike "other/$1/$file"); then
            echo "$1/$file differs:"
            diff <(alike "own/$1/$file") <(alike "other/$1/$file") | head -6 | cut -c1-300 || true
            failed=1
        fi
    done < <(cd "own/$1" && find . -type f)
}

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
        compare_folders "$label"
        echo "$label: $(find "own/$label" -type f | wc -l) files compared, $(grep -h '^code' "own/$label"/*.txt | sort -u | tr '\n' ' ')"
    done
done
exit $failed
