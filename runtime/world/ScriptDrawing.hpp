#pragma once

// What the scripts of a pass want drawn, and how.

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Fields.hpp"
#include "GeneratedCharacters.hpp"

namespace port {

// Changes nothing.
inline constexpr generated::DrawMethod kPlainDrawMethod = {false, 1, 1, false, false, 0,    0,
                                                           0,     0, 0, 0,     0,     false};

enum class ScriptDrawKind : std::uint8_t { Text, Box, Line, Dot, Sprite, Screen };

struct ScriptDrawCommand {
    ScriptDrawKind kind = ScriptDrawKind::Dot;
    int x = 0, y = 0, x2 = 0, y2 = 0, w = 0, h = 0;
    int z = 0, font = 0, blend = 0, sortId = 0;
    unsigned color = 0xFFFFFF;
    std::string text;
    std::uintptr_t sprite = 0, screen = 0;
    std::size_t sequence = 0;  // counts the commands of a run
    generated::DrawMethod draw = kPlainDrawMethod;

    PORT_FIELDS(kind, x, y, x2, y2, w, h, z, font, blend, sortId, color, text, sprite, screen,
                sequence, draw)
};

struct ScriptDrawing {
    // Of both queues together. Real scripts draw some hundreds a tick.
    static constexpr std::size_t kMostCommands = 100'000;
    // A line of twice the widest canvas.
    static constexpr std::size_t kLongestText = 512;

    std::vector<ScriptDrawCommand> queue;
    std::vector<ScriptDrawCommand> flushedQueue;  // copies that come before the queue
    std::size_t sequence = 0;                     // of the next command
    generated::DrawMethod commonDrawMethod = kPlainDrawMethod;

    void clearQueues() {
        queue.clear();
        flushedQueue.clear();
    }
    // Appends to one of the queues, with the next sequence; false when they are full.
    bool add(std::vector<ScriptDrawCommand>& to, ScriptDrawCommand command) {
        if (queue.size() + flushedQueue.size() >= kMostCommands) return false;
        command.sequence = sequence++;
        to.push_back(std::move(command));
        return true;
    }

    PORT_FIELDS(queue, flushedQueue, sequence, commonDrawMethod)
};

}  // namespace port
