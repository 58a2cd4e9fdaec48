#include "materials/units.h"
#include "tests/usage/sheet_shop.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

class MonthSheetTest : public SheetShop {
protected:
    static std::chrono::year_month Month(int year, unsigned month) {
        return std::chrono::year{year} / std::chrono::month{month};
    }
    /// Saves the sheet and returns how much was refused and shown.
    std::size_t Save(const MonthSheet& sheet) {
        UsageOutcome outcome;
        const bool hasFailed = SaveUsageTogether(App, sheet.Changes().Changes, outcome);
        EXPECT_EQ(hasFailed, !Prompts.Shown.empty());
        return outcome.Refused.size() + Prompts.Shown.size();
    }
    /// Number, month, quantity and unit of each live record.
    Texts Stored() {
        Texts stored;
        const Result<std::vector<UsageRecord>> usage = ReadUsage(App);
        for (const UsageRecord& record : *usage)
            stored.push_back(std::to_string(record.UsageId) + ": " + std::to_string(record.MaterialId) + " " +
                             record.Period + " " + std::to_string(static_cast<int>(record.Quantity)) +
                             (record.Unit == UnitLbs ? " lbs" : " Mgal"));
        return stored;
    }
};

TEST_F(MonthSheetTest, TheFirstMonthIsTheOneAfterTheNewestWithUsage) {
    const std::int16_t resin = Add("R-1");
    EXPECT_EQ(FirstSheetMonth(Read(), March), March);
    Use(resin, "12/2004", 1);
    Use(resin, "2/2004", 1);
    EXPECT_EQ(FirstSheetMonth(Read(), March), Month(2005, 1));
    for (const char* period : {"", "13/2009", "03/2009", "3/09", "0/2009", "1e0/2009", "x", "3/1899"})
        Use(resin, period, 1);
    EXPECT_EQ(FirstSheetMonth(Read(), March), Month(2005, 1));
    Use(resin, "12/2006", 1);
    EXPECT_FALSE(DeleteUsage(App, 11));
    EXPECT_EQ(FirstSheetMonth(Read(), March), Month(2005, 1));
    Use(resin, " 3/2006", 1);
    EXPECT_EQ(FirstSheetMonth(Read(), March), Month(2006, 4));
    Use(resin, "12/9999", 1);
    EXPECT_EQ(FirstSheetMonth(Read(), March), Month(9999, 12));
}

TEST_F(MonthSheetTest, AMaterialUsedInTheTwelveMonthsBeforeHasARowInTheOrderOfTheIds) {
    Use(Add("r-20"), "3/2004", 1);
    Use(Add("GC-110"), "2/2005", 1);
    Use(Add("R-10"), "12/2004", 1);
    Use(Add("too old"), "2/2004", 1);
    Use(Add("later"), "4/2005", 1);
    Use(Add("not quite"), "02/2005", 1);
    Add("unused");
    Use(Add("deleted", 10, false), "2/2005", 1);
    Use(99, "2/2005", 1);
    EXPECT_EQ(RowsOf(Sheet()), (Texts{"GC-110 lbs", "R-10 lbs", "r-20 lbs"}));
}

TEST_F(MonthSheetTest, TwelveMonthsReachIntoTheYearBefore) {
    Use(Add("A"), "1/2004", 1);
    Use(Add("B"), "12/2003", 1);
    EXPECT_EQ(RowsOf(Sheet(Month(2005, 1))), Texts{"A lbs"});
    EXPECT_EQ(RowsOf(Sheet(Month(2004, 12))), (Texts{"A lbs", "B lbs"}));
}

TEST_F(MonthSheetTest, ARowKnowsItsMaterialAndWhatWasUsedLastMonth) {
    const std::int16_t resin = Add(" R-1 ", 9.5);
    Use(resin, "2/2005", 12.5, UnitMgal);
    Use(resin, "1/2005", 7);
    const MonthSheet sheet = Sheet();
    ASSERT_EQ(sheet.Rows().size(), 1U);
    const SheetRow& row = sheet.Rows().front();
    EXPECT_EQ(row.Material.MaterialId, resin);
    EXPECT_EQ(row.Material.CustomId, "R-1");
    EXPECT_EQ(row.Material.Description, "about  R-1");
    EXPECT_EQ(row.Material.Density, 9.5);
    ASSERT_TRUE(row.LastMonth);
    EXPECT_EQ(row.LastMonth->Quantity, 12.5);
    EXPECT_EQ(row.LastMonth->Unit, UnitMgal);
    EXPECT_FALSE(row.Present);
    EXPECT_EQ(row.Quantity, "");
}

TEST_F(MonthSheetTest, TheUnitIsThatOfTheNewestUsage) {
    const std::int16_t resin = Add("R-1");
    Use(resin, "12/2004", 1, UnitMgal);
    Use(resin, "6/2004", 1, UnitLbs);
    const std::int16_t damaged = Add("R-2");
    Use(damaged, "2/2005", 1, 7);
    const MonthSheet sheet = Sheet();
    EXPECT_EQ(RowsOf(sheet), (Texts{"R-1 Mgal", "R-2"}));
    EXPECT_FALSE(sheet.Rows()[0].LastMonth);
}

TEST_F(MonthSheetTest, ARecordThatTheMonthHasIsInItsRow) {
    const std::int16_t resin = Add("R-1");
    Use(resin, "2/2005", 5);
    Use(resin, "3/2005", 8, UnitMgal);
    Use(Add("R-2"), " 3/2005", 9); // used in this month alone
    const MonthSheet sheet = Sheet();
    EXPECT_EQ(RowsOf(sheet), (Texts{"R-1 8 Mgal", "R-2 9 lbs"}));
    EXPECT_EQ(sheet.Rows()[0].Present->UsageId, 2);
    EXPECT_EQ(sheet.Rows()[1].Present->UsageId, 3);
    EXPECT_FALSE(sheet.IsAnyEntered());
    EXPECT_TRUE(sheet.Changes().Changes.empty());
}

TEST_F(MonthSheetTest, OfSeveralRecordsOfAMonthTheFirstIsInTheRowAndAllAreCounted) {
    const std::int16_t resin = Add("R-1");
    Use(resin, "3/2005", 8);
    Use(resin, "3/2005", 100);
    Use(resin, "2/2005", 5);
    Use(resin, "2/2005", 6);
    const MonthSheet sheet = Sheet();
    EXPECT_EQ(RowsOf(sheet), Texts{"R-1 8 lbs"});
    EXPECT_EQ(sheet.Rows()[0].LastMonth->Quantity, 5);
    EXPECT_EQ(sheet.Pounds(), 108);
}

TEST_F(MonthSheetTest, AnyLiveMaterialIsAddedByItsTypedId) {
    Use(Add("R-1"), "2/2005", 1);
    Add("GC-110");
    Use(Add("R-9"), "2/2003", 1, UnitMgal);
    Add("gone", 10, false);
    MonthSheet sheet = Sheet();
    EXPECT_EQ(sheet.AddRow(" gc-110 "), std::size_t{1});
    EXPECT_EQ(sheet.AddRow("R-9"), std::size_t{2});
    EXPECT_EQ(sheet.AddRow("GC-110"), std::size_t{1}); // it has a row by now
    EXPECT_EQ(sheet.AddRow("r-1"), std::size_t{0});
    for (const char* unknown : {"", "gone", "R", "R-11"})
        EXPECT_FALSE(sheet.AddRow(unknown)) << unknown;
    EXPECT_EQ(RowsOf(sheet), (Texts{"R-1 lbs", "GC-110", "R-9"}));
    EXPECT_EQ(sheet.RowOf(2), std::size_t{1});
    EXPECT_FALSE(sheet.RowOf(4));
}

TEST_F(MonthSheetTest, OfTwoMaterialsWithOneIdTheFirstIsAdded) {
    const std::int16_t first = Add("R-1");
    Use(Add("r-1"), "2/2005", 1);
    MonthSheet sheet = Sheet();
    ASSERT_EQ(sheet.AddRow("R-1"), std::size_t{1});
    EXPECT_EQ(sheet.Rows()[1].Material.MaterialId, first);
}

TEST_F(MonthSheetTest, LastMonthsQuantityAndUnitAreCopied) {
    const std::int16_t resin = Add("R-1");
    Use(resin, "2/2005", 0.125, UnitMgal);
    Use(Add("R-2"), "1/2005", 3);
    MonthSheet sheet = Sheet();
    sheet.SelectUnit(0, UnitLbs);
    EXPECT_TRUE(sheet.CopyLastMonth(0));
    EXPECT_FALSE(sheet.CopyLastMonth(1));
    EXPECT_EQ(RowsOf(sheet), (Texts{"R-1 0.125 Mgal", "R-2 lbs"}));
}

TEST_F(MonthSheetTest, RowsLeftEmptyAreNeitherCheckedNorStored) {
    for (const char* customId : {"A", "B", "C"})
        Use(Add(customId), "2/2005", 1);
    MonthSheet sheet = Sheet();
    sheet.EnterQuantity(0, "  ");
    sheet.SelectUnit(0, {});
    sheet.EnterQuantity(2, " 12 ");
    EXPECT_TRUE(sheet.Errors().empty());
    const SheetChanges changes = sheet.Changes();
    ASSERT_EQ(changes.Rows, std::vector<std::size_t>{2});
    EXPECT_EQ(changes.Changes[0].Record.UsageId, 0);
    EXPECT_FALSE(changes.Changes[0].AsRead);
    EXPECT_EQ(Save(sheet), 0U);
    EXPECT_EQ(Stored(),
              (Texts{"1: 1 2/2005 1 lbs", "2: 2 2/2005 1 lbs", "3: 3 2/2005 1 lbs", "4: 3 3/2005 12 lbs"}));
}

TEST_F(MonthSheetTest, ARecordThatExistsIsEditedAndNotDoubled) {
    const std::int16_t resin = Add("R-1");
    Use(resin, "3/2005", 8);
    Use(Add("R-2"), "3/2005", 9);
    MonthSheet sheet = Sheet();
    sheet.EnterQuantity(0, "20");
    EXPECT_TRUE(sheet.IsAnyEntered());
    EXPECT_EQ(Save(sheet), 0U);
    EXPECT_EQ(Stored(), (Texts{"1: 1 3/2005 20 lbs", "2: 2 3/2005 9 lbs"}));
    EXPECT_EQ(Save(sheet), 2U); // changed meanwhile, and told
    sheet = Sheet();
    sheet.SelectUnit(1, UnitMgal);
    Prompts.Shown.clear();
    EXPECT_EQ(Save(sheet), 0U);
    EXPECT_EQ(Stored(), (Texts{"1: 1 3/2005 20 lbs", "2: 2 3/2005 9 Mgal"}));
}

TEST_F(MonthSheetTest, ARecordThatIsLeftAsItIsKeepsWhatCannotBeTyped) {
    Use(Add("R-1"), "3/2005", 0.1 + 0.2); // shown as 0.3
    Use(Add("R-2"), "3/2005", 5, 7);      // in no unit
    MonthSheet sheet = Sheet();
    EXPECT_EQ(RowsOf(sheet), (Texts{"R-1 0.3 lbs", "R-2 5"}));
    EXPECT_FALSE(sheet.IsAnyEntered());
    EXPECT_TRUE(sheet.Errors().empty());
    EXPECT_EQ(sheet.Pounds(1), 5 * 10 * 1000); // reports take it for Mgal
    sheet.EnterQuantity(1, "6");
    EXPECT_EQ(sheet.ErrorsOf(1), "- You must select unit.\r\n");
}

TEST_F(MonthSheetTest, EachFaultyRowHasTheMessagesOfTheUsageEditor) {
    for (const char* customId : {"A", "B", "C", "D"})
        Use(Add(customId), "2/2005", 1);
    Use(4, "3/2005", 8);
    MonthSheet sheet = Sheet();
    sheet.EnterQuantity(0, "5");
    sheet.EnterQuantity(1, "12,5");
    sheet.EnterQuantity(2, "x");
    sheet.SelectUnit(2, {});
    sheet.EnterQuantity(3, ""); // its record stays, since nothing here deletes it
    const std::vector<SheetError> errors = sheet.Errors();
    ASSERT_EQ(errors.size(), 3U);
    EXPECT_EQ(errors[0].Row, 1U);
    EXPECT_EQ(errors[0].Text, "- Quantity Used must ba a valid numeric value.\r\n");
    EXPECT_EQ(errors[1].Row, 2U);
    EXPECT_EQ(errors[1].Text,
              "- Quantity Used must ba a valid numeric value.\r\n- You must select unit.\r\n");
    EXPECT_EQ(errors[2].Row, 3U);
    EXPECT_EQ(errors[2].Text, "- Quantity Used must ba a valid numeric value.\r\n");
    EXPECT_EQ(sheet.ErrorsOf(0), "");
}

TEST_F(MonthSheetTest, PoundsAreThoseOfTheRowsAndOfTheMonth) {
    for (const char* customId : {"A", "B", "C", "D"})
        Use(Add(customId, 9), "2/2005", 1);
    Use(4, "3/2005", 8);
    MonthSheet sheet = Sheet();
    sheet.EnterQuantity(0, "100.5");
    sheet.EnterQuantity(1, " 0.5 ");
    sheet.SelectUnit(1, UnitMgal); // 500 gallons of 9 pounds
    sheet.EnterQuantity(2, "x");
    EXPECT_EQ(sheet.Pounds(0), 100.5);
    EXPECT_EQ(sheet.Pounds(1), 4500);
    EXPECT_FALSE(sheet.Pounds(2));
    EXPECT_EQ(sheet.Pounds(3), 8);
    EXPECT_EQ(sheet.Pounds(), 4608.5);
    sheet.EnterQuantity(0, "1e306");
    sheet.SelectUnit(0, UnitMgal);
    EXPECT_FALSE(sheet.Pounds(0));
    sheet.SelectUnit(0, {});
    EXPECT_FALSE(sheet.Pounds(0));
    EXPECT_EQ(sheet.Pounds(), 4508);
}

TEST_F(MonthSheetTest, AMaterialThatAnotherCopyHasEnteredMeanwhileIsRefusedAtItsRow) {
    for (const char* customId : {"A", "B"})
        Use(Add(customId), "2/2005", 1);
    MonthSheet sheet = Sheet();
    sheet.EnterQuantity(0, "5");
    sheet.EnterQuantity(1, "6");
    Use(2, "3/2005", 7);
    const SheetChanges changes = sheet.Changes();
    const Result<UsageOutcome> outcome = ChangeUsage(App, changes.Changes);
    ASSERT_TRUE(outcome);
    ASSERT_EQ(outcome->Refused.size(), 1U);
    EXPECT_EQ(changes.Rows[outcome->Refused[0].Change], 1U);
    EXPECT_EQ(outcome->Refused[0].Reason, "usage record 3 is of the same material and month");
}

TEST_F(MonthSheetTest, FilesThatCannotBeReadAreAFailure) {
    std::filesystem::create_directory(DataFile("1_usage.talvor"));
    EXPECT_FALSE(SheetRecords::Read(App));
}

/// If the cost grew with the square of the records, this would take billions of steps.
TEST_F(MonthSheetTest, TheLargestFilesMakeASheetOfTheirOwn) {
    std::string materials;
    std::string usage;
    for (int number = 1; number <= 32767; ++number) {
        const auto id = static_cast<std::int16_t>(number);
        materials += Pack(MaterialLayout, {.MaterialId = id, .CustomId = "R-" + std::to_string(number)});
        usage += Pack(UsageLayout, {.UsageId = id,
                                    .MaterialId = id,
                                    .Period = number % 2 == 0 ? "2/2005" : "3/2005",
                                    .Quantity = 1,
                                    .Unit = UnitLbs});
    }
    WriteContent(DataFile("1_materials.talvor"), materials);
    WriteContent(DataFile("1_usage.talvor"), usage);
    MonthSheet sheet = Sheet();
    ASSERT_EQ(sheet.Rows().size(), 32767U);
    EXPECT_EQ(sheet.Pounds(), 16384);
    for (std::size_t row = 0; row < sheet.Rows().size(); ++row)
        if (sheet.Rows()[row].Present) sheet.EnterQuantity(row, "2");
    EXPECT_EQ(sheet.Pounds(), 32768);
    EXPECT_TRUE(sheet.Errors().empty());
    EXPECT_EQ(Save(sheet), 0U);
}

TEST_F(MonthSheetTest, DoubtsAQuantityFarFromTheMaterialsMedianMonth) {
    const std::int16_t material = Add("GC-110");
    Use(material, "1/2005", 400);
    Use(material, "2/2005", 400);
    Use(material, "3/2005", 99999); // the record that is being edited
    MonthSheet sheet = Sheet();
    EXPECT_EQ(sheet.DoubtOf(0), ""); // it is stored, and nothing else is entered
    sheet.EnterQuantity(0, "2001");
    EXPECT_EQ(sheet.DoubtOf(0), "over five times 400 lbs, this material's median month");
    sheet.EnterQuantity(0, "400");
    EXPECT_EQ(sheet.DoubtOf(0), "");
    sheet.EnterQuantity(0, "79");
    EXPECT_EQ(sheet.DoubtOf(0), "under a fifth of 400 lbs, this material's median month");
    EXPECT_EQ(sheet.Changes().Changes.size(), std::size_t{1}); // saved all the same
}

} // namespace
} // namespace mact
