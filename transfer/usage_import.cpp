#include "transfer/usage_import.h"

#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "store/data_folder.h"
#include "transfer/import_run.h"
#include "transfer/transfer_texts.h"
#include "usage/usage_record.h"

namespace mact {
namespace {

constexpr std::size_t FieldCount = 5;
constexpr std::size_t PeriodLength = 7; // as stored

/// Short enough for a string without memory of its own.
std::string UsageKey(std::uint32_t customIdNumber, std::string_view period) {
    std::string key = UpperCase(period);
    key += static_cast<char>(customIdNumber & 0xFF);
    key += static_cast<char>(customIdNumber >> 8);
    return key;
}

std::size_t Place(std::int16_t materialId) {
    return static_cast<std::uint16_t>(materialId);
}

bool IsMonth(std::string_view text) {
    const std::optional<double> month = ParseNumber(text);
    return month && *month >= 1 && *month <= 12;
}

/// 0 = none. The list of spellings also has "Mgal", which no upper-cased text equals: what the export writes
/// is rejected, on purpose.
std::int16_t UnitOf(std::string_view text) {
    if (EqualsIgnoringCase(text, "LBS") || EqualsIgnoringCase(text, "LB")) return UnitLbs;
    if (EqualsIgnoringCase(text, "MG") || EqualsIgnoringCase(text, "MGS")) return UnitMgal;
    return 0;
}

} // namespace

struct UsageImport::CheckedLine {
    std::array<std::string_view, FieldCount> Fields{};
    UsageRecord Usage{};
};

Done UsageImport::Prepare(AppContext& app, RecordFile& usage) {
    const Done read = VisitLiveMaterialSlots(app, [&](std::string_view slot) {
        const auto id = Peek<MaterialLayout, &MaterialRecord::MaterialId>(slot);
        const auto customId = Peek<MaterialLayout, &MaterialRecord::CustomId>(slot);
        const std::uint32_t number = m_customIds.Add(ComparisonKey(customId, m_key));
        if (number == m_materialIds.size()) m_materialIds.push_back(id);
        if (m_customIdNumbers[Place(id)] < 0) m_customIdNumbers[Place(id)] = static_cast<int>(number);
    });
    if (!read) return read;
    return ForEachRecord<UsageLayout>(usage, [&](const UsageRecord& record) {
        if (record.Active) AddUsage(record.MaterialId, record.Period);
    });
}

void UsageImport::AddUsage(std::int16_t materialId, std::string_view storedPeriod) {
    const int number = m_customIdNumbers[Place(materialId)];
    if (number >= 0) m_usage.Add(UsageKey(static_cast<std::uint32_t>(number), Trim(storedPeriod)));
}

std::string_view UsageImport::Check(CheckedLine& checked) {
    const auto& [materialText, month, year, quantity, unit] = checked.Fields;
    const auto customId = m_customIds.Find(ComparisonKey(materialText, m_key));
    if (!customId) return TransferTexts::MaterialUnknown;
    if (!IsMonth(month)) return TransferTexts::MonthInvalid;
    if (!IsNumeric(year)) return TransferTexts::YearInvalid;
    std::string period(month);
    period += '/';
    period += year;
    // The period as written against the stored ones, which are cut and trimmed: one that changes when it is
    // stored is never found again.
    if (m_usage.Contains(UsageKey(*customId, period))) return TransferTexts::UsageExists;
    const std::optional<double> number = ParseNumber(quantity);
    if (!number) return TransferTexts::QuantityNotNumeric;
    const std::int16_t unitCode = UnitOf(unit);
    if (unitCode == 0) return TransferTexts::UnitInvalid;
    checked.Usage = {.MaterialId = m_materialIds[*customId],
                     .Period = std::move(period),
                     .Quantity = *number,
                     .Unit = unitCode};
    return {};
}

Result<bool> UsageImport::ImportUsageLine(const ImportedLine& line, ImportOutput& output) {
    CheckedLine checked;
    if (IsRejected(line, output, checked, [this](CheckedLine& split) { return Check(split); })) return true;
    const Result<std::int16_t> number = output.NextNumber();
    if (!number) return number.error();
    checked.Usage.UsageId = *number;
    output.AppendRecord(UsageLayout, checked.Usage);
    AddUsage(checked.Usage.MaterialId, std::string_view(checked.Usage.Period).substr(0, PeriodLength));
    return false;
}

std::int16_t ImportUsageFile(AppContext& app, const std::filesystem::path& source, int& processedCount,
                             int& errorCount, const TransferWatcher& watcher) {
    UsageImport import;
    const ImportJob job{
        .Source = source,
        .Log = ImportErrorLog(app, TransferModule::Usage),
        .DataFile = UsageFile(app),
        .SlotLength = UsageLayout.SlotLength(),
        .Prepare = [&](RecordFile& usage) { return import.Prepare(app, usage); },
        .ImportLine = [&](const ImportedLine& line,
                          ImportOutput& output) { return import.ImportUsageLine(line, output); },
    };
    RunImport(app, job, watcher, processedCount, errorCount);
    return 0;
}

} // namespace mact
