#include "host_LoadCommands.h"

#include "host_Load.h"
#include "host_MeshCommands.h"
#include "host_Model.h"
#include "host_ModelCommands.h"
#include "host_RunStep.h"
#include "host_StepCommands.h"
#include "host_View.h"
#include "host_initialize.h"
#include "omu_PrimArray.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Value = std::unique_ptr<omu_Primitive>;

/// A keyword argument.
template <class T>
struct Named {
    const char* name;
    T value;
};
template <class T>
Named(const char*, T) -> Named<T>;

omu_PrimEnumBase Constant(const char* name) { return omu_PrimEnumBase(cow_String(name)); }

/// A model of a cube, "cube", with the node set "top", the group "all" and the steps a, b, c, d.
class host_LoadCommands : public testing::Test {
protected:
    host_LoadCommands() {
        host_initialize(_modules);
        host_RegisterMeshCommands(_table);
        host_RegisterStepCommands(_table);
        host_RegisterLoadCommands(_table);
        host_RegisterModelCommands(_table);
        Run("newModel");
        Run("clearHistory");
        const std::vector<double> points = {0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0,
                                            0, 0, 2, 2, 0, 2, 2, 2, 2, 0, 2, 2};
        Run("part", "cube", omu_PrimArray(points, {8, 3}),
            omu_PrimArray(std::vector{0, 1, 2, 3, 4, 5, 6, 7}, {1, 8}));
        Run("nodeSet", "cube", "top", cow_1DArray<int>{4, 5, 6, 7});
        Run("group", "cube", "all", cow_1DArray<int>{0});
        for (const char* name : {"a", "b", "c", "d"}) {
            Run("step", name);
        }
    }
    ~host_LoadCommands() override {
        host_View::Instance() = host_View();
        Run("newModel");
        Run("clearHistory");
        host_finalize(_modules);
    }

    template <class T>
    static void PutInto(omu_Arguments& args, const T& value) {
        args.Put(value);
    }
    template <class T>
    static void PutInto(omu_Arguments& args, const Named<T>& given) {
        args.Put(given.value, given.name);
    }
    template <class... Values>
    Value Run(const char* command, const Values&... values) {
        omu_Arguments args;
        (PutInto(args, values), ...);
        return host_RunStep(*_table.Find(command), args);
    }
    template <class... Values>
    std::string Text(const char* command, const Values&... values) {
        const Value result = Run(command, values...);
        return result == nullptr ? "None" : result->AsRepr().Std();
    }
    template <class... Values>
    std::string Printed(const char* command, const Values&... values) {
        testing::internal::CaptureStdout();
        Run(command, values...);
        return testing::internal::GetCapturedStdout();
    }
    template <class... Values>
    std::string Refusal(const char* command, const Values&... values) {
        const std::vector<std::byte> before = Model().Memento();
        std::string message = test_Message<nex_Exception>([&] { Run(command, values...); });
        EXPECT_EQ(Model().Memento(), before) << message;
        return message;
    }

    static host_Model& Model() { return host_Model::Instance(); }
    std::string Statuses(const char* load) {
        std::string all;
        for (const host_LoadInStep& now : Model().Find<host_Load>(load).History()) {
            all += (all.empty() ? "" : " ") +
                   std::string(omu_PrimEnum<mdl_PropagationStatusEnm, 1>(now.status).GetString());
        }
        return all;
    }
    /// A component in all steps: value and state.
    std::string Course(const char* load, std::size_t component = 0) {
        std::string all;
        for (const host_LoadInStep& now : Model().Find<host_Load>(load).History()) {
            const mdl_PropAttr<double>& attribute = now.state.components[component];
            all += (all.empty() ? "" : ", ") + std::to_string(std::lround(attribute.ConstGet())) +
                   " " + omu_PrimEnum<mdl_PropAttributeStateEnm, 1>(attribute.State()).GetString();
        }
        return all;
    }
    template <class Member>
    std::string Get(const char* member, const char* attribute) {
        return Value(Model().Find<Member>(member).GetAttribute(attribute))->AsRepr().Std();
    }
    template <class Member>
    void Set(const char* member, const char* attribute, const omu_Primitive& value) {
        host_Transaction step{cow_String(attribute)};
        Model().Find<Member>(member).SetAttribute(attribute, value);
        step.Commit();
    }
    std::string StepNames() {
        std::string all;
        for (const host_Step* step : Model().All<host_Step>()) {
            all += step->Name().Std();
        }
        return all;
    }

    int _modules = 0;
    host_CommandTable _table;
};

TEST_F(host_LoadCommands, StepsFollowEachOther) {
    Run("step", "m", "b", Constant("MODAL"), 2, "in between");
    EXPECT_EQ(StepNames(), "abmcd");
    EXPECT_EQ(Get<host_Step>("m", "index") + Get<host_Step>("m", "previous") +
                  Get<host_Step>("m", "next") + Get<host_Step>("m", "procedure") +
                  Get<host_Step>("m", "period") + Get<host_Step>("m", "description"),
              "2'b''c'MODAL2.0'in between'");
    EXPECT_EQ(Get<host_Step>("a", "previous") + Get<host_Step>("d", "next"), "''''");
    Set<host_Step>("m", "period", omu_PrimNumber(.5));
    EXPECT_EQ(Get<host_Step>("m", "period"), "0.5");
    EXPECT_EQ(test_Message<omu_RangeErrorException>(
                  [&] { Set<host_Step>("m", "period", omu_PrimNumber(-1)); }),
              "period must be a Float > 0");
    EXPECT_EQ(Refusal("step", "e", "", Constant("STATIC"), double{INFINITY}),
              "period is not finite");
    EXPECT_EQ(Refusal("step", "b"), "Step 'b' exists already");
    EXPECT_EQ(Refusal("step", "e", "z"), "no step 'z'");
    Run("undo", 2);
    EXPECT_EQ(StepNames(), "abcd");
}

TEST_F(host_LoadCommands, WhatAStepSetsHoldsUntilAnotherChangesIt) {
    Run("force", "pull", "b", "cube", "top", Named{"x", 10}, Named{"amplitude", "ramp"});
    EXPECT_EQ(Statuses("pull"), "NOT_YET_ACTIVE CREATED PROPAGATED PROPAGATED");
    EXPECT_EQ(Course("pull"), "0 UNSET, 10 SET, 10 UNCHANGED, 10 UNCHANGED");
    EXPECT_EQ(Course("pull", 1), "0 UNSET, 0 UNSET, 0 UNSET, 0 UNSET");
    Run("setLoad", "pull", "d", Named{"x", 30}, Named{"y", 3});
    EXPECT_EQ(Course("pull"), "0 UNSET, 10 SET, 10 UNCHANGED, 30 SET");
    EXPECT_EQ(Statuses("pull"), "NOT_YET_ACTIVE CREATED PROPAGATED MODIFIED");
    EXPECT_EQ(Text("status", "pull", "d"), "MODIFIED");
    EXPECT_EQ(Text("loadState", "pull", "d"),
              "{'amplitude': {'state': UNCHANGED, 'value': 'ramp'}, 'x': {'state': SET, 'value': "
              "30.0}, 'y': {'state': SET, 'value': 3.0}, 'z': {'state': UNSET, 'value': 0.0}}");
    // Steps come and go; what the others change stays with them.
    Run("step", "m", "b");
    EXPECT_EQ(Statuses("pull"), "NOT_YET_ACTIVE CREATED PROPAGATED PROPAGATED MODIFIED");
    Run("setLoad", "pull", "m", Named{"x", 20});
    EXPECT_EQ(Course("pull"), "0 UNSET, 10 SET, 20 SET, 20 UNCHANGED, 30 SET");
    Run("deleteStep", "c");
    Run("deleteStep", "m");
    EXPECT_EQ(Course("pull"), "0 UNSET, 10 SET, 30 SET");
    Run("undo");
    EXPECT_EQ(Course("pull"), "0 UNSET, 10 SET, 20 SET, 30 SET");
    Run("deleteStep", "b");
    EXPECT_EQ(Model().All<host_Load>().size(), 0U);
    Run("undo");
    EXPECT_EQ(Course("pull"), "0 UNSET, 10 SET, 20 SET, 30 SET");
}

TEST_F(host_LoadCommands, StatusesFollowTheRulesOfTheAttribute) {
    Run("support", "pin", "a", "cube", "top", Named{"x", 1}, Named{"y", 2});
    const auto set = [&](const char* step, const char* attribute, const char* status) {
        Run("setStatus", "pin", step, attribute, Constant(status));
    };
    set("a", "z", "SET");
    EXPECT_EQ(Course("pin", 2), "0 SET, 0 UNCHANGED, 0 UNCHANGED, 0 UNCHANGED");
    set("b", "x", "FREED");
    EXPECT_EQ(Course("pin"), "1 SET, 0 FREED, 0 UNSET, 0 UNSET");
    EXPECT_EQ(Statuses("pin"), "CREATED MODIFIED PROPAGATED PROPAGATED");
    set("c", "x", "SET");
    EXPECT_EQ(Course("pin"), "1 SET, 0 FREED, 0 SET, 0 UNCHANGED");
    set("c", "y", "SET");  // the value is lost
    EXPECT_EQ(Course("pin", 1), "2 SET, 2 UNCHANGED, 0 SET, 0 UNCHANGED");
    set("a", "y", "UNSET");
    EXPECT_EQ(Course("pin", 1), "0 UNSET, 0 UNSET, 0 SET, 0 UNCHANGED");
    const std::vector<std::byte> before = Model().Memento();
    set("b", "x", "UNCHANGED");
    set("d", "x", "UNCHANGED");
    EXPECT_EQ(Model().Memento(), before);
    for (const auto& [step, status] :
         {std::pair("a", "FREED"), std::pair("b", "UNSET"), std::pair("a", "NOT_APPLICABLE"),
          std::pair("b", "COMP_DEFAULT")}) {
        EXPECT_EQ(
            test_Message<omu_ValueErrorException>(
                [&, step = step, status = status] { set(step, "x", status); }),
            std::string("Invalid propagation status for 'x' attribute. ") +
                (*step == 'a' ? "In the step that creates Load 'pin', it can be SET, UNSET or "
                                "UNCHANGED"
                              : "Behind the step that creates Load 'pin', it can be SET, "
                                "FREED or UNCHANGED"));
    }
    EXPECT_EQ(Model().Memento(), before);
    EXPECT_EQ(Refusal("setStatus", "pin", "a", "magnitude", Constant("SET")),
              "Load 'pin' has no attribute 'magnitude'; it has x, y, z and amplitude");
    set("b", "amplitude", "SET");
    EXPECT_EQ(Model().Find<host_Load>("pin").History()[1].state.amplitude.State(), SET);
}

TEST_F(host_LoadCommands, ADeactivatedLoadActsNoLonger) {
    Run("pressure", "gas", "a", "cube", "all", 5);
    Run("setLoad", "gas", "d", Named{"magnitude", 7});
    Run("deactivate", "gas", "d");
    EXPECT_EQ(Statuses("gas"), "CREATED PROPAGATED PROPAGATED DEACTIVATED");
    Run("deactivate", "gas", "c");
    EXPECT_EQ(Statuses("gas"), "CREATED PROPAGATED DEACTIVATED NO_LONGER_ACTIVE");
    EXPECT_EQ(Course("gas"), "5 SET, 5 UNCHANGED, 0 UNSET, 0 UNSET");
    EXPECT_EQ(Text("loadStatuses"),
              "{'gas': {'a': CREATED, 'b': PROPAGATED, 'c': DEACTIVATED, 'd': NO_LONGER_ACTIVE}}");
    const char* const gone =
        "Load 'gas' does not act in step 'd': it is deactivated from step 'c' on";
    EXPECT_EQ(Refusal("setLoad", "gas", "d", Named{"magnitude", 1}), gone);
    EXPECT_EQ(Refusal("setStatus", "gas", "d", "magnitude", Constant("SET")), gone);
    EXPECT_EQ(Refusal("deactivate", "gas", "d"), gone);
    EXPECT_EQ(Refusal("activate", "gas", "d"),
              "Load 'gas' is not deactivated in step 'd'; step 'c' does it");
    Run("activate", "gas", "c");
    EXPECT_EQ(Course("gas"), "5 SET, 5 UNCHANGED, 5 UNCHANGED, 7 SET");
    EXPECT_EQ(Refusal("activate", "gas", "c"), "Load 'gas' is not deactivated in step 'c'");
    EXPECT_EQ(Refusal("deactivate", "gas", "a"),
              "Load 'gas' cannot be deactivated in step 'a', which creates it; deleteLoad takes it "
              "out of the model");
    Run("deactivate", "gas", "c");
    Run("deleteStep", "c");
    EXPECT_EQ(Statuses("gas"), "CREATED PROPAGATED MODIFIED");
}

TEST_F(host_LoadCommands, WhatIsWrongIsNamed) {
    Run("gravity", "weight", "b", "cube", Named{"z", -9.81});
    const struct {
        std::string raised;
        const char* message;
    } cases[] = {
        {Refusal("setLoad", "weight", "a", Named{"z", 1}),
         "Load 'weight' does not act in step 'a': step 'b' creates it"},
        {Refusal("setLoad", "weight", "b", Named{"magnitude", 1}),
         "Load 'weight' has no attribute 'magnitude'; it has x, y, z and amplitude"},
        {Refusal("setLoad", "weight", "b"),
         "no attribute is given; Load 'weight' has x, y, z and amplitude"},
        {Refusal("setLoad", "weight", "b", Named{"z", double{NAN}}),
         "z of Load 'weight' is not finite"},
        {Refusal("temperature", "warm", "b", "cube", "", double{INFINITY}),
         "magnitude of Load 'warm' is not finite"},
        {Refusal("force", "pull", "b", "cube", "bottom"),
         "part 'cube' has no node set 'bottom'; it has 'top'"},
        {Refusal("pressure", "gas", "b", "cube", "top"),
         "part 'cube' has no group 'top'; it has 'all'"},
        {Refusal("force", "pull", "e", "cube", "top"), "no step 'e'"},
        {Refusal("force", "weight", "b", "cube", "top"), "Load 'weight' exists already"},
        {Refusal("deletePart", "cube"), "Part 'cube' has the loads 'weight'"},
        {Refusal("markLoads", "e"), "no step 'e'"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(row.raised, row.message);
    }
    Run("deleteLoad", "weight");
    EXPECT_EQ(test_Message<omu_AccessErrorException>([&] { Run("status", "weight", "b"); }),
              "weight no longer exists");
    Run("deletePart", "cube");
}

TEST_F(host_LoadCommands, RenamedThingsKeepTheirLoads) {
    Run("temperature", "warm", "b", "cube");
    Run("setLoad", "warm", "c", Named{"magnitude", 90});
    Run("deactivate", "warm", "d");
    const std::vector<std::byte> before = Model().Memento();
    Set<host_Part>("cube", "name", omu_PrimString("block"));
    for (const auto& [from, to] : {std::pair("b", "z"), std::pair("c", "y"), std::pair("d", "x")}) {
        Set<host_Step>(from, "name", omu_PrimString(to));
    }
    EXPECT_EQ(Statuses("warm"), "NOT_YET_ACTIVE CREATED MODIFIED DEACTIVATED");
    EXPECT_EQ(Course("warm"), "0 UNSET, 0 UNSET, 90 SET, 0 UNSET");
    EXPECT_EQ(Get<host_Load>("warm", "kind") + Get<host_Load>("warm", "part") +
                  Get<host_Load>("warm", "region") + Get<host_Load>("warm", "createdIn") +
                  Get<host_Load>("warm", "deactivatedIn") + Get<host_Load>("warm", "components"),
              "TEMPERATURE'block''''z''x'('magnitude',)");
    Run("undo", 4);
    EXPECT_EQ(Model().Memento(), before);
}

TEST_F(host_LoadCommands, EveryCommandIsUndoneAndDoneAgain) {
    Run("clearHistory");
    std::vector<std::vector<std::byte>> models{Model().Memento()};
    const auto then = [&](const char* command, const auto&... values) {
        Run(command, values...);
        models.push_back(Model().Memento());
        EXPECT_NE(models.back(), models[models.size() - 2]) << command;
    };
    then("force", "pull", "a", "cube", "top", 1, 2, 3, "ramp");
    then("support", "pin", "b", "cube", "top", Named{"x", 0});
    then("setLoad", "pull", "c", Named{"amplitude", "wave"});
    then("setStatus", "pin", "c", "x", Constant("FREED"));
    then("deactivate", "pull", "d");
    then("activate", "pull", "d");
    then("step", "m", "a", Constant("HEAT"));
    then("deleteStep", "b");
    then("deleteLoad", "pull");
    const auto last = static_cast<int>(models.size()) - 1;
    for (int at = last - 1; at >= 0; --at) {
        Run("undo");
        EXPECT_EQ(Model().Memento(), models[static_cast<std::size_t>(at)]) << at;
    }
    Run("redo", last);
    EXPECT_EQ(Model().Memento(), models.back());
}

TEST_F(host_LoadCommands, AStoredModelIsTheSameOrIsRefused) {
    Run("support", "pin", "b", "cube", "top", 1, Named{"amplitude", "ramp"});
    Run("setStatus", "pin", "c", "x", Constant("FREED"));
    Run("deactivate", "pin", "d");
    const std::vector<std::byte> whole = Model().Memento();
    const auto open = [](const std::vector<std::byte>& memento) {
        host_Transaction step("open");
        Model().Open(memento);
        step.Commit();
    };
    Run("newModel");
    open(whole);
    EXPECT_EQ(Model().Memento(), whole);
    EXPECT_EQ(Statuses("pin"), "NOT_YET_ACTIVE CREATED MODIFIED DEACTIVATED");

    // Behind the memento's own words: where the object is, and of which class.
    const auto refusal = [&](const std::vector<std::byte>& memento) {
        const std::string message = test_Message<nex_Exception>([&] { open(memento); });
        const std::string words = "cannot be built: ";
        const std::size_t at = message.find(words);
        return at == std::string::npos ? message : message.substr(at + words.size());
    };
    using Load = host_LoadContent;
    const std::string changed = "Load 'pin' is changed in step '";
    const struct {
        void (*spoil)(Load&);
        std::string message;
    } cases[] = {
        {[](Load& load) { load.kind = static_cast<host_LoadKind>(5); },
         "a stored kind is 5, which has no meaning"},
        {[](Load& load) { load.kind = host_LoadKind::Gravity; },
         "Load 'pin' acts on no such region"},
        {[](Load& load) { load.region = ""; }, "Load 'pin' acts on no such region"},
        {[](Load& load) { load.part = "z"; }, "Load 'pin' acts on part 'z', which is not there"},
        {[](Load& load) { load.createdIn = "a"; },
         "Load 'pin' is not made in the step that creates it"},
        {[](Load& load) { load.deactivatedIn = "b"; },
         "Load 'pin' is deactivated in the step that creates it"},
        {[](Load& load) { load.deactivatedIn = "z"; },
         "Load 'pin' names step 'z', which is not there"},
        {[](Load& load) { load.deactivatedIn = "a"; }, changed + "a', before step 'b' creates it"},
        {[](Load& load) { load.changes["a"] = load.changes["c"]; },
         changed + "a', before step 'b' creates it"},
        {[](Load& load) { load.changes["b"] = load.changes["c"]; },
         changed + "b' as no load can be"},
        {[](Load& load) { load.changes["c"].components.pop_back(); },
         changed + "c' as no load can be"},
        {[](Load& load) { load.changes["c"].components[1].ForceState(UNCHANGED); },
         changed + "c' as no load can be"},
        {[](Load& load) { load.changes["b"].components[0].ForceState(UNSET); },
         changed + "b' as no load can be"},
        {[](Load& load) { load.changes["b"].components[0] = NAN; },
         "x of Load 'pin' is not finite"},
    };
    for (const auto& row : cases) {
        host_Transaction step("spoil");
        row.spoil(Model().Find<host_Load>("pin").Edit());
        step.Commit();
        const std::vector<std::byte> spoilt = Model().Memento();
        Run("undo");
        EXPECT_EQ(refusal(spoilt), row.message);
        EXPECT_EQ(Model().Memento(), whole);
    }
    {
        host_Transaction step("spoil");
        Model().Find<host_Step>("a").Edit().procedure = static_cast<host_Procedure>(-1);
        step.Commit();
    }
    EXPECT_EQ(refusal(Model().Memento()), "a stored procedure is -1, which has no meaning");
}

TEST_F(host_LoadCommands, TablesShowAllSteps) {
    EXPECT_EQ(Printed("loadTable"), "The model has no loads.\n");
    Run("force", "pull", "b", "cube", "top", Named{"x", 2.5}, Named{"amplitude", "ramp"});
    Run("setStatus", "pull", "c", "x", Constant("FREED"));
    Run("deactivate", "pull", "d");
    EXPECT_EQ(Printed("stepTable"),
              "step       a               b        c         d\n"
              "procedure  STATIC          STATIC   STATIC    STATIC\n"
              "period     1               1        1         1\n"
              "---------------------------------------------------------\n"
              "pull       NOT_YET_ACTIVE  CREATED  MODIFIED  DEACTIVATED\n");
    EXPECT_EQ(Printed("loadTable", "pull"),
              "Load 'pull': FORCE on node set 'top' of part 'cube'\n"
              "step       a               b         c         d\n"
              "status     NOT_YET_ACTIVE  CREATED   MODIFIED  DEACTIVATED\n"
              "----------------------------------------------------------\n"
              "x                          2.5 s     f\n"
              "y                          -         -\n"
              "z                          -         -\n"
              "amplitude                  'ramp' s  'ramp' c\n"
              "\n"
              "s: set in this step   c: carried over from the step before   f: freed in this step"
              "   -: no value\n");
    // Many steps come in blocks; long names are shortened, by characters.
    Run("step", ("\xC3\xA4" + std::string(36, 'x')).c_str());
    for (int i = 1; i < 9; ++i) {
        Run("step", ("s" + std::to_string(i)).c_str());
    }
    const std::string table = Printed("stepTable");
    std::size_t blocks = 0;
    std::size_t start = 0;
    for (std::size_t end = 0; (end = table.find('\n', start)) != std::string::npos;
         start = end + 1) {
        EXPECT_LE(end - start, 101U);
        blocks += table.compare(start, 5, "pull ") == 0 ? 1U : 0U;
    }
    EXPECT_EQ(blocks, 3U);
    EXPECT_NE(table.find(" \xC3\xA4" + std::string(14, 'x') + ".." + std::string(13, 'x')),
              std::string::npos);
}

TEST_F(host_LoadCommands, ThePictureMarksWhatActs) {
    Run("force", "pull", "a", "cube", "top", 1);
    Run("support", "pin", "a", "cube", "top");  // prescribes nothing
    Run("pressure", "gas", "b", "cube", "all", 1);
    Run("gravity", "weight", "a", "cube", Named{"z", -1});
    Run("deactivate", "weight", "d");
    const auto marked = [](int width = 400) {
        return host_View::Instance().MakeScene(width, 300, [] {});
    };
    EXPECT_EQ(Text("markLoads", "a"), "2");
    host_Scene scene = marked();
    ASSERT_EQ(scene.markers.size(), 2U);
    EXPECT_EQ(scene.markers[0].points,
              (std::vector<host_Float3>{{0, 0, 2}, {2, 0, 2}, {2, 2, 2}, {0, 2, 2}}));
    EXPECT_EQ(scene.markers[1].points, (std::vector<host_Float3>{{1, 1, 1}}));
    EXPECT_TRUE(scene.markers[1].onTop);
    // Each line of the caption is a text of its own, blank in the others' lines.
    std::string caption;
    float y = 0;
    for (const host_Label& label : scene.labels) {
        if (!label.text.empty()) {
            EXPECT_GT(label.y, y);
            y = label.y;
            caption += label.text + "\n";
        }
    }
    EXPECT_EQ(caption, "step a\nFORCE (filled diamond): pull\nGRAVITY (target): weight\n");
    EXPECT_EQ(Text("markLoads"), "2");  // in place of those before; the last step
    scene = marked();
    ASSERT_EQ(scene.markers.size(), 2U);
    EXPECT_EQ(scene.markers[1].points.size(), 8U);
    // A part without the set has taken the place.
    Run("part", "cube", omu_PrimArray(std::vector<double>{0, 0, 0}, {1, 3}), cow_1DArray<int>{});
    EXPECT_EQ(Refusal("markLoads"),
              "Load 'pull' acts on node set 'top' of part 'cube', which is no longer there");
    EXPECT_EQ(marked().markers.size(), 2U);
}

}  // namespace
