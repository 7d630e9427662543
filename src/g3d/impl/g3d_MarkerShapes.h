#pragma once

#include "g3d_MarkerEnum.h"

#include <cstdint>

/// The square, in words with the lowest bit first, in which a symbol is drawn; all clear before.
struct g3d_MarkerCanvas {
    int side;
    std::uint32_t* words;

    /// Sets the pixels [first, last] of a row; none when first is above last.
    void FillRow(int row, int first, int last) const noexcept;
};

/// What is known of a kind of marker.
struct g3d_MarkerShape {
    g3d_MarkerEnum kind;
    const char* name;
    bool hasMiddlePixel;  ///< the side must be odd
    void (*draw)(const g3d_MarkerCanvas& canvas) noexcept;
};

/// The shape of a kind; null for an unknown kind.
const g3d_MarkerShape* g3d_FindMarkerShape(g3d_MarkerEnum kind) noexcept;
