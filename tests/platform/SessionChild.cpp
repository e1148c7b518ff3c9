// session_child <way> <pak>: works with a temporary session until somebody interrupts it. Says
// "ready" when there is something to interrupt.

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string_view>
#include <thread>

#include "input/ArchiveExtraction.hpp"
#include "input/PakExtraction.hpp"
#include "input/PreparedInput.hpp"
#include "input/TempSession.hpp"
#include "platform/Companion.hpp"
#include "platform/Process.hpp"

namespace fs = std::filesystem;

namespace {

void sayReady() {
    std::cout << "ready" << std::endl;
}

// The game is read from the session.
void idle(const fs::path& pak) {
    const tindrel::PreparedInput input = tindrel::prepareInput(pak);
    sayReady();
    std::this_thread::sleep_for(std::chrono::minutes(1));
}

void unpack(const fs::path& pak) {
    const fs::path session = tindrel::createTempSession();
    // Nobody comes: the disk is not to be filled.
    for (int i = 0; i < 5000 && tindrel::extractPak(pak, session / std::to_string(i), nullptr);
         ++i) {
        if (i == 0) sayReady();
    }
}

#ifdef _WIN32

std::string self() {
    return (tindrel::builderFolder() / "session_child.exe").string();
}

// A tool with a helper in the background, both writing.
void runTools(const fs::path& pak) {
    const fs::path folder = tindrel::createTempSession() / "zip";
    tindrel::ArchiveTools tools = tindrel::windowsArchiveTools();
    tools.zip = [](const fs::path&, const fs::path& destination) {
        return tindrel::Command{self(), "helped", destination.string()};
    };
    tools.tar = tools.sevenZip = tools.zip;
    std::string error;
    static_cast<void>(
        tindrel::extractArchive(pak, folder, tindrel::ArchiveMethod::Zip, error, tools));
}

void runBuild(const fs::path&) {
    static_cast<void>(tindrel::runCommand({self(), "wait", "."}));
}

void wait() {
    sayReady();
    std::this_thread::sleep_for(std::chrono::minutes(1));
}

// Both leave by themselves after a minute.
void write(const fs::path& folder, const char* name) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    for (int i = 0; std::chrono::steady_clock::now() < end; ++i) {
        fs::create_directories(folder / name);
        std::ofstream(folder / name / std::to_string(i)) << i;
    }
}

void writeHelped(const fs::path& folder) {
    std::thread([&] {
        static_cast<void>(tindrel::startCompanion({self(), "write", folder.string()}));
        std::this_thread::sleep_for(std::chrono::seconds(1));
        sayReady();
    }).detach();
    write(folder, "tool");
}

#else

// A tool with a helper in the background, both writing; every other one fails at once.
void runTools(const fs::path& pak) {
    const fs::path folder = tindrel::createTempSession() / "zip";
    tindrel::ArchiveTools tools = tindrel::posixArchiveTools();
    tools.zip = [](const fs::path& archive, const fs::path& destination) {
        return tindrel::Command{
            "sh",
            "-c",
            "cd \"$2\"; (while [ $((i += 1)) -lt 99999 ]; do date >f$i; done) & echo $! $$ "
            ">\"$1\".pids;"
            "echo ready; while [ $((i += 1)) -lt 99999 ]; do mkdir -p a/b; date >a/b/c; done",
            "sh",
            archive.string(),
            destination.string()};
    };
    tools.tar = tools.sevenZip = tools.zip;
    std::string error;
    static_cast<void>(
        tindrel::extractArchive(pak, folder, tindrel::ArchiveMethod::Zip, error, tools));
}

// A command with a helper in the background, as a build is.
void runBuild(const fs::path& pak) {
    static_cast<void>(tindrel::runCommand(
        {"sh", "-c", "sleep 300 & echo $! $$ >\"$1\".pids; echo ready; wait", "sh", pak.string()}));
}

#endif

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) return 1;
    const std::string_view way = arguments[1];
    if (way == "idle") idle(arguments[2]);
    if (way == "unpack") unpack(arguments[2]);
    if (way == "tool") runTools(arguments[2]);
    if (way == "build") runBuild(arguments[2]);
#ifdef _WIN32
    if (way == "helped") writeHelped(arguments[2]);
    if (way == "write") write(arguments[2], "helper");
    if (way == "wait") wait();
#endif
    return 0;
}
