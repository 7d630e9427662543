#pragma once

#include "g3d_Color.h"

/// Writes \p shade(i / (n - 1)) for i in [0, n) upward, or downward if \p isReversed, and \p only
/// where n is 1.
template <class Shade>
void g3d_FillRamp(g3d_Color* colors, int n, bool isReversed, const g3d_Color& only, Shade shade) {
    if (n == 1) {
        colors[0] = only;
        return;
    }
    for (int i = 0; i < n; ++i) {
        colors[isReversed ? n - 1 - i : i] = shade(static_cast<double>(i) / (n - 1));
    }
}
