#!/usr/bin/env bash
# Makes the recordings of tests/games/runs anew, for a runtime that plays otherwise on purpose.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
cmake --preset debug
cmake --build --preset debug --target record_games
git --no-pager diff --stat -- tests/games/runs
