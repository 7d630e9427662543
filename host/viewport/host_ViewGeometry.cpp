#include "host_ViewGeometry.h"

#include "host_FirstEqual.h"
#include "host_Progress.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>

namespace {

constexpr std::size_t kKept = 4;             // geometries, and values, of a part
constexpr std::size_t kPollEvery = 1 << 16;  // faces

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// The nearest float; infinite beyond their range.
float ToFloat(double value) {
    constexpr double kMost = std::numeric_limits<float>::max();
    if (std::abs(value) > kMost) {
        return std::copysign(std::numeric_limits<float>::infinity(),
                             static_cast<float>(value > 0) - 0.5F);
    }
    return static_cast<float>(value);
}

host_Float3 ToFloats(const host_Point& p) { return {ToFloat(p[0]), ToFloat(p[1]), ToFloat(p[2])}; }

bool IsFinite(const host_Float3& p) {
    return std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]);
}

host_Point Difference(const host_Point& a, const host_Point& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

double Dot(const host_Point& a, const host_Point& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

host_Point Cross(const host_Point& a, const host_Point& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double Length(const host_Point& a) { return std::sqrt(Dot(a, a)); }

host_Point Scaled(const host_Point& a, double factor) {
    return {factor * a[0], factor * a[1], factor * a[2]};
}

/// Leaves out nodes that repeat the one before; false when fewer than three are left.
bool Clean(std::array<int, 4>& nodes) {
    std::array<int, 4> kept{-1, -1, -1, -1};
    std::size_t count = 0;
    for (const int node : nodes) {
        if (node >= 0 && (count == 0 || kept[count - 1] != node)) {
            kept[count++] = node;
        }
    }
    if (count > 1 && kept[count - 1] == kept[0]) {
        kept[--count] = -1;
    }
    nodes = kept;
    return count >= 3;
}

/// Half the cross product of the diagonals: the normal, as long as the area.
host_Point AreaVector(const host_Mesh::Face& face, const std::vector<host_Point>& points) {
    const auto at = [&](std::size_t i) -> const host_Point& {
        return points[static_cast<std::size_t>(face.nodes[i])];
    };
    const std::size_t last = face.nodes[3] < 0 ? 2 : 3;
    return Scaled(Cross(Difference(at(2), at(0)), Difference(at(last), at(1))), 0.5);
}

/// Whether a quadrangle is better cut from node 1 to 3: where the other cut leaves the face (at a
/// reentrant corner), or else along the shorter diagonal.
bool CutsAcross(const host_Mesh::Face& face, const std::vector<host_Point>& points,
                const host_Point& normal) {
    const auto at = [&](std::size_t i) -> const host_Point& {
        return points[static_cast<std::size_t>(face.nodes[i % 4])];
    };
    const auto isGood = [&](std::size_t start) {
        const host_Point diagonal = Difference(at(start + 2), at(start));
        return Dot(Cross(Difference(at(start + 1), at(start)), diagonal), normal) > 0 &&
               Dot(Cross(diagonal, Difference(at(start + 3), at(start))), normal) > 0;
    };
    if (isGood(0) != isGood(1)) {
        return isGood(1);
    }
    return Length(Difference(at(3), at(1))) < Length(Difference(at(2), at(0)));
}

/// Sets that are joined two by two. Source: Tarjan and van Leeuwen, Journal of the ACM 31 (1984),
/// 245-281 (path halving).
class Sets {
public:
    explicit Sets(std::size_t count) : _parents(count) {
        std::iota(_parents.begin(), _parents.end(), 0U);
    }
    std::uint32_t Find(std::uint32_t member) {
        while (_parents[member] != member) {
            member = _parents[member] = _parents[_parents[member]];
        }
        return member;
    }
    void Join(std::uint32_t a, std::uint32_t b) {
        a = Find(a);
        b = Find(b);
        _parents[std::max(a, b)] = std::min(a, b);
    }

private:
    std::vector<std::uint32_t> _parents;
};

/// The entry of \p made that \p isIt, moved to the front, or null.
template <class Entry, class IsIt>
Entry* Recall(std::vector<Entry>& made, IsIt isIt) {
    const auto found = std::find_if(made.begin(), made.end(), isIt);
    if (found == made.end()) {
        return nullptr;
    }
    std::rotate(made.begin(), found, found + 1);
    return &made.front();
}

template <class Entry>
Entry& Keep(std::vector<Entry>& made, Entry entry) {
    made.insert(made.begin(), std::move(entry));
    made.resize(std::min(made.size(), kKept));
    return made.front();
}

}  // namespace

host_ViewGeometry::host_ViewGeometry(const host_Mesh& mesh, const Poll& poll) {
    const std::vector<host_Point>& points = mesh.Points();
    _points.reserve(points.size());
    for (const host_Point& point : points) {
        const host_Float3 rounded = ToFloats(point);
        _points.push_back(IsFinite(rounded) ? rounded : host_Float3{kNaN, kNaN, kNaN});
    }
    poll();
    _faces = mesh.OuterFaces();
    poll();
    host_Progress progress("Readying the surface", host_Work{2 * _faces.size()});
    std::erase_if(_faces, [&](host_Mesh::Face& face) {
        progress.Count();
        return !Clean(face.nodes) ||
               std::any_of(face.nodes.begin(), face.nodes.end(), [&](int node) {
                   return node >= 0 && !IsFinite(_points[static_cast<std::size_t>(node)]);
               });
    });

    std::vector<host_Point> normals;
    normals.reserve(_faces.size());
    _cutsAcross.reserve(_faces.size());
    for (const host_Mesh::Face& face : _faces) {
        progress.Count();
        normals.push_back(AreaVector(face, points));
        _cutsAcross.push_back(face.nodes[3] >= 0 && CutsAcross(face, points, normals.back()));
    }
    poll();
    FindEdges(normals, poll);
    poll();
    FindVertices(points, normals, poll);
    poll();

    if (_faces.empty()) {
        std::copy_if(_points.begin(), _points.end(), std::back_inserter(_loose), IsFinite);
    }
    host_Point low{};
    host_Point high{};
    bool isFirst = true;
    const auto extend = [&](const host_Float3& point) {
        for (std::size_t k = 0; k < 3; ++k) {
            low[k] = isFirst ? point[k] : std::min<double>(low[k], point[k]);
            high[k] = isFirst ? point[k] : std::max<double>(high[k], point[k]);
        }
        isFirst = false;
    };
    for (const Vertex& vertex : _vertices) {
        extend(_points[static_cast<std::size_t>(vertex.node)]);
    }
    std::for_each(_loose.begin(), _loose.end(), extend);
    const host_Point sides = Difference(high, low);
    _size = std::max({sides[0], sides[1], sides[2]});
}

host_ViewGeometry::Corner host_ViewGeometry::Next(Corner corner) const {
    const bool isLast = corner % 4 + 1 == static_cast<Corner>(Corners(corner / 4));
    return isLast ? corner - corner % 4 : corner + 1;
}

void host_ViewGeometry::FindEdges(const std::vector<host_Point>& normals, const Poll& poll) {
    std::vector<Corner> starts;
    std::vector<std::array<int, 2>> keys;
    starts.reserve(4 * _faces.size());
    keys.reserve(4 * _faces.size());
    host_Progress progress("Finding the edges", host_Work{7 * 4 * _faces.size()});
    for (std::size_t face = 0; face < _faces.size(); ++face) {
        progress.Count(4);
        if (face % kPollEvery == 0) {
            poll();
        }
        for (int k = 0; k < Corners(face); ++k) {
            const auto start = static_cast<Corner>(4 * face + static_cast<std::size_t>(k));
            const auto [low, high] = std::minmax({Node(start), Node(Next(start))});
            starts.push_back(start);
            keys.push_back({low, high});
        }
    }
    const std::vector<std::uint32_t> first = host_FirstEqual(keys, _points.size(), progress);
    std::vector<std::uint32_t> numbers(keys.size());
    for (std::uint32_t i = 0; i < keys.size(); ++i) {
        progress.Count();
        if (first[i] == i) {
            numbers[i] = static_cast<std::uint32_t>(_edges.size());
            _edges.push_back({starts[i], starts[i], 1, true});
        } else if (Edge& edge = _edges[numbers[first[i]]]; ++edge.faces == 2) {
            edge.second = starts[i];
        }
    }
    const double limit = std::cos(kCreaseAngle * std::numbers::pi / 180);
    for (Edge& edge : _edges) {
        progress.Count(4);
        const host_Point& a = normals[edge.first / 4];
        const host_Point& b = normals[edge.second / 4];
        // Between faces of opposite orientation there is no common outside. A face without area
        // has no normal, so it cannot make an edge.
        edge.isCrease = edge.faces != 2 || Node(edge.first) == Node(edge.second) ||
                        Dot(a, b) < limit * Length(a) * Length(b);
    }
}

void host_ViewGeometry::FindVertices(const std::vector<host_Point>& points,
                                     const std::vector<host_Point>& normals, const Poll& poll) {
    // Corners become one vertex across edges that are no crease; faces one flat region across
    // edges that do not bend.
    constexpr double kFlat = 0.99996;  // cosine of half a degree
    Sets corners(4 * _faces.size());
    Sets regions(_faces.size());
    host_Progress progress("Smoothing the surface", host_Work{_edges.size() + 6 * _faces.size()});
    for (const Edge& edge : _edges) {
        progress.Count();
        if (edge.isCrease) {
            continue;
        }
        corners.Join(edge.first, Next(edge.second));
        corners.Join(Next(edge.first), edge.second);
        const host_Point& a = normals[edge.first / 4];
        const host_Point& b = normals[edge.second / 4];
        if (Dot(a, b) >= kFlat * Length(a) * Length(b)) {
            regions.Join(edge.first / 4, edge.second / 4);
        }
    }
    std::vector<double> areas(_faces.size());
    for (std::uint32_t face = 0; face < _faces.size(); ++face) {
        progress.Count();
        areas[regions.Find(face)] += Length(normals[face]);
    }

    _vertexOf.resize(4 * _faces.size());
    std::vector<host_Point> sums;
    const auto at = [&](Corner corner) -> const host_Point& {
        return points[static_cast<std::size_t>(Node(corner))];
    };
    for (std::uint32_t face = 0; face < _faces.size(); ++face) {
        progress.Count(4);
        if (face % kPollEvery == 0) {
            poll();
        }
        const double length = Length(normals[face]);
        const auto count = static_cast<Corner>(Corners(face));
        for (Corner k = 0; k < count; ++k) {
            const Corner corner = 4 * face + k;
            const Corner root = corners.Find(corner);
            if (root == corner) {
                _vertexOf[corner] = static_cast<std::uint32_t>(_vertices.size());
                _vertices.push_back({Node(corner), {0, 0, 1}});
                sums.emplace_back();
            }
            _vertexOf[corner] = _vertexOf[root];
            const host_Point u = Difference(at(Next(corner)), at(corner));
            const host_Point v = Difference(at(4 * face + (k + count - 1) % count), at(corner));
            const double angle = std::atan2(Length(Cross(u, v)), Dot(u, v));
            const double weight = length > 0 ? angle * areas[regions.Find(face)] / length : 0;
            for (std::size_t i = 0; i < 3; ++i) {
                sums[_vertexOf[corner]][i] += weight * normals[face][i];
            }
        }
    }
    for (std::size_t i = 0; i < _vertices.size(); ++i) {
        progress.Count();
        if (const double length = Length(sums[i]); length > 0 && std::isfinite(length)) {
            _vertices[i].normal = ToFloats(Scaled(sums[i], 1 / length));
        }
    }
}

host_Geometry host_ViewGeometry::Make(const host_GeometryChoice& choice) const {
    host_Geometry geometry;
    // The point of each corner in the geometry.
    std::vector<std::uint32_t> pointOf;
    host_Progress progress("Readying the picture",
                           host_Work{_vertices.size() + _faces.size() + _edges.size()});
    const auto addPoint = [&](const Vertex& vertex) {
        progress.Count();
        const auto node = static_cast<std::size_t>(vertex.node);
        geometry.points.push_back(_points[node]);
        geometry.normals.push_back(vertex.normal);
        if (choice.displacement != nullptr) {
            geometry.displacements.push_back(ToFloats(choice.displacement->Vector(node)));
        }
    };
    if (choice.isByCell) {
        pointOf.resize(_vertexOf.size());
        for (std::size_t face = 0; face < _faces.size(); ++face) {
            for (std::size_t k = 0; k < static_cast<std::size_t>(Corners(face)); ++k) {
                pointOf[4 * face + k] = static_cast<std::uint32_t>(geometry.points.size());
                addPoint(_vertices[_vertexOf[4 * face + k]]);
            }
        }
    } else {
        pointOf = _vertexOf;
        std::for_each(_vertices.begin(), _vertices.end(), addPoint);
    }
    for (std::size_t i = 0; i < geometry.displacements.size(); ++i) {
        if (!IsFinite(geometry.displacements[i])) {
            geometry.displacements[i] = {};
            geometry.points[i] = {kNaN, kNaN, kNaN};  // taken by no face, below
        }
    }

    const auto isDrawn = [&](std::span<const std::uint32_t> corners) {
        return std::all_of(corners.begin(), corners.end(),
                           [&](std::uint32_t i) { return IsFinite(geometry.points[i]); });
    };
    for (std::size_t face = 0; face < _faces.size(); ++face) {
        progress.Count();
        const std::uint32_t* p = &pointOf[4 * face];
        if (!isDrawn({p, static_cast<std::size_t>(Corners(face))})) {
            continue;
        }
        const std::size_t last = _cutsAcross[face] ? 3 : 2;
        geometry.triangles.push_back({p[0], p[1], p[last]});
        if (Corners(face) == 4) {
            geometry.triangles.push_back({p[last - 2], p[2], p[3]});
        }
    }
    for (const Edge& edge : _edges) {
        progress.Count();
        if (edge.isCrease || !choice.hasFeatureEdges) {
            const std::array<std::uint32_t, 2> ends{pointOf[edge.first], pointOf[Next(edge.first)]};
            if (isDrawn(ends)) {
                geometry.edges.push_back(ends);
            }
        }
    }
    return geometry;
}

std::shared_ptr<const host_Geometry> host_ViewGeometry::Geometry(
    const host_GeometryChoice& choice) {
    if (auto* made = Recall(_made, [&](const auto& entry) { return entry.first == choice; })) {
        return made->second;
    }
    auto geometry = std::make_shared<const host_Geometry>(Make(choice));
    return Keep(_made, {choice, std::move(geometry)}).second;
}

std::shared_ptr<const host_Values> host_ViewGeometry::Values(
    const host_GeometryChoice& choice, const std::shared_ptr<const host_Field>& field,
    host_Component component) {
    if (auto* made = Recall(_madeValues, [&](const MadeValues& entry) {
            return entry.isByCell == choice.isByCell && entry.field == field &&
                   entry.component == component;
        })) {
        return made->values;
    }
    host_Values values;
    host_Progress progress("Readying the values",
                           host_Work{choice.isByCell ? 4 * _faces.size() : _vertices.size()});
    const auto add = [&](int place) {
        progress.Count();
        values.push_back(ToFloat(field->Scalar(static_cast<std::size_t>(place), component)));
    };
    if (choice.isByCell) {
        const bool isAtCells = field->position == host_FieldPosition::Cells;
        for (std::size_t face = 0; face < _faces.size(); ++face) {
            for (std::size_t k = 0; k < static_cast<std::size_t>(Corners(face)); ++k) {
                add(isAtCells ? _faces[face].cell : _faces[face].nodes[k]);
            }
        }
    } else {
        for (const Vertex& vertex : _vertices) {
            add(vertex.node);
        }
    }
    return Keep(_madeValues, {choice.isByCell, field, component,
                              std::make_shared<const host_Values>(std::move(values))})
        .values;
}
