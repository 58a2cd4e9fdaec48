#include "reports/additional_hap_data.h"

#include "base/text.h"
#include "materials/material_store.h"
#include "reports/period_usage.h"
#include "store/steady_reading.h"

namespace mact {
namespace {

Result<AdditionalHapMaterial> Describe(const MaterialRecord& material, const PeriodUsage& usage) {
    const Result<double> pounds = usage.PoundsUsed(material);
    if (!pounds) return pounds.error();
    AdditionalHapMaterial described{.MaterialId = std::string(Trim(material.CustomId)), .Pounds = *pounds};
    for (std::size_t slot = 0; slot < PollutantCount; ++slot) {
        described.Contents[slot] = material.*PollutantContents[slot];
        described.Factors[slot] = material.*PollutantFactors[slot];
    }
    return described;
}

Result<AdditionalHapData> ReadAdditionalHap(const AppContext& app, const ReportMonths& months) {
    const Result<PeriodUsage> usage = ReadPeriodUsage(app, months.List);
    if (!usage) return usage.error();

    AdditionalHapData data{.Heading = HeadingOf(app, months),
                           .Names = SplitAdditionalNames(app.AdditionalNames)};
    std::optional<Failure> failure; // the first: a visit cannot be stopped, so the rest are skipped
    const Done read = VisitMaterials(app, [&](const MaterialRecord& material) {
        if (failure || !material.Active) return;
        Result<AdditionalHapMaterial> described = Describe(material, *usage);
        if (described)
            data.Materials.push_back(std::move(*described));
        else
            failure = described.error();
    });
    if (!read) return read.error();
    if (failure) return *failure;
    // Even if none of that usage is of these materials: the user is asked only if records are missing.
    data.HasRecords = !usage->IsEmpty() && !data.Materials.empty();
    return data;
}

} // namespace

Result<AdditionalHapData> FetchAdditionalHap(AppContext& app, const ReportPeriod& period) {
    const Result<ReportMonths> months = MonthsOf(period);
    if (!months) return months.error();
    const DataFiles data(app);
    const std::vector<std::filesystem::path> files{MaterialsFile(data), UsageFile(data),
                                                   AdditionalNamesFile(data)};
    return ReadSteadily(app.Files, files, [&]() -> Result<AdditionalHapData> {
        const Done named = ReadAdditionalNames(app);
        if (!named) return named.error();
        return ReadAdditionalHap(app, *months);
    });
}
} // namespace mact
