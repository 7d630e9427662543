#include "host_ViewCommands.h"

#include "g3d_ColorErrorException.h"
#include "g3d_Utils.h"
#include "host_MeshCommands.h"
#include "host_RunStep.h"
#include "host_View.h"
#include "host_initialize.h"
#include "omu_PrimArray.h"
#include "omu_PrimString.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <map>
#include <numbers>
#include <set>

namespace {

using Value = std::unique_ptr<omu_Primitive>;
using Dictionary = omu_PrimDictionary<cow_String>;
using Keywords = std::vector<std::pair<const char*, std::shared_ptr<omu_Primitive>>>;

template <class T>
std::shared_ptr<omu_Primitive> Make(const T& value) {
    return std::shared_ptr<omu_Primitive>(omu_ValueTraits<T>::Make(value));
}
std::shared_ptr<omu_Primitive> Constant(const char* name) {
    return std::make_shared<omu_PrimEnumBase>(cow_String(name));
}
std::shared_ptr<omu_Primitive> Make(const char* text) {
    return std::make_shared<omu_PrimString>(cow_String(text));
}
std::shared_ptr<omu_PrimArray> Numbers(std::vector<double> values) {
    return std::make_shared<omu_PrimArray>(std::move(values));
}
omu_PrimArray Rows(std::vector<double> values) {
    const int count = static_cast<int>(values.size()) / 3;
    return {std::move(values), {count, 3}};
}

/// Keeps the scenes instead of drawing them.
class Recorder final : public host_Renderer {
public:
    host_Image Draw(const host_Scene& scene, int width, int height) override {
        last = scene;
        return {width, height, {}};
    }
    [[nodiscard]] std::size_t BytesSent() const noexcept override { return 0; }

    host_Scene last;
};

class host_ViewCommands : public testing::Test {
protected:
    host_ViewCommands() {
        host_initialize(_modules);
        host_RegisterMeshCommands(_table);
        host_RegisterViewCommands(
            _table, {[this]() -> host_Renderer& { return _recorder; },
                     [this](const host_Image&, const std::string& path) { _path = path; },
                     [this] { ++_polls; }, [](const auto& work) { work(); }});
        Run("resetView");
    }
    ~host_ViewCommands() override {
        Run("resetView");
        host_finalize(_modules);
    }

    /// Calls a command with positional values and then keywords.
    template <class... Values>
    Value Run(const char* command, const Keywords& keywords, const Values&... values) {
        omu_Arguments args;
        (args.Put(values), ...);
        for (const auto& [name, value] : keywords) {
            args.Put(value->Copy(), cow_String(name));
        }
        return host_RunStep(*_table.Find(command), args);
    }
    template <class... Values>
    Value Run(const char* command, const Values&... values) {
        return Run(command, Keywords(), values...);
    }
    template <class Error, class... Values>
    std::string Raised(const char* command, const Keywords& keywords, const Values&... values) {
        return test_Message<Error>([&] { Run(command, keywords, values...); });
    }

    const host_Scene& Scene(int width = 1280, int height = 960) {
        Run("savePicture", "x.png", width, height);
        return _recorder.last;
    }
    const host_Geometry& Geometry() { return *Scene().items.at(0).geometry; }

    /// A box of nx x ny x nz cells of size 1, as hexahedra.
    void MakeBox(const char* name, int nx, int ny, int nz) {
        std::vector<double> points;
        for (int i = 0; i < (nx + 1) * (ny + 1) * (nz + 1); ++i) {
            points.insert(points.end(), {double(i % (nx + 1)), double(i / (nx + 1) % (ny + 1)),
                                         double(i / (nx + 1) / (ny + 1))});
        }
        std::vector<int> nodes;
        const int y = nx + 1;
        const int z = y * (ny + 1);
        for (int c = 0; c < nx * ny * nz; ++c) {
            const int n = c % nx + c / nx % ny * y + c / nx / ny * z;
            for (const int base : {n, n + z}) {
                nodes.insert(nodes.end(), {base, base + 1, base + 1 + y, base + y});
            }
        }
        Run("part", name, Rows(points), omu_PrimArray(std::move(nodes), {nx * ny * nz, 8}));
    }

    int _modules = 0;
    host_CommandTable _table;
    Recorder _recorder;
    std::string _path;
    int _polls = 0;
};

std::array<double, 2> Pixel(const host_Scene& scene, host_Float3 at, int width, int height) {
    // By the matrices in long double, element by element.
    const auto times = [](const g3d_XForm& m, const std::array<long double, 4>& v) {
        std::array<long double, 4> result{};
        for (int i = 0; i < 4; ++i) {
            for (int j = 0; j < 4; ++j) {
                result[std::size_t(i)] +=
                    static_cast<long double>(m.GetM(i, j)) * v[std::size_t(j)];
            }
        }
        return result;
    };
    const auto clip = times(scene.camera.ConstGetPM(),
                            times(scene.camera.ConstGetVOM(), {at[0], at[1], at[2], 1}));
    EXPECT_LE(std::abs(clip[2]), clip[3] * 1.00001L) << "outside of near and far";
    return {double((1 + clip[0] / clip[3]) / 2 * width),
            double((1 - clip[1] / clip[3]) / 2 * height)};
}

TEST_F(host_ViewCommands, ABoxHasFlatFacesSharpEdgesAndNothingTwice) {
    MakeBox("box", 3, 2, 2);
    Run("show", "box", omu_PrimEnumBase(cow_String("SHADED_EDGES")));
    const host_Geometry& box = Geometry();
    EXPECT_EQ(box.triangles.size(), 2 * (2 * (3 * 2 + 3 * 2 + 2 * 2)));
    EXPECT_EQ(box.points.size(), 2 * (4 * 3 + 4 * 3 + 3 * 3));  // faces share none across edges
    double area = 0;
    for (const auto& [a, b, c] : box.triangles) {
        // Against the clock from outside: the signed area along the normal, which is an axis.
        const auto& n = box.normals[a];
        EXPECT_EQ(std::abs(n[0]) + std::abs(n[1]) + std::abs(n[2]), 1);
        EXPECT_TRUE(n == box.normals[b] && n == box.normals[c]);
        const auto& [p, q, r] = std::tie(box.points[a], box.points[b], box.points[c]);
        for (std::size_t k = 0; k < 3; ++k) {
            const std::size_t l = (k + 1) % 3;
            const std::size_t m = (k + 2) % 3;
            area += n[k] * ((q[l] - p[l]) * (r[m] - p[m]) - (q[m] - p[m]) * (r[l] - p[l])) / 2.0;
        }
    }
    EXPECT_EQ(area, 32);
    const auto edges = [&](const host_Geometry& geometry) {
        std::set<std::pair<host_Float3, host_Float3>> different;
        for (const auto& [a, b] : geometry.edges) {
            different.insert(std::minmax(geometry.points[a], geometry.points[b]));
        }
        EXPECT_EQ(different.size(), geometry.edges.size());
        return geometry.edges.size();
    };
    EXPECT_EQ(edges(box), 64U);  // twice the faces
    Run("show", "box", omu_PrimEnumBase(cow_String("FEATURE_EDGES")));
    EXPECT_EQ(edges(Geometry()), 4U * (3 + 2 + 2));
}

TEST_F(host_ViewCommands, ACylinderIsSmoothAroundAndItsEndsStayFlat) {
    constexpr int kAround = 24;  // 15 degrees a facet
    std::vector<double> points;
    std::vector<int> nodes;
    for (int i = 0; i < kAround; ++i) {
        const double angle = 2 * std::numbers::pi * i / kAround;
        for (const double z : {0.0, 3.0}) {
            points.insert(points.end(), {std::cos(angle), std::sin(angle), z});
        }
        const int next = (i + 1) % kAround;
        // About an axis of points added below.
        nodes.insert(nodes.end(),
                     {2 * kAround, 2 * i, 2 * next, 2 * kAround + 1, 2 * i + 1, 2 * next + 1});
    }
    points.insert(points.end(), {0, 0, 0, 0, 0, 3});
    Run("part", "rod", Rows(points), omu_PrimArray(nodes, {kAround, 6}));
    Run("show", "rod", omu_PrimEnumBase(cow_String("FEATURE_EDGES")));
    const host_Geometry& rod = Geometry();
    EXPECT_EQ(rod.edges.size(), 2U * kAround);
    EXPECT_EQ(rod.points.size(), 2U * kAround + 2U * (kAround + 1));
    for (std::size_t i = 0; i < rod.points.size(); ++i) {
        const host_Float3& n = rod.normals[i];
        if (std::abs(n[2]) < 0.5F) {
            EXPECT_NEAR(n[0], rod.points[i][0], 1e-6);
            EXPECT_NEAR(n[1], rod.points[i][1], 1e-6);
        } else {
            EXPECT_EQ(std::abs(n[2]), 1);
        }
    }
}

TEST_F(host_ViewCommands, TheFirstPartIsFittedAndFitShowsAllAsDeformed) {
    MakeBox("box", 4, 2, 1);
    Run("show", "box");
    Run("part", "far", Rows({90, 0, 0, 91, 0, 0, 90, 1, 0}),
        omu_PrimArray(std::vector{0, 1, 2}, {1, 3}));
    const auto isInside = [&](const host_Scene& scene, const host_Float3& at, int width,
                              int height) {
        const auto [x, y] = Pixel(scene, at, width, height);
        return x >= 0 && x <= width && y >= 0 && y <= height;
    };
    for (const char* projection : {"PERSPECTIVE", "PARALLEL"}) {
        Run("projection", omu_PrimEnumBase(cow_String(projection)));
        for (const auto& [width, height] : {std::pair(1280, 960), {300, 900}, {1, 1}}) {
            SCOPED_TRACE(projection + std::to_string(width));
            for (const host_Float3 corner : {host_Float3{0, 0, 0}, {4, 2, 1}, {4, 0, 1}}) {
                EXPECT_TRUE(isInside(Scene(width, height), corner, width, height));
            }
        }
    }
    Run("show", "far");
    EXPECT_FALSE(isInside(Scene(), {91, 0, 0}, 1280, 960));
    std::vector<double> up(30 * 3);
    up[1] = 1;
    Run("field", "box", "u", Rows(up));
    EXPECT_EQ(dynamic_cast<omu_PrimNumber&>(*Run("deform", "box", "u", 50.0)).Value(), 50);
    Run("marker", Rows({0, 0, -70}));
    Run("fit");
    for (const host_Float3 at : {host_Float3{91, 0, 0}, {0, 50, 0}, {0, 0, -70}, {4, 2, 1}}) {
        EXPECT_TRUE(isInside(Scene(), at, 1280, 960));
    }
    const host_Item item = _recorder.last.items.at(0);
    EXPECT_EQ(item.deformation, 50);
    EXPECT_EQ(_recorder.last.labels.back().text, "Displacements x 50");
    for (std::size_t i = 0; i < item.geometry->points.size(); ++i) {
        const bool isMoved = item.geometry->points[i] == host_Float3{0, 0, 0};
        EXPECT_EQ(item.geometry->displacements[i][1], isMoved ? 1 : 0);
    }
    // About a tenth of the largest side, 4, and a round number; and none.
    for (const auto& [largest, scale] : {std::pair(1.0, 0.5),
                                         {1.3, 0.2},
                                         {4.0, 0.1},
                                         {1e-7, 5e6},
                                         {2.5e9, 2e-10},
                                         {3.1e30, 1e-31},
                                         {5e-9, 1e8},
                                         {0.0, 1.0}}) {
        up[1] = largest;
        Run("field", "box", "u", Rows(up));
        EXPECT_EQ(dynamic_cast<omu_PrimNumber&>(*Run("deform", "box", "u")).Value(), scale);
    }
    Run("deform", "box", "u", 0.0);
    EXPECT_TRUE(Scene().items.at(0).geometry->displacements.empty());
    Run("fit", "far");
    EXPECT_FALSE(isInside(Scene(), {0, 0, 0}, 1280, 960));
}

TEST_F(host_ViewCommands, CanonicalViewsPansAndZoomsGoWhereTheySay) {
    MakeBox("cube", 2, 2, 2);
    Run("show", "cube");
    Run("projection", omu_PrimEnumBase(cow_String("PARALLEL")));
    const auto place = [&](double x, double y, double z) {
        const Value pixel = Run("pixelOf", Rows({x, y, z}).Row(0), 800, 800);
        const auto& tuple = dynamic_cast<const omu_PrimTuple&>(*pixel);
        return std::array{dynamic_cast<const omu_PrimNumber*>(tuple.Index(0))->Value(),
                          dynamic_cast<const omu_PrimNumber*>(tuple.Index(1))->Value()};
    };
    const struct {
        const char* view;
        double right[3], up[3];
    } views[] = {{"FRONT", {1, 0, 0}, {0, 1, 0}}, {"BACK", {-1, 0, 0}, {0, 1, 0}},
                 {"TOP", {1, 0, 0}, {0, 0, -1}},  {"BOTTOM", {1, 0, 0}, {0, 0, 1}},
                 {"LEFT", {0, 0, 1}, {0, 1, 0}},  {"RIGHT", {0, 0, -1}, {0, 1, 0}}};
    for (const auto& [view, r, u] : views) {
        SCOPED_TRACE(view);
        Run("view", omu_PrimEnumBase(cow_String(view)));
        EXPECT_NEAR(place(1, 1, 1)[0], 400, 1e-3);
        EXPECT_GT(place(1 + r[0], 1 + r[1], 1 + r[2])[0], 500);
        EXPECT_LT(place(1 + u[0], 1 + u[1], 1 + u[2])[1], 300);
    }
    Run("view", omu_PrimEnumBase(cow_String("FRONT")));
    const auto middle = place(1, 1, 1);
    const double unit = place(2, 1, 1)[0] - middle[0];
    Run("pan", 25, -50);
    EXPECT_NEAR(place(1, 1, 1)[0], middle[0] + 200, 1e-2);
    EXPECT_NEAR(place(1, 1, 1)[1], middle[1] + 400, 1e-2);
    Run("pan", -25, 50);
    Run("zoom", 50);
    EXPECT_NEAR(place(2, 1, 1)[0], middle[0] + 2 * unit, 1e-2);
    Run("zoom", -50);
    // The rectangle's corners become those of the picture of that shape.
    const auto corner = place(1, 2, 1);
    const auto opposite = place(2, 1, 1);
    const omu_PrimArray first(std::vector{corner[0], corner[1]});
    const omu_PrimArray second(std::vector{opposite[0], opposite[1]});
    Run("zoomTo", second, first, 800, 800);
    EXPECT_NEAR(place(1, 2, 1)[0], 0, 0.05);
    EXPECT_NEAR(place(2, 1, 1)[1], 800, 0.05);
    // What was in front goes right and down.
    Run("view", omu_PrimEnumBase(cow_String("FRONT")));
    Run("rotate", 90);
    EXPECT_NEAR(place(1, 1, 2)[0], 400 + unit, 1e-2);
    Run("rotate", -90);
    Run("rotate", 90, omu_PrimEnumBase(cow_String("HORIZONTAL")));
    EXPECT_NEAR(place(1, 1, 2)[1], 400 + unit, 1e-2);
    Run("rotate", -90, Rows({1, 0, 0}).Row(0));
    EXPECT_NEAR(place(1, 1, 2)[1], 400, 1e-2);
    // A view of the user's.
    Run("rotate", 37);
    Run("saveView", omu_PrimEnumBase(cow_String("USER2")));
    Run("fit");
    const auto saved = place(2, 2, 2);
    Run("view", omu_PrimEnumBase(cow_String("ISO")));
    Run("view", omu_PrimEnumBase(cow_String("USER2")));
    EXPECT_NEAR(place(2, 2, 2)[0], saved[0], 0.05);
    EXPECT_EQ(Raised<omu_ValueErrorException>("view", {}, omu_PrimEnumBase(cow_String("USER1"))),
              "this view was not saved");
    Run("view", omu_PrimEnumBase(cow_String("BACK")));
    Run("lookAt", Rows({1, 1, 9}).Row(0), Rows({1, 1, 1}).Row(0));
    EXPECT_NEAR(place(2, 1, 1)[0], 400 + unit, 1e-2);
    EXPECT_NE(Run("camera")->AsRepr().Std().find("9"), std::string::npos);
}

TEST_F(host_ViewCommands, ContoursAndLegendShowTheRampAndTheBreaks) {
    MakeBox("box", 1, 1, 1);
    Run("field", "box", "T", *Numbers({0, 1, 2, 3, 4, 5, 6, 8}));
    const struct {
        const char* name;
        void (*fill)(g3d_Color*, int, bool, float);
    } ramps[] = {{"VIRIDIS", &g3d_Utils::Viridis},
                 {"COOL_WARM", &g3d_Utils::CoolWarm},
                 {"RAINBOW", &g3d_Utils::Rainbow},
                 {"BLUE_TO_RED", &g3d_Utils::BlueToRed},
                 {"BLACK_TO_WHITE", &g3d_Utils::BlackToWhite}};
    for (const auto& [name, fill] : ramps) {
        for (const bool isReversed : {false, true}) {
            SCOPED_TRACE(name);
            Run("contour",
                {{"ramp", Constant(name)}, {"reverse", Make(isReversed)}, {"bands", Make(4)}},
                "box", "T");
            g3d_Color expected[4];
            fill(expected, 4, isReversed, 1);
            const host_Scene& scene = Scene();
            ASSERT_EQ(scene.rectangles.size(), 5U);  // the frame first
            float bottom = scene.rectangles[0].y + 1;
            for (int i = 0; i < 4; ++i) {
                const host_Rectangle& box = scene.rectangles[std::size_t(i) + 1];
                EXPECT_EQ(box.color, expected[3 - i]);
                EXPECT_EQ(scene.items[0].contours->BandColor(3 - i), expected[3 - i]);
                EXPECT_TRUE(box.y == bottom && box.height >= 3 && box.y == std::round(box.y));
                bottom = box.y + box.height;
            }
            std::vector<std::string> texts;
            for (const host_Label& label : scene.labels) {
                texts.push_back(label.text);
            }
            EXPECT_EQ(texts, (std::vector<std::string>{"T", "0", "2", "4", "6", "8"}));
        }
    }
    // Own colours, limits that leave some out, and a hole in the data.
    omu_PrimTuple colors(3, '(');
    for (const char* color : {"Blue", "#FFFFFF", "Red"}) {
        colors.Put(color);
    }
    Run("field", "box", "T", *Numbers({0, 1, 2, 3, 4, 5, NAN, 8}));
    Run("contour",
        {{"ramp", Make<omu_PrimTuple>(colors)},
         {"bands", Make(3)},
         {"title", Make("t")},
         {"minimum", Make(1.5)},
         {"maximum", Make(4.5)}},
        "box", "T");
    const host_Scene& scene = Scene();
    EXPECT_EQ(scene.items[0].contours->BandColor(1), g3d_Color(1, 1, 1, 1));
    std::string texts;
    for (const host_Label& label : scene.labels) {
        texts += label.text + ";";
    }
    EXPECT_EQ(texts, "t;above;1.5;2.5;3.5;4.5;below;no value;");
    // Everything lies in the picture and large enough, whatever its size.
    for (const auto& [width, height] : {std::pair(400, 300), {3840, 2160}, {120, 2000}}) {
        for (const int bands : {3, 256}) {
            Run("contour", {{"bands", Make(bands)}, {"title", Make(std::string(99, 'W').c_str())}},
                "box", "T");
            const host_Scene& any = Scene(width, height);
            ASSERT_FALSE(any.labels.empty());
            for (const host_Label& label : any.labels) {
                EXPECT_TRUE(label.size >= 11 && label.y < float(height) &&
                            label.x + 0.5F * label.size * float(label.text.size()) < float(width));
            }
            for (const host_Rectangle& box : any.rectangles) {
                EXPECT_TRUE(box.height >= 1 && box.y + box.height < float(height));
            }
        }
    }
    EXPECT_TRUE(Scene(30, 30).labels.empty());
    EXPECT_EQ(Raised<omu_ValueErrorException>("legend", {}, "box"), "nothing was raised");
}

TEST_F(host_ViewCommands, BreaksHaveTheDigitsThatTellThemApart) {
    const struct {
        double low, high;
        int bands;
        const char* texts;
    } rows[] = {{0, 12, 12, "0 1 2 3 4 5 6 7 8 9 10 11 12 "},
                {0, 1, 3, "0.000 0.333 0.667 1.000 "},
                {-0.1, 0.1, 2, "-0.1 0.0 0.1 "},
                {0, 250, 3, "0.0 83.3 166.7 250.0 "},
                {1000, 1000.5, 2, "1000.00 1000.25 1000.50 "},
                {-2e9, 1e9, 3, "-2e+09 -1e+09 0e+00 1e+09 "},
                {1.25e-7, 1.5e-7, 1, "1.25e-07 1.50e-07 "},
                {7, 7, 2, "7 7 7 "},
                {0, 0, 1, "0 0 "}};
    for (const auto& [low, high, bands, expected] : rows) {
        const std::vector<g3d_Color> colors(static_cast<std::size_t>(bands));
        std::string texts;
        for (const std::string& text : host_BreakTexts(g3d_ContourTable(low, high, colors))) {
            texts += text + " ";
        }
        EXPECT_EQ(texts, expected);
    }
}

TEST_F(host_ViewCommands, LimitsRoundLikeTheValuesTheyBound) {
    // 0.1 as float lies above 0.1: it must not count as above the range.
    MakeBox("box", 1, 1, 1);
    Run("field", "box", "T", *Numbers({-0.1, 0.1, 0, 0, 0, 0, 1e300, -HUGE_VAL}));
    Run("contour", {{"minimum", Make(-0.1)}, {"maximum", Make(0.1)}}, "box", "T");
    const host_Item& item = Scene().items.at(0);
    std::map<int, int> bands;
    for (const float value : *item.values) {
        ++bands[item.contours->Band(static_cast<double>(value))];
    }
    EXPECT_EQ(bands, (std::map<int, int>{
                         {g3d_ContourTable::kBelow, 3}, {0, 3}, {6, 12}, {11, 3}, {12, 3}}));
}

TEST_F(host_ViewCommands, ValuesAtCellsFillTheirFacesAndVectorsHaveAMagnitude) {
    MakeBox("row", 3, 1, 1);
    Run("field", {{"position", Constant("CELLS")}}, "row", "v", Rows({3, 4, 0, 0, 0, -2, 1, 2, 2}));
    const auto at = [&](double middle) {  // the value of the faces there
        const host_Item& item = Scene().items.at(0);
        std::set<float> values;
        for (const auto& triangle : item.geometry->triangles) {
            float x = 0;
            for (const std::uint32_t i : triangle) {
                x += item.geometry->points[i][0] / 3;
            }
            if (std::abs(x - middle) < 0.3) {
                for (const std::uint32_t i : triangle) {
                    values.insert((*item.values)[i]);
                }
            }
        }
        return values;
    };
    Run("contour", "row", "v");
    EXPECT_EQ(at(0.5), std::set<float>{5});
    EXPECT_EQ(at(1.5), std::set<float>{2});
    EXPECT_EQ(Scene().labels.at(0).text, "v, magnitude");
    Run("contour", "row", "v", omu_PrimEnumBase(cow_String("COMPONENT_Z")));
    EXPECT_EQ(at(1.5), std::set<float>{-2});
    EXPECT_EQ(Scene().items[0].contours->Minimum(), -2);
    EXPECT_EQ(Raised<omu_ValueErrorException>("deform", {}, "row", "v"),
              "field 'v' does not hold vectors at nodes");
}

TEST_F(host_ViewCommands, OnlyWhatChangedIsMadeAnew) {
    MakeBox("box", 2, 2, 2);
    Run("field", "box", "a", *Numbers(std::vector<double>(27, 1.0)));
    Run("field", "box", "b", *Numbers(std::vector<double>(27, 2.0)));
    Run("field", "box", "u", Rows(std::vector<double>(81, 0.1)));
    Run("contour", "box", "a");
    const host_Item first = Scene().items.at(0);
    Run("rotate", 30);
    Run("zoom", 10);
    host_Item item = Scene(640, 480).items.at(0);
    EXPECT_TRUE(item.geometry == first.geometry && item.values == first.values &&
                item.contours == first.contours);
    Run("contour", "box", "b");
    item = Scene().items.at(0);
    EXPECT_TRUE(item.geometry == first.geometry && item.values != first.values);
    Run("contour", "box", "a");
    Run("show", "box", omu_PrimEnumBase(cow_String("SHADED_EDGES")));
    item = Scene().items.at(0);
    EXPECT_TRUE(item.geometry == first.geometry && item.values == first.values && item.showEdges);
    Run("deform", "box", "u", 2.0);
    const auto deformed = Scene().items.at(0).geometry;
    Run("deform", "box", "u", 3.0);
    EXPECT_TRUE(Scene().items.at(0).geometry == deformed && deformed != first.geometry);

    // Another field of the same name is another field; another part of the same name another part.
    Run("field", "box", "a", *Numbers(std::vector<double>(27, 7.0)));
    EXPECT_EQ(Scene().items.at(0).contours->Minimum(), 7);
    Run("field", "box", "u", *Numbers(std::vector<double>(27)));
    EXPECT_EQ(Raised<omu_ValueErrorException>("savePicture", {}, "x.png"),
              "field 'u' does not hold vectors at nodes");
    MakeBox("box", 1, 1, 1);
    item = Scene().items.at(0);
    EXPECT_TRUE(item.geometry->triangles.size() == 12 && item.contours == nullptr &&
                item.deformation == 0 && item.showEdges);
    Run("show", "box", omu_PrimEnumBase(cow_String("WIREFRAME")));
    Run("field", "box", "a", *Numbers(std::vector<double>(8)));
    Run("contour", "box", "a");
    EXPECT_TRUE(Scene().labels.empty() && Scene().items.at(0).contours == nullptr);
    // A part that was deleted is shown no longer, whatever has its name afterwards.
    Run("deletePart", "box");
    MakeBox("box", 1, 1, 1);
    EXPECT_TRUE(Scene().items.empty());
}

TEST_F(host_ViewCommands, DegenerateAndDefectivePartsAreDefined) {
    const double far = 1e300;
    const struct {
        const char* what;
        std::vector<double> points;
        std::vector<int> triangles;
        std::size_t expectedTriangles, expectedDots;
    } rows[] = {
        {"one point", {5, 5, 5}, {}, 0, 1},
        {"points alone", {0, 0, 0, 1, 1, 1}, {}, 0, 2},
        {"a collapsed cell", {0, 0, 0, 1, 1, 1}, {0, 1, 1}, 0, 2},
        {"a flat one", {0, 0, 0, 1, 1, 1, 2, 2, 2}, {0, 1, 2}, 1, 0},
        {"beyond floats", {0, 0, 0, 1, 0, 0, 0, 1, 0, far, 0, 0}, {0, 1, 2, 1, 3, 2}, 1, 0},
        {"nothing but that", {far, 0, 0}, {}, 0, 0},
        {"huge", {3e37, 0, 0, -3e37, 0, 0, 0, 3e37, 0}, {0, 1, 2}, 1, 0},
        {"faces of both orientations",
         {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0},
         {0, 1, 2, 0, 3, 2},
         2,
         0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Run("resetView");
        Run("part", "p", Rows(row.points),
            omu_PrimArray(row.triangles, {static_cast<int>(row.triangles.size()) / 3, 3}));
        Run("show", "p");
        const std::vector<double> values(row.points.size() / 3, NAN);
        Run("field", "p", "nothing", *Numbers(values));
        Run("contour", "p", "nothing");
        const host_Scene& scene = Scene();
        EXPECT_EQ(scene.items.at(0).geometry->triangles.size(), row.expectedTriangles);
        for (const host_Float3& normal : scene.items.at(0).geometry->normals) {
            EXPECT_NEAR(std::hypot(normal[0], normal[1], normal[2]), 1, 1e-6);
        }
        std::size_t dots = 0;
        for (const host_MarkerSet& markers : scene.markers) {
            dots += markers.points.size();
        }
        EXPECT_EQ(dots, row.expectedDots);
        for (int i = 0; i < 16; ++i) {
            EXPECT_TRUE(std::isfinite(scene.camera.ConstGetVOM().Data()[i]) &&
                        std::isfinite(scene.camera.ConstGetPM().Data()[i]));
        }
    }
    // A point without displacement takes its faces along, and the others move.
    MakeBox("row", 3, 1, 1);
    std::vector<double> up(16 * 3, 0.5);
    up[0] = NAN;
    Run("field", "row", "u", Rows(up));
    Run("deform", "row", "u", 1.0);
    Run("hide", "p");
    EXPECT_EQ(Scene().items.at(0).geometry->triangles.size(), 28U - 3 * 2);
    // A fan of a million faces about one point, in linear time.
    std::vector<double> points{0, 0, 0};
    std::vector<int> nodes;
    for (int i = 1; i <= 1000000; ++i) {
        points.insert(points.end(), {std::cos(i * 1e-6), std::sin(i * 1e-6), 0});
        if (i > 1) {
            nodes.insert(nodes.end(), {0, i - 1, i});
        }
    }
    Run("part", "fan", Rows(std::move(points)), omu_PrimArray(std::move(nodes), {999999, 3}));
    _polls = 0;
    Run("show", "fan");
    EXPECT_GT(_polls, 20);
    EXPECT_EQ(Scene().items.back().geometry->points.size(), 1000001U);
}

TEST_F(host_ViewCommands, WhatIsFittedFillsThePictureRightOfTheLegend) {
    MakeBox("plate", 40, 10, 1);
    Run("show", "plate");
    std::vector<double> values(41 * 11 * 2);
    Run("field", "plate", "T", *Numbers(values));
    const auto check = [&](int width, int height, double column) {
        const host_Scene& scene = Scene(width, height);
        double low[2] = {1e9, 1e9};
        double high[2] = {-1e9, -1e9};
        for (const host_Float3& point : scene.items.at(0).geometry->points) {
            const auto at = Pixel(scene, point, width, height);
            for (std::size_t k = 0; k < 2; ++k) {
                low[k] = std::min(low[k], at[k]);
                high[k] = std::max(high[k], at[k]);
            }
        }
        // Of the window one side fills the picture, and the part does of it, but for the margins.
        const double wide = (high[0] - low[0]) / (0.9 * (width - column));
        const double tall = (high[1] - low[1]) / (0.9 * height);
        EXPECT_NEAR(std::max(wide, tall), 1, 2e-3);
        EXPECT_GE(low[0], column);
        if (column == 0) {
            EXPECT_NEAR(low[0] + high[0], width, 1e-3 * width);
        }
        EXPECT_NEAR(low[1] + high[1], height, 1e-3 * height);
        return column;
    };
    for (const char* projection : {"PERSPECTIVE", "PARALLEL"}) {
        Run("projection", omu_PrimEnumBase(cow_String(projection)));
        for (const char* view : {"FRONT", "LEFT", "ISO", "TOP"}) {
            SCOPED_TRACE(std::string(projection) + view);
            Run("view", omu_PrimEnumBase(cow_String(view)));
            check(1280, 960, 0);
            Run("rotate", 33);
            Run("fit");
            check(1280, 960, 0);
            check(300, 900, 0);
            Run("contour", {{"title", Make("a rather long title")}}, "plate", "T");
            const double right = [&] {
                double end = 0;
                for (const host_Label& label : Scene(1280, 960).labels) {
                    end = std::max(end, label.x + 0.6 * label.size * double(label.text.size()));
                }
                return end;
            }();
            EXPECT_GT(right, 200);
            check(1280, 960, right + 1.5 * _recorder.last.labels[0].size);
            Run("clearContour");
        }
    }
}

TEST_F(host_ViewCommands, TextStandsAtItsPointOrPlace) {
    MakeBox("cube", 2, 2, 2);
    Run("show", "cube");
    Run("view", omu_PrimEnumBase(cow_String("FRONT")));
    Run("label", {{"offset", Numbers({7, 20})}, {"size", Make(10)}, {"color", Make("Red")}},
        "one\ntwo", *Numbers({1, 1, 1}));
    Run("label", "behind", *Numbers({1, 1, 1000}));
    Run("caption", "top");
    Run("caption", {{"align", Constant("RIGHT")}}, "right", *Numbers({100, 50}));
    const host_Scene& scene = Scene(800, 600);
    std::string found;
    for (const host_Label& label : scene.labels) {
        char line[80];
        std::snprintf(line, sizeof line, "%s %.1f %.1f %g %d %s;", label.text.c_str(),
                      double(label.x), double(label.y), double(label.size), int(label.align),
                      label.color == g3d_Color(1, 0, 0, 1) ? "red" : "contrast");
        found += line;
    }
    // The middle of two lines 13 pixels apart is 3.6 pixels, half a capital, above the middle
    // of their baselines.
    EXPECT_EQ(found,
              "one 407.0 277.1 10 0 red;two 407.0 290.1 10 0 red;top 400.0 28.0 11 1 contrast;"
              "right 800.0 304.0 11 2 contrast;");
    Run("clearLabels");
    EXPECT_TRUE(Scene().labels.empty());
}

TEST_F(host_ViewCommands, TextStandsOutFromTheBackground) {
    MakeBox("box", 1, 1, 1);
    Run("field", "box", "T", *Numbers({0, 1, 2, 3, 4, 5, 6, 7}));
    Run("contour", "box", "T");
    for (const char* color : {"White", "Black", "#404040", "#777777", "Yellow", "Blue"}) {
        Run("background", color);
        const host_Scene& scene = Scene();
        EXPECT_GE(
            g3d_Color::ContrastRatio(scene.labels.at(0).color, scene.studio.BackgroundColor()),
            4.5);
    }
    Run("light", {{"latitude", Make(90)}, {"diffuse", Make("Red")}}, 3);
    EXPECT_EQ(Scene().studio.Light(3).Diffuse(), "Red");
    EXPECT_NEAR(Scene().studio.Light(3).Position().y, 1, 1e-6);
    Run("resetView");
    EXPECT_TRUE(Scene().studio == g3d_Studio() && Scene().items.empty());
}

TEST_F(host_ViewCommands, BadValuesAreNamedAndChangeNothing) {
    MakeBox("box", 1, 1, 1);
    Run("field", "box", "T", *Numbers({0, 1, 2, 3, 4, 5, 6, 7}));
    Run("contour", "box", "T");
    const std::string camera = Run("camera")->AsRepr().Std();
    const std::string scene = Run("legend", "box")->AsRepr().Std();
    const std::pair<const char*, std::shared_ptr<omu_Primitive>> box{"part", Make("box")};
    const std::pair<const char*, std::shared_ptr<omu_Primitive>> T{"field", Make("T")};
    const auto origin = Numbers({0, 0, 0});
    const struct {
        const char* command;
        Keywords keywords;
        const char* message;
    } rows[] = {
        {"zoom",
         {{"percent", Make(NAN)}},
         "percent must be a Float in the range: -99 <= percent <= 99"},
        {"zoom",
         {{"percent", Make(100)}},
         "percent must be a Float in the range: -99 <= percent <= 99"},
        {"pan", {{"up", Make(HUGE_VAL)}}, "up must be a Float in the range: -1000 <= up <= 1000"},
        {"rotate",
         {{"angle", Make(-HUGE_VAL)}},
         "angle must be a Float in the range: -360 <= angle <= 360"},
        {"lookAt", {{"eye", origin}, {"target", origin}}, "eye and target are the same point"},
        {"zoomTo",
         {{"corner", Numbers({5, 5})}, {"opposite", Numbers({5, 9})}},
         "the rectangle has no area"},
        {"zoomTo",
         {{"corner", Numbers({5})}, {"opposite", Numbers({5, 9})}},
         "corner has 1 elements; column and row were expected"},
        {"zoomTo",
         {{"corner", Numbers({5, NAN})}, {"opposite", Numbers({5, 9})}},
         "corner[1] must be a Float in the range: 0 <= corner[1] <= 960"},
        {"contour",
         {box, T, {"bands", Make(-1)}},
         "bands must be an Integer in the range: 1 <= bands <= 256"},
        {"contour",
         {box, T, {"minimum", Make(NAN)}},
         "minimum must be a Float in the range: -1e+38 <= minimum <= 1e+38"},
        {"contour",
         {box, T, {"ramp", Make<omu_PrimTuple>(omu_PrimTuple('('))}},
         "ramp has no colors"},
        {"show", {box, {"color", Make("#12345")}}, "#12345 is not a valid color name."},
        {"show", {box, {"color", Make("%s#n")}}, "%s#n is not a valid color name."},
        {"show",
         {box, {"edgeWidth", Make(0)}},
         "edgeWidth must be a Float in the range: 0.1 <= edgeWidth <= 20"},
        {"label",
         {{"text", Make("t")}, {"point", Numbers({0, NAN, 0})}},
         "point is not a point within 1e18 of the origin"},
        {"label",
         {{"text", Make("t")}, {"point", origin}, {"size", Make(100000)}},
         "size must be a Float in the range: 1 <= size <= 1000"},
        {"caption",
         {{"text", Make("t")}, {"position", Numbers({50})}},
         "position has 1 elements; percents to the right and downward were expected"},
        {"caption",
         {{"text", Make("t")}, {"position", Numbers({50, HUGE_VAL})}},
         "position[1] must be a Float in the range: -100 <= position[1] <= 200"},
        {"caption",
         {{"text", Make(std::string(5000, 'x').c_str())}},
         "text has 5000 bytes; at most 4000 are drawn"},
        {"light", {{"number", Make(0)}, {"ambient", Make("")}}, " is not a valid color name."},
    };
    for (const auto& [command, keywords, message] : rows) {
        EXPECT_EQ(Raised<nex_CommandException>(command, keywords), message) << command;
    }
    EXPECT_EQ(Run("camera")->AsRepr().Std(), camera);
    EXPECT_EQ(Run("legend", "box")->AsRepr().Std(), scene);
    EXPECT_TRUE(Scene().markers.empty());
    EXPECT_EQ(_path, "x.png");
    Run("hide");
    EXPECT_EQ(Raised<omu_ValueErrorException>("fit", {}), "nothing is shown");
}

TEST_F(host_ViewCommands, AnInterruptLeavesEverythingAsItWas) {
    MakeBox("box", 1, 1, 1);
    host_CommandTable table;
    host_RegisterViewCommands(table, {{}, {}, [] { throw std::bad_alloc(); }, {}});
    omu_Arguments args;
    args.Put("box");
    EXPECT_THROW(table.Find("show")->run(args), std::bad_alloc);
    EXPECT_TRUE(Scene().items.empty());
}

TEST_F(host_ViewCommands, ScriptsSeeTheSame) {
    EXPECT_EQ(std::system("'" CAEHOST_EXECUTABLE "' '" TEST_DATA_DIR
                          "/view.py' '" CAEHOST_EXECUTABLE "'"),
              0);
}

}  // namespace
