#include "TrackDecoder.hpp"

#include <algorithm>
#include <exception>
#include <utility>

namespace port {

void TrackDecoder::expect(const std::vector<std::filesystem::path>& files) {
    {
        const std::scoped_lock lock(mutex_);
        std::vector<Track> tracks;
        for (const std::filesystem::path& file : files) {
            Track* const known = find(file);
            tracks.push_back(known ? std::move(*known) : Track{file});
            tracks.back().waits = !tracks.back().result;  // there may be room for it now
        }
        tracks_ = std::move(tracks);
    }
    startWorker();
}

std::shared_ptr<const DecodedAudio> TrackDecoder::decode(const std::filesystem::path& path,
                                                         std::string& error) {
    const std::optional<FileStamp> stamp = fileStamp(path);
    std::optional<Result> result;
    {
        const std::scoped_lock lock(mutex_);
        Track* const track = find(path);
        if (track) track->waits = false;
        yields_ = track && underWay_ == path;
    }
    if (yields_) worker_.join();
    {
        const std::scoped_lock lock(mutex_);
        yields_ = false;
        if (Track* const track = find(path)) {
            if (track->result && track->result->stamp != stamp) track->result.reset();
            result = track->result;
        }
    }
    startWorker();
    if (!result) {
        result = decodeTrack(path, {});
        const std::scoped_lock lock(mutex_);
        keep(path, *result);
    }
    if (!result->audio) error = result->error;
    return result->audio;
}

std::size_t TrackDecoder::bytes() const {
    const std::scoped_lock lock(mutex_);
    return keptBytes();
}

TrackDecoder::Result TrackDecoder::decodeTrack(const std::filesystem::path& path,
                                               const std::stop_token& stop) {
    Result result{fileStamp(path), nullptr, {}};
    auto audio = std::make_shared<DecodedAudio>();
    if (AudioDecoder::decodeFile(path, *audio, result.error, stop)) result.audio = audio;
    return result;
}

// A worker that has ended is replaced by the next one.
void TrackDecoder::startWorker() {
    {
        const std::scoped_lock lock(mutex_);
        if (working_ || nextTrack() == tracks_.end()) return;
        working_ = true;
    }
    worker_ = std::jthread([this](const std::stop_token& stop) { work(stop); });
}

void TrackDecoder::work(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    for (auto next = nextTrack(); next != tracks_.end() && !yields_ && !stop.stop_requested();
         next = nextTrack()) {
        next->waits = false;
        const std::filesystem::path path = next->path;
        underWay_ = path;
        lock.unlock();
        std::optional<Result> result;
        try {
            result = decodeTrack(path, stop);
        } catch (const std::exception&) {
            result.reset();  // such as for want of memory: seen again when the track is played
        }
        lock.lock();
        underWay_.reset();
        if (result) keep(path, *std::move(result));
    }
    working_ = false;
}

std::vector<TrackDecoder::Track>::iterator TrackDecoder::nextTrack() {
    return std::ranges::find(tracks_, true, &Track::waits);
}

TrackDecoder::Track* TrackDecoder::find(const std::filesystem::path& path) {
    const auto found = std::ranges::find(tracks_, path, &Track::path);
    return found == tracks_.end() ? nullptr : &*found;
}

std::size_t TrackDecoder::keptBytes() const {
    std::size_t bytes = 0;
    for (const Track& track : tracks_) {
        if (!track.result || !track.result->audio) continue;
        bytes += track.result->audio->pcm.capacity() * sizeof(std::int16_t);
    }
    return bytes;
}

// One that does not fit is decoded when it is played, like one that nobody has expected.
void TrackDecoder::keep(const std::filesystem::path& path, Result result) {
    Track* const track = find(path);
    if (!track || track->result) return;
    track->waits = false;
    track->result = std::move(result);
    if (keptBytes() > capacity_) track->result.reset();
}

}  // namespace port
