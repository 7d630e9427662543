#include "host_MeshCommands.h"

#include "host_RunStep.h"
#include "host_ViewCommands.h"
#include "host_initialize.h"
#include "omu_ErrorExceptions.h"
#include "omu_PrimArray.h"
#include "omu_PrimList.h"
#include "omu_PrimString.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <memory>
#include <numbers>
#include <set>

namespace {

using Value = std::unique_ptr<omu_Primitive>;
using Dictionary = omu_PrimDictionary<cow_String>;

class host_MeshCommands : public testing::Test {
protected:
    host_MeshCommands() {
        host_initialize(_modules);
        host_RegisterMeshCommands(_table);
    }
    ~host_MeshCommands() override { host_finalize(_modules); }

    /// Calls a command with the given positional values and then \p args.
    template <class... Values>
    Value Run(const char* command, omu_Arguments args, const Values&... values) {
        (args.Put(values), ...);
        return host_RunStep(*_table.Find(command), args);
    }
    template <class... Values>
    Value Run(const char* command, const Values&... values) {
        return Run(command, omu_Arguments(), values...);
    }
    template <class... Values>
    double Number(const char* command, const Values&... values) {
        return dynamic_cast<const omu_PrimNumber&>(*Run(command, values...)).Value();
    }
    template <class... Values>
    std::string Text(const char* command, const Values&... values) {
        const Value result = Run(command, values...);
        return result == nullptr ? "None" : result->AsRepr().Std();
    }

    int _modules = 0;
    host_CommandTable _table;
};

omu_PrimArray Points(std::vector<double> coordinates) {
    const int count = static_cast<int>(coordinates.size() / 3);
    return {std::move(coordinates), {count, 3}};
}

omu_PrimArray Cells(std::vector<int> nodes, int size) {
    const int count = static_cast<int>(nodes.size()) / size;
    return {std::move(nodes), {count, size}};
}

/// Cells of a named type, as commands take them: ((TYPE, array),).
omu_PrimTuple Typed(const char* type, std::vector<int> nodes, int size) {
    omu_PrimTuple block(2, '(');
    block.Put(omu_PrimEnumBase(cow_String(type)));
    block.Put(Cells(std::move(nodes), size));
    omu_PrimTuple blocks(1, '(');
    blocks.Put(block);
    return blocks;
}

/// A unit cube: one cell, or its cut into pyramids, wedges or tetrahedra.
const std::vector<double> kCube = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1,  0,  0, 0,
                                   1, 1, 0, 1, 1, 1, 1, 0, 1, 1, .5, .5, .5};
const std::map<std::string, omu_PrimArray>& Cuts() {
    static const std::map<std::string, omu_PrimArray> cuts = {
        {"HEX8", Cells({0, 1, 2, 3, 4, 5, 6, 7}, 8)},
        {"PYRAMID5", Cells({0, 1, 2, 3, 8, 4, 7, 6, 5, 8, 0, 4, 5, 1, 8,
                            1, 5, 6, 2, 8, 2, 6, 7, 3, 8, 3, 7, 4, 0, 8},
                           5)},
        {"WEDGE6", Cells({0, 1, 2, 4, 5, 6, 0, 3, 2, 4, 7, 6}, 6)},  // the second the other way
        {"TET4",
         Cells({0, 1, 2, 6, 0, 2, 3, 6, 0, 3, 7, 6, 0, 7, 4, 6, 0, 4, 5, 6, 0, 5, 1, 6}, 4)}};
    return cuts;
}

/// Turns by about 68 degrees about (1, 2, 3), stretches by \p factor, and moves far away.
std::vector<double> Moved(const std::vector<double>& points, double factor) {
    const double n = std::sqrt(14.0);
    const double axis[] = {1 / n, 2 / n, 3 / n};
    const double c = std::cos(1.2);
    const double s = std::sin(1.2);
    std::vector<double> moved(points.size());
    for (std::size_t i = 0; i < points.size(); i += 3) {
        const double* p = &points[i];
        const double along = axis[0] * p[0] + axis[1] * p[1] + axis[2] * p[2];
        for (std::size_t k = 0; k < 3; ++k) {
            const std::size_t l = (k + 1) % 3;
            const std::size_t m = (k + 2) % 3;
            const double cross = axis[l] * p[m] - axis[m] * p[l];
            moved[i + k] = factor * (c * p[k] + s * cross + (1 - c) * along * axis[k]) + 1000;
        }
    }
    return moved;
}

TEST_F(host_MeshCommands, MeasureACubeWhateverItsCells) {
    for (const auto& [type, cells] : Cuts()) {
        SCOPED_TRACE(type);
        Run("part", "cube", Points(kCube), cells);
        EXPECT_EQ(Text("boundingBox", "cube"), "((0.0, 0.0, 0.0), (1.0, 1.0, 1.0))");
        EXPECT_NEAR(Number("surfaceArea", "cube"), 6, 1e-14);
        EXPECT_NEAR(Number("volume", "cube"), 1, 1e-14);
        // Moments of a cube of mass 3: m a^2 / 6 about its centre.
        const Value mass = Run("massProperties", "cube", 3.0);
        const auto& found = dynamic_cast<const Dictionary&>(*mass);
        const auto* inertia = dynamic_cast<const omu_PrimArray*>(found.Find("inertia"));
        for (int i = 0; i < 9; ++i) {
            EXPECT_NEAR(inertia->Doubles()[static_cast<std::size_t>(i)], i % 4 == 0 ? 0.5 : 0,
                        1e-14);
        }
        EXPECT_EQ(found.Find("centre")->AsRepr(), "(0.5, 0.5, 0.5)");
        // A turned copy of twice the size, far from the origin.
        Run("part", "moved", Points(Moved(kCube, 2)), cells);
        EXPECT_NEAR(Number("surfaceArea", "moved"), 24, 1e-9);
        EXPECT_NEAR(Number("volume", "moved"), 8, 1e-10);
        for (const char* measure : {"SCALED_JACOBIAN", "MEAN_RATIO", "EDGE_RATIO"}) {
            const omu_PrimEnumBase constant{cow_String(measure)};
            double least[2] = {};
            int i = 0;
            for (const char* name : {"cube", "moved"}) {
                const Value quality = Run("elementQuality", name, constant);
                dynamic_cast<const Dictionary&>(*quality).Get("least", least[i++]);
            }
            EXPECT_NEAR(least[0], least[1], 1e-10);
        }
    }
    // Far from the centre: the parallel axes' theorem, m (1/6 + 2 (1/2)^2).
    omu_Arguments about;
    about.Put(cow_1DArray<int>{0, 0, 0}, "about");
    const Value corner = Run("massProperties", about, "cube");
    const auto& found = dynamic_cast<const Dictionary&>(*corner);
    const auto inertia = dynamic_cast<const omu_PrimArray*>(found.Find("inertia"))->Doubles();
    EXPECT_NEAR(inertia[0], 2.0 / 3, 1e-14);
    EXPECT_NEAR(inertia[1], -0.25, 1e-14);
}

TEST_F(host_MeshCommands, WarpedNeighboursLeaveNoGap) {
    // Two hexahedra share a warped face: together they are a box.
    Run("part", "box", Points({0,  0, 0, 0,  1, 0, 0, 1, 1, 0, 0, 1, .4, 0, 0, .7, 1, 0,
                               .5, 1, 1, .8, 0, 1, 2, 0, 0, 2, 1, 0, 2,  1, 1, 2,  0, 1}),
        Cells({0, 4, 5, 1, 3, 7, 6, 2, 4, 8, 9, 5, 7, 11, 10, 6}, 8));
    EXPECT_NEAR(Number("volume", "box"), 2, 1e-14);
    EXPECT_NEAR(Number("surfaceArea", "box"), 10, 1e-14);
    // By the trilinear map the first one's volume is the mean of the four edges' lengths.
    omu_Arguments first;
    first.Put(cow_1DArray<int>{0}, "cells");
    EXPECT_EQ(Number("group", first, "box", "first"), 1);
    EXPECT_NEAR(Number("volume", "box", "first"), 0.6, 1e-14);
}

TEST_F(host_MeshCommands, ASphereConvergesWithSecondOrder) {
    // A ball of tetrahedra from its centre to an octahedron's faces, halved again and again.
    double errors[2] = {};
    for (const int level : {3, 4}) {
        std::vector<double> points = {0, 0, 0};
        std::map<std::array<double, 3>, int> known;
        std::vector<int> nodes;
        const int n = 1 << level;
        const auto node = [&](double x, double y, double z) {
            const auto [entry, isNew] = known.try_emplace({x, y, z}, int(points.size() / 3));
            if (isNew) {
                const double r = std::sqrt(x * x + y * y + z * z);
                points.insert(points.end(), {x / r, y / r, z / r});
            }
            return entry->second;
        };
        for (int octant = 0; octant < 8; ++octant) {
            const int sx = octant & 1 ? -1 : 1;
            const int sy = octant & 2 ? -1 : 1;
            const int sz = octant & 4 ? -1 : 1;
            const auto at = [&](int i, int j) { return node(sx * i, sy * j, sz * (n - i - j)); };
            const auto tet = [&](int a, int b, int c) {
                nodes.insert(nodes.end(),
                             {0, a, sx * sy * sz > 0 ? b : c, sx * sy * sz > 0 ? c : b});
            };
            for (int i = 0; i < n; ++i) {
                for (int j = 0; i + j < n; ++j) {
                    tet(at(i, j), at(i + 1, j), at(i, j + 1));
                    if (i + j + 1 < n) {
                        tet(at(i + 1, j), at(i + 1, j + 1), at(i, j + 1));
                    }
                }
            }
        }
        Run("part", "ball", Points(points), Cells(nodes, 4));
        const double volume = 4 * std::numbers::pi / 3;
        errors[level - 3] = volume - Number("volume", "ball");
        EXPECT_NEAR(Number("surfaceArea", "ball"), 3 * volume, 3 * volume * 2.0 / (n * n));
    }
    EXPECT_GT(errors[1], 0);
    EXPECT_NEAR(errors[0] / errors[1], 4, 0.1);
}

TEST_F(host_MeshCommands, QualityHasHandValues) {
    const double h = std::sqrt(3.0) / 2;
    const std::vector<double> ideal = {0, 0, 0, 1, 0, 0, .5, h, 0, .5, h / 3, std::sqrt(2.0 / 3)};
    // A corner cut from a cube, a cell whose base runs the wrong way, a box of 1 x 1 x 2.
    const std::vector<double> cut = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
    const std::vector<double> box = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0,
                                     0, 0, 2, 1, 0, 2, 1, 1, 2, 0, 1, 2};
    const std::vector<double> wedge = {0, 0, 0, 1, 0, 0, .5, h, 0, 0, 0, 1, 1, 0, 1, .5, h, 1};
    const std::vector<double> pyramid = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, .5, .5, std::sqrt(.5)};
    const std::vector<double> arrow = {-2, -2, 0, 0, 0, 0, 2, -2, 0, 0, 2, 0};
    const double root2 = std::sqrt(2.0);
    const struct {
        const char* what;
        const std::vector<double>& points;
        std::vector<int> nodes;
        double scaledJacobian, meanRatio, edgeRatio;
        const char* type = nullptr;  // where the number of nodes does not decide
    } rows[] = {
        {"ideal tetrahedron", ideal, {0, 1, 2, 3}, 1, 1, 1},
        // Mean ratio 12 (3 V)^(2/3) / sum of squared edges, V = 1/6.
        {"cut corner", cut, {0, 1, 2, 3}, root2 / 2, 12 * std::cbrt(0.25) / 9, root2},
        {"inverted", ideal, {0, 2, 1, 3}, -1, 0, 1},
        {"box", box, {0, 1, 2, 3, 4, 5, 6, 7}, 1, 3 * std::cbrt(4.0) / 6, 2},
        {"ideal wedge", wedge, {0, 1, 2, 3, 4, 5}, 1, 1, 1},
        {"ideal pyramid", pyramid, {0, 1, 2, 3, 4}, 1, 1, 1},
        {"collapsed", box, {0, 0, 2, 3, 4, 4, 6, 7}, 0, 0, HUGE_VAL},
        {"ideal triangle", ideal, {0, 1, 2}, 1, 1, 1},
        {"turned over", ideal, {1, 0, 2}, 1, 1, 1},
        // Mean ratio 4 sqrt(3) A / sum of squared edges; the least corner has 45 degrees.
        {"half a square", cut, {0, 1, 2}, std::sqrt(2.0 / 3), h, root2},
        {"point and line", box, {0, 4, 0}, 0, 0, HUGE_VAL},
        {"square", box, {0, 1, 2, 3}, 1, 1, 1, "QUAD4"},
        {"rectangle", box, {0, 1, 5, 4}, 1, 0.8, 2, "QUAD4"},
        // The reentrant corner has a right angle, seen from outside.
        {"arrow", arrow, {0, 1, 2, 3}, -1, 0, std::sqrt(2.5), "QUAD4"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const int size = int(row.nodes.size());
        if (row.type != nullptr) {
            Run("part", "cell", Points(row.points), Typed(row.type, row.nodes, size));
        } else {
            Run("part", "cell", Points(row.points), Cells(row.nodes, size));
        }
        const double expected[] = {row.scaledJacobian, row.meanRatio, row.edgeRatio};
        int i = 0;
        for (const char* measure : {"SCALED_JACOBIAN", "MEAN_RATIO", "EDGE_RATIO"}) {
            SCOPED_TRACE(measure);
            const Value value =
                Run("elementQuality", "cell", omu_PrimEnumBase{cow_String(measure)});
            double least = -9;
            dynamic_cast<const Dictionary&>(*value).Get("least", least);
            if (std::isinf(expected[i])) {
                EXPECT_EQ(least, expected[i]);
            } else {
                EXPECT_NEAR(least, expected[i], 1e-14);
            }
            ++i;
        }
    }
}

TEST_F(host_MeshCommands, SurfaceCellsAreFacesOfTheirOwn) {
    const std::vector<double> row = {0, 0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 1, 0, 0, 1, 1, 0,
                                     1, 1, 1, 1, 0, 1, 2, 0, 0, 2, 1, 0, 2, 1, 1, 2, 0, 1};
    const std::vector<int> hexes = {0, 1, 2, 3, 4, 5, 6, 7, 4, 5, 6, 7, 8, 9, 10, 11};
    const struct {
        const char* what;
        const char* type;
        std::vector<int> nodes;
        double area;
    } rows[] = {
        {"on an outer face, turned round", "QUAD4", {3, 2, 1, 0}, 10},
        {"the same twice", "QUAD4", {3, 2, 1, 0, 0, 1, 2, 3}, 10},
        {"between two solids", "QUAD4", {4, 5, 6, 7}, 11},
        {"through a solid", "TRI3", {0, 2, 5}, 10 + std::sqrt(3.0) / 2},
    };
    for (const auto& [what, type, nodes, area] : rows) {
        for (const bool isFirst : {true, false}) {
            SCOPED_TRACE(std::string(what) + (isFirst ? " first" : " last"));
            omu_PrimTuple cells = Typed("HEX8", hexes, 8);
            omu_PrimTuple skin = Typed(type, nodes, type[0] == 'T' ? 3 : 4);
            const std::unique_ptr<omu_PrimSequence> both(isFirst ? skin.Concat(&cells)
                                                                 : cells.Concat(&skin));
            Run("part", "row", Points(row), dynamic_cast<const omu_PrimTuple&>(*both));
            EXPECT_NEAR(Number("surfaceArea", "row"), area, 1e-14);
            EXPECT_NEAR(Number("volume", "row"), 2, 1e-14);
        }
    }
    Run("part", "shell", Points(kCube), Typed("QUAD4", {0, 3, 2, 1, 4, 5, 6, 7}, 4));
    const std::string refused = "all these cells are surface cells, which have no volume";
    for (const char* command : {"volume", "massProperties"}) {
        EXPECT_EQ(test_Message<omu_ValueErrorException>([&] { Run(command, "shell"); }), refused);
    }
    testing::internal::CaptureStdout();
    Run("report", "shell");
    const std::string report = testing::internal::GetCapturedStdout();
    EXPECT_NE(report.find("2 (2 QUAD4)"), std::string::npos);
    EXPECT_NE(report.find("surface area      2\n  volume            none"), std::string::npos);
    EXPECT_EQ(report.find("inertia"), std::string::npos);
    // A part without cells has no surface, and its volume is 0.
    Run("part", "dust", Points({1, 2, 3}), omu_PrimTuple('('));
    EXPECT_EQ(Number("surfaceArea", "dust"), 0);
    EXPECT_EQ(Number("volume", "dust"), 0);
}

TEST_F(host_MeshCommands, FieldsFitTheirPart) {
    Run("part", "wedges", Points(kCube), Cuts().at("WEDGE6"));  // 9 points, 2 cells
    const auto refused = [&](const omu_Primitive& values, const char* position) {
        omu_Arguments args;
        args.Put(values.Copy(), "values");
        args.Put(omu_PrimEnumBase(cow_String(position)), "position");
        return test_Message<omu_ValueErrorException>([&] { Run("field", args, "wedges", "f"); });
    };
    const std::string good = "nothing was raised";
    std::vector<double> nine(9, NAN);
    nine[0] = HUGE_VAL;
    omu_PrimTuple numbers(2, '(');
    numbers.Put(1);
    numbers.Put(2.5);
    EXPECT_EQ(refused(omu_PrimArray(nine), "NODES"), good);
    EXPECT_EQ(refused(omu_PrimArray(nine, {9, 1}), "NODES"), good);
    EXPECT_EQ(refused(omu_PrimArray(std::vector<int>(27), {9, 3}), "NODES"), good);
    EXPECT_EQ(refused(omu_PrimArray(std::vector<float>(2)), "CELLS"), good);
    EXPECT_EQ(refused(numbers, "CELLS"), good);
    EXPECT_EQ(refused(omu_PrimArray(nine), "CELLS"),
              "values is an array of shape [9]; for the 2 cells of this part [2] or [2, 3] was "
              "expected");
    EXPECT_EQ(refused(omu_PrimArray(std::vector<double>(18), {9, 2}), "NODES"),
              "values is an array of shape [9, 2]; for the 9 points of this part [9] or [9, 3] was "
              "expected");
    EXPECT_NE(refused(omu_PrimTuple('('), "NODES"), good);
    omu_PrimTuple mixed(2, '(');
    mixed.Put(1);
    mixed.Put("x");
    omu_Arguments args;
    args.Put(mixed, "values");
    EXPECT_EQ(test_Message<nex_CommandException>([&] { Run("field", args, "wedges", "f"); }),
              "values[1]; found string, expecting float");
    // The field is still the one that was accepted last.
    testing::internal::CaptureStdout();
    Run("report", "wedges");
    EXPECT_NE(testing::internal::GetCapturedStdout().find(
                  "    f                 CELLS numbers, 1 to 2.5\n"),
              std::string::npos);
}

/// Three cubes in a row along x, the last one cut into wedges, as nested sequences.
class host_Row : public host_MeshCommands {
protected:
    host_Row() {
        std::vector<double> points;
        for (int x = 0; x < 4; ++x) {
            for (const int corner : {0, 1, 2, 3}) {
                points.insert(points.end(),
                              {double(x), double(corner == 1 || corner == 2), double(corner >= 2)});
            }
        }
        omu_PrimTuple cells(3, '(');
        omu_PrimList hexes(2, '(');
        hexes.Put(omu_PrimEnumBase(cow_String("HEX8")));
        hexes.Put(Cells({0, 1, 2, 3, 4, 5, 6, 7, 4, 5, 6, 7, 8, 9, 10, 11}, 8));
        cells.Put(hexes);
        cells.Put(cow_1DArray<int>{8, 9, 12, 11, 10, 15});
        cells.Put(cow_1DArray<int>{9, 13, 12, 10, 14, 15});
        Run("part", "row", Points(points), cells);
    }
};

TEST_F(host_Row, MixedCellsGroupsAndReport) {
    EXPECT_NEAR(Number("volume", "row"), 3, 1e-14);
    EXPECT_NEAR(Number("surfaceArea", "row"), 14, 1e-14);
    cow_2DArray<double> box(2, 3);
    for (int k = 0; k < 3; ++k) {
        box.Get(0, k) = k == 0 ? 1 : 0;
        box.Get(1, k) = k == 0 ? 2 : 1;
    }
    omu_Arguments more;
    more.Put(omu_PrimTuple(box, '('), "box");
    more.Put(cow_1DArray<int>{3, 0, 3}, "cells");
    EXPECT_EQ(Number("group", more, "row", "some"), 3);
    EXPECT_NEAR(Number("volume", "row", "some"), 2.5, 1e-14);

    omu_Arguments options;
    Dictionary units;
    units.Put("length", "mm");
    units.Put("mass", "kg");
    options.Put(units, "units");
    options.Put(2, "worst");
    options.Put(2, "bins");
    testing::internal::CaptureStdout();
    EXPECT_EQ(Text("report", options, "row", 0.5), "None");
    Run("say", "done");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Part 'row'\n"
              "  points            16\n"
              "  cells             4 (2 WEDGE6, 2 HEX8)\n"
              "  outer faces       16\n"
              "  bounding box      (0, 0, 0) to (3, 1, 1) mm\n"
              "  surface area      14 mm^2\n"
              "  volume            3 mm^3\n"
              "  mass              1.5 kg\n"
              "  centre of mass    (1.5, 0.5, 0.5) mm\n"
              "  inertia about it  Ixx, Iyy, Izz = 0.25, 1.25, 1.25 kg mm^2\n"
              "                    Ixy, Iyz, Ixz = 0, 0, 0 kg mm^2\n"
              "\n"
              "  Quality of cells by SCALED_JACOBIAN, 1 is ideal\n"
              "  least             0.816497\n"
              "  mean              0.908248\n"
              "  greatest          1\n"
              "           0 to 0.5            0\n"
              "         0.5 to 1              4 ########################################\n"
              "  The worst cells, numbered from 0\n"
              "    cell       2  0.816497   about (2.33333, 0.333333, 0.5)\n"
              "    cell       3  0.816497   about (2.66667, 0.666667, 0.5)\n"
              "\n"
              "  Groups of cells\n"
              "    some                  3 cells, volume 2.5 mm^3\n"
              "done\n");
}

TEST_F(host_Row, ErrorsSayWhatIsWrong) {
    const auto raised = [this]<class Error>(const Error*, const char* command, auto... values) {
        return test_Message<Error>([&] { Run(command, values...); });
    };
    constexpr const omu_KeyErrorException* key = nullptr;
    constexpr const omu_AccessErrorException* access = nullptr;
    constexpr const omu_RangeErrorException* range = nullptr;
    constexpr const omu_ValueErrorException* value = nullptr;
    constexpr const omu_ArgTypeErrorException* type = nullptr;
    constexpr const omu_TvxNameErrorException* name = nullptr;

    EXPECT_EQ(raised(key, "volume", "column"), "no part 'column'");
    EXPECT_EQ(raised(key, "volume", "row", "none"), "no group 'none'");
    EXPECT_EQ(raised(range, "report", "row", -1.0), "density must be a Float > 0");
    EXPECT_EQ(raised(name, "part", "1.5", Points(kCube), Cuts().at("HEX8")),
              raised(name, "group", "row", "a.b"));
    EXPECT_EQ(raised(range, "part", "p", Points(kCube), Cells({0, 1, 2, 9}, 4)),
              "cells[0][3] must be an Integer in the range: 0 <= cells[0][3] < 9");
    EXPECT_EQ(raised(value, "part", "p", Cells({1, 2, 3, 4}, 2), Cuts().at("HEX8")),
              "points is an array of shape [2, 2]; [n, 3] was expected");
    EXPECT_EQ(raised(value, "part", "p", Points({0, 0, 0, 0, NAN, 0}), Cells({}, 4)),
              "points[1] is not finite");
    EXPECT_EQ(raised(value, "part", "p", Points(kCube), Cells({0, 1}, 2)),
              "no cell has 2 nodes; 3, 4, 5, 6 and 8 are known");
    omu_PrimTuple cell(4, '(');
    cell.Put(0);
    cell.Put(1);
    cell.Put(2.5);
    cell.Put(3);
    omu_PrimTuple cells(1, '(');
    cells.Put(cell);
    EXPECT_EQ(raised(type, "part", "p", Points(kCube), cells),
              "arg3(cells)[0][2]; found float, expecting int");

    // A failed command has changed nothing.
    EXPECT_EQ(raised(key, "volume", "p"), "no part 'p'");
    Run("deletePart", "row");
    EXPECT_EQ(raised(access, "volume", "row"), "row no longer exists");
}

TEST_F(host_MeshCommands, RepairedNamesAreLegal) {
    const std::pair<const char*, const char*> rows[] = {
        {"Bracket", "Bracket"},
        {"4\" flange v1.2", "N4 flange v1-2"},
        {"__a\\b_ ", "a-b"},
    };
    for (const auto& [text, legal] : rows) {
        const Value result = Run("legalName", text);
        const cow_String name = dynamic_cast<const omu_PrimString&>(*result).Text();
        EXPECT_EQ(name, legal);
        EXPECT_EQ(omu_TarvexName(name, SHORT_GENERAL_NAME).AsString(), legal);
    }
    EXPECT_EQ(test_Message<omu_ValueErrorException>([&] { Run("legalName", " _ "); }),
              "no legal name can be made of this text");
}

TEST_F(host_MeshCommands, EveryParameterIsDocumentedAndOptionalOnesComeLast) {
    host_RegisterViewCommands(_table);
    for (const host_Command& command : _table.All()) {
        SCOPED_TRACE(command.name);
        EXPECT_FALSE(command.help.empty());
        bool isOptional = false;
        std::set<std::string> names;
        for (const host_Parameter& parameter : command.parameters) {
            EXPECT_TRUE(names.insert(parameter.name).second);
            EXPECT_FALSE(parameter.help.empty() || parameter.type.empty());
            EXPECT_FALSE(isOptional && parameter.IsRequired());
            isOptional = !parameter.IsRequired();
            EXPECT_TRUE(parameter.type != "constant" || !parameter.constants.empty());
        }
        // The declaration and the getters agree on what is required: without it the call fails.
        const auto required = std::count_if(command.parameters.begin(), command.parameters.end(),
                                            [](const auto& p) { return p.IsRequired(); });
        if (required > 0) {
            EXPECT_EQ(test_Message<omu_ArgNumberErrorException>([&] { Run(command.name.c_str()); }),
                      "not all required arguments specified; expected " + std::to_string(required) +
                          ", got 0");
        }
    }
}

}  // namespace
