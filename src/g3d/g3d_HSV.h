#pragma once

#include "CaeUtilsExport.h"

#include <cstdint>

/// A colour as hue, saturation and value, each nominally in [0, 1]. Hue 0 and 1 are red; a sixth
/// is yellow, a third green, and so on round the circle.
struct _HSV {
    float hue = 0;
    float saturation = 0;
    float value = 0;

    friend constexpr bool operator==(const _HSV&, const _HSV&) noexcept = default;
};

/// Red, green and blue in steps of 1/65535.
struct g3d_RGB16 {
    std::uint16_t red = 0;
    std::uint16_t green = 0;
    std::uint16_t blue = 0;

    friend constexpr bool operator==(const g3d_RGB16&, const g3d_RGB16&) noexcept = default;
};

/// The colour of \p h, \p s and \p v, rounded to the nearest step.
///
/// s and v are limited to [0, 1]; h counts modulo 1. What is NaN counts as 0, so does an infinite
/// h.
[[nodiscard]] CAE_API g3d_RGB16 HSVToRGB(float h, float s, float v) noexcept;

/// Hue, saturation and value from three fractions, each limited to at most 1, not from below.
[[nodiscard]] CAE_API _HSV PctToHSV(float a, float b, float c) noexcept;
