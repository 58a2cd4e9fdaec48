#include "base/text.h"
#include "materials/material_record.h"
#include "store/undo_file.h"
#include "tests/support/bytes.h"
#include "tests/support/test_program.h"
#include "usage/usage_changes.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

using Ids = std::vector<int>;

class UsageStoreTest : public testing::Test, public TestProgram {
protected:
    const std::filesystem::path File = DataFile("1_usage.talvor");

    void Save(std::int16_t materialId, const std::string& period) {
        EXPECT_FALSE(
            SaveUsage(App, {.MaterialId = materialId, .Period = period, .Quantity = 10, .Unit = UnitLbs}));
    }
    void WriteMaterials(const std::vector<MaterialRecord>& materials) {
        std::string content;
        for (const MaterialRecord& material : materials)
            content += Pack(MaterialLayout, material);
        WriteContent(DataFile("1_materials.talvor"), content);
    }
    Ids Found(const UsageFilter& filter) {
        std::vector<UsageRecord> results(3);
        const bool isFound = FindUsage(App, filter, results);
        EXPECT_EQ(isFound, !results.empty());
        Ids ids;
        for (const UsageRecord& usage : results)
            ids.push_back(usage.UsageId);
        return ids;
    }
};

TEST_F(UsageStoreTest, AMissingFileHasNoUsageAndTheFirstGetsNumber1) {
    EXPECT_EQ(Found({}), Ids{});
    Save(12, "3/2005");
    EXPECT_EQ(ContentOf(File), Hex("01 00") + Hex("0C 00") + "3/2005 " +
                                   Hex("00 00 00 00 00 00 24 40") + // 10
                                   Hex("02 00") + Hex("FF FF") + Zeros(9));
    EXPECT_EQ(Found({}), Ids{1});
}

TEST_F(UsageStoreTest, ADeletedRecordStaysAndItsNumberIsNotUsedAgain) {
    Save(1, "1/2005");
    Save(1, "2/2005");
    Save(1, "3/2005");
    EXPECT_FALSE(DeleteUsage(App, 2));
    Save(1, "4/2005");
    EXPECT_EQ(std::filesystem::file_size(File), 4U * 32);
    EXPECT_EQ(Found({}), (Ids{1, 3, 4}));
    EXPECT_EQ(Found({.UsageId = std::int16_t{2}}), Ids{});
    EXPECT_EQ(Found({.Active = false}), Ids{2});
}

TEST_F(UsageStoreTest, DeletingADeletedRecordIsRefusedAndChangesNothing) {
    Save(1, "1/2005");
    EXPECT_FALSE(DeleteUsage(App, 1));
    const std::string before = ContentOf(File);
    EXPECT_TRUE(DeleteUsage(App, 1));
    EXPECT_TRUE(DeleteUsage(App, 2));
    EXPECT_EQ(ContentOf(File), before);
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(UsageStoreTest, DeletingKeepsTheBytesOfTheFields) {
    WriteContent(File, Hex("01 00") + Hex("0C 00") + " 3/2005" + Hex("00 00 00 00 00 00 24 40") +
                           Hex("02 00") + Hex("FF FF") + "123456789");
    EXPECT_FALSE(DeleteUsage(App, 1));
    EXPECT_EQ(ContentOf(File), Hex("01 00") + Hex("0C 00") + " 3/2005" + Hex("00 00 00 00 00 00 24 40") +
                                   Hex("02 00") + Hex("00 00") + Zeros(9));
}

TEST_F(UsageStoreTest, SavingWithANumberOverwritesThatRecordAndMakesItLive) {
    Save(1, "1/2005");
    Save(1, "2/2005");
    EXPECT_FALSE(DeleteUsage(App, 1));
    EXPECT_FALSE(SaveUsage(App, {.UsageId = 1, .MaterialId = 9, .Period = "7/2005", .Active = false}));
    EXPECT_EQ(Found({.MaterialId = std::int16_t{9}}), Ids{1});
    EXPECT_EQ(std::filesystem::file_size(File), 2U * 32);
}

TEST_F(UsageStoreTest, TheBarsDelimitThePeriodsOfTheFilter) {
    Save(1, "11/2005");
    Save(1, "1/2005");
    Save(1, "1/20051");
    EXPECT_EQ(Found({.Periods = "1/2005"}), Ids{2});
    EXPECT_EQ(Found({.Periods = "2/2005|11/2005|1/2005|"}), (Ids{1, 2}));
    EXPECT_EQ(Found({.Periods = "1/200"}), Ids{});
}

TEST_F(UsageStoreTest, AMonthWithALeadingZeroIsAnotherPeriod) {
    Save(1, "03/2005");
    Save(1, "3/2005");
    EXPECT_EQ(Found({.Periods = "3/2005"}), Ids{2});
    EXPECT_EQ(Found({.Month = "03"}), Ids{1});
    EXPECT_EQ(Found({.Month = " 3 "}), Ids{2});
}

TEST_F(UsageStoreTest, APeriodOfDamagedBytesIsAPeriodLikeAnyOther) {
    for (const std::string& period : {std::string(7, '\xFF'), std::string(7, '\0'), std::string(7, '\x80')}) {
        Save(1, "1/2005");
        Save(1, period);
        EXPECT_EQ(Found({.Periods = period}).size(), 1U) << Hex(period);
    }
}

TEST_F(UsageStoreTest, ManyRecordsAreFoundInTheOrderOfTheFile) {
    std::string content;
    Ids expected;
    for (int number = 1; number <= 20000; ++number) { // more than one read of the file
        const int month = number * 7919 % 24;
        const bool isLive = number % 5 != 0;
        const int year = month < 12 ? 2004 : 2005;
        content += Pack(UsageLayout, {.UsageId = static_cast<std::int16_t>(number),
                                      .MaterialId = 1,
                                      .Period = std::to_string(1 + month % 12) + "/" + std::to_string(year),
                                      .Active = isLive});
        if (isLive && month >= 6 && month < 18) expected.push_back(number);
    }
    WriteContent(File, content);
    EXPECT_EQ(Found({.Periods = "7/2004|8/2004|9/2004|10/2004|11/2004|12/2004|"
                                "1/2005|2/2005|3/2005|4/2005|5/2005|6/2005"}),
              expected);
}

TEST_F(UsageStoreTest, AMaterialCountsAsSeenWithinTheDigitsOfAnEarlierOne) {
    Save(11, "1/2005");
    Save(1, "1/2005");
    Save(2, "1/2005");
    Save(12, "1/2005");
    Save(2, "2/2005");
    Save(112, "2/2005");
    EXPECT_EQ(Found({.OneRecordPerMaterial = true}), (Ids{1, 3, 4, 6}));
}

TEST_F(UsageStoreTest, ADeletedRecordHidesALaterLiveOneOfItsMaterial) {
    Save(5, "1/2005");
    Save(5, "2/2005");
    EXPECT_FALSE(DeleteUsage(App, 1));
    EXPECT_EQ(Found({.OneRecordPerMaterial = true}), Ids{});
}

TEST_F(UsageStoreTest, YearsAreComparedAsText) {
    Save(1, "1/2005");
    Save(1, "1/2006");
    Save(1, "1");
    Save(1, "1/05");
    EXPECT_EQ(Found({.Year = " 2005 "}), Ids{1});
    EXPECT_EQ(Found({.Year = ""}), Ids{3}); // a period without "/" has an empty year
    EXPECT_EQ(Found({.Year = "5"}), Ids{});
}

TEST_F(UsageStoreTest, TheMaterialTextFilterGoesThroughTheLiveMaterial) {
    WriteMaterials({
        {.MaterialId = 1,       .CustomId = "GC-100"},
        {               .MaterialId = 2, .CustomId = "GC-200"                    },
        { .MaterialId = 3,      .CustomId = "GC-100",                          .Active = false}
    });
    Save(1, "1/2005");
    Save(2, "1/2005");
    Save(3, "1/2005");
    Save(4, "1/2005");
    EXPECT_EQ(Found({.MaterialText = " gc-100 "}), Ids{1});
    EXPECT_EQ(Found({.MaterialText = ""}), Ids{});
}

TEST_F(UsageStoreTest, EveryFilterIsToBePassed) {
    Save(1, "1/2005");
    Save(2, "1/2005");
    Save(1, "2/2005");
    EXPECT_EQ(Found({.Periods = "1/2005", .MaterialId = std::int16_t{1}, .Year = "2005", .Month = "1"}),
              Ids{1});
}

TEST_F(UsageStoreTest, AFullFileTakesNoFurtherRecord) {
    WriteContent(File, "");
    std::filesystem::resize_file(File, std::uintmax_t{32767} * 32);
    EXPECT_TRUE(SaveUsage(App, {.MaterialId = 1, .Period = "1/2005"}));
    EXPECT_EQ(ShownTexts(), std::vector<std::string>{"Cannot add a record to the file \"" + PathText(File) +
                                                     "\": it is full, with 32767 records."});
    EXPECT_EQ(std::filesystem::file_size(File), std::uintmax_t{32767} * 32);
}

TEST_F(UsageStoreTest, AFileOfMoreThan32767SlotsIsShownOnceAndCountsAsEmpty) {
    WriteContent(File, "");
    std::filesystem::resize_file(File, std::uintmax_t{40000} * 32);
    EXPECT_EQ(Found({}), Ids{});
    EXPECT_EQ(Prompts.Shown.size(), 1U);
    EXPECT_TRUE(DeleteUsage(App, 1));
    EXPECT_EQ(Prompts.Shown.size(), 2U);
    EXPECT_EQ(std::filesystem::file_size(File), std::uintmax_t{40000} * 32);
}

TEST_F(UsageStoreTest, FileThatCannotBeReadIsReportedOnce) {
    std::filesystem::create_directory(File);
    EXPECT_EQ(Found({}), Ids{});
    EXPECT_EQ(Prompts.Shown.size(), 1U);
}

TEST_F(UsageStoreTest, AMaterialIsUsedByLiveRecordsOnly) {
    Save(1, "1/2005");
    Save(2, "1/2005");
    EXPECT_FALSE(DeleteUsage(App, 2));
    EXPECT_TRUE(*IsMaterialUsed(App, 1));
    EXPECT_FALSE(*IsMaterialUsed(App, 2));
    EXPECT_FALSE(*IsMaterialUsed(App, 3));
}

TEST_F(UsageStoreTest, WhetherAMaterialIsUsedCannotBeToldWithoutTheFile) {
    std::filesystem::create_directory(File);
    EXPECT_FALSE(IsMaterialUsed(App, 1));
}

TEST_F(UsageStoreTest, OperationsOnTheLargestFileStayQuick) {
    std::string content;
    for (int number = 1; number <= 32767; ++number)
        content += Pack(UsageLayout, {.UsageId = static_cast<std::int16_t>(number),
                                      .MaterialId = static_cast<std::int16_t>(number),
                                      .Period = "1/2005"});
    WriteContent(File, content);
    // If the cost grew with the square of the records, this would take billions of steps.
    EXPECT_EQ(Found({.OneRecordPerMaterial = true}).size(), 32767U);
}

TEST_F(UsageStoreTest, AFileThatWasCutAnywhereIsWorkedWithAndMendedByTheNextAppend) {
    Save(1, "1/2005");
    Save(2, "2/2005");
    Save(3, "3/2005");
    const std::string whole = ContentOf(File);
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        SCOPED_TRACE(length);
        WriteContent(File, whole.substr(0, length));
        std::vector<UsageRecord> results;
        FindUsage(App, {}, results);
        for (std::size_t index = 0; index < length / 32; ++index)
            EXPECT_EQ(results[index].UsageId, index + 1);
        Save(9, "9/2005");
        const std::string mended = ContentOf(File);
        EXPECT_EQ(mended.size() % 32, 0U);
        EXPECT_EQ(mended.substr(0, length / 32 * 32), whole.substr(0, length / 32 * 32));
        EXPECT_EQ(Found({.MaterialId = std::int16_t{9}}), Ids{static_cast<int>(mended.size() / 32)});
    }
    EXPECT_TRUE(Prompts.Shown.empty());
}

/// Materials 1 to 3 and a deleted 4; records 1 and 2 of 3/2005, record 3 of 4/2005.
class UsageTogetherTest : public UsageStoreTest {
protected:
    UsageTogetherTest() {
        std::vector<MaterialRecord> materials;
        for (const char* customId : {"GC-110", "R-1", "R-2", "R-3"})
            materials.push_back({.MaterialId = static_cast<std::int16_t>(materials.size() + 1),
                                 .CustomId = customId,
                                 .Active = customId != std::string("R-3")});
        WriteMaterials(materials);
        Save(1, "3/2005");
        Save(2, "3/2005");
        Save(1, "4/2005");
        m_before = ContentOf(File);
    }
    static UsageRecord Used(std::int16_t usageId, std::int16_t materialId, const std::string& period,
                            double quantity = 10) {
        return {.UsageId = usageId,
                .MaterialId = materialId,
                .Period = period,
                .Quantity = quantity,
                .Unit = UnitLbs};
    }
    static UsageChange New(std::int16_t materialId, const std::string& period, double quantity = 10) {
        return {.Record = Used(0, materialId, period, quantity), .AsRead = {}};
    }
    /// Another quantity for a record as it is now.
    UsageChange Edited(std::int16_t usageId, double quantity) {
        UsageChange change{.AsRead = ReadUsage(App, {.UsageId = usageId})->front()};
        change.Record = *change.AsRead;
        change.Record.Quantity = quantity;
        return change;
    }
    /// Each refused change with the reason. Nothing is written then.
    std::vector<std::string> Refused(const std::vector<UsageChange>& changes) {
        const std::string before = ContentOf(File);
        const Result<UsageOutcome> outcome = ChangeUsage(App, changes);
        EXPECT_TRUE(outcome);
        std::vector<std::string> refused;
        for (const RefusedChange& one : outcome->Refused)
            refused.push_back(std::to_string(one.Change) + ": " + one.Reason);
        EXPECT_EQ(ContentOf(File) == before, !refused.empty());
        EXPECT_EQ(outcome->Stored.empty(), !refused.empty());
        return refused;
    }
    using Texts = std::vector<std::string>;

    std::string m_before;
};

TEST_F(UsageTogetherTest, RecordsAreOverwrittenAndAppendedInTheOrderOfTheChanges) {
    UsageOutcome outcome;
    EXPECT_FALSE(SaveUsageTogether(App, {New(2, "4/2005", 7), Edited(1, 12), New(3, "4/2005", 8)}, outcome));
    ASSERT_EQ(outcome.Stored.size(), 3U);
    EXPECT_EQ(outcome.Stored[0].UsageId, 4);
    EXPECT_EQ(outcome.Stored[1].UsageId, 1);
    EXPECT_EQ(outcome.Stored[2].UsageId, 5);
    EXPECT_EQ(outcome.Stored[2].Quantity, 8);
    EXPECT_EQ(ContentOf(File), Pack(UsageLayout, Used(1, 1, "3/2005", 12)) + m_before.substr(32) +
                                   Pack(UsageLayout, Used(4, 2, "4/2005", 7)) +
                                   Pack(UsageLayout, Used(5, 3, "4/2005", 8)));
    EXPECT_TRUE(Prompts.Shown.empty());
    EXPECT_FALSE(std::filesystem::exists(UndoFileOf(File)));
}

TEST_F(UsageTogetherTest, NoChangesAreStoredWithoutTouchingTheFile) {
    std::filesystem::remove(File);
    UsageOutcome outcome;
    EXPECT_FALSE(SaveUsageTogether(App, {}, outcome));
    EXPECT_FALSE(std::filesystem::exists(File));
}

TEST_F(UsageTogetherTest, ARecordThatWasChangedMeanwhileIsNotOverwritten) {
    const UsageChange edit = Edited(2, 12);
    EXPECT_FALSE(SaveUsage(App, Used(2, 2, "3/2005", 11)));
    EXPECT_EQ(Refused({Edited(1, 5), edit}), Texts{"1: it has changed since it was looked at"});
    EXPECT_EQ(Refused({Edited(1, 5), Edited(2, 12)}), Texts{});
}

TEST_F(UsageTogetherTest, ARecordThatWasDeletedMeanwhileIsNotOverwritten) {
    const UsageChange edit = Edited(2, 12);
    EXPECT_FALSE(DeleteUsage(App, 2));
    EXPECT_EQ(Refused({edit}), Texts{"0: it has been deleted since"});
}

TEST_F(UsageTogetherTest, ANumberWithoutTheRecordAsItWasReadIsNotOverwritten) {
    UsageChange unread = Edited(2, 12);
    unread.AsRead.reset();
    EXPECT_EQ(Refused({unread}), Texts{"0: it has changed since it was looked at"});
    const UsageRecord unknown = Used(9, 2, "5/2005");
    EXPECT_EQ(Refused({
                  UsageChange{.Record = unknown, .AsRead = unknown}
    }),
              Texts{"0: it does not exist"});
}

TEST_F(UsageTogetherTest, AMonthThatTheMaterialHasByNowIsNotDoubled) {
    EXPECT_EQ(Refused({New(2, "4/2005"), New(1, "4/2005")}),
              Texts{"1: usage record 3 is of the same material and month"});
    UsageChange moved = Edited(1, 10);
    moved.Record.Period = "4/2005";
    EXPECT_EQ(Refused({moved}), Texts{"0: usage record 3 is of the same material and month"});
    EXPECT_FALSE(DeleteUsage(App, 3));
    EXPECT_EQ(Refused({moved}), Texts{});
}

TEST_F(UsageTogetherTest, RecordsThatChangePlacesAreNoRivals) {
    UsageChange first = Edited(1, 1);
    UsageChange third = Edited(3, 3);
    first.Record.Period = "4/2005";
    third.Record.Period = "3/2005";
    EXPECT_EQ(Refused({first, third}), Texts{});
    EXPECT_EQ(Found({.Periods = "4/2005"}), Ids{1});
}

TEST_F(UsageTogetherTest, OfSeveralRecordsOfAMonthTheFirstCanBeEdited) {
    Save(1, "3/2005"); // record 4, as an older version may have left it
    EXPECT_EQ(Refused({Edited(4, 5)}), Texts{"0: usage record 1 is of the same material and month"});
    EXPECT_EQ(Refused({Edited(1, 5)}), Texts{});
}

TEST_F(UsageTogetherTest, AMonthIsNotSavedTwiceAtOnce) {
    EXPECT_EQ(Refused({New(2, "5/2005"), New(2, " 5/2005")}),
              Texts{"1: another of these records is of the same material and month"});
}

TEST_F(UsageTogetherTest, UsageOfAMaterialThatIsGoneIsNotStored) {
    EXPECT_EQ(Refused({New(4, "3/2005"), New(9, "3/2005")}),
              (Texts{"0: its material 4 is deleted", "1: its material 9 does not exist"}));
}

TEST_F(UsageTogetherTest, WhatWasRefusedIsToldInOneSentence) {
    const UsageChange edit = Edited(1, 12);
    EXPECT_FALSE(DeleteUsage(App, 1));
    UsageOutcome outcome;
    EXPECT_TRUE(SaveUsageTogether(App, {edit}, outcome));
    EXPECT_TRUE(SaveUsageTogether(App, {edit, New(4, "3/2005"), New(1, "4/2005")}, outcome));
    EXPECT_EQ(outcome.Refused.size(), 3U);
    EXPECT_EQ(ShownTexts(), (Texts{"Cannot save the usage of GC-110 in 3/2005: it has been deleted since.",
                                   "Cannot save the usage of GC-110 in 3/2005: it has been deleted since, "
                                   "and 2 more cannot be saved."}));
    EXPECT_TRUE(SaveUsageTogether(App, {New(4, "3/2005")}, outcome));
    EXPECT_EQ(Prompts.LastText(),
              "Cannot save the usage of material 4 in 3/2005: its material 4 is deleted.");
}

TEST_F(UsageTogetherTest, AFileWithoutRoomForAllTakesNone) {
    std::filesystem::resize_file(File, std::uintmax_t{32766} * 32);
    const std::string before = ContentOf(File);
    UsageOutcome outcome;
    EXPECT_TRUE(SaveUsageTogether(App, {Edited(1, 5), New(2, "5/2005"), New(3, "5/2005")}, outcome));
    EXPECT_EQ(ShownTexts(), Texts{"Cannot add a record to the file \"" + PathText(File) +
                                  "\": it is full, with 32767 records."});
    EXPECT_TRUE(outcome.Stored.empty());
    EXPECT_TRUE(ContentOf(File) == before);
    EXPECT_FALSE(SaveUsageTogether(App, {Edited(1, 5), New(2, "5/2005")}, outcome));
    EXPECT_EQ(std::filesystem::file_size(File), std::uintmax_t{32767} * 32);
}

TEST_F(UsageTogetherTest, ARecordInAnotherSlotThanThatOfItsNumberIsNotTouched) {
    const std::string other = Pack(UsageLayout, Used(2, 3, "9/2004"));
    WriteContent(File, m_before.substr(0, 32) + other + m_before.substr(32, 32)); // 1, another 2, and 2
    const UsageChange change{.Record = Used(2, 2, "3/2005", 12), .AsRead = Used(2, 2, "3/2005")};
    EXPECT_EQ(Refused({change}), Texts{"0: it has changed since it was looked at"});
}

TEST_F(UsageTogetherTest, RecordsAreDeletedAndBroughtBackTogether) {
    UsageChange gone = Edited(1, 10);
    gone.Record.Active = false;
    EXPECT_EQ(Refused({gone, Edited(2, 5)}), Texts{});
    EXPECT_EQ(Found({}), (Ids{2, 3}));
    UsageChange back{.Record = *gone.AsRead, .AsRead = gone.Record};
    EXPECT_EQ(Refused({back, New(1, "3/2005")}),
              Texts{"1: another of these records is of the same material and month"});
    Save(1, "3/2005");
    EXPECT_EQ(Refused({back}), Texts{"0: usage record 4 is of the same material and month"});
    EXPECT_FALSE(DeleteUsage(App, 4));
    EXPECT_EQ(Refused({back}), Texts{});
    EXPECT_EQ(Found({}), (Ids{1, 2, 3}));
}

TEST_F(UsageTogetherTest, WhatWasStoredIsTakenBackByTheOppositeChanges) {
    UsageOutcome outcome;
    ASSERT_FALSE(SaveUsageTogether(App, {Edited(1, 0.1), New(2, "4/2005")}, outcome));
    UsageChange removed{.Record = outcome.Stored[1], .AsRead = outcome.Stored[1]};
    removed.Record.Active = false;
    const UsageChange restored{.Record = Used(1, 1, "3/2005"), .AsRead = outcome.Stored[0]};
    EXPECT_EQ(Refused({removed, restored}), Texts{});
    EXPECT_EQ(ContentOf(File), m_before + Pack(UsageLayout, removed.Record)); // its number stays used
}

TEST_F(UsageTogetherTest, AMaterialsFileThatCannotBeReadIsOneFailure) {
    std::filesystem::remove(DataFile("1_materials.talvor"));
    std::filesystem::create_directory(DataFile("1_materials.talvor"));
    UsageOutcome outcome;
    EXPECT_TRUE(SaveUsageTogether(App, {Edited(1, 12)}, outcome));
    EXPECT_EQ(Prompts.Shown.size(), 1U);
    EXPECT_EQ(ContentOf(File), m_before);
}

TEST_F(UsageTogetherTest, EverySecondRecordOfTheLargestFileIsOverwrittenAtOnce) {
    std::string content;
    std::string expected;
    std::vector<UsageChange> changes;
    for (int number = 1; number <= 32767; ++number) {
        UsageRecord record = Used(static_cast<std::int16_t>(number), 1, std::to_string(number));
        content += Pack(UsageLayout, record);
        if (number % 2 == 1) {
            changes.push_back({.Record = record, .AsRead = record});
            changes.back().Record.Quantity = record.Quantity = number;
        }
        expected += Pack(UsageLayout, record);
    }
    WriteContent(File, content);
    UsageOutcome outcome;
    EXPECT_FALSE(SaveUsageTogether(App, changes, outcome));
    EXPECT_TRUE(ContentOf(File) == expected);
}

class UsageListTest : public UsageStoreTest {
protected:
    UsageListTest() {
        WriteMaterials({
            {.MaterialId = 1, .CustomId = " GC-110 "},
            {.MaterialId = 2, .CustomId = "R-1"     }
        });
    }
    ListLines List(const std::vector<UsageRecord>& records) {
        ListLines list = {
            {"old", 1}
        };
        FillUsageList(App, list, records);
        return list;
    }
};

TEST_F(UsageListTest, ShowsMaterialIdAndPeriodOfLiveRecords) {
    EXPECT_EQ(List({
                  {.UsageId = 1, .MaterialId = 1, .Period = "3/2005"},
                  {.UsageId = 2, .MaterialId = 2, .Period = "4/2005", .Active = false},
                  {.UsageId = 3,            .MaterialId = 2,                .Period = "5/2005"       }
    }),
              (ListLines{{"GC-110 (3/2005)", 1}, {"R-1 (5/2005)", 3}}));
}

TEST_F(UsageListTest, ARecordWithoutMaterialGivesItsNumberToTheLineBefore) {
    EXPECT_EQ(List({
                  {.UsageId = 1, .MaterialId = 1, .Period = "3/2005"},
                  {.UsageId = 2, .MaterialId = 9, .Period = "4/2005"}
    }),
              (ListLines{{"GC-110 (3/2005)", 2}}));
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(UsageListTest, RecordsWithoutMaterialBeforeTheFirstLineAreOneFailure) {
    EXPECT_EQ(List({
                  {.UsageId = 1, .MaterialId = 9},
                  {.UsageId = 2, .MaterialId = 9}
    }),
              ListLines{});
    EXPECT_EQ(ShownTexts(),
              std::vector<std::string>{"Cannot list usage record 1: its material 9 does not exist."});
}

TEST(UsageYearsTest, AreListedOnceInTheOrderInWhichTheyAreMet) {
    ListLines list;
    FillUsageYears(list, {
                             {.Period = "1/2005"},
                             {.Period = "1/2003"},
                             {.Period = "2/2005"},
                             {.Period = "1/2001", .Active = false},
                             {.Period = "3/40000"                 },
                             {.Period = "1/x"},
                             {.Period = "1"                 }
    });
    EXPECT_EQ(list, (ListLines{
                        {"2005",  2005 },
                        {"2003",  2003 },
                        {"40000", 40000},
                        {"x",     0    },
                        {"",      0    }
    }));
}

} // namespace
} // namespace mact
