#pragma once

#include "g3d_Camera.h"
#include "g3d_Sphere.h"

#include <array>
#include <optional>
#include <vector>

// How a camera is set so that points are seen, and where it shows them.

/// Beyond this, squares of lengths leave the range of float: what is looked at lies nearer.
inline constexpr double host_kFarthest = 1e18;

/// The smallest sphere around points, a little larger where floats could not tell that from a
/// point; empty where none is finite.
[[nodiscard]] g3d_Sphere host_SphereOf(const std::vector<g3d_Point>& points);
/// Whether cameras can look at such a sphere: it lies within host_kFarthest of the origin.
[[nodiscard]] bool host_IsInReach(const g3d_Sphere& sphere) noexcept;

/// Frames points, of which \p sphere is the sphere, from where the camera looks or from \p side:
/// the window becomes the rectangle that they take up, and a margin of a twentieth on each side,
/// its longer side at most ten times the other. The target is in its middle.
void host_Frame(g3d_Camera& camera, const std::vector<g3d_Point>& points, const g3d_Sphere& sphere,
                std::optional<g3d_SavedViewIdEnum> side);

/// Chooses the camera's viewport for a picture of that size [pixels], so that it shows the window
/// whole, right of a column of \p column pixels.
void host_ShowBeside(g3d_Camera& camera, int width, int height, float column);

/// Takes the eye of a parallel view back until all points are before it; the picture stays.
void host_BackOff(g3d_Camera& camera, const std::vector<g3d_Point>& points);

/// Where a point of the world is in such a picture, from its upper left; nothing for one that is
/// not before the camera.
[[nodiscard]] std::optional<std::array<double, 2>> host_PixelOf(const g3d_Camera& camera, int width,
                                                                int height, const g3d_Point& point);
