#!/usr/bin/env bash
# Runs under Wine what was cross-compiled, beside this system's own build of the same tree:
#     tests/windows/run.sh <build folder for Windows> <build folder of this system> [<game>...]
set -euo pipefail

tree=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
windows=$(realpath "$1")
own=$(realpath "$2")
shift 2
wine=$tree/tools/wine.sh
for program in Xvfb wineserver; do
    command -v $program >/dev/null || [ -x /usr/lib/wine/$program ] && continue
    echo "SKIPPED: nothing is tried under Wine, since $program is not installed."
    exit 0
done

work=$windows/under-wine
rm -rf "$work"
mkdir -p "$work"
export WINEPREFIX=${WINEPREFIX:-$tree/build/wine}

# A screen and a sound device that nobody sees or hears.
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$work/display" 2>/dev/null &
screen=$!
server=$(command -v wineserver || echo /usr/lib/wine/wineserver)
trap '"$server" -k || true; kill $screen' EXIT
for _ in $(seq 50); do [ -s "$work/display" ] || sleep 0.1; done
export DISPLAY=:$(cat "$work/display")
export ALSA_CONFIG_PATH=$tree/tests/windows/alsa-null.conf

fail() {
    echo "FAILED under Wine: $1"
    exit 1
}

# What Wine leaves running would hold the output of a test open that were the first to start it.
"$server" -p
"$wine" wineboot --init >"$work/wineboot.txt" 2>&1 </dev/null

echo "-- tests"
(cd "$windows" && ctest --output-on-failure -j "$(nproc)")

echo "-- the sample's port"
port=$work/port
cp -r "$windows/tests/games/sample" "$port"
cp "$windows/bin/sample_port.exe" "$port/OpenBOR-Port.exe"
"$wine" "$port/OpenBOR-Port.exe" --diagnose || fail "--diagnose"
grep -q 'DIAGNOSE OK' "$port/runtime-startup.log" || fail "no diagnosis in the log"
smoke_hash() { "$@" --smoke-game </dev/null 2>/dev/null | tr -d '\r' | grep 'SMOKE GAME HASH'; }
shown=$(smoke_hash "$wine" "$port/OpenBOR-Port.exe") || fail "--smoke-game in a window"
unseen=$(DISPLAY='' smoke_hash "$wine" "$port/OpenBOR-Port.exe") || fail "--smoke-game"
here=$(SDL_VIDEODRIVER=none smoke_hash "$own/bin/sample_port" "$own/tests/games/sample")
echo "in a window: $shown; without: $unseen; on this system: $here"
[ "$unseen" = "$here" ] || fail "another game than on this system"
recording=$tree/tests/games/runs/sample.rec
DISPLAY='' "$wine" "$port/OpenBOR-Port.exe" "--replay=$recording" </dev/null >"$work/replay.txt" 2>&1 ||
    fail "--replay: $(tail -1 "$work/replay.txt")"
grep 'REPLAY OK' "$work/replay.txt"

echo "-- launchers"
# They stand in the script that makes the portable folder.
for name in INICIAR-JOGO DIAGNOSTICO SMOKE-TESTE; do
    sed -n "/^launcher $name.cmd/,/^CMD\$/p" "$tree/port/BUILD-PORTABLE-MINGW.sh" |
        sed '1d;$d;s/$/\r/' >"$port/$name.cmd"
done
(cd "$port" && DISPLAY='' "$wine" cmd /c DIAGNOSTICO.cmd </dev/null) | grep -q 'DIAGNOSE OK' ||
    fail "DIAGNOSTICO.cmd"
(cd "$port" && DISPLAY='' "$wine" cmd /c SMOKE-TESTE.cmd </dev/null) | grep 'SMOKE TESTE: OK' ||
    fail "SMOKE-TESTE.cmd"
sed -i s/fps_limit=60/fps_limit=0/ "$port/config/graphics.ini"
(cd "$port" && DISPLAY='' "$wine" cmd /c INICIAR-JOGO.cmd </dev/null >"$work/start.txt") ||
    fail "INICIAR-JOGO.cmd"
tail -1 "$port/runtime-startup.log" | grep -q 'EXIT code=0' || fail "no end of the game in the log"
mv "$port/assets" "$port/elsewhere"
(cd "$port" && DISPLAY='' "$wine" cmd /c INICIAR-JOGO.cmd </dev/null >"$work/start.txt") &&
    fail "INICIAR-JOGO.cmd without a game"
grep -q 'O jogo encerrou com erro 1.' "$work/start.txt" || fail "INICIAR-JOGO.cmd says nothing"
mv "$port/elsewhere" "$port/assets"

echo "-- the builder"
"$own/bin/make_pak" "$tree/tests/games/lanes" "$work/game.pak" >/dev/null
"$tree/tests/windows/interrupt.py" "$wine" "$windows/bin/session_child.exe" "$work/game.pak" "$work" ||
    fail "Ctrl+C"
foreign="$work/日本 é"
cp -r "$tree/tests/games/lanes" "$foreign"
"$tree/tests/windows/compare-builders.sh" "$own/bin/tindrel-builder" "$own/bin/make_pak" \
    "$windows/bin/tindrel-builder.exe" "$work/builders" "$tree/samples/game" "$foreign" "$@" ||
    fail "the builder writes something else than on this system"
