#pragma once

// What a frame shows, put into its order of depth before it is drawn.

#include <cstddef>
#include <functional>
#include <vector>

namespace port {

// The numbers under which scripts and traces know the items.
enum class SceneKind {
    Panel = 1,
    ForegroundLayer = 2,
    Shadow = 3,
    Actor = 4,
    Projectile = 5,
    ScriptDrawing = 6,
    FrontPanel = 7,
    Hud = 8
};

struct SceneQueueTrace {
    int kind = 0;
    int z = 0;
    int sortId = 0;
    std::size_t sequence = 0;
};

class SceneQueue {
  public:
    // Keeps its memory from frame to frame.
    void clear() { items_.clear(); }
    void add(SceneKind kind, int z, int sortId, std::size_t sequence, std::function<void()> draw);
    // Draws by z, then sortId, then sequence, and tells the order in `trace`.
    void play(std::vector<SceneQueueTrace>& trace);

  private:
    struct Item {
        SceneQueueTrace place;
        std::function<void()> draw;
    };
    std::vector<Item> items_;
};

}  // namespace port
