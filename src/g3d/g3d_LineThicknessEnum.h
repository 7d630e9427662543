#pragma once

/// How thick a line is drawn; g3d_Utils::ConvertLineThickness gives it in drawing units.
enum g3d_LineThicknessEnum : int {
    g3d_LINE_VERY_THIN = 0,
    g3d_LINE_THIN = 1,
    g3d_LINE_MEDIUM = 2,
    g3d_LINE_THICK = 3,
};
