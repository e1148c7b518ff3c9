// Pictures that scripts load, and the screens that they draw into.

#include <algorithm>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include "HostDrawing.hpp"
#include "HostFunctions.hpp"
#include "KeyTable.hpp"
#include "Pixels.hpp"
#include "ScriptSurface.hpp"

namespace port::host {
namespace {

std::shared_ptr<ScriptScreen> screen(const HostCall& call, std::size_t index) {
    return call.services.scriptPictures.screen(call.handle(index));
}

int blendArgument(const HostCall& call, std::size_t index) {
    return call.integer(index, -1) % kBlendModes;
}

void drawImageOn(ScriptScreen& target, const SpriteImage& image, const ScriptDrawCommand& command,
                 int blend) {
    if (&image == &target.image) {
        // As it was before it is drawn over.
        const SpriteImage before = image;  // NOLINT(performance-unnecessary-copy-initialization)
        scriptSurfaceBlit(target.image, before, command.draw, command.x, command.y, blend);
    } else {
        scriptSurfaceBlit(target.image, image, command.draw, command.x, command.y, blend);
    }
}

}  // namespace

void drawOnScreen(HostCall& call, ScriptScreen& target, const ScriptDrawCommand& command) {
    const auto& [x, y, blend] = std::tie(command.x, command.y, command.blend);
    switch (command.kind) {
        case ScriptDrawKind::Text:
            return target.write({x, y, command.font, command.text});
        case ScriptDrawKind::Box:
            return scriptSurfaceBox(target.image, x, y, command.w, command.h, command.color,
                                    blend % kBlendModes);
        case ScriptDrawKind::Line:
            return scriptSurfaceLine(target.image, x, y, command.x2, command.y2, command.color,
                                     blend % kBlendModes);
        case ScriptDrawKind::Dot:
            return scriptSurfacePixel(target.image, x, y, command.color, blend % kBlendModes);
        case ScriptDrawKind::Sprite:
            if (const SpritePtr sprite = call.services.scriptPictures.sprite(command.sprite)) {
                drawImageOn(target, *sprite, command, methodBlend(command.draw));
            }
            return;
        case ScriptDrawKind::Screen:
            if (const auto source = call.services.scriptPictures.screen(command.screen)) {
                if (source.get() == &target) {
                    call.charge(source->image.bgra.size() / script::kTextPerStep);
                }
                drawImageOn(target, source->image, command, blend);
                const std::vector<ScriptScreenText> lines = source->text;
                for (ScriptScreenText line : lines) {
                    line.x = pixel(line.x + x);
                    line.y = pixel(line.y + y);
                    target.write(std::move(line));
                }
            }
            return;
    }
}

ScriptValue loadSprite(HostCall& call) {
    call.charge(script::kFileSteps);
    const SpritePtr sprite = call.services.sprites.load(
        call.services.renderer, call.services.dataRoot, call.text(0), nullptr, 0);
    if (!sprite) return kNobody;
    call.charge(sprite->bgra.size() / kPixelBytes);
    const std::uintptr_t handle = call.services.scriptPictures.addSprite(sprite);
    if (handle == 0) call.tag("loadsprite-limit");
    return handle;
}

ScriptValue freePicture(HostCall& call) {
    return call.services.scriptPictures.free(call.handle(0));
}

// Empty for another key.
ScriptValue getPictureProperty(HostCall& call) {
    const SpritePtr sprite = call.services.scriptPictures.sprite(call.handle(0));
    const auto drawn = screen(call, 0);
    const SpriteImage* image = drawn ? &drawn->image : sprite.get();
    const FoldedKey key(call.text(1));
    if (key == "width") return image ? static_cast<double>(image->width) : 0.0;
    if (key == "height") return image ? static_cast<double>(image->height) : 0.0;
    return {};
}

ScriptValue allocateScreen(HostCall& call) {
    const int width = call.integer(0);
    const int height = call.integer(1);
    const auto fits = [](int side) { return side >= 1 && side <= ScriptPictures::kLongestSide; };
    if (call.count() < 2) {
        call.tag("allocscreen-arguments");
        return kNobody;
    }
    if (!fits(width) || !fits(height)) {
        call.tag("allocscreen-size");
        return kNobody;
    }
    call.charge(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const std::uintptr_t handle = call.services.scriptPictures.addScreen(width, height);
    if (handle == 0) call.tag("allocscreen-limit");
    return handle;
}

ScriptValue clearScreen(HostCall& call) {
    const auto target = call.count() == 1 ? screen(call, 0) : nullptr;
    if (!target) return false;
    call.charge(target->image.bgra.size() / script::kTextPerStep);
    std::ranges::fill(target->image.bgra, std::uint8_t{0});
    target->text.clear();
    return true;
}

ScriptValue drawSpriteToScreen(HostCall& call) {
    const SpritePtr sprite = call.services.scriptPictures.sprite(call.handle(0));
    const auto target = call.count() >= 4 ? screen(call, 1) : nullptr;
    if (!sprite || !target) return false;
    const generated::DrawMethod& draw = call.world().scripted.drawing.commonDrawMethod;
    const int x = pixelArgument(call, 2);
    const int y = pixelArgument(call, 3);
    chargeImage(call, target->image, *sprite, draw, x, y, methodBlend(draw));
    scriptSurfaceBlit(target->image, *sprite, draw, x, y, methodBlend(draw));
    return true;
}

ScriptValue drawBoxToScreen(HostCall& call) {
    const auto target = call.count() >= 6 ? screen(call, 0) : nullptr;
    if (!target) return false;
    const int x = pixelArgument(call, 1);
    const int y = pixelArgument(call, 2);
    const int width = pixelArgument(call, 3);
    const int height = pixelArgument(call, 4);
    const int blend = blendArgument(call, 6);
    chargeArea(call, target->image, x, y, width, height, pixelEighths(blend));
    scriptSurfaceBox(target->image, x, y, width, height, colorArgument(call, 5), blend);
    return true;
}

ScriptValue drawLineToScreen(HostCall& call) {
    const auto target = call.count() >= 6 ? screen(call, 0) : nullptr;
    if (!target) return false;
    call.charge(static_cast<std::size_t>(target->image.width) +
                static_cast<std::size_t>(target->image.height));
    scriptSurfaceLine(target->image, pixelArgument(call, 1), pixelArgument(call, 2),
                      pixelArgument(call, 3), pixelArgument(call, 4), colorArgument(call, 5),
                      blendArgument(call, 6));
    return true;
}

ScriptValue drawDotToScreen(HostCall& call) {
    const auto target = call.count() >= 4 ? screen(call, 0) : nullptr;
    if (!target) return false;
    scriptSurfacePixel(target->image, pixelArgument(call, 1), pixelArgument(call, 2),
                       colorArgument(call, 3), blendArgument(call, 4));
    return true;
}

ScriptValue drawStringToScreen(HostCall& call) {
    const auto target = call.count() == 5 ? screen(call, 0) : nullptr;
    if (!target) return false;
    call.charge(script::kDrawSteps);
    target->write(
        {pixelArgument(call, 1), pixelArgument(call, 2), call.integer(3), drawnText(call, 4)});
    return true;
}

}  // namespace port::host
