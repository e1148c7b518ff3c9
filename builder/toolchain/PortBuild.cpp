#include "toolchain/PortBuild.hpp"

#include <ostream>
#include <system_error>

#include "platform/ExitCodes.hpp"
#include "platform/FileReplace.hpp"
#include "platform/FileStatus.hpp"
#include "platform/Process.hpp"
#include "platform/ProgramArgument.hpp"
#include "reader/DataPaths.hpp"
#include "reader/TreeWalk.hpp"
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

struct BuildPaths {
    fs::path port, runtime, build, finished;

    explicit BuildPaths(const fs::path& portFolder)
        : port(portFolder),
          runtime(port / "runtime"),
          build(runtime / "build"),
          finished(port / executableNames(kHostSystem).finished) {}
};

// Finds what a build needs: the project, and a CMake.
int prepare(const BuildPaths& paths, fs::path& cmake, const Console& console) {
    if (!tindrel::exists(paths.runtime / "CMakeLists.txt")) {
        console.err << "Erro: runtime/CMakeLists.txt nao encontrado em " << displayPath(paths.port)
                    << '\n';
        return kNoCmake;
    }
    createDirectories(paths.build);
    cmake = findCmake();
    if (cmake.empty()) {
        console.err << "Erro: CMake nao foi encontrado. Instale o CMake/Visual Studio Build Tools "
                       "ou coloque um CMake portatil em tools/cmake/bin ao lado do Builder.\n";
        return kNoCmake;
    }
    return kSuccess;
}

bool configure(const Console& console, const fs::path& cmake, const BuildPaths& paths) {
    const std::vector<std::string> base = {
        programArgument(cmake),         "-S",
        programArgument(paths.runtime), "-B",
        programArgument(paths.build),   "-DCMAKE_BUILD_TYPE=Release"};
    const bool hasNinja = kHostSystem == System::kLinux && !searchProgram("ninja").empty();
    for (const auto& more : configurations(kHostSystem, hasNinja)) {
        std::vector<std::string> command = base;
        command.insert(command.end(), more.begin(), more.end());
        if (configureFresh(console, paths.build, command) == 0) return true;
    }
    return false;
}

fs::path findBuiltFile(const fs::path& buildFolder) {
    fs::path found;
    walkTree(buildFolder, [&](const TreeEntry& entry) {
        const bool isBuilt =
            entry.regularFile && entry.path().filename() == executableNames(kHostSystem).built;
        if (isBuilt) found = entry.path();
        return isBuilt ? WalkStep::Stop : WalkStep::Enter;
    });
    return found;
}

int compile(const Console& console, const fs::path& cmake, const BuildPaths& paths) {
    const int code = runCommandEcho(console, {programArgument(cmake), "--build",
                                              programArgument(paths.build), "--config", "Release"});
    return code == 0 ? kSuccess : kNotCompiled;
}

// A copy beside the old file takes its place in one step, also while that file runs, where the
// system allows it.
std::error_code putInPlace(const fs::path& built, const fs::path& finished) {
    fs::path copy = finished;
    copy += ".new";
    std::error_code error, ignored;
    copyFileOver(built, copy, error);
    if (!error) fs::rename(copy, finished, error);
    if (error) fs::remove(copy, ignored);
    return error;
}

int finish(const BuildPaths& paths, const Console& console) {
    const fs::path built = findBuiltFile(paths.build);
    if (built.empty()) {
        console.err << "Erro: compilacao terminou sem localizar openbor-port.\n";
        return kNoExecutable;
    }
    if (const std::error_code error = putInPlace(built, paths.finished)) {
        console.err << "Erro copiando runtime final: " << error.message() << '\n';
        return kExecutableNotCopied;
    }
    console.out << "NATIVE BUILD SUCCESS: " << displayPath(tindrel::absolute(paths.finished))
                << '\n';
    return kSuccess;
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
    const BuildPaths paths(portFolder);
    fs::path cmake;
    if (const int code = prepare(paths, cmake, console); code != kSuccess) return code;
    if (!configure(console, cmake, paths)) return kNotConfigured;
    if (const int code = compile(console, cmake, paths); code != kSuccess) return code;
    return finish(paths, console);
}

int rebuildPort(const fs::path& portFolder, const Console& console,
                const std::function<void()>& replacing) {
    const BuildPaths paths(portFolder);
    fs::path cmake;
    if (const int code = prepare(paths, cmake, console); code != kSuccess) return code;
    if (!tindrel::exists(paths.build / "CMakeCache.txt") && !configure(console, cmake, paths)) {
        return kNotConfigured;
    }
    if (const int code = compile(console, cmake, paths); code != kSuccess) return code;
    replacing();
    return finish(paths, console);
}

}  // namespace tindrel
