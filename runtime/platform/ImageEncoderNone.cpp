#include "ImageEncoder.hpp"

namespace port {

bool encodePng(const SpriteImage&, const std::filesystem::path&, std::string& error) {
    error = "this build cannot write PNG files";
    return false;
}

}  // namespace port
