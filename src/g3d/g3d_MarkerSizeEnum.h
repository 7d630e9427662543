#pragma once

/// How large a marker is drawn; g3d_Utils::ConvertMarkerSize gives it in drawing units.
enum g3d_MarkerSizeEnum : int {
    g3d_MARKER_SMALL = 0,
    g3d_MARKER_MEDIUM = 1,
    g3d_MARKER_LARGE = 2,
};
