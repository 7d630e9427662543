#include "mdl_Model.h"

#include "omu_Arguments.h"
#include "omu_ErrorExceptions.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

mdl_Model After(mdl_Model settings, const std::function<void(omu_Arguments&)>& fill) {
    omu_Arguments arguments;
    fill(arguments);
    settings.Set(arguments);
    return settings;
}

TEST(mdl_Model, SetsWhatIsGiven) {
    const mdl_Model none;
    EXPECT_EQ(After(none, [](auto&) {}), none);
    const mdl_Model first = After(none, [](auto& arguments) {
        arguments.Put(cow_String("a beam"));  // by position
        arguments.Put(omu_PrimEnumBase("TOTAL_LAGRANGIAN"), "formulation");
        arguments.Put("job-1", "restartJob");
        arguments.Put("Step 1", "restartStep");
        arguments.Put(7, "restartIncrement");
    });
    EXPECT_EQ(first.Description(), "a beam");
    EXPECT_EQ(first.GetFormulation(), mdl_Model::TOTAL_LAGRANGIAN);
    EXPECT_TRUE(first.IsRestart() && first.RestartStep() == "Step 1");
    EXPECT_TRUE(first.GetRestartInc() == mdl_Model::INCREMENT && first.RestartIncrement() == 7);

    const mdl_Model second = After(first, [](auto& arguments) {
        arguments.Put(omu_PrimEnumBase("STEP_END"), "restartIncrement");
    });
    EXPECT_TRUE(second.GetRestartInc() == mdl_Model::STEP_END && second.RestartIncrement() == 0);
    EXPECT_EQ(second.RestartJob(), "job-1");

    mdl_Model cleared(first);
    cleared.ClearRestart();
    EXPECT_EQ(After(first, [](auto& arguments) { arguments.Put("", "restartJob"); }), cleared);
}

TEST(mdl_Model, AnErrorChangesNothing) {
    mdl_Model settings;
    settings.SetRestart("job", "step", 3);
    const mdl_Model before(settings);
    const auto set = [&](const char* keyword, const auto& value) {
        omu_Arguments arguments;
        arguments.Put("new", "description");
        arguments.Put(value, keyword);
        settings.Set(arguments);
    };
    EXPECT_THROW(set("restartIncrement", 0), omu_RangeErrorException);
    EXPECT_THROW(set("restartIncrement", "3"), omu_KeywordTypeErrorException);
    EXPECT_THROW(set("restartIncrement", omu_PrimEnumBase("START")), omu_KeywordTypeErrorException);
    EXPECT_THROW(set("formulation", omu_PrimEnumBase("STEP_END")), omu_KeywordTypeErrorException);
    EXPECT_THROW(set("restartJob", "a b"), omu_TvxNameErrorException);
    EXPECT_THROW(set("restartStep", ""), omu_TvxNameErrorException);
    EXPECT_THROW(set("restart", ""), omu_KeywordErrorException);
    EXPECT_EQ(settings, before);

    // Where the analysis goes on says nothing without the job.
    settings.ClearRestart();
    const mdl_Model none(settings);
    EXPECT_THROW(set("restartIncrement", 3), omu_ValueErrorException);
    EXPECT_THROW(set("restartStep", "step"), omu_ValueErrorException);
    EXPECT_EQ(settings, none);
}

}  // namespace
