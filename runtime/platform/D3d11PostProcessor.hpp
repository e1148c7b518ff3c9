#pragma once

// Windows alone: the canvas into a Direct3D 11 target in one pass through the pixel shader.

#include <d3d11.h>

#include <memory>
#include <string>

#include "PostProcessor.hpp"

namespace port::platform {

// Draws into the target that is bound to the context. Null when the shader does not run here or the
// canvas is too large, with the reason in `error`.
[[nodiscard]] std::unique_ptr<PostProcessor> makeD3d11PostProcessor(ID3D11Device& device,
                                                                    ID3D11DeviceContext& context,
                                                                    PixelSize canvas,
                                                                    std::string& error);

// "hr=0x" and the code in hexadecimal digits.
[[nodiscard]] std::string resultCode(HRESULT code);

}  // namespace port::platform
