#pragma once

// What the functions that draw share, whether into the scene or into a screen.

#include <cstddef>
#include <string>

#include "HostCall.hpp"
#include "ScriptDrawing.hpp"
#include "ScriptPictures.hpp"

namespace port::host {

// Blends are taken modulo this; what is not 1 to 6 then mixes nothing.
inline constexpr int kBlendModes = 7;

[[nodiscard]] int pixelArgument(const HostCall& call, std::size_t index);
[[nodiscard]] ColorKey colorArgument(const HostCall& call, std::size_t index);
// As long as a text that is drawn may be.
[[nodiscard]] std::string drawnText(HostCall& call, std::size_t index);
// The alpha mode that a draw method asks for; 0 for one that is off.
[[nodiscard]] int methodBlend(const generated::DrawMethod& draw);

// What a pixel costs that is not scaled, in eighths of a step.
[[nodiscard]] std::size_t pixelEighths(int blend);
// Take the steps that drawing costs: by the pixels that the target shows of it.
void chargeArea(HostCall& call, const SpriteImage& target, int x, int y, int width, int height,
                std::size_t eighths);
void chargeImage(HostCall& call, const SpriteImage& target, const SpriteImage& image,
                 const generated::DrawMethod& draw, int x, int y, int blend);
void chargeCommand(HostCall& call, const SpriteImage& target, const ScriptDrawCommand& command);

void drawOnScreen(HostCall& call, ScriptScreen& screen, const ScriptDrawCommand& command);

}  // namespace port::host
