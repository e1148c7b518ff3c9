#include "toolchain/PortPackage.hpp"

#include <ostream>
#include <system_error>
#include <vector>

#include "PathEncoding.hpp"
#include "platform/ExitCodes.hpp"
#include "platform/FileReplace.hpp"
#include "platform/FileStatus.hpp"
#include "platform/FolderListing.hpp"
#include "platform/OutputFile.hpp"
#include "platform/ProgramArgument.hpp"
#include "platform/Progress.hpp"
#include "reader/DataPaths.hpp"
#include "toolchain/CmakeSearch.hpp"
#include "toolchain/PortBuild.hpp"
#include "toolchain/WindowsBuild.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view kPortFolders[] = {"assets", "config", "reports"};
constexpr std::string_view kReadme = "README-PORT.txt";

constexpr PackageText kWindowsTexts[] = {
    {"INICIAR-JOGO.cmd",
     "@echo off\n"
     "cd /d \"%~dp0\"\n"
     "start \"\" /wait \"OpenBOR-Port.exe\"\n"
     "set RC=%ERRORLEVEL%\n"
     "if not \"%RC%\"==\"0\" (\n"
     "  echo.\n"
     "  echo O jogo encerrou com erro %RC%.\n"
     "  if exist runtime-startup.log type runtime-startup.log\n"
     "  if exist runtime-crash.log type runtime-crash.log\n"
     "  pause\n"
     ")\n"
     "exit /b %RC%\n"},
    {"DIAGNOSTICO.cmd",
     "@echo off\n"
     "cd /d \"%~dp0\"\n"
     "start \"\" /wait \"OpenBOR-Port.exe\" --diagnose\n"
     "echo.\n"
     "if exist runtime-startup.log type runtime-startup.log\n"
     "if exist runtime-crash.log type runtime-crash.log\n"
     "pause\n"},
    {"SE-O-JOGO-FECHAR.txt",
     "Se o jogo abrir e fechar, execute DIAGNOSTICO.cmd.\n"
     "Os arquivos runtime-startup.log e runtime-crash.log ficam nesta mesma pasta.\n"
     "O EXE principal tambem mostra uma caixa de erro quando a inicializacao falha.\n"},
};

// They wait for a key only where someone can press one.
constexpr PackageText kLinuxTexts[] = {
    {"INICIAR-JOGO.sh",
     "#!/bin/sh\n"
     "cd \"$(dirname \"$0\")\" || exit 1\n"
     "./OpenBOR-Port\n"
     "RC=$?\n"
     "if [ \"$RC\" -ne 0 ]; then\n"
     "  echo\n"
     "  echo \"O jogo encerrou com erro $RC.\"\n"
     "  if [ -f runtime-startup.log ]; then cat runtime-startup.log; fi\n"
     "  if [ -f runtime-crash.log ]; then cat runtime-crash.log; fi\n"
     "  if [ -t 0 ]; then printf 'Pressione Enter para continuar. '; read -r _; fi\n"
     "fi\n"
     "exit \"$RC\"\n",
     true},
    {"DIAGNOSTICO.sh",
     "#!/bin/sh\n"
     "cd \"$(dirname \"$0\")\" || exit 1\n"
     "./OpenBOR-Port --diagnose\n"
     "echo\n"
     "if [ -f runtime-startup.log ]; then cat runtime-startup.log; fi\n"
     "if [ -f runtime-crash.log ]; then cat runtime-crash.log; fi\n"
     "if [ -t 0 ]; then printf 'Pressione Enter para continuar. '; read -r _; fi\n",
     true},
    {"SE-O-JOGO-FECHAR.txt",
     "Se o jogo abrir e fechar, execute DIAGNOSTICO.sh.\n"
     "Os arquivos runtime-startup.log e runtime-crash.log ficam nesta mesma pasta.\n"
     "O executavel principal tambem mostra o erro quando a inicializacao falha.\n"},
};

// Leads the run into another folder for as long as it lives: archive entries begin there.
class WorkingFolder {
  public:
    explicit WorkingFolder(const fs::path& folder) : before_(fs::current_path()) { change(folder); }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;
    ~WorkingFolder() {
        std::error_code ignored;
        fs::current_path(before_, ignored);
    }

  private:
    static void change(const fs::path& folder) {
        std::error_code error;
        fs::current_path(folder, error);
        if (error) throw fs::filesystem_error("current_path(const path&)", folder, error);
    }

    fs::path before_;
};

// The archive takes names in UTF-8 only; the port reads any other name as legacy text, too.
fs::path packagedName(const fs::path& name) {
    return PathEncoding::path(PathEncoding::utf8(name));
}

void copyFolder(const fs::path& from, const fs::path& to, Progress& progress,
                std::error_code& error) {
    fs::create_directories(to, error);
    if (error) return;
    std::vector<fs::path> names;
    listFolder(
        from, [&](NativeView name, fs::file_type) { names.emplace_back(name); }, error);
    for (const fs::path& name : names) {
        if (error) return;
        const fs::path target = to / packagedName(name);
        if (fs::is_directory(from / name, error)) {
            copyFolder(from / name, target, progress, error);
        } else if (!error) {
            copyFileOver(from / name, target, error);
            progress.advance();
        }
    }
}

// By the port's own rule, which its build script for a portable folder follows, too.
int packLibraries(const fs::path& port, const fs::path& stage, const Console& console) {
    const fs::path cmake = findCmake();
    if (cmake.empty()) return kSuccess;  // the ZIP will say so
    const fs::path executable = stage / executableNames(kHostSystem).finished;
    const fs::path rule = port / "runtime" / "PortableLibraries.cmake";
    const int code = runCommandEcho(
        console, {programArgument(cmake), "-DPROGRAM=" + programArgument(executable),
                  "-DFOLDER=" + programArgument(stage / "lib"), "-P", programArgument(rule)});
    if (code == 0) return kSuccess;
    console.err << "Erro empacotando lib: o CMake terminou com " << code << '\n';
    return kFoldersNotPacked;
}

int fillStage(const fs::path& port, const fs::path& stage, const Console& console, System target) {
    std::error_code error;
    {
        Progress progress("Empacotando", 0);
        for (const std::string_view folder : kPortFolders) {
            if (!tindrel::exists(port / folder)) continue;
            copyFolder(port / folder, stage / folder, progress, error);
            if (!error) continue;
            console.err << "Erro empacotando " << folder << ": " << error.message() << '\n';
            return kFoldersNotPacked;
        }
    }
    if (tindrel::exists(port / kReadme)) {
        std::error_code ignored;
        copyFileOver(port / kReadme, stage / kReadme, ignored);
    }
    const std::string_view executable = executableNames(target).finished;
    copyFileOver(port / executable, stage / executable, error);
    if (error) {
        console.err << "Erro copiando executavel portatil: " << error.message() << '\n';
        return kExecutableNotPacked;
    }
    if (target == System::kLinux) {
        if (const int code = packLibraries(port, stage, console); code != kSuccess) return code;
    }
    for (const PackageText& text : packageTexts(target)) {
        OutputFile file(stage / text.name);
        file << text.content;
        file.close();
        if (text.isProgram) {
            constexpr auto kExecute =
                fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
            fs::permissions(stage / text.name, kExecute, fs::perm_options::add);
        }
    }
    return kSuccess;
}

int makeZip(const PackagePaths& paths, const Console& console) {
    const WorkingFolder inParent(paths.parent);
    const Restored locale = nameFilesInUtf8();
    std::error_code ignored;
    fs::remove(paths.zip, ignored);
    const fs::path cmake = findCmake();
    if (cmake.empty()) {
        console.err << "Erro: CMake nao encontrado para criar o ZIP portatil.\n";
        return kNoZip;
    }
    const int code = runCommandEcho(
        console, {programArgument(cmake), "-E", "tar", "cf", programArgument(paths.zip),
                  "--format=zip", programArgument(paths.stage.filename())});
    return code == 0 ? kSuccess : kNoZip;
}

}  // namespace

std::span<const PackageText> packageTexts(System system) {
    if (system == System::kWindows) return kWindowsTexts;
    return kLinuxTexts;
}

PackagePaths packagePaths(const fs::path& portFolder, System target) {
    // A path that ends in a separator or a dot has no last name of its own.
    fs::path port = portFolder.lexically_normal();
    if (port.filename().empty()) port = port.parent_path();
    fs::path stage = port.parent_path() / port.filename();
    stage += "-Portable-";
    stage += packagePlatform(target);
    fs::path zip = stage;
    zip += ".zip";
    return {port.parent_path(), std::move(stage), std::move(zip)};
}

int packagePort(const fs::path& portFolder, const Console& console, System target) {
    const fs::path port = tindrel::absolute(portFolder);
    if (!isDirectory(port / "assets" / "openbor-data") ||
        !tindrel::exists(port / "runtime" / "CMakeLists.txt")) {
        console.err << "Erro: a pasta nao parece ser um port gerado valido.\n";
        return kNoPort;
    }
    const auto build = target == kHostSystem ? buildPort : buildPortForWindows;
    if (const int code = build(port, console); code != kSuccess) return code;

    const PackagePaths paths = packagePaths(port, target);
    std::error_code error;
    removeAll(paths.stage, error);
    if (error) throw fs::filesystem_error("remove_all", paths.stage, error);
    createDirectories(paths.stage);
    if (const int code = fillStage(port, paths.stage, console, target); code != kSuccess)
        return code;
    if (const int code = makeZip(paths, console); code != kSuccess) return code;
    console.out << "PACKAGE SUCCESS: " << displayPath(paths.zip) << '\n';
    return kSuccess;
}

void checkExists(const fs::path& root, int& failures, std::string_view relative,
                 const Console& console) {
    if (tindrel::exists(root / relative)) {
        console.out << "[PASS] " << relative << '\n';
        return;
    }
    console.err << "[FAIL] missing " << relative << '\n';
    ++failures;
}

}  // namespace tindrel
