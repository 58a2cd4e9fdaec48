#include "base/app_context.h"
#include "base/history.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

constexpr HistoryOf Usage{HistoryKind::Usage, 1};

class HistoryTest : public testing::Test, public TestProgram {
protected:
    History Changes;
    std::string Made{}; ///< "-a" when a is taken back, "+a" when it is done again
    Result<HistoryRefusal> Answer = HistoryRefusal{};

    void Note(const std::string& name, const HistoryOf& whose = Usage) {
        const auto action = [&](char sign) {
            return [this, sign, name](const AppContext&, const RecordIsUsed&) {
                if (Answer && Answer->Reasons.empty()) Made += sign + name;
                return Answer;
            };
        };
        Changes.Note(whose, {.Name = name, .TakeBack = action('-'), .DoAgain = action('+')});
    }
    std::string ToUndo(const HistoryOf& whose = Usage) const {
        const HistoryStep* const step = Changes.ToUndo(whose);
        return step ? step->Name : "";
    }
    std::string ToRedo() const {
        const HistoryStep* const step = Changes.ToRedo(Usage);
        return step ? step->Name : "";
    }
    Result<HistoryRefusal> Undo() { return Changes.Undo(Usage, App, {}); }
    Result<HistoryRefusal> Redo() { return Changes.Redo(Usage, App, {}); }
};

TEST_F(HistoryTest, IsEmptyAtFirst) {
    EXPECT_EQ(ToUndo(), "");
    EXPECT_EQ(ToRedo(), "");
}

TEST_F(HistoryTest, TakesBackTheLastFirstAndDoesItAgain) {
    Note("a");
    Note("b");
    EXPECT_EQ(ToUndo(), "b");
    EXPECT_TRUE(Undo());
    EXPECT_EQ(ToUndo(), "a");
    EXPECT_EQ(ToRedo(), "b");
    EXPECT_TRUE(Undo());
    EXPECT_EQ(ToUndo(), "");
    EXPECT_EQ(ToRedo(), "a");
    EXPECT_TRUE(Redo());
    EXPECT_TRUE(Redo());
    EXPECT_EQ(ToUndo(), "b");
    EXPECT_EQ(ToRedo(), "");
    EXPECT_EQ(Made, "-b-a+a+b");
}

TEST_F(HistoryTest, WhatWasTakenBackIsForgottenOnceSomethingElseIsDone) {
    Note("a");
    EXPECT_TRUE(Undo());
    Note("b");
    EXPECT_EQ(ToRedo(), "");
    EXPECT_EQ(ToUndo(), "b");
}

TEST_F(HistoryTest, AStepThatIsRefusedOrFailsStays) {
    Note("a");
    Answer = HistoryRefusal{.Reasons = {"later usage refers to it"}};
    EXPECT_EQ(Undo()->Reasons, std::vector<std::string>{"later usage refers to it"});
    EXPECT_EQ(ToUndo(), "a");
    Answer = Failure{.Doing = "write"};
    EXPECT_FALSE(Undo());
    EXPECT_EQ(ToUndo(), "a");
    EXPECT_EQ(ToRedo(), "");
    EXPECT_EQ(Made, "");
}

TEST_F(HistoryTest, AStepThatIsRefusedForGoodIsForgottenAndTheOneBeforeItIsNext) {
    Note("a");
    Note("b");
    Answer = HistoryRefusal{.Reasons = {"it has changed"}, .IsForGood = true};
    EXPECT_EQ(Undo()->Reasons, std::vector<std::string>{"it has changed"});
    EXPECT_EQ(ToUndo(), "a");
    EXPECT_EQ(ToRedo(), "");
    EXPECT_EQ(Made, "");
}

TEST_F(HistoryTest, EachListAndCompanyHasItsOwn) {
    Note("a");
    Note("b", {HistoryKind::Materials, 1});
    Note("c", {HistoryKind::Usage, 2});
    EXPECT_EQ(ToUndo(), "a");
    EXPECT_EQ(ToUndo({HistoryKind::Materials, 1}), "b");
    EXPECT_EQ(ToUndo({HistoryKind::Usage, 2}), "c");
    EXPECT_EQ(ToUndo({HistoryKind::Materials, 2}), "");
    Changes.Clear();
    EXPECT_EQ(ToUndo(), "");
}

} // namespace
} // namespace mact
