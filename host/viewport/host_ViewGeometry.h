#pragma once

#include "host_Field.h"
#include "host_Mesh.h"
#include "host_Scene.h"

#include <functional>

/// What a geometry is made for; each choice gives a geometry of its own.
struct host_GeometryChoice {
    bool hasFeatureEdges = false;                    ///< else the edges of all outer faces
    bool isByCell = false;                           ///< faces share no points, for values at cells
    std::shared_ptr<const host_Field> displacement;  ///< vectors at nodes; null: none

    bool operator==(const host_GeometryChoice&) const = default;
};

/// What is drawn of a part: the surface of its mesh, made ready once.
///
/// Geometries and values that were asked for lately are kept: asking again gives the same objects,
/// which a renderer then need not send again. Independent of the mesh once it is made.
class host_ViewGeometry {
public:
    /// Where outer faces meet at a greater angle [deg], the surface has an edge.
    static constexpr double kCreaseAngle = 40;
    using Poll = std::function<void()>;

    /// Finds the outer faces, their edges and normals in linear time. Faces at points beyond the
    /// range of float are left out. \p poll is called from time to time; it may raise.
    host_ViewGeometry(const host_Mesh& mesh, const Poll& poll);

    /// Each edge stands in it once. Normals are those of the faces, or where faces meet at less
    /// than the crease angle a mean of theirs, in which flat regions count by their area: faces of
    /// a box are flat, a fillet is smooth. With displacements, faces are left out where these are
    /// not finite.
    [[nodiscard]] std::shared_ptr<const host_Geometry> Geometry(const host_GeometryChoice& choice);
    /// A field at the points of that geometry, for a field at cells one by cell; what a float
    /// cannot hold becomes infinite.
    [[nodiscard]] std::shared_ptr<const host_Values> Values(
        const host_GeometryChoice& choice, const std::shared_ptr<const host_Field>& field,
        host_Component component);

    /// The points of a part without faces to draw; else empty.
    [[nodiscard]] const std::vector<host_Float3>& LoosePoints() const noexcept { return _loose; }
    /// Longest side of the box around what is drawn.
    [[nodiscard]] double Size() const noexcept { return _size; }

private:
    using Corner = std::uint32_t;  // 4 * face + place in the face
    struct Edge {
        Corner first, second;  // corners where the faces' edges start, of the second face if any
        int faces;
        bool isCrease;
    };
    // Like a node, but faces with a crease between them have different ones there.
    struct Vertex {
        int node;
        host_Float3 normal;
    };
    struct MadeValues {
        bool isByCell;
        std::shared_ptr<const host_Field> field;
        host_Component component;
        std::shared_ptr<const host_Values> values;
    };

    [[nodiscard]] int Corners(std::size_t face) const { return _faces[face].nodes[3] < 0 ? 3 : 4; }
    [[nodiscard]] int Node(Corner corner) const { return _faces[corner / 4].nodes[corner % 4]; }
    [[nodiscard]] Corner Next(Corner corner) const;
    void FindEdges(const std::vector<host_Point>& normals, const Poll& poll);
    void FindVertices(const std::vector<host_Point>& points, const std::vector<host_Point>& normals,
                      const Poll& poll);
    [[nodiscard]] host_Geometry Make(const host_GeometryChoice& choice) const;

    std::vector<host_Mesh::Face> _faces;
    std::vector<bool> _cutsAcross;     // of each quadrangle: along its second diagonal
    std::vector<host_Float3> _points;  // of the mesh
    std::vector<Edge> _edges;
    std::vector<std::uint32_t> _vertexOf;  // of each corner
    std::vector<Vertex> _vertices;
    std::vector<host_Float3> _loose;
    double _size = 0;

    std::vector<std::pair<host_GeometryChoice, std::shared_ptr<const host_Geometry>>> _made;
    std::vector<MadeValues> _madeValues;
};
