#include "tests/reports/sample_company.h"

#include "materials/material_store.h"
#include "store/data_folder.h"
#include "store/material_types.h"
#include "tests/support/test_program.h"
#include "usage/usage_store.h"

#include <filesystem>
#include <string_view>

#include <gtest/gtest.h>

namespace mact {
namespace {

// Code-page text: E9 is é, D8 is Ø, 80 is the euro sign.
const MaterialEntry Materials[] = {
    {.CustomId = "PR-100",
     .Description = "General purpose resin",
     .MaterialType = "Production resin",
     .ApplicationMethod = "Spray",
     .Density = 9.2,
     .HapContent = 35,
     .Contents = "1.5|10|0|3|20|0.5",
     .Factors = "100|50|0|7|12.5|1"},
    {.CustomId = "PR-200\xE9",
     .Description = "R\xE9sine",
     .MaterialType = " production RESIN",
     .ApplicationMethod = " spray",
     .Density = 9.5,
     .HapContent = 27.5,
     .Contents = "0|12|0|3|0|0",
     .Factors = "0|100|0|7|0|0"    },
    {.CustomId = "GC-\xD8"
                 "1",     .Description = "Gel coat at its limit",
     .MaterialType = "Pigmented production gel",
     .ApplicationMethod = "All",
     .Density = 10.5,
     .HapContent = 33,
     .Contents = "0|30|5|0|0|0",
     .Factors = "0|45|45|0|0|0"    },
    {.CustomId = "GC <b>7",
     .Description = "Clear & bright",
     .MaterialType = "Clear production gel coat",
     .ApplicationMethod = "All",
     .Density = 9,
     .HapContent = 48.1,
     .Contents = "0|0|0|0|0|0",
     .Factors = "0|0|0|0|0|0"      },
    {.CustomId = "CM-1",
     .Description = "Closed molding resin",
     .MaterialType = "Production resin",
     .ApplicationMethod = "Closed Molding",
     .Density = 9,
     .HapContent = 55,
     .Contents = "0|40|0|0|0|0",
     .Factors = "0|3|0|0|0|0"      },
    {.CustomId = "FR-1",
     .Description = "Filled resin",
     .MaterialType = "Production resin (Filled)",
     .ApplicationMethod = "Non-Spray",
     .Density = 11,
     .HapContent = 30,
     .Contents = "0|30|0|0|0|0",
     .Factors = "0|20|0|0|0|0",
     .Filler = 40},
    {.CustomId = "OLD-1",
     .Description = "Deleted resin",
     .MaterialType = "Production resin",
     .ApplicationMethod = "Spray",
     .Density = 9,
     .HapContent = 20,
     .Contents = "0|50|0|0|0|0",
     .Factors = "0|50|0|0|0|0"    },
    {.CustomId = "TR-\x80",
     .Description = "Tooling resin",
     .MaterialType = "Tooling resin",
     .ApplicationMethod = "Non-Spray",
     .Density = 8.75,
     .HapContent = 38.9,
     .Contents = "0|0|0|0|0.1|2.25",
     .Factors = "0|0|0|0|100|66.6"},
    {.CustomId = "XX-1",
     .Description = "Of no type in the table",
     .MaterialType = "Putty",
     .ApplicationMethod = "Spray",
     .Density = 12,
     .HapContent = 5,
     .Contents = "0|1|0|0|0|0",
     .Factors = "0|1|0|0|0|0"     },
    {.CustomId = "TG-1",
     .Description = "Used before the period only",
     .MaterialType = "Tooling gel coat",
     .ApplicationMethod = "All",
     .Density = 10,
     .HapContent = 40,
     .Contents = "0|30|0|0|0|0",
     .Factors = "0|30|0|0|0|0"    },
    {.CustomId = "PR-300",
     .Description = "Much styrene",
     .MaterialType = "Production resin",
     .ApplicationMethod = "Spray",
     .Density = 9,
     .HapContent = 31.25,
     .Contents = "0|42|0|0|0|0",
     .Factors = "0|85|0|0|0|0"    },
};
constexpr std::int16_t DeletedMaterial = 7;

const UsageRecord Usage[] = {
    {.MaterialId = 1,  .Period = "4/2004",  .Quantity = 1.5,    .Unit = UnitMgal},
    {.MaterialId = 1,  .Period = "5/2004",  .Quantity = 250.5,  .Unit = UnitLbs },
    {.MaterialId = 2,  .Period = "3/2005",  .Quantity = 4000,   .Unit = UnitLbs },
    {.MaterialId = 3,  .Period = "12/2004", .Quantity = 0.75,   .Unit = UnitMgal},
    {.MaterialId = 4,  .Period = "1/2005",  .Quantity = 1234.5, .Unit = UnitLbs },
    {.MaterialId = 5,  .Period = "5/2004",  .Quantity = 900,    .Unit = UnitLbs },
    {.MaterialId = 6,  .Period = "6/2004",  .Quantity = 2,      .Unit = UnitMgal},
    {.MaterialId = 7,  .Period = "7/2004",  .Quantity = 500,    .Unit = UnitLbs },
    {.MaterialId = 1,  .Period = "8/2004",  .Quantity = 9999,   .Unit = UnitLbs },
    {.MaterialId = 8,  .Period = "9/2004",  .Quantity = 0.333,  .Unit = UnitMgal},
    {.MaterialId = 9,  .Period = "10/2004", .Quantity = 100,    .Unit = UnitLbs },
    {.MaterialId = 10, .Period = "3/2004",  .Quantity = 700,    .Unit = UnitLbs },
    {.MaterialId = 4,  .Period = "03/2005", .Quantity = 5000,   .Unit = UnitLbs },
    {.MaterialId = 1,  .Period = "3/2005",  .Quantity = 0.1,    .Unit = UnitLbs },
    {.MaterialId = 99, .Period = "4/2004",  .Quantity = 10,     .Unit = UnitLbs },
    {.MaterialId = 11, .Period = "11/2004", .Quantity = 8.5,    .Unit = UnitMgal},
};
constexpr std::int16_t DeletedUsage = 9;

} // namespace

void StoreSampleCompany(AppContext& app) {
    app.CurrentCompanyName = "Chantier \xD8rsted & Fils, \xE9t\xE9";
    app.CurrentCompanyLocation = "Saint-Malo (\x80)";
    WriteContent(AdditionalNamesFile(app), "-|Styr\xE8ne|MMA|-|Acetone|Cobalt\r\n");
    ASSERT_TRUE(CreateDefaultHapContents(app));
    for (const MaterialEntry& material : Materials)
        ASSERT_FALSE(SaveMaterial(app, material));
    ASSERT_FALSE(DeleteMaterial(app, DeletedMaterial, [](std::int16_t) { return Result<bool>(false); }));
    for (const UsageRecord& usage : Usage)
        ASSERT_FALSE(SaveUsage(app, usage));
    ASSERT_FALSE(DeleteUsage(app, DeletedUsage));
}

std::string ExpectedPage(const std::string& fileName) {
    return ContentOf(std::filesystem::path(MACT_SOURCE_FOLDER) / "tests" / "data" / "reports" / fileName);
}
} // namespace mact
