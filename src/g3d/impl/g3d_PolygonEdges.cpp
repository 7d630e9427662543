#include "g3d_PolygonEdges.h"

#include "g3d_Orientation.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace {

int Sign(double value) noexcept {
    return static_cast<int>(value > 0) - static_cast<int>(value < 0);
}

struct Planar {
    double x = 0;
    double y = 0;

    [[nodiscard]] double Dot(const Planar& p) const noexcept { return x * p.x + y * p.y; }
    [[nodiscard]] Planar Left() const noexcept { return {-y, x}; }
    friend Planar operator+(const Planar& a, const Planar& b) noexcept {
        return {a.x + b.x, a.y + b.y};
    }
    friend Planar operator-(const Planar& a, const Planar& b) noexcept {
        return {a.x - b.x, a.y - b.y};
    }
    friend Planar operator*(const Planar& a, double s) noexcept { return {a.x * s, a.y * s}; }
};

// A rectangle along the longest of the edges in it: thin around one edge, and around neighbours
// that are about parallel or perpendicular, such as the teeth of a comb, no larger than they are.
// The upright box besides is the smaller one around edges in all directions.
struct Strip {
    g3d_Box2D box;
    Planar center;
    Planar along{1, 0};   // unit length
    double length = -1;   // half of it, along; negative: nothing in it
    double width = -1;    // half of it, across
    double longest = -1;  // edge, squared

    [[nodiscard]] bool IsEmpty() const noexcept { return length < 0; }

    // Whether they may overlap: the boxes do, and no side of either separates them by more than
    // slack. Empty boxes meet none.
    [[nodiscard]] bool Meets(const Strip& other, double slack) const noexcept {
        const double cosine = std::abs(along.Dot(other.along));
        const double sine = std::abs(along.Left().Dot(other.along));
        const auto isApart = [&](const Strip& a, const Strip& b) {
            const Planar offset = b.center - a.center;
            return std::abs(offset.Dot(a.along)) >
                       a.length + b.length * cosine + b.width * sine + slack ||
                   std::abs(offset.Dot(a.along.Left())) >
                       a.width + b.length * sine + b.width * cosine + slack;
        };
        return box.Meets(other.box) && !isApart(*this, other) && !isApart(other, *this);
    }
};

// The strip in a given direction around the points added.
class StripMaker {
public:
    explicit StripMaker(const Planar& along, double longest) noexcept
        : _along(along), _longest(longest) {}

    void Add(const g3d_Point& p) noexcept {
        _box.Add(p);
        Widen({p.x, p.y});
    }
    void Add(const Strip& strip) noexcept {
        if (!strip.IsEmpty()) {
            _box.Add(strip.box);
            const Planar length = strip.along * strip.length;
            const Planar width = strip.along.Left() * strip.width;
            Widen(strip.center + length + width);
            Widen(strip.center + length - width);
            Widen(strip.center - length + width);
            Widen(strip.center - length - width);
        }
    }
    [[nodiscard]] Strip Take() const noexcept {
        if (_low.x > _high.x) {
            return {};
        }
        const Planar middle = (_low + _high) * 0.5;
        return {_box,
                _along * middle.x + _along.Left() * middle.y,
                _along,
                (_high.x - _low.x) * 0.5,
                (_high.y - _low.y) * 0.5,
                _longest};
    }

private:
    static constexpr double kNone = std::numeric_limits<double>::infinity();

    void Widen(const Planar& p) noexcept {
        const Planar turned{p.Dot(_along), p.Dot(_along.Left())};
        _low = {std::min(_low.x, turned.x), std::min(_low.y, turned.y)};
        _high = {std::max(_high.x, turned.x), std::max(_high.y, turned.y)};
    }

    g3d_Box2D _box;
    Planar _along;
    double _longest;
    Planar _low{kNone, kNone};
    Planar _high{-kNone, -kNone};
};

// Strips around runs of consecutive edges, and around pairs of those, up to the whole outline: as
// neighbours along an outline are neighbours in the plane, this needs no sorting. After D. Ballard,
// Strip Trees: A Hierarchical Representation for Curves, CACM 24(5), 1981.
class EdgeTree {
public:
    explicit EdgeTree(std::span<const g3d_Point> vertexes)
        : _vertexes(vertexes),
          _edges(vertexes.size() > 1 ? vertexes.size() - 1 : 0),
          _leaves(std::bit_ceil((_edges + kRun - 1) / kRun)),
          _strips(2 * _leaves) {
        for (std::size_t leaf = _leaves; leaf < 2 * _leaves; ++leaf) {
            _strips[leaf] = StripOfLeaf(leaf);
        }
        for (std::size_t node = _leaves - 1; node >= 1; --node) {
            const Strip& a = _strips[2 * node];
            const Strip& b = _strips[2 * node + 1];
            const Strip& longer = a.longest >= b.longest ? a : b;
            StripMaker maker(longer.along, longer.longest);
            maker.Add(a);
            maker.Add(b);
            _strips[node] = maker.Take();
        }
    }

    [[nodiscard]] bool Meets(const EdgeTree& other) const noexcept {
        // Bounds the rounding of the strips; far below the distance of neighbouring floats.
        const double slack = (Largest(_strips[1].box) + Largest(other._strips[1].box)) *
                             (256 * std::numeric_limits<double>::epsilon());
        return Meets(1, other, 1, slack);
    }

private:
    static constexpr std::size_t kRun = 4;  // edges to a leaf

    // Coordinate of a box that is not empty.
    static double Largest(const g3d_Box2D& box) noexcept {
        return std::max(std::max(-box.minX, box.maxX), std::max(-box.minY, box.maxY));
    }

    [[nodiscard]] Strip StripOfLeaf(std::size_t leaf) const noexcept {
        Planar along{1, 0};
        double longest = 0;
        for (std::size_t i = FirstEdge(leaf); i < FirstEdge(leaf + 1); ++i) {
            if (IsFiniteEdge(i)) {
                const Planar edge = Vertex(i + 1) - Vertex(i);
                if (edge.Dot(edge) > longest) {
                    longest = edge.Dot(edge);
                    along = edge * (1 / std::sqrt(longest));
                }
            }
        }
        StripMaker maker(along, longest);
        for (std::size_t i = FirstEdge(leaf); i < FirstEdge(leaf + 1); ++i) {
            if (IsFiniteEdge(i)) {
                maker.Add(_vertexes[i]);
                maker.Add(_vertexes[i + 1]);
            }
        }
        return maker.Take();
    }

    // The children of node n are 2n and 2n + 1; 1 is the root. At most some 60 calls deep.
    bool Meets(std::size_t node, const EdgeTree& other, std::size_t otherNode,
               double slack) const noexcept {
        const Strip& strip = _strips[node];
        const Strip& otherStrip = other._strips[otherNode];
        if (!strip.Meets(otherStrip, slack)) {
            return false;
        }
        const bool isLeaf = node >= _leaves;
        const bool isOtherLeaf = otherNode >= other._leaves;
        if (isLeaf && isOtherLeaf) {
            return LeavesMeet(node, other, otherNode);
        }
        const bool isLarger = strip.length + strip.width >= otherStrip.length + otherStrip.width;
        if (isOtherLeaf || (!isLeaf && isLarger)) {
            return Meets(2 * node, other, otherNode, slack) ||
                   Meets(2 * node + 1, other, otherNode, slack);
        }
        return Meets(node, other, 2 * otherNode, slack) ||
               Meets(node, other, 2 * otherNode + 1, slack);
    }

    bool LeavesMeet(std::size_t leaf, const EdgeTree& other, std::size_t otherLeaf) const noexcept {
        for (std::size_t i = FirstEdge(leaf); i < FirstEdge(leaf + 1); ++i) {
            for (std::size_t j = other.FirstEdge(otherLeaf); j < other.FirstEdge(otherLeaf + 1);
                 ++j) {
                if (g3d_SegmentsMeet2D(_vertexes[i], _vertexes[i + 1], other._vertexes[j],
                                       other._vertexes[j + 1])) {
                    return true;
                }
            }
        }
        return false;
    }

    [[nodiscard]] std::size_t FirstEdge(std::size_t leaf) const noexcept {
        return std::min((leaf - _leaves) * kRun, _edges);
    }
    [[nodiscard]] bool IsFiniteEdge(std::size_t i) const noexcept {
        return g3d_IsFinite2D(_vertexes[i]) && g3d_IsFinite2D(_vertexes[i + 1]);
    }
    [[nodiscard]] Planar Vertex(std::size_t i) const noexcept {
        return {_vertexes[i].x, _vertexes[i].y};
    }

    std::span<const g3d_Point> _vertexes;
    std::size_t _edges;
    std::size_t _leaves;  // a power of two
    std::vector<Strip> _strips;
};

}  // namespace

bool g3d_SegmentsMeet2D(const g3d_Point& a, const g3d_Point& b, const g3d_Point& c,
                        const g3d_Point& d) noexcept {
    // With boxes that meet, the signs below tell it also of segments in line or without length.
    return g3d_BoxOf(a, b).Meets(g3d_BoxOf(c, d)) && g3d_IsFinite2D(a) && g3d_IsFinite2D(b) &&
           g3d_IsFinite2D(c) && g3d_IsFinite2D(d) &&
           Sign(g3d_Orientation2D(a, b, c)) * Sign(g3d_Orientation2D(a, b, d)) <= 0 &&
           Sign(g3d_Orientation2D(c, d, a)) * Sign(g3d_Orientation2D(c, d, b)) <= 0;
}

bool g3d_OutlinesMeet2D(std::span<const g3d_Point> outline1, std::span<const g3d_Point> outline2) {
    return EdgeTree(outline1).Meets(EdgeTree(outline2));
}
