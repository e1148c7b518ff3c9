#pragma once

// A walk over a folder that anybody may have filled: nothing in it makes the walk fail.

#include <filesystem>
#include <functional>

namespace tindrel {

struct WalkEntry {
    std::filesystem::path path;  // the folder of the walk joined with the way to the entry
    int depth = 1;               // number of elements below that folder
    bool link = false;
    bool directory = false;    // links excluded
    bool regularFile = false;  // links to regular files included
};

enum class WalkStep {
    Enter,  // go on, and into this entry if it is a directory
    Pass,   // go on without entering it
    Stop,
};

// Visits everything below `folder`, a directory before what it holds, in no other order. Links are
// not followed. Lists every directory once, with one of them open at a time; one that cannot be
// listed to its end is reported to `unlisted`, if given, and the walk goes on beside it.
void walkTree(const std::filesystem::path& folder,
              const std::function<WalkStep(const WalkEntry&)>& visit,
              const std::function<void(const std::filesystem::path&)>& unlisted = {});

}  // namespace tindrel
