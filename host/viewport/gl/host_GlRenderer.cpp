#include "host_GlRenderer.h"

#include "host_Overlay.h"
#include "omu_RangeChecker.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <type_traits>

namespace {

constexpr const char* kSource = "host/viewport/gl/host_GlRenderer";

constexpr int kMostPixelsASide = 32768;
constexpr int kMostPixels = 1 << 28;  // 0.8 gigabytes
constexpr float kWidestEdge = 100;
constexpr int kTile = 2048;  // four samples of colour and depth: 134 megabytes

// What the two lights of interactive work leave to full white on a face that looks at them.
constexpr float kRoomLight = 0.15F;

/// Units of textures.
enum Unit : int { Breaks, Colors, Values, Corners };
constexpr GLenum TextureUnit(Unit unit) { return GL_TEXTURE0 + static_cast<GLenum>(unit); }

using Color4 = std::array<float, 4>;

/// The colour as bytes will show it, so that OpenGL's rounding decides nothing.
Color4 Exact(const g3d_Color& color) {
    const host_Bytes bytes = host_ToBytes(color);
    const float alpha = color.Alpha() > 0 ? std::min(color.Alpha(), 1.0F) : 0.0F;
    return {static_cast<float>(bytes[0]) / 255, static_cast<float>(bytes[1]) / 255,
            static_cast<float>(bytes[2]) / 255, alpha};
}

bool IsTranslucent(const host_Item& item) { return !(item.faceColor.Alpha() >= 1); }

/// Steps of colours in a unit; 0 for a range too small or too large to be divided.
float StepsPerUnit(const g3d_ContourTable& table, int steps) {
    const auto result = static_cast<float>(steps / (table.Maximum() - table.Minimum()));
    return std::isfinite(result) ? result : 0.0F;
}

/// A smooth table that cannot be divided is as good as a banded one.
bool IsSmooth(const g3d_ContourTable& table) {
    return table.IsSmooth() && StepsPerUnit(table, table.Bands() - 1) > 0;
}

host_GlColoring ColoringOf(const host_Item& item) {
    if (item.contours == nullptr) {
        return host_GlColoring::Plain;
    }
    return IsSmooth(*item.contours) ? host_GlColoring::Smooth : host_GlColoring::Banded;
}

/// Waits until everything is drawn, and lets an interrupt through meanwhile.
void Finish() {
    constexpr GLuint64 kWait = 10'000'000;  // [ns]
    const auto drop = [](GLsync fence) { glDeleteSync(fence); };
    const std::unique_ptr<std::remove_pointer_t<GLsync>, decltype(drop)> fence(
        glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0), drop);
    while (glClientWaitSync(fence.get(), GL_SYNC_FLUSH_COMMANDS_BIT, kWait) == GL_TIMEOUT_EXPIRED) {
        host_Poll();
    }
}

/// Some are drawn at once, others wait for the driver to be done with those before.
void CountBatch(host_Progress& progress, GLsizei count) {
    progress.Count(static_cast<std::size_t>(count));
    progress.Look();
}

class Stopwatch {
public:
    /// Adds the seconds since the last call to \p sum.
    void Lap(double& sum) {
        const auto now = std::chrono::steady_clock::now();
        sum += std::chrono::duration<double>(now - _start).count();
        _start = now;
    }

private:
    std::chrono::steady_clock::time_point _start = std::chrono::steady_clock::now();
};

void CheckSize(int width, int height) {
    const auto side = omu_RangeChecker().AtLeast(1).AtMost(kMostPixelsASide);
    side.Check("width", width);
    side.Check("height", height);
    if (std::int64_t{width} * height > kMostPixels) {
        omu_RangeErrorException("width*height", omu_KeywordTypeEnm::Integer, "1",
                                omu_LimitQualifierEnm::Inclusive, std::to_string(kMostPixels),
                                omu_LimitQualifierEnm::Inclusive)
            .Throw(kSource, __LINE__);
    }
}

void CheckItem(const host_Item& item) {
    const auto check = [](bool holds, const char* message) {
        if (!holds) {
            omu_ValueErrorException(message).Throw(kSource, __LINE__);
        }
    };
    check(item.geometry != nullptr, "an item without a geometry cannot be drawn");
    const auto fits = [&](std::size_t count) { return count == item.geometry->points.size(); };
    check(item.geometry->normals.empty() || fits(item.geometry->normals.size()),
          "a geometry must have as many normals as points, or none");
    check(item.geometry->displacements.empty() || fits(item.geometry->displacements.size()),
          "a geometry must have as many displacements as points, or none");
    if (item.contours != nullptr) {
        check(item.values != nullptr && fits(item.values->size()),
              "contours need as many values as points");
    }
    check(std::isfinite(item.deformation), "the scale of a deformation must be finite");
}

/// The upper 3x3 block's cofactors, which carry normals as the block carries points.
std::array<float, 9> Cofactors(const g3d_XForm& m) {
    std::array<float, 9> cofactors{};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            const int a = (i + 1) % 3;
            const int b = (i + 2) % 3;
            const int c = (j + 1) % 3;
            const int d = (j + 2) % 3;
            cofactors[3 * static_cast<std::size_t>(i) + static_cast<std::size_t>(j)] =
                m.GetM(a, c) * m.GetM(b, d) - m.GetM(a, d) * m.GetM(b, c);
        }
    }
    return cofactors;
}

bool IsFinite(const g3d_XForm& matrix) {
    return std::all_of(matrix.Data(), matrix.Data() + 16,
                       [](float element) { return std::isfinite(element); });
}

/// The smallest float that is not below \p value: floats compare with it as with \p value.
float RoundedUp(double value) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr auto kMost = static_cast<double>(std::numeric_limits<float>::max());
    if (value > kMost) return kInfinity;
    if (value < -kMost) return -std::numeric_limits<float>::max();
    const auto nearest = static_cast<float>(value);
    return static_cast<double>(nearest) < value ? std::nextafter(nearest, kInfinity) : nearest;
}

void SendTable(const host_GlBuffer& buffer, const host_GlTexture& texture, GLenum format, Unit unit,
               const std::vector<float>& table) {
    glBindBuffer(GL_TEXTURE_BUFFER, buffer.Get());
    glBufferData(GL_TEXTURE_BUFFER, static_cast<GLsizeiptr>(sizeof(float) * table.size()),
                 table.data(), GL_STREAM_DRAW);
    glActiveTexture(TextureUnit(unit));
    glBindTexture(GL_TEXTURE_BUFFER, texture.Get());
    glTexBuffer(GL_TEXTURE_BUFFER, format, buffer.Get());
}

/// The markers that are drawn, and where.
struct PlacedMarker {
    const host_MarkerSet* set;
    host_PicturePoint place;
    bool isHidden;
};

std::vector<PlacedMarker> PlaceMarkers(const host_Scene& scene, int width, int height) {
    std::vector<PlacedMarker> placed;
    for (const host_MarkerSet& set : scene.markers) {
        for (const host_Float3& point : set.points) {
            if (const auto place = host_Project(scene.camera, width, height, point)) {
                placed.push_back({&set, *place, false});
            }
        }
    }
    return placed;
}

}  // namespace

/// The lights that are on, far ones first; one at a place that is not finite lights nothing.
struct host_GlRenderer::Lights {
    explicit Lights(const g3d_Studio& studio) {
        for (const bool addFar : {true, false}) {
            for (int i = 0; i < g3d_Studio::kLights; ++i) {
                const g3d_Light& light = studio.Light(i);
                if (light.IsOn() && IsFar(light.Position()) == addFar) {
                    Add(light);
                }
            }
            if (addFar) {
                farCount = Count();
            }
        }
    }
    [[nodiscard]] int Count() const noexcept { return static_cast<int>(positions.size()); }

    int farCount = 0;
    std::vector<Color4> positions, ambients, diffuses, speculars, fadings;

private:
    /// A direction, or so far away that it is one.
    static bool IsFar(const g3d_Point& at) {
        const double distance = std::hypot(static_cast<double>(at.x), static_cast<double>(at.y),
                                           static_cast<double>(at.z));
        return !(distance <= 1e15 * std::abs(static_cast<double>(at.w))) || at.w == 0;
    }

    void Add(const g3d_Light& light) {
        const g3d_Point& at = light.Position();
        const Color4 fading = {light.ConstantAttenuation(), light.LinearAttenuation(),
                               light.QuadraticAttenuation(), 0};
        const auto x = static_cast<double>(at.x);
        const auto y = static_cast<double>(at.y);
        const auto z = static_cast<double>(at.z);
        const auto w = static_cast<double>(at.w);
        if (!std::isfinite(x + y + z + w) || !std::isfinite(fading[0] + fading[1] + fading[2])) {
            return;
        }
        const double length = std::hypot(x, y, z);
        const double part = !IsFar(at) ? w : length > 0 ? std::copysign(length, w) : 1;
        positions.push_back({static_cast<float>(x / part), static_cast<float>(y / part),
                             static_cast<float>(z / part), 0});
        ambients.push_back(Exact(light.AmbientColor()));
        diffuses.push_back(Exact(light.DiffuseColor()));
        speculars.push_back(Exact(light.SpecularColor()));
        fadings.push_back(fading);
    }
};

struct host_GlRenderer::Tile {
    int left, bottom;                 // [pixels] from the lower left corner of the picture
    int pictureWidth, pictureHeight;  // [pixels]
    int width, height;                // of the tile; may reach over the picture's edge

    /// Carries the picture's clip coordinates to the tile's.
    [[nodiscard]] std::array<float, 16> Projection(const g3d_XForm& whole) const {
        std::array<float, 16> projection;
        std::copy_n(whole.Data(), 16, projection.begin());
        const auto narrow = [&](std::size_t row, double picture, double part, double start) {
            for (std::size_t j = 0; j < 4; ++j) {
                const auto w = static_cast<double>(projection[12 + j]);
                auto& element = projection[4 * row + j];
                element = static_cast<float>(static_cast<double>(element) * picture / part +
                                             w * (picture - 2 * start - part) / part);
            }
        };
        narrow(0, pictureWidth, width, left);
        narrow(1, pictureHeight, height, bottom);
        return projection;
    }

    /// Copies the pixels that OpenGL drew to their places in the picture.
    void Copy(const std::vector<std::uint8_t>& rgba, host_Image& image) const {
        const int columns = std::min(width, pictureWidth - left);
        for (int y = 0; y < std::min(height, pictureHeight - bottom); ++y) {
            const std::uint8_t* from =
                &rgba[4 * static_cast<std::size_t>(y) * static_cast<std::size_t>(width)];
            const auto row = static_cast<std::size_t>(pictureHeight - 1 - bottom - y);
            std::uint8_t* to = &image.rgb[3 * (row * static_cast<std::size_t>(pictureWidth) +
                                               static_cast<std::size_t>(left))];
            for (int x = 0; x < columns; ++x, from += 4, to += 3) {
                std::copy_n(from, 3, to);
            }
        }
    }

    /// Marks as hidden those of the tile's points that lie behind all that is near them: a point of
    /// a face may lie a little behind the middle of its pixel, and one of an outline beside it.
    ///
    /// Near is what a circle about the point holds, and a symbol stands half its size before its
    /// point, so that rounding decides nothing for points on outlines and between pixels.
    void Hide(std::vector<PlacedMarker>& markers, const std::vector<float>& depths) const {
        constexpr double kDepthStep = 1e-6;
        constexpr double kNear = 2.1;  // [pixels^2]; between the 2 and 2.25 that half pixels give
        for (PlacedMarker& marker : markers) {
            const double x = marker.place.x - left;
            const double y = pictureHeight - marker.place.y - bottom;
            if (marker.set->onTop || x < 0 || x > width || y < 0 || y > height) {
                continue;
            }
            float farthest = 0;
            const auto first = [](double middle) {
                return std::max(static_cast<int>(middle) - 2, 0);
            };
            for (int row = first(y); row < std::min(first(y) + 6, height); ++row) {
                for (int column = first(x); column < std::min(first(x) + 6, width); ++column) {
                    const double dx = column + 0.5 - x;
                    const double dy = row + 0.5 - y;
                    if (dx * dx + dy * dy < kNear) {
                        const std::size_t place =
                            static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
                            static_cast<std::size_t>(column);
                        farthest = std::max(farthest, depths[place]);
                    }
                }
            }
            const g3d_Bitmap& bitmap = marker.set->bitmap;
            const double before = std::max(bitmap.Width(), bitmap.Height()) / 2.0;
            marker.isHidden = marker.place.depth - before * marker.place.rise >
                              static_cast<double>(farthest) + kDepthStep;
        }
    }
};

std::vector<host_GlRenderer::Sent> host_GlRenderer::Prepare(const host_Scene& scene,
                                                            const Lights& lights) {
    _geometries.DropUnused();
    _values.DropUnused();
    std::vector<Sent> items;
    for (const host_Item& item : scene.items) {
        if (item.geometry->points.empty() || !(item.showFaces || item.showEdges)) {
            continue;
        }
        Sent& sent = items.emplace_back(
            Sent{&item, &_geometries.Of(item.geometry, _sent), nullptr, nullptr});
        sent.geometry->Prepare(item, _sent);
        if (item.showFaces) {
            host_GlFaceVariant variant{std::nullopt, 0, ColoringOf(item)};
            if (!item.geometry->normals.empty()) {
                variant.lights = lights.Count();
                variant.farLights = lights.farCount;
            }
            sent.program = &FacesProgram(variant);
        }
        if (item.showFaces && item.contours != nullptr) {
            sent.values = &_values.Of(item.values, _sent);
        }
    }
    return items;
}

const host_GlProgram& host_GlRenderer::FacesProgram(const host_GlFaceVariant& variant) {
    const auto found = _faces.find(variant);
    if (found != _faces.end()) {
        return found->second;
    }
    const host_GlProgram& program =
        _faces.emplace(variant, host_GlProgram::Faces(variant)).first->second;
    program.Use();
    program.Set("breaks", static_cast<int>(Breaks));
    program.Set("colors", static_cast<int>(Colors));
    program.Set("values", static_cast<int>(Values));
    program.Set("corners", static_cast<int>(Corners));
    program.Set("roomLight", kRoomLight);
    return program;
}

void host_GlRenderer::SetLights(const Lights& lights, float shininess) const {
    for (const auto& [variant, program] : _faces) {
        if (variant.lights == lights.Count() && variant.farLights == lights.farCount) {
            program.Use();
            program.Set("lightPosition", lights.positions);
            program.Set("lightAmbient", lights.ambients);
            program.Set("lightDiffuse", lights.diffuses);
            program.Set("lightSpecular", lights.speculars);
            program.Set("lightFading", lights.fadings);
            program.Set("shininess", shininess > 0 ? std::min(shininess, 1e6F) : 0.0F);
        }
    }
}

void host_GlRenderer::SetMatrices(const host_GlProgram& program, const host_Scene& scene,
                                  const Tile& tile) const {
    std::array<float, 16> view;
    std::copy_n(scene.camera.ConstGetVOM().Data(), 16, view.begin());
    program.Use();
    program.Set("view", view);
    program.Set("projection", tile.Projection(scene.camera.ConstGetPM()));
}

void host_GlRenderer::SetContours(const host_GlProgram& program,
                                  const g3d_ContourTable& table) const {
    const int bands = table.Bands();
    std::vector<float> breaks;
    std::vector<float> colors;
    const auto add = [&](const g3d_Color& color) {
        // Colours that are mixed are rounded by OpenGL, after it.
        const Color4 sent =
            IsSmooth(table) ? Color4{color.Red(), color.Green(), color.Blue(), 1} : Exact(color);
        colors.insert(colors.end(), sent.begin(), sent.end());
    };
    for (int i = 0; i < bands; ++i) {
        breaks.push_back(RoundedUp(table.Break(i)));
        add(table.BandColor(i));
    }
    breaks.push_back(-RoundedUp(-table.Maximum()));  // the last band has its upper break too
    add(table.Below());
    add(table.Above());
    add(table.NotANumber());
    SendTable(_breaks, _breaksTexture, GL_R32F, Breaks, breaks);
    SendTable(_colors, _colorsTexture, GL_RGBA32F, Colors, colors);

    const double toMinimum = table.Minimum() - static_cast<double>(breaks.front());
    program.Set("bands", bands);
    program.Set("limits", std::array{breaks.front(), breaks.back()});
    program.Set("scale", std::array{static_cast<float>(toMinimum),
                                    StepsPerUnit(table, IsSmooth(table) ? bands - 1 : bands)});
}

void host_GlRenderer::DrawItems(const std::vector<Sent>& items, const Tile& tile, bool translucent,
                                host_Progress& progress) {
    const auto blend = [](const Color4& color) { (color[3] < 1 ? glEnable : glDisable)(GL_BLEND); };
    // What shines through is not hidden by it.
    glDepthMask(translucent ? GL_FALSE : GL_TRUE);
    // Faces step back a little, so that edges that lie in them are seen in their whole width.
    float widest = 2;
    for (const Sent& sent : items) {
        if (sent.item->showEdges && sent.item->edgeWidth > widest) {
            widest = std::min(sent.item->edgeWidth, kWidestEdge);
        }
    }
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(widest / 2, 1);
    for (const auto& [item, geometry, values, program] : items) {
        if (program == nullptr || IsTranslucent(*item) != translucent) {
            continue;
        }
        const Color4 color = Exact(item->faceColor);
        blend(color);
        program->Use();
        program->Set("color", color);
        program->Set("deformation", item->deformation);
        if (values != nullptr) {
            SetContours(*program, *item->contours);
        }
        geometry->Prepare(*item, _sent);  // for another item it may have been deformed otherwise
        geometry->DrawFaces(*item, values, TextureUnit(Values), TextureUnit(Corners),
                            [&, drawn = program](GLsizei first, GLsizei count) {
                                CountBatch(progress, count);
                                drawn->Set("firstTriangle", first);
                            });
    }
    glDisable(GL_POLYGON_OFFSET_FILL);
    _edges.Use();
    for (const auto& [item, geometry, values, program] : items) {
        if (!item->showEdges || !(item->edgeWidth > 0) || IsTranslucent(*item) != translucent) {
            continue;
        }
        const Color4 color = Exact(item->edgeColor);
        blend(color);
        _edges.Set("color", color);
        _edges.Set("deformation", item->deformation);
        _edges.Set("extent", Color4{static_cast<float>(tile.width), static_cast<float>(tile.height),
                                    std::min(item->edgeWidth, kWidestEdge), 0});
        geometry->DrawEdges(*item, [&](GLsizei, GLsizei count) { CountBatch(progress, count); });
    }
}

void host_GlRenderer::DrawTile(const host_Scene& scene, const std::vector<Sent>& items,
                               const Tile& tile, host_Progress& progress) {
    _target->Bind();
    const Color4 background = Exact(scene.studio.BackgroundColor());
    glDepthMask(GL_TRUE);
    glClearColor(background[0], background[1], background[2], 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

    const g3d_XForm& view = scene.camera.ConstGetVOM();
    if (!IsFinite(view) || !IsFinite(scene.camera.ConstGetPM())) {
        return;  // nothing has a place
    }
    SetMatrices(_edges, scene, tile);
    for (const auto& [variant, program] : _faces) {
        SetMatrices(program, scene, tile);
        program.Set("normals", Cofactors(view));
        program.Set("perspective", scene.camera.ConstGetPM().GetM(3, 2) != 0);
    }

    glBindVertexArray(_vertexArray.Get());
    glDisable(GL_CULL_FACE);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    DrawItems(items, tile, false, progress);
    DrawItems(items, tile, true, progress);
}

host_Image host_GlRenderer::Draw(const host_Scene& scene, int width, int height) {
    CheckSize(width, height);
    std::for_each(scene.items.begin(), scene.items.end(), CheckItem);
    _context.Enter();
    Finish();  // what a picture that was interrupted has left to do
    while (glGetError() != GL_NO_ERROR) {
        // Left by a picture that failed: none of this one's.
    }
    _times = {};
    Stopwatch watch;

    host_Image image{width, height, {}};
    image.rgb.resize(3 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    std::vector<PlacedMarker> markers = PlaceMarkers(scene, width, height);
    const bool mayHide = std::any_of(markers.begin(), markers.end(),
                                     [](const PlacedMarker& marker) { return !marker.set->onTop; });
    watch.Lap(_times.overlay);

    const Lights lights(scene.studio);
    const std::vector<Sent> items = Prepare(scene, lights);
    SetLights(lights, scene.studio.Shininess());
    watch.Lap(_times.buffers);

    Tile tile{0, 0, width, height, std::min(width, kTile), std::min(height, kTile)};
    if (!_target || _target->Width() != tile.width || _target->Height() != tile.height) {
        _target.reset();
        _target.emplace(tile.width, tile.height);
    }
    std::vector<std::uint8_t> colors;
    std::vector<float> depths;
    const auto tilesAlong = [](int pixels, int part) {
        return static_cast<std::size_t>((pixels - 1) / part + 1);
    };
    std::size_t elements = 0;
    for (const Sent& sent : items) {
        elements += sent.geometry->ElementCount(*sent.item);
    }
    host_Progress progress("Drawing", host_Work{elements * tilesAlong(width, tile.width) *
                                                tilesAlong(height, tile.height)});
    progress.Look();
    for (tile.bottom = 0; tile.bottom < height; tile.bottom += tile.height) {
        for (tile.left = 0; tile.left < width; tile.left += tile.width) {
            DrawTile(scene, items, tile, progress);
            Finish();  // the driver would do so in Resolve, and no interrupt come through
            _target->Resolve(mayHide);
            Finish();
            watch.Lap(_times.renderer);
            _target->ReadColors(colors);
            tile.Copy(colors, image);
            if (mayHide) {
                _target->ReadDepths(depths);
                tile.Hide(markers, depths);
            }
            watch.Lap(_times.readBack);
        }
    }
    if (const GLenum error = glGetError(); error != GL_NO_ERROR) {
        throw std::runtime_error("OpenGL failed to draw a picture (error " + std::to_string(error) +
                                 (error == GL_OUT_OF_MEMORY ? ": out of memory)." : ")."));
    }

    host_Progress placing("Drawing the markers", markers.size());
    for (const PlacedMarker& marker : markers) {
        placing.Count();
        if (!marker.isHidden) {
            host_DrawBitmap(image, marker.set->bitmap, marker.place, marker.set->color);
        }
    }
    for (const host_Rectangle& rectangle : scene.rectangles) {
        host_DrawRectangle(image, rectangle);
    }
    for (const host_Label& label : scene.labels) {
        if (!_font) {
            _font.emplace();
        }
        _font->Draw(image, label);
    }
    watch.Lap(_times.overlay);
    return image;
}

host_Renderer& host_Renderer::Instance() {
    // Never destroyed: the driver may be gone by then.
    static host_GlRenderer& renderer = *new host_GlRenderer;
    return renderer;
}
