#pragma once

/// The symbols of marked points; g3d_Bitmap::SetMarker draws them.
enum g3d_MarkerEnum : int {
    g3d_MARKER_FILLED_CIRCLE = 0,
    g3d_MARKER_FILLED_SQUARE = 1,
    g3d_MARKER_FILLED_TRIANGLE = 2,
    g3d_MARKER_FILLED_DIAMOND = 3,
    g3d_MARKER_CIRCLE = 4,
    g3d_MARKER_SQUARE = 5,
    g3d_MARKER_TRIANGLE = 6,
    g3d_MARKER_DIAMOND = 7,
    g3d_MARKER_CROSS = 8,  ///< diagonal, like an x
    g3d_MARKER_PLUS = 9,
    g3d_MARKER_ASTERISK = 10,
    g3d_MARKER_TARGET = 11,  ///< a circle around a dot
    g3d_MARKER_HOURGLASS = 12,
};

/// Number of symbols; their values are [0, g3d_MARKER_COUNT).
inline constexpr int g3d_MARKER_COUNT = 13;
