// The 2D tests of g3d_GeomUtils.

#include "g3d_GeomUtils.h"
#include "g3d_Orientation.h"
#include "g3d_PolygonEdges.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

namespace {

using Polygon = g3d_GeomUtils::Polygon;

// Parameters along a segment that differ by no more are one point.
constexpr double kSame = 1.1920928955078125e-07;

// Whether all points lie beyond one side of the box. Without both corners there is no box.
bool IsRejected(std::span<const g3d_Point> points, const g3d_Point* boxMin,
                const g3d_Point* boxMax) noexcept {
    if (boxMin == nullptr || boxMax == nullptr || points.empty()) {
        return false;
    }
    bool left = true, below = true, right = true, above = true;
    for (const g3d_Point& p : points) {
        left = left && p.x < boxMin->x;
        below = below && p.y < boxMin->y;
        right = right && p.x > boxMax->x;
        above = above && p.y > boxMax->y;
    }
    return left || below || right || above;
}

g3d_ClipResultEnum InsideOrOutside(bool isInside) noexcept {
    return isInside ? g3d_CLIP_INSIDE : g3d_CLIP_OUTSIDE;
}

// The edge a-b has one end below p, the other level with it or above. Whether it passes p on the
// right; p on the edge itself counts if that leads upward.
bool PassesOnRight(const g3d_Point& a, const g3d_Point& b, const g3d_Point& p) noexcept {
    // Of an upward edge: (a.y - b.y) * (b.x - p.x) <= (b.y - p.y) * (a.x - b.x), unrounded.
    const double area = g3d_Orientation2D(a, b, p);
    return b.y >= p.y ? area >= 0 : area < 0;  // neither for NaN
}

bool HasLength(const g3d_Point& p0, const g3d_Point& p1) noexcept {
    return p0.x != p1.x || p0.y != p1.y;
}

g3d_Point PointAt(const g3d_Point& p0, const g3d_Point& p1, double parameter) noexcept {
    const auto between = [parameter](float from, float to) {  // exact at both ends
        return static_cast<float>(
            std::lerp(static_cast<double>(from), static_cast<double>(to), parameter));
    };
    return {between(p0.x, p1.x), between(p0.y, p1.y), between(p0.z, p1.z), between(p0.w, p1.w)};
}

// Where on the line p0-p1 (0 at p0, 1 at p1) the line a-b, not parallel to it, crosses it.
double CrossingParameter(const g3d_Point& p0, const g3d_Point& p1, const g3d_Point& a,
                         const g3d_Point& b) noexcept {
    const double start = g3d_ExactOrientation2D(a, b, p0);
    return start / (start - g3d_ExactOrientation2D(a, b, p1));
}

// Where on the segment p0-p1 the point p of its line lies; on the nearer end if it is beyond.
double ParameterOf(const g3d_Point& p0, const g3d_Point& p1, const g3d_Point& p) noexcept {
    const double dx = static_cast<double>(p1.x) - p0.x;
    const double dy = static_cast<double>(p1.y) - p0.y;
    const double parameter = std::abs(dx) >= std::abs(dy) ? (static_cast<double>(p.x) - p0.x) / dx
                                                          : (static_cast<double>(p.y) - p0.y) / dy;
    return std::clamp(parameter, 0.0, 1.0);
}

// Ascending, those of one point once.
void SortDistinct(std::vector<double>& parameters) {
    std::sort(parameters.begin(), parameters.end());
    const auto isSame = [](double first, double next) { return next - first <= kSame; };
    parameters.erase(std::unique(parameters.begin(), parameters.end(), isSame), parameters.end());
}

// The distinct parameters at which the edges meet the segment.
std::vector<double> Cuts(std::span<const g3d_Point> outline, const g3d_Point& p0,
                         const g3d_Point& p1) {
    std::vector<double> cuts;
    for (std::size_t i = 0; i + 1 < outline.size(); ++i) {
        const g3d_Point& a = outline[i];
        const g3d_Point& b = outline[i + 1];
        if (!g3d_SegmentsMeet2D(p0, p1, a, b)) {
            continue;
        }
        if (!HasLength(p0, p1)) {
            cuts.push_back(0);
        } else if (g3d_Orientation2D(p0, p1, a) != 0 || g3d_Orientation2D(p0, p1, b) != 0) {
            cuts.push_back(CrossingParameter(p0, p1, a, b));
        } else {  // in line: the ends of what they share
            cuts.push_back(ParameterOf(p0, p1, a));
            cuts.push_back(ParameterOf(p0, p1, b));
        }
    }
    SortDistinct(cuts);
    return cuts;
}

// The parameters behind p0 at which the outline, closed, passes from one side of the line p0-p1 to
// the other, descending: with an odd number of them ahead a place on the line is inside.
std::vector<double> Passages(std::span<const g3d_Point> outline, const g3d_Point& p0,
                             const g3d_Point& p1) {
    std::vector<double> passages;
    const g3d_Point* a = nullptr;  // the last vertex with a side
    bool isLeft = false;
    const auto lead = [&](const g3d_Point& b) {
        if (!g3d_IsFinite2D(b)) {
            return;
        }
        const bool wasLeft = std::exchange(isLeft, g3d_Orientation2D(p0, p1, b) >= 0);
        if (a != nullptr && wasLeft != isLeft) {
            const double parameter = CrossingParameter(p0, p1, *a, b);
            if (parameter > 0) {
                passages.push_back(parameter);
            }
        }
        a = &b;
    };
    std::for_each(outline.begin(), outline.end(), lead);
    const auto first = std::find_if(outline.begin(), outline.end(), g3d_IsFinite2D);
    if (first != outline.end()) {
        lead(*first);
    }
    std::sort(passages.begin(), passages.end(), std::greater<>());
    return passages;
}

// Collects the parts of a polyline, segment by segment.
class Pieces {
public:
    // Adds the parts of p0-p1 inside the outline; notes whether it is cut.
    void AddSegment(std::span<const g3d_Point> outline, const g3d_Point& p0, const g3d_Point& p1) {
        const std::vector<double> passages = Passages(outline, p0, p1);
        std::vector<double> ends = Cuts(outline, p0, p1);
        // New are only those through an edge that closes a gap of the outline.
        std::copy_if(passages.begin(), passages.end(), std::back_inserter(ends),
                     [](double t) { return t < 1; });
        SortDistinct(ends);
        isCut = isCut || !ends.empty();
        std::erase_if(ends, [](double t) { return t <= kSame || t >= 1 - kSame; });
        ends.push_back(1);
        double from = 0;
        std::size_t behind = passages.size();  // those from here on lie behind the interval
        for (const double to : ends) {
            while (behind > 0 && passages[behind - 1] <= (from + to) / 2) {
                --behind;
            }
            if (behind % 2 != 0) {
                Join(PointAt(p0, p1, from), PointAt(p0, p1, to));
                isInside = true;
            } else {
                isOutside = true;
            }
            from = to;
        }
    }
    cow_1DArrayList<Polygon> Take() {
        Flush();
        return std::move(_pieces);
    }

    bool isCut = false;
    bool isInside = false;   // some part is
    bool isOutside = false;  // some part is

private:
    void Join(const g3d_Point& from, const g3d_Point& to) {
        if (_piece.IsEmpty() || _piece[_piece.Length() - 1] != from) {
            Flush();
            _piece.Append(from);
        }
        _piece.Append(to);
    }
    void Flush() {
        if (!_piece.IsEmpty()) {
            _pieces.Append(std::exchange(_piece, Polygon()));
        }
    }

    cow_1DArrayList<Polygon> _pieces;
    Polygon _piece;
};

}  // namespace

bool g3d_GeomUtils::PointInPolygon2D(const Polygon& polygon, const g3d_Point& point,
                                     const g3d_Point* /*unused*/) noexcept {
    const std::span<const g3d_Point> outline = polygon.Values();
    if (outline.empty()) {
        return false;
    }
    bool isInside = false;
    const g3d_Point* a = &outline.back();
    bool wasAbove = a->y >= point.y;
    for (const g3d_Point& b : outline) {
        const bool isAbove = b.y >= point.y;
        if (isAbove != wasAbove) {
            isInside = isInside != PassesOnRight(*a, b, point);
        }
        a = &b;
        wasAbove = isAbove;
    }
    return isInside;
}

g3d_ClipResultEnum g3d_GeomUtils::IntersectLinePolygon2D(const Polygon& polygon,
                                                         const g3d_Point& p0, const g3d_Point& p1,
                                                         const g3d_Point* boxMin,
                                                         const g3d_Point* boxMax) noexcept {
    const g3d_Point ends[] = {p0, p1};
    if (IsRejected(ends, boxMin, boxMax)) {
        return g3d_CLIP_REJECTED;
    }
    const std::span<const g3d_Point> outline = polygon.Values();
    for (std::size_t i = 0; i + 1 < outline.size(); ++i) {
        if (g3d_SegmentsMeet2D(p0, p1, outline[i], outline[i + 1])) {
            return g3d_CLIP_CROSSING;
        }
    }
    return InsideOrOutside(PointInPolygon2D(polygon, p0));
}

g3d_ClipResultEnum g3d_GeomUtils::IntersectPolygonPolygon2D(const Polygon& polygon1,
                                                            const Polygon& polygon2,
                                                            const g3d_Point* boxMin,
                                                            const g3d_Point* boxMax) {
    const std::span<const g3d_Point> outline1 = polygon1.Values();
    const std::span<const g3d_Point> outline2 = polygon2.Values();
    if (IsRejected(outline2, boxMin, boxMax)) {
        return g3d_CLIP_REJECTED;
    }
    if (g3d_OutlinesMeet2D(outline1, outline2)) {
        return g3d_CLIP_CROSSING;
    }
    return InsideOrOutside(!outline2.empty() && PointInPolygon2D(polygon1, outline2.front()));
}

g3d_ClipResultEnum g3d_GeomUtils::ClipLinePolygon2D(const Polygon& polygon, const g3d_Point& p0,
                                                    const g3d_Point& p1, const g3d_Point* boxMin,
                                                    const g3d_Point* boxMax, Polygon& points) {
    Polygon found;  // the arguments may lie in points
    g3d_ClipResultEnum result = g3d_CLIP_OUTSIDE;
    const g3d_Point ends[] = {p0, p1};
    if (IsRejected(ends, boxMin, boxMax)) {
        result = g3d_CLIP_REJECTED;
    } else if (g3d_IsFinite2D(p0) && g3d_IsFinite2D(p1)) {
        const std::vector<double> cuts = Cuts(polygon.Values(), p0, p1);
        const bool isStartInside = PointInPolygon2D(polygon, p0);
        const bool isEndInside = PointInPolygon2D(polygon, p1);
        if (isStartInside && (cuts.empty() || cuts.front() > kSame)) {
            found.Append(p0);
        }
        for (const double cut : cuts) {
            found.Append(PointAt(p0, p1, cut));
        }
        if (isEndInside && HasLength(p0, p1) && (cuts.empty() || cuts.back() < 1 - kSame)) {
            found.Append(p1);
        }
        result = !cuts.empty() || isStartInside != isEndInside ? g3d_CLIP_CROSSING
                                                               : InsideOrOutside(isStartInside);
    }
    points = std::move(found);
    return result;
}

g3d_ClipResultEnum g3d_GeomUtils::ClipPolylinePolygon2D(const Polygon& polygon,
                                                        const Polygon& polyline,
                                                        const g3d_Point* boxMin,
                                                        const g3d_Point* boxMax,
                                                        cow_1DArrayList<Polygon>& pieces) {
    const std::span<const g3d_Point> outline = polygon.Values();
    const std::span<const g3d_Point> path = polyline.Values();
    g3d_Box2D range;
    for (const g3d_Point& vertex : outline) {
        range.Add(vertex);
    }
    Pieces found;
    bool isPoint = true;  // has no segment with a length
    bool isRejected = true;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        const std::span<const g3d_Point> ends = path.subspan(i, 2);
        if (!HasLength(ends[0], ends[1])) {
            continue;
        }
        isPoint = false;
        if (IsRejected(ends, boxMin, boxMax)) {
            found.isOutside = true;
            continue;
        }
        isRejected = false;
        if (g3d_IsFinite2D(ends[0]) && g3d_IsFinite2D(ends[1]) &&
            range.Meets(g3d_BoxOf(ends[0], ends[1]))) {
            found.AddSegment(outline, ends[0], ends[1]);
        } else {
            found.isOutside = true;
        }
    }
    cow_1DArrayList<Polygon> result = found.Take();
    g3d_ClipResultEnum answer = g3d_CLIP_CROSSING;
    if (isPoint) {
        const bool isKept = !path.empty() && PointInPolygon2D(polygon, path.front());
        const bool isBeyond = IsRejected(path, boxMin, boxMax);
        if (isKept && !isBeyond) {
            result.Append(Polygon{path.front()});
        }
        answer = isBeyond ? g3d_CLIP_REJECTED : InsideOrOutside(isKept);
    } else if (isRejected) {
        answer = g3d_CLIP_REJECTED;
    } else if (!found.isCut && found.isInside != found.isOutside) {
        answer = InsideOrOutside(found.isInside);
    }
    pieces = std::move(result);
    return answer;
}
