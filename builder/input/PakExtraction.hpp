#pragma once

// The PAK container, in which a whole game travels as one file. It comes from the internet, so that
// no field of it is believed.

#include <filesystem>
#include <string>

#include "input/ExtractionLimits.hpp"

namespace tindrel {

// Writes the files of the PAK below `output`/data, which is made if need be. True when at least one
// file was written and the index was walked to its end. Otherwise `error`, if given, says why, on a
// second line also where (the record's index, name, offset and fields), and what was written stays.
// Memory does not grow with the PAK.
[[nodiscard]] bool extractPak(const std::filesystem::path& pak, const std::filesystem::path& output,
                              std::string* error, const ExtractionLimits& limits = {});

}  // namespace tindrel
