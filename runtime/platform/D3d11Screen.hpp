#pragma once

// Windows alone: a window's picture by Direct3D 11.

#include <windows.h>

#include <memory>

#include "RuntimeConfig.hpp"
#include "ScreenLayout.hpp"
#include "SpriteImage.hpp"

namespace port::platform {

class D3d11Screen {
  public:
    virtual ~D3d11Screen() = default;
    // False when the frame failed, for which the reason has been printed, or the driver faulted.
    [[nodiscard]] virtual bool present(const SpriteImage& canvas, const RuntimeConfig& config) = 0;
    // Forgets the device without giving it back: after a fault that may fault again.
    virtual void abandon() = 0;
};

// The inner size of a window, at least 1 by 1.
[[nodiscard]] PixelSize clientSize(HWND window);

// Null where Direct3D does not run; the reason has been printed.
[[nodiscard]] std::unique_ptr<D3d11Screen> makeD3d11Screen(HWND window, PixelSize canvas);

}  // namespace port::platform
