#pragma once

#include "host_GlName.h"

#include <cstdint>
#include <vector>

/// Where a tile of a picture is drawn: with four samples a pixel, then resolved and read back.
class host_GlTarget {
public:
    /// Of that size [pixels]. Raises std::runtime_error where the driver has no memory for it.
    host_GlTarget(int width, int height);

    [[nodiscard]] int Width() const noexcept { return _width; }
    [[nodiscard]] int Height() const noexcept { return _height; }

    /// Makes it the place where OpenGL draws, all of it.
    void Bind() const;
    /// Averages the samples of what was drawn. Colours are read after it; depths take one sample.
    void Resolve(bool depths) const;
    /// RGBA, a byte each, rows from the bottom, without gaps.
    void ReadColors(std::vector<std::uint8_t>& rgba) const;
    /// Depths in [0, 1], in the same order.
    void ReadDepths(std::vector<float>& depths) const;

private:
    struct Plane {
        Plane(int width, int height, int samples);

        host_GlRenderbuffer colors;
        host_GlRenderbuffer depths;
        host_GlFramebuffer frame;
    };

    int _width;
    int _height;
    Plane _drawn;
    Plane _resolved;
};
