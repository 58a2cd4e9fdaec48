#include "reports/period_content.h"

#include "base/text.h"
#include "materials/material_record.h"
#include "reports/report_period.h"
#include "store/record_file.h"
#include "store/steady_reading.h"
#include "usage/usage_store.h"

#include <algorithm>

namespace mact {
namespace {

/// Empty if no report has the month: 03/2005.
std::optional<std::chrono::year_month> MonthOf(std::string_view key) {
    const std::string_view period = key.substr(1, key.size() - 2); // without its two "|"
    const std::optional<std::chrono::year_month> month = ParsePeriodEnd(period);
    return FormatMonthYear(month, false) == period ? month : std::nullopt;
}

} // namespace

void PeriodCounts::Add(std::string_view period) {
    const auto [counted, isNew] = m_counts.try_emplace(PeriodKey(period));
    ++counted->second;
    if (isNew) m_newest = std::max(m_newest, MonthOf(counted->first)); // none is less than any
}

std::size_t PeriodCounts::CountIn(std::string_view monthList) const {
    const std::string list = PeriodListKey(monthList);
    std::size_t records = 0;
    for (const auto& [key, count] : m_counts)
        if (list.find(key) != std::string::npos) records += count;
    return records;
}

Result<PeriodCounts> ReadPeriodCounts(const DataFiles& data) {
    const std::filesystem::path file = UsageFile(data);
    return ReadSteadily(data.Files, {file}, [&]() -> Result<PeriodCounts> {
        PeriodCounts counts;
        UsageRecord usage;
        const auto add = [&](std::int16_t, std::string_view slot) {
            UnpackOnly<&UsageRecord::Active, &UsageRecord::Period>(UsageLayout, slot, usage);
            if (usage.Active) counts.Add(usage.Period);
        };
        const Done read = ForEachSlotIfThere(data.Files, file, UsageLayout.SlotLength(), add);
        if (!read) return read.error();
        return counts;
    });
}

Result<std::size_t> CountMaterials(const DataFiles& data) {
    const std::filesystem::path file = MaterialsFile(data);
    return ReadSteadily(data.Files, {file}, [&]() -> Result<std::size_t> {
        std::size_t materials = 0;
        MaterialRecord material;
        const auto count = [&](std::int16_t, std::string_view slot) {
            UnpackOnly<&MaterialRecord::Active>(MaterialLayout, slot, material);
            if (material.Active) ++materials;
        };
        const Done read = ForEachSlotIfThere(data.Files, file, MaterialLayout.SlotLength(), count);
        if (!read) return read.error();
        return materials;
    });
}

std::string PeriodContent(const Result<PeriodCounts>& counts, std::optional<std::int16_t> month,
                          std::string_view year) {
    if (!counts) return "The usage cannot be read.";
    if (counts->IsEmpty()) return "No usage has been entered yet.";
    if (!month) return "Choose a month.";
    const Result<std::string> months = BuildPeriodList(std::to_string(*month) + '/' + std::string(year), 12);
    if (!months) return "Type a year from 1900 to 9999.";
    const std::size_t records = counts->CountIn(*months);
    if (records > 0) return Counted(records, "record");
    const std::optional<std::chrono::year_month> newest = counts->Newest();
    return newest ? "No usage; the newest is " + ShortMonthName(*newest) : "No usage";
}

std::string MaterialsContent(const Result<std::size_t>& materials) {
    if (!materials) return "The materials cannot be read.";
    return *materials == 0 ? "No materials have been entered yet." : Counted(*materials, "material");
}
} // namespace mact
