#include "reports/additional_hap_emission_report.h"
#include "reports/additional_hap_usage_report.h"

#include "reports/reports.h"
#include "tests/reports/sample_company.h"
#include "tests/support/test_program.h"

#include <filesystem>

#include <gtest/gtest.h>

namespace mact {
namespace {

const PollutantNames Names = {"-", "Styrene", " - ", "-", "MMA", "Cobalt"};

TEST(IsListedTest, UnusedNamesAreNotListedExceptTheFirst) {
    EXPECT_TRUE(IsListed(Names, 0));
    EXPECT_TRUE(IsListed(Names, 1));
    EXPECT_FALSE(IsListed(Names, 2));
    EXPECT_FALSE(IsListed(Names, 3));
    EXPECT_TRUE(IsListed(Names, 5));
}

TEST(IsUsedTest, MaterialWithoutPoundsIsNotUsed) {
    EXPECT_TRUE(IsUsed({.Pounds = 0.001}));
    EXPECT_FALSE(IsUsed({.Pounds = 0}));
    EXPECT_FALSE(IsUsed({.Pounds = -1}));
}

TEST(KilogramsUsedTest, IsRoundedToTwoDecimals) {
    EXPECT_EQ(KilogramsUsed(1000), 453.6); // 453.597...
}

TEST(PollutantEmissionTest, IsTheEmittedShareOfTheContentInWholeKilograms) {
    EXPECT_EQ(PollutantEmission(50, 1000, 10), 50);
    EXPECT_EQ(PollutantEmission(12, 453.6, 100), 54); // 54.43...
}

TEST(PollutantEmissionTest, HalfAKilogramGoesToTheEvenNeighbour) {
    EXPECT_EQ(PollutantEmission(50, 1, 100), 0);
    EXPECT_EQ(PollutantEmission(50, 3, 100), 2);
    EXPECT_EQ(PollutantEmission(50, 5, 100), 2);
}

AdditionalHapMaterial MaterialOf(double pounds, double content, double factor) {
    return {
        .MaterialId = "GC-1", .Pounds = pounds, .Contents = {0, content},
                .Factors = {0, factor }
    };
}

TEST(AddUpEmissionsTest, EmissionsAreRoundedBeforeTheyAreAddedSoThatManySmallOnesAreNothing) {
    // 1 kg of a material with 40 % of the pollutant, all of it emitted: 0.4 kg, 1000 times
    const std::vector<AdditionalHapMaterial> materials(1000, MaterialOf(2.2046, 40, 100));
    const Result<PollutantTotals> totals = AddUpEmissions({.Names = Names, .Materials = materials});
    ASSERT_TRUE(totals);
    EXPECT_EQ(*totals, PollutantTotals{});
}

TEST(AddUpEmissionsTest, EachPollutantIsAddedUpInItsSlot) {
    const Result<PollutantTotals> totals = AddUpEmissions({
        .Names = Names, .Materials = {MaterialOf(2204.6, 40, 100), MaterialOf(2204.6, 10, 50)}
    });
    ASSERT_TRUE(totals);
    EXPECT_EQ(*totals, (PollutantTotals{0, 450, 0, 0, 0, 0}));
}

TEST(AddUpEmissionsTest, MaterialWithoutUseAddsNothing) {
    const Result<PollutantTotals> totals =
        AddUpEmissions({.Names = Names, .Materials = {MaterialOf(0, 40, 100)}});
    ASSERT_TRUE(totals);
    EXPECT_EQ(*totals, PollutantTotals{});
}

TEST(AddUpEmissionsTest, EmissionThatIsTooLargeIsAFailureThatNamesTheMaterial) {
    const Result<PollutantTotals> totals =
        AddUpEmissions({.Names = Names, .Materials = {MaterialOf(1e200, 1e200, 100)}});
    ASSERT_FALSE(totals);
    EXPECT_EQ(SentenceOf(totals.error()),
              "Cannot add up the additional HAP emissions of the material \"GC-1\": the "
              "result is too large or not a number.");
}

TEST(TotalOfNamedTest, UnusedNamesDoNotCount) {
    EXPECT_EQ(TotalOfNamed(Names, {1, 20, 300, 4000, 50000, 600000}), 650020);
}

TEST(AdditionalHapEmissionPageTest, TotalsAreGrouped) {
    const std::string page =
        BuildAdditionalHapEmissionHtml({.Names = Names, .HasRecords = true}, {0, 1234567, 0, 0, 0, 0});
    EXPECT_NE(page.find("Styrene<font></td><td align='center' valign='top'><font face='Verdana' size='1'>"
                        "1,234,567.00<font></td></tr>"),
              std::string::npos);
}

class AdditionalHapReports : public testing::Test {
protected:
    AdditionalHapReports() { StoreSampleCompany(Program.App); }
    TestProgram Program;

    std::string Page(const char* fileName) const { return ContentOf(Program.ProgramFile(fileName)); }
    void RemoveUsage() { WriteContent(Program.DataFile("1_usage.talvor"), ""); }
};

TEST_F(AdditionalHapReports, UsageIsThePageWorkedOutByHand) {
    EXPECT_EQ(GenerateAdditionalHapUsageReport(Program.App, SamplePeriod), ReportPublished);
    EXPECT_EQ(Page("report4.htm"), ExpectedPage("report4.htm"));
}

TEST_F(AdditionalHapReports, EmissionsAreThePageWorkedOutByHand) {
    EXPECT_EQ(GenerateAdditionalHapEmissionReport(Program.App, SamplePeriod), ReportPublished);
    EXPECT_EQ(Page("report5.htm"), ExpectedPage("report5.htm"));
}

TEST_F(AdditionalHapReports, MaterialUsedOutsideThePeriodIsAbsentFromTheUsage) {
    GenerateAdditionalHapUsageReport(Program.App, SamplePeriod);
    EXPECT_EQ(Page("report4.htm").find("TG-1"), std::string::npos);
}

TEST_F(AdditionalHapReports, WithoutUsageBothAsk) {
    RemoveUsage();
    EXPECT_EQ(GenerateAdditionalHapUsageReport(Program.App, SamplePeriod), ReportDeclined);
    EXPECT_EQ(GenerateAdditionalHapEmissionReport(Program.App, SamplePeriod), ReportDeclined);
    EXPECT_EQ(Program.Prompts.Shown.size(), 2U);
    EXPECT_FALSE(std::filesystem::exists(Program.ProgramFile("report4.htm")));
    EXPECT_FALSE(std::filesystem::exists(Program.ProgramFile("report5.htm")));
}

TEST_F(AdditionalHapReports, YesGivesTheEmptyPages) {
    RemoveUsage();
    Program.Prompts.Answers = {PromptAnswer::Yes, PromptAnswer::Yes};
    GenerateAdditionalHapUsageReport(Program.App, SamplePeriod);
    GenerateAdditionalHapEmissionReport(Program.App, SamplePeriod);
    EXPECT_EQ(Page("report4.htm"), ExpectedPage("report4_empty.htm"));
    EXPECT_EQ(Page("report5.htm"), ExpectedPage("report5_empty.htm"));
}

TEST_F(AdditionalHapReports, WithoutMaterialsTheyAskToo) {
    WriteContent(Program.DataFile("1_materials.talvor"), "");
    EXPECT_EQ(GenerateAdditionalHapUsageReport(Program.App, SamplePeriod), ReportDeclined);
}

TEST_F(AdditionalHapReports, NamesThatAreNotSixCountAsUnused) {
    WriteContent(Program.DataFile("1_additional.talvor"), "Styrene|MMA\r\n");
    GenerateAdditionalHapEmissionReport(Program.App, SamplePeriod);
    EXPECT_TRUE(
        Page("report5.htm")
            .ends_with("<b>HAP Emission (kg/12 months)</b></font></td></tr>"
                       "<tr><td align='right' valign='top'><font face='Verdana' size='1'><b>Total</b>"
                       "<font></td><td align='center' valign='top'><font face='Verdana' size='1'><b>0.00</b>"
                       "<font></td></tr></table></div></body></html>\r\n"));
}

} // namespace
} // namespace mact
