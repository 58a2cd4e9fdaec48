#include "base/text.h"
#include "materials/material_record.h"
#include "tests/support/bytes.h"
#include "tests/support/test_program.h"
#include "usage/usage_changes.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

using Sentences = std::vector<std::string>;

class UsageChangesTest : public testing::Test, public TestProgram {
protected:
    const std::filesystem::path File = DataFile("1_usage.talvor");
    const std::filesystem::path Materials = DataFile("1_materials.talvor");

    /// Material 1 is live, and 2 is deleted.
    UsageChangesTest() {
        WriteContent(Materials,
                     Pack(MaterialLayout, {.MaterialId = 1, .CustomId = " PR-101"}) +
                         Pack(MaterialLayout, {.MaterialId = 2, .CustomId = "GC-9", .Active = false}));
    }
    static UsageRecord Live(std::int16_t number, const std::string& period, std::int16_t materialId = 1) {
        return {.UsageId = number,
                .MaterialId = materialId,
                .Period = period,
                .Quantity = 120.5,
                .Unit = UnitLbs};
    }
    static UsageRecord Deleted(std::int16_t number, const std::string& period, std::int16_t materialId = 1) {
        UsageRecord usage = Live(number, period, materialId);
        usage.Active = false;
        return usage;
    }
    static std::string Slots(const std::vector<UsageRecord>& records) {
        std::string slots;
        for (const UsageRecord& usage : records)
            slots += Pack(UsageLayout, usage);
        return slots;
    }
    void Write(const std::vector<UsageRecord>& records) const { WriteContent(File, Slots(records)); }

    static Sentences SentencesOf(const Result<std::vector<Failure>>& refusals) {
        if (!refusals) return {"failed", SentenceOf(refusals.error())};
        Sentences sentences;
        for (const Failure& refusal : *refusals)
            sentences.push_back(SentenceOf(refusal));
        return sentences;
    }
    Sentences Undelete(const std::vector<UsageRecord>& seen) { return SentencesOf(UndeleteUsage(App, seen)); }
    /// Each record as it was looked at, and what it is to become.
    using Pairs = std::vector<std::pair<UsageRecord, UsageRecord>>;
    /// What was refused: the record's number and why.
    Sentences Change(const Pairs& records) {
        std::vector<UsageChange> changes;
        for (const auto& [seen, record] : records)
            changes.push_back({record, seen});
        const Result<UsageOutcome> outcome = ChangeUsage(App, changes);
        if (!outcome) return {"failed", SentenceOf(outcome.error())};
        Sentences reasons;
        for (const RefusedChange& refused : outcome->Refused)
            reasons.push_back(std::to_string(changes[refused.Change].Record.UsageId) + ": " + refused.Reason);
        return reasons;
    }
};

TEST_F(UsageChangesTest, DeletedOnesAreListedWithTheirMaterials) {
    Write({Live(1, "1/2005"), Deleted(2, "2/2005"), Deleted(3, "3/2005", 2), Deleted(4, "4/2005", 9),
           Deleted(9, "5/2005")});
    const Result<std::vector<DeletedUsage>> deleted = ReadDeletedUsage(App);
    ASSERT_TRUE(deleted);
    std::vector<std::pair<int, std::string>> found;
    for (const DeletedUsage& each : *deleted)
        found.emplace_back(each.Usage.UsageId, each.CustomId);
    EXPECT_EQ(found, (std::vector<std::pair<int, std::string>>{
                         {2, "PR-101"},
                         {3, "GC-9"  },
                         {4, ""      }
    }));
}

TEST_F(UsageChangesTest, ListingCreatesNothing) {
    std::filesystem::remove(Materials);
    const Result<std::vector<DeletedUsage>> deleted = ReadDeletedUsage(App);
    ASSERT_TRUE(deleted);
    EXPECT_TRUE(deleted->empty());
    EXPECT_FALSE(std::filesystem::exists(File));
    EXPECT_FALSE(std::filesystem::exists(Materials));
}

TEST_F(UsageChangesTest, ADeleteThroughTheStoreComesBackByteForByte) {
    Write({Live(1, "1/2005"), Live(2, " 3/2005"), Live(3, "4/2005")});
    const std::string before = ContentOf(File);
    ASSERT_FALSE(DeleteUsage(App, 2));
    ASSERT_NE(ContentOf(File), before);
    EXPECT_EQ(Undelete({Deleted(2, " 3/2005")}), Sentences{});
    EXPECT_EQ(ContentOf(File), before);
}

TEST_F(UsageChangesTest, BringingBackWritesTheActiveMarkAlone) {
    const std::string fields =
        Hex("01 00") + Hex("01 00") + " 3/2005" + Hex("01 00 00 00 00 00 F0 7F") + Hex("07 00");
    WriteContent(File, fields + Hex("00 00") + "123456789");
    const Result<std::vector<DeletedUsage>> seen = ReadDeletedUsage(App);
    ASSERT_TRUE(seen && seen->size() == 1);
    EXPECT_EQ(Undelete({seen->front().Usage}), Sentences{});
    EXPECT_EQ(ContentOf(File), fields + Hex("FF FF") + "123456789");
    EXPECT_FALSE(std::filesystem::exists(UndoFileOf(File)));
}

TEST_F(UsageChangesTest, AWholeYearComesBackTogether) {
    std::vector<UsageRecord> deleted;
    std::vector<UsageRecord> live;
    for (std::int16_t month = 1; month <= 12; ++month) {
        deleted.push_back(Deleted(month, std::to_string(month) + "/2005"));
        live.push_back(Live(month, std::to_string(month) + "/2005"));
    }
    Write(deleted);
    EXPECT_EQ(Undelete(deleted), Sentences{});
    EXPECT_EQ(ContentOf(File), Slots(live));
}

TEST_F(UsageChangesTest, OneOfAMaterialAndMonthThatALiveOneHasIsRefusedAndNoneComesBack) {
    Write({Deleted(1, "1/2005"), Deleted(2, " 3/2005"), Live(3, "3/2005")});
    const std::string before = ContentOf(File);
    EXPECT_EQ(
        Undelete({Deleted(1, "1/2005"), Deleted(2, " 3/2005")}),
        Sentences{"Cannot bring back usage record 2: usage record 3 is of the same material and month."});
    EXPECT_EQ(ContentOf(File), before);
}

TEST_F(UsageChangesTest, AnotherMonthOrMaterialDoesNotMatter) {
    WriteContent(Materials, Pack(MaterialLayout, {.MaterialId = 1, .CustomId = "A"}) +
                                Pack(MaterialLayout, {.MaterialId = 2, .CustomId = "B"}));
    Write({Deleted(1, "3/2005"), Live(2, "03/2005"), Live(3, "3/2005", 2), Deleted(4, "3/2005")});
    EXPECT_EQ(Undelete({Deleted(1, "3/2005")}), Sentences{});
    EXPECT_EQ(ContentOf(File),
              Slots({Live(1, "3/2005"), Live(2, "03/2005"), Live(3, "3/2005", 2), Deleted(4, "3/2005")}));
}

TEST_F(UsageChangesTest, TwoOfTheSameMaterialAndMonthDoNotComeBackTogether) {
    Write({Deleted(1, "3/2005"), Deleted(2, "3/2005")});
    const std::string before = ContentOf(File);
    EXPECT_EQ(Undelete({Deleted(1, "3/2005"), Deleted(2, "3/2005")}),
              Sentences{"Cannot bring back usage record 2: another of these records is of the same "
                        "material and month."});
    EXPECT_EQ(ContentOf(File), before);
}

TEST_F(UsageChangesTest, OneWhoseMaterialIsDeletedOrGoneIsRefused) {
    Write({Deleted(1, "1/2005", 2), Deleted(2, "1/2005", 9)});
    const std::string before = ContentOf(File);
    EXPECT_EQ(Undelete({Deleted(1, "1/2005", 2), Deleted(2, "1/2005", 9)}),
              (Sentences{"Cannot bring back usage record 1: its material 2 is deleted.",
                         "Cannot bring back usage record 2: its material 9 does not exist."}));
    EXPECT_EQ(ContentOf(File), before);
}

TEST_F(UsageChangesTest, AMaterialNumberThatALiveAndADeletedRecordHaveIsLive) {
    WriteContent(Materials, Pack(MaterialLayout, {.MaterialId = 1, .CustomId = "old", .Active = false}) +
                                Pack(MaterialLayout, {.MaterialId = 1, .CustomId = "A"}));
    Write({Deleted(1, "1/2005")});
    const Result<std::vector<DeletedUsage>> deleted = ReadDeletedUsage(App);
    ASSERT_TRUE(deleted && deleted->size() == 1);
    EXPECT_EQ(deleted->front().CustomId, "A");
    EXPECT_EQ(Undelete({Deleted(1, "1/2005")}), Sentences{});
}

TEST_F(UsageChangesTest, OneThatIsLiveOrNotThereIsRefusedForThatAlone) {
    Write({Live(1, "1/2005", 2)});
    EXPECT_EQ(Undelete({Deleted(1, "1/2005", 2), Deleted(2, "", 0)}),
              (Sentences{"Cannot bring back usage record 1: it is not deleted.",
                         "Cannot bring back usage record 2: it does not exist."}));
}

TEST_F(UsageChangesTest, OneThatAnotherCopyHasChangedSinceItWasLookedAtIsRefused) {
    Write({Deleted(1, "1/2005")});
    EXPECT_EQ(Undelete({Deleted(1, "2/2005")}),
              Sentences{"Cannot bring back usage record 1: it has changed since it was looked at."});
    EXPECT_EQ(ContentOf(File), Slots({Deleted(1, "1/2005")}));
}

TEST_F(UsageChangesTest, OneThatIsNotInItsSlotIsRefused) {
    Write({Deleted(5, "1/2005")});
    EXPECT_EQ(Undelete({Deleted(1, "1/2005")}),
              Sentences{"Cannot bring back usage record 1: the file is damaged: the record there has the "
                        "number 5."});
}

TEST_F(UsageChangesTest, OneWhoseFieldsAreCutShortIsRefused) {
    Write({Live(1, "1/2005"), Deleted(2, "2/2005")});
    std::filesystem::resize_file(File, 32 + 22); // within the Active mark, whose other byte is 0 too
    const std::string before = ContentOf(File);
    EXPECT_EQ(Undelete({Deleted(2, "2/2005")}),
              Sentences{"Cannot bring back usage record 2: the file ends within it."});
    EXPECT_EQ(ContentOf(File), before);
}

TEST_F(UsageChangesTest, EditsAndAppendsAreTakenBackTogether) {
    Write({Live(1, "3/2005"), Live(2, "5/2005")});
    EXPECT_EQ(Change({
                  {Live(1, "3/2005"), Live(1,    "5/2005")}, // an edit
                  {Live(2, "5/2005"), Deleted(2, "5/2005")}  // an append
    }),
              Sentences{});
    EXPECT_EQ(ContentOf(File), Slots({Live(1, "5/2005"), Deleted(2, "5/2005")}));
}

TEST_F(UsageChangesTest, AnEditIsNotTakenBackIfItsOldMonthIsTakenByNow) {
    Write({Live(1, "3/2005"), Live(2, "5/2005")});
    const std::string before = ContentOf(File);
    EXPECT_EQ(Change({
                  {Live(1, "3/2005"), Live(1, "5/2005")}
    }),
              Sentences{"1: usage record 2 is of the same material and month"});
    EXPECT_EQ(ContentOf(File), before);
}

TEST_F(UsageChangesTest, AnEditThatAnotherCopyHasEditedOrDeletedSinceIsRefused) {
    Write({Live(1, "4/2005"), Deleted(2, "5/2005")});
    EXPECT_EQ(Change({
                  {Live(1, "3/2005"), Live(1, "1/2005")},
                  {Live(2, "5/2005"), Live(2, "2/2005")}
    }),
              (Sentences{"1: it has changed since it was looked at", "2: it has been deleted since"}));
}

TEST_F(UsageChangesTest, AFileThatCannotBeOpenedIsAFailure) {
    std::filesystem::create_directory(File);
    EXPECT_FALSE(UndeleteUsage(App, {Deleted(1, "1/2005")}));
    EXPECT_FALSE(ReadDeletedUsage(App));
    std::filesystem::remove(File);
    std::filesystem::remove(Materials);
    std::filesystem::create_directory(Materials);
    Write({Deleted(1, "1/2005")});
    EXPECT_FALSE(UndeleteUsage(App, {Deleted(1, "1/2005")}));
    EXPECT_FALSE(ReadDeletedUsage(App));
    EXPECT_EQ(ContentOf(File), Slots({Deleted(1, "1/2005")}));
}

TEST_F(UsageChangesTest, WhileAnotherCopyWritesItIsAFailure) {
    Write({Deleted(1, "1/2005")});
    OsFiles others;
    const Result<RecordFile> held = RecordFile::OpenForWriting(others, File, 32);
    ASSERT_TRUE(held);
    const Sentences told = Undelete({Deleted(1, "1/2005")});
    ASSERT_EQ(told.size(), 2U);
    EXPECT_TRUE(told[1].ends_with("another running copy of the program is working with it.")) << told[1];
    EXPECT_EQ(ContentOf(File), Slots({Deleted(1, "1/2005")}));
}

} // namespace
} // namespace mact
