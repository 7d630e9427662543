#pragma once

#include "g3d_Point.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

/// A rectangle in the x-y plane; empty by default. NaN coordinates are in no box.
struct g3d_Box2D {
    float minX = std::numeric_limits<float>::infinity();
    float minY = std::numeric_limits<float>::infinity();
    float maxX = -std::numeric_limits<float>::infinity();
    float maxY = -std::numeric_limits<float>::infinity();

    void Add(const g3d_Point& p) noexcept {
        minX = std::min(minX, p.x);
        minY = std::min(minY, p.y);
        maxX = std::max(maxX, p.x);
        maxY = std::max(maxY, p.y);
    }
    void Add(const g3d_Box2D& box) noexcept {
        minX = std::min(minX, box.minX);
        minY = std::min(minY, box.minY);
        maxX = std::max(maxX, box.maxX);
        maxY = std::max(maxY, box.maxY);
    }
    /// Whether the boxes, borders included, share a point.
    [[nodiscard]] bool Meets(const g3d_Box2D& box) const noexcept {
        return minX <= box.maxX && box.minX <= maxX && minY <= box.maxY && box.minY <= maxY;
    }
};

[[nodiscard]] inline g3d_Box2D g3d_BoxOf(const g3d_Point& a, const g3d_Point& b) noexcept {
    g3d_Box2D box;
    box.Add(a);
    box.Add(b);
    return box;
}

[[nodiscard]] inline bool g3d_IsFinite2D(const g3d_Point& p) noexcept {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

/// Whether the segments a-b and c-d share a point, ends included: exactly, and never when a
/// coordinate is not finite.
[[nodiscard]] bool g3d_SegmentsMeet2D(const g3d_Point& a, const g3d_Point& b, const g3d_Point& c,
                                      const g3d_Point& d) noexcept;

/// g3d_SegmentsMeet2D for any edge of one outline and any of the other; see
/// IntersectPolygonPolygon2D for the cost.
[[nodiscard]] bool g3d_OutlinesMeet2D(std::span<const g3d_Point> outline1,
                                      std::span<const g3d_Point> outline2);
