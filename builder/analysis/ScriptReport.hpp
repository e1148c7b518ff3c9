#pragma once

#include <string>
#include <vector>

namespace tindrel {

// What a script uses and the port's script machine does not know.
struct ScriptReport {
    std::vector<std::string> names;      // distinct
    std::vector<std::string> mentioned;  // those of them that only comments and texts call

    [[nodiscard]] bool clean() const { return names.empty(); }
};

}  // namespace tindrel
