#include "reports/weighted_average_report.h"

#include "reports/reports.h"
#include "tests/reports/sample_company.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

TEST(AmountInKgTest, IsRoundedToTwoDecimals) {
    EXPECT_EQ(AmountInKg(1000), 453.6); // 453.597...
    EXPECT_EQ(AmountInKg(1), 0.45);
}

TEST(AmountInKgTest, IsZeroWithoutUse) {
    EXPECT_EQ(AmountInKg(0), 0);
    EXPECT_EQ(AmountInKg(-5), 0);
}

TEST(WeightedContentTest, IsHapInAHundredOfTheAmount) {
    EXPECT_EQ(WeightedContent({.Amount = 400, .Hap = 150}), 37.5);
    EXPECT_EQ(WeightedContent({.Amount = 3, .Hap = 1}), 33.33);
}

TEST(WeightedContentTest, IsZeroWithoutUseOrHap) {
    EXPECT_EQ(WeightedContent({.Amount = 0, .Hap = 150}), 0);
    EXPECT_EQ(WeightedContent({.Amount = 400, .Hap = 0}), 0);
}

TEST(WeightedAverageRowTest, ContentEqualToTheLimitComplies) {
    EXPECT_TRUE(IsCompliant(WeightedAverageRow{.Amount = 400, .Hap = 150, .HapLimit = 37.5}));
    EXPECT_FALSE(IsCompliant(WeightedAverageRow{.Amount = 400, .Hap = 150, .HapLimit = 37.49}));
}

TEST(WeightedAverageRowTest, RoundedContentIsCompared) {
    EXPECT_TRUE(IsCompliant(WeightedAverageRow{.Amount = 3, .Hap = 1, .HapLimit = 33.33}));
}

TEST(WeightedAverageRowTest, MethodWithoutUseComplies) {
    EXPECT_TRUE(IsCompliant(WeightedAverageRow{.HapLimit = 28}));
}

TEST(WeightedAverageRowTest, WithoutALimitEveryContentComplies) {
    EXPECT_TRUE(IsCompliant(WeightedAverageRow{.Amount = 1, .Hap = 1}));
}

TEST(IsFilledResinTest, CaseIsIgnored) {
    EXPECT_TRUE(IsFilledResin("Tooling resin (Filled)"));
    EXPECT_TRUE(IsFilledResin("PRODUCTION RESIN (filled)"));
    EXPECT_FALSE(IsFilledResin("Production resin"));
    EXPECT_FALSE(IsFilledResin("Gel coat (Filled)"));
}

const HapContentRecord Spray{.MaterialType = "Resin", .HapLimit = 28, .ApplicationMethod = " Spray "};

TEST(AverageMethodTest, AddsUpAmountsAndHapOfTheMaterials) {
    // 220.46 and 661.38 lbs are 100 and 300 kg.
    const PeriodUsage usage({
        {.MaterialId = 1, .Quantity = 220.46, .Unit = UnitLbs},
        {.MaterialId = 2, .Quantity = 661.38, .Unit = UnitLbs}
    });
    const Result<WeightedAverageRow> row =
        AverageMethod(Spray,
                      {
                          {.MaterialId = 1, .HapContent = 30},
                          {.MaterialId = 2, .HapContent = 40}
    },
                      usage);
    ASSERT_TRUE(row);
    EXPECT_EQ(row->Method, "Spray");
    EXPECT_EQ(row->Amount, 400);
    EXPECT_EQ(row->Hap, 150);
    EXPECT_EQ(WeightedContent(*row), 37.5);
    EXPECT_EQ(row->HapLimit, 28);
}

TEST(AverageMethodTest, ThousandGallonsAreConvertedWithTheMaterialsDensity) {
    const PeriodUsage usage({
        {.MaterialId = 1, .Quantity = 0.022046, .Unit = UnitMgal}
    });
    const Result<WeightedAverageRow> row = AverageMethod(Spray,
                                                         {
                                                             {.MaterialId = 1, .Density = 10}
    },
                                                         usage);
    ASSERT_TRUE(row);
    EXPECT_EQ(row->Amount, 100);
}

TEST(AverageMethodTest, MinusOneIsNoLimit) {
    const Result<WeightedAverageRow> row = AverageMethod({.HapLimit = -1}, {}, PeriodUsage({}));
    ASSERT_TRUE(row);
    EXPECT_FALSE(row->HapLimit);
}

TEST(AverageMethodTest, SumThatIsTooLargeIsAFailureThatNamesTypeAndMethod) {
    const PeriodUsage usage({
        {.MaterialId = 1, .Quantity = 1e308, .Unit = UnitLbs}
    });
    const Result<WeightedAverageRow> row = AverageMethod(Spray,
                                                         {
                                                             {.MaterialId = 1, .HapContent = 30}
    },
                                                         usage);
    ASSERT_FALSE(row);
    EXPECT_EQ(SentenceOf(row.error()),
              "Cannot average the HAP content of the material type \"Resin\" with the "
              "application method \"Spray\": the result is too large or not a number.");
}

TEST(WeightedAveragePageTest, WithoutALimitTheLimitCellSaysSo) {
    const std::string page = BuildWeightedAverageHtml(
        {.Groups = {{.MaterialType = "Resin", .Rows = {{.Method = "Infusion", .Amount = 100, .Hap = 50}}}}});
    EXPECT_NE(
        page.find("<tr><td><font face='Verdana' size='1'>Infusion</font></td>"
                  "<td align='center'><font face='Verdana' size='1'>0.1</font></td>"
                  "<td align='center'><font face='Verdana' size='1'><font face='Verdana' size='1'>No Limit"
                  "</font></font></td>"
                  "<td align='center'><font face='Verdana' size='1'>50</font></td>"
                  "<td align='center'><font face='Verdana' size='1' color='green'>Yes</font></td></tr>"),
        std::string::npos);
}

class WeightedAverageReport : public testing::Test {
protected:
    WeightedAverageReport() { StoreSampleCompany(Program.App); }
    TestProgram Program;
    std::string Page() const { return ContentOf(Program.ProgramFile("report2.htm")); }
};

TEST_F(WeightedAverageReport, IsThePageWorkedOutByHand) {
    EXPECT_EQ(GenerateWeightedAverageReport(Program.App, SamplePeriod), ReportPublished);
    EXPECT_EQ(Page(), ExpectedPage("report2.htm"));
}

TEST_F(WeightedAverageReport, FilledResinsAndClosedMoldingNeverAppear) {
    GenerateWeightedAverageReport(Program.App, SamplePeriod);
    EXPECT_EQ(Page().find("Filled"), std::string::npos);
    EXPECT_EQ(Page().find("Closed Molding"), std::string::npos);
}

TEST_F(WeightedAverageReport, WithoutUsageEveryMethodIsCompliantAndNothingIsAsked) {
    EXPECT_EQ(GenerateWeightedAverageReport(Program.App, {.EndText = "3/1999"}), ReportPublished);
    EXPECT_EQ(Program.Prompts.Shown.size(), 1U); // the one that says where the page was saved
    EXPECT_EQ(Page().find(">No<"), std::string::npos);
}

} // namespace
} // namespace mact
