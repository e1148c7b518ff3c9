#pragma once

// A target of Direct3D 11 that nobody sees.

#include <windows.h>

#include <d3d11.h>
#include <wrl/client.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "D3d11PostProcessor.hpp"

namespace port::test {

class D3d11Target {
    template <class Interface>
    using ComPtr = Microsoft::WRL::ComPtr<Interface>;

  public:
    explicit D3d11Target(PixelSize size) : size_(size) {
        for (const auto driver : {D3D_DRIVER_TYPE_HARDWARE, D3D_DRIVER_TYPE_WARP}) {
            if (SUCCEEDED(D3D11CreateDevice(nullptr, driver, nullptr, 0, nullptr, 0,
                                            D3D11_SDK_VERSION, &device_, nullptr, &context))) {
                break;
            }
        }
        if (!context) return;
        D3D11_TEXTURE2D_DESC form{};
        form.Width = static_cast<UINT>(size.width);
        form.Height = static_cast<UINT>(size.height);
        form.MipLevels = form.ArraySize = form.SampleDesc.Count = 1;
        form.Format = DXGI_FORMAT_R8G8B8A8_UNORM;
        form.BindFlags = D3D11_BIND_RENDER_TARGET;
        device_->CreateTexture2D(&form, nullptr, &target_);
        form.BindFlags = 0;
        form.Usage = D3D11_USAGE_STAGING;
        form.CPUAccessFlags = D3D11_CPU_ACCESS_READ;
        device_->CreateTexture2D(&form, nullptr, &copy_);
        ComPtr<ID3D11RenderTargetView> view;
        device_->CreateRenderTargetView(target_.Get(), nullptr, &view);
        context->OMSetRenderTargets(1, view.GetAddressOf(), nullptr);
    }

    [[nodiscard]] std::unique_ptr<platform::PostProcessor> makeProcessor(PixelSize canvas,
                                                                         std::string& error) const {
        return platform::makeD3d11PostProcessor(*device_.Get(), *context.Get(), canvas, error);
    }

    // What was drawn: red, green, blue, alpha, from the top.
    [[nodiscard]] std::vector<std::uint8_t> pixels() const {
        context->CopyResource(copy_.Get(), target_.Get());
        D3D11_MAPPED_SUBRESOURCE mapped{};
        if (FAILED(context->Map(copy_.Get(), 0, D3D11_MAP_READ, 0, &mapped))) return {};
        const std::size_t row = static_cast<std::size_t>(size_.width) * 4;
        std::vector<std::uint8_t> pixels(row * static_cast<std::size_t>(size_.height));
        for (std::size_t y = 0; y < static_cast<std::size_t>(size_.height); ++y) {
            std::memcpy(&pixels[y * row],
                        static_cast<const std::uint8_t*>(mapped.pData) + y * mapped.RowPitch, row);
        }
        context->Unmap(copy_.Get(), 0);
        return pixels;
    }

  private:
    PixelSize size_;
    ComPtr<ID3D11Device> device_;
    ComPtr<ID3D11Texture2D> target_, copy_;

  public:
    ComPtr<ID3D11DeviceContext> context;  // null where there is no such graphics
};

}  // namespace port::test
