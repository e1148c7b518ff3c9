#!/usr/bin/env bash
# Makes docs/pictures anew: the screens of a player's way through the sample, and a film of a fight
# that the bot wins.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
. tools/setup.sh
need_packages "${build_packages[@]}" "${check_packages[@]}" pngquant imagemagick gifsicle fonts-dejavu-core
work=build/pictures
pictures=docs/pictures

cmake -S . -B build/play -G Ninja -DCMAKE_BUILD_TYPE=Release -DTINDREL_TESTS=OFF >/dev/null
cmake --build build/play --target tindrel-builder
rm -rf "$work"
mkdir -p "$work" "$pictures"
build/play/bin/tindrel-builder build samples/game "$work/port" >"$work/build.log"

tests/desktop/play_sample.py "$work/port" "$work/screens"
for screen in "$work"/screens/*.png; do
    pngquant --force --speed 1 --nofs --output "$pictures/$(basename "$screen")" 128 "$screen"
done

# The first fight, as far as the street stands still: what scrolls takes ten times the space.
SDL_VIDEODRIVER=none "$work/port/OpenBOR-Port" --autoplay=1 --capture="$work/film" --capture-every=5 \
    >"$work/film.log" 2>&1 || true # the bot need not win more than that
frames=()
for tick in $(seq 60 5 385); do
    frames+=("$(printf '%s/film/frame-%06d.png' "$work" "$tick")")
done
convert -delay 8 -loop 0 "${frames[@]}" +dither -colors 96 "$work/play.gif"
gifsicle -O3 --lossy=25 "$work/play.gif" -o "$pictures/play.gif" 2>/dev/null

large=$(find "$pictures" -name '*.png' -size +200k -o -name '*.gif' -size +976k)
[ -z "$large" ] || { echo "Too large for the tree: $large" >&2; exit 1; }
ls -l "$pictures"
