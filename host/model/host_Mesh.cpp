#include "host_Mesh.h"

#include "host_FirstEqual.h"
#include "host_Progress.h"
#include "omu_RangeChecker.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace {

constexpr const char* kSource = "host/model/host_Mesh";

using FaceNodes = std::array<int, 4>;

struct Corner {
    int at;
    std::array<int, 3> to;  // a right-handed triple; the last is -1 for a surface cell's normal
};

/// What the algorithms know of a shape. Faces run against the clock, seen from outside.
struct Shape {
    int nodes;
    std::span<const FaceNodes> faces;
    std::span<const Corner> corners;
    double idealJacobian;             // of a corner whose edges have length 1
    host_Symmetric idealInverseGram;  // of the scalar products of those edges
};

constexpr FaceNodes kTetFaces[] = {{0, 2, 1, -1}, {0, 1, 3, -1}, {1, 2, 3, -1}, {0, 3, 2, -1}};
constexpr FaceNodes kPyramidFaces[] = {
    {0, 3, 2, 1}, {0, 1, 4, -1}, {1, 2, 4, -1}, {2, 3, 4, -1}, {3, 0, 4, -1}};
constexpr FaceNodes kWedgeFaces[] = {
    {0, 2, 1, -1}, {3, 4, 5, -1}, {0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}};
constexpr FaceNodes kHexFaces[] = {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                   {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};
constexpr Corner kTetCorners[] = {{0, {1, 2, 3}}, {1, {2, 0, 3}}, {2, {0, 1, 3}}, {3, {0, 2, 1}}};
constexpr Corner kPyramidCorners[] = {
    {0, {1, 3, 4}}, {1, {2, 0, 4}}, {2, {3, 1, 4}}, {3, {0, 2, 4}}};
constexpr Corner kWedgeCorners[] = {{0, {1, 2, 3}}, {1, {2, 0, 4}}, {2, {0, 1, 5}},
                                    {3, {5, 4, 0}}, {4, {3, 5, 1}}, {5, {4, 3, 2}}};
constexpr Corner kHexCorners[] = {{0, {1, 3, 4}}, {1, {2, 0, 5}}, {2, {3, 1, 6}}, {3, {0, 2, 7}},
                                  {4, {7, 5, 0}}, {5, {4, 6, 1}}, {6, {5, 7, 2}}, {7, {6, 4, 3}}};
constexpr FaceNodes kTriFaces[] = {{0, 1, 2, -1}};
constexpr FaceNodes kQuadFaces[] = {{0, 1, 2, 3}};
constexpr Corner kTriCorners[] = {{0, {1, 2, -1}}, {1, {2, 0, -1}}, {2, {0, 1, -1}}};
constexpr Corner kQuadCorners[] = {
    {0, {1, 3, -1}}, {1, {2, 0, -1}}, {2, {3, 1, -1}}, {3, {0, 2, -1}}};

constexpr double kHalfRoot2 = 0.70710678118654752440;
constexpr double kHalfRoot3 = 0.86602540378443864676;

// In the order of host_CellType.
constexpr Shape kShapes[] = {
    {4, kTetFaces, kTetCorners, kHalfRoot2, {1.5, 1.5, 1.5, -0.5, -0.5, -0.5}},
    {5, kPyramidFaces, kPyramidCorners, kHalfRoot2, {1.5, 1.5, 2, 0.5, -1, -1}},
    {6, kWedgeFaces, kWedgeCorners, kHalfRoot3, {4.0 / 3, 4.0 / 3, 1, -2.0 / 3, 0, 0}},
    {8, kHexFaces, kHexCorners, 1, {1, 1, 1, 0, 0, 0}},
    {3, kTriFaces, kTriCorners, kHalfRoot3, {4.0 / 3, 4.0 / 3, 0, -2.0 / 3, 0, 0}},
    {4, kQuadFaces, kQuadCorners, 1, {1, 1, 0, 0, 0, 0}},
};

constexpr const Shape& ShapeOf(host_CellType type) { return kShapes[static_cast<int>(type)]; }

host_Point operator-(const host_Point& a, const host_Point& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

void Add(host_Point& sum, const host_Point& a, double factor = 1) {
    for (std::size_t k = 0; k < 3; ++k) {
        sum[k] += factor * a[k];
    }
}

double Dot(const host_Point& a, const host_Point& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

host_Point Cross(const host_Point& a, const host_Point& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double Length(const host_Point& a) { return std::sqrt(Dot(a, a)); }

double Determinant(const host_Point& a, const host_Point& b, const host_Point& c) {
    return Dot(a, Cross(b, c));
}

/// The scalar products of pairs, in the order of host_Symmetric.
host_Symmetric Products(const host_Point& a, const host_Point& b, const host_Point& c) {
    return {Dot(a, a), Dot(b, b), Dot(c, c), Dot(a, b), Dot(b, c), Dot(a, c)};
}

/// Adds factor a a^T.
void AddSquare(host_Symmetric& sum, const host_Point& a, double factor) {
    const host_Symmetric square = {a[0] * a[0], a[1] * a[1], a[2] * a[2],
                                   a[0] * a[1], a[1] * a[2], a[0] * a[2]};
    for (std::size_t k = 0; k < 6; ++k) {
        sum[k] += factor * square[k];
    }
}

/// Calls visit(a, b, c) with the triangles of a face: itself, or four about a quadrangle's middle.
template <class Visit>
void ForEachTriangle(std::span<const host_Point> points, Visit visit) {
    if (points.size() == 3) {
        visit(points[0], points[1], points[2]);
        return;
    }
    host_Point middle{};
    for (const host_Point& point : points) {
        Add(middle, point, 0.25);
    }
    for (std::size_t i = 0; i < 4; ++i) {
        visit(points[i], points[(i + 1) % 4], middle);
    }
}

/// The places of a face's nodes, relative to \p origin.
class FacePoints {
public:
    template <class PointOf>
    FacePoints(const FaceNodes& nodes, PointOf pointOf, const host_Point& origin = {}) {
        for (; _count < 4 && nodes[_count] >= 0; ++_count) {
            _points[_count] = pointOf(nodes[_count]) - origin;
        }
    }
    [[nodiscard]] std::span<const host_Point> Get() const { return {_points.data(), _count}; }

private:
    std::array<host_Point, 4> _points{};
    std::size_t _count = 0;
};

/// What two cells' faces have in common: the nodes ascending, each once, and then -1.
FaceNodes FaceKey(FaceNodes face) {
    FaceNodes key{-1, -1, -1, -1};
    std::sort(face.begin(), face.end());
    std::size_t count = 0;
    for (const int node : face) {
        if (node >= 0 && (count == 0 || key[count - 1] != node)) {
            key[count++] = node;
        }
    }
    return key;
}

[[noreturn]] void Refuse(const std::string& message, int line) {
    omu_ValueErrorException(atr_String(message)).Throw(kSource, line);
}

}  // namespace

host_Symmetric host_Moments::Inertia(double density, const host_Point& point) const {
    host_Symmetric about = second;
    AddSquare(about, centre - point, volume);  // parallel axes
    const auto& [xx, yy, zz, xy, yz, xz] = about;
    return {density * (yy + zz), density * (xx + zz), density * (xx + yy),
            -density * xy,       -density * yz,       -density * xz};
}

host_Mesh::host_Mesh(std::vector<host_Point> points) : _points(std::move(points)) {
    if (_points.empty()) {
        Refuse("points is empty", __LINE__);
    }
    const auto bad = std::find_if(_points.begin(), _points.end(), [](const host_Point& p) {
        return !std::isfinite(p[0] + p[1] + p[2]);
    });
    if (bad != _points.end()) {
        Refuse("points[" + std::to_string(bad - _points.begin()) + "] is not finite", __LINE__);
    }
}

void host_Mesh::AddCells(host_CellType type, std::span<const int> nodes) {
    const Shape& shape = ShapeOf(type);
    const auto size = static_cast<std::size_t>(shape.nodes);
    if (nodes.size() % size != 0) {
        Refuse("a cell of this type has " + std::to_string(size) + " nodes", __LINE__);
    }
    const omu_RangeChecker range =
        omu_RangeChecker().AtLeast(0).Below(static_cast<double>(_points.size()));
    host_Progress progress("Adding cells", host_Work{2 * nodes.size()});
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        progress.Count();
        if (!range.Accepts(nodes[i])) {
            range.Check("cells[" + std::to_string(_types.size() + i / size) + "][" +
                            std::to_string(i % size) + "]",
                        nodes[i]);
        }
    }
    for (std::size_t start = 0; start < nodes.size(); start += size) {
        progress.Count(size);
        const auto cell = nodes.subspan(start, size);
        _starts.push_back(_nodes.size());
        _nodes.insert(_nodes.end(), cell.begin(), cell.end());
        _types.push_back(type);
        const int number = CellCount() - 1;
        if (type == host_CellType::Wedge6 && Moments(std::span(&number, 1)).volume < 0) {
            std::swap(_nodes[_starts.back() + 1], _nodes[_starts.back() + 2]);
            std::swap(_nodes[_starts.back() + 4], _nodes[_starts.back() + 5]);
        }
    }
}

int host_Mesh::NodeCount(host_CellType type) noexcept { return ShapeOf(type).nodes; }

host_CellType host_Mesh::TypeOf(int nodeCount) {
    for (const auto* entry = omu_EnumTable<host_CellType, 1>::kEntries; entry->name; ++entry) {
        if (NodeCount(entry->value) == nodeCount) {
            return entry->value;
        }
    }
    Refuse("no cell has " + std::to_string(nodeCount) + " nodes; 3, 4, 5, 6 and 8 are known",
           __LINE__);
}

std::span<const int> host_Mesh::Nodes(int cell) const {
    return {&_nodes[_starts[static_cast<std::size_t>(cell)]],
            static_cast<std::size_t>(NodeCount(Type(cell)))};
}

host_Mesh::Box host_Mesh::BoundingBox() const noexcept {
    Box box{_points.front(), _points.front()};
    for (const host_Point& point : _points) {
        for (std::size_t k = 0; k < 3; ++k) {
            box.low[k] = std::min(box.low[k], point[k]);
            box.high[k] = std::max(box.high[k], point[k]);
        }
    }
    return box;
}

host_Point host_Mesh::Middle(int cell) const {
    host_Point middle{};
    const auto nodes = Nodes(cell);
    for (const int node : nodes) {
        Add(middle, At(node), 1.0 / static_cast<double>(nodes.size()));
    }
    return middle;
}

host_Mesh::Face host_Mesh::FaceOf(int cell, std::size_t number) const {
    const auto nodes = Nodes(cell);
    Face face{cell, ShapeOf(Type(cell)).faces[number]};
    for (int& node : face.nodes) {
        node = node < 0 ? -1 : nodes[static_cast<std::size_t>(node)];
    }
    return face;
}

std::size_t host_Mesh::FaceCount() const {
    std::size_t count = 0;
    for (const host_CellType type : _types) {
        count += ShapeOf(type).faces.size();
    }
    return count;
}

std::vector<host_Mesh::Face> host_Mesh::OuterFaces() const {
    struct Place {
        int cell;
        std::uint32_t face;
    };
    std::vector<Place> places;
    std::vector<FaceNodes> keys;
    places.reserve(_nodes.size());
    keys.reserve(_nodes.size());
    host_Progress progress("Finding the outer faces", host_Work{6 * FaceCount()});
    for (int cell = 0; cell < CellCount(); ++cell) {
        const std::size_t count = ShapeOf(Type(cell)).faces.size();
        progress.Count(count);
        for (std::uint32_t number = 0; number < count; ++number) {
            const FaceNodes key = FaceKey(FaceOf(cell, number).nodes);
            if (key[2] >= 0) {  // else of a collapsed cell
                keys.push_back(key);
                places.push_back({cell, number});
            }
        }
    }
    // Of faces with the same nodes, which is shown, if any.
    constexpr std::uint32_t kNone = 0xFFFFFFFF;
    const std::vector<std::uint32_t> first = host_FirstEqual(keys, _points.size(), progress);
    std::vector<std::uint32_t> shown(keys.size(), kNone);
    const auto isSurface = [&](std::uint32_t i) { return IsSurface(Type(places[i].cell)); };
    for (std::uint32_t i = 0; i < keys.size(); ++i) {
        progress.Count();
        std::uint32_t& known = shown[first[i]];
        if (first[i] == i) {
            known = i;
        } else if (known == kNone || !isSurface(known)) {
            known = isSurface(i) ? i : kNone;
        }
    }
    std::vector<Face> faces;
    for (const std::uint32_t i : shown) {
        progress.Count();
        if (i != kNone) {
            faces.push_back(FaceOf(places[i].cell, places[i].face));
        }
    }
    return faces;
}

double host_Mesh::SurfaceArea() const {
    double area = 0;
    const std::vector<Face> faces = OuterFaces();
    host_Progress progress("Measuring the surface", faces.size());
    for (const Face& face : faces) {
        progress.Count();
        const FacePoints points(face.nodes, [this](int node) { return At(node); });
        ForEachTriangle(points.Get(), [&](const auto& a, const auto& b, const auto& c) {
            area += Length(Cross(b - a, c - a)) / 2;
        });
    }
    return area;
}

host_Moments host_Mesh::Moments(std::span<const int> cells) const {
    // Sums are taken about a point nearby: far from the origin they would cancel.
    if (cells.empty()) {
        return {};
    }
    const host_Point origin = Middle(cells.front());
    double volume = 0;  // the sums are scaled once, at the end: simple cells come out exact
    host_Point first{};
    host_Symmetric second{};
    host_Progress progress("Measuring the volume", cells.size());
    for (const int cell : cells) {
        progress.Count();
        if (IsSurface(Type(cell))) {
            continue;
        }
        const auto nodes = Nodes(cell);
        const host_Point d = Middle(cell) - origin;
        for (const FaceNodes& face : ShapeOf(Type(cell)).faces) {
            const auto pointOf = [&](int node) {
                return At(nodes[static_cast<std::size_t>(node)]);
            };
            const FacePoints points(face, pointOf, origin);
            ForEachTriangle(points.Get(), [&](const auto& a, const auto& b, const auto& c) {
                const double v = Determinant(a - d, b - d, c - d);
                host_Point sum = d;
                for (const auto* corner : {&a, &b, &c}) {
                    Add(sum, *corner);
                    AddSquare(second, *corner, v);
                }
                AddSquare(second, d, v);
                AddSquare(second, sum, v);
                Add(first, sum, v);
                volume += v;
            });
        }
    }
    host_Moments moments{volume / 6, origin, second};
    for (double& element : moments.second) {
        element /= 120;
    }
    if (volume != 0) {
        host_Point offset{};
        Add(offset, first, 1 / (4 * volume));
        AddSquare(moments.second, offset, -moments.volume);
        Add(moments.centre, offset);
    }
    return moments;
}

double host_Mesh::Quality(int cell, host_QualityMeasure measure) const {
    const auto nodes = Nodes(cell);
    const auto place = [&](int node) { return At(nodes[static_cast<std::size_t>(node)]); };
    const Shape& shape = ShapeOf(Type(cell));

    if (measure == host_QualityMeasure::EdgeRatio) {
        double shortest = std::numeric_limits<double>::infinity();
        double longest = 0;
        for (const FaceNodes& face : shape.faces) {
            const FacePoints points(face, place);
            const auto all = points.Get();
            for (std::size_t i = 0; i < all.size(); ++i) {
                const double edge = Length(all[i] - all[(i + 1) % all.size()]);
                shortest = std::min(shortest, edge);
                longest = std::max(longest, edge);
            }
        }
        return shortest > 0 ? longest / shortest : std::numeric_limits<double>::infinity();
    }

    const bool isSurface = IsSurface(Type(cell));
    host_Point normal{};
    if (isSurface) {
        const host_Point across = Cross(place(2) - place(0), place(shape.nodes - 1) - place(1));
        if (const double length = Length(across); length > 0) {
            Add(normal, across, 1 / length);
        }
    }
    double least = std::numeric_limits<double>::infinity();
    for (const Corner& corner : shape.corners) {
        const host_Point at = place(corner.at);
        const host_Point a = place(corner.to[0]) - at;
        const host_Point b = place(corner.to[1]) - at;
        const host_Point c = isSurface ? normal : place(corner.to[2]) - at;
        const double jacobian = Determinant(a, b, c) / shape.idealJacobian;
        double value = 0;
        if (measure == host_QualityMeasure::ScaledJacobian) {
            const double lengths = Length(a) * Length(b) * Length(c);
            value = lengths > 0 ? jacobian / lengths : 0;
        } else if (jacobian > 0) {
            const host_Symmetric gram = Products(a, b, c);
            double norm = 0;
            for (std::size_t k = 0; k < 6; ++k) {
                norm += (k < 3 ? 1 : 2) * gram[k] * shape.idealInverseGram[k];
            }
            value = isSurface ? 2 * jacobian / norm : 3 * std::cbrt(jacobian * jacobian) / norm;
        }
        least = std::min(least, value);
    }
    return least;
}
