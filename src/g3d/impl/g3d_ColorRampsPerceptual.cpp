#include "g3d_RampFill.h"
#include "g3d_Srgb.h"
#include "g3d_Utils.h"
#include "g3d_ViridisTable.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double kBytes = 255;

// --- Viridis -------------------------------------------------------------------------------------

g3d_Color OfViridis(double t, float alpha) noexcept {
    const double place = t * (std::size(g3d_kViridis) - 1);
    const std::size_t below =
        std::min(static_cast<std::size_t>(place), std::size(g3d_kViridis) - 2);
    const double part = place - static_cast<double>(below);
    const auto component = [&](int i) {
        return static_cast<float>(g3d_kViridis[below][i] * (1 - part) +
                                  g3d_kViridis[below + 1][i] * part);
    };
    return {component(0), component(1), component(2), alpha};
}

// --- Cool to warm --------------------------------------------------------------------------------
// Kenneth Moreland, "Diverging Color Maps for Scientific Visualization", ISVC 2009: each end goes
// straight to white in Msh, which is CIELAB in polar coordinates.

struct Rgb {
    double red;
    double green;
    double blue;
};

struct Msh {
    double m;  // distance to black
    double s;  // angle to the axis of greys
    double h;  // hue angle
};

// White of sRGB, D65.
constexpr double kWhiteX = 0.95047;
constexpr double kWhiteZ = 1.08883;

// All colors here are light enough for the part of CIELAB that is a plain cube root.
Msh MshOf(const Rgb& color) noexcept {
    const double red = g3d_LightOfSrgb(color.red);
    const double green = g3d_LightOfSrgb(color.green);
    const double blue = g3d_LightOfSrgb(color.blue);
    const double x = std::cbrt((0.4124564 * red + 0.3575761 * green + 0.1804375 * blue) / kWhiteX);
    const double y = std::cbrt(0.2126729 * red + 0.7151522 * green + 0.0721750 * blue);
    const double z = std::cbrt((0.0193339 * red + 0.1191920 * green + 0.9503041 * blue) / kWhiteZ);
    const double lightness = 116 * y - 16;
    const double a = 500 * (x - y);
    const double b = 200 * (y - z);
    const double m = std::sqrt(lightness * lightness + a * a + b * b);
    return {m, std::acos(lightness / m), std::atan2(b, a)};
}

Rgb RgbOf(const Msh& msh) noexcept {
    const double y = (msh.m * std::cos(msh.s) + 16) / 116;
    const double x = y + msh.m * std::sin(msh.s) * std::cos(msh.h) / 500;
    const double z = y - msh.m * std::sin(msh.s) * std::sin(msh.h) / 200;
    const double lightX = x * x * x * kWhiteX;
    const double lightY = y * y * y;
    const double lightZ = z * z * z * kWhiteZ;
    return {
        g3d_SrgbOfLight(3.2404542 * lightX - 1.5371385 * lightY - 0.4985314 * lightZ),
        g3d_SrgbOfLight(-0.9692660 * lightX + 1.8760108 * lightY + 0.0415560 * lightZ),
        g3d_SrgbOfLight(0.0556434 * lightX - 0.2040259 * lightY + 1.0572252 * lightZ),
    };
}

constexpr double kMiddleM = 88;  // the white in the middle

// The hue at which the way from `end` to the middle arrives there: turned away from purple by so
// much that the way looks straight.
double ArrivingHue(const Msh& end) noexcept {
    const double spin =
        end.s * std::sqrt(kMiddleM * kMiddleM - end.m * end.m) / (end.m * std::sin(end.s));
    return end.h > -std::numbers::pi / 3 ? end.h + spin : end.h - spin;
}

g3d_Color OfCoolWarm(double t, float alpha) noexcept {
    static constexpr Rgb kCool{59 / kBytes, 76 / kBytes, 192 / kBytes};
    static constexpr Rgb kWarm{180 / kBytes, 4 / kBytes, 38 / kBytes};
    const Rgb& pure = t < 0.5 ? kCool : kWarm;
    const double part = std::abs(2 * t - 1);  // 1 at the ends
    const auto color = [alpha](const Rgb& rgb) {
        return g3d_Color(static_cast<float>(rgb.red), static_cast<float>(rgb.green),
                         static_cast<float>(rgb.blue), alpha);
    };
    if (part == 1) return color(pure);
    const Msh end = MshOf(pure);
    return color(RgbOf({std::lerp(kMiddleM, end.m, part), part * end.s,
                        std::lerp(ArrivingHue(end), end.h, part)}));
}

}  // namespace

void g3d_Utils::Viridis(g3d_Color* colors, int n, bool reverse, float alpha) {
    const auto shade = [alpha](double t) { return OfViridis(t, alpha); };
    g3d_FillRamp(colors, n, reverse, shade(reverse ? 1 : 0), shade);
}

void g3d_Utils::CoolWarm(g3d_Color* colors, int n, bool reverse, float alpha) {
    const auto shade = [alpha](double t) { return OfCoolWarm(t, alpha); };
    g3d_FillRamp(colors, n, reverse, shade(reverse ? 1 : 0), shade);
}
