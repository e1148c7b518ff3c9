#pragma once

// What decodes compressed music: the system's own decoders or a library.

#include <filesystem>
#include <stop_token>
#include <string>
#include <string_view>

#include "AudioDecoder.hpp"

namespace port {

// `extension` is that of the path, in lower case, with its dot. Fills `out` and returns true, or
// sets `error` and returns false. Several threads may call it at a time; one that is asked to stop
// fails soon.
[[nodiscard]] bool decodeCompressedAudio(const std::filesystem::path& path,
                                         std::string_view extension, DecodedAudio& out,
                                         std::string& error, const std::stop_token& stop);

// The answer where nothing decodes a format.
constexpr const char* kNoCompressedAudio =
    "compressed audio requires the Windows Media Foundation backend in this generated runtime";

}  // namespace port
