// What scripts want drawn in the scene of the pass, and how.

#include "HostDrawing.hpp"

#include <algorithm>
#include <climits>
#include <tuple>
#include <utility>

#include "HostFunctions.hpp"
#include "KeyTable.hpp"
#include "Pixels.hpp"
#include "ScriptSurface.hpp"
#include "ScriptValue.hpp"

namespace port::host {
namespace {

ScriptDrawing& drawing(const HostCall& call) {
    return call.world().scripted.drawing;
}

// At the places of the first two arguments from `first` on.
ScriptDrawCommand commandAt(const HostCall& call, ScriptDrawKind kind, std::size_t first) {
    ScriptDrawCommand command;
    command.kind = kind;
    command.x = pixelArgument(call, first);
    command.y = pixelArgument(call, first + 1);
    return command;
}

// What painting a command costs is due when it is asked for: the painter has no steps.
ScriptValue enqueue(HostCall& call, ScriptDrawCommand command) {
    chargeCommand(call, call.services.renderer.canvas(), command);
    const bool added = drawing(call).add(drawing(call).queue, std::move(command));
    if (!added) call.tag("draw-queue-limit");
    return added;
}

// The run ends behind the call: what a long list still holds need not be drawn.
bool isOutOfSteps(const HostCall& call) {
    return call.tick.scripts.machine().stepsLeft() < 0;
}

// Copies of the queue's commands within these depths, moved by an offset.
std::vector<ScriptDrawCommand> chosenCommands(HostCall& call) {
    const std::pair<int, int> depths =
        std::minmax({call.integer(2, INT_MIN), call.integer(3, INT_MAX)});
    const int dx = pixelArgument(call, 4);
    const int dy = pixelArgument(call, 5);
    std::vector<ScriptDrawCommand> chosen;
    call.chargeScan(drawing(call).queue.size());
    for (const ScriptDrawCommand& command : drawing(call).queue) {
        if (command.z < depths.first || command.z > depths.second) continue;
        ScriptDrawCommand& copy = chosen.emplace_back(command);
        for (int* x : {&copy.x, &copy.x2}) *x = pixel(*x + dx);
        for (int* y : {&copy.y, &copy.y2}) *y = pixel(*y + dy);
    }
    return chosen;
}

// --- Draw methods

// The one for all that scripts draw for handle 0, else the actor's own; null for nobody.
generated::DrawMethod* drawMethod(const HostCall& call) {
    if (call.handle(0) == kNobody) return &drawing(call).commonDrawMethod;
    Actor* actor = call.actor(0);
    if (!actor) return nullptr;
    if (!std::exchange(actor->hasScriptDraw, true)) actor->scriptDraw = kPlainDrawMethod;
    return &actor->scriptDraw;
}

// Scripts count in 256ths.
float fraction(const HostCall& call, std::size_t index, float fallback) {
    constexpr float kWhole = 256;
    return call.has(index) ? call.pixels(index) / kWhole : fallback;
}

int turn(const HostCall& call, std::size_t index) {
    const int angle = call.integer(index) % 360;
    return angle < 0 ? angle + 360 : angle;
}

struct DrawRow {
    std::string_view key;
    void (*write)(const HostCall&, generated::DrawMethod&);
};

constexpr std::size_t kSetting = 2;

template <auto Field>
void setFlag(const HostCall& call, generated::DrawMethod& draw) {
    draw.*Field = call.flag(kSetting);
}
template <auto Field>
void setInteger(const HostCall& call, generated::DrawMethod& draw) {
    draw.*Field = call.integer(kSetting);
}
template <auto Field>
void setFraction(const HostCall& call, generated::DrawMethod& draw) {
    draw.*Field = fraction(call, kSetting, 0);
}
void setTurn(const HostCall& call, generated::DrawMethod& draw) {
    draw.rotate = turn(call, kSetting);
}

using Draw = generated::DrawMethod;
constexpr auto kDrawRows = sortedTable(std::to_array<DrawRow>({
                                           {"enabled", setFlag<&Draw::enabled>},
                                           {"flag", setFlag<&Draw::enabled>},
                                           {"scalex", setFraction<&Draw::scaleX>},
                                           {"scaley", setFraction<&Draw::scaleY>},
                                           {"flipx", setFlag<&Draw::flipX>},
                                           {"flipy", setFlag<&Draw::flipY>},
                                           {"shiftx", setFraction<&Draw::shiftX>},
                                           {"alpha", setInteger<&Draw::alphaMode>},
                                           {"remap", setInteger<&Draw::remap>},
                                           {"colourmap", setInteger<&Draw::remap>},
                                           {"colormap", setInteger<&Draw::remap>},
                                           {"fillcolor", setInteger<&Draw::fillColor>},
                                           {"fillcolour", setInteger<&Draw::fillColor>},
                                           {"rotate", setTurn},
                                           {"fliprotate", setFlag<&Draw::flipRotate>},
                                           {"rotateflip", setFlag<&Draw::flipRotate>},
                                           {"tintmode", setInteger<&Draw::tintMode>},
                                           {"tintcolor", setInteger<&Draw::tintColor>},
                                           {"tintcolour", setInteger<&Draw::tintColor>},
                                       }),
                                       &DrawRow::key);

// The frames' own methods hold again.
ScriptValue resetDrawMethod(const HostCall& call) {
    if (call.handle(0) == kNobody) {
        drawing(call).commonDrawMethod = kPlainDrawMethod;
        return true;
    }
    Actor* actor = call.actor(0);
    if (actor) actor->hasScriptDraw = false;
    return actor != nullptr;
}

}  // namespace

int pixelArgument(const HostCall& call, std::size_t index) {
    return pixel(call.number(index));
}

ColorKey colorArgument(const HostCall& call, std::size_t index) {
    return static_cast<ColorKey>(script::integer(call.number(index))) & 0xFFFFFFU;
}

int methodBlend(const generated::DrawMethod& draw) {
    return draw.enabled ? draw.alphaMode : 0;
}

std::string drawnText(HostCall& call, std::size_t index) {
    return call.text(index).substr(0, ScriptDrawing::kLongestText);
}

std::size_t pixelEighths(int blend) {
    return blend > 0 ? script::kMixedPixelEighths : script::kPixelEighths;
}

void chargeArea(HostCall& call, const SpriteImage& target, int x, int y, int width, int height,
                std::size_t eighths) {
    const VisibleArea area = visibleArea(target, x, y, std::max(0, width), std::max(0, height));
    call.charge(1 + static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height) *
                        eighths / 8);
}

void chargeImage(HostCall& call, const SpriteImage& target, const SpriteImage& image,
                 const generated::DrawMethod& draw, int x, int y, int blend) {
    const SpriteTransform transform = scriptTransformImage(image, draw);
    if (draw.enabled && draw.tintMode != 0) call.charge(script::kTintSteps);
    chargeArea(call, target, x, y, transform.width(), transform.height(),
               draw.enabled ? script::kScaledPixelEighths : pixelEighths(blend));
}

void chargeCommand(HostCall& call, const SpriteImage& target, const ScriptDrawCommand& command) {
    call.charge(script::kDrawSteps);
    switch (command.kind) {
        case ScriptDrawKind::Text:
            return call.charge(command.text.size() * script::kLetterSteps);
        case ScriptDrawKind::Box:
            return chargeArea(call, target, command.x, command.y, command.w, command.h,
                              pixelEighths(command.blend));
        case ScriptDrawKind::Line:
            return call.charge(static_cast<std::size_t>(target.width) +
                               static_cast<std::size_t>(target.height));
        case ScriptDrawKind::Dot:
            return;
        case ScriptDrawKind::Sprite:
            if (const SpritePtr sprite = call.services.scriptPictures.sprite(command.sprite)) {
                chargeImage(call, target, *sprite, command.draw, command.x, command.y,
                            methodBlend(command.draw));
            }
            return;
        case ScriptDrawKind::Screen:
            if (const auto screen = call.services.scriptPictures.screen(command.screen)) {
                chargeImage(call, target, screen->image, command.draw, command.x, command.y,
                            command.blend);
                for (const ScriptScreenText& line : screen->text) {
                    call.charge(line.text.size() * script::kLetterSteps);
                }
            }
            return;
    }
}

ScriptValue drawDot(HostCall& call) {
    ScriptDrawCommand command = commandAt(call, ScriptDrawKind::Dot, 0);
    command.z = call.integer(2);
    command.color = colorArgument(call, 3);
    command.blend = call.integer(4);
    return enqueue(call, std::move(command));
}

ScriptValue drawLine(HostCall& call) {
    ScriptDrawCommand command = commandAt(call, ScriptDrawKind::Line, 0);
    command.x2 = pixelArgument(call, 2);
    command.y2 = pixelArgument(call, 3);
    command.z = call.integer(4);
    command.color = colorArgument(call, 5);
    command.blend = call.integer(6);
    return enqueue(call, std::move(command));
}

ScriptValue drawBox(HostCall& call) {
    ScriptDrawCommand command = commandAt(call, ScriptDrawKind::Box, 0);
    command.w = pixelArgument(call, 2);
    command.h = pixelArgument(call, 3);
    command.z = call.integer(4);
    command.color = colorArgument(call, 5);
    command.blend = call.integer(6);
    return enqueue(call, std::move(command));
}

ScriptValue drawString(HostCall& call) {
    ScriptDrawCommand command = commandAt(call, ScriptDrawKind::Text, 0);
    command.font = call.integer(2);
    command.text = drawnText(call, 3);
    command.z = call.integer(4);
    return enqueue(call, std::move(command));
}

ScriptValue drawSprite(HostCall& call) {
    ScriptDrawCommand command = commandAt(call, ScriptDrawKind::Sprite, 1);
    command.sprite = call.handle(0);
    command.z = call.integer(3);
    command.sortId = call.integer(4);
    command.draw = drawing(call).commonDrawMethod;
    return enqueue(call, std::move(command));
}

ScriptValue drawScreen(HostCall& call) {
    if (call.count() < 4) return false;
    ScriptDrawCommand command = commandAt(call, ScriptDrawKind::Screen, 1);
    command.screen = call.handle(0);
    command.z = call.integer(3);
    command.draw = drawing(call).commonDrawMethod;
    command.blend = std::max(0, call.integer(4, methodBlend(command.draw))) % kBlendModes;
    return enqueue(call, std::move(command));
}

ScriptValue clearSpriteQueue(HostCall& call) {
    drawing(call).queue.clear();
    return true;
}

ScriptValue drawSpriteQueue(HostCall& call) {
    if (call.handle(0) == 0) {
        for (ScriptDrawCommand& command : chosenCommands(call)) {
            chargeCommand(call, call.services.renderer.canvas(), command);
            if (isOutOfSteps(call)) break;
            if (drawing(call).add(drawing(call).flushedQueue, std::move(command))) continue;
            call.tag("draw-queue-limit");
            return false;
        }
        return true;
    }
    const auto screen = call.services.scriptPictures.screen(call.handle(0));
    if (!screen) return false;
    std::vector<ScriptDrawCommand> chosen = chosenCommands(call);
    std::ranges::sort(chosen, {}, [](const ScriptDrawCommand& command) {
        return std::tuple(command.z, command.sortId, command.sequence);
    });
    for (const ScriptDrawCommand& command : chosen) {
        chargeCommand(call, screen->image, command);
        if (isOutOfSteps(call)) break;
        drawOnScreen(call, *screen, command);
    }
    return true;
}

ScriptValue setDrawMethod(HostCall& call) {
    generated::DrawMethod* draw = drawMethod(call);
    if (!draw) return false;
    *draw = {.enabled = call.flag(1),
             .scaleX = fraction(call, 2, 1),
             .scaleY = fraction(call, 3, 1),
             .flipX = call.flag(4),
             .flipY = call.flag(5),
             .shiftX = fraction(call, 6, 0),
             .alphaMode = call.integer(7),
             .remap = call.integer(8),
             .fillColor = call.integer(9),
             .tintMode = 0,
             .tintColor = 0,
             .rotate = turn(call, 10),
             .flipRotate = call.flag(11)};
    if (call.flag(12)) call.tag("setdrawmethod-transparencybg");
    return true;
}

ScriptValue known::drawKey(HostCall& call) {
    return resolveRow(kDrawRows, &DrawRow::key, call, 1);
}

ScriptValue changeDrawMethod(HostCall& call) {
    const DrawRow* row = namedRow(kDrawRows, &DrawRow::key, call, 1);
    if (!row && FoldedKey(call.text(1)) == "reset") return resetDrawMethod(call);
    if (!row) {
        call.tag("changedrawmethod-property:", call.text(1));
        return false;
    }
    generated::DrawMethod* draw = drawMethod(call);
    if (draw) row->write(call, *draw);
    return draw != nullptr;
}

}  // namespace port::host
