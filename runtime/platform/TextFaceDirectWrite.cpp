// DirectWrite through a Direct2D target on a bitmap of GDI; without them GDI itself.

#include <windows.h>

#include <d2d1.h>
#include <dwrite.h>
#include <wrl/client.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "SpriteImage.hpp"
#include "TextFace.hpp"

namespace port::platform {
namespace {

using Microsoft::WRL::ComPtr;

constexpr const wchar_t* kFontName = L"Segoe UI";
constexpr int kBelowLetters = 8;  // of the line's height, where letters hang down

std::wstring wide(const std::string& utf8) {
    const int length = static_cast<int>(utf8.size());
    const int needed = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(needed), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, text.data(), needed);
    return text;
}

// A black bitmap to write on in white, within a device context of its own.
class Sheet {
  public:
    Sheet(int width, int height) : width_(width), height_(height) {
        BITMAPINFO form{};
        form.bmiHeader.biSize = sizeof form.bmiHeader;
        form.bmiHeader.biWidth = width;
        form.bmiHeader.biHeight = -height;  // the top row first
        form.bmiHeader.biPlanes = 1;
        form.bmiHeader.biBitCount = 8 * static_cast<WORD>(kPixelBytes);
        form.bmiHeader.biCompression = BI_RGB;
        void* bits = nullptr;
        bitmap_ = CreateDIBSection(device_, &form, DIB_RGB_COLORS, &bits, nullptr, 0);
        pixels_ = static_cast<const std::uint8_t*>(bits);
        if (bitmap_) before_ = SelectObject(device_, bitmap_);
    }
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;
    ~Sheet() {
        if (before_) SelectObject(device_, before_);
        if (bitmap_) DeleteObject(bitmap_);
        DeleteDC(device_);
    }

    [[nodiscard]] bool ready() const { return pixels_ != nullptr; }
    [[nodiscard]] HDC device() const { return device_; }
    [[nodiscard]] RECT area() const { return {0, 0, width_, height_}; }

    [[nodiscard]] std::unique_ptr<TextCoverage> coverage() const {
        GdiFlush();
        auto coverage = std::make_unique<TextCoverage>();
        coverage->width = width_;
        coverage->height = height_;
        const std::size_t count =
            static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
        coverage->alpha.reserve(count);
        constexpr std::size_t kGreen = 1;
        for (std::size_t i = 0; i < count; ++i) {
            coverage->alpha.push_back(pixels_[i * kPixelBytes + kGreen]);
        }
        return coverage;
    }

  private:
    int width_, height_;
    HDC device_ = CreateCompatibleDC(nullptr);
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ before_ = nullptr;
    const std::uint8_t* pixels_ = nullptr;
};

class DirectWriteFace {
  public:
    DirectWriteFace();
    // Null where the services or the font are missing.
    std::unique_ptr<TextCoverage> rasterize(const std::wstring& text, const TextRequest& request);

  private:
    [[nodiscard]] bool hasFont() const;
    ComPtr<IDWriteTextLayout> layoutOf(const std::wstring& text, const TextRequest& request);
    bool draw(const Sheet& sheet, IDWriteTextLayout& layout);

    ComPtr<IDWriteFactory> letters_;
    ComPtr<ID2D1Factory> drawing_;
    ComPtr<ID2D1DCRenderTarget> target_;
    ComPtr<ID2D1SolidColorBrush> white_;
};

DirectWriteFace::DirectWriteFace() {
    D2D1_RENDER_TARGET_PROPERTIES form{};
    form.type = D2D1_RENDER_TARGET_TYPE_SOFTWARE;
    form.pixelFormat = {DXGI_FORMAT_B8G8R8A8_UNORM, D2D1_ALPHA_MODE_PREMULTIPLIED};
    form.dpiX = form.dpiY = 96.0F;  // a unit is a pixel
    constexpr D2D1_COLOR_F kWhite = {1.0F, 1.0F, 1.0F, 1.0F};
    if (FAILED(DWriteCreateFactory(DWRITE_FACTORY_TYPE_SHARED, __uuidof(IDWriteFactory),
                                   reinterpret_cast<IUnknown**>(letters_.GetAddressOf()))) ||
        FAILED(D2D1CreateFactory(D2D1_FACTORY_TYPE_SINGLE_THREADED, __uuidof(ID2D1Factory), nullptr,
                                 reinterpret_cast<void**>(drawing_.GetAddressOf()))) ||
        !hasFont() || FAILED(drawing_->CreateDCRenderTarget(&form, &target_)) ||
        FAILED(target_->CreateSolidColorBrush(&kWhite, nullptr, &white_))) {
        white_.Reset();
        return;
    }
    target_->SetTextAntialiasMode(D2D1_TEXT_ANTIALIAS_MODE_GRAYSCALE);
}

bool DirectWriteFace::hasFont() const {
    ComPtr<IDWriteFontCollection> fonts;
    UINT32 index = 0;
    BOOL found = FALSE;
    return SUCCEEDED(letters_->GetSystemFontCollection(&fonts, FALSE)) &&
           SUCCEEDED(fonts->FindFamilyName(kFontName, &index, &found)) && found;
}

ComPtr<IDWriteTextLayout> DirectWriteFace::layoutOf(const std::wstring& text,
                                                    const TextRequest& request) {
    ComPtr<IDWriteTextFormat> format;
    ComPtr<IDWriteTextLayout> layout;
    const DWRITE_FONT_WEIGHT weight =
        request.bold ? DWRITE_FONT_WEIGHT_BOLD : DWRITE_FONT_WEIGHT_NORMAL;
    const auto size = static_cast<float>(request.size);
    if (FAILED(letters_->CreateTextFormat(kFontName, nullptr, weight, DWRITE_FONT_STYLE_NORMAL,
                                          DWRITE_FONT_STRETCH_NORMAL, size, L"pt-BR", &format)) ||
        FAILED(format->SetWordWrapping(DWRITE_WORD_WRAPPING_NO_WRAP)) ||
        FAILED(letters_->CreateTextLayout(text.data(), static_cast<UINT32>(text.size()),
                                          format.Get(), static_cast<float>(request.mostWidth),
                                          size + kBelowLetters, &layout))) {
        return nullptr;
    }
    return layout;
}

bool DirectWriteFace::draw(const Sheet& sheet, IDWriteTextLayout& layout) {
    const RECT area = sheet.area();
    if (!sheet.ready() || FAILED(target_->BindDC(sheet.device(), &area))) return false;
    constexpr D2D1_COLOR_F kBlack = {0.0F, 0.0F, 0.0F, 1.0F};
    target_->BeginDraw();
    target_->Clear(&kBlack);
    target_->DrawTextLayout({0.0F, 0.0F}, &layout, white_.Get(), D2D1_DRAW_TEXT_OPTIONS_CLIP);
    return SUCCEEDED(target_->EndDraw());
}

std::unique_ptr<TextCoverage> DirectWriteFace::rasterize(const std::wstring& text,
                                                         const TextRequest& request) {
    if (!white_) return nullptr;
    const ComPtr<IDWriteTextLayout> layout = layoutOf(text, request);
    DWRITE_TEXT_METRICS metrics{};
    if (!layout || FAILED(layout->GetMetrics(&metrics))) return nullptr;
    const int width = std::min(static_cast<int>(std::ceil(metrics.width)), request.mostWidth);
    if (width <= 0) return std::make_unique<TextCoverage>();
    const Sheet sheet(width, request.size + kBelowLetters);
    return draw(sheet, *layout.Get()) ? sheet.coverage() : nullptr;
}

// Null where the system has no bitmap for it.
std::unique_ptr<TextCoverage> rasterizeByGdi(const std::wstring& text, const TextRequest& request) {
    constexpr int kSmallest = 8;
    const HFONT font =
        CreateFontW(-std::max(kSmallest, request.size), 0, 0, 0, request.bold ? FW_BOLD : FW_NORMAL,
                    FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                    ANTIALIASED_QUALITY, DEFAULT_PITCH | FF_DONTCARE, kFontName);
    const int length = static_cast<int>(text.size());
    SIZE size{};
    const HDC screen = CreateCompatibleDC(nullptr);
    const HGDIOBJ screenFont = SelectObject(screen, font);
    GetTextExtentPoint32W(screen, text.data(), length, &size);
    SelectObject(screen, screenFont);
    DeleteDC(screen);

    auto coverage = std::make_unique<TextCoverage>();
    const int width = std::min(static_cast<int>(size.cx), request.mostWidth);
    if (width > 0) {
        const Sheet sheet(width, request.size + kBelowLetters);
        const HGDIOBJ before = SelectObject(sheet.device(), font);
        SetBkMode(sheet.device(), TRANSPARENT);
        SetTextColor(sheet.device(), RGB(255, 255, 255));
        TextOutW(sheet.device(), 0, 0, text.data(), length);
        coverage = sheet.ready() ? sheet.coverage() : nullptr;
        SelectObject(sheet.device(), before);
    }
    DeleteObject(font);
    return coverage;
}

}  // namespace

TextFace systemTextFace() {
    // Looking through the fonts takes a moment, which a start without texts is spared.
    const auto face = std::make_shared<std::unique_ptr<DirectWriteFace>>();
    return {[face](const TextRequest& request) {
        if (!*face) *face = std::make_unique<DirectWriteFace>();
        const std::wstring text = wide(request.text);
        auto coverage = (*face)->rasterize(text, request);
        return coverage ? std::move(coverage) : rasterizeByGdi(text, request);
    }};
}

}  // namespace port::platform
