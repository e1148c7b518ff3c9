#pragma once

// Music decoded before it is needed, so that no frame waits for it.

#include <cstddef>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "AudioDecoder.hpp"
#include "FileStamp.hpp"

namespace port {

// Belongs to one thread. A worker beside it lives while tracks wait; nobody waits for a signal,
// which not every system's condition variables bring for sure, but for the worker's end alone.
class TrackDecoder {
  public:
    // By default some 25 minutes of stereo at 44,100 Hz: what a stage and its scenes play.
    explicit TrackDecoder(std::size_t capacityBytes = std::size_t{256} << 20U)
        : capacity_(capacityBytes) {}

    // The tracks to come, the one needed first in front. The worker decodes them while they fit;
    // others that it has decoded are forgotten.
    void expect(const std::vector<std::filesystem::path>& files);

    // As AudioDecoder::decodeFile() at this moment; null with `error` set when the file does not
    // decode. Waits for the worker where that is at this file, and else decodes what it has not.
    [[nodiscard]] std::shared_ptr<const DecodedAudio> decode(const std::filesystem::path& path,
                                                             std::string& error);

    // Samples that are kept; at most the capacity.
    [[nodiscard]] std::size_t bytes() const;

  private:
    struct Result {
        std::optional<FileStamp> stamp;  // of the file before it was decoded
        std::shared_ptr<const DecodedAudio> audio;
        std::string error;  // where there is no audio
    };
    struct Track {
        std::filesystem::path path;
        bool waits = true;  // for the worker
        std::optional<Result> result = std::nullopt;
    };

    static Result decodeTrack(const std::filesystem::path& path, const std::stop_token& stop);
    void startWorker();
    void work(const std::stop_token& stop);
    // The rest holds the mutex.
    [[nodiscard]] std::vector<Track>::iterator nextTrack();
    [[nodiscard]] Track* find(const std::filesystem::path& path);
    [[nodiscard]] std::size_t keptBytes() const;
    void keep(const std::filesystem::path& path, Result result);

    std::size_t capacity_;
    mutable std::mutex mutex_;
    std::vector<Track> tracks_;                      // as expected
    std::optional<std::filesystem::path> underWay_;  // what the worker is at
    bool working_ = false;
    bool yields_ = false;  // the worker ends behind the track that it is at
    std::jthread worker_;  // ends before the rest goes
};

}  // namespace port
