#include "TextRuns.hpp"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "PathEncoding.hpp"
#include "SpriteBlit.hpp"

namespace port {
namespace {

constexpr int kSmallestText = 6;
constexpr int kBelowLetters = 8;  // of the line's height, where letters hang down
constexpr ColorKey kPlainText = colorKey(237, 237, 242);
constexpr ColorKey kSelectedText = colorKey(255, 214, 79);

std::string shownText(std::string_view given) {
    // More than a line of any canvas; scripts can make texts of megabytes.
    constexpr std::size_t kMostText = 4096;
    std::string text = PathEncoding::text(given);
    if (text.size() > kMostText) {
        std::size_t end = kMostText;
        while (end > 0 && (text[end] & 0xC0) == 0x80) --end;
        text.resize(end);
    }
    std::ranges::replace_if(
        text, [](unsigned char letter) { return letter < 0x20 || letter == 0x7F; }, ' ');
    return text;
}

SpriteImage tinted(const platform::TextCoverage& coverage, int height, ColorKey color) {
    SpriteImage image{coverage.width, height, {}};
    const std::size_t pixels =
        static_cast<std::size_t>(image.width) * static_cast<std::size_t>(height);
    image.bgra.reserve(pixels * kPixelBytes);
    for (std::size_t i = 0; i < pixels; ++i) {
        const unsigned alpha = coverage.alpha[i];
        for (unsigned channel = 0; channel < 3; ++channel) {
            image.bgra.push_back(
                static_cast<std::uint8_t>((colorChannel(color, channel) * alpha + 127) / 255));
        }
        image.bgra.push_back(static_cast<std::uint8_t>(alpha));
    }
    return image;
}

std::size_t weight(const platform::TextRequest& request, const SpriteImage& image) {
    constexpr std::size_t kBookkeeping = 256;
    return kBookkeeping + request.text.size() + image.bgra.size();
}

}  // namespace

std::size_t TextRuns::RequestHash::operator()(const platform::TextRequest& request) const {
    const std::size_t form = static_cast<std::size_t>(request.size) * 2 + (request.bold ? 1 : 0);
    return std::hash<std::string>()(request.text) ^ form;
}

bool TextRuns::draw(SpriteImage& canvas, std::string_view text, int x, int y, int size,
                    bool selected) {
    if (!face_.rasterize) return false;
    const Run& run =
        runOf({shownText(text), std::clamp(size, kSmallestText, platform::kLargestText), selected,
               std::max(1, canvas.width)});
    if (run.known) drawImage(canvas, run.image, x, y);
    return run.known;
}

const TextRuns::Run& TextRuns::runOf(const platform::TextRequest& request) {
    if (const auto found = recent_.find(request); found != recent_.end()) return found->second;
    Run run;
    if (const auto found = older_.find(request); found != older_.end()) {
        olderBytes_ -= weight(request, found->second.image);
        run = std::move(older_.extract(found).mapped());
    } else {
        run = rasterized(request);
    }
    const std::size_t bytes = weight(request, run.image);
    if (recentBytes_ + bytes > capacity_ / 2) {
        older_ = std::exchange(recent_, {});
        olderBytes_ = std::exchange(recentBytes_, 0);
    }
    recentBytes_ += bytes;
    return recent_.emplace(request, std::move(run)).first->second;
}

TextRuns::Run TextRuns::rasterized(const platform::TextRequest& request) const {
    const auto coverage = face_.rasterize(request);
    if (!coverage) return {};
    const int height = std::min(coverage->height, request.size + kBelowLetters);
    return {true, tinted(*coverage, height, request.bold ? kSelectedText : kPlainText)};
}

}  // namespace port
