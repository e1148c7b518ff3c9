#pragma once

// A walk over a folder that anybody may have filled: nothing in it makes the walk fail.

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/FolderListing.hpp"

namespace tindrel {

// A path as its text alone. A path object keeps each of its elements as well, which is costly for
// the thousands of files of a game.
using NativePath = std::filesystem::path::string_type;

struct TreeEntry {
    NativePath native;         // the folder of the walk joined with the way to the entry
    std::string folded;        // the same in generic UTF-8 and lower case
    int depth = 1;             // number of elements below that folder
    bool regularFile = false;  // links to regular files included
    bool directory = false;    // links excluded
    bool symlink = false;
    std::error_code error;  // the type could not be told

    [[nodiscard]] std::filesystem::path path() const { return native; }

    // Parts of `folded`: the last element, and its extension with its dot.
    [[nodiscard]] std::string_view name() const;
    [[nodiscard]] std::string_view extension() const;
};

enum class WalkStep {
    Enter,  // go on, and into this entry if it is a directory
    Pass,   // go on without entering it
    Stop,
};

// Visits everything below `folder` by folded names, what a directory holds right behind it. Links
// are not followed. Lists every directory once, with one of them open at a time; one that cannot be
// listed to its end is reported to `unlisted`, if given, right after it was visited, and the walk
// goes on beside it.
void walkTree(
    const std::filesystem::path& folder, const std::function<WalkStep(TreeEntry& entry)>& visit,
    const std::function<void(const std::filesystem::path&, std::error_code)>& unlisted = {});

}  // namespace tindrel
