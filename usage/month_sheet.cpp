#include "usage/month_sheet.h"

#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "materials/units.h"
#include "store/steady_reading.h"
#include "usage/usage_entry.h"
#include "usage/usage_hint.h"
#include "usage/usage_store.h"

#include <algorithm>

namespace mact {
namespace {

constexpr int MonthsBefore = 12; ///< whose materials have a row
constexpr std::chrono::year_month LastMonthOfAll{std::chrono::year{9999}, std::chrono::December};

/// Of a period that a sheet can have; empty for any other text.
std::optional<std::chrono::year_month> MonthOf(std::string_view period) {
    const PeriodPieces pieces = SplitPeriod(period);
    if (pieces.Month.size() > 2 || !IsUsageYear(pieces.Year)) return std::nullopt;
    const std::chrono::year_month month{
        std::chrono::year{ParseInt16(pieces.Year).value_or(0)},
        std::chrono::month{static_cast<unsigned>(ParseInt16(pieces.Month).value_or(0))}};
    // Anything else than the very text is another period: 03/2005 is not 3/2005.
    if (!month.ok() || PeriodText(month) != Trim(period)) return std::nullopt;
    return month;
}

std::optional<std::int16_t> KnownUnit(std::int16_t unit) {
    if (unit != UnitMgal && unit != UnitLbs) return std::nullopt;
    return unit;
}

std::optional<double> PoundsOf(double quantity, std::int16_t unit, double density) {
    const Result<double> pounds = ConvertQuantity(quantity, density, unit, UnitLbs);
    if (!pounds) return std::nullopt;
    return *pounds;
}

} // namespace

Done SheetRecords::Take(const DataFiles& data) {
    m_materials.clear();
    m_usage.clear();
    m_byNumber = {};
    m_byCustomId.clear();
    const auto take = [&](const MaterialRecord& material) {
        std::uint16_t& place = m_byNumber[material.MaterialId];
        if (place != 0) return;
        m_materials.push_back({material.MaterialId, std::string(Trim(material.CustomId)),
                               std::string(Trim(material.Description)), material.Density});
        place = static_cast<std::uint16_t>(m_materials.size());
        m_byCustomId.emplace(ComparisonKey(material.CustomId), m_materials.size() - 1); // the first counts
    };
    const Done read = VisitLiveMaterials<&MaterialRecord::MaterialId, &MaterialRecord::CustomId,
                                         &MaterialRecord::Description, &MaterialRecord::Density>(data, take);
    if (!read) return read;
    return VisitUsage(data, [&](const UsageRecord& usage) {
        if (usage.Active) m_usage.push_back(usage);
    });
}

Result<SheetRecords> SheetRecords::Read(const DataFiles& data) {
    return ReadSteadily(data.Files, {MaterialsFile(data), UsageFile(data)}, [&]() -> Result<SheetRecords> {
        SheetRecords records;
        const Done read = records.Take(data);
        if (!read) return read.error();
        return records;
    });
}

const SheetMaterial* SheetRecords::Find(std::string_view customId) const {
    const auto found = m_byCustomId.find(ComparisonKey(customId));
    return found == m_byCustomId.end() ? nullptr : &m_materials[found->second];
}

const SheetMaterial* SheetRecords::Find(std::int16_t materialId) const {
    const std::uint16_t place = m_byNumber[materialId];
    return place == 0 ? nullptr : &m_materials[place - 1U];
}

std::chrono::year_month FirstSheetMonth(const SheetRecords& records, std::chrono::year_month today) {
    std::optional<std::chrono::year_month> newest;
    for (const UsageRecord& usage : records.Usage())
        newest = std::max(newest, MonthOf(usage.Period)); // none is less than any
    if (!newest) return today;
    return std::min(*newest + std::chrono::months{1}, LastMonthOfAll);
}

std::string PeriodText(std::chrono::year_month month) {
    return WholeNumberText(static_cast<unsigned>(month.month())) + '/' +
           WholeNumberText(static_cast<int>(month.year()));
}

MonthSheet::MonthSheet(const SheetRecords& records, std::chrono::year_month month)
    : m_records(&records), m_month(month) {
    std::unordered_map<std::string, int> periods; // how many months before
    for (int before = 0; before <= MonthsBefore; ++before)
        periods.emplace(PeriodText(month - std::chrono::months{before}), before);
    for (const UsageRecord& usage : records.Usage()) {
        const auto found = periods.find(ComparisonKey(usage.Period));
        if (found != periods.end()) TakeUsage(usage, found->second);
    }
    struct Place {
        std::string Key;
        const SheetMaterial* Material;
    };
    std::vector<Place> places;
    for (const SheetMaterial& material : records.Materials())
        if (m_used.contains(material.MaterialId))
            places.push_back({ComparisonKey(material.CustomId), &material});
    std::ranges::stable_sort(places, [](const Place& left, const Place& right) {
        return CompareIgnoringCase(left.Key, right.Key) < 0;
    });
    m_rows.reserve(places.size());
    for (const Place& place : places) {
        m_rowOf.emplace(place.Material->MaterialId, m_rows.size());
        PushRow(*place.Material);
    }
}

void MonthSheet::TakeUsage(const UsageRecord& usage, int monthsBefore) {
    const SheetMaterial* const material = m_records->Find(usage.MaterialId);
    if (!material) return;
    Used& used = m_used[usage.MaterialId];
    // Of several the first counts, which is the one that the editor lets pass.
    if (monthsBefore == 0 && used.Present)
        m_poundsWithoutRow += PoundsOf(usage.Quantity, usage.Unit, material->Density).value_or(0);
    else if (monthsBefore == 0)
        used.Present = &usage;
    else if (monthsBefore == 1 && !used.LastMonth)
        used.LastMonth = &usage;
    if (monthsBefore == 0 || (used.Newest && used.NewestBefore <= monthsBefore)) return;
    used.Newest = &usage;
    used.NewestBefore = monthsBefore;
}

SheetRow MonthSheet::RowFor(const SheetMaterial& material) const {
    SheetRow row{.Material = material};
    const auto found = m_used.find(material.MaterialId);
    if (found == m_used.end()) return row;
    const Used& used = found->second;
    if (used.LastMonth) row.LastMonth = *used.LastMonth;
    if (used.Newest) row.Unit = KnownUnit(used.Newest->Unit); // most likely again
    if (!used.Present) return row;
    row.Present = *used.Present;
    row.Quantity = NumberText(used.Present->Quantity);
    row.Unit = KnownUnit(used.Present->Unit);
    return row;
}

std::optional<std::size_t> MonthSheet::AddRow(std::string_view customId) {
    const SheetMaterial* const material = m_records->Find(customId);
    if (!material) return std::nullopt;
    const auto [place, isNew] = m_rowOf.emplace(material->MaterialId, m_rows.size());
    if (isNew) PushRow(*material);
    return place->second;
}

std::optional<std::size_t> MonthSheet::RowOf(std::int16_t materialId) const {
    const auto found = m_rowOf.find(materialId);
    if (found == m_rowOf.end()) return std::nullopt;
    return found->second;
}

void MonthSheet::PushRow(const SheetMaterial& material) {
    m_rows.push_back(RowFor(material));
    m_pounds.push_back(0);
    Weigh(m_rows.size() - 1);
}

void MonthSheet::Weigh(std::size_t row) {
    m_pounds[row] = Pounds(row).value_or(0);
}

void MonthSheet::EnterQuantity(std::size_t row, std::string_view text) {
    m_rows[row].Quantity = text;
    Weigh(row);
}

void MonthSheet::SelectUnit(std::size_t row, std::optional<std::int16_t> unit) {
    m_rows[row].Unit = unit;
    Weigh(row);
}

bool MonthSheet::CopyLastMonth(std::size_t row) {
    SheetRow& filled = m_rows[row];
    if (!filled.LastMonth) return false;
    filled.Quantity = NumberText(filled.LastMonth->Quantity);
    filled.Unit = KnownUnit(filled.LastMonth->Unit);
    Weigh(row);
    return true;
}

bool MonthSheet::IsEntered(std::size_t row) const {
    const SheetRow& entered = m_rows[row];
    const std::string_view quantity = Trim(entered.Quantity);
    if (!entered.Present) return !quantity.empty();
    return quantity != NumberText(entered.Present->Quantity) ||
           entered.Unit != KnownUnit(entered.Present->Unit);
}

bool MonthSheet::IsAnyEntered() const {
    for (std::size_t row = 0; row < m_rows.size(); ++row)
        if (IsEntered(row)) return true;
    return false;
}

UsageEntry MonthSheet::EntryOf(const SheetRow& row) const {
    return {.MaterialId = row.Material.MaterialId,
            .Month = static_cast<std::int16_t>(static_cast<unsigned>(m_month.month())),
            .Year = WholeNumberText(static_cast<int>(m_month.year())),
            .Quantity = row.Quantity,
            .Unit = row.Unit};
}

std::string MonthSheet::ErrorsOf(std::size_t row) const {
    return IsEntered(row) ? CheckUsageEntry(EntryOf(m_rows[row])).Text() : std::string();
}

std::string MonthSheet::DoubtOf(std::size_t row) const {
    if (!IsEntered(row)) return {};
    const SheetRow& entered = m_rows[row];
    const SheetMaterial& material = entered.Material;
    const std::int16_t present = entered.Present ? entered.Present->UsageId : std::int16_t{0};
    return DoubtOn(EntryOf(entered), material.Density,
                   MedianMonth(m_records->Usage(), material.MaterialId, material.Density, present));
}

std::vector<SheetError> MonthSheet::Errors() const {
    std::vector<SheetError> errors;
    for (std::size_t row = 0; row < m_rows.size(); ++row)
        if (std::string text = ErrorsOf(row); !text.empty()) errors.push_back({row, std::move(text)});
    return errors;
}

SheetChanges MonthSheet::Changes() const {
    SheetChanges changes;
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        if (!IsEntered(row) || !ErrorsOf(row).empty()) continue;
        const std::optional<UsageRecord>& present = m_rows[row].Present;
        changes.Changes.push_back(
            {RecordOf(EntryOf(m_rows[row]), present ? present->UsageId : std::int16_t{0}), present});
        changes.Rows.push_back(row);
    }
    return changes;
}

std::optional<double> MonthSheet::Pounds(std::size_t row) const {
    const SheetRow& entered = m_rows[row];
    // A record that is left as it is counts as it is stored, even in a unit that cannot be selected.
    if (entered.Present && !IsEntered(row))
        return PoundsOf(entered.Present->Quantity, entered.Present->Unit, entered.Material.Density);
    const std::optional<double> quantity = ParseNumber(Trim(entered.Quantity));
    if (!quantity || !entered.Unit) return std::nullopt;
    return PoundsOf(*quantity, *entered.Unit, entered.Material.Density);
}

double MonthSheet::Pounds() const {
    double pounds = m_poundsWithoutRow;
    for (const double ofRow : m_pounds)
        pounds += ofRow;
    return pounds;
}
} // namespace mact
