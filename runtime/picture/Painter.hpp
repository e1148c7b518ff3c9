#pragma once

#include "DrawList.hpp"
#include "Renderer.hpp"

namespace port {

// Draws a sorted list on a fresh canvas of the renderer, or over what it shows. The canvas then
// waits to be brought to the window.
void paint(const DrawList& list, Renderer& renderer, const RuntimeConfig& config,
           bool over = false);

}  // namespace port
