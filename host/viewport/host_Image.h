#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// A picture: RGB, a byte each, rows from the top.
struct host_Image {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgb;  ///< 3 * width * height

    /// The red byte of a pixel, green and blue behind it; (0, 0) is the upper left.
    [[nodiscard]] const std::uint8_t* Pixel(int column, int row) const {
        return &rgb[3 * (static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
                         static_cast<std::size_t>(column))];
    }
};
