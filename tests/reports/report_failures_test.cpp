#include "materials/material_store.h"
#include "reports/reports.h"
#include "tests/reports/sample_company.h"
#include "tests/support/test_program.h"
#include "usage/usage_store.h"

#include <filesystem>
#include <limits>

#include <gtest/gtest.h>

namespace mact {
namespace {

struct ReportCase {
    const char* Name;
    std::int16_t (*Generate)(AppContext& app, const ReportPeriod& period);
    const char* FileName;
};
void PrintTo(const ReportCase& given, std::ostream* out) {
    *out << given.Name;
}

constexpr ReportCase CompliantCase{"CompliantMaterials", GenerateCompliantMaterialsReport,
                                   CompliantMaterialsFile};
constexpr ReportCase WeightedCase{"WeightedAverage", GenerateWeightedAverageReport, WeightedAverageFile};
constexpr ReportCase EmissionCase{"EmissionAverage", GenerateEmissionAverageReport, EmissionAverageFile};
constexpr ReportCase HapUsageCase{"AdditionalHapUsage", GenerateAdditionalHapUsageReport,
                                  AdditionalHapUsageFile};
constexpr ReportCase HapEmissionCase{"AdditionalHapEmission", GenerateAdditionalHapEmissionReport,
                                     AdditionalHapEmissionFile};

/// A report that fails shows one message and leaves the earlier page as it was.
class FailingReport : public testing::TestWithParam<ReportCase> {
protected:
    FailingReport() {
        StoreSampleCompany(Program.App);
        WriteContent(Program.ProgramFile(GetParam().FileName), "earlier");
    }
    TestProgram Program;

    void PutFolderInPlaceOf(const std::string& dataFile) {
        std::filesystem::remove(Program.DataFile(dataFile));
        std::filesystem::create_directory(Program.DataFile(dataFile));
    }
    void ExpectFailure(const ReportPeriod& period, const std::string& partOfMessage) {
        EXPECT_EQ(GetParam().Generate(Program.App, period), ReportFailed);
        ASSERT_EQ(Program.Prompts.Shown.size(), 1U);
        EXPECT_EQ(Program.Prompts.Shown[0].Kind, PromptKind::Failure);
        EXPECT_NE(Program.Prompts.LastText().find(partOfMessage), std::string::npos)
            << Program.Prompts.LastText();
        EXPECT_EQ(ContentOf(Program.ProgramFile(GetParam().FileName)), "earlier");
    }
};

using EveryReport = FailingReport;
TEST_P(EveryReport, UsageThatCannotBeReadIsAFailure) {
    PutFolderInPlaceOf("1_usage.talvor");
    ExpectFailure(SamplePeriod, "1_usage.talvor");
}

TEST_P(EveryReport, MaterialsThatCannotBeReadAreAFailure) {
    PutFolderInPlaceOf("1_materials.talvor");
    ExpectFailure(SamplePeriod, "1_materials.talvor");
}

TEST_P(EveryReport, NumbersOfADamagedMaterialThatAreNoneAreAFailure) {
    std::vector<MaterialRecord> materials;
    ASSERT_TRUE(FindMaterials(Program.App, {.CustomId = "PR-100"}, materials));
    MaterialRecord& material = materials.front();
    material.HapContent = std::numeric_limits<double>::quiet_NaN();
    material.*PollutantContents[0] = std::numeric_limits<double>::infinity();
    std::string file = ContentOf(Program.DataFile("1_materials.talvor"));
    const std::string slot = Pack(MaterialLayout, material);
    file.replace((static_cast<std::size_t>(material.MaterialId) - 1) * slot.size(), slot.size(), slot);
    WriteContent(Program.DataFile("1_materials.talvor"), file);
    ExpectFailure(SamplePeriod, "too large or not a number.");
}

TEST_P(EveryReport, EndWithoutMonthIsAFailure) {
    ExpectFailure({.EndText = "/2005"}, "\"/2005\"");
}

TEST_P(EveryReport, EndWithoutYearIsAFailure) {
    ExpectFailure({.EndText = "3/"}, "\"3/\"");
}

INSTANTIATE_TEST_SUITE_P(Reports, EveryReport,
                         testing::Values(CompliantCase, WeightedCase, EmissionCase, HapUsageCase,
                                         HapEmissionCase),
                         [](const auto& given) { return given.param.Name; });

class PeriodOnlyReport : public FailingReport {};
TEST_P(PeriodOnlyReport, EmptyEndIsAFailure) {
    ExpectFailure({}, "\"\" is not a month");
}
INSTANTIATE_TEST_SUITE_P(Reports, PeriodOnlyReport,
                         testing::Values(WeightedCase, EmissionCase, HapUsageCase, HapEmissionCase),
                         [](const auto& given) { return given.param.Name; });

class SummingReport : public FailingReport {};
TEST_P(SummingReport, SumThatIsTooLargeIsAFailure) {
    for (int time = 0; time < 2; ++time)
        ASSERT_FALSE(SaveUsage(Program.App,
                               {.MaterialId = 1, .Period = "3/2005", .Quantity = 1e308, .Unit = UnitLbs}));
    ExpectFailure(SamplePeriod, "\"PR-100\"");
}
INSTANTIATE_TEST_SUITE_P(Reports, SummingReport,
                         testing::Values(WeightedCase, EmissionCase, HapUsageCase, HapEmissionCase),
                         [](const auto& given) { return given.param.Name; });

class TypeTableReport : public FailingReport {};
TEST_P(TypeTableReport, TypeTableThatCannotBeReadIsAFailure) {
    PutFolderInPlaceOf("hapcontents.talvor");
    ExpectFailure(SamplePeriod, "hapcontents.talvor");
}
INSTANTIATE_TEST_SUITE_P(Reports, TypeTableReport, testing::Values(CompliantCase, WeightedCase, EmissionCase),
                         [](const auto& given) { return given.param.Name; });

class PollutantReport : public FailingReport {};
TEST_P(PollutantReport, NamesThatCannotBeReadAreAFailure) {
    PutFolderInPlaceOf("1_additional.talvor");
    ExpectFailure(SamplePeriod, "1_additional.talvor");
}
INSTANTIATE_TEST_SUITE_P(Reports, PollutantReport, testing::Values(HapUsageCase, HapEmissionCase),
                         [](const auto& given) { return given.param.Name; });

} // namespace
} // namespace mact
