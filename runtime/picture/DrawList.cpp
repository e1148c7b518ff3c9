#include "DrawList.hpp"

#include <algorithm>
#include <tuple>
#include <utility>

namespace port {

void DrawList::clear() {
    backdrop_.clear();
    scene_.clear();
    shapes_.clear();
}

void DrawList::add(SceneKind kind, int z, int sortId, std::size_t sequence, DrawShape shape) {
    scene_.push_back({kind, z, sortId, sequence, shapes_.size()});
    shapes_.push_back(std::move(shape));
}

void DrawList::sort() {
    std::ranges::sort(scene_, {}, [](const DrawCommand& command) {
        return std::tuple(command.z, command.sortId, command.sequence, command.shape);
    });
}

}  // namespace port
