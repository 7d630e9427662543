#include "host_MaterialCommands.h"

#include "host_Material.h"
#include "host_MeshCommands.h"
#include "host_Model.h"
#include "host_ModelCommands.h"
#include "host_Part.h"
#include "host_RunStep.h"
#include "host_initialize.h"
#include "omu_PrimWrapper.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Value = std::unique_ptr<omu_Primitive>;

template <class... Values>
omu_PrimTuple T(const Values&... values) {
    omu_PrimTuple tuple(sizeof...(values), '(');
    (tuple.Put(values), ...);
    return tuple;
}

Value Copied(const omu_Primitive& value) { return Value(value.Copy()); }

class host_MaterialCommands : public testing::Test {
protected:
    host_MaterialCommands() {
        host_initialize(_modules);
        host_RegisterMeshCommands(_table);
        host_RegisterMaterialCommands(_table);
        host_RegisterModelCommands(_table);
        Run("newModel");
        Run("clearHistory");
    }
    ~host_MaterialCommands() override {
        Run("newModel");
        Run("clearHistory");
        host_finalize(_modules);
    }

    template <class... Values>
    Value Run(const char* command, const Values&... values) {
        omu_Arguments args;
        (args.Put(values), ...);
        return host_RunStep(*_table.Find(command), args);
    }
    template <class... Values>
    std::string Text(const char* command, const Values&... values) {
        return Run(command, values...)->AsRepr().Std();
    }
    template <class... Values>
    std::string Refusal(const char* command, const Values&... values) {
        return test_Message<nex_CommandException>([&] { Run(command, values...); });
    }
    template <class... Values>
    std::string Printed(const char* command, const Values&... values) {
        testing::internal::CaptureStdout();
        Run(command, values...);
        return testing::internal::GetCapturedStdout();
    }
    double Mass(const char* part) {
        const Value found = Run("massProperties", part);
        double mass = 0;
        dynamic_cast<const omu_PrimDictionary<cow_String>&>(*found).Get("mass", mass);
        return mass;
    }

    static host_Material& Find(const char* name) {
        return host_Model::Instance().Find<host_Material>(name);
    }
    /// Sets an attribute as a script does.
    static void Set(const char* material, const char* attribute, const omu_Primitive& value) {
        host_Transaction step{cow_String(attribute)};
        Find(material).SetAttribute(attribute, value);
        step.Commit();
    }
    template <class Member>
    static std::string Get(const Member& member, const char* attribute) {
        return Value(member.GetAttribute(attribute))->AsRepr().Std();
    }

    /// A part of cubes in a row along x, of which the group "first" has the first.
    void MakeRow(const char* name, int cubes) {
        std::vector<double> points;
        std::vector<int> cells;
        for (int x = 0; x <= cubes; ++x) {
            for (const int corner : {0, 1, 2, 3}) {
                points.insert(points.end(),
                              {double(x), double(corner == 1 || corner == 2), double(corner >= 2)});
                for (int i = 4 * x + corner; x < cubes && corner == 0 && i < 4 * x + 8; ++i) {
                    cells.push_back(i);
                }
            }
        }
        Run("part", name, omu_PrimArray(points, {4 * cubes + 4, 3}),
            omu_PrimArray(cells, {cubes, 8}));
        Run("group", name, "first", T(0));
    }

    int _modules = 0;
    host_CommandTable _table;
};

TEST_F(host_MaterialCommands, EveryFormOfRowsIsTaken) {
    Run("material", "steel", "structural", 7.85);
    EXPECT_EQ(Get(Find("steel"), "density"), "((7.85,),)");
    EXPECT_EQ(Get(Find("steel"), "elastic"), "()");
    EXPECT_EQ(Get(Find("steel"), "description"), "'structural'");
    const struct {
        const char* attribute;
        Value given;
        const char* rows;
    } cases[] = {
        {"density", Copied(omu_PrimNumber(8)), "((8.0,),)"},
        {"density", Copied(T(8)), "((8.0,),)"},
        {"density", Copied(T(7.8, 20)), "((7.8, 20.0),)"},
        {"density", Copied(T(T(7.8))), "((7.8,),)"},
        {"elastic", Copied(T(210000, 0.3)), "((210000.0, 0.3),)"},
        {"elastic", Copied(omu_PrimArray(std::vector{5.0, .25})), "((5.0, 0.25),)"},
        {"elastic", Copied(omu_PrimArray(std::vector{3.0, .3, 90.0, 4.0, .2, 0.0}, {2, 3})),
         "((4.0, 0.2, 0.0), (3.0, 0.3, 90.0))"},
        {"elastic", Copied(T(T(1, .1, 300), T(2, .2, -50), T(3, .3, 20))),
         "((2.0, 0.2, -50.0), (3.0, 0.3, 20.0), (1.0, 0.1, 300.0))"},
        {"expansion", Copied(omu_PrimNumber(-1e-6)), "((-1e-06,),)"},
        {"plastic", Copied(T(T(250, 0), T(300, .1))), "((250.0, 0.0), (300.0, 0.1))"},
        // Points keep their order within the curve of a temperature.
        {"plastic", Copied(T(T(90, 0, 50), T(250, 0, 20), T(95, .2, 50), T(260, .1, 20))),
         "((250.0, 0.0, 20.0), (260.0, 0.1, 20.0), (90.0, 0.0, 50.0), (95.0, 0.2, 50.0))"},
        {"plastic", Copied(T()), "()"},
        {"density", Copied(omu_PrimNone()), "()"},
    };
    for (const auto& [attribute, given, rows] : cases) {
        SCOPED_TRACE(given->AsRepr().Std());
        Set("steel", attribute, *given);
        EXPECT_EQ(Get(Find("steel"), attribute), rows);
    }
}

TEST_F(host_MaterialCommands, ErrorsSayWhatIsWrong) {
    Run("material", "steel");
    for (const host_MaterialProperty& property : host_kMaterialProperties) {
        const bool isPair = property.Columns().size() == 2;
        Set("steel", property.name, isPair ? T(1, 0) : T(1));
    }
    const struct {
        const char* attribute;
        Value given;
        const char* message;
    } cases[] = {
        {"elastic", Copied(omu_PrimNumber(7)),
         "elastic; found int, expecting a sequence of rows (Young's modulus, Poisson's ratio[, "
         "temperature])"},
        {"density", Copied(omu_PrimString("heavy")),
         "density; found string, expecting a sequence of rows (density[, temperature])"},
        {"elastic", Copied(T(1, "x")), "elastic[1]; found string, expecting float"},
        {"elastic", Copied(T(T(1, 0), T(1, "x"))), "elastic[1][1]; found string, expecting float"},
        {"elastic", Copied(T(T(1, 0), 7)), "elastic[1]; found int, expecting tuple"},
        {"elastic", Copied(T(1)),
         "elastic[0] has 1 values; a row is (Young's modulus, Poisson's ratio[, temperature])"},
        {"elastic", Copied(T(T(1, 0, 20), T(1, 0))),
         "elastic[1] has 2 values and elastic[0] has 3"},
        {"elastic", Copied(T(T(1, 0), T(2, 0))),
         "elastic has several rows, but no temperatures; a row is (Young's modulus, Poisson's "
         "ratio[, temperature])"},
        {"elastic", Copied(T(T(1, 0, 20), T(2, 0, 10), T(3, 0, 20))),
         "elastic has several rows at temperature 20"},
        {"elastic", Copied(T(T(1, 0.5))),
         "Poisson's ratio of elastic[0] must be a Float in the range: -1 < Poisson's ratio of "
         "elastic[0] < 0.5"},
        // The row is named as it was given, before rows are sorted.
        {"density", Copied(T(T(1, 90), T(0, 20))), "density[1] must be a Float > 0"},
        {"density", Copied(omu_PrimNumber(NAN)), "density[0] is not finite"},
        {"expansion", Copied(T(1, HUGE_VAL)), "temperature of expansion[0] is not finite"},
        {"plastic", Copied(T(T(1, 0.1))), "plastic strain of plastic begins with 0.1, not with 0"},
        {"plastic", Copied(T(T(1, 0, 5), T(2, .1, 5), T(2, .1, 5))),
         "plastic strain of plastic at temperature 5 does not ascend: 0.1 comes after 0.1"},
    };
    for (const auto& [attribute, given, message] : cases) {
        SCOPED_TRACE(given->AsRepr().Std());
        const std::string before = Get(Find("steel"), attribute);
        EXPECT_EQ(test_Message<nex_CommandException>([&] { Set("steel", attribute, *given); }),
                  message);
        EXPECT_EQ(Get(Find("steel"), attribute), before);
    }
    EXPECT_EQ(Refusal("material", "steel"), "Material 'steel' exists already");
    EXPECT_EQ(Refusal("material", "tin", "", -1), "density[0] must be a Float > 0");
    EXPECT_EQ(Refusal("copyMaterial", "tin", "lead"), "no material 'tin'");
    EXPECT_EQ(Refusal("materialValue", "steel", "mass", 0.0),
              "materials have no property 'mass'; there are density, elastic, expansion, "
              "conductivity, specificHeat, plastic");
    EXPECT_EQ(Refusal("materialValue", "steel", "density", NAN), "temperature is not a number");
    Set("steel", "plastic", T());
    EXPECT_EQ(Refusal("materialValue", "steel", "plastic", 0.0), "Material 'steel' has no plastic");
}

TEST_F(host_MaterialCommands, ValuesAreInterpolatedByTemperature) {
    Run("material", "steel", "", 8, T(T(100, .2, 0), T(200, .4, 10), T(100, .3, 50)));
    const struct {
        double temperature;
        const char* row;
    } cases[] = {
        {-HUGE_VAL, "(100.0, 0.2)"}, {0, "(100.0, 0.2)"},   {2.5, "(125.0, 0.25)"},
        {10, "(200.0, 0.4)"},        {30, "(150.0, 0.35)"}, {50, "(100.0, 0.3)"},
        {1e300, "(100.0, 0.3)"},
    };
    for (const auto& [temperature, row] : cases) {
        EXPECT_EQ(Text("materialValue", "steel", "elastic", temperature), row);
    }
    EXPECT_EQ(Text("materialValue", "steel", "density", 99), "(8.0,)");
    // The difference of these temperatures is no number any more.
    Set("steel", "density", T(T(2, -1.5e308), T(4, 1.5e308)));
    EXPECT_EQ(Text("materialValue", "steel", "density", 0), "(3.0,)");

    // Halfway between two curves with points at different strains, of which one ends before.
    Set("steel", "plastic", T(T(200, 0, 0), T(300, .5, 0), T(100, 0, 100), T(140, .25, 100)));
    EXPECT_EQ(Text("materialValue", "steel", "plastic", 50),
              "((150.0, 0.0), (195.0, 0.25), (220.0, 0.5))");
    EXPECT_EQ(Text("materialValue", "steel", "plastic", 0), "((200.0, 0.0), (300.0, 0.5))");
    EXPECT_EQ(Text("materialValue", "steel", "plastic", 200), "((100.0, 0.0), (140.0, 0.25))");
}

TEST_F(host_MaterialCommands, MassFollowsTheMaterialsOfTheCells) {
    MakeRow("row", 4);
    EXPECT_EQ(Mass("row"), 4);  // nothing is assigned
    Run("material", "steel", "", T(T(7, 500), T(8, 20)));
    Run("material", "foam", "", 0.5);
    Run("material", "void");
    EXPECT_EQ(Printed("materialTable", "void"), "Material 'void'\n  no properties\n");
    Run("assignMaterial", "row", "void");
    EXPECT_EQ(Mass("row"), 4);  // nothing of it has a density
    Run("assignMaterial", "row", "steel", "first");
    const char* const partly = "3 solid cells have no material with a density, others have one";
    EXPECT_EQ(Refusal("massProperties", "row"), partly);
    const std::string report = Printed("report", "row");
    EXPECT_NE(
        report.find("  volume            4\n"
                    "  mass              none, 3 solid cells have no material with a density\n"
                    "\n"),
        std::string::npos)
        << report;
    EXPECT_NE(report.find("  Materials, of which the last counts\n"
                          "    (whole part)      void\n"
                          "    first             steel\n"),
              std::string::npos);

    // Assigned anew, the whole part comes last and covers the group; then the group does again.
    Run("assignMaterial", "row", "foam");
    EXPECT_EQ(Mass("row"), 2);
    Run("assignMaterial", "row", &Find("steel"), "first");
    EXPECT_EQ(Mass("row"), 9.5);
    const Value assigned(host_Model::Instance().Find<host_Part>("row").GetAttribute("materials"));
    const auto* last =
        dynamic_cast<const omu_PrimTuple*>(dynamic_cast<const omu_PrimTuple&>(*assigned).Index(1));
    EXPECT_EQ(dynamic_cast<const omu_PrimString&>(*last->Index(0)).Text(), "first");
    EXPECT_EQ(dynamic_cast<const omu_PrimWrapper&>(*last->Index(1)).Object(), &Find("steel"));
    const Value found = Run("massProperties", "row");
    const auto& dictionary = dynamic_cast<const omu_PrimDictionary<cow_String>&>(*found);
    const double centre = (8 * 0.5 + 1.5 * 2.5) / 9.5;
    cow_1DArrayList<double> at;
    dictionary.Get("centre", at);
    EXPECT_NEAR(at[0], centre, 1e-14);
    EXPECT_NEAR(at[1], 0.5, 1e-14);
    // Steiner's theorem for a cube and a bar of three, about the z axis through the centre.
    const double inertia = 8.0 / 6 + 8 * std::pow(centre - 0.5, 2) + 1.5 * (9 + 1) / 12 +
                           1.5 * std::pow(2.5 - centre, 2);
    EXPECT_NEAR(dynamic_cast<const omu_PrimArray*>(dictionary.Find("inertia"))->Doubles()[8],
                inertia, 1e-13);
    const Value given = Run("massProperties", "row", 2);
    double mass = 0;
    dynamic_cast<const omu_PrimDictionary<cow_String>&>(*given).Get("mass", mass);
    EXPECT_EQ(mass, 8);

    Run("assignMaterial", "row", omu_PrimNone(), "first");
    EXPECT_EQ(Mass("row"), 2);
    Run("assignMaterial", "row", "");
    EXPECT_EQ(Mass("row"), 4);
    EXPECT_EQ(Refusal("assignMaterial", "row", "foam", "second"), "no group 'second'");
    EXPECT_EQ(Refusal("assignMaterial", "row", "air"), "no material 'air'");
}

TEST_F(host_MaterialCommands, NamesAreKeptRightAndChangesUndone) {
    MakeRow("row", 1);
    MakeRow("bar", 1);
    Run("material", "steel", "", 8);
    Run("assignMaterial", "row", "steel");
    Run("assignMaterial", "bar", "steel", "first");
    EXPECT_EQ(Refusal("deleteMaterial", "steel"),
              "Material 'steel' is assigned to the parts 'row', 'bar'");
    const omu_InterfaceHandle handle(&Find("steel"));
    Set("steel", "name", omu_PrimString("iron"));
    EXPECT_EQ(Mass("row"), 8);
    Run("copyMaterial", "iron", "light");
    Set("light", "density", omu_PrimNumber(2));
    EXPECT_EQ(Get(Find("iron"), "density"), "((8.0,),)");
    Run("undo", 2);
    EXPECT_EQ(Refusal("deleteMaterial", "light"), "no material 'light'");
    Set("iron", "density", omu_PrimNumber(3));
    EXPECT_EQ(Mass("row"), 3);
    Run("undo");
    EXPECT_EQ(Mass("row"), 8);
    Run("undo");
    EXPECT_EQ(Refusal("materialTable", "iron"), "no material 'iron'");
    EXPECT_EQ(Mass("row"), 8);
    Run("assignMaterial", "row", "");
    Run("assignMaterial", "bar", "", "first");
    Run("deleteMaterial", "steel");
    EXPECT_EQ(handle.Get(), nullptr);
    EXPECT_EQ(Refusal("materialTable", "steel"), "steel no longer exists");
    Run("undo", 3);
    EXPECT_EQ(handle.Get(), &Find("steel"));
    EXPECT_EQ(Mass("row"), 8);
}

TEST_F(host_MaterialCommands, StoredMaterialsComeBackAndHostileOnesDoNot) {
    host_Model& model = host_Model::Instance();
    const auto open = [&](const std::vector<std::byte>& memento) {
        host_Transaction step("open");
        model.Open(memento);
        step.Commit();
    };
    MakeRow("row", 1);
    Run("material", "steel", "S355", 8, T(T(2, .3, 20), T(1, .2, 90)));
    Set("steel", "plastic", T(T(1, 0), T(2, 1)));
    Run("copyMaterial", "steel", "iron");
    Run("assignMaterial", "row", "steel", "first");
    const std::vector<std::byte> memento = model.Memento();
    Run("newModel");
    open(memento);
    EXPECT_EQ(model.Memento(), memento);
    EXPECT_EQ(Get(Find("iron"), "elastic"), "((2.0, 0.3, 20.0), (1.0, 0.2, 90.0))");
    EXPECT_EQ(Get(Find("iron"), "expansion"), "()");
    EXPECT_EQ(Mass("row"), 8);

    const auto table = [](const std::vector<const char*>& names,
                          const std::vector<omu_PrimTuple>& rows, bool allowsEmpty = false,
                          mdl_ColumnType type = mdl_ColumnType::Float) {
        std::vector<mdl_PropertyColumn> columns;
        for (const char* name : names) {
            columns.emplace_back(name, type);
        }
        mdl_PropertyTable made(columns, allowsEmpty);
        for (const omu_PrimTuple& row : rows) {
            made.AddRow(row);
        }
        return made;
    };
    const char* const young = "Young's modulus";
    const char* const poisson = "Poisson's ratio";
    const std::string no = " is not a table of (Young's modulus, Poisson's ratio[, temperature])";
    const struct {
        mdl_PropertyTable elastic;
        std::string message;
    } cases[] = {
        {table({}, {}), no},
        {table({young, poisson}, {}), no},
        {table({young, poisson}, {T(1, 0)}, true), no},
        {table({young, poisson}, {T(1, 0)}, false, mdl_ColumnType::Integer), no},
        {table({poisson, young}, {T(.1, 0)}), no},
        {table({young, poisson, "time"}, {T(1, 0, 0)}), no},
        {table({young, poisson, "temperature", "time"}, {T(1, 0, 0, 0)}), no},
        {table({young, poisson}, {T(1, 0), T(2, 0)}),
         " has several rows, but no temperatures; a row is (Young's modulus, Poisson's ratio[, "
         "temperature])"},
        {table({young, poisson, "temperature"}, {T(1, 0, 20), T(2, 0, 10)}),
         " is not sorted by temperature"},
    };
    const auto refusal = [&](const auto& spoil) {
        {
            host_Transaction step("spoil");
            spoil();
            step.Commit();
        }
        const std::vector<std::byte> spoilt = model.Memento();
        Run("undo");
        const std::string message = test_Message<nex_Exception>([&] { open(spoilt); });
        EXPECT_EQ(model.Memento(), memento);
        // Ahead stands which object of the file it is.
        const std::string ahead = "cannot be built: ";
        const std::size_t place = message.find(ahead);
        return place == std::string::npos ? message : message.substr(place + ahead.size());
    };
    for (const auto& row : cases) {
        EXPECT_EQ(refusal([&] { Find("steel").Edit().tables[1] = row.elastic; }),
                  "the stored steel.elastic" + row.message);
    }
    EXPECT_EQ(refusal([&] { Find("iron").Edit().tables[0]->Set(0, 0, double{NAN}); }),
              "the stored iron.density[0] is not finite");
    auto& part = model.Find<host_Part>("row");
    EXPECT_EQ(refusal([&] {
                  part.Edit().materials = {{"", "tin"}};
              }),
              "the stored part 'row' has the material 'tin', which is not there");
    EXPECT_EQ(refusal([&] {
                  part.Edit().materials = {{"last", "iron"}};
              }),
              "material 'iron' of the stored part 'row' is assigned to the group 'last', which is "
              "not there");
}

}  // namespace
