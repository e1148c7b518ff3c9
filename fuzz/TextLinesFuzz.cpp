#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "PathEncoding.hpp"
#include "Require.hpp"
#include "reader/TextLines.hpp"
#include "reader/Tokens.hpp"

using tindrel::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tindrel::TextFile parsed(std::string(reinterpret_cast<const char*>(data), size));
    const tindrel::TextFile file = std::move(parsed);
    std::uint64_t last = 0;
    for (const tindrel::TextLine& line : file) {
        require(line.line > last, "lines are numbered upwards");
        last = line.line;
        require(!line.command().empty(), "a line has a command");
        require(std::none_of(line.command().begin(), line.command().end(), tindrel::isSpace),
                "a command is one word");
        require(line.key == tindrel::toLower(line.command()), "the key is the folded command");
        require(line.text().empty() || line.key == "@script", "only a script block has a body");
        require(PathEncoding::validUtf8(line.text()), "a body is valid UTF-8");
        for (const std::string_view arg : line.args) {
            require(!arg.empty(), "no token is empty");
            require(line.key == "@cmd" || arg.find('#') == arg.npos, "comments are cut");
            require(PathEncoding::validUtf8(arg), "a token is valid UTF-8");
        }
    }
    return 0;
}
