#include <windows.h>

#include <d3d11.h>
#include <gtest/gtest.h>
#include <wrl/client.h>

#include <string>
#include <utility>

#include "Input.hpp"
#include "Presentation.hpp"
#include "TextFace.hpp"

namespace port {
namespace {

using Microsoft::WRL::ComPtr;

// Four pixels: red and green above blue and white.
SpriteImage fourColors() {
    return {2, 2, {0, 0, 255, 255, 0, 255, 0, 255, 255, 0, 0, 255, 255, 255, 255, 255}};
}

// The system's own function for showing a frame, replaced while this lives: all swap chains share
// the table that it stands in.
class FailingPresent {
  public:
    explicit FailingPresent(HWND window) {
        DXGI_SWAP_CHAIN_DESC form{};
        form.BufferDesc.Format = DXGI_FORMAT_R8G8B8A8_UNORM;
        form.SampleDesc.Count = 1;
        form.BufferUsage = DXGI_USAGE_RENDER_TARGET_OUTPUT;
        form.BufferCount = 2;
        form.OutputWindow = window;
        form.Windowed = TRUE;
        ComPtr<IDXGISwapChain> chain;
        ComPtr<ID3D11Device> device;
        if (FAILED(D3D11CreateDeviceAndSwapChain(nullptr, D3D_DRIVER_TYPE_HARDWARE, nullptr, 0,
                                                 nullptr, 0, D3D11_SDK_VERSION, &form, &chain,
                                                 &device, nullptr, nullptr))) {
            return;
        }
        constexpr std::size_t kPresent = 8;
        place_ = *reinterpret_cast<void***>(chain.Get()) + kPresent;
        before_ = exchange(reinterpret_cast<void*>(&fail));
    }
    FailingPresent(const FailingPresent&) = delete;
    FailingPresent& operator=(const FailingPresent&) = delete;
    ~FailingPresent() {
        if (place_) exchange(before_);
    }

  private:
    static HRESULT STDMETHODCALLTYPE fail(IDXGISwapChain*, UINT, UINT) {
        return DXGI_ERROR_DEVICE_REMOVED;
    }
    void* exchange(void* function) const {
        DWORD protection = 0;
        VirtualProtect(place_, sizeof *place_, PAGE_READWRITE, &protection);
        void* const before = std::exchange(*place_, function);
        VirtualProtect(place_, sizeof *place_, protection, &protection);
        return before;
    }

    void** place_ = nullptr;
    void* before_ = nullptr;
};

// The window of a presentation, as its player sees it.
struct WindowTrial : testing::Test {
    platform::Presentation screen = platform::systemPresentation();
    RuntimeConfig config;
    std::string said;

    void SetUp() override {
        if (screen.headless) GTEST_SKIP() << "no screen here";
        config.logicalWidth = config.logicalHeight = 2;
        config.width = 320;
        config.height = 240;
        config.integerScale = 20;
    }
    static HWND window() { return FindWindowW(L"TindrelPort", L"Tindrel Port"); }

    void open() {
        testing::internal::CaptureStderr();
        const bool opened = screen.open(config);
        said = testing::internal::GetCapturedStderr();
        ASSERT_TRUE(opened);
    }
    // Until the window's system has caught up.
    void show(int times = 5) {
        for (int i = 0; i < times; ++i) {
            screen.pumpEvents();
            screen.present(fourColors(), config);
            Sleep(20);
        }
    }
    static COLORREF color(int fromCenterX, int fromCenterY) {
        RECT area{};
        GetClientRect(window(), &area);
        const HDC device = GetDC(window());
        const COLORREF color =
            GetPixel(device, area.right / 2 + fromCenterX, area.bottom / 2 + fromCenterY);
        ReleaseDC(window(), device);
        return color;
    }
    static void expectFourColors() {
        EXPECT_EQ(color(-10, -10), RGB(255, 0, 0));
        EXPECT_EQ(color(10, -10), RGB(0, 255, 0));
        EXPECT_EQ(color(-10, 10), RGB(0, 0, 255));
        EXPECT_EQ(color(10, 10), RGB(255, 255, 255));
        EXPECT_EQ(color(-30, 0), RGB(0, 0, 0));
        EXPECT_EQ(color(30, 0), RGB(0, 0, 0));
    }
};

TEST_F(WindowTrial, GdiShowsItWhereTheSettingsSaySo) {
    for (const auto& [renderer, acceleration] : {std::pair("gdi", true), {"d3d11", false}}) {
        config.renderer = renderer;
        config.gpuAcceleration = acceleration;
        open();
        EXPECT_EQ(screen.backend(), "win32-gdi-fallback");
        show();
        expectFourColors();
        config.fill169 = true;
        show();
        EXPECT_EQ(color(-100, -60), RGB(255, 0, 0));
        EXPECT_EQ(color(100, -60), RGB(0, 255, 0));
        config.fill169 = false;
    }
}

TEST_F(WindowTrial, AFailingDriverIsLeftForGood) {
    open();
    if (screen.backend() != "d3d11-postprocess") GTEST_SKIP() << "no Direct3D here: " << said;
    show();
    EXPECT_EQ(screen.backend(), "d3d11-postprocess");
    {
        const FailingPresent failing(window());
        testing::internal::CaptureStderr();
        show(1);
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "D3D11 Present failed hr=0x887a0005 removed=0x0\n"
                  "D3D11 runtime failure; switching permanently to Win32 GDI fallback.\n");
    }
    EXPECT_EQ(screen.backend(), "win32-gdi-recovered");
    show();
    expectFourColors();
    EXPECT_EQ(screen.backend(), "win32-gdi-recovered");
}

TEST_F(WindowTrial, FollowsItsSettingsAndEndsWhenItCloses) {
    open();
    config.width = 400;
    config.height = 300;
    show();
    RECT area{};
    GetWindowRect(window(), &area);
    EXPECT_EQ(area.right - area.left, 400);
    EXPECT_EQ(area.bottom - area.top, 300);
    config.fullscreen = true;
    show();
    GetWindowRect(window(), &area);
    EXPECT_EQ(area.left, 0);
    EXPECT_EQ(area.top, 0);
    GetClientRect(window(), &area);
    EXPECT_EQ(area.right, 400) << "without a frame";

    EXPECT_TRUE(screen.pumpEvents());
    PostMessageW(window(), WM_CLOSE, 0, 0);
    EXPECT_FALSE(screen.pumpEvents());
    EXPECT_FALSE(screen.pumpEvents());
}

TEST_F(WindowTrial, AKeyIsDownWhileItIsHeld) {
    open();
    show();
    const platform::Input input = platform::systemInput();
    EXPECT_FALSE(input.keyDown('J'));
    keybd_event('J', 0, 0, 0);
    show(1);
    EXPECT_TRUE(input.keyDown('J'));
    keybd_event('J', 0, KEYEVENTF_KEYUP, 0);
    show(1);
    EXPECT_FALSE(input.keyDown('J'));
    EXPECT_FALSE(input.pad(3).connected);
}

TEST(TextFace, LinesAreAsLargeAsAskedForAndCutOff) {
    const platform::TextFace face = platform::systemTextFace();
    const auto write = [&](const std::string& text, int size, int mostWidth) {
        const auto coverage = face.rasterize({text, size, false, mostWidth});
        EXPECT_TRUE(coverage) << text;
        return coverage ? *coverage : platform::TextCoverage();
    };
    const platform::TextCoverage small = write("Hamburg", 10, 1000);
    const platform::TextCoverage large = write("Hamburg", 40, 1000);
    EXPECT_NEAR(large.width, 4 * small.width, 14);
    EXPECT_EQ(large.alpha.size(), static_cast<std::size_t>(large.width * large.height));
    long ink = 0;
    for (const std::uint8_t alpha : large.alpha) ink += alpha;
    EXPECT_GT(ink, 255L * large.width * 3);
    EXPECT_EQ(write(std::string(4000, 'm'), 20, 100).width, 100);
    EXPECT_EQ(write("", 20, 100).width, 0);
}

}  // namespace
}  // namespace port
