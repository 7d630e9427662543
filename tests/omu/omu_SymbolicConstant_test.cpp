#include "omi_Singleton.h"
#include "omu_InterfaceObj.h"
#include "omu_SymbolicConstantData.h"
#include "omu_SymbolicConstantTable.h"
#include "omu_TextRepr.h"

#include <gtest/gtest.h>

#include <functional>
#include <regex>
#include <vector>

namespace {

/// What \p action writes on standard error, with process ids masked.
template <class Action>
std::string Reported(Action action) {
    testing::internal::CaptureStderr();
    action();
    static const std::regex pid("(pid=|pid:Ox|\\) )[0-9A-F]+\n");
    return std::regex_replace(testing::internal::GetCapturedStderr(), pid, "$1PID\n");
}

/// Starts and leaves with a table of its own.
class omu_SymbolicConstants : public testing::Test {
protected:
    void SetUp() override { omi_Singleton<omu_SymbolicConstantTable>::Finalize(); }
    void TearDown() override { omi_Singleton<omu_SymbolicConstantTable>::Finalize(); }

    static omu_SymbolicConstantTable& Table() {
        return omi_Singleton<omu_SymbolicConstantTable>::Instance();
    }
};

TEST_F(omu_SymbolicConstants, AreNumberedInOrder) {
    EXPECT_EQ(Table().Size(), 1U);
    EXPECT_EQ(Table().GetString(0), "_UNSPECIFIED");
    for (unsigned id = 1; id <= 1000; ++id) {
        ASSERT_EQ(Table().AddString("NAME" + std::to_string(id)), id);
    }
    EXPECT_EQ(Table().AddOrFind("NAME7"), 7U);
    EXPECT_EQ(Table().AddOrFind("NEW"), 1001U);
    EXPECT_EQ(omu_SymbolicConstantData("NAME7", 7).getText(), "NAME7");
    EXPECT_EQ(omu_SymbolicConstantData().getText(), "_UNSPECIFIED");
    EXPECT_LT(omu_SymbolicConstantData(3), omu_SymbolicConstantData(7));
}

TEST_F(omu_SymbolicConstants, ReportDisagreementsAndGoOn) {
    Table().AddString("A");
    Table().AddString("100%s");
    const struct {
        std::function<unsigned()> action;
        unsigned result;
        const char* report;
    } cases[] = {
        {[] { return Table().AddString(""); }, 0,
         "omu_SymbolicConstantTable::AddString() key is EMPTY pid=PID\n"},
        {[] { return Table().AddString("100%s"); }, 2,
         "omu_SymbolicConstantTable::AddString(100%s) name already in table: 2/3 pid=PID\n"},
        {[] { return omu_SymbolicConstantData(3).getId(); }, 3,
         "omu_SymbolicConstantData(3) id > Size (3)\n"},
        {[] { return omu_SymbolicConstantData("A", 1).getId(); }, 1, ""},
        {[] { return omu_SymbolicConstantData("A", 2).getId(); }, 1,
         "omu_SymbolicConstantData(A, 2) id (2) != idSCD (1)\n"
         "omu_SymbolicConstantData(A, 2) existing sc is type SymbolicConstantData\n"},
        {[] { return omu_SymbolicConstantData("B", 9).getId(); }, 3,
         "omu_SymbolicConstantData(B, 9) id (9) != idSCD (3)\n"},
        {[] { return omu_SymbolicConstantData("_UNSPECIFIED", 5).getId(); }, 0,
         "omu_SymbolicConstantData(_UNSPECIFIED, 5) _id is not 0\n"
         "omu_SymbolicConstantData(_UNSPECIFIED, 5) existing sc is type SymbolicConstantData\n"},
    };
    for (const auto& [action, result, report] : cases) {
        unsigned got = 77;
        EXPECT_EQ(Reported([&] { got = action(); }), report);
        EXPECT_EQ(got, result) << report;
    }
    EXPECT_EQ(Reported([] { EXPECT_EQ(omu_SymbolicConstantData(99).getText(), ""); }),
              "omu_SymbolicConstantData(99) id > Size (4)\n"
              "omu_SymbolicConstantTable::GetString(99) id>Size (4) PID\n"
              "omu_SymbolicConstantData::getText() text is EMPTY\n");
    EXPECT_EQ(Reported([] { Table().Dump(); }),
              "CONTENTS of omu_SymbolicConstantTable pid:OxPID\n"
              "0: _UNSPECIFIED\n1: A\n2: 100%s\n3: B\n");
}

class Part : public omu_InterfaceObj {
public:
    const omu_InterfaceType& Type() const override {
        static const omu_InterfaceType type("Part%s");
        return type;
    }
};

TEST(omu_TextRepr, ExpandsTheTypeNameAndNothingElse) {
    const Part part;
    omu_TextRepr settings;
    EXPECT_EQ(settings.GetMaxRecursionString(nullptr), "%s object");
    const struct {
        const char* format;
        const char* expanded;
    } cases[] = {{"%s object", "'Part%s object'"}, {"", "''"},
                 {"100%% %s", "'100% Part%s'"},    {"%%s", "'%s'"},
                 {"%d %n %5s %", "'%d %n %5s %'"}, {"%s%s", "'Part%sPart%s'"}};
    for (const auto& [format, expanded] : cases) {
        settings.SetMaxRecursionString(format);
        EXPECT_EQ(settings.GetMaxRecursionString(&part), expanded);
        EXPECT_EQ(settings.GetMaxRecursionString(nullptr), format);
    }
}

TEST(omu_TextRepr, HasItsDefaults) {
    const omu_TextRepr settings;
    EXPECT_EQ(settings.GetSimpleStyle(), 0);
    EXPECT_EQ(settings.GetMaxRecursion(), 1);
    EXPECT_EQ(settings.GetMaxElementsInSequence(), 2147483647);
    EXPECT_EQ(settings.GetMaxReprStringSizeMB(), 1);
    EXPECT_EQ(settings.GetZeroTolerance(), 1e-6);
    EXPECT_EQ(settings.GetSignificantDigits(), 3);
    EXPECT_EQ(std::vector({settings.GetFlag(0), settings.GetFlag(1), settings.GetFlag(2),
                           settings.GetFlag(3)}),
              std::vector({false, true, false, false}));
}

}  // namespace
