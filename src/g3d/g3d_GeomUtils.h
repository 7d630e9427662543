#pragma once

#include "cow_1DArrayList.h"
#include "g3d_ClipResultEnum.h"
#include "g3d_Point.h"

class g3d_Plane;
class g3d_Ray;

/// Tests of points, lines, planes, triangles and polygons.
///
/// Nothing raises: degenerate or non-finite input is answered by false, and the point by
/// (0, 0, 0, 1). A line is the whole line of its ray. Tolerances are distances.
///
/// The 2D tests use x and y as they stand and ignore z and w. The edges of an outline lead from
/// each vertex to the next: one that is to be closed repeats its first vertex at the end. Touching
/// is crossing, decided exactly; an edge with a coordinate that is not finite does not count.
class CAE_API g3d_GeomUtils {
public:
    using Polygon = cow_1DArrayList<g3d_Point>;

    /// Whether \p a and \p b are equal or differ by at most \p tolerance.
    [[nodiscard]] static bool EqualValue(double a, double b, double tolerance) noexcept;
    /// EqualValue of x, of y and of z.
    [[nodiscard]] static bool EqualPoint(const g3d_Point& a, const g3d_Point& b,
                                         double tolerance) noexcept;
    /// Whether (b - a) x (c - a) is shorter than 1e-5.
    [[nodiscard]] static bool PointsCollinear(const g3d_Point& a, const g3d_Point& b,
                                              const g3d_Point& c) noexcept;
    /// Whether \p point is at most \p tolerance away from \p plane.
    [[nodiscard]] static bool PointInPlane(const g3d_Plane& plane, const g3d_Point& point,
                                           double tolerance) noexcept;

    /// The point that \p line and \p plane share; false when they are parallel.
    static bool LinePlaneIntersection(const g3d_Ray& line, const g3d_Plane& plane,
                                      g3d_Point& point) noexcept;
    /// The point of \p line nearest to \p point; true when it is at most \p tolerance away.
    static bool LinePointIntersection(const g3d_Ray& line, const g3d_Point& point, double tolerance,
                                      g3d_Point& nearest) noexcept;
    /// The points of two lines nearest to each other; true when they are at most \p tolerance
    /// apart. False, and default points, when the lines are parallel.
    static bool LineLineIntersection(const g3d_Ray& a, const g3d_Ray& b, double tolerance,
                                     g3d_Point& pointOnA, g3d_Point& pointOnB) noexcept;
    /// The point that \p line and the triangle share, from either side, and its \p parameter: the
    /// point is origin + parameter * direction, so a negative one lies behind the origin.
    ///
    /// Watertight: lines behave as if moved a hair off all edges and vertices, alike for all
    /// triangles. One through a sheet hits it once, at a shared edge too; a closed surface is hit
    /// an even number of times. A triangle seen edge-on is not hit, but for rounding.
    static bool LineTriIntersection(const g3d_Ray& line, const g3d_Point& a, const g3d_Point& b,
                                    const g3d_Point& c, g3d_Point& point,
                                    double* parameter = nullptr) noexcept;

    /// The least and greatest x, y and z of the finite vertices; false when there is none.
    static bool RangeOfPolygon(const Polygon& polygon, g3d_Point& boxMin,
                               g3d_Point& boxMax) noexcept;

    /// Even-odd rule, exact, with the closing edge; a point on an edge counts as left of it if that
    /// leads upward. The last argument does not change the answer; it is part of the interface.
    [[nodiscard]] static bool PointInPolygon2D(const Polygon& polygon, const g3d_Point& point,
                                               const g3d_Point* unused = nullptr) noexcept;
    /// How the segment \p p0 to \p p1 lies to \p polygon. The box, given by both pointers or not
    /// at all, decides first.
    [[nodiscard]] static g3d_ClipResultEnum IntersectLinePolygon2D(
        const Polygon& polygon, const g3d_Point& p0, const g3d_Point& p1,
        const g3d_Point* boxMin = nullptr, const g3d_Point* boxMax = nullptr) noexcept;
    /// How the outline \p polygon2 lies to \p polygon1, as IntersectLinePolygon2D tells of its
    /// edges; one that surrounds \p polygon1 is outside. Compares trees of rectangles around runs
    /// of edges: near-linear unless long edges of both run close together at changing angles.
    [[nodiscard]] static g3d_ClipResultEnum IntersectPolygonPolygon2D(
        const Polygon& polygon1, const Polygon& polygon2, const g3d_Point* boxMin = nullptr,
        const g3d_Point* boxMax = nullptr);

    /// Cuts the segment \p p0 to \p p1 with \p polygon. Sets \p points, in order: the start point
    /// if inside, each point on an edge, the end point if inside; those that coincide within
    /// 1.2e-7 of the length come once. All four components are interpolated.
    ///
    /// Answers INSIDE with both end points, CROSSING when cut (or when, for an outline left open,
    /// just one end is inside), REJECTED by the box, else OUTSIDE. O(n + k log k) for k cuts.
    static g3d_ClipResultEnum ClipLinePolygon2D(const Polygon& polygon, const g3d_Point& p0,
                                                const g3d_Point& p1, const g3d_Point* boxMin,
                                                const g3d_Point* boxMax, Polygon& points);
    /// Sets \p pieces to the parts of \p polyline in \p polygon, in order, joined at its inner
    /// vertices. Gaps of the outline, at its end or at vertices not finite, are closed. A single
    /// point is kept if inside. Answers as for a segment: REJECTED when every segment is, INSIDE
    /// likewise, OUTSIDE when none is inside or cut. One segment after another.
    static g3d_ClipResultEnum ClipPolylinePolygon2D(const Polygon& polygon, const Polygon& polyline,
                                                    const g3d_Point* boxMin,
                                                    const g3d_Point* boxMax,
                                                    cow_1DArrayList<Polygon>& pieces);
};
