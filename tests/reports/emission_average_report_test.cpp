#include "reports/emission_average_report.h"

#include "materials/material_store.h"
#include "reports/reports.h"
#include "tests/reports/sample_company.h"
#include "tests/support/test_program.h"
#include "usage/usage_store.h"

#include <cmath>

#include <gtest/gtest.h>

namespace mact {
namespace {

TEST(AmountInMgTest, IsRoundedToTwoDecimals) {
    EXPECT_EQ(AmountInMg(14050.6), 6.37); // 6.3733...
    EXPECT_EQ(AmountInMg(10), 0);         // 0.0045...
}

TEST(AmountInMgTest, IsZeroWithoutUse) {
    EXPECT_EQ(AmountInMg(0), 0);
    EXPECT_EQ(AmountInMg(-5000), 0);
}

TEST(EmissionTest, IsTheProductOfTheRoundedValuesUnrounded) {
    EXPECT_DOUBLE_EQ(Emission({.PointValue = 77.71, .Amount = 6.37}), 495.0127);
}

TEST(EmissionAverageDataTest, EmissionEqualToTheAllowanceComplies) {
    EXPECT_TRUE(IsCompliant(EmissionAverageData{.Emission = 460, .Allowance = 460}));
    EXPECT_FALSE(IsCompliant(EmissionAverageData{.Emission = 460.01, .Allowance = 460}));
}

// The kg of HAP per Mg equal the HAP content, so that sums can be done in one's head.
const HapContentRecord Linear{.MaterialType = "Resin",
                              .ApplicationMethod = " Spray ",
                              .EfCoefficient = 1,
                              .EfExponent = 1,
                              .EmissionLimit = 46};
constexpr double PoundsPerMg = 2204.6;

UsageRecord Use(std::int16_t materialId, double megagrams) {
    return {.MaterialId = materialId, .Quantity = megagrams * PoundsPerMg, .Unit = UnitLbs};
}

TEST(EmitMethodTest, AddsUpTheMaterials) {
    const Result<EmissionMethod> method =
        EmitMethod(Linear,
                   {
                       {.MaterialId = 1, .HapContent = 30},
                       {.MaterialId = 2, .HapContent = 40}
    },
                   PeriodUsage({Use(1, 2), Use(2, 5), Use(1, 1)}));
    ASSERT_TRUE(method);
    EXPECT_EQ(method->Method, "Spray");
    EXPECT_EQ(method->Amount, 8);
    EXPECT_EQ(method->Emission, 290); // 3 * 30 + 5 * 40
    EXPECT_EQ(method->EmissionLimit, 46);
}

TEST(EmitMethodTest, ThousandGallonsAreConvertedWithTheMaterialsDensity) {
    const Result<EmissionMethod> method =
        EmitMethod(Linear,
                   {
                       {.MaterialId = 1, .Density = 10, .HapContent = 30}
    },
                   PeriodUsage({{.MaterialId = 1, .Quantity = 0.22046, .Unit = UnitMgal}}));
    ASSERT_TRUE(method);
    EXPECT_EQ(method->Amount, 1);
}

TEST(EmitMethodTest, MaterialWithoutUseKeepsItsRow) {
    const Result<EmissionMethod> method = EmitMethod(Linear,
                                                     {
                                                         {.MaterialId = 1, .HapContent = 30}
    },
                                                     PeriodUsage({}));
    ASSERT_TRUE(method);
    ASSERT_EQ(method->Rows.size(), 1U);
    EXPECT_EQ(method->Rows[0].Amount, 0);
    EXPECT_EQ(method->Rows[0].PointValue, 30);
}

TEST(EmitMethodTest, FillerDoesNotReduceThePointValueOfAFilledResin) {
    HapContentRecord filled = Linear;
    filled.MaterialType = "Production resin (Filled)";
    TestProgram program;
    WriteContent(program.DataFile("1_materials.talvor"),
                 Pack(MaterialLayout, {.MaterialId = 1,
                                       .MaterialType = filled.MaterialType,
                                       .ApplicationMethod = filled.ApplicationMethod,
                                       .HapContent = 30,
                                       .Filler = 40}));
    const Result<MaterialsByMethod> materials = ReadMaterialsByMethod(program.App);
    ASSERT_TRUE(materials);
    const Result<EmissionMethod> method = EmitMethod(filled, materials->Of(filled), PeriodUsage({Use(1, 1)}));
    ASSERT_TRUE(method);
    ASSERT_EQ(method->Rows.size(), 1U);
    EXPECT_EQ(method->Rows[0].PointValue, 30);
    EXPECT_EQ(method->Emission, 30);
}

TEST(EmitMethodTest, AMaterialsOwnEmissionFactorDoesNotReplaceItsPointValue) {
    TestProgram program;
    WriteContent(program.DataFile("1_materials.talvor"),
                 Pack(MaterialLayout, {.MaterialId = 1,
                                       .MaterialType = Linear.MaterialType,
                                       .ApplicationMethod = Linear.ApplicationMethod,
                                       .HapContent = 30,
                                       .EmissionFactor = 7}));
    const Result<MaterialsByMethod> materials = ReadMaterialsByMethod(program.App);
    ASSERT_TRUE(materials);
    const Result<EmissionMethod> method = EmitMethod(Linear, materials->Of(Linear), PeriodUsage({Use(1, 1)}));
    ASSERT_TRUE(method);
    ASSERT_EQ(method->Rows.size(), 1U);
    EXPECT_EQ(method->Rows[0].PointValue, 30);
}

TEST(EmissionAveragePageTest, MaterialIdIsFilledWithBlanksToItsFieldAndKeepsThoseInFront) {
    const std::string longest(100, 'X');
    Result<EmissionMethod> method =
        EmitMethod(Linear,
                   {
                       {.MaterialId = 1, .CustomId = " GC-1"},
                       {.MaterialId = 2, .CustomId = longest}
    },
                   PeriodUsage({}));
    ASSERT_TRUE(method);
    EmissionAverageData data;
    data.Groups.push_back({.MaterialType = "Resin", .Methods = {*method}});
    const std::string html = BuildEmissionAverageHtml(data);
    EXPECT_NE(html.find(" (Material ID: GC-1" + std::string(95, ' ') + ")</td>"), std::string::npos) << html;
    EXPECT_NE(html.find(" (Material ID:" + longest + ")</td>"), std::string::npos) << html;
}

TEST(EmitMethodTest, InvalidPowerIsAFailureThatNamesTheMaterial) {
    HapContentRecord inverse = Linear;
    inverse.EfExponent = -1;
    const Result<EmissionMethod> method =
        EmitMethod(inverse,
                   {
                       {.MaterialId = 1, .CustomId = "GC-1", .HapContent = 0}
    },
                   PeriodUsage({}));
    ASSERT_FALSE(method);
    EXPECT_EQ(SentenceOf(method.error()), "Cannot calculate the point value of the material \"GC-1\": the "
                                          "result is too large or not a number.");
}

TEST(EmitMethodTest, EmissionThatIsTooLargeIsAFailure) {
    EXPECT_FALSE(EmitMethod(Linear,
                            {
                                {.MaterialId = 1, .HapContent = 1e200}
    },
                            PeriodUsage({Use(1, 1e150)})));
}

class EmissionAverageReport : public testing::Test {
protected:
    TestProgram Program;
    std::string Page() const { return ContentOf(Program.ProgramFile("report3.htm")); }
    bool Shows(const std::string& html) const { return Page().find(html) != std::string::npos; }
};

TEST_F(EmissionAverageReport, IsThePageWorkedOutByHand) {
    StoreSampleCompany(Program.App);
    EXPECT_EQ(GenerateEmissionAverageReport(Program.App, SamplePeriod), ReportPublished);
    EXPECT_EQ(Page(), ExpectedPage("report3.htm"));
}

TEST_F(EmissionAverageReport, MaterialUsedOutsideThePeriodHasARowWithAmountZero) {
    StoreSampleCompany(Program.App);
    GenerateEmissionAverageReport(Program.App, SamplePeriod);
    EXPECT_TRUE(Shows("<tr><td>All (Material ID:TG-1" + std::string(96, ' ') +
                      ")</td><td>40</td><td>214.69</td><td>0</td><td>0</td></tr>"
                      "<tr><td class='hl' colspan=3>All (TOTAL)</td><td colspan=2> Not Used</td></tr>"));
}

TEST_F(EmissionAverageReport, WithoutUsageBothTotalsAreZeroAndCompliantWithoutAQuestion) {
    StoreSampleCompany(Program.App);
    EXPECT_EQ(GenerateEmissionAverageReport(Program.App, {.EndText = "3/1999"}), ReportPublished);
    EXPECT_EQ(Program.Prompts.Shown.size(), 1U); // the one that says where the page was saved
    EXPECT_TRUE(
        Shows("<b>HAP Limit (kg/yr)  </font></td><td align='center'><font face='Verdana' size='1'>0</font>"
              "</td></tr>"));
    EXPECT_TRUE(
        Shows("<b>Compliant ?  </font></td><td align='center'><font color='green'>Yes</font></td></tr>"));
}

TEST_F(EmissionAverageReport, ClosedMoldingNeitherAppearsNorCountsInTheAllowance) {
    StoreSampleCompany(Program.App);
    GenerateEmissionAverageReport(Program.App, SamplePeriod);
    EXPECT_FALSE(Shows("Closed Molding"));
    EXPECT_FALSE(Shows("CM-1"));
}

TEST_F(EmissionAverageReport, TotalEqualToTheAllowanceIsCompliant) {
    // 10 Mg are used, and the type's limit and the material's point value are both 46 kg/Mg.
    HapContentRecord row = Linear;
    row.ApplicationMethod = "Spray";
    WriteContent(Program.DataFile("hapcontents.talvor"), Pack(HapContentLayout, row));
    ASSERT_FALSE(SaveMaterial(Program.App, {.CustomId = "R",
                                            .MaterialType = "Resin",
                                            .ApplicationMethod = "Spray",
                                            .HapContent = 46,
                                            .Contents = "0|0|0|0|0|0",
                                            .Factors = "0|0|0|0|0|0"}));
    ASSERT_FALSE(
        SaveUsage(Program.App, {.MaterialId = 1, .Period = "3/2005", .Quantity = 22046, .Unit = UnitLbs}));
    GenerateEmissionAverageReport(Program.App, SamplePeriod);
    EXPECT_TRUE(Shows("Total PV HAP Emissions (kg/yr)  </font></td><td align='center'>"
                      "<font face='Verdana' size='1'>460</font>"));
    EXPECT_TRUE(
        Shows("HAP Limit (kg/yr)  </font></td><td align='center'><font face='Verdana' size='1'>460</font>"));
    EXPECT_TRUE(Shows("<font color='green'>Yes</font>"));
}

TEST_F(EmissionAverageReport, MaterialIsListedUnderEachMatchingTypeRecord) {
    HapContentRecord row = Linear;
    row.ApplicationMethod = "Spray";
    WriteContent(Program.DataFile("hapcontents.talvor"),
                 Pack(HapContentLayout, row) + Pack(HapContentLayout, row));
    ASSERT_FALSE(SaveMaterial(Program.App, {.CustomId = "R",
                                            .MaterialType = "Resin",
                                            .ApplicationMethod = "Spray",
                                            .HapContent = 46,
                                            .Contents = "0|0|0|0|0|0",
                                            .Factors = "0|0|0|0|0|0"}));
    const Result<EmissionAverageData> data = FetchEmissionAverage(Program.App, SamplePeriod);
    ASSERT_TRUE(data);
    ASSERT_EQ(data->Groups.size(), 1U);
    ASSERT_EQ(data->Groups[0].Methods.size(), 2U);
    EXPECT_EQ(data->Groups[0].Methods[0].Rows.size(), 1U);
    EXPECT_EQ(data->Groups[0].Methods[1].Rows.size(), 1U);
}

} // namespace
} // namespace mact
