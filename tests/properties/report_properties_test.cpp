#include "reports/reports.h"
#include "tests/properties/simple_reports.h"
#include "tests/support/memory_program.h"
#include "tests/support/random_data.h"
#include "tests/support/test_program.h"

#include <functional>

namespace mact {

// The five reports compared with a second calculation.

namespace {

constexpr unsigned Cases = 200;

const std::vector<std::string> TypeNames = {
    "Production resin", "production resin", "Tooling gel coat", "Production resin (Filled)", "resin",
    "Clear gel"};
const std::vector<std::string> MethodNames = {"Spray", "SPRAY", "Closed Molding", "closed molding", "All"};

std::vector<HapContentRecord> Types(RandomData& data) {
    std::vector<HapContentRecord> types(static_cast<std::size_t>(data.Int(1, 10)));
    for (HapContentRecord& type : types)
        type = {.MaterialType = data.Pick(TypeNames),
                .HapLimit = data.OneIn(4) ? -1.0 : data.Int(20, 50),
                .ApplicationMethod = data.Pick(MethodNames),
                .EfCoefficient = data.Number(0, 1),
                .EfExponent = data.Number(0, 2),
                .EmissionLimit = data.Number(10, 300)};
    return types;
}

std::vector<MaterialRecord> Materials(RandomData& data) {
    std::vector<MaterialRecord> materials(static_cast<std::size_t>(data.Int(0, 10)));
    std::int16_t number = 0;
    for (MaterialRecord& material : materials) {
        material = {.MaterialId = ++number,
                    .CustomId = data.Text(12) + "x",
                    .MaterialType = data.Pick(TypeNames),
                    .ApplicationMethod = data.Pick(MethodNames),
                    .Density = data.Number(0, 12),
                    .HapContent = data.OneIn(3) ? data.Int(20, 50) : data.Number(0, 60),
                    .Description = data.Text(40),
                    .Active = !data.OneIn(6),
                    .Filler = data.Number(0, 50)};
        for (std::size_t slot = 0; slot < 6; ++slot) {
            material.*PollutantContents[slot] = data.Number(0, 60);
            material.*PollutantFactors[slot] = data.Number(0, 100);
        }
    }
    return materials;
}

/// In and around the months of the reports; in some shops so little that every rounding shows.
std::vector<UsageRecord> Usage(RandomData& data) {
    std::vector<UsageRecord> usage(static_cast<std::size_t>(data.Int(0, 40)));
    const bool isLittle = data.OneIn(3);
    std::int16_t number = 0;
    for (UsageRecord& record : usage)
        record = {.UsageId = ++number,
                  .MaterialId = data.Int16(1, 12),
                  .Period = (data.OneIn(8) ? "0" : "") + std::to_string(data.Int(1, 12)) + "/" +
                            std::to_string(data.Int(2004, 2006)),
                  .Quantity = isLittle ? data.Number(0, 1) / 10 : data.Number(data.OneIn(5) ? -200 : 0, 900),
                  .Unit = isLittle ? UnitLbs : data.Int16(1, 2),
                  .Active = !data.OneIn(5)};
    return usage;
}

/// From the last month backwards.
std::vector<std::string> TwelveMonths(int month, int year) {
    std::vector<std::string> months;
    for (int count = 0; count < 12; ++count) {
        months.push_back(std::to_string(month) + "/" + std::to_string(year));
        year -= month == 1 ? 1 : 0;
        month = month == 1 ? 12 : month - 1;
    }
    return months;
}

class RandomShop {
public:
    explicit RandomShop(unsigned seed) : m_data(seed) {
        m_files = {.Types = Types(m_data), .Materials = Materials(m_data), .Usage = Usage(m_data)};
        for (std::string& name : m_files.Names)
            name = m_data.Pick<std::string>({"-", " - ", "MMA", "Styrene", "\xC9ther"});
        // The program looks for the names file in the real folder before it reads it.
        m_program.App.ProgramFolder = m_folder.Path();
        std::filesystem::create_directory(m_folder.Path() / "data");
        WriteContent(AdditionalNamesFile(m_program.App), "");
        std::string& names = m_program.File(AdditionalNamesFile(m_program.App));
        for (const std::string& name : m_files.Names)
            names += (names.empty() ? "\"" : "|") + name;
        names += '"';
        m_program.File(HapContentsFile(m_program.App)) = FileOf(HapContentLayout, m_files.Types);
        m_program.File(MaterialsFile(m_program.App)) = FileOf(MaterialLayout, m_files.Materials);
        m_program.File(UsageFile(m_program.App)) = FileOf(UsageLayout, m_files.Usage);
        const int month = m_data.Int(1, 12);
        const int year = m_data.Int(2004, 2006);
        m_period.EndText = std::to_string(month) + "/" + std::to_string(year);
        Months = TwelveMonths(month, year);
    }

    const ShopFiles& Files() const { return m_files; }
    std::vector<std::string> Months;

    using Report = std::int16_t (*)(AppContext&, const ReportPeriod&);
    Rows Of(Report report, const char* file) { return Generate(report, file, m_period); }
    Rows OfAllMaterials() { return Generate(GenerateCompliantMaterialsReport, CompliantMaterialsFile, {}); }

private:
    Rows Generate(Report report, const char* file, const ReportPeriod& period) {
        m_program.Prompts.Answers = {PromptAnswer::Yes};
        EXPECT_EQ(report(m_program.App, period), ReportPublished);
        return RowsOfPage(m_program.File(m_program.App.ProgramFolder / file));
    }

    RandomData m_data;
    TemporaryFolder m_folder;
    MemoryProgram m_program;
    ShopFiles m_files;
    ReportPeriod m_period;
};

TEST(ReportProperties, CompliantMaterialsAreThoseOfASecondCalculation) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomShop shop(seed);
        EXPECT_EQ(shop.OfAllMaterials(), CompliantRows(shop.Files()));
        EXPECT_EQ(shop.Of(GenerateCompliantMaterialsReport, CompliantMaterialsFile),
                  CompliantRows(shop.Files(), shop.Months));
    });
}

TEST(ReportProperties, WeightedAveragesAreThoseOfASecondCalculation) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomShop shop(seed);
        EXPECT_EQ(shop.Of(GenerateWeightedAverageReport, WeightedAverageFile),
                  WeightedAverageRows(shop.Files(), shop.Months));
    });
}

TEST(ReportProperties, EmissionAveragesAreThoseOfASecondCalculation) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomShop shop(seed);
        EXPECT_EQ(shop.Of(GenerateEmissionAverageReport, EmissionAverageFile),
                  EmissionAverageRows(shop.Files(), shop.Months));
    });
}

TEST(ReportProperties, AdditionalUsageIsThatOfASecondCalculation) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomShop shop(seed);
        EXPECT_EQ(shop.Of(GenerateAdditionalHapUsageReport, AdditionalHapUsageFile),
                  AdditionalUsageRows(shop.Files(), shop.Months));
    });
}

TEST(ReportProperties, AdditionalEmissionsAreThoseOfASecondCalculation) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomShop shop(seed);
        EXPECT_EQ(shop.Of(GenerateAdditionalHapEmissionReport, AdditionalHapEmissionFile),
                  AdditionalEmissionRows(shop.Files(), shop.Months));
    });
}

} // namespace
} // namespace mact
