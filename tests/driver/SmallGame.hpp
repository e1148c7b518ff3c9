#pragma once

// Games of a few lines, as the driver is given them.

#include <string>

#include "TempFolder.hpp"

namespace tindrel::test {

// One model and one stage, nothing of which the port leaves undone.
// A model without an animation would be dropped.
inline void writeGame(const TempFolder& folder, const std::string& name) {
    folder.write(name + "/data/models.txt", "load Hero data/chars/hero.txt\n");
    folder.write(name + "/data/chars/hero.txt",
                 "name Hero\ntype player\nhealth 100\nanim idle\nframe data/chars/hero.gif\n");
    folder.write(name + "/data/chars/hero.gif", "GIF89a");
    folder.write(name + "/data/levels.txt", "set Main\nfile data/levels/one.txt\n");
    folder.write(name + "/data/levels/one.txt", "spawn Hero\ncoords 10 200\nat 0\n");
}

inline constexpr const char* kCleanCounters =
    "Compatibility: text_files=4 models=1 stages=1 animations=1 scripts=0 resolution=320x240 "
    "supported=11 partial=0 unsupported=0 unknown=0\n";

}  // namespace tindrel::test
