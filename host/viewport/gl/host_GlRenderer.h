#pragma once

#include "host_Font.h"
#include "host_GlContext.h"
#include "host_GlGeometry.h"
#include "host_GlProgram.h"
#include "host_GlTarget.h"
#include "host_Progress.h"
#include "host_Renderer.h"

#include <map>
#include <optional>

/// Draws by OpenGL, off screen: faces and edges by tiles of the picture, with four samples a pixel;
/// markers, rectangles and labels into the finished picture, pixel by pixel.
class host_GlRenderer final : public host_Renderer {
public:
    /// Raises std::runtime_error, which names the missing package, where OpenGL cannot be had.
    host_GlRenderer() = default;

    host_Image Draw(const host_Scene& scene, int width, int height) override;
    [[nodiscard]] std::size_t BytesSent() const noexcept override { return _sent; }
    [[nodiscard]] host_DrawTimes Times() const noexcept override { return _times; }

private:
    /// An item, and what OpenGL holds of it.
    struct Sent {
        const host_Item* item;
        host_GlGeometry* geometry;
        const host_GlValues* values;    // null without contours
        const host_GlProgram* program;  // for the faces
    };
    struct Lights;
    /// The part of a picture that is drawn at a time.
    struct Tile;

    std::vector<Sent> Prepare(const host_Scene& scene, const Lights& lights);
    void SetLights(const Lights& lights, float shininess) const;
    void SetMatrices(const host_GlProgram& program, const host_Scene& scene,
                     const Tile& tile) const;
    const host_GlProgram& FacesProgram(const host_GlFaceVariant& variant);
    void SetContours(const host_GlProgram& program, const g3d_ContourTable& table) const;
    void DrawTile(const host_Scene& scene, const std::vector<Sent>& items, const Tile& tile,
                  host_Progress& progress);
    void DrawItems(const std::vector<Sent>& items, const Tile& tile, bool translucent,
                   host_Progress& progress);

    const host_GlContext _context;
    const host_GlProgram _edges = host_GlProgram::Edges();
    const host_GlVertexArray _vertexArray;
    const host_GlBuffer _breaks;
    const host_GlBuffer _colors;
    const host_GlTexture _breaksTexture;
    const host_GlTexture _colorsTexture;
    std::map<host_GlFaceVariant, host_GlProgram> _faces;
    std::optional<host_GlTarget> _target;
    std::optional<host_Font> _font;
    host_GlStore<host_Geometry, host_GlGeometry> _geometries;
    host_GlStore<host_Values, host_GlValues> _values;
    host_GlTally _sent = 0;
    host_DrawTimes _times;
};
