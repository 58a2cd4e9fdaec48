#include "tests/overview/overview_shop.h"

#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "store/companies.h"
#include "store/material_types.h"
#include "transfer/transfer.h"

#include <cstdio>
#include <cstdlib>

namespace mact {
namespace {

/// Ends the test at once if the shop cannot be made: it serves tests of windows too, which know no EXPECT.
void Require(bool isSo, const char* otherwise) {
    if (isSo) return;
    std::fprintf(stderr, "The test's shop cannot be made: %s\n", otherwise);
    std::abort();
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\r\n";
    return text;
}

/// Stores the material again, with the filler.
void SetFiller(AppContext& app, const std::string& customId, double filler) {
    std::vector<MaterialRecord> found;
    Require(FindMaterials(app, {.CustomId = customId}, found), "a material is missing");
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
    Require(!SaveMaterial(app, entry, material.MaterialId), "a material was not saved");
}

} // namespace

OverviewShop::OverviewShop() {
    Require(bool(CreateDefaultHapContents(App)), "there are no material types");
    const Result<std::int16_t> company = AddNewCompany(App, "Acme Boats", "Port Ellery");
    Require(company && *company == 1, "the company was not added");
}

void OverviewShop::ImportMaterials(const std::vector<std::string>& lines) {
    const std::filesystem::path file = ProgramFile("materials.txt");
    WriteContent(file, Joined(lines));
    int processed = 0;
    int errors = 0;
    ImportMaterialFile(App, file, processed, errors, {});
    Require(errors == 0, "a line was rejected");
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
    Require(errors == 0, "a line was rejected");
}
} // namespace mact
