#include "nex_TextException.h"
#include "omu_ChangeHistory.h"
#include "omu_CmdHistory.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

TEST(omu_CmdHistory, KeepsCommandsAndHandsEachToTheSink) {
    auto& history = thr_ThreadSingleton<omu_CmdHistory>::Instance();
    std::string flushed;
    history.SetSink([&](const cow_String& command) { flushed += command.Std() + '\n'; });
    history.Append("a = 1");
    EXPECT_EQ(flushed, "a = 1\n");
    history.SetSink([](const cow_String&) { throw std::runtime_error("the disk is full"); });
    EXPECT_THROW(history.Append("b = 2"), std::runtime_error);
    history.SetSink(nullptr);
    EXPECT_EQ(history.Count(), 2);
    EXPECT_EQ(history.Command(1), "b = 2");
    EXPECT_THROW(static_cast<void>(history.Command(2)), nex_TextException);
    EXPECT_THROW(static_cast<void>(history.Command(-1)), nex_TextException);
    history.Clear();
    EXPECT_EQ(history.Count(), 0);
    thr_ThreadSingletonBase<omu_CmdHistory>::Destroy();
}

/// A text that commands write to, and the thread's history of that.
class omu_ChangeHistoryTest : public testing::Test {
protected:
    void TearDown() override { thr_ThreadSingletonBase<omu_ChangeHistory>::Destroy(); }

    /// Appends a letter and records it. Undoing or redoing '!' fails when asked to.
    void Write(char letter) {
        text += letter;
        history.Record(
            [this, letter] {
                FailFor(letter, failsUndo);
                ASSERT_EQ(text.back(), letter);
                text.pop_back();
            },
            [this, letter] {
                FailFor(letter, failsRedo);
                Write(letter);  // an ordinary command: it must not be recorded again
            });
    }
    void Step(const char* letters) {
        history.Begin(letters);
        for (const char* letter = letters; *letter != '\0'; ++letter) {
            Write(*letter);
        }
        history.Commit();
    }
    static void FailFor(char letter, bool fails) {
        if (letter == '!' && fails) {
            throw std::runtime_error("!");
        }
    }

    omu_ChangeHistory& history = thr_ThreadSingleton<omu_ChangeHistory>::Instance();
    std::string text;
    bool failsUndo = false;
    bool failsRedo = false;
};

TEST_F(omu_ChangeHistoryTest, UndoesAndRedoesWholeSteps) {
    Step("ab");
    Step("");
    Step("c");
    EXPECT_EQ(history.UndoCount(), 2);
    EXPECT_EQ(history.UndoLabel(), "c");
    EXPECT_EQ(history.UndoLabel(2), "ab");
    EXPECT_EQ(history.UndoLabel(3), "");
    history.Undo();
    history.Undo();
    EXPECT_EQ(text, "");
    EXPECT_FALSE(history.CanUndo());
    EXPECT_THROW(history.Undo(), nex_TextException);
    EXPECT_EQ(history.RedoLabel(), "ab");
    history.Redo();
    EXPECT_EQ(text, "ab");
    EXPECT_EQ(history.UndoCount(), 1);

    history.Begin("taken back");  // which forgets nothing
    Write('e');
    history.Rollback();
    EXPECT_EQ(history.RedoLabel(), "c");

    Step("d");  // forgets the undone "c"
    EXPECT_FALSE(history.CanRedo());
    EXPECT_THROW(history.Redo(), nex_TextException);
    history.Clear();
    EXPECT_EQ(history.UndoCount() + history.RedoCount(), 0);
}

TEST_F(omu_ChangeHistoryTest, GroupsNestAndRollBackAlone) {
    history.Begin("outer");
    Write('a');
    history.Begin("inner");
    Write('b');
    Write('c');
    EXPECT_THROW(history.Undo(), nex_TextException);
    history.Rollback();
    EXPECT_EQ(text, "a");
    Step("d");
    history.Commit();
    EXPECT_EQ(history.UndoLabel(), "outer");
    history.Undo();
    EXPECT_EQ(text, "");

    EXPECT_THROW(history.Record([] {}, [] {}), nex_TextException);
    EXPECT_THROW(history.Commit(), nex_TextException);
    EXPECT_THROW(history.Rollback(), nex_TextException);
}

TEST_F(omu_ChangeHistoryTest, FailedUndoOrRedoLeavesTheStepAsItWas) {
    Step("a!b");
    failsUndo = true;
    EXPECT_THROW(history.Undo(), std::runtime_error);
    EXPECT_EQ(text, "a!b");
    EXPECT_EQ(history.UndoCount(), 1);

    failsUndo = false;
    history.Undo();
    failsRedo = true;
    EXPECT_THROW(history.Redo(), std::runtime_error);
    EXPECT_EQ(text, "");
    EXPECT_EQ(history.RedoCount(), 1);
    failsRedo = false;
    history.Redo();
    EXPECT_EQ(text, "a!b");
}

TEST_F(omu_ChangeHistoryTest, HistoryThatNoLongerFitsIsForgotten) {
    Step("x");
    Step("a!!");
    int undone = 0;
    history.Begin("fails both ways");
    history.Record([&] { throw std::logic_error("first"); }, [] {});
    history.Record([&] { ++undone; }, [] { throw std::runtime_error("second"); });
    history.Commit();
    EXPECT_THROW(history.Undo(), std::logic_error);
    EXPECT_EQ(undone, 1);
    EXPECT_EQ(history.UndoCount() + history.RedoCount(), 0);
    Step("y");
    EXPECT_TRUE(history.CanUndo());
}

TEST_F(omu_ChangeHistoryTest, RollbackRunsToTheEndWhenAChangeCannotBeUndone) {
    history.Begin("step");
    Write('a');
    text += '?';
    history.Record(
        [this] {
            text.pop_back();
            throw std::runtime_error("?");
        },
        [] {});
    Write('b');
    EXPECT_THROW(history.Rollback(), std::runtime_error);
    EXPECT_EQ(text, "");
    EXPECT_EQ(history.Depth(), 0);
    EXPECT_FALSE(history.CanUndo());
}

TEST_F(omu_ChangeHistoryTest, CommandsThatFailWhileTheyAreReplayedSayWhy) {
    history.Begin("step");
    history.Record(
        [this] {
            history.Begin("ordinary command");
            history.Rollback();
            throw std::logic_error("why");
        },
        [] {});
    history.Commit();
    EXPECT_THROW(history.Undo(), std::logic_error);
    EXPECT_EQ(history.UndoCount(), 1);

    history.Begin("step");
    history.Record([this] { history.Clear(); }, [] {});
    history.Rollback();
    EXPECT_EQ(history.UndoCount() + history.Depth(), 0);
}

}  // namespace
