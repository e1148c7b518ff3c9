#pragma once

// One drawn frame as plain data: first a backdrop, in its order, then a scene, by depth.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "GeneratedCharacters.hpp"
#include "ScriptPictures.hpp"
#include "SpriteCache.hpp"
#include "SpriteImage.hpp"
#include "WaterSurface.hpp"

namespace port {

// The numbers under which scripts and traces know what a scene shows.
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

// Places are pixels of the canvas; pictures are never null.

// Alpha modes 1 to 6 blend; any other draws source-over.
struct DrawImage {
    SpritePtr image;
    int x = 0, y = 0;
    int blend = 0;
    bool operator==(const DrawImage&) const = default;
};

// The same picture again and again, from the left top to where the canvas ends, at most `columns`
// by `rows` times. Steps are at least 1.
struct DrawTiles {
    SpritePtr image;
    std::int64_t x = 0, y = 0;
    std::int64_t stepX = 1, stepY = 1;
    int columns = 1, rows = 1;
    int blend = 0;
    bool operator==(const DrawTiles&) const = default;
};

// A picture of water, side by side from (x, y) to where the canvas ends.
struct DrawWater {
    SpritePtr image;
    std::int64_t x = 0, y = 0;
    WaterSurface surface;
};

// A frame of the tables with its offset on (x, y). `draw` is the frame's own method, or what takes
// its place: a shadow's, or a script's. `alphaMode` holds where the method names none.
struct DrawSprite {
    SpritePtr image;
    const generated::Frame* frame = nullptr;
    generated::DrawMethod draw{};
    int x = 0, y = 0;
    bool flip = false;
    int alphaMode = 0;
};

struct DrawRectangle {
    int x = 0, y = 0, width = 0, height = 0;
    ColorKey color = 0;
    bool operator==(const DrawRectangle&) const = default;
};

struct DrawDot {
    int x = 0, y = 0;
    ColorKey color = 0;
    bool operator==(const DrawDot&) const = default;
};

// Both ends included.
struct DrawLine {
    int x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    ColorKey color = 0;
    bool operator==(const DrawLine&) const = default;
};

struct DrawTextLine {
    int x = 0, y = 0, size = 0;
    std::string text;
    bool selected = false;
    bool operator==(const DrawTextLine&) const = default;
};

// A picture by a script's draw method, with its top left corner at (x, y).
struct DrawScriptImage {
    SpritePtr image;
    generated::DrawMethod draw{};
    int x = 0, y = 0;
    int blend = 0;
};

// The same with a script's screen, and its text in front.
struct DrawScriptScreen {
    std::shared_ptr<const ScriptScreen> screen;
    generated::DrawMethod draw{};
    int x = 0, y = 0;
    int blend = 0;
};

using DrawShape = std::variant<DrawImage, DrawTiles, DrawWater, DrawSprite, DrawRectangle, DrawDot,
                               DrawLine, DrawTextLine, DrawScriptImage, DrawScriptScreen>;

// Where a shape of the scene stands in its order. Small, because sorting moves it about.
struct DrawCommand {
    SceneKind kind = SceneKind::Panel;
    int z = 0;
    int sortId = 0;
    std::size_t sequence = 0;
    std::size_t shape = 0;  // for DrawList::shape()
};

class DrawList {
  public:
    // Forgets all, but keeps its memory.
    void clear();
    void addBackdrop(DrawShape shape) { backdrop_.push_back(std::move(shape)); }
    void add(SceneKind kind, int z, int sortId, std::size_t sequence, DrawShape shape);
    // Puts the scene into the order of z, then sortId, then sequence, then of being added.
    void sort();

    [[nodiscard]] const std::vector<DrawShape>& backdrop() const { return backdrop_; }
    [[nodiscard]] const std::vector<DrawCommand>& scene() const { return scene_; }
    [[nodiscard]] const DrawShape& shape(const DrawCommand& command) const {
        return shapes_[command.shape];
    }

  private:
    std::vector<DrawShape> backdrop_, shapes_;
    std::vector<DrawCommand> scene_;
};

}  // namespace port
