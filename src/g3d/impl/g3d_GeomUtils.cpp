#include "g3d_GeomUtils.h"

#include "g3d_Plane.h"
#include "g3d_Ray.h"
#include "g3d_Triple.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// The result of a test that found something: false, and the default point, when it is no place.
bool Answer(const g3d_Triple& found, g3d_Point& point) noexcept {
    const bool isPlace = found.IsFinite();
    point = isPlace ? found.ToPoint() : g3d_Point();
    return isPlace;
}

bool NoAnswer(g3d_Point& point) noexcept {
    point = g3d_Point();
    return false;
}

// The view along a line: the line is the point (0, 0) of a plane that faces it.
//
// S. Woop, C. Benthin, I. Wald, Watertight Ray/Triangle Intersection, JCGT 2(1), 2013. A vertex
// falls on the same place in the plane in whichever triangle it occurs, and the side of an edge on
// which (0, 0) lies is decided exactly, so that triangles that share an edge agree.
class LineView {
public:
    struct Seen {
        double x;
        double y;
        double depth;  // along the line, in units of its direction
    };

    // direction has a component that is not zero.
    LineView(const g3d_Triple& origin, const g3d_Triple& direction) noexcept
        : _origin(origin), _depthAxis(LongestAxis(direction)) {
        const double along = Component(direction, _depthAxis);
        _shearX = Component(direction, _depthAxis + 1) / along;
        _shearY = Component(direction, _depthAxis + 2) / along;
        _perDepth = 1 / along;
    }

    [[nodiscard]] Seen See(const g3d_Point& point) const noexcept {
        const g3d_Triple offset = g3d_Triple(point) - _origin;
        const double along = Component(offset, _depthAxis);
        return {Component(offset, _depthAxis + 1) - _shearX * along,
                Component(offset, _depthAxis + 2) - _shearY * along, along * _perDepth};
    }

private:
    static double Component(const g3d_Triple& v, int axis) noexcept {
        const double components[] = {v.x, v.y, v.z};
        return components[axis % 3];
    }
    static int LongestAxis(const g3d_Triple& v) noexcept {
        const int longer = std::abs(v.y) > std::abs(v.x) ? 1 : 0;
        return std::abs(v.z) > std::abs(Component(v, longer)) ? 2 : longer;
    }

    g3d_Triple _origin;
    int _depthAxis;
    double _shearX;
    double _shearY;
    double _perDepth;
};

// Twice the area of the triangle (0, 0), a, b, with the exact sign.
double Area(const LineView::Seen& a, const LineView::Seen& b) noexcept {
    const double plus = a.x * b.y;
    const double minus = a.y * b.x;
    if (plus != minus) {
        return plus - minus;  // rounding keeps the order, so the sign is right
    }
    return std::fma(a.x, b.y, -plus) - std::fma(a.y, b.x, -minus);
}

// The side of the edge a, b on which (e, e*e) lies for a small e > 0: the line is moved off every
// edge and vertex in the same way for all triangles (H. Edelsbrunner, E. Muecke, Simulation of
// Simplicity, ACM TOG 9(1), 1990). 0 only when a is b, or for NaN.
int Side(double area, const LineView::Seen& a, const LineView::Seen& b) noexcept {
    if (area != 0) {
        return area > 0 ? 1 : (area < 0 ? -1 : 0);
    }
    if (a.y != b.y) {
        return a.y > b.y ? 1 : -1;
    }
    return b.x > a.x ? 1 : (b.x < a.x ? -1 : 0);
}

}  // namespace

bool g3d_GeomUtils::EqualValue(double a, double b, double tolerance) noexcept {
    return a == b || std::abs(a - b) <= tolerance;
}

bool g3d_GeomUtils::EqualPoint(const g3d_Point& a, const g3d_Point& b, double tolerance) noexcept {
    const g3d_Triple p(a);
    const g3d_Triple q(b);
    return EqualValue(p.x, q.x, tolerance) && EqualValue(p.y, q.y, tolerance) &&
           EqualValue(p.z, q.z, tolerance);
}

bool g3d_GeomUtils::PointsCollinear(const g3d_Point& a, const g3d_Point& b,
                                    const g3d_Point& c) noexcept {
    const g3d_Triple start(a);
    return (g3d_Triple(b) - start).Cross(g3d_Triple(c) - start).Length() < 1e-5;
}

bool g3d_GeomUtils::PointInPlane(const g3d_Plane& plane, const g3d_Point& point,
                                 double tolerance) noexcept {
    const g3d_Triple normal(plane.GetNormal());
    const g3d_Triple offset = g3d_Triple(point) - g3d_Triple(plane.GetPoint());
    // Not finite when the normal has no length, or is not finite itself.
    const double distance = std::abs(offset.Dot(normal)) / normal.Length();
    return std::isfinite(distance) && distance <= tolerance;
}

bool g3d_GeomUtils::LinePlaneIntersection(const g3d_Ray& line, const g3d_Plane& plane,
                                          g3d_Point& point) noexcept {
    const bool areParallel = g3d_Triple(line.Direction()).Dot(g3d_Triple(plane.GetNormal())) == 0;
    return areParallel ? NoAnswer(point) : Answer(g3d_Triple(plane.Project(line)), point);
}

bool g3d_GeomUtils::LinePointIntersection(const g3d_Ray& line, const g3d_Point& point,
                                          double tolerance, g3d_Point& nearest) noexcept {
    const g3d_Triple origin(line.Origin());
    const g3d_Triple direction(line.Direction());
    const g3d_Triple offset = g3d_Triple(point) - origin;
    // No length: not a number, and thus no answer.
    const g3d_Triple along = direction * (offset.Dot(direction) / direction.Squared());
    return Answer(origin + along, nearest) && (offset - along).Length() <= tolerance;
}

bool g3d_GeomUtils::LineLineIntersection(const g3d_Ray& a, const g3d_Ray& b, double tolerance,
                                         g3d_Point& pointOnA, g3d_Point& pointOnB) noexcept {
    const g3d_Triple originA(a.Origin());
    const g3d_Triple originB(b.Origin());
    const g3d_Triple directionA(a.Direction());
    const g3d_Triple directionB(b.Direction());
    // Products of floats are exact in double, so this is zero exactly for parallel lines; then
    // the quotients are not numbers, and there is no answer.
    const g3d_Triple normal = directionA.Cross(directionB);
    const g3d_Triple scaled = normal * (1 / normal.Squared());
    const g3d_Triple offset = originB - originA;
    const g3d_Triple onA = originA + directionA * offset.Cross(directionB).Dot(scaled);
    const g3d_Triple onB = originB + directionB * offset.Cross(directionA).Dot(scaled);
    const bool foundA = Answer(onA, pointOnA);
    const bool foundB = Answer(onB, pointOnB);
    if (!foundA || !foundB) {
        NoAnswer(pointOnA);
        return NoAnswer(pointOnB);
    }
    return (onB - onA).Length() <= tolerance;
}

bool g3d_GeomUtils::LineTriIntersection(const g3d_Ray& line, const g3d_Point& a, const g3d_Point& b,
                                        const g3d_Point& c, g3d_Point& point,
                                        double* parameter) noexcept {
    const g3d_Triple origin(line.Origin());
    const g3d_Triple direction(line.Direction());
    if (direction.Squared() == 0) {
        return NoAnswer(point);
    }
    const LineView view(origin, direction);
    const LineView::Seen seen[] = {view.See(a), view.See(b), view.See(c)};
    double total = 0;
    double depth = 0;
    int side = 0;
    for (int i = 0; i < 3; ++i) {
        const LineView::Seen& from = seen[(i + 1) % 3];
        const LineView::Seen& to = seen[(i + 2) % 3];
        const double weight = Area(from, to);  // of the vertex opposite
        const int edgeSide = Side(weight, from, to);
        if (edgeSide == 0 || (i > 0 && edgeSide != side)) {
            return NoAnswer(point);
        }
        side = edgeSide;
        total += weight;
        depth += weight * seen[i].depth;
    }
    depth /= total;
    if (!Answer(origin + direction * depth, point)) {
        return false;
    }
    if (parameter != nullptr) {
        *parameter = depth;
    }
    return true;
}

bool g3d_GeomUtils::RangeOfPolygon(const Polygon& polygon, g3d_Point& boxMin,
                                   g3d_Point& boxMax) noexcept {
    constexpr double kNone = std::numeric_limits<double>::infinity();
    g3d_Triple low(kNone, kNone, kNone);
    g3d_Triple high(-kNone, -kNone, -kNone);
    for (const g3d_Point& vertex : polygon) {
        const g3d_Triple place(vertex);
        if (place.IsFinite()) {
            low = {std::min(low.x, place.x), std::min(low.y, place.y), std::min(low.z, place.z)};
            high = {std::max(high.x, place.x), std::max(high.y, place.y),
                    std::max(high.z, place.z)};
        }
    }
    const bool foundLow = Answer(low, boxMin);
    return Answer(high, boxMax) && foundLow;
}
