#pragma once

// Lines of text in the system's fonts as pictures, kept as long as they fit: a menu or a score
// shows the same ones in every frame.

#include <cstddef>
#include <string_view>
#include <unordered_map>

#include "SpriteImage.hpp"
#include "TextFace.hpp"

namespace port {

class TextRuns {
  public:
    explicit TextRuns(platform::TextFace face = {},
                      std::size_t capacityBytes = std::size_t{8} << 20U)
        : face_(std::move(face)), capacity_(capacityBytes) {}

    // One line in the rectangle from (x, y) to the canvas's right side and y + `size` + 8. Selected
    // text is yellow and bold. What is no UTF-8 is read as Windows-1252. False where the system has
    // no font for it; nothing is drawn then.
    bool draw(SpriteImage& canvas, std::string_view text, int x, int y, int size, bool selected);

    // What is kept at this moment; at most the capacity and the run drawn last.
    [[nodiscard]] std::size_t bytes() const { return recentBytes_ + olderBytes_; }

  private:
    struct Run {
        bool known = false;  // to a font
        SpriteImage image;
    };
    struct RequestHash {
        std::size_t operator()(const platform::TextRequest& request) const;
    };
    using Runs = std::unordered_map<platform::TextRequest, Run, RequestHash>;

    const Run& runOf(const platform::TextRequest& request);
    [[nodiscard]] Run rasterized(const platform::TextRequest& request) const;

    platform::TextFace face_;
    std::size_t capacity_;
    // What was drawn since the last clearing, and what was so before it. Half of the capacity each.
    Runs recent_, older_;
    std::size_t recentBytes_ = 0, olderBytes_ = 0;
};

}  // namespace port
