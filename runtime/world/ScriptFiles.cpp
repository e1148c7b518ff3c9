#include "ScriptFiles.hpp"

#include <algorithm>
#include <utility>

namespace port {

std::uintptr_t ScriptFiles::open(std::string text) {
    if (streams.size() >= kMostStreams || text.size() > kMostBytes - bytes) return 0;
    bytes += text.size();
    streams.push_back({nextHandle, std::move(text)});
    return nextHandle++;
}

ScriptFileStream* ScriptFiles::find(std::uintptr_t handle) {
    const auto found = std::ranges::lower_bound(streams, handle, {}, &ScriptFileStream::handle);
    return found != streams.end() && found->handle == handle ? &*found : nullptr;
}

bool ScriptFiles::append(ScriptFileStream& stream, const std::string& text) {
    if (text.size() > kMostBytes - bytes) return false;
    bytes += text.size();
    stream.buffer += text;
    return true;
}

bool ScriptFiles::close(std::uintptr_t handle) {
    ScriptFileStream* stream = find(handle);
    if (!stream) return false;
    bytes -= stream->buffer.size();
    streams.erase(streams.begin() + (stream - streams.data()));
    return true;
}

}  // namespace port
