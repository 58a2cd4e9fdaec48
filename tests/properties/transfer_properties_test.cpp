#include "materials/material_store.h"
#include "store/material_types.h"
#include "tests/support/memory_program.h"
#include "tests/support/random_data.h"
#include "transfer/transfer.h"
#include "usage/usage_store.h"

#include <array>

namespace mact {

// What goes from one company to another through text files.

namespace {

constexpr unsigned Cases = 100;

const std::vector<std::array<std::string, 2>> TypesAndMethods = {
    {"Production resin",          "Spray"         },
    {"production RESIN",          "Closed Molding"},
    {"Pigmented production gel",  "All"           },
    {"Production resin (Filled)", "Non-Spray"     },
};

/// As an import accepts them: with a description, and no Material ID twice.
std::vector<MaterialRecord> Materials(RandomData& data) {
    std::vector<MaterialRecord> materials(static_cast<std::size_t>(data.Int(0, 12)));
    std::int16_t number = 0;
    for (MaterialRecord& material : materials) {
        const auto typeAndMethod = data.Pick(TypesAndMethods);
        material = {.MaterialId = ++number,
                    .CustomId = "\xC9" + data.Text(20) + "-" + std::to_string(number),
                    .MaterialType = typeAndMethod[0],
                    .ApplicationMethod = typeAndMethod[1],
                    .Density = data.Number(0, 20),
                    .HapContent = data.Number(-5, 120),
                    .EmissionFactor = data.Number(0, 9),
                    .Comments = data.Text(50),
                    .Description = "x" + data.Text(80) + "x",
                    .Active = !data.OneIn(4),
                    .Filler = data.Number(0, 50)};
        for (std::size_t index = 0; index < 6; ++index) {
            material.*PollutantContents[index] = data.Number(0, 100);
            material.*PollutantFactors[index] = data.Number(0, 100);
        }
    }
    return materials;
}

/// No material and month twice; some records are of materials that do not exist.
std::vector<UsageRecord> Usage(RandomData& data, std::size_t materials) {
    std::vector<UsageRecord> usage;
    for (int material = 1; material <= static_cast<int>(materials) + 2; ++material)
        for (int month = data.Int(1, 12); month <= 12; month += data.Int(1, 6))
            usage.push_back({.UsageId = static_cast<std::int16_t>(usage.size() + 1),
                             .MaterialId = static_cast<std::int16_t>(material),
                             .Period = std::to_string(month) + "/" + std::to_string(data.Int(1999, 2011)),
                             .Quantity = data.Number(-10, 5000),
                             .Unit = data.Int16(1, 2),
                             .Active = !data.OneIn(4)});
    return usage;
}

class TwoCompanies {
public:
    TwoCompanies() {
        EXPECT_TRUE(CreateDefaultHapContents(m_from.App));
        EXPECT_TRUE(CreateDefaultHapContents(m_to.App));
    }
    void Fill(const std::vector<MaterialRecord>& materials, const std::vector<UsageRecord>& usage) {
        m_from.File(MaterialsFile(m_from.App)) = FileOf(MaterialLayout, materials);
        m_from.File(UsageFile(m_from.App)) = FileOf(UsageLayout, usage);
    }
    void MoveMaterials() {
        ExportMaterialFile(m_from.App, "file.txt", Exported, ExportErrors);
        m_to.File("file.txt") = m_from.File("file.txt");
        ImportMaterialFile(m_to.App, "file.txt", Processed, Errors);
    }
    void MoveUsage() {
        ExportUsageFile(m_from.App, "file.txt", Exported, ExportErrors);
        m_to.File("file.txt") = m_from.File("file.txt");
        ImportUsageFile(m_to.App, "file.txt", Processed, Errors);
    }
    std::string Materials() { return m_to.File(MaterialsFile(m_to.App)); }
    std::string Usage() { return m_to.File(UsageFile(m_to.App)); }

    int Exported = -1;
    std::optional<int> ExportErrors;
    int Processed = -1;
    int Errors = -1;

private:
    MemoryProgram m_from;
    MemoryProgram m_to;
};

TEST(TransferProperties, MaterialsComeOverButForWhatTheFileLacks) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomData data(seed);
        const std::vector<MaterialRecord> materials = Materials(data);
        TwoCompanies companies;
        companies.Fill(materials, {});
        companies.MoveMaterials();
        EXPECT_EQ(companies.Exported, static_cast<int>(materials.size()));
        EXPECT_EQ(companies.Errors, 0);
        std::vector<MaterialRecord> expected = materials;
        for (MaterialRecord& material : expected) {
            material.Active = true;
            material.EmissionFactor = 0;
            material.Comments.clear();
            material.Filler = 0;
        }
        EXPECT_TRUE(IsSameContent(companies.Materials(), FileOf(MaterialLayout, expected),
                                  MaterialLayout.SlotLength()));
    });
}

TEST(TransferProperties, UsageInPoundsOfLiveMaterialsComesOver) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomData data(seed);
        const std::vector<MaterialRecord> materials = Materials(data);
        const std::vector<UsageRecord> usage = Usage(data, materials.size());
        TwoCompanies companies;
        companies.Fill(materials, usage);
        companies.MoveMaterials();
        companies.MoveUsage();

        int withoutMaterial = 0;
        int inMgal = 0; // the import does not accept the word that the export writes
        std::vector<UsageRecord> expected;
        for (UsageRecord record : usage) {
            const auto material = static_cast<std::size_t>(record.MaterialId - 1);
            if (material >= materials.size() || !materials[material].Active) {
                ++withoutMaterial;
            } else if (record.Unit == UnitMgal) {
                ++inMgal;
            } else {
                record.UsageId = static_cast<std::int16_t>(expected.size() + 1);
                record.Active = true;
                expected.push_back(record);
            }
        }
        EXPECT_EQ(companies.Exported, static_cast<int>(usage.size()));
        EXPECT_EQ(companies.ExportErrors, withoutMaterial);
        EXPECT_EQ(companies.Errors, inMgal);
        EXPECT_EQ(companies.Processed, static_cast<int>(expected.size()) + inMgal);
        EXPECT_TRUE(
            IsSameContent(companies.Usage(), FileOf(UsageLayout, expected), UsageLayout.SlotLength()));
    });
}

TEST(TransferProperties, ASecondImportOfTheSameFileTakesNothing) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomData data(seed);
        const std::vector<MaterialRecord> materials = Materials(data);
        TwoCompanies companies;
        companies.Fill(materials, Usage(data, materials.size()));
        companies.MoveMaterials();
        companies.MoveUsage();
        const std::string materialsBefore = companies.Materials();
        const std::string usageBefore = companies.Usage();
        companies.MoveMaterials();
        EXPECT_EQ(companies.Errors, companies.Processed);
        companies.MoveUsage();
        EXPECT_EQ(companies.Errors, companies.Processed);
        EXPECT_TRUE(IsSameContent(companies.Materials(), materialsBefore, MaterialLayout.SlotLength()));
        EXPECT_TRUE(IsSameContent(companies.Usage(), usageBefore, UsageLayout.SlotLength()));
    });
}

} // namespace
} // namespace mact
