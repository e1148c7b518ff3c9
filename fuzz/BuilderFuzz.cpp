// Whole small games on disk, through every command that reads one. A game is text: its files stand
// one behind the other, each behind a record separator and the letter of its kind (see kKinds).
//
// With TINDREL_COMPILE_TABLES in the environment the tables are also compiled, warnings as errors.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <string_view>

#include "Require.hpp"
#include "driver/Dispatch.hpp"
#include "platform/ExitCodes.hpp"
#include "platform/Process.hpp"
#include "platform/RemoveTree.hpp"

namespace fs = std::filesystem;
using tindrel::fuzz::require;

namespace {

constexpr char kSeparator = '\x1E';

// Where the n-th file of a kind lies: a digit takes the place of '*'.
struct Kind {
    char letter;
    std::string_view path;
};
constexpr std::array kKinds = {
    Kind{'R', "models.txt"},    Kind{'M', "chars/m*.txt"},  Kind{'L', "levels.txt"},
    Kind{'S', "levels/s*.txt"}, Kind{'E', "scenes/e*.txt"}, Kind{'C', "scripts/c*.c"},
    Kind{'V', "video.txt"},
};
constexpr std::string_view kRegistry = "load m0 data/chars/m0.txt\nload m1 data/chars/m1.txt\n";
constexpr std::string_view kLevels = "set a\nfile data/levels/s0.txt\nfile data/levels/s1.txt\n";

void write(const fs::path& path, std::string_view content) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary)
        .write(content.data(), static_cast<std::streamsize>(content.size()));
}

std::string read(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void writeGame(const fs::path& data, std::string_view text) {
    write(data / "models.txt", kRegistry);
    write(data / "levels.txt", kLevels);
    std::map<char, int> numbers;
    while (!text.empty()) {
        const std::size_t end = text.find(kSeparator);
        const std::string_view file = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        for (const Kind& kind : kKinds) {
            if (file.empty() || file.front() != kind.letter) continue;
            std::string path(kind.path);
            const std::size_t star = path.find('*');
            if (star != std::string::npos) {
                path[star] = static_cast<char>('0' + numbers[kind.letter]++ % 10);
            }
            write(data / path, file.substr(1));
        }
    }
}

std::map<fs::path, std::string> contentOf(const fs::path& folder) {
    std::map<fs::path, std::string> content;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        content[entry.path()] = entry.is_regular_file() ? read(entry.path()) : "";
    }
    return content;
}

// What holds a game's bytes as they are has its strict form beside it.
void checkJson(const fs::path& folder) {
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.path().extension() != ".json") continue;
        fs::path strict = entry.path();
        strict.replace_filename(entry.path().stem().string() + "-strict.json");
        const fs::path& file = fs::exists(strict) ? strict : entry.path();
        require(nlohmann::json::accept(read(file)), file.c_str());
    }
}

void compileTables(const fs::path& tables) {
    for (const char* table : {"GeneratedCharacters.cpp", "GeneratedStages.cpp"}) {
        require(tindrel::runCommand({"c++", "-std=c++20", "-fsyntax-only", "-Wall", "-Werror",
                                     (tables / table).string()}) == 0,
                "the tables compile without a warning");
    }
}

void run(const char* command, const fs::path& game, const fs::path& output) {
    std::ostringstream text;
    const int code =
        tindrel::runBuilder({"tindrel-builder", command, game.string(), output.string()},
                            {text, text}, [] { return std::optional<tindrel::Dialogs>(); });
    require(code == tindrel::kSuccess, command);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fs::path work = fs::temp_directory_path() /
                          ("tindrel-builder-fuzz-" + std::to_string(tindrel::processId()));
    const fs::path game = work / "game";
    writeGame(game / "data", {reinterpret_cast<const char*>(data), size});
    const auto before = contentOf(game);
    for (const char* command : {"analyze", "audit", "convert", "repair"}) {
        run(command, game, work / "out" / command);
    }
    require(contentOf(game) == before, "a game stays as it is");
    require(std::distance(fs::directory_iterator(work), fs::directory_iterator()) == 2,
            "nothing lies beside the output");
    checkJson(work / "out");
    if (std::getenv("TINDREL_COMPILE_TABLES") != nullptr) {
        compileTables(work / "out" / "convert" / "runtime" / "generated");
    }
    tindrel::removeTree(work);
    return 0;
}
