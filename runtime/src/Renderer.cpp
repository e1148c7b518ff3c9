#include "Renderer.hpp"

namespace port {

bool Renderer::initialize(const RuntimeConfig& config) {
    config_ = config;
    backend_ = "headless-preview";
    running_ = true;
    return true;
}

}  // namespace port
