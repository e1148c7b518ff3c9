#include "CompressedAudio.hpp"

namespace port {

bool decodeCompressedAudio(const std::filesystem::path&, std::string_view, DecodedAudio&,
                           std::string& error, const std::stop_token&) {
    error = kNoCompressedAudio;
    return false;
}

}  // namespace port
