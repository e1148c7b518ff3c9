#pragma once

// What turns a canvas into a picture file, by a library where there is one.

#include <filesystem>
#include <string>

#include "SpriteImage.hpp"

namespace port {

// Writes the colours as an opaque PNG file, whole or not at all: the file appears under its name
// when it is complete, and replaces what had the name. False with `error` set when that fails.
[[nodiscard]] bool encodePng(const SpriteImage& image, const std::filesystem::path& path,
                             std::string& error);

}  // namespace port
