#!/usr/bin/env bash
# tools/tidy.sh <build folder>: clang-tidy over every source that the folder's build compiles, a room
# at once where it does so too: most of the time goes into what their headers share. The analyzer
# would pass over what is not the main file.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
sed -n "s|^ *\"file\": \"$PWD/\(.*\)\",\?$|\1|p" "$1/compile_commands.json" |
    grep -E '^(builder|runtime)/|/(builder/.*|CMakeFiles/port_[^/]*)/Unity/' | sort -u |
    xargs -P "$(nproc)" -n 1 clang-tidy -p "$1" --quiet \
        --extra-arg=-Xclang --extra-arg=-analyzer-opt-analyze-headers 2>/dev/null
