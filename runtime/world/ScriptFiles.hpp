#pragma once

// The text files that scripts have open: whole files in memory, read and written there.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Fields.hpp"
#include "ScriptHandles.hpp"

namespace port {

struct ScriptFileStream {
    std::uintptr_t handle = 0;
    std::string buffer;
    std::size_t pos = 0;  // at most the size of the buffer

    PORT_FIELDS(handle, buffer, pos)
};

struct ScriptFiles {
    // Real games open one or two, and forget to close some.
    static constexpr std::size_t kMostStreams = 4096;
    // Bytes of all that is open. Real files stay below 100 KiB.
    static constexpr std::size_t kMostBytes = std::size_t{64} << 20U;
    // Bytes that a run may write to disk, so that a script in every tick cannot fill it.
    static constexpr std::size_t kMostSaved = std::size_t{256} << 20U;

    std::vector<ScriptFileStream> streams;  // in the order of their handles
    std::uintptr_t nextHandle = kFirstStreamHandle;
    std::size_t bytes = 0;  // of all buffers
    std::size_t saved = 0;  // bytes written to disk

    // The handle of a stream on that text; 0 where there is no room left.
    [[nodiscard]] std::uintptr_t open(std::string text);
    // Null for a handle that names none.
    [[nodiscard]] ScriptFileStream* find(std::uintptr_t handle);
    // False where there is no room left.
    bool append(ScriptFileStream& stream, const std::string& text);
    // False for a handle that names none.
    bool close(std::uintptr_t handle);

    PORT_FIELDS(streams, nextHandle, bytes, saved)
};

}  // namespace port
