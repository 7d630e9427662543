#include "host_Renderer.h"

#include "UTI_CaeUtils.h"
#include "g3d_ColorErrorException.h"
#include "g3d_Utils.h"
#include "omu_ErrorExceptions.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <numbers>
#include <thread>

#if CAEHOST_HAVE_VIEWPORT
#include <png.h>
#endif

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

using Bytes = std::array<int, 3>;

Bytes BytesOf(const g3d_Color& color) {
    const auto byte = [](float part) { return static_cast<int>(std::lround(part * 255)); };
    return {byte(color.Red()), byte(color.Green()), byte(color.Blue())};
}

Bytes At(const host_Image& image, int column, int row) {
    const std::uint8_t* pixel = image.Pixel(column, row);
    return {pixel[0], pixel[1], pixel[2]};
}

const g3d_Color kRed{1, 0, 0, 1};
const g3d_Color kGreen{0, 1, 0, 1};
const g3d_Color kWhite{1, 1, 1, 1};
constexpr Bytes kBackground = {0x20, 0x40, 0x60};
constexpr Bytes kRedBytes = {255, 0, 0};

/// The rectangle (x0, y0) to (x1, y1) at height z, without normals.
host_Geometry Sheet(float x0, float y0, float x1, float y1, float z = 0) {
    host_Geometry sheet;
    sheet.points = {{x0, y0, z}, {x1, y0, z}, {x1, y1, z}, {x0, y1, z}};
    sheet.triangles = {{0, 1, 2}, {0, 2, 3}};
    return sheet;
}

host_Item Item(host_Geometry geometry, const g3d_Color& color = kRed) {
    host_Item item;
    item.geometry = std::make_shared<const host_Geometry>(std::move(geometry));
    item.faceColor = color;
    return item;
}

class host_RendererTest : public testing::Test {
protected:
    host_RendererTest() {
        UTI_CaeUtils_initialize(_modules);
        // Looks down at [-1, 1] x [-1, 1].
        _scene.camera.SetProjection(g3d_PARALLEL);
        _scene.camera.SetLocation({0, 0, 5}, {0, 0, 0}, {0, 1, 0});
        _scene.camera.SetWindow(2, 2);
        _scene.camera.SetNearFar(1, 10);
        _scene.studio.SetBackground("#204060");
    }
    ~host_RendererTest() override { UTI_CaeUtils_finalize(_modules); }

    void SetUp() override {
        if (CAEHOST_HAVE_VIEWPORT == 0) {
            GTEST_SKIP() << "this build has no viewport";
        }
    }

    host_Image Draw(int width = 100, int height = 100) const {
        return host_Renderer::Instance().Draw(_scene, width, height);
    }
    void SetPerspective() {
        _scene.camera.MakePerspective();
        _scene.camera.SetLocation({1.5F, -2.5F, 4}, {0.1F, 0.2F, 0}, {0, 1, 0});
    }
    /// One white light along the view, no highlights.
    void SetPlainLight() {
        for (int i = 0; i < g3d_Studio::kLights; ++i) {
            _scene.studio.Light(i).SetOn(i == 0);
        }
        g3d_Light& light = _scene.studio.Light(0);
        light.SetDiffuse("White");
        light.SetSpecular("Black");
        light.SetPosition({0, 0, 1, 0});
    }

    int _modules = 0;
    host_Scene _scene;
};

TEST_F(host_RendererTest, ColorsWithoutLightAreExact) {
    _scene.items = {Item(Sheet(-0.5F, -0.5F, 0.5F, 0.5F), {0.5F, 0.2F, 1.5F, 1})};
    const host_Image image = Draw();
    for (int row = 0; row < 100; ++row) {
        for (int column = 0; column < 100; ++column) {
            const bool inside = column >= 25 && column < 75 && row >= 25 && row < 75;
            ASSERT_EQ(At(image, column, row), inside ? (Bytes{128, 51, 255}) : kBackground)
                << column << ", " << row;
        }
    }
}

TEST_F(host_RendererTest, PointsFallWhereTheMatricesSay) {
    _scene.studio.SetBackground("Black");
    const g3d_Camera parallel = _scene.camera;
    SetPerspective();
    const g3d_Camera perspective = _scene.camera;
    g3d_Camera shifted = perspective;
    shifted.Pan(0.07F, -0.03F, 0, false);
    for (const g3d_Camera& camera : {parallel, perspective, shifted}) {
        for (const host_Float3& p :
             {host_Float3{0, 0, 0}, {0.31F, 0.42F, 0.2F}, {-0.5F, 0.1F, 0}}) {
            const g3d_XForm carry = camera.ConstGetPM() * camera.ConstGetVOM();
            g3d_Point clip(p[0], p[1], p[2]);
            carry.XForm(&clip, 1);
            const double x = (1 + clip.x / clip.w) / 2 * 200;
            const double y = (1 - clip.y / clip.w) / 2 * 120;
            // The middle of an octahedron is the middle of its picture.
            constexpr float kSize = 0.05F;
            host_Geometry octahedron;
            for (std::size_t i = 0; i < 6; ++i) {
                octahedron.points.push_back(p);
                octahedron.points.back()[i / 2] += i % 2 == 0 ? kSize : -kSize;
            }
            for (std::uint32_t i = 0; i < 8; ++i) {
                octahedron.triangles.push_back({i & 1U, 2 + (i >> 1U & 1U), 4 + (i >> 2U)});
            }
            _scene.items = {Item(octahedron, kWhite)};
            _scene.camera = camera;
            const host_Image image = Draw(200, 120);
            double sum = 0, sumX = 0, sumY = 0;
            for (int row = 0; row < 120; ++row) {
                for (int column = 0; column < 200; ++column) {
                    const double weight = At(image, column, row)[0];
                    sum += weight;
                    sumX += weight * (column + 0.5);
                    sumY += weight * (row + 0.5);
                }
            }
            ASSERT_GT(sum, 0);
            EXPECT_NEAR(sumX / sum, x, 0.1);
            EXPECT_NEAR(sumY / sum, y, 0.1);
        }
    }
}

TEST_F(host_RendererTest, FacesAreLitOnBothSides) {
    SetPlainLight();
    const float slope = std::sqrt(0.75F);
    g3d_Light& light = _scene.studio.Light(0);
    struct Case {
        host_Float3 normal;
        g3d_Point light;
        float linear;
        int red;  // 0.15 of the room and what arrives of the light
    };
    for (const Case& each : {Case{{0, 0, 1}, {0, 0, 1, 0}, 0, 255},
                             {{0, 0, -1}, {0, 0, 1, 0}, 0, 255},
                             {{slope, 0, 0.5F}, {0, 0, 2, 0}, 0, 166},
                             {{0, 0, 1}, {slope, 0, 0.5F, 0}, 0, 166},
                             {{0, 0, 1}, {0, 0, -1, 0}, 0, 38},
                             {{0, 0, 1}, {0, 0, 0, 1}, 0.2F, 166}}) {  // five away: half of it
        host_Geometry sheet = Sheet(-1, -1, 1, 1);
        sheet.normals.assign(4, each.normal);
        light.SetPosition(each.light);
        light.SetAttenuation(1, each.linear, 0);
        _scene.items = {Item(sheet)};
        const Bytes pixel = At(Draw(), 50, 50);
        EXPECT_NEAR(pixel[0], each.red, 1);
        EXPECT_EQ(pixel[1] + pixel[2], 0);
    }
    light.SetSpecular("White");  // a highlight where the light is mirrored to the eye
    host_Geometry sheet = Sheet(-1, -1, 1, 1);
    sheet.normals.assign(4, {0, 0, 1});
    light.SetPosition({0, 0, 1, 0});
    _scene.items = {Item(sheet)};
    EXPECT_EQ(At(Draw(), 50, 50), (Bytes{255, 255, 255}));
    light.SetDiffuse("No such color");
    EXPECT_EQ(test_Message<g3d_ColorErrorException>([&] { Draw(); }),
              "No such color is not a valid color name.");
}

TEST_F(host_RendererTest, EachDeformationHasItsNormals) {
    SetPlainLight();
    host_Geometry sheet = Sheet(-1, -1, -0.6F, 1);
    sheet.normals.assign(4, {0, 0, 1});
    for (const host_Float3& point : sheet.points) {
        sheet.displacements.push_back({1, 0, point[0]});
    }
    host_Item item = Item(sheet);
    item.deformation = 1;  // moves to the middle, by 45 degrees to the light
    _scene.items = {item, item};
    _scene.items[1].deformation = 1.5F;
    const host_Image image = Draw();
    EXPECT_NEAR(At(image, 60, 50)[0], 255 * (0.15 + 1 / std::sqrt(2)), 1);
    EXPECT_NEAR(At(image, 85, 50)[0], 255 * (0.15 + 1 / std::hypot(1, 1.5)), 1);
}

TEST_F(host_RendererTest, ContoursShowTheColorsOfTheTable) {
    std::array<g3d_Color, 7> ramp;
    g3d_Utils::Rainbow(ramp.data(), 7, false, 1);
    for (const bool smooth : {false, true}) {
        g3d_ContourTable table(0, 7, ramp, smooth);
        table.SetBelow(kWhite);
        table.SetAbove({0.3F, 0, 0.3F, 1});
        // From -1 on the left to 8.3 on the right.
        host_Item item = Item(Sheet(-1, -1, 1, 1));
        item.values = std::make_shared<const host_Values>(host_Values{-1, 8.3F, 8.3F, -1});
        item.contours = std::make_shared<const g3d_ContourTable>(table);
        _scene.items = {item};
        const host_Image image = Draw(201, 20);
        for (int column = 0; column < 201; ++column) {
            const Bytes expected = BytesOf(table.Color(-1 + 9.3 * (column + 0.5) / 201));
            for (std::size_t i = 0; i < 3; ++i) {
                ASSERT_NEAR(At(image, column, 10)[i], expected[i], smooth ? 1 : 0) << column;
            }
        }
    }
}

TEST_F(host_RendererTest, OneValueHasOneColorWhereverItLies) {
    SetPerspective();
    _scene.camera.SetWindow(0.1F, 0.1F);
    std::array<g3d_Color, 9> ramp;
    g3d_Utils::Viridis(ramp.data(), 9, false, 1);
    g3d_ContourTable table(0.1, 1, ramp);
    table.SetNotANumber(kRed);
    host_Item item = Item(Sheet(-3, -3, 3, 3));
    item.contours = std::make_shared<const g3d_ContourTable>(table);
    for (const float value : {0.1F, 0.2F, 0.3F, 0.7F, 1.0F, kNaN, kInfinity, -kInfinity}) {
        item.values = std::make_shared<const host_Values>(4, value);
        _scene.items = {item};
        const host_Image image = Draw();
        const Bytes expected = BytesOf(table.Color(static_cast<double>(value)));
        for (int i = 0; i < 100 * 100; ++i) {
            ASSERT_EQ(At(image, i % 100, i / 100), expected) << value;
        }
    }
}

TEST_F(host_RendererTest, MarkersStandOnTheirPointsUnlessHidden) {
    host_MarkerSet set;
    set.bitmap.SetMarker(static_cast<g3d_MarkerEnum>(7), 9);
    set.color = kGreen;
    set.points = {{-0.59F, 0.41F, -0.5F}, {0.59F, 0.41F, 0}};  // pixels (20, 29) and (79, 29)
    // Covers the left half and hides the first point, the second lies in a face that slopes.
    host_Geometry slope = Sheet(0, -1, 1, 1);
    for (host_Float3& point : slope.points) {
        point[2] = 3 * (point[0] - 0.59F);
    }
    _scene.items = {Item(Sheet(-1, -1, 0, 1)), Item(slope)};
    for (const bool onTop : {false, true}) {
        set.onTop = onTop;
        _scene.markers = {set};
        const host_Image image = Draw();
        int bits = 0;
        for (int y = 0; y < set.bitmap.Height(); ++y) {
            for (int x = 0; x < set.bitmap.Width(); ++x) {
                const int dx = x - static_cast<int>(set.bitmap.XOrigin());
                const int dy = y - static_cast<int>(set.bitmap.YOrigin());
                const Bytes ink = set.bitmap.GetBit(x, y) != 0 ? BytesOf(kGreen) : kRedBytes;
                ASSERT_EQ(At(image, 79 + dx, 29 - dy), ink) << x << ", " << y;
                ASSERT_EQ(At(image, 20 + dx, 29 - dy), onTop ? ink : kRedBytes);
                bits += set.bitmap.GetBit(x, y);
            }
        }
        EXPECT_GT(bits, 9);
    }
}

TEST_F(host_RendererTest, MarkersOnOutlinesAreSeen) {
    // Corners of the near face, of its middle edges and of faces seen edgewise, between pixels.
    host_Geometry box;
    for (std::uint32_t i = 0; i < 8; ++i) {
        box.points.push_back({(i & 1U) != 0 ? 0.5F : -0.5F, (i & 2U) != 0 ? 0.5F : -0.5F,
                              (i & 4U) != 0 ? 0.5F : -0.5F});
    }
    for (const std::array<std::uint32_t, 4>& q : {std::array{0U, 2U, 3U, 1U},
                                                  {4U, 5U, 7U, 6U},
                                                  {0U, 1U, 5U, 4U},
                                                  {2U, 6U, 7U, 3U},
                                                  {0U, 4U, 6U, 2U},
                                                  {1U, 3U, 7U, 5U}}) {
        box.triangles.insert(box.triangles.end(), {{q[0], q[1], q[2]}, {q[0], q[2], q[3]}});
    }
    _scene.items = {Item(box)};
    host_MarkerSet set;
    set.bitmap.SetMarker(static_cast<g3d_MarkerEnum>(7), 5);
    set.color = kGreen;
    const auto isSeen = [&](const host_Float3& point) {
        set.points = {point};
        _scene.markers = {};
        const host_Image without = Draw();
        _scene.markers = {set};
        return Draw().rgb != without.rgb;
    };
    for (const float z : {0.5F, 0.0F, -0.5F}) {
        for (const float nudge : {-1e-6F, 0.0F, 1e-6F}) {
            EXPECT_TRUE(isSeen({0.5F + nudge, 0.1F, z})) << z << ", " << nudge;
            EXPECT_TRUE(isSeen({-0.5F, -0.5F + nudge, z})) << z << ", " << nudge;
        }
    }
    EXPECT_TRUE(isSeen({0, 0, 0.499F}));
    EXPECT_FALSE(isSeen({0, 0, 0.3F}));
    EXPECT_FALSE(isSeen({0.42F, 0, -0.5F}));
}

TEST_F(host_RendererTest, OddLightsAndNormalsHaveADefinedLight) {
    SetPlainLight();
    host_Geometry sheet = Sheet(-1, -1, 1, 1);
    for (const host_Float3& normal : {host_Float3{0, 0, 0}, {kNaN, 0, 0}, {kInfinity, 0, 1}}) {
        sheet.normals.assign(4, normal);
        _scene.items = {Item(sheet)};
        EXPECT_EQ(At(Draw(), 50, 50), kRedBytes);  // as if it looked at the viewer
    }
    sheet.normals.assign(4, {0, 0, 1});
    _scene.items = {Item(sheet)};
    for (const g3d_Point& place : {g3d_Point(0, 0, 3e38F, 1),
                                   {0, 0, 1, 1e-38F},
                                   {0, 0, 3, 1e-30F},
                                   {0, 0, 3e38F, 0},
                                   {0, 0, -1, -1e-38F}}) {
        _scene.studio.Light(0).SetPosition(place);
        EXPECT_EQ(At(Draw(), 50, 50), kRedBytes) << place.z << ", " << place.w;
    }
    for (int i = 0; i < g3d_Studio::kLights; ++i) {  // near ones and far ones
        g3d_Light& light = _scene.studio.Light(i);
        light.SetOn(true);
        light.SetDiffuse("#101010");
        light.SetSpecular("Black");
        light.SetAmbient("Black");
        light.SetPosition({0, 0, 1, i % 3 == 0 ? 1.0F : 0.0F});
    }
    EXPECT_NEAR(At(Draw(), 50, 50)[0], 38 + 8 * 16, 1);
    for (int i = 0; i < g3d_Studio::kLights; ++i) {
        _scene.studio.Light(i).SetOn(false);
    }
    EXPECT_NEAR(At(Draw(), 50, 50)[0], 38, 1);  // the room's
    _scene.studio.SetBackground("No such color");
    EXPECT_EQ(test_Message<g3d_ColorErrorException>([&] { Draw(); }),
              "No such color is not a valid color name.");
}

/// The box of all pixels that differ from the background.
std::array<int, 4> InkBox(const host_Image& image) {
    std::array<int, 4> box = {image.width, image.height, -1, -1};
    for (int row = 0; row < image.height; ++row) {
        for (int column = 0; column < image.width; ++column) {
            if (At(image, column, row) != kBackground) {
                box = {std::min(box[0], column), std::min(box[1], row), std::max(box[2], column),
                       std::max(box[3], row)};
            }
        }
    }
    return box;
}

TEST_F(host_RendererTest, LabelsStayInTheirBoxes) {
    host_Label label{100, 50, 20, "Hgx \xC3\x85 12.5", kWhite, host_Align::Left};
    _scene.labels = {label};
    const auto left = InkBox(Draw(300, 80));
    const int width = left[2] - left[0];
    EXPECT_NEAR(left[0], 100, 3);
    EXPECT_GT(width, 80);
    EXPECT_LT(width, 150);
    EXPECT_GT(left[1], 50 - 20 - 1);  // the ring above the A
    EXPECT_LT(left[1], 50 - 14);
    EXPECT_NEAR(left[3], 50 + 4, 1);  // below the g
    _scene.labels[0].align = host_Align::Center;
    EXPECT_NEAR(InkBox(Draw(300, 80))[0], 100 - width / 2, 4);
    _scene.labels[0].align = host_Align::Right;
    EXPECT_NEAR(InkBox(Draw(300, 80))[2], 100, 3);

    label.text = "\xFF\xC3(\xED\xA0\x80\xF4\x90\x80\x80\n\t\x7F \xE2\x82";
    _scene.labels = {label, {kNaN, 0, 20, "nowhere", kRed}, {5, 3e9F, 20, "far off", kRed}};
    EXPECT_NE(At(Draw(300, 80), 105, 45), kRedBytes);
    _scene.labels = {{0, 0, 0, "", kRed}};
    EXPECT_EQ(test_Message<omu_RangeErrorException>([&] { Draw(); }),
              "size must be a Float in the range: 1 <= size <= 1000");
}

TEST_F(host_RendererTest, RectanglesLieOverAllInTheirOrder) {
    _scene.items = {Item(Sheet(-1, -1, 1, 1))};
    _scene.rectangles = {{10, 20, 30, 10, kWhite},          {20, 20, 5.5F, 10, {0, 0, 0, 1}},
                         {50, 50, 10, 10, {0, 0, 1, 0.5F}}, {kNaN, 0, 50, 50, kGreen},
                         {70, 0, -50, 50, kGreen},          {90, 90, 1e30F, 1e30F, kGreen}};
    const host_Image image = Draw();
    EXPECT_EQ(At(image, 9, 25), kRedBytes);
    EXPECT_EQ(At(image, 10, 20), (Bytes{255, 255, 255}));
    EXPECT_EQ(At(image, 39, 29), (Bytes{255, 255, 255}));
    EXPECT_EQ(At(image, 40, 30), kRedBytes);
    EXPECT_EQ(At(image, 24, 25), (Bytes{0, 0, 0}));
    EXPECT_EQ(At(image, 25, 25), (Bytes{128, 128, 128}));
    EXPECT_EQ(At(image, 55, 55), (Bytes{128, 0, 128}));
    EXPECT_EQ(At(image, 99, 99), BytesOf(kGreen));
    EXPECT_EQ(At(image, 30, 0), kRedBytes);
}

TEST_F(host_RendererTest, NearFacesHideWhatIsBehind) {
    host_Geometry slope = Sheet(-1, -1, 0, 1);
    for (host_Float3& point : slope.points) {
        point[2] = 2 * point[0];
    }
    // The first edge lies in the face, the second behind it.
    slope.points.insert(slope.points.end(), {{-0.7F, -1, -1.4F}, {-0.7F, 1, -1.4F}});
    slope.points.insert(slope.points.end(), {{-0.3F, -1, -0.7F}, {-0.3F, 1, -0.7F}});
    slope.edges = {{4, 5}, {6, 7}};
    host_Item item = Item(slope);
    item.showEdges = true;
    item.edgeColor = {0, 0, 1, 1};
    _scene.items = {Item(Sheet(0, -1, 1, 1, 1), {0, 1, 0, 0.5F}), Item(Sheet(0, -1, 1, 1)), item};
    const host_Image image = Draw();
    for (int row = 0; row < 100; ++row) {
        EXPECT_NEAR(At(image, 14, row)[2] + At(image, 15, row)[2], 255, 1) << row;
        EXPECT_EQ(At(image, 35, row), kRedBytes);
    }
    // Wide edges do not sink into the face, neither at their sides nor where they meet.
    slope.edges = {{4, 5}};
    for (std::uint32_t i = 8; i < 16; ++i) {
        const float x = -0.95F + 0.1F * static_cast<float>(i - 8);
        slope.points.push_back({x, 0.5F, 2 * x});
        if (i > 8) {
            slope.edges.push_back({i - 1, i});
        }
    }
    _scene.items = {Item(slope)};
    _scene.items[0].showEdges = true;
    _scene.items[0].edgeColor = {0, 0, 1, 1};
    _scene.items[0].edgeWidth = 4;
    const host_Image wide = Draw();
    for (int i = 5; i < 30; ++i) {
        int down = 0;
        int across = 0;
        for (int j = 0; j < 10; ++j) {
            down += At(wide, i, 20 + j)[2];
            across += At(wide, 10 + j, i)[2];
        }
        EXPECT_GE(down, 4 * 255 - 2) << i;
        EXPECT_GE(across, 4 * 255 - 2) << i;
    }
    EXPECT_NEAR(At(image, 75, 50)[0], 128, 1);  // seen through the green sheet
    EXPECT_NEAR(At(image, 75, 50)[1], 128, 1);
}

TEST_F(host_RendererTest, GeometryIsSentOnce) {
    host_Renderer& renderer = host_Renderer::Instance();
    host_Geometry sheet = Sheet(-1, -1, 0, 1);
    sheet.normals.assign(4, {0, 0, 1});
    sheet.displacements.assign(4, {1, 0, 0});
    sheet.edges = {{0, 1}, {1, 2}};
    host_Item item = Item(sheet);
    _scene.items = {item, item};
    const std::size_t before = renderer.BytesSent();
    Draw();
    EXPECT_EQ(renderer.BytesSent() - before, 4 * 12 + 4 * 12 + 2 * 12U);  // points, normals, faces
    _scene.items = {item};
    for (const float deformation : {0.0F, 0.5F}) {
        _scene.items[0].deformation = deformation;
        _scene.items[0].showEdges = true;
        Draw();
        const std::size_t sent = renderer.BytesSent();
        _scene.camera.Rotate(deformation * 10, {0, 0, 1}, false);
        const host_Image image = Draw();
        EXPECT_EQ(renderer.BytesSent(), sent);
        EXPECT_EQ(At(image, 60, 50) == kBackground, deformation == 0);  // moved to the right
        EXPECT_EQ(At(image, 10, 50) == kBackground, deformation != 0);
    }
    // A geometry in the place of another is not taken for it.
    for (int i = 0; i < 10; ++i) {
        _scene.items = {Item(i % 2 == 0 ? Sheet(-1, -1, 0, 1) : Sheet(0, -1, 1, 1))};
        EXPECT_EQ(At(Draw(), 10, 50) == kBackground, i % 2 != 0);
    }
}

TEST_F(host_RendererTest, EdgesHaveTheirWidthThroughout) {
    // Nearly level lines of short edges, across the blocks of 64 pixels that a driver draws.
    _scene.studio.SetBackground("Black");
    constexpr int kLines = 16;
    host_Geometry lines;
    for (int i = 0; i < kLines; ++i) {
        for (int j = 0; j <= 250; ++j) {
            const float x = -1.1F + 0.0088F * static_cast<float>(j);
            lines.points.push_back({x, -0.9F + 0.1177F * static_cast<float>(i) + 0.02F * x, 0});
            const auto point = static_cast<std::uint32_t>(lines.points.size() - 1);
            if (j > 0) {
                lines.edges.push_back({point - 1, point});
            }
        }
    }
    host_Item item = Item(lines);
    item.showEdges = true;
    item.edgeColor = kWhite;
    for (const float width : {1.0F, 2.5F}) {
        item.edgeWidth = width;
        _scene.items = {item};
        const host_Image image = Draw(640, 640);
        for (int column = 0; column < 640; ++column) {
            double sum = 0;
            for (int row = 0; row < 640; ++row) {
                sum += At(image, column, row)[1] / 255.0;
            }
            ASSERT_NEAR(sum / kLines, static_cast<double>(width), 0.1) << column;
        }
    }
}

TEST_F(host_RendererTest, DegenerateInputIsLeftOut) {
    host_Geometry sheet = Sheet(-1, -1, 1, 1);
    sheet.points.insert(sheet.points.end(), {{kNaN, 0, 1}, {0, kInfinity, 1}, {3e38F, -3e38F, 1}});
    sheet.displacements.assign(7, {0, 0, 0});
    sheet.displacements[3] = {kNaN, 0, 0};
    for (const std::uint32_t bad : {4U, 5U, 6U, 7U, 0xFFFFFFFFU}) {
        sheet.triangles.insert(sheet.triangles.begin(), {0, 1, bad});
        sheet.edges.push_back({bad, 1});
    }
    host_Item item = Item(sheet);
    item.showEdges = true;
    item.edgeColor = kGreen;
    item.edgeWidth = kNaN;
    _scene.items = {item, Item({})};
    EXPECT_EQ(At(Draw(), 70, 70), kRedBytes);
    EXPECT_EQ(At(Draw(), 20, 20), kRedBytes);
    _scene.items[0].deformation = 1;  // the second triangle goes: its last point is nowhere
    EXPECT_EQ(At(Draw(), 70, 70), kRedBytes);
    EXPECT_EQ(At(Draw(), 20, 20), kBackground);
    _scene.items[0].deformation = kInfinity;
    EXPECT_EQ(test_Message<omu_ValueErrorException>([&] { Draw(); }),
              "the scale of a deformation must be finite");

    _scene.markers.resize(1);
    _scene.markers[0].points = {{0, 0, 0}, {kNaN, kNaN, kNaN}, {3e38F, 3e38F, 3e38F}};
    _scene.items[0].deformation = 0;
    for (const float element : {0.0F, 1e30F, 3e38F, kInfinity, kNaN}) {
        g3d_XForm matrix;
        for (int i = 0; i < 16; ++i) {
            matrix.M(i / 4, i % 4) = element;
        }
        g3d_Camera camera;
        camera.SetLayerXForm(true, &matrix);
        _scene.camera = camera;
        EXPECT_EQ(At(Draw(), 3, 3), kBackground) << element;
    }
}

TEST_F(host_RendererTest, AnySizeWithinTheLimits) {
    const auto message = [&](int width, int height) {
        return test_Message<omu_RangeErrorException>([&] { Draw(width, height); });
    };
    const std::string width = "width must be an Integer in the range: 1 <= width <= 32768";
    EXPECT_EQ(message(0, 10), width);
    EXPECT_EQ(message(100000, 10), width);
    EXPECT_EQ(message(10, -1), "height must be an Integer in the range: 1 <= height <= 32768");
    EXPECT_EQ(message(20000, 20000),
              "width*height must be an Integer in the range: 1 <= width*height <= 268435456");

    // Wider than what is drawn at a time: nothing happens at the seams.
    host_Geometry triangle;
    triangle.points = {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}};
    triangle.triangles = {{0, 1, 2}};
    _scene.items = {Item(triangle)};
    for (const auto& [w, h] : {std::pair{1, 1}, {5000, 8}, {8, 5000}}) {
        const host_Image image = Draw(w, h);
        ASSERT_EQ(image.rgb.size(), static_cast<std::size_t>(3 * w * h));
        for (int row = 0; row < h; ++row) {
            for (int column = 0; column < w; ++column) {
                const double inside = (column + 0.5) / w - (h - row - 0.5) / h;
                if (std::abs(inside) > 1.0 / std::min(w, h)) {
                    ASSERT_EQ(At(image, column, row), inside > 0 ? kRedBytes : kBackground)
                        << column << ", " << row;
                }
            }
        }
    }
}

TEST_F(host_RendererTest, AnotherThreadIsRefused) {
    Draw();
    std::string message;
    std::thread([&] {
        try {
            Draw();
        } catch (const std::runtime_error& error) {
            message = error.what();
        }
    }).join();
    EXPECT_EQ(message, "Pictures must all be drawn by the thread that drew the first one.");
}

TEST_F(host_RendererTest, AMissingDriverOrFontIsNamed) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto run = [&](const char* variable) {
        setenv(variable, "/nowhere", 1);
        try {
            Draw();
        } catch (const std::exception& error) {
            std::fputs(error.what(), stderr);
            std::_Exit(7);
        }
        std::_Exit(0);
    };
    EXPECT_EXIT(run("LIBGL_DRIVERS_PATH"), testing::ExitedWithCode(7),
                "EGL finds no driver.*apt-get install libgl1-mesa-dri");
    _scene.labels = {{0, 0, 10, "", kWhite}};
    EXPECT_EXIT(run("CAEHOST_FONT"), testing::ExitedWithCode(7),
                "the font file '/nowhere' cannot be used.*apt-get install fonts-dejavu-core");
}

#if CAEHOST_HAVE_VIEWPORT

host_Image ReadPng(const std::string& path) {
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    host_Image image;
    if (png_image_begin_read_from_file(&png, path.c_str()) != 0) {
        png.format = PNG_FORMAT_RGB;
        image = {static_cast<int>(png.width), static_cast<int>(png.height), {}};
        image.rgb.resize(PNG_IMAGE_SIZE(png));
        png_image_finish_read(&png, nullptr, image.rgb.data(), 0, nullptr);
    }
    EXPECT_EQ(png.message, std::string()) << path;
    return image;
}

TEST_F(host_RendererTest, PngFilesAreWholeOrNotThere) {
    const std::filesystem::path folder =
        std::filesystem::path(testing::TempDir()) / ("png" + std::to_string(::getpid()));
    std::filesystem::create_directory(folder);
    const std::string path = folder / "a.png";
    _scene.items = {Item(Sheet(-0.7F, -0.3F, 0.2F, 0.6F))};
    const host_Image image = Draw(123, 77);
    host_WritePng(host_Image{1, 1, {1, 2, 3}}, path);
    host_WritePng(image, path);
    const host_Image read = ReadPng(path);
    EXPECT_EQ(read.width, 123);
    EXPECT_EQ(read.rgb, image.rgb);

    const auto message = [&](const std::string& to, const host_Image& what) {
        try {
            host_WritePng(what, to);
        } catch (const std::filesystem::filesystem_error& error) {
            return std::string(error.what());
        }
        return std::string("no error");
    };
    const std::string start = "filesystem error: cannot write the picture: ";
    EXPECT_EQ(message(folder / "no/a.png", image),
              start + "No such file or directory [" + (folder / "no/a.png").string() + "]");
    EXPECT_EQ(message(folder, image), start + "Is a directory [" + folder.string() + "]");
    EXPECT_EQ(message("/dev/full", image), start + "Invalid argument [/dev/full]");
    EXPECT_EQ(message(path, {5, 5, {}}), start + "Invalid argument [" + path + "]");
    EXPECT_EQ(message(path, {2'000'000, 1, std::vector<std::uint8_t>(6'000'000)}),
              start + "Invalid argument [" + path + "]");  // more than libpng takes
    EXPECT_EQ(ReadPng(path).rgb, image.rgb);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
    std::filesystem::remove_all(folder);
}

/// A torus, lit and deformed, with contours, edges, markers and a legend.
host_Scene Torus() {
    constexpr std::uint32_t kAround = 48;
    constexpr std::uint32_t kAcross = 24;
    host_Geometry torus;
    host_Values values;
    for (std::uint32_t i = 0; i < kAround; ++i) {
        for (std::uint32_t j = 0; j < kAcross; ++j) {
            const float u = 2 * std::numbers::pi_v<float> * static_cast<float>(i) / kAround;
            const float v = 2 * std::numbers::pi_v<float> * static_cast<float>(j) / kAcross;
            const host_Float3 out = {std::cos(u) * std::cos(v), std::sin(u) * std::cos(v),
                                     std::sin(v)};
            torus.points.push_back(
                {std::cos(u) + 0.4F * out[0], std::sin(u) + 0.4F * out[1], 0.4F * out[2]});
            torus.normals.push_back(out);
            torus.displacements.push_back({0, 0, std::cos(2 * u)});
            values.push_back(u < 1 ? kNaN : 100 * std::cos(u) * std::cos(v));
            const auto point = [](std::uint32_t a, std::uint32_t b) {
                return a % kAround * kAcross + b % kAcross;
            };
            const std::array<std::uint32_t, 4> quad = {point(i, j), point(i + 1, j),
                                                       point(i + 1, j + 1), point(i, j + 1)};
            torus.triangles.push_back({quad[0], quad[1], quad[2]});
            torus.triangles.push_back({quad[0], quad[2], quad[3]});
            torus.edges.push_back({quad[0], quad[1]});
            torus.edges.push_back({quad[0], quad[3]});
        }
    }
    std::array<g3d_Color, 10> ramp;
    g3d_Utils::Rainbow(ramp.data(), 10, false, 1);
    const g3d_ContourTable table(-80, 80, ramp);
    host_Scene scene;
    host_Item left = Item(torus, {0.7F, 0.7F, 0.7F, 1});
    host_Item right = left;
    right.values = std::make_shared<const host_Values>(values);
    right.contours = std::make_shared<const g3d_ContourTable>(table);
    right.showEdges = true;
    right.deformation = 0.25F;
    host_Geometry moved = torus;
    for (host_Float3& point : moved.points) {
        point[0] -= 3;
    }
    left.geometry = std::make_shared<const host_Geometry>(moved);
    scene.items = {left, right};
    host_MarkerSet markers;
    markers.bitmap.SetMarker(static_cast<g3d_MarkerEnum>(0), 9);
    markers.color = {1, 1, 0, 1};
    for (std::size_t i = 0; i < moved.points.size(); i += 31) {
        markers.points.push_back(moved.points[i]);
    }
    scene.markers = {markers};
    for (int i = 0; i < 10; ++i) {
        const float top = 30 + 16 * static_cast<float>(9 - i);
        scene.rectangles.push_back({16, top, 18, 16, table.BandColor(i)});
        scene.labels.push_back(
            {40, top + 5, 12, std::to_string(std::lround(table.Break(i + 1))), kWhite});
    }
    scene.labels.push_back({16, 20, 15, "Spannung \xCF\x83 [MPa]", kWhite});
    scene.camera.SetLocation({-1.5F, -7, 5}, {-1.5F, 0, 0}, {0, 0, 1});
    scene.camera.SetWindow(0.76F, 0.57F);
    scene.studio.SetBackground("#202830");
    return scene;
}

TEST_F(host_RendererTest, ThePictureIsTheReference) {
    _scene = Torus();
    const host_Image image = Draw(640, 480);
    const host_Image reference = ReadPng(TEST_DATA_DIR "/renderer.png");
    int differing = 640 * 480;
    if (reference.width == image.width && reference.height == image.height) {
        differing = 0;
        for (int i = 0; i < 640 * 480; ++i) {
            const Bytes a = At(image, i % 640, i / 640);
            const Bytes b = At(reference, i % 640, i / 640);
            differing +=
                std::abs(a[0] - b[0]) > 2 || std::abs(a[1] - b[1]) > 2 || std::abs(a[2] - b[2]) > 2;
        }
    }
    if (differing > 640 * 480 / 2000) {
        host_WritePng(image, "renderer_now.png");
        ADD_FAILURE() << differing << " pixels differ; look at renderer_now.png in "
                      << std::filesystem::current_path();
    }
}

#else

TEST(host_NoRenderer, OneErrorSaysWhy) {
    for (const bool draws : {true, false}) {
        try {
            draws ? void(host_Renderer::Instance()) : host_WritePng({}, "a.png");
            FAIL();
        } catch (const std::runtime_error& error) {
            EXPECT_TRUE(std::string(error.what())
                            .starts_with("No pictures can be drawn: this caehost was "))
                << error.what();
        }
    }
}

#endif

}  // namespace
