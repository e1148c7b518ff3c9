#pragma once

#include "DrawList.hpp"
#include "Renderer.hpp"

namespace port {

// Draws a sorted list on a fresh canvas of the renderer, which then waits to be shown.
void paint(const DrawList& list, Renderer& renderer, const RuntimeConfig& config);

}  // namespace port
