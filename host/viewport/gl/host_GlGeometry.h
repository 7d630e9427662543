#pragma once

#include "host_GlName.h"
#include "host_Scene.h"

#include <functional>
#include <optional>
#include <unordered_map>

/// Bytes of geometry sent to OpenGL, counted by all that send.
using host_GlTally = std::size_t;

/// What OpenGL holds of the values of a contour.
class host_GlValues {
public:
    explicit host_GlValues(const host_Values& values, host_GlTally& sent);

    /// Feeds the vertices, and the texture unit given, from which the shader reads single values.
    void Bind(GLenum unit) const;

private:
    host_GlBuffer _buffer;
    host_GlTexture _texture;
};

/// What OpenGL holds of a geometry. Each part is sent when it is first drawn.
///
/// Triangles and edges with a point that is not there, not finite or beyond 1e18 are left out; with
/// such a displacement, of the deformed shape.
class host_GlGeometry {
public:
    /// \p geometry lives longer, and is the same in every call.
    explicit host_GlGeometry(const host_Geometry& geometry, host_GlTally& sent);

    /// Sends what is lacking to draw the item.
    void Prepare(const host_Item& item, host_GlTally& sent);
    /// Is told of the triangles or edges that are drawn next, the first and how many.
    using Batch = std::function<void(GLsizei first, GLsizei count)>;

    /// Draw what was prepared with the program in use. \p values of contours may be null; the
    /// shader reads single values and corners of triangles from the texture units given. So many
    /// elements are drawn at a time that \p batch, called before, may let an interrupt through.
    void DrawFaces(const host_Item& item, const host_GlValues* values, GLenum valuesUnit,
                   GLenum cornersUnit, const Batch& batch) const;
    void DrawEdges(const host_Item& item, const Batch& batch) const;
    /// How many triangles and edges that draws of the item.
    [[nodiscard]] std::size_t ElementCount(const host_Item& item) const;

private:
    /// Indices of points: first those that are drawn in the deformed shape too.
    struct Elements {
        host_GlBuffer buffer;
        GLsizei deformedCount = 0;
        GLsizei count = 0;
    };
    struct Triangles : Elements {
        host_GlTexture texture;
    };

    void BindPoints(const host_Item& item) const;

    host_GlBuffer _points;
    std::optional<host_GlBuffer> _normals;
    std::optional<host_GlBuffer> _displacements;
    std::optional<host_GlBuffer> _deformedNormals;
    float _deformation = 0;  // of the normals above
    std::optional<Triangles> _triangles;
    std::optional<Elements> _edges;
};

/// What was sent for each shared object, for as long as somebody holds the object.
template <class Source, class Sent>
class host_GlStore {
public:
    /// The entry of \p source, made on first use.
    Sent& Of(const std::shared_ptr<const Source>& source, host_GlTally& sent) {
        const auto [found, isNew] = _entries.try_emplace(source.get());
        if (isNew) {
            try {
                found->second.sent.emplace(*source, sent);
            } catch (...) {
                _entries.erase(found);
                throw;
            }
            found->second.source = source;
        }
        return *found->second.sent;
    }
    /// Drops what nobody holds any more. To be called before Of(), since addresses come back.
    void DropUnused() {
        std::erase_if(_entries, [](const auto& entry) { return entry.second.source.expired(); });
    }

private:
    struct Entry {
        std::weak_ptr<const Source> source;
        std::optional<Sent> sent;
    };
    std::unordered_map<const Source*, Entry> _entries;
};
