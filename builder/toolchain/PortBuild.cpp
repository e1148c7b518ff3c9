#include "toolchain/PortBuild.hpp"

#include <ostream>
#include <system_error>

#include "platform/ExitCodes.hpp"
#include "platform/FileReplace.hpp"
#include "platform/FileStatus.hpp"
#include "platform/Process.hpp"
#include "platform/ProgramArgument.hpp"
#include "reader/DataPaths.hpp"
#include "toolchain/CmakeSearch.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

// Without a trace of an earlier try: its cache would hold on to that try's generator.
int configureFresh(const Console& console, const fs::path& buildFolder,
                   const std::vector<std::string>& command) {
    std::error_code ignored;
    removeAll(buildFolder, ignored);
    fs::create_directories(buildFolder, ignored);
    return runCommandEcho(console, command);
}

bool configure(const Console& console, const fs::path& cmake, const fs::path& runtimeFolder,
               const fs::path& buildFolder) {
    const std::vector<std::string> base = {
        programArgument(cmake),         "-S",
        programArgument(runtimeFolder), "-B",
        programArgument(buildFolder),   "-DCMAKE_BUILD_TYPE=Release"};
    const bool hasNinja = kHostSystem == System::kLinux && !searchProgram("ninja").empty();
    for (const auto& more : configurations(kHostSystem, hasNinja)) {
        std::vector<std::string> command = base;
        command.insert(command.end(), more.begin(), more.end());
        if (configureFresh(console, buildFolder, command) == 0) return true;
    }
    return false;
}

fs::path findBuiltFile(const fs::path& buildFolder) {
    std::error_code error;
    fs::recursive_directory_iterator it(buildFolder, fs::directory_options::skip_permission_denied,
                                        error);
    for (; !error && it != fs::recursive_directory_iterator(); it.increment(error)) {
        std::error_code unreadable;
        if (it->path().filename() == executableNames(kHostSystem).built &&
            it->is_regular_file(unreadable)) {
            return it->path();
        }
    }
    return {};
}

}  // namespace

std::vector<std::vector<std::string>> configurations(System system, bool hasNinja) {
    if (system == System::kLinux) {
        if (!hasNinja) return {{}};
        return {{"-G", "Ninja"}, {}};
    }
    const std::string staticRuntime = "-DCMAKE_MSVC_RUNTIME_LIBRARY=MultiThreaded";
    return {
        {"-G", "Visual Studio 18 2026", "-A", "x64", "-T", "ClangCL", staticRuntime},
        {"-G", "Visual Studio 17 2022", "-A", "x64", "-T", "ClangCL", staticRuntime},
        {"-A", "x64", staticRuntime},
        {},
    };
}

int runCommandEcho(const Console& console, const std::vector<std::string>& command) {
    console.out << '>';
    for (const std::string& argument : command) console.out << " \"" << argument << '"';
    console.out << '\n' << std::flush;
    return runCommand(command);
}

int buildPort(const fs::path& portFolder, const Console& console) {
    const fs::path runtimeFolder = portFolder / "runtime";
    if (!tindrel::exists(runtimeFolder / "CMakeLists.txt")) {
        console.err << "Erro: runtime/CMakeLists.txt nao encontrado em " << displayPath(portFolder)
                    << '\n';
        return kNoCmake;
    }
    const fs::path buildFolder = runtimeFolder / "build";
    createDirectories(buildFolder);
    const fs::path cmake = findCmake();
    if (cmake.empty()) {
        console.err << "Erro: CMake nao foi encontrado. Instale o CMake/Visual Studio Build Tools "
                       "ou coloque um CMake portatil em tools/cmake/bin ao lado do Builder.\n";
        return kNoCmake;
    }
    if (!configure(console, cmake, runtimeFolder, buildFolder)) return kNotConfigured;
    if (runCommandEcho(console, {programArgument(cmake), "--build", programArgument(buildFolder),
                                 "--config", "Release"}) != 0) {
        return kNotCompiled;
    }
    const fs::path built = findBuiltFile(buildFolder);
    if (built.empty()) {
        console.err << "Erro: compilacao terminou sem localizar openbor-port.\n";
        return kNoExecutable;
    }
    const fs::path finished = portFolder / executableNames(kHostSystem).finished;
    std::error_code error;
    copyFileOver(built, finished, error);
    if (error) {
        console.err << "Erro copiando runtime final: " << error.message() << '\n';
        return kExecutableNotCopied;
    }
    console.out << "NATIVE BUILD SUCCESS: " << displayPath(tindrel::absolute(finished)) << '\n';
    return kSuccess;
}

}  // namespace tindrel
