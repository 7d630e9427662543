#include "host_GlGeometry.h"

#include "host_GlProgram.h"
#include "host_Progress.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <span>
#include <stdexcept>

namespace {

template <class Element>
void Send(const host_GlBuffer& buffer, std::span<const Element> elements, host_GlTally& sent) {
    // By way of the vertices' place: the elements' place belongs to a vertex array.
    glBindBuffer(GL_ARRAY_BUFFER, buffer.Get());
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(elements.size_bytes()), elements.data(),
                 GL_STATIC_DRAW);
    if (glGetError() != GL_NO_ERROR) {
        throw std::runtime_error("OpenGL has no memory for the geometry.");
    }
    sent += elements.size_bytes();
    host_Poll();
}

void SendOnce(std::optional<host_GlBuffer>& buffer, const std::vector<host_Float3>& vectors,
              host_GlTally& sent) {
    if (!buffer) {
        host_GlBuffer made;
        Send(made, std::span(vectors), sent);
        buffer = std::move(made);
    }
}

/// Lets the shader read single elements of a buffer.
void View(const host_GlTexture& texture, GLenum format, const host_GlBuffer& buffer,
          std::size_t elements) {
    GLint most = 0;
    glGetIntegerv(GL_MAX_TEXTURE_BUFFER_SIZE, &most);
    if (elements > static_cast<std::size_t>(most)) {
        throw std::runtime_error("The driver cannot draw more than " + std::to_string(most / 3) +
                                 " triangles of one geometry.");
    }
    glBindTexture(GL_TEXTURE_BUFFER, texture.Get());
    glTexBuffer(GL_TEXTURE_BUFFER, format, buffer.Get());
}

void Feed(host_GlAttribute attribute, const host_GlBuffer* buffer, GLint components) {
    if (buffer == nullptr) {
        glDisableVertexAttribArray(attribute);
        glVertexAttrib4f(attribute, 0, 0, 0, 0);
        return;
    }
    glBindBuffer(GL_ARRAY_BUFFER, buffer->Get());
    glVertexAttribPointer(attribute, components, GL_FLOAT, GL_FALSE, 0, nullptr);
    glEnableVertexAttribArray(attribute);
}

const host_GlBuffer* AddressOf(const std::optional<host_GlBuffer>& buffer) {
    return buffer ? &*buffer : nullptr;
}

/// Draws indices of elements, N points each, some at a time.
template <GLsizei N>
void DrawElements(GLenum kind, GLsizei indices, const host_GlGeometry::Batch& batch) {
    constexpr GLsizei kBatch = 1 << 15;  // a few milliseconds each
    for (GLsizei first = 0; first < indices / N; first += kBatch) {
        const GLsizei count = std::min(kBatch, indices / N - first);
        batch(first, count);
        glDrawElements(
            kind, N * count, GL_UNSIGNED_INT,
            reinterpret_cast<const void*>(sizeof(GLuint) * N * static_cast<std::size_t>(first)));
    }
}

bool IsDrawable(const host_Float3& vector) {
    // Squares beyond it overflow a float.
    constexpr float kMost = 1e18F;
    return std::abs(vector[0]) <= kMost && std::abs(vector[1]) <= kMost &&
           std::abs(vector[2]) <= kMost;  // false for a NaN
}

/// How far a point, or all points of an element, can be drawn.
enum class Drawable { Never, Undeformed, Always };

/// Answers for elements; cheap where every point can be drawn.
class DrawableElements {
public:
    explicit DrawableElements(const host_Geometry& geometry) : _geometry(geometry) {
        _allPoints =
            std::all_of(geometry.points.begin(), geometry.points.end(), IsDrawable) &&
            std::all_of(geometry.displacements.begin(), geometry.displacements.end(), IsDrawable);
    }

    template <std::size_t N>
    Drawable operator()(const std::array<std::uint32_t, N>& element) const {
        Drawable result = Drawable::Always;
        for (const std::uint32_t point : element) {
            result = std::min(result, OfPoint(point));
        }
        return result;
    }

private:
    [[nodiscard]] Drawable OfPoint(std::uint32_t point) const {
        if (point >= _geometry.points.size()) return Drawable::Never;
        if (_allPoints) return Drawable::Always;
        if (!IsDrawable(_geometry.points[point])) return Drawable::Never;
        return _geometry.displacements.empty() || IsDrawable(_geometry.displacements[point])
                   ? Drawable::Always
                   : Drawable::Undeformed;
    }

    const host_Geometry& _geometry;
    bool _allPoints;
};

template <std::size_t N, class Elements>
void SendElements(Elements& made, const std::vector<std::array<std::uint32_t, N>>& elements,
                  const host_Geometry& geometry, host_GlTally& sent) {
    if (elements.size() > std::numeric_limits<GLsizei>::max() / N) {
        throw std::runtime_error("A geometry has more elements than OpenGL can draw.");
    }
    const DrawableElements drawable(geometry);
    host_Poll();
    std::size_t count = elements.size();
    std::size_t deformedCount = count;
    if (std::all_of(elements.begin(), elements.end(),
                    [&](const auto& element) { return drawable(element) == Drawable::Always; })) {
        Send(made.buffer, std::span(elements), sent);
    } else {
        auto kept = elements;
        const auto last = std::stable_partition(kept.begin(), kept.end(), [&](const auto& element) {
            return drawable(element) != Drawable::Never;
        });
        const auto lastDeformed = std::stable_partition(
            kept.begin(), last,
            [&](const auto& element) { return drawable(element) == Drawable::Always; });
        count = static_cast<std::size_t>(last - kept.begin());
        deformedCount = static_cast<std::size_t>(lastDeformed - kept.begin());
        kept.resize(count);
        Send(made.buffer, std::span(std::as_const(kept)), sent);
    }
    made.count = static_cast<GLsizei>(N * count);
    made.deformedCount = static_cast<GLsizei>(N * deformedCount);
}

/// Normals of the deformed points: of the faces around each, weighted by their areas. A crease
/// stays one, since its points are doubled.
std::vector<host_Float3> DeformedNormals(const host_Geometry& geometry, float deformation) {
    std::vector<host_Float3> points = geometry.points;
    for (std::size_t i = 0; i < points.size(); ++i) {
        for (std::size_t k = 0; k < 3; ++k) {
            points[i][k] += deformation * geometry.displacements[i][k];
        }
    }
    std::vector<std::array<double, 3>> sums(points.size());
    host_Progress progress("Deforming the surface",
                           host_Work{geometry.triangles.size() + points.size()});
    for (const auto& [a, b, c] : geometry.triangles) {
        progress.Count();
        if (std::max({a, b, c}) >= points.size()) {
            continue;
        }
        std::array<double, 3> u;
        std::array<double, 3> v;
        for (std::size_t k = 0; k < 3; ++k) {
            u[k] = static_cast<double>(points[b][k]) - static_cast<double>(points[a][k]);
            v[k] = static_cast<double>(points[c][k]) - static_cast<double>(points[a][k]);
        }
        const std::array<double, 3> normal = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2],
                                              u[0] * v[1] - u[1] * v[0]};
        if (std::isfinite(normal[0] + normal[1] + normal[2])) {
            for (const std::uint32_t corner : {a, b, c}) {
                for (std::size_t k = 0; k < 3; ++k) {
                    sums[corner][k] += normal[k];
                }
            }
        }
    }
    std::vector<host_Float3> normals(points.size());
    for (std::size_t i = 0; i < sums.size(); ++i) {
        progress.Count();
        const double length = std::hypot(sums[i][0], sums[i][1], sums[i][2]);
        for (std::size_t k = 0; k < 3; ++k) {
            normals[i][k] = length > 0 ? static_cast<float>(sums[i][k] / length) : 0.0F;
        }
    }
    return normals;
}

}  // namespace

host_GlValues::host_GlValues(const host_Values& values, host_GlTally& sent) {
    Send(_buffer, std::span(values), sent);
    View(_texture, GL_R32F, _buffer, values.size());
}

void host_GlValues::Bind(GLenum unit) const {
    Feed(host_VALUE, &_buffer, 1);
    glActiveTexture(unit);
    glBindTexture(GL_TEXTURE_BUFFER, _texture.Get());
}

host_GlGeometry::host_GlGeometry(const host_Geometry& geometry, host_GlTally& sent) {
    Send(_points, std::span(geometry.points), sent);
}

void host_GlGeometry::Prepare(const host_Item& item, host_GlTally& sent) {
    const host_Geometry& geometry = *item.geometry;
    const bool isDeformed = item.deformation != 0 && !geometry.displacements.empty();
    if (isDeformed) {
        SendOnce(_displacements, geometry.displacements, sent);
    }
    if (item.showFaces) {
        if (!geometry.normals.empty() && !isDeformed) {
            SendOnce(_normals, geometry.normals, sent);
        }
        if (!geometry.normals.empty() && isDeformed && _deformation != item.deformation) {
            _deformation = 0;
            _deformedNormals.reset();
            SendOnce(_deformedNormals, DeformedNormals(geometry, item.deformation), sent);
            _deformation = item.deformation;
        }
        if (!_triangles) {
            Triangles made;
            SendElements(made, geometry.triangles, geometry, sent);
            View(made.texture, GL_R32UI, made.buffer, 3 * geometry.triangles.size());
            _triangles = std::move(made);
        }
    }
    if (item.showEdges && !_edges) {
        Elements made;
        SendElements(made, geometry.edges, geometry, sent);
        _edges = std::move(made);
    }
}

void host_GlGeometry::BindPoints(const host_Item& item) const {
    Feed(host_POINT, &_points, 3);
    Feed(host_DISPLACEMENT, item.deformation != 0 ? AddressOf(_displacements) : nullptr, 3);
    Feed(host_NORMAL, nullptr, 3);
    Feed(host_VALUE, nullptr, 1);
}

void host_GlGeometry::DrawFaces(const host_Item& item, const host_GlValues* values,
                                GLenum valuesUnit, GLenum cornersUnit, const Batch& batch) const {
    const bool isDeformed = item.deformation != 0 && _displacements;
    BindPoints(item);
    Feed(host_NORMAL, AddressOf(isDeformed ? _deformedNormals : _normals), 3);
    if (values != nullptr) {
        values->Bind(valuesUnit);
    }
    glActiveTexture(cornersUnit);
    glBindTexture(GL_TEXTURE_BUFFER, _triangles->texture.Get());
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, _triangles->buffer.Get());
    DrawElements<3>(GL_TRIANGLES, isDeformed ? _triangles->deformedCount : _triangles->count,
                    batch);
}

std::size_t host_GlGeometry::ElementCount(const host_Item& item) const {
    return static_cast<std::size_t>((item.showFaces ? _triangles->count / 3 : 0) +
                                    (item.showEdges ? _edges->count / 2 : 0));
}

void host_GlGeometry::DrawEdges(const host_Item& item, const Batch& batch) const {
    const bool isDeformed = item.deformation != 0 && _displacements;
    BindPoints(item);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, _edges->buffer.Get());
    DrawElements<2>(GL_LINES, isDeformed ? _edges->deformedCount : _edges->count, batch);
}
