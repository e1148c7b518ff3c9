#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tindrel {

// What a script uses and the port's script machine does not know.
struct ScriptReport {
    std::vector<std::string> names;      // distinct
    std::vector<std::string> mentioned;  // those of them that only comments and texts call
    // Lines of its own text, from 1, with calls that nobody would know to the letter.
    std::vector<std::uint64_t> mendedLines;

    [[nodiscard]] bool clean() const { return names.empty(); }
    [[nodiscard]] std::string joinedNames(std::string_view separator) const {
        std::string joined;
        for (const std::string& name : names) {
            if (!joined.empty()) joined += separator;
            joined += name;
        }
        return joined;
    }
};

}  // namespace tindrel
