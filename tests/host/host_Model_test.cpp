#include "host_Model.h"

#include "host_LoadCommands.h"
#include "host_Material.h"
#include "host_MaterialCommands.h"
#include "host_MeshCommands.h"
#include "host_ModelCommands.h"
#include "host_ModelRules.h"
#include "host_Part.h"
#include "host_RunStep.h"
#include "host_Step.h"
#include "host_StepCommands.h"
#include "host_initialize.h"
#include "omu_ErrorExceptions.h"
#include "omu_PrimArray.h"
#include "omu_PrimNumber.h"
#include "omu_PrimString.h"
#include "test_Faults.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

namespace {

using Value = std::unique_ptr<omu_Primitive>;
using Bytes = std::vector<std::byte>;

host_Model& Model() { return host_Model::Instance(); }
host_Changes& Changes() { return host_Changes::Instance(); }

class host_ModelTest : public testing::Test {
protected:
    host_ModelTest() {
        host_initialize(_modules);
        host_RegisterMeshCommands(_table);
        host_RegisterMaterialCommands(_table);
        host_RegisterStepCommands(_table);
        host_RegisterLoadCommands(_table);
        host_RegisterModelCommands(_table);
        Start();
    }
    ~host_ModelTest() override {
        Start();
        host_finalize(_modules);
    }

    void Start() {
        Run("newModel");
        Changes().Forget();
    }
    template <class... Values>
    Value Run(const char* command, const Values&... values) {
        omu_Arguments args;
        (args.Put(values), ...);
        return host_RunStep(*_table.Find(command), args);
    }
    void MakePart(const char* name) {
        Run("part", name,
            omu_PrimArray(std::vector<double>{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {4, 3}),
            omu_PrimArray(std::vector{0, 1, 2, 3}, {1, 4}));
    }
    template <class T>
    static void Set(const char* name, const char* attribute, const omu_Primitive& value) {
        host_Transaction step{cow_String(attribute)};
        Model().Find<T>(name).SetAttribute(attribute, value);
        step.Commit();
    }

    int _modules = 0;
    host_CommandTable _table;
};

TEST_F(host_ModelTest, ChangesWithoutMemoryLeaveNothing) {
    const omu_PrimArray numbers(std::vector{0});
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"part", [&] { MakePart("plate"); }},
        {"group", [&] { Run("group", "plate", "all", numbers); }},
        {"nodeSet", [&] { Run("nodeSet", "plate", "foot", numbers); }},
        {"material", [&] { Run("material", "steel", "plain"); }},
        {"assignMaterial", [&] { Run("assignMaterial", "plate", "steel"); }},
        {"step", [&] { Run("step", "push"); }},
        {"force", [&] { Run("force", "pull", "push", "plate", "foot", 1.5); }},
        {"rename material", [&] { Set<host_Material>("steel", "name", omu_PrimString("S235")); }},
        {"rename step", [&] { Set<host_Step>("push", "name", omu_PrimString("pull")); }},
        {"rename part", [&] { Set<host_Part>("plate", "name", omu_PrimString("lid")); }},
        {"period", [&] { Set<host_Step>("pull", "period", omu_PrimNumber(2.5)); }},
        {"settings", [&] { Run("setModelSettings", "a plate"); }},
        {"open",
         [&] {
             host_Transaction step("open");
             Model().Open(Model().Memento());
             step.Commit();
         }},
        {"deleteStep", [&] { Run("deleteStep", "pull"); }},
        {"deletePart", [&] { Run("deletePart", "lid"); }},
        {"newModel", [&] { Run("newModel"); }},
        {"undo", [&] { Changes().Undo(3); }},
        {"redo", [&] { Changes().Redo(2); }},
    };
    for (const auto& [name, change] : changes) {
        SCOPED_TRACE(name);
        const Bytes before = Model().Memento();
        const omu_ChangeHistory& history = Changes().History();
        const std::array counts{history.UndoCount(), history.RedoCount()};
        bool isRaised = true;
        for (int allocation = 1; isRaised; ++allocation) {
            {
                const test_Faults faults(0, allocation);
                isRaised = test_Faults::Raises(change);
            }
            if (isRaised) {
                ASSERT_EQ(Model().Memento(), before) << allocation;
                ASSERT_EQ((std::array{history.UndoCount(), history.RedoCount()}), counts);
                ASSERT_EQ(history.Depth(), 0);
            }
        }
        EXPECT_EQ(Model().Memento() == before, std::string_view(name) == "open");
    }
}

TEST_F(host_ModelTest, BytesDependOnWhatWasDoneAlone) {
    MakePart("a");
    Run("step", "s");
    const Bytes plain = Model().Memento();
    Start();
    MakePart("a");
    EXPECT_THROW(MakePart("1"), omu_TvxNameErrorException);
    EXPECT_EQ(test_Message<omu_KeyErrorException>([this] { Run("step", "s", "none"); }),
              "no step 'none'");
    Run("findPart", "a");
    MakePart("b");
    Changes().Undo(1);
    const host_Part passing("passing", Model().Find<host_Part>("a").Mesh());
    Run("step", "s");
    EXPECT_EQ(Model().Memento(), plain);
}

TEST_F(host_ModelTest, CommandsWithinCommands) {
    MakePart("a");
    const Bytes before = Model().Memento();
    {
        host_Transaction outer("outer");
        Run("group", "a", "first", omu_PrimArray(std::vector{0}));
        const Bytes half = Model().Memento();
        {
            const host_Transaction inner("inner");  // fails
            MakePart("b");
            Model().Find<host_Part>("a").Edit().groups.clear();
            host_RenameMember(Model().Find<host_Part>("a"), "c");
        }
        EXPECT_EQ(Model().Memento(), half);
        EXPECT_THROW(Changes().Undo(1), omu_ValueErrorException);
        EXPECT_THROW(Changes().CloseGroup(true), omu_ValueErrorException);  // it is no script's
        Changes().OpenGroup("left open");
        MakePart("b");
        outer.Commit();
    }
    const Bytes after = Model().Memento();
    EXPECT_EQ(Changes().UndoLabel(1), "outer");
    Changes().Undo(1);
    EXPECT_EQ(Model().Memento(), before);
    Changes().Redo(1);
    EXPECT_EQ(Model().Memento(), after);
    EXPECT_NE(after, before);
}

TEST_F(host_ModelTest, HandlesFindWhatIsInTheModel) {
    MakePart("a");
    auto& part = Model().Find<host_Part>("a");
    const omu_InterfaceHandle handle(&part);
    const auto message = [&] {
        return test_Message<omu_AccessErrorException>([&] { (void)handle.Require(); });
    };
    Set<host_Part>("a", "name", omu_PrimString("b"));
    const std::function<void()> removals[] = {[&] { Run("deletePart", "b"); },
                                              [&] { MakePart("b"); }, [&] { Run("newModel"); },
                                              [&] {
                                                  host_Transaction step("open");
                                                  Model().Open(Model().Memento());
                                                  step.Commit();
                                              }};
    for (const auto& remove : removals) {
        remove();
        EXPECT_NE(message().find("Part 'b'"), std::string::npos) << message();
        Changes().Undo(1);
        EXPECT_EQ(&handle.Require(), &part);
        Changes().Redo(1);
        EXPECT_FALSE(handle);
        Changes().Undo(1);
    }
    Changes().Undo(2);
    EXPECT_FALSE(handle);
    Changes().Forget();  // which ends the part
    EXPECT_NE(message().find("Part 'a'"), std::string::npos) << message();
}

}  // namespace
