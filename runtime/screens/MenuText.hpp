#pragma once

// Lists of rows as menus show them.

#include <string>

#include "DrawList.hpp"

namespace port {

// One line of text in front of all that was added before.
void addText(DrawList& list, int x, int y, int size, std::string text, bool selected = false);

// A row further or back; from the last to the first and the other way.
[[nodiscard]] int wrapped(int index, int step, int count);

// Where rows of a menu stand, and how many of them at a time.
struct RowLayout {
    int x = 0, y = 0, step = 0, size = 0;
    int most = 1000;   // rows that are shown
    int ahead = 1000;  // rows above the chosen one, where there are more
};

// The rows around the chosen one, which is drawn selected. `text(row)` gives each row's text.
template <class Text>
void addRows(DrawList& list, const RowLayout& layout, int count, int chosen, Text text) {
    int first = chosen - layout.ahead;
    if (first > count - layout.most) first = count - layout.most;
    if (first < 0) first = 0;
    for (int row = first; row < count && row - first < layout.most; ++row) {
        addText(list, layout.x, layout.y + layout.step * (row - first), layout.size, text(row),
                row == chosen);
    }
}

}  // namespace port
