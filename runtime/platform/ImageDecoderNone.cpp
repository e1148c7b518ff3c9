#include "ImageDecoder.hpp"

namespace port {

bool canDecodeImages() {
    return false;
}

bool decodeImage(std::span<const std::uint8_t>, DecodedImage&, std::string& error) {
    return failImage(error, "this port has no picture decoder");
}

bool decodeAnimation(std::span<const std::uint8_t>, DecodedAnimation&, std::string& error) {
    return failImage(error, "this port has no picture decoder");
}

}  // namespace port
