@echo off
cd /d "%~dp0"
if not exist "portable-win64\OpenBOR-Port.exe" call "BUILD-PORTABLE-WINDOWS.cmd"
if not exist "portable-win64\OpenBOR-Port.exe" (
  echo ERRO: executavel nao foi gerado.
  pause
  exit /b 1
)
call "portable-win64\INICIAR-JOGO.cmd"
