#include <windows.h>

#include <wrl/client.h>

#include <algorithm>
#include <array>
#include <string>

#include "D3d11PostProcessor.hpp"
#include "D3d11Screen.hpp"
#include "Log.hpp"

namespace port::platform {
namespace {

using Microsoft::WRL::ComPtr;

class SwapChainScreen final : public D3d11Screen {
  public:
    explicit SwapChainScreen(HWND window) : window_(window) {}

    // Empty, or what failed.
    std::string start(PixelSize canvas);
    bool present(const SpriteImage& canvas, const RuntimeConfig& config) override;
    void abandon() override;

  private:
    HRESULT makeDevice(D3D_DRIVER_TYPE driver);
    // The back buffers follow the window, so that no second scaling takes place.
    HRESULT followWindow();
    HRESULT bindTarget();
    bool presentUnguarded(const SpriteImage& canvas, const RuntimeConfig& config);
    std::string frame(const SpriteImage& canvas, const RuntimeConfig& config);

    HWND window_;
    PixelSize size_;
    ComPtr<ID3D11Device> device_;
    ComPtr<ID3D11DeviceContext> context_;
    ComPtr<IDXGISwapChain> chain_;
    std::unique_ptr<PostProcessor> processor_;
};

HRESULT SwapChainScreen::makeDevice(D3D_DRIVER_TYPE driver) {
    size_ = clientSize(window_);
    DXGI_SWAP_CHAIN_DESC form{};
    form.BufferDesc.Width = static_cast<UINT>(size_.width);
    form.BufferDesc.Height = static_cast<UINT>(size_.height);
    form.BufferDesc.Format = DXGI_FORMAT_R8G8B8A8_UNORM;
    form.SampleDesc.Count = 1;
    form.BufferUsage = DXGI_USAGE_RENDER_TARGET_OUTPUT;
    form.BufferCount = 2;
    form.OutputWindow = window_;
    form.Windowed = TRUE;
    form.SwapEffect = DXGI_SWAP_EFFECT_DISCARD;
    constexpr std::array kLevels = {D3D_FEATURE_LEVEL_11_0, D3D_FEATURE_LEVEL_10_1,
                                    D3D_FEATURE_LEVEL_10_0};
    return D3D11CreateDeviceAndSwapChain(nullptr, driver, nullptr, D3D11_CREATE_DEVICE_BGRA_SUPPORT,
                                         kLevels.data(), static_cast<UINT>(kLevels.size()),
                                         D3D11_SDK_VERSION, &form, &chain_, &device_, nullptr,
                                         &context_);
}

std::string SwapChainScreen::start(PixelSize canvas) {
    HRESULT result = makeDevice(D3D_DRIVER_TYPE_HARDWARE);
    if (FAILED(result)) result = makeDevice(D3D_DRIVER_TYPE_WARP);
    if (FAILED(result)) return "no device " + resultCode(result);
    // Full screen is a setting of the game's own; the system's key for it would fight with that.
    ComPtr<IDXGIFactory> factory;
    if (SUCCEEDED(chain_->GetParent(IID_PPV_ARGS(&factory)))) {
        factory->MakeWindowAssociation(window_, DXGI_MWA_NO_ALT_ENTER);
    }
    std::string error;
    processor_ = makeD3d11PostProcessor(*device_.Get(), *context_.Get(), canvas, error);
    return error;
}

HRESULT SwapChainScreen::followWindow() {
    const PixelSize now = clientSize(window_);
    if (now == size_) return S_OK;
    context_->OMSetRenderTargets(0, nullptr, nullptr);
    size_ = now;
    return chain_->ResizeBuffers(0, static_cast<UINT>(now.width), static_cast<UINT>(now.height),
                                 DXGI_FORMAT_UNKNOWN, 0);
}

HRESULT SwapChainScreen::bindTarget() {
    ComPtr<ID3D11Texture2D> buffer;
    HRESULT result = chain_->GetBuffer(0, IID_PPV_ARGS(&buffer));
    if (FAILED(result)) return result;
    ComPtr<ID3D11RenderTargetView> target;
    result = device_->CreateRenderTargetView(buffer.Get(), nullptr, &target);
    if (SUCCEEDED(result)) context_->OMSetRenderTargets(1, target.GetAddressOf(), nullptr);
    return result;
}

// Empty, or what failed.
std::string SwapChainScreen::frame(const SpriteImage& canvas, const RuntimeConfig& config) {
    HRESULT result = followWindow();
    if (SUCCEEDED(result)) result = bindTarget();
    if (FAILED(result)) return "D3D11 frame failed " + resultCode(result);
    const PixelSize canvasSize = {canvas.width, canvas.height};
    const ScreenLayout layout = screenLayout(config, canvasSize, size_);
    const ShaderParams params = shaderParams(config, layout, canvasSize, GetTickCount64());
    std::string failure = processor_->draw(canvas, size_, layout, params, showsSharpPixels(config));
    if (!failure.empty()) return failure;
    result = chain_->Present(config.vsync ? 1 : 0, 0);
    if (SUCCEEDED(result)) return {};
    constexpr std::size_t kAfterName = 3;  // "hr="
    return "D3D11 Present failed " + resultCode(result) +
           " removed=" + resultCode(device_->GetDeviceRemovedReason()).substr(kAfterName);
}

bool SwapChainScreen::presentUnguarded(const SpriteImage& canvas, const RuntimeConfig& config) {
    const std::string failure = frame(canvas, config);
    if (!failure.empty()) warnLine(failure);
    return failure.empty();
}

// Nothing that has a destructor may stand beside the guard.
bool SwapChainScreen::present(const SpriteImage& canvas, const RuntimeConfig& config) {
#ifdef _MSC_VER
    __try {
        return presentUnguarded(canvas, config);
    } __except (EXCEPTION_EXECUTE_HANDLER) {
        return false;
    }
#else
    return presentUnguarded(canvas, config);
#endif
}

void SwapChainScreen::abandon() {
    static_cast<void>(processor_.release());
    static_cast<void>(chain_.Detach());
    static_cast<void>(context_.Detach());
    static_cast<void>(device_.Detach());
}

}  // namespace

PixelSize clientSize(HWND window) {
    RECT area{};
    GetClientRect(window, &area);
    return {std::max(1, static_cast<int>(area.right)), std::max(1, static_cast<int>(area.bottom))};
}

std::unique_ptr<D3d11Screen> makeD3d11Screen(HWND window, PixelSize canvas) {
    auto screen = std::make_unique<SwapChainScreen>(window);
    const std::string failure = screen->start(canvas);
    if (!failure.empty()) {
        warnLine("D3D11: ", failure);
        return nullptr;
    }
    return screen;
}

}  // namespace port::platform
