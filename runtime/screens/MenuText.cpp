#include "MenuText.hpp"

#include <utility>

namespace port {

void addText(DrawList& list, int x, int y, int size, std::string text, bool selected) {
    list.addBackdrop(DrawTextLine{x, y, size, std::move(text), selected});
}

int wrapped(int index, int step, int count) {
    return count <= 0 ? 0 : ((index + step) % count + count) % count;
}

}  // namespace port
