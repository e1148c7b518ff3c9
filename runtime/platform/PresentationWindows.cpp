// A window of Win32. Direct3D 11 shows the canvas where it runs, GDI everywhere else and from the
// first frame on in which Direct3D fails.

#include <windows.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "ComApartment.hpp"
#include "D3d11Screen.hpp"
#include "Log.hpp"
#include "Presentation.hpp"
#include "ShaderParams.hpp"

namespace port::platform {
namespace {

constexpr const wchar_t* kClassName = L"TindrelPort";
constexpr const wchar_t* kTitle = L"Tindrel Port";
constexpr DWORD kUnseenFrame = 16;  // milliseconds
// No larger window can be made.
constexpr int kLargestWindow = 16384;
// The number of the program's icon among its resources.
constexpr WORD kIcon = 1;

struct WindowSettings {
    bool fullscreen = false;
    PixelSize size;

    explicit WindowSettings(const RuntimeConfig& config)
        : fullscreen(config.fullscreen),
          size{std::clamp(config.width, 1, kLargestWindow),
               std::clamp(config.height, 1, kLargestWindow)} {}

    [[nodiscard]] DWORD style() const { return fullscreen ? WS_POPUP : WS_OVERLAPPEDWINDOW; }
    bool operator==(const WindowSettings&) const = default;
};

LRESULT CALLBACK handleMessage(HWND window, UINT message, WPARAM wide, LPARAM large) {
    switch (message) {
        case WM_CLOSE:
            PostQuitMessage(0);  // the window itself goes with its owner
            return 0;
        case WM_ERASEBKGND:
            return 1;  // every frame covers all of it
        case WM_SETCURSOR:
            if (LOWORD(large) != HTCLIENT) break;
            SetCursor(nullptr);
            return TRUE;
        case WM_SYSCOMMAND:
            switch (wide & 0xFFF0U) {
                case SC_KEYMENU:     // Alt and F10 would stop the game for a menu that is not there
                case SC_SCREENSAVE:  // who plays on a pad touches neither mouse nor keyboard
                    return 0;
                default:
                    break;
            }
            break;
        default:
            break;
    }
    return DefWindowProcW(window, message, wide, large);
}

void registerWindowClass() {
    WNDCLASSW form{};
    form.lpfnWndProc = handleMessage;
    form.hInstance = GetModuleHandleW(nullptr);
    form.hIcon = LoadIconW(form.hInstance, MAKEINTRESOURCEW(kIcon));
    form.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    form.lpszClassName = kClassName;
    RegisterClassW(&form);
}

// The canvas by GDI: scaled, without the shader's steps.
void presentByGdi(HWND window, const SpriteImage& canvas, const RuntimeConfig& config) {
    const HDC device = GetDC(window);
    if (!device) return;
    const PixelSize size = clientSize(window);
    const PixelSize canvasSize = {canvas.width, canvas.height};
    const ScreenLayout layout = screenLayout(config, canvasSize, size);
    const PixelArea part = shownPart(layout, canvasSize);
    const PixelArea& area = layout.viewport;

    // Black around the picture alone: blackening what it covers would flicker.
    const int saved = SaveDC(device);
    ExcludeClipRect(device, area.x, area.y, area.x + area.width, area.y + area.height);
    const RECT all = {0, 0, size.width, size.height};
    FillRect(device, &all, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    RestoreDC(device, saved);

    BITMAPINFO form{};
    form.bmiHeader.biSize = sizeof form.bmiHeader;
    form.bmiHeader.biWidth = canvas.width;
    form.bmiHeader.biHeight = -part.height;  // the top row first
    form.bmiHeader.biPlanes = 1;
    form.bmiHeader.biBitCount = 8 * static_cast<WORD>(kPixelBytes);
    form.bmiHeader.biCompression = BI_RGB;
    SetStretchBltMode(device, showsSharpPixels(config) ? COLORONCOLOR : HALFTONE);
    SetBrushOrgEx(device, 0, 0, nullptr);
    // The rows begin with the first one shown, since systems disagree on where rows count from.
    StretchDIBits(device, area.x, area.y, area.width, area.height, part.x, 0, part.width,
                  part.height, canvas.bgra.data() + pixelOffset(canvas, 0, part.y), &form,
                  DIB_RGB_COLORS, SRCCOPY);
    ReleaseDC(window, device);
}

struct WindowDestroyer {
    using pointer = HWND;
    void operator()(HWND window) const { DestroyWindow(window); }
};

class WindowsPresentation {
  public:
    WindowsPresentation();

    // False where the system makes no windows.
    [[nodiscard]] bool hasWindow() const { return window_ != nullptr; }
    bool open(const RuntimeConfig& config);
    [[nodiscard]] const char* backend() const { return backend_; }
    bool pumpEvents();
    void present(const SpriteImage& canvas, const RuntimeConfig& config);

  private:
    void arrange();

    ComApartment com_;
    WindowSettings settings_{RuntimeConfig()};
    const char* backend_ = "headless";
    bool running_ = false;
    std::unique_ptr<HWND, WindowDestroyer> window_;
    std::unique_ptr<D3d11Screen> direct3d_;  // null from its first failure on
};

WindowsPresentation::WindowsPresentation() {
    registerWindowClass();
    window_.reset(CreateWindowExW(0, kClassName, kTitle, settings_.style(), CW_USEDEFAULT,
                                  CW_USEDEFAULT, settings_.size.width, settings_.size.height,
                                  nullptr, nullptr, GetModuleHandleW(nullptr), nullptr));
}

// Style, size and, in full screen, place.
void WindowsPresentation::arrange() {
    // Being visible is a part of the style, too; only showing a window makes it so for the desktop.
    const LONG_PTR shown = GetWindowLongPtrW(window_.get(), GWL_STYLE) & LONG_PTR{WS_VISIBLE};
    SetWindowLongPtrW(window_.get(), GWL_STYLE, static_cast<LONG_PTR>(settings_.style()) | shown);
    const UINT place = settings_.fullscreen ? 0U : static_cast<UINT>(SWP_NOMOVE);
    SetWindowPos(window_.get(), HWND_TOP, 0, 0, settings_.size.width, settings_.size.height,
                 place | SWP_FRAMECHANGED | SWP_SHOWWINDOW);
}

bool WindowsPresentation::open(const RuntimeConfig& config) {
    settings_ = WindowSettings(config);
    arrange();
    SetForegroundWindow(window_.get());
    // Nor does such a player's machine switch the screen off or fall asleep.
    SetThreadExecutionState(ES_CONTINUOUS | ES_DISPLAY_REQUIRED | ES_SYSTEM_REQUIRED);
    if (config.gpuAcceleration && config.renderer == "d3d11") {
        direct3d_ = makeD3d11Screen(window_.get(), {config.logicalWidth, config.logicalHeight});
    }
    backend_ = direct3d_ ? "d3d11-postprocess" : "win32-gdi-fallback";
    running_ = true;
    return true;
}

bool WindowsPresentation::pumpEvents() {
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) {
        if (message.message == WM_QUIT) running_ = false;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return running_;
}

void WindowsPresentation::present(const SpriteImage& canvas, const RuntimeConfig& config) {
    // A player may have drawn the window to another size, which stays until the setting changes.
    const WindowSettings settings(config);
    if (std::exchange(settings_, settings) != settings) arrange();
    if (IsIconic(window_.get())) {
        // No screen waits for a frame then, and a game without a limit of its own would race.
        if (config.vsync && config.fpsLimit == 0) Sleep(kUnseenFrame);
        return;
    }
    if (direct3d_) {
        if (direct3d_->present(canvas, config)) return;
        warnLine("D3D11 runtime failure; switching permanently to Win32 GDI fallback.");
        direct3d_->abandon();
        direct3d_.reset();
        backend_ = "win32-gdi-recovered";
    }
    presentByGdi(window_.get(), canvas, config);
}

}  // namespace

Presentation systemPresentation() {
    const auto screen = std::make_shared<WindowsPresentation>();
    if (!screen->hasWindow()) return {};
    Presentation presentation;
    presentation.headless = false;
    presentation.open = [screen](const RuntimeConfig& config) { return screen->open(config); };
    presentation.backend = [screen] { return screen->backend(); };
    presentation.pumpEvents = [screen] { return screen->pumpEvents(); };
    presentation.present = [screen](const SpriteImage& canvas, const RuntimeConfig& config) {
        screen->present(canvas, config);
    };
    return presentation;
}

}  // namespace port::platform
