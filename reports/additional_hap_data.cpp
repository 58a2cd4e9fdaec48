#include "reports/additional_hap_data.h"

#include "base/text.h"
#include "materials/material_store.h"
#include "reports/period_usage.h"

namespace {

Result<AdditionalHapMaterial> DescribeMaterial(const MaterialRecord& material, const PeriodUsage& usage) {
    const Result<double> pounds = usage.PoundsUsed(material);
    if (!pounds) return pounds.error();
    AdditionalHapMaterial described{.MaterialId = std::string(Trim(material.CustomId)), .Pounds = *pounds};
    for (std::size_t slot = 0; slot < PollutantCount; ++slot) {
        described.Contents[slot] = material.*PollutantContents[slot];
        described.Factors[slot] = material.*PollutantFactors[slot];
    }
    return described;
}

} // namespace

Result<AdditionalHapData> FetchAdditionalHap(AppContext& app, const ReportPeriod& period) {
    const Result<ReportMonths> months = MonthsOf(period);
    if (!months) return months.error();
    const Done named = ReadAdditionalNames(app);
    if (!named) return named.error();
    const Result<PeriodUsage> usage = ReadPeriodUsage(app, months->List);
    if (!usage) return usage.error();
    const Result<std::vector<MaterialRecord>> materials = ReadMaterials(app);
    if (!materials) return materials.error();

    AdditionalHapData data{.Heading = HeadingOf(app, *months),
                           .Names = SplitAdditionalNames(app.AdditionalNames),
                           .HasRecords = !usage->IsEmpty() && !materials->empty()};
    for (const MaterialRecord& material : *materials) {
        Result<AdditionalHapMaterial> described = DescribeMaterial(material, *usage);
        if (!described) return described.error();
        data.Materials.push_back(std::move(*described));
    }
    return data;
}
