#include "CompressedAudio.hpp"

namespace port {

bool decodeCompressedAudio(const std::filesystem::path&, std::string_view, DecodedAudio&,
                           std::string& error) {
    error = kNoCompressedAudio;
    return false;
}

}  // namespace port
