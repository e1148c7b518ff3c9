@echo off
where cmake >nul 2>nul
if errorlevel 1 (
  echo ERRO: CMake nao encontrado.
  pause
  exit /b 1
)
powershell -NoProfile -ExecutionPolicy Bypass -File "%~dp0BUILD-PORTABLE-WINDOWS.ps1"
set RC=%ERRORLEVEL%
if not "%RC%"=="0" pause
exit /b %RC%
