#include "overview/shop_records.h"

#include "base/files.h"
#include "base/text.h"
#include "materials/material_record.h"
#include "store/record_file.h"
#include "store/steady_reading.h"
#include "usage/usage_record.h"

namespace mact {
namespace {

Done ReadTypes(const DataFiles& data, std::vector<HapContentRecord>& types) {
    return ForEachSlotIfThere(
        data.Files, HapContentsFile(data), HapContentLayout.SlotLength(),
        [&](std::int16_t, std::string_view slot) { Unpack(HapContentLayout, slot, types.emplace_back()); });
}

Done ReadLiveMaterials(const DataFiles& data, std::vector<ShopMaterial>& materials) {
    MaterialRecord read;
    return ForEachSlotIfThere(
        data.Files, MaterialsFile(data), MaterialLayout.SlotLength(),
        [&](std::int16_t number, std::string_view slot) {
            UnpackOnly<&MaterialRecord::Active, &MaterialRecord::MaterialId, &MaterialRecord::CustomId,
                       &MaterialRecord::MaterialType, &MaterialRecord::ApplicationMethod,
                       &MaterialRecord::Density, &MaterialRecord::HapContent, &MaterialRecord::EmissionFactor,
                       &MaterialRecord::Description, &MaterialRecord::Filler>(MaterialLayout, slot, read);
            if (!read.Active) return;
            materials.push_back({.Record = number,
                                 .MaterialId = read.MaterialId,
                                 .CustomId = std::move(read.CustomId),
                                 .Description = std::move(read.Description),
                                 .MaterialType = std::move(read.MaterialType),
                                 .ApplicationMethod = std::move(read.ApplicationMethod),
                                 .Density = read.Density,
                                 .HapContent = read.HapContent,
                                 .Filler = read.Filler,
                                 .EmissionFactor = read.EmissionFactor});
        });
}

Done ReadLiveUsage(const DataFiles& data, std::vector<ShopUse>& usage) {
    UsageRecord read;
    return ForEachSlotIfThere(data.Files, UsageFile(data), UsageLayout.SlotLength(),
                              [&](std::int16_t number, std::string_view slot) {
                                  Unpack(UsageLayout, slot, read);
                                  if (!read.Active) return;
                                  usage.push_back({.Record = number,
                                                   .MaterialId = read.MaterialId,
                                                   .Period = read.Period,
                                                   .Quantity = read.Quantity,
                                                   .Unit = read.Unit});
                              });
}

} // namespace

std::vector<std::filesystem::path> ShopFiles(const DataFiles& data) {
    return {HapContentsFile(data), MaterialsFile(data), UsageFile(data)};
}

Result<ShopRecords> ReadShopRecords(const DataFiles& data) {
    return ReadSteadily(data.Files, ShopFiles(data), [&]() -> Result<ShopRecords> {
        ShopRecords shop{.UsageName = PathText(UsageFile(data).filename())};
        const Done types = ReadTypes(data, shop.Types);
        if (!types) return types.error();
        const Done materials = ReadLiveMaterials(data, shop.Materials);
        if (!materials) return materials.error();
        const Done usage = ReadLiveUsage(data, shop.Usage);
        if (!usage) return usage.error();
        return shop;
    });
}
} // namespace mact
