#pragma once

// Decoded effects, kept as long as they fit, since games play the same few many times a second.

#include <cstddef>
#include <filesystem>
#include <list>
#include <memory>
#include <string>
#include <unordered_map>

#include "AudioDecoder.hpp"
#include "FileStamp.hpp"

namespace port {

class EffectCache {
  public:
    explicit EffectCache(std::size_t capacityBytes = std::size_t{64} << 20U)
        : capacity_(capacityBytes) {}

    // As AudioDecoder::decodeFile(); null with `error` set when the file does not decode. A file
    // that has changed in size or time is decoded anew.
    [[nodiscard]] std::shared_ptr<const DecodedAudio> decode(const std::filesystem::path& path,
                                                             std::string& error);

    // What is kept, its bookkeeping included; at most the capacity.
    [[nodiscard]] std::size_t bytes() const { return bytes_; }

  private:
    struct Entry {
        std::filesystem::path::string_type path;
        FileStamp stamp;
        std::shared_ptr<const DecodedAudio> audio;
    };

    void keep(Entry entry);
    void drop(std::list<Entry>::iterator entry);
    [[nodiscard]] static std::size_t weight(const Entry& entry);

    std::size_t capacity_;
    std::size_t bytes_ = 0;
    std::list<Entry> entries_;  // the one played last stands first
    std::unordered_map<std::filesystem::path::string_type, std::list<Entry>::iterator> byPath_;
};

}  // namespace port
