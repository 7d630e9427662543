#include "host_Overlay.h"

#include <algorithm>
#include <cmath>

host_Bytes host_ToBytes(const g3d_Color& color) noexcept {
    const auto byte = [](float component) {
        return component > 0
                   ? static_cast<std::uint8_t>(std::lround(std::min(component, 1.0F) * 255))
                   : std::uint8_t{0};
    };
    return {byte(color.Red()), byte(color.Green()), byte(color.Blue())};
}

host_Brush::host_Brush(host_Image& image, const g3d_Color& color) noexcept
    : _image(image),
      _color(host_ToBytes(color)),
      _alpha(color.Alpha() > 0 ? std::min(color.Alpha(), 1.0F) : 0.0F) {}

void host_Brush::Paint(std::int64_t column, std::int64_t row, float coverage) const noexcept {
    if (column < 0 || column >= _image.width || row < 0 || row >= _image.height) {
        return;
    }
    const auto width = static_cast<std::size_t>(_image.width);
    std::uint8_t* pixel =
        &_image.rgb[3 * (static_cast<std::size_t>(row) * width + static_cast<std::size_t>(column))];
    const float share = coverage * _alpha;
    for (std::size_t i = 0; i < 3; ++i) {
        const auto was = static_cast<float>(pixel[i]);
        pixel[i] = static_cast<std::uint8_t>(
            std::lround(was + (static_cast<float>(_color[i]) - was) * share));
    }
}

std::optional<host_PicturePoint> host_Project(const g3d_Camera& camera, int width, int height,
                                              const host_Float3& point) noexcept {
    std::array<double, 4> p = {static_cast<double>(point[0]), static_cast<double>(point[1]),
                               static_cast<double>(point[2]), 1};
    for (const g3d_XForm* matrix : {&camera.ConstGetVOM(), &camera.ConstGetPM()}) {
        std::array<double, 4> carried{};
        for (int i = 0; i < 4; ++i) {
            for (int j = 0; j < 4; ++j) {
                carried[static_cast<std::size_t>(i)] +=
                    static_cast<double>(matrix->GetM(i, j)) * p[static_cast<std::size_t>(j)];
            }
        }
        p = carried;
    }
    const auto& [x, y, z, w] = p;
    if (!(w > 0 && std::abs(x) <= w && std::abs(y) <= w && std::abs(z) <= w)) {
        return std::nullopt;
    }
    const g3d_XForm& projection = camera.ConstGetPM();
    const double pixel = 2 * w / (width * std::abs(static_cast<double>(projection.GetM(0, 0))));
    const double rise = (z / w - (z + pixel * static_cast<double>(projection.GetM(2, 2))) /
                                     (w + pixel * static_cast<double>(projection.GetM(3, 2)))) /
                        2;
    return host_PicturePoint{(1 + x / w) / 2 * width, (1 - y / w) / 2 * height, (1 + z / w) / 2,
                             rise > 0 && std::isfinite(rise) ? rise : 0};
}

void host_DrawBitmap(host_Image& image, const g3d_Bitmap& bitmap, const host_PicturePoint& place,
                     const g3d_Color& color) {
    // The middle of pixel (x, y) of the bitmap lies half a pixel right of and above (x, y), and so
    // does that of a pixel of the picture.
    const double left = std::floor(place.x - static_cast<double>(bitmap.XOrigin()));
    const double bottom =
        std::floor(image.height - place.y - static_cast<double>(bitmap.YOrigin()));
    if (!(std::abs(left) < 1e9 && std::abs(bottom) < 1e9)) {
        return;  // an origin far outside the bitmap
    }
    const host_Brush brush(image, color);
    const auto firstColumn = static_cast<std::int64_t>(left);
    const auto lastRow = image.height - 1 - static_cast<std::int64_t>(bottom);
    for (int y = 0; y < bitmap.Height(); ++y) {
        for (int x = 0; x < bitmap.Width(); ++x) {
            if (bitmap.GetBit(x, y) != 0) {
                brush.Paint(firstColumn + x, lastRow - y);
            }
        }
    }
}

namespace {

/// The pixels that an interval covers, and how much of each.
struct Span {
    Span(float start, float length, int limit) noexcept
        : from(std::max(static_cast<double>(start), 0.0)),
          to(std::min(static_cast<double>(start) + static_cast<double>(length),
                      static_cast<double>(limit))) {
        if (std::isfinite(start) && std::isfinite(length) && from < to) {
            first = static_cast<std::int64_t>(from);
            last = static_cast<std::int64_t>(std::ceil(to));
        }
    }
    [[nodiscard]] float Coverage(std::int64_t pixel) const noexcept {
        const auto start = static_cast<double>(pixel);
        return static_cast<float>(std::min(to, start + 1) - std::max(from, start));
    }

    double from, to;
    std::int64_t first = 0;
    std::int64_t last = 0;
};

}  // namespace

void host_DrawRectangle(host_Image& image, const host_Rectangle& rectangle) {
    const host_Brush brush(image, rectangle.color);
    const Span columns(rectangle.x, rectangle.width, image.width);
    const Span rows(rectangle.y, rectangle.height, image.height);
    for (std::int64_t row = rows.first; row < rows.last; ++row) {
        for (std::int64_t column = columns.first; column < columns.last; ++column) {
            brush.Paint(column, row, rows.Coverage(row) * columns.Coverage(column));
        }
    }
}
