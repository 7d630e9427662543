#include "g3d_HSV.h"

#include "g3d_HueSectors.h"

#include <cmath>

namespace {

// Limits to [0, 1]; NaN becomes 0.
double Limited(double fraction) noexcept { return fraction > 0 ? std::fmin(fraction, 1) : 0; }

std::uint16_t Steps(double channel) noexcept {
    const double raised = Limited(channel) * 65535 + 0.5;  // to be cut off
    return static_cast<std::uint16_t>(raised);
}

// The place of a hue in its turn round the circle, in [0, 1).
double InTurn(double hue) noexcept {
    if (!std::isfinite(hue)) return 0;
    const double place = hue - std::floor(hue);
    return place < 1 ? place : 0;  // a tiny negative hue rounds up to a whole turn
}

}  // namespace

g3d_RGB16 HSVToRGB(float h, float s, float v) noexcept {
    const g3d_Shades shades = g3d_ShadesOf(InTurn(h) * 6, Limited(s), Limited(v));
    return {Steps(shades.red), Steps(shades.green), Steps(shades.blue)};
}

_HSV PctToHSV(float a, float b, float c) noexcept {
    return {std::fmin(a, 1.0F), std::fmin(b, 1.0F), std::fmin(c, 1.0F)};
}
