#include "SceneQueue.hpp"

#include <algorithm>
#include <tuple>
#include <utility>

namespace port {

void SceneQueue::add(SceneKind kind, int z, int sortId, std::size_t sequence,
                     std::function<void()> draw) {
    items_.push_back({{static_cast<int>(kind), z, sortId, sequence}, std::move(draw)});
}

void SceneQueue::play(std::vector<SceneQueueTrace>& trace) {
    std::ranges::stable_sort(items_, {}, [](const Item& item) {
        return std::tuple(item.place.z, item.place.sortId, item.place.sequence);
    });
    trace.clear();
    for (const Item& item : items_) {
        item.draw();
        trace.push_back(item.place);
    }
}

}  // namespace port
