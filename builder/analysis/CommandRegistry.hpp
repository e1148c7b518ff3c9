#pragma once

// The one statement of what the builder knows about the OpenBOR language: for every command word,
// how far a converted game honours it.

#include <string_view>
#include <vector>

namespace tindrel {

enum class CompatStatus { kSupported = 0, kPartial, kUnsupported, kIgnoredSafely, kUnknown };

// "SUPPORTED", "PARTIAL", "UNSUPPORTED", "IGNORED_SAFELY"; "UNKNOWN" for anything else.
[[nodiscard]] std::string_view compatStatusName(CompatStatus status);

struct CommandRule {
    CompatStatus status = CompatStatus::kUnknown;
    bool parserSupported = false;   // the reader understands the command
    bool runtimeSupported = false;  // the port's runtime acts on it
    std::string_view impact;        // sentence for the reports, static; may be empty
};

// The verdict on a word in any case, whatever file it stands in. Pure.
[[nodiscard]] CommandRule lookupCommand(std::string_view command);

// Every word of the registry, in its order; a word of several rows comes with each.
[[nodiscard]] std::vector<std::string_view> registryWords();

// The word that a misspelt one most likely means: the nearest in spelling among the registry's.
// Empty when none is near. `command` is in lower case.
[[nodiscard]] std::string_view closestCommand(std::string_view command);

}  // namespace tindrel
