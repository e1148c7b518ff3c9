#include "WaterSurface.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "SpriteBlit.hpp"

namespace port {
namespace {

constexpr int kMostSpeed = 15;
constexpr double kWaterTicksPerSecond = 60;

constexpr double kWavesPerSpeed = 1.65;  // radians a second
constexpr double kWaveHeight = 24;       // rows
constexpr double kWaveWidth = 5;         // pixels to either side
constexpr double kFullTurn = 2 * 3.14159265358979323846;

constexpr double kFlowPerSpeed = 2;  // pixels a second
constexpr double kFarScale = 0.76;   // of the top row
constexpr double kScaleGain = 0.42;  // from there to the bottom row

// A row of the canvas from where the water begins to be visible in it.
struct WaterRow {
    std::uint8_t* canvas;
    const std::uint8_t* source;
    int first;  // pixels of water left of the canvas
    int count;  // pixels on it
    int width;  // of the picture
};

void drawShifted(const WaterRow& row, int shift) {
    int column = (row.first - shift) % row.width;
    if (column < 0) column += row.width;
    for (int done = 0; done < row.count; column = 0) {
        const int count = std::min(row.width - column, row.count - done);
        blendRow(row.canvas + static_cast<std::size_t>(done) * kPixelBytes,
                 row.source + static_cast<std::size_t>(column) * kPixelBytes, count);
        done += count;
    }
}

// `travel` is less than a width, so that no sample is further than three widths away.
int flowColumn(int x, int width, double scale, double travel) {
    const double centre = width * 0.5;
    const double sample = (x - centre) / scale + centre + travel;
    int column = static_cast<int>(sample);
    if (column > sample) --column;
    if (column < 0) column += width;
    while (column >= width) column -= width;
    return column;
}

void drawFlow(const WaterRow& row, double scale, double travel) {
    constexpr int kStretch = 256;
    std::array<std::uint8_t, kStretch * kPixelBytes> run;
    int x = row.first % row.width;
    for (int done = 0; done < row.count; done += kStretch) {
        const int count = std::min(kStretch, row.count - done);
        std::uint8_t* out = run.data();
        for (int i = 0; i < count; ++i, out += kPixelBytes) {
            const auto column = static_cast<std::size_t>(flowColumn(x, row.width, scale, travel));
            std::memcpy(out, row.source + column * kPixelBytes, kPixelBytes);
            if (++x == row.width) x = 0;
        }
        blendRow(row.canvas + static_cast<std::size_t>(done) * kPixelBytes, run.data(), count);
    }
}

}  // namespace

WaterSurface legacyWaterSurface(int warp, int rock, std::uint64_t tick) {
    const double speed = std::abs(std::clamp(warp, -kMostSpeed, kMostSpeed));
    const double time = static_cast<double>(tick) / kWaterTicksPerSecond;
    if (rock == 0) return {WaterSurface::Motion::Waves, time * speed * kWavesPerSpeed};
    if (rock == 1) return {WaterSurface::Motion::Flow, time * speed * kFlowPerSpeed};
    return {};
}

void drawWater(SpriteImage& canvas, const SpriteImage& image, const WaterSurface& surface,
               std::int64_t x, std::int64_t y) {
    if (image.bgra.empty() || x >= canvas.width) return;
    const std::int64_t first = std::max<std::int64_t>(0, -x) % image.width;
    const std::int64_t left = std::max<std::int64_t>(0, x);
    const VisibleArea area =
        visibleArea(canvas, left, y, canvas.width - static_cast<int>(left), image.height);
    const double travel = std::fmod(surface.phase, image.width);
    for (int i = 0; i < area.height; ++i) {
        const int line = area.sourceY + i;
        const WaterRow row = {
            canvas.bgra.data() + pixelOffset(canvas, area.canvasX, area.canvasY + i),
            image.bgra.data() + pixelOffset(image, 0, line), static_cast<int>(first), area.width,
            image.width};
        if (surface.motion == WaterSurface::Motion::Flow) {
            const double depth =
                image.height > 1 ? static_cast<double>(line) / (image.height - 1) : 1;
            drawFlow(row, kFarScale + kScaleGain * depth, travel);
        } else if (surface.motion == WaterSurface::Motion::Waves) {
            const double swing = std::sin(surface.phase + line * kFullTurn / kWaveHeight);
            drawShifted(row, static_cast<int>(std::lround(swing * kWaveWidth)));
        } else {
            drawShifted(row, 0);
        }
    }
}

}  // namespace port
