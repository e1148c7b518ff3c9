#include "toolchain/WindowsBuild.hpp"

#include <ostream>
#include <string>
#include <system_error>
#include <vector>

#include "platform/ExitCodes.hpp"
#include "platform/FileReplace.hpp"
#include "platform/FileStatus.hpp"
#include "platform/Process.hpp"
#include "platform/ProgramArgument.hpp"
#include "reader/DataPaths.hpp"
#include "toolchain/CmakeSearch.hpp"
#include "toolchain/PortBuild.hpp"

namespace tindrel {
namespace fs = std::filesystem;

int buildPortForWindows(const fs::path& portFolder, const Console& console) {
    const fs::path runtime = portFolder / "runtime";
    const fs::path toolchain = runtime / "mingw-w64.cmake";
    if (!tindrel::exists(toolchain)) {
        console.err << "Erro: runtime/mingw-w64.cmake nao encontrado em " << displayPath(portFolder)
                    << '\n';
        return kNoCmake;
    }
    const fs::path cmake = findCmake();
    if (cmake.empty()) {
        console.err << "Erro: CMake nao foi encontrado.\n";
        return kNoCmake;
    }
    // Beside the folder of this system's own build, and begun anew as that one.
    const fs::path build = runtime / "build-mingw";
    std::error_code ignored;
    removeAll(build, ignored);
    createDirectories(build);
    std::vector<std::string> configure = {
        programArgument(cmake),
        "-S",
        programArgument(runtime),
        "-B",
        programArgument(build),
        "-DCMAKE_BUILD_TYPE=Release",
        "-DCMAKE_TOOLCHAIN_FILE=" + programArgument(tindrel::absolute(toolchain))};
    if (!searchProgram("ninja").empty()) configure.insert(configure.end(), {"-G", "Ninja"});
    if (runCommandEcho(console, configure) != 0) {
        console.err << "Erro: o MinGW-w64 (x86_64-w64-mingw32-g++) nao configurou o runtime.\n";
        return kNotConfigured;
    }
    if (runCommandEcho(console, {programArgument(cmake), "--build", programArgument(build),
                                 "--parallel"}) != 0) {
        return kNotCompiled;
    }
    const ExecutableNames names = executableNames(System::kWindows);
    if (!tindrel::exists(build / names.built)) {
        console.err << "Erro: compilacao terminou sem localizar openbor-port.\n";
        return kNoExecutable;
    }
    const fs::path finished = portFolder / names.finished;
    std::error_code error;
    copyFileOver(build / names.built, finished, error);
    if (error) {
        console.err << "Erro copiando runtime final: " << error.message() << '\n';
        return kExecutableNotCopied;
    }
    console.out << "WINDOWS BUILD SUCCESS: " << displayPath(tindrel::absolute(finished)) << '\n';
    return kSuccess;
}

}  // namespace tindrel
