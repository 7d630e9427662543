#pragma once

#include "host_Scene.h"

/// What a picture says about the colours of a part.
struct host_Legend {
    std::string title;
    g3d_ContourTable table;
    /// Whether there are such values.
    bool hasBelow = false;
    bool hasAbove = false;
    bool hasNotANumber = false;
};

/// The breaks as text, from low to high, all with the same number of decimals: as few as tell what
/// they are, to a hundredth of the bands' width at most. With a power of ten where the largest is
/// below 1e-4 or has more than six digits.
[[nodiscard]] std::vector<std::string> host_BreakTexts(const g3d_ContourTable& table);

/// Adds the legends, one beside the other from the upper left, to a picture of that size [pixels]:
/// the bands' colours, as boxes with sharp edges, or a row of pixels each where these are too many
/// or the table is smooth; values at as many breaks as have room. A picture too small for any
/// text gets none. Returns the width of the column that they take up, at most a third of the
/// picture's; 0 without any.
float host_AddLegends(const std::vector<const host_Legend*>& legends, int width, int height,
                      const g3d_Color& textColor, host_Scene& scene);
