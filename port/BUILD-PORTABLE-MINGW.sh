#!/usr/bin/env bash
# Compila o runtime deste port para Windows, com MinGW-w64, e monta a pasta portatil portable-win64.
set -euo pipefail

fail() {
    echo "ERRO: $1" >&2
    exit 1
}

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
runtime=$root/runtime
build=$runtime/build-portable-mingw
dist=$root/portable-win64

command -v cmake >/dev/null || fail "CMake nao encontrado."
command -v x86_64-w64-mingw32-g++-posix >/dev/null || command -v x86_64-w64-mingw32-g++ >/dev/null ||
    fail "x86_64-w64-mingw32-g++ nao foi encontrado no PATH."
# As duas pastas sao apagadas; um link levaria isso para fora do port.
for folder in "$runtime" "$build" "$dist"; do
    [ ! -L "$folder" ] || fail "$folder e um link simbolico."
done

rm -rf -- "$build" "$dist"
mkdir -- "$dist"

generator=()
! command -v ninja >/dev/null || generator=(-G Ninja)
cmake -S "$runtime" -B "$build" "${generator[@]}" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$runtime/mingw-w64.cmake" || fail "A configuracao falhou."
cmake --build "$build" --parallel "$(getconf _NPROCESSORS_ONLN)" || fail "A compilacao falhou."
[ -f "$build/openbor-port.exe" ] || fail "openbor-port.exe nao foi encontrado apos a compilacao."

cp -- "$build/openbor-port.exe" "$dist/OpenBOR-Port.exe"
cp -RH -- "$root/assets" "$root/config" "$dist/"
[ ! -d "$root/saves" ] || cp -RH -- "$root/saves" "$dist/"

# launcher <nome>: um arquivo .cmd na pasta portatil, com o texto da entrada padrao.
launcher() {
    sed 's/$/\r/' >"$dist/$1"
}

launcher INICIAR-JOGO.cmd <<'CMD'
@echo off
cd /d "%~dp0"
start "" /wait "OpenBOR-Port.exe"
set RC=%ERRORLEVEL%
if not "%RC%"=="0" (
  echo.
  echo O jogo encerrou com erro %RC%.
  if exist runtime-startup.log type runtime-startup.log
  if exist runtime-crash.log type runtime-crash.log
  pause
)
exit /b %RC%
CMD

launcher DIAGNOSTICO.cmd <<'CMD'
@echo off
cd /d "%~dp0"
start "" /wait "OpenBOR-Port.exe" --diagnose
echo.
if exist runtime-startup.log type runtime-startup.log
if exist runtime-crash.log type runtime-crash.log
pause
CMD

launcher SMOKE-TESTE.cmd <<'CMD'
@echo off
cd /d "%~dp0"
start "" /wait "OpenBOR-Port.exe" --smoke-game --smoke-frames=600
set RC=%ERRORLEVEL%
echo.
if exist runtime-startup.log type runtime-startup.log
if exist runtime-crash.log type runtime-crash.log
if "%RC%"=="0" (echo SMOKE TESTE: OK) else (echo SMOKE TESTE: FALHOU codigo %RC%)
pause
exit /b %RC%
CMD

echo "Portatil Win64 pronto em: $dist"
