#pragma once

#include "omu_PrimEnum.h"

#include <array>
#include <span>
#include <vector>

using host_Point = std::array<double, 3>;

/// Shapes of cells. The first nodes of a solid are the base, a triangle or quadrangle whose
/// right-hand normal points into the cell; then comes the apex, or the opposite face, node above
/// node. A wedge may run either way around, since programs disagree about it. Surface cells are a
/// triangle or quadrangle, outside where the normal points.
enum class host_CellType { Tet4, Pyramid5, Wedge6, Hex8, Tri3, Quad4 };

/// How good the shape of a cell is; the formulas stand at host_Mesh::Quality.
enum class host_QualityMeasure { ScaledJacobian, MeanRatio, EdgeRatio };

template <>
struct omu_EnumTable<host_CellType, 1> {
    static constexpr omu_EnumEntry<host_CellType> kEntries[] = {
        {"TET4", host_CellType::Tet4},     {"PYRAMID5", host_CellType::Pyramid5},
        {"WEDGE6", host_CellType::Wedge6}, {"HEX8", host_CellType::Hex8},
        {"TRI3", host_CellType::Tri3},     {"QUAD4", host_CellType::Quad4},
        {nullptr, host_CellType::Tet4}};
};
using host_CellTypeConstant = omu_PrimEnum<host_CellType, 1>;

template <>
struct omu_EnumTable<host_QualityMeasure, 1> {
    static constexpr omu_EnumEntry<host_QualityMeasure> kEntries[] = {
        {"SCALED_JACOBIAN", host_QualityMeasure::ScaledJacobian},
        {"MEAN_RATIO", host_QualityMeasure::MeanRatio},
        {"EDGE_RATIO", host_QualityMeasure::EdgeRatio},
        {nullptr, host_QualityMeasure::ScaledJacobian}};
};
using host_MeasureConstant = omu_PrimEnum<host_QualityMeasure, 1>;

/// Symmetric 3x3 matrix: xx, yy, zz, xy, yz, xz.
using host_Symmetric = std::array<double, 6>;

/// Volume integrals over cells.
struct host_Moments {
    double volume = 0;
    host_Point centre{};      ///< centre of volume
    host_Symmetric second{};  ///< integral of (x - centre)(x - centre)^T

    /// Tensor of inertia about \p point of a body of that density: its elements, so that xy is
    /// minus the integral of density x y.
    [[nodiscard]] host_Symmetric Inertia(double density, const host_Point& point) const;
};

/// A mesh of solid and surface cells of mixed shapes. Points and cells are numbered from 0.
/// What takes long on a large one reports its progress, and may raise when it is interrupted
/// (host_Progress); the mesh is then as before, but for AddCells, of which a part may be done.
class host_Mesh {
public:
    struct Box {
        host_Point low, high;
    };
    /// A face of a cell: its 3 or 4 nodes, seen from outside against the clock.
    struct Face {
        int cell;
        std::array<int, 4> nodes;  // the last is -1 for a triangle
    };

    /// At least one point, all coordinates finite; else omu_ValueErrorException.
    explicit host_Mesh(std::vector<host_Point> points);

    /// Adds cells of one shape, their nodes one after another. A node that is no point raises
    /// omu_RangeErrorException, a count that is no multiple of the shape's omu_ValueErrorException.
    void AddCells(host_CellType type, std::span<const int> nodes);
    /// Number of nodes of a shape.
    [[nodiscard]] static int NodeCount(host_CellType type) noexcept;
    /// The shape with that many nodes, with 4 the tetrahedron; omu_ValueErrorException when there
    /// is none.
    [[nodiscard]] static host_CellType TypeOf(int nodeCount);
    /// Whether cells of that shape are faces without a volume.
    [[nodiscard]] static bool IsSurface(host_CellType type) noexcept {
        return type == host_CellType::Tri3 || type == host_CellType::Quad4;
    }

    [[nodiscard]] const std::vector<host_Point>& Points() const noexcept { return _points; }
    [[nodiscard]] int CellCount() const noexcept { return static_cast<int>(_types.size()); }
    [[nodiscard]] host_CellType Type(int cell) const {
        return _types[static_cast<std::size_t>(cell)];
    }
    [[nodiscard]] std::span<const int> Nodes(int cell) const;

    /// Of all points, whether cells use them or not.
    [[nodiscard]] Box BoundingBox() const noexcept;
    /// Mean of the cell's nodes.
    [[nodiscard]] host_Point Middle(int cell) const;
    /// The faces that belong to one solid only, and all surface cells; where both coincide, or
    /// several surface cells, the first surface cell alone. Linear in the number of cells.
    [[nodiscard]] std::vector<Face> OuterFaces() const;
    /// Of the outer faces; a warped quadrangle counts as four triangles about its middle.
    [[nodiscard]] double SurfaceArea() const;
    /// Over \p cells, of which surface cells count nothing. Solids are cut into tetrahedra about
    /// the middles of cell and quadrangles: volumes are exact for isoparametric cells, moments too
    /// where quadrangles are plane.
    [[nodiscard]] host_Moments Moments(std::span<const int> cells) const;

    /// Shape of a cell; the least value over its corners, with J the determinant of the three
    /// edges of a corner and the ideal cell having equal edges (a pyramid's apex is left out; of a
    /// surface cell the third edge is its unit normal, so that a triangle is never inverted):
    /// - ScaledJacobian: J over the edges' lengths, over the same of the ideal corner; 1 is ideal,
    ///   0 or less is inverted. Source: Stimpson and others, The Verdict Geometric Quality
    ///   Library, SAND2007-1751.
    /// - MeanRatio: 3 det(T)^(2/3) / |T|^2, in a surface 2 det(T) / |T|^2, T the map from the ideal
    ///   corner, 0 when inverted; 1 is ideal. Source: Knupp, Finite Elements in Analysis and Design
    ///   39 (2003), 217-241; for tetrahedra Liu and Joe, BIT 34 (1994), 268-287.
    /// - EdgeRatio: longest over shortest edge, 1 is ideal (Verdict, as above).
    [[nodiscard]] double Quality(int cell, host_QualityMeasure measure) const;

private:
    [[nodiscard]] Face FaceOf(int cell, std::size_t number) const;
    [[nodiscard]] std::size_t FaceCount() const;
    [[nodiscard]] const host_Point& At(int node) const {
        return _points[static_cast<std::size_t>(node)];
    }

    std::vector<host_Point> _points;
    std::vector<host_CellType> _types;
    std::vector<std::size_t> _starts;  // of each cell's nodes
    std::vector<int> _nodes;
};
