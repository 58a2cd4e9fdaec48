#include "tests/overview/overview_shop.h"

#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "store/companies.h"
#include "store/material_types.h"
#include "transfer/transfer.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\r\n";
    return text;
}

/// Stores the material again, with the filler.
void SetFiller(AppContext& app, const std::string& customId, double filler) {
    std::vector<MaterialRecord> found;
    ASSERT_TRUE(FindMaterials(app, {.CustomId = customId}, found));
    const MaterialRecord& material = found.front();
    const MaterialEntry entry{.CustomId = material.CustomId,
                              .Description = material.Description,
                              .MaterialType = material.MaterialType,
                              .ApplicationMethod = material.ApplicationMethod,
                              .Density = material.Density,
                              .HapContent = material.HapContent,
                              .Contents = "0|0|0|0|0|0",
                              .Factors = "0|0|0|0|0|0",
                              .Filler = filler};
    ASSERT_FALSE(SaveMaterial(app, entry, material.MaterialId));
}

} // namespace

OverviewShop::OverviewShop() {
    EXPECT_TRUE(CreateDefaultHapContents(App));
    const Result<std::int16_t> company = AddNewCompany(App, "Acme Boats", "Port Ellery");
    EXPECT_TRUE(company && *company == 1);
}

void OverviewShop::ImportMaterials(const std::vector<std::string>& lines) {
    const std::filesystem::path file = ProgramFile("materials.txt");
    WriteContent(file, Joined(lines));
    int processed = 0;
    int errors = 0;
    ImportMaterialFile(App, file, processed, errors, {});
    EXPECT_EQ(errors, 0);
    for (const std::string& line : lines) {
        const std::vector<std::string_view> fields = Split(line, '|');
        if (fields.back() != "0")
            SetFiller(App, std::string(fields.front()), ParseNumber(fields.back()).value_or(0));
    }
}

void OverviewShop::ImportUsage(const std::vector<std::string>& lines) {
    const std::filesystem::path file = ProgramFile("usage.txt");
    WriteContent(file, Joined(lines));
    int processed = 0;
    int errors = 0;
    ImportUsageFile(App, file, processed, errors, {});
    EXPECT_EQ(errors, 0);
}
} // namespace mact
