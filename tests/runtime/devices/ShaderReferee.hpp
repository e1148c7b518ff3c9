#pragma once

// The pixel shader once more, step by step and by itself, to judge what a graphics driver draws.

#include <algorithm>
#include <array>
#include <cmath>

#include "ShaderParams.hpp"
#include "SpriteImage.hpp"

namespace port {

class ShaderReferee {
  public:
    using Color = std::array<double, 3>;  // red, green, blue

    ShaderReferee(const SpriteImage& canvas, const ShaderParams& params, bool sharp)
        : canvas_(canvas), p_(params), sharp_(sharp) {}

    // Of the pixel (x, y) of the window, which the viewport shows from `u`, `v` on, both 0 to 1.
    // Without banding's noise. `bias` tips the choice between edges of equal strength.
    [[nodiscard]] Color pixel(double u, double v, int x, double bias) const {
        const double baseU = u, baseV = v;
        if (p_.curvature > 0.001F) {
            const double qx = u * 2 - 1, qy = v * 2 - 1;
            const double bend = 1 + p_.curvature * 0.18 * (qx * qx + qy * qy);
            u = qx * bend * 0.5 + 0.5;
            v = qy * bend * 0.5 + 0.5;
            if (u < 0 || u > 1 || v < 0 || v > 1) return {0, 0, 0};
        }
        u = u * p_.uvScaleX + p_.uvOffsetX;
        v = v * p_.uvScaleY + p_.uvOffsetY;
        Color c = upscaled(u, v, bias);
        if (p_.bloom > 0.001F) addGlow(c, u, v);
        const double lum = 0.299 * c[0] + 0.587 * c[1] + 0.114 * c[2];
        for (double& part : c) {
            part = lum + (part - lum) * p_.saturation;
            part = (part - 0.5) * p_.contrast + 0.5;
        }
        double factor = 1;
        if (p_.scanline > 0.001F) {
            const double line = 0.5 + 0.5 * std::cos(kPi * v / p_.texelY);
            factor *= 1 - p_.scanline * (0.10 + 0.18 * line);
        }
        if (p_.unused > 0.001F) {
            const double vx = baseU * 2 - 1, vy = baseV * 2 - 1;
            factor *= std::clamp(1 - 0.12 * (vx * vx + vy * vy), 0.0, 1.0);
            factor *= 0.975 + 0.025 * std::sin((x + 0.5) * kPi);
        }
        for (double& part : c) part = std::clamp(part * factor, 0.0, 1.0);
        return c;
    }

  private:
    static constexpr double kPi = 3.14159265358979;

    [[nodiscard]] double texel(int x, int y, unsigned channel) const {
        x = std::clamp(x, 0, canvas_.width - 1);
        y = std::clamp(y, 0, canvas_.height - 1);
        return canvas_.bgra[pixelOffset(canvas_, x, y) + 2 - channel] / 255.0;
    }

    [[nodiscard]] Color scene(double u, double v) const {
        const double x = u * canvas_.width, y = v * canvas_.height;
        Color c{};
        for (unsigned i = 0; i < 3; ++i) {
            if (sharp_) {
                c[i] = texel(static_cast<int>(std::floor(x)), static_cast<int>(std::floor(y)), i);
                continue;
            }
            const double left = std::floor(x - 0.5), top = std::floor(y - 0.5);
            const double right = x - 0.5 - left, low = y - 0.5 - top;
            const int tx = static_cast<int>(left), ty = static_cast<int>(top);
            c[i] = (texel(tx, ty, i) * (1 - right) + texel(tx + 1, ty, i) * right) * (1 - low) +
                   (texel(tx, ty + 1, i) * (1 - right) + texel(tx + 1, ty + 1, i) * right) * low;
        }
        return c;
    }

    [[nodiscard]] Color upscaled(double u, double v, double bias) const {
        Color c = scene(u, v);
        const Color l = scene(u - p_.texelX, v), r = scene(u + p_.texelX, v);
        const Color up = scene(u, v - p_.texelY), d = scene(u, v + p_.texelY);
        const auto mode = static_cast<int>(p_.mode);
        if (mode == 0) return c;
        const bool alongRow = distance(l, r) + bias < distance(up, d);
        for (unsigned i = 0; i < 3; ++i) {
            const double mean = (l[i] + r[i] + up[i] + d[i]) / 4;
            if (mode == 1) {
                c[i] = c[i] * 1.18 - mean * 0.18;
            } else if (mode == 2) {
                c[i] += (c[i] - mean) * std::max(p_.sharpen, 0.22F);
            } else {
                const double edge = alongRow ? (l[i] + r[i]) / 2 : (up[i] + d[i]) / 2;
                c[i] += (edge - c[i]) * 0.20;
                c[i] += (c[i] - mean) * p_.sharpen * 0.45;
            }
            c[i] = std::clamp(c[i], 0.0, 1.0);
        }
        return c;
    }

    static double distance(const Color& a, const Color& b) {
        return (std::abs(a[0] - b[0]) + std::abs(a[1] - b[1]) + std::abs(a[2] - b[2])) / 3;
    }

    void addGlow(Color& c, double u, double v) const {
        Color glow{};
        for (const int x : {-2, 2}) {
            for (const int y : {-2, 2}) {
                const Color corner = scene(u + x * p_.texelX, v + y * p_.texelY);
                for (unsigned i = 0; i < 3; ++i) glow[i] += corner[i] / 4;
            }
        }
        const double lum = std::max({glow[0], glow[1], glow[2]});
        for (unsigned i = 0; i < 3; ++i) c[i] += glow[i] * std::max(0.0, lum - 0.45) * p_.bloom;
    }

    const SpriteImage& canvas_;
    ShaderParams p_;
    bool sharp_;
};

}  // namespace port
