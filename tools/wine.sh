#!/usr/bin/env bash
# Runs a Windows program in a Wine of the build's own, quietly: tools/wine.sh <program> <argument>...
tree=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export WINEPREFIX=${WINEPREFIX:-$tree/build/wine} WINEDEBUG=${WINEDEBUG:--all}
# Nothing here needs .NET or a browser, which a new prefix would offer to fetch.
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
mkdir -p "$WINEPREFIX"
exec "$(command -v wine64 || command -v wine || echo /usr/lib/wine/wine64)" "$@"
