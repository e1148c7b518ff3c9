# Compila o runtime deste port e monta a pasta portatil portable-win64.
$ErrorActionPreference = 'Stop'

$Root = Split-Path -Parent $MyInvocation.MyCommand.Path
$Runtime = Join-Path $Root 'runtime'
$Build = Join-Path $Runtime 'build-portable-win64'
$Dist = Join-Path $Root 'portable-win64'

function Remove-Folder([string]$Path) {
    if (Test-Path -LiteralPath $Path) { Remove-Item -LiteralPath $Path -Recurse -Force }
}

Remove-Folder $Build
Remove-Folder $Dist
New-Item -ItemType Directory -Path $Dist | Out-Null

$Attempts = @(
    @('-G', 'Visual Studio 18 2026', '-A', 'x64', '-T', 'ClangCL', '-DCMAKE_MSVC_RUNTIME_LIBRARY=MultiThreaded'),
    @('-G', 'Visual Studio 17 2022', '-A', 'x64', '-T', 'ClangCL', '-DCMAKE_MSVC_RUNTIME_LIBRARY=MultiThreaded'),
    @('-A', 'x64', '-DCMAKE_MSVC_RUNTIME_LIBRARY=MultiThreaded'),
    @(, '-DCMAKE_BUILD_TYPE=Release')
)
$Configured = $false
foreach ($Attempt in $Attempts) {
    Remove-Folder $Build
    & cmake -S $Runtime -B $Build @Attempt
    if ($LASTEXITCODE -eq 0) {
        $Configured = $true
        break
    }
}
if (-not $Configured) { throw 'Nenhum toolchain Windows conseguiu configurar o runtime.' }

& cmake --build $Build --config Release
if ($LASTEXITCODE -ne 0) { throw "A compilacao falhou com o codigo $LASTEXITCODE." }

$Exe = Get-ChildItem -LiteralPath $Build -Recurse -File -Filter 'openbor-port.exe' | Select-Object -First 1
if (-not $Exe) { throw 'openbor-port.exe nao foi encontrado apos a compilacao.' }

Copy-Item -LiteralPath $Exe.FullName -Destination (Join-Path $Dist 'OpenBOR-Port.exe')
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
