# Compila o runtime deste port e monta a pasta portatil portable-win64, com MinGW-w64 e Ninja.
$ErrorActionPreference = 'Stop'

$Root = Split-Path -Parent $MyInvocation.MyCommand.Path
$Runtime = Join-Path $Root 'runtime'
$Build = Join-Path $Runtime 'build-portable-mingw'
$Dist = Join-Path $Root 'portable-win64'

function Remove-Folder([string]$Path) {
    if (Test-Path -LiteralPath $Path) { Remove-Item -LiteralPath $Path -Recurse -Force }
}

function Find-Compiler([string]$Name) {
    $Found = Get-Command $Name -CommandType Application -ErrorAction SilentlyContinue | Select-Object -First 1
    if (-not $Found) { throw "$Name nao foi encontrado no PATH." }
    # CMake reads a backslash as the start of an escape.
    return $Found.Source.Replace('\', '/')
}

$Gxx = Find-Compiler 'x86_64-w64-mingw32-g++'
$Gcc = Find-Compiler 'x86_64-w64-mingw32-gcc'

Remove-Folder $Build
Remove-Folder $Dist
New-Item -ItemType Directory -Path $Dist | Out-Null

& cmake -S $Runtime -B $Build -G Ninja -DCMAKE_BUILD_TYPE=Release "-DCMAKE_C_COMPILER=$Gcc" "-DCMAKE_CXX_COMPILER=$Gxx"
if ($LASTEXITCODE -ne 0) { throw "A configuracao falhou com o codigo $LASTEXITCODE." }

& cmake --build $Build
if ($LASTEXITCODE -ne 0) { throw "A compilacao falhou com o codigo $LASTEXITCODE." }

Copy-Item -LiteralPath (Join-Path $Build 'openbor-port.exe') -Destination (Join-Path $Dist 'OpenBOR-Port.exe')
Copy-Item -LiteralPath (Join-Path $Root 'assets') -Destination $Dist -Recurse
Copy-Item -LiteralPath (Join-Path $Root 'config') -Destination $Dist -Recurse
$Saves = Join-Path $Root 'saves'
if (Test-Path -LiteralPath $Saves) { Copy-Item -LiteralPath $Saves -Destination $Dist -Recurse }

@(
    '@echo off',
    'cd /d "%~dp0"',
    'start "" /wait "OpenBOR-Port.exe"',
    'set RC=%ERRORLEVEL%',
    'if not "%RC%"=="0" (',
    '  echo.',
    '  echo O jogo encerrou com erro %RC%.',
    '  if exist runtime-startup.log type runtime-startup.log',
    '  if exist runtime-crash.log type runtime-crash.log',
    '  pause',
    ')',
    'exit /b %RC%'
) | Set-Content -LiteralPath (Join-Path $Dist 'INICIAR-JOGO.cmd') -Encoding ASCII

@(
    '@echo off',
    'cd /d "%~dp0"',
    'start "" /wait "OpenBOR-Port.exe" --diagnose',
    'echo.',
    'if exist runtime-startup.log type runtime-startup.log',
    'if exist runtime-crash.log type runtime-crash.log',
    'pause'
) | Set-Content -LiteralPath (Join-Path $Dist 'DIAGNOSTICO.cmd') -Encoding ASCII

@(
    '@echo off',
    'cd /d "%~dp0"',
    'start "" /wait "OpenBOR-Port.exe" --smoke-game --smoke-frames=600',
    'set RC=%ERRORLEVEL%',
    'echo.',
    'if exist runtime-startup.log type runtime-startup.log',
    'if exist runtime-crash.log type runtime-crash.log',
    'if "%RC%"=="0" (echo SMOKE TESTE: OK) else (echo SMOKE TESTE: FALHOU codigo %RC%)',
    'pause',
    'exit /b %RC%'
) | Set-Content -LiteralPath (Join-Path $Dist 'SMOKE-TESTE.cmd') -Encoding ASCII

Write-Host "Portatil Win64 pronto em: $Dist"
