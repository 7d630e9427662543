#pragma once

#include <cmath>

// The transfer function of sRGB (IEC 61966-2-1) and its inverse, for components in [0, 1].

inline double g3d_LightOfSrgb(double component) noexcept {
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

inline double g3d_SrgbOfLight(double light) noexcept {
    return light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
}
