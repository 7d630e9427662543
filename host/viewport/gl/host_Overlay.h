#pragma once

#include "host_Image.h"
#include "host_Scene.h"

#include <optional>

/// A colour as it stands in a picture: components rounded to bytes, NaN to 0.
using host_Bytes = std::array<std::uint8_t, 3>;
[[nodiscard]] host_Bytes host_ToBytes(const g3d_Color& color) noexcept;

/// Mixes a colour into a pixel; \p coverage in [0, 1] times the colour's alpha says how much.
/// Outside the picture nothing happens.
class host_Brush {
public:
    host_Brush(host_Image& image, const g3d_Color& color) noexcept;

    void Paint(std::int64_t column, std::int64_t row, float coverage = 1) const noexcept;

private:
    host_Image& _image;
    host_Bytes _color;
    float _alpha;
};

/// A point of the world in the picture.
struct host_PicturePoint {
    double x, y;   ///< [pixels] from the upper left corner
    double depth;  ///< in [0, 1], near to far
    double rise;   ///< what the depth falls by when the point nears the eye by a pixel's size
};

/// Where a camera's matrices put \p point in a picture of that size; nothing for what is outside.
[[nodiscard]] std::optional<host_PicturePoint> host_Project(const g3d_Camera& camera, int width,
                                                            int height,
                                                            const host_Float3& point) noexcept;

/// Draws a one-bit symbol with its origin on a place of the picture, pixel upon pixel.
void host_DrawBitmap(host_Image& image, const g3d_Bitmap& bitmap, const host_PicturePoint& place,
                     const g3d_Color& color);
/// Fills a rectangle; pixels that it covers in part get part of the colour. One that is empty or
/// not finite is not drawn.
void host_DrawRectangle(host_Image& image, const host_Rectangle& rectangle);
