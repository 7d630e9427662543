#pragma once

/// The views that g3d_Camera::Canned goes to: six along the axes, an isometric one, and four that
/// the user saves with g3d_Camera::SaveView.
enum g3d_SavedViewIdEnum : int {
    g3d_VIEW_FRONT,   ///< from +z, y up
    g3d_VIEW_BACK,    ///< from -z, y up
    g3d_VIEW_TOP,     ///< from +y, -z up
    g3d_VIEW_BOTTOM,  ///< from -y, z up
    g3d_VIEW_LEFT,    ///< from -x, y up
    g3d_VIEW_RIGHT,   ///< from +x, y up
    g3d_VIEW_ISO,     ///< from (1, 1, 1), y up
    g3d_VIEW_USER1,
    g3d_VIEW_USER2,
    g3d_VIEW_USER3,
    g3d_VIEW_USER4
};
