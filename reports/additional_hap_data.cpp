#include "reports/additional_hap_data.h"

#include "base/text.h"
#include "materials/material_store.h"
#include "reports/period_usage.h"

namespace mact {
namespace {

template <auto Member> auto Stored(std::string_view slot) {
    return Peek<MaterialLayout, Member>(slot);
}

template <std::size_t... Slot>
void SetPollutants(AdditionalHapMaterial& material, std::string_view record, std::index_sequence<Slot...>) {
    ((material.Contents[Slot] = Stored<PollutantContents[Slot]>(record)), ...);
    ((material.Factors[Slot] = Stored<PollutantFactors[Slot]>(record)), ...);
}

Done AddMaterial(std::vector<AdditionalHapMaterial>& materials, std::string_view record,
                 const PeriodUsage& usage) {
    const std::string_view customId = Trim(Stored<&MaterialRecord::CustomId>(record));
    const Result<double> pounds = usage.PoundsUsed(Stored<&MaterialRecord::MaterialId>(record),
                                                   Stored<&MaterialRecord::Density>(record), customId);
    if (!pounds) return pounds.error();
    AdditionalHapMaterial& material =
        materials.emplace_back(AdditionalHapMaterial{.MaterialId = std::string(customId), .Pounds = *pounds});
    SetPollutants(material, record, std::make_index_sequence<PollutantCount>());
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
    const Done read = VisitLiveMaterialSlots(app, [&](std::string_view record) {
        if (described) described = AddMaterial(data.Materials, record, *usage);
    });
    if (!read) return read.error();
    if (!described) return described.error();
    data.HasRecords = !usage->IsEmpty() && !data.Materials.empty();
    return data;
}

} // namespace mact
