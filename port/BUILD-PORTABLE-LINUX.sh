#!/usr/bin/env bash
# Compila o runtime deste port e monta a pasta portatil portable-linux64.
set -euo pipefail

fail() {
    echo "ERRO: $1" >&2
    exit 1
}

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
runtime=$root/runtime
build=$runtime/build-portable-linux64
dist=$root/portable-linux64

command -v cmake >/dev/null || fail "CMake nao encontrado."
# As duas pastas sao apagadas; um link levaria isso para fora do port.
for folder in "$runtime" "$build" "$dist"; do
    [ ! -L "$folder" ] || fail "$folder e um link simbolico."
done

rm -rf -- "$build" "$dist"
mkdir -- "$dist"

cmake -S "$runtime" -B "$build" -DCMAKE_BUILD_TYPE=Release ||
    fail "Nenhum toolchain Linux conseguiu configurar o runtime."
cmake --build "$build" --config Release --parallel "$(getconf _NPROCESSORS_ONLN)" || fail "A compilacao falhou."
[ -f "$build/openbor-port" ] || fail "openbor-port nao foi encontrado apos a compilacao."

cp -- "$build/openbor-port" "$dist/OpenBOR-Port"
cmake -DPROGRAM="$dist/OpenBOR-Port" -DFOLDER="$dist/lib" -P "$runtime/PortableLibraries.cmake" ||
    fail "As bibliotecas nao puderam ser empacotadas."
cp -RH -- "$root/assets" "$root/config" "$dist/"
[ ! -d "$root/saves" ] || cp -RH -- "$root/saves" "$dist/"

# launcher <nome>: um script executavel na pasta portatil, com o texto da entrada padrao.
launcher() {
    cat >"$dist/$1"
    chmod +x -- "$dist/$1"
}

launcher INICIAR-JOGO.sh <<'SCRIPT'
#!/bin/sh
cd "$(dirname "$0")" || exit 1
./OpenBOR-Port
code=$?
if [ "$code" -ne 0 ]; then
    echo
    echo "O jogo encerrou com erro $code."
    [ ! -f runtime-startup.log ] || cat runtime-startup.log
    [ ! -f runtime-crash.log ] || cat runtime-crash.log
fi
exit "$code"
SCRIPT

launcher DIAGNOSTICO.sh <<'SCRIPT'
#!/bin/sh
cd "$(dirname "$0")" || exit 1
./OpenBOR-Port --diagnose
code=$?
echo
[ ! -f runtime-startup.log ] || cat runtime-startup.log
[ ! -f runtime-crash.log ] || cat runtime-crash.log
exit "$code"
SCRIPT

launcher SMOKE-TESTE.sh <<'SCRIPT'
#!/bin/sh
cd "$(dirname "$0")" || exit 1
./OpenBOR-Port --smoke-game --smoke-frames=600
code=$?
echo
[ ! -f runtime-startup.log ] || cat runtime-startup.log
[ ! -f runtime-crash.log ] || cat runtime-crash.log
if [ "$code" -eq 0 ]; then
    echo "SMOKE TESTE: OK"
else
    echo "SMOKE TESTE: FALHOU codigo $code"
fi
exit "$code"
SCRIPT

echo "Portatil Linux64 pronto em: $dist"
