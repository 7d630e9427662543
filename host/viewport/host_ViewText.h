#pragma once

#include "g3d_Point.h"
#include "host_Scene.h"

#include <optional>
#include <variant>

/// A place in a picture, from its upper left corner [percent].
struct host_PicturePlace {
    float x, y;
};

/// Text that the view shows: at a point of the model or at a place of the picture.
struct host_ViewText {
    std::string text;  ///< UTF-8; a line feed begins another line
    std::variant<g3d_Point, host_PicturePlace> place;
    std::array<float, 2> offset{};   ///< from there to the right and upward [pixels]
    std::optional<float> size;       ///< [pixels]; none: as the picture's other text
    std::optional<g3d_Color> color;  ///< none: as the picture's other text
    host_Align align = host_Align::Left;
};

/// Size of the text in a picture of that size [pixels].
[[nodiscard]] float host_TextSize(int width, int height);

/// Adds the lines of a text to a scene for a picture of that size [pixels], whose camera is set:
/// beside the place as the alignment says, and their middle as high as it. None at a point that
/// is not before the camera.
void host_AddText(const host_ViewText& text, int width, int height, const g3d_Color& color,
                  host_Scene& scene);
