#pragma once

#include "g3d_Color.h"

/// The color at \p part, in [0, 1], of the way from one to another; exact at both ends.
inline g3d_Color g3d_Blend(const g3d_Color& from, const g3d_Color& to, double part) noexcept {
    const auto blend = [part](float a, float b) {
        return static_cast<float>(a * (1 - part) + b * part);
    };
    return {blend(from.Red(), to.Red()), blend(from.Green(), to.Green()),
            blend(from.Blue(), to.Blue()), blend(from.Alpha(), to.Alpha())};
}
