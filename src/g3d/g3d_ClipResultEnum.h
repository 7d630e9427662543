#pragma once

/// How a segment, a polyline or an outline lies to a polygon.
enum g3d_ClipResultEnum {
    g3d_CLIP_INSIDE = 0,    ///< No edge is crossed; the start point is inside.
    g3d_CLIP_CROSSING = 1,  ///< An edge of the polygon is crossed or touched.
    g3d_CLIP_REJECTED = 2,  ///< All of it lies beyond one side of the given box.
    g3d_CLIP_OUTSIDE = 3,   ///< No edge is crossed; the start point is outside.
};
