#include "tests/transfer/transfer_fixture.h"

#include <set>

namespace mact {
namespace {

std::filesystem::path Sample(const std::string& name) {
    return std::filesystem::path(MACT_SOURCE_FOLDER) / "samples" / name;
}

class Samples : public TransferTest {
protected:
    void ImportGoodFiles() {
        ImportMaterialFile(App, Sample("materials.txt"), Processed, Errors);
        EXPECT_EQ(Errors, 0) << ContentOf(MaterialLogFile());
        ImportUsageFile(App, Sample("usage.txt"), Processed, Errors);
        EXPECT_EQ(Errors, 0) << ContentOf(UsageLogFile());
    }
    /// The pounds of production resin sprayed in the year, and the pounds of HAP in them.
    std::pair<double, double> SprayedResin(const std::string& year) {
        double pounds = 0;
        double hapPounds = 0;
        std::vector<MaterialRecord> materials;
        FindMaterials(App, {.MaterialType = "Production resin", .ApplicationMethod = "Spray"}, materials);
        for (const MaterialRecord& material : materials) {
            std::vector<UsageRecord> usage;
            FindUsage(App, {.MaterialId = material.MaterialId, .Year = year}, usage);
            for (const UsageRecord& record : usage) {
                const double used =
                    record.Unit == UnitLbs ? record.Quantity : record.Quantity * material.Density * 1000;
                pounds += used;
                hapPounds += used * material.HapContent / 100;
            }
        }
        return {pounds, hapPounds};
    }
};

TEST_F(Samples, TheGoodFilesImportWithoutErrors) {
    ImportGoodFiles();
    EXPECT_EQ(Materials().size(), 29U);
    EXPECT_EQ(Usage().size(), 619U);
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(Samples, EveryMaterialTypeOccurs) {
    ImportGoodFiles();
    std::set<std::string> types;
    for (const MaterialRecord& material : Materials())
        types.insert(material.MaterialType);
    EXPECT_EQ(types, (std::set<std::string>{"Production resin", "Pigmented production gel",
                                            "Clear production gel coat", "Tooling resin", "Tooling gel coat",
                                            "Production resin (Filled)", "Tooling resin (Filled)"}));
}

TEST_F(Samples, NamesBeyondAsciiAreWindows1252) {
    ImportGoodFiles();
    std::vector<MaterialRecord> found;
    ASSERT_TRUE(FindMaterials(App, {.CustomId = "GC-113"}, found));
    EXPECT_EQ(found[0].Description, "\xD8resund grey gel coat");
}

TEST_F(Samples, SprayedResinIsAboveItsLimitInTheLastYearOnly) {
    ImportGoodFiles();
    for (const auto& [year, isAbove] : {
             std::pair{"2003", false},
             {"2004", false},
             {"2005", true }
    }) {
        const auto [pounds, hapPounds] = SprayedResin(year);
        EXPECT_EQ(hapPounds / pounds * 100 > 28, isAbove) << year;
    }
}

TEST_F(Samples, TheMaterialsWithErrorsLeaveTheExpectedLog) {
    ImportGoodFiles();
    ImportMaterialFile(App, Sample("materials_with_errors.txt"), Processed, Errors);
    EXPECT_EQ(ContentOf(MaterialLogFile()), ContentOf(Sample("expected/material_import_errors.txt")));
    EXPECT_EQ(Processed, 15);
    EXPECT_EQ(Errors, 13);
}

TEST_F(Samples, TheUsageWithErrorsLeavesTheExpectedLog) {
    ImportGoodFiles();
    ImportUsageFile(App, Sample("usage_with_errors.txt"), Processed, Errors);
    EXPECT_EQ(ContentOf(UsageLogFile()), ContentOf(Sample("expected/usage_import_errors.txt")));
    EXPECT_EQ(Processed, 18);
    EXPECT_EQ(Errors, 14);
}

} // namespace
} // namespace mact
