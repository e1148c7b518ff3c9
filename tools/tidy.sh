#!/usr/bin/env bash
# tools/tidy.sh <build folder>: clang-tidy over every source that the folder's build compiles.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
sed -n "s|^ *\"file\": \"$PWD/\(.*\)\",\?$|\1|p" "$1/compile_commands.json" |
    grep -E '^(builder|runtime)/' | sort -u |
    xargs -P "$(nproc)" -n 4 clang-tidy -p "$1" --quiet 2>/dev/null
