#include "reports/compliant_materials_report.h"

#include "materials/material_store.h"
#include "reports/reports.h"
#include "tests/reports/sample_company.h"
#include "tests/support/test_program.h"
#include "usage/usage_store.h"

#include <array>

#include <gtest/gtest.h>

namespace mact {
namespace {

const ReportPeriod AllMaterials{};

TEST(CompliantRowTest, ContentEqualToTheLimitComplies) {
    EXPECT_TRUE(IsCompliant(CompliantRow{.HapContent = 33, .HapLimit = 33}));
}

TEST(CompliantRowTest, ContentAboveTheLimitDoesNotComply) {
    EXPECT_FALSE(IsCompliant(CompliantRow{.HapContent = 33.001, .HapLimit = 33}));
}

TEST(CompliantRowTest, WithoutALimitEveryContentComplies) {
    EXPECT_TRUE(IsCompliant(CompliantRow{.HapContent = 100}));
}

HapContentRecord TypeRow(const char* type, const char* method, double limit) {
    return {.MaterialType = type, .HapLimit = limit, .ApplicationMethod = method};
}
MaterialRecord Material(const char* type, const char* method) {
    return {.CustomId = " GC-1", .MaterialType = type, .ApplicationMethod = method, .Description = " Gel"};
}

TEST(LimitTableTest, TypeAndMethodMatchWithoutRegardToCaseAndBlanks) {
    const std::optional<CompliantRow> row =
        LimitTable({TypeRow(" R\xE9sine", "Spray ", 28)}).RowOf(Material("R\xC9SINE ", " spray"));
    ASSERT_TRUE(row);
    EXPECT_EQ(row->Method, "R\xE9sine/Spray");
    EXPECT_EQ(row->Material, "GC-1 - Gel");
    EXPECT_EQ(row->HapLimit, 28);
}

TEST(LimitTableTest, FirstMatchIsTaken) {
    const std::optional<CompliantRow> row =
        LimitTable({TypeRow("Resin", "All", 28), TypeRow("RESIN", "All", 99)})
            .RowOf(Material("resin", "All"));
    ASSERT_TRUE(row);
    EXPECT_EQ(row->HapLimit, 28);
}

TEST(LimitTableTest, MinusOneIsNoLimit) {
    const std::optional<CompliantRow> row =
        LimitTable({TypeRow("Resin", "All", -1)}).RowOf(Material("Resin", "All"));
    ASSERT_TRUE(row);
    EXPECT_FALSE(row->HapLimit);
}

TEST(LimitTableTest, MaterialOfAnotherMethodHasNoRow) {
    const LimitTable limits({TypeRow("Resin", "All", 28)});
    EXPECT_FALSE(limits.RowOf(Material("Resin", "Spray")));
    EXPECT_FALSE(limits.RowOf(Material("Gel", "All")));
}

class CompliantMaterialsReport : public testing::Test {
protected:
    TestProgram Program;

    std::string Page() const { return ContentOf(Program.ProgramFile("report.htm")); }
    bool HasPage() const { return std::filesystem::exists(Program.ProgramFile("report.htm")); }
    void Answer(PromptAnswer answer) { Program.Prompts.Answers = {answer}; }
    void UseSample() { StoreSampleCompany(Program.App); }
    std::size_t RowCount(std::string_view material) const {
        const std::string page = Page();
        std::size_t count = 0;
        for (std::size_t at = page.find(material); at != std::string::npos; at = page.find(material, at + 1))
            ++count;
        return count;
    }
};

TEST_F(CompliantMaterialsReport, AllMaterialsAreThePageWorkedOutByHand) {
    UseSample();
    EXPECT_EQ(GenerateCompliantMaterialsReport(Program.App, AllMaterials), ReportPublished);
    EXPECT_EQ(Page(), ExpectedPage("report_all.htm"));
}

TEST_F(CompliantMaterialsReport, UsedMaterialsAreThePageWorkedOutByHand) {
    UseSample();
    EXPECT_EQ(GenerateCompliantMaterialsReport(Program.App, SamplePeriod), ReportPublished);
    EXPECT_EQ(Page(), ExpectedPage("report.htm"));
}

TEST_F(CompliantMaterialsReport, MaterialUsedInThreeMonthsHasThreeRows) {
    UseSample();
    GenerateCompliantMaterialsReport(Program.App, SamplePeriod);
    EXPECT_EQ(RowCount("PR-100 - General purpose resin"), 3U);
}

TEST_F(CompliantMaterialsReport, FirstOfTwoMaterialsWithOneNumberIsTaken) {
    UseSample();
    MaterialRecord material = Material("Production resin", "Spray");
    material.MaterialId = 1;
    std::string slots;
    for (const char* description : {"first", "second"}) {
        material.Description = description;
        slots += Pack(MaterialLayout, material);
    }
    WriteContent(Program.DataFile("1_materials.talvor"), slots);
    GenerateCompliantMaterialsReport(Program.App, SamplePeriod);
    EXPECT_EQ(RowCount("GC-1 - first"), 3U);
    EXPECT_EQ(RowCount("GC-1 - second"), 0U);
}

TEST_F(CompliantMaterialsReport, WithoutMaterialsTheUserIsAsked) {
    EXPECT_EQ(GenerateCompliantMaterialsReport(Program.App, AllMaterials), ReportDeclined);
    EXPECT_EQ(Program.ShownTexts(),
              std::vector<std::string>{
                  "No record found on selected month/year. Do you still want to generate report?"});
}

TEST_F(CompliantMaterialsReport, NoLeavesTheEarlierReport) {
    WriteContent(Program.ProgramFile("report.htm"), "earlier");
    GenerateCompliantMaterialsReport(Program.App, AllMaterials);
    EXPECT_EQ(Page(), "earlier");
}

TEST_F(CompliantMaterialsReport, YesGivesTheEmptyPageOfAllMaterials) {
    UseSample();
    for (const std::int16_t id : std::to_array<std::int16_t>({1, 2, 3, 4, 5, 6, 8, 9, 10, 11}))
        ASSERT_FALSE(DeleteMaterial(Program.App, id, [](std::int16_t) { return Result<bool>(false); }));
    Answer(PromptAnswer::Yes);
    EXPECT_EQ(GenerateCompliantMaterialsReport(Program.App, AllMaterials), ReportPublished);
    EXPECT_EQ(Page(), ExpectedPage("report_all_empty.htm"));
}

TEST_F(CompliantMaterialsReport, YesGivesTheEmptyPageOfThePeriodWithoutUsage) {
    UseSample();
    WriteContent(Program.DataFile("1_usage.talvor"), "");
    Answer(PromptAnswer::Yes);
    EXPECT_EQ(GenerateCompliantMaterialsReport(Program.App, SamplePeriod), ReportPublished);
    EXPECT_EQ(Page(), ExpectedPage("report_empty.htm"));
}

TEST_F(CompliantMaterialsReport, UsageWithoutAnyMaterialIsAskedAboutToo) {
    ASSERT_FALSE(
        SaveUsage(Program.App, {.MaterialId = 1, .Period = "3/2005", .Quantity = 1, .Unit = UnitLbs}));
    EXPECT_EQ(GenerateCompliantMaterialsReport(Program.App, SamplePeriod), ReportDeclined);
    EXPECT_FALSE(HasPage());
}

TEST_F(CompliantMaterialsReport, MaterialsOfUnknownTypesGiveATableWithoutRowsAndNoQuestion) {
    ASSERT_FALSE(SaveMaterial(
        Program.App,
        {.CustomId = "XX-1", .MaterialType = "Putty", .Contents = "0|0|0|0|0|0", .Factors = "0|0|0|0|0|0"}));
    EXPECT_EQ(GenerateCompliantMaterialsReport(Program.App, AllMaterials), ReportPublished);
    EXPECT_TRUE(Page().ends_with("<b>Compliant</b></font></td></tr></table></div></body></html>\r\n"));
}

} // namespace
} // namespace mact
