#include "analysis/ScriptKnownNames.hpp"

#include <array>
#include <unordered_set>

namespace tindrel {
namespace {

// Keywords that look like calls, and the script machine's own functions.
constexpr auto kWordsOfTheLanguage = std::to_array<std::string_view>({
    "main",
    "if",
    "while",
    "for",
    "switch",
    "getglobalvar",
    "setglobalvar",
    "clearglobalvar",
    "getglobalvarindex",
    "setglobalvarindex",
    "maxglobalvarindex",
    "getindexedvar",
    "setindexedvar",
    "clearindexedvar",
    "getlocalvar",
    "setlocalvar",
    "clearlocalvar",
    "getlocalvarindex",
    "setlocalvarindex",
    "array",
    "size",
    "get",
    "set",
    "add",
    "delete",
    "next",
    "previous",
    "reset",
    "value",
    "isempty",
    "rand",
    "null",
});

enum class Screening { SCREENED, UNSCREENED, MENDED };

struct HostName {
    std::string_view name;
    Screening screening;
};

// The game's functions, from the very table by which a port answers them: nothing is promised that
// a port lacks.
constexpr auto kHostNames = std::to_array<HostName>({
#define HOST_FUNCTION(name, needs, function, screening, beforehand) {#name, Screening::screening},
#include "host/HostFunctions.def"
#undef HOST_FUNCTION
});

std::unordered_set<std::string_view> allKnownNames() {
    std::unordered_set<std::string_view> names(kWordsOfTheLanguage.begin(),
                                               kWordsOfTheLanguage.end());
    for (const HostName& function : kHostNames) {
        if (function.screening == Screening::SCREENED) names.insert(function.name);
    }
    return names;
}

std::unordered_set<std::string_view> allMendedNames() {
    std::unordered_set<std::string_view> names{"return"};
    for (const HostName& function : kHostNames) {
        if (function.screening == Screening::MENDED) names.insert(function.name);
    }
    return names;
}

}  // namespace

const std::unordered_set<std::string_view>& knownScriptNames() {
    static const std::unordered_set<std::string_view> kNames = allKnownNames();
    return kNames;
}

const std::unordered_set<std::string_view>& mendedScriptNames() {
    static const std::unordered_set<std::string_view> kNames = allMendedNames();
    return kNames;
}

}  // namespace tindrel
