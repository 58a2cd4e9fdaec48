#include "reports/additional_hap_data.h"

#include "base/text.h"
#include "materials/material_store.h"
#include "reports/period_usage.h"

namespace {

Done AddMaterial(std::vector<AdditionalHapMaterial>& materials, const MaterialRecord& material,
                 const PeriodUsage& usage) {
    const Result<double> pounds = usage.PoundsUsed(material);
    if (!pounds) return pounds.error();
    AdditionalHapMaterial& described = materials.emplace_back(
        AdditionalHapMaterial{.MaterialId = std::string(Trim(material.CustomId)), .Pounds = *pounds});
    for (std::size_t slot = 0; slot < PollutantCount; ++slot) {
        described.Contents[slot] = material.*PollutantContents[slot];
        described.Factors[slot] = material.*PollutantFactors[slot];
    }
    return Success();
}

} // namespace

Result<AdditionalHapData> FetchAdditionalHap(AppContext& app, const ReportPeriod& period) {
    const Result<ReportMonths> months = MonthsOf(period);
    if (!months) return months.error();
    const Done named = ReadAdditionalNames(app);
    if (!named) return named.error();
    const Result<PeriodUsage> usage = ReadPeriodUsage(app, months->List);
    if (!usage) return usage.error();

    AdditionalHapData data{.Heading = HeadingOf(app, *months),
                           .Names = SplitAdditionalNames(app.AdditionalNames)};
    Done described = Success();
    const Done read = VisitMaterials(app, [&](const MaterialRecord& material) {
        if (material.Active && described) described = AddMaterial(data.Materials, material, *usage);
    });
    if (!read) return read.error();
    if (!described) return described.error();
    data.HasRecords = !usage->IsEmpty() && !data.Materials.empty();
    return data;
}
