#include "transfer/usage_import.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "store/data_folder.h"
#include "store/steady_reading.h"
#include "transfer/import_run.h"
#include "transfer/transfer_texts.h"
#include "usage/usage_changes.h"
#include "usage/usage_record.h"

namespace mact {
namespace {

constexpr std::size_t FieldCount = 5;
constexpr std::size_t PeriodLength = 7;     // as stored
constexpr std::size_t CustomIdLength = 100; // as stored

/// What usage is compared by: its period, ignoring case (1e0 is a month), and its Material ID, whose number
/// fits in two bytes. Usually short enough for std::string to hold without allocating.
std::string UsageKey(std::uint32_t customIdNumber, std::string_view period) {
    std::string key = UpperCase(period);
    key += static_cast<char>(customIdNumber & 0xFF);
    key += static_cast<char>(customIdNumber >> 8);
    return key;
}

/// The period as written, on purpose: one that is cut or trimmed when stored is never found again. Its
/// pieces, which can have 16 MB, are cut where the period is already longer than any that is stored.
std::string WrittenPeriod(std::string_view month, std::string_view year) {
    std::string period(month.substr(0, PeriodLength + 1));
    period += '/';
    period += year.substr(0, PeriodLength + 1);
    return period;
}

bool IsMonth(std::string_view text) {
    const std::optional<double> month = ParseNumber(text);
    return month && *month >= 1 && *month <= 12; // 1.5 and 1e0 too
}

/// 0 = none. "Mgal", which the export writes, is rejected on purpose.
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

Done UsageImport::Prepare(const DataFiles& data, RecordFile& usage) {
    const Done read = ReadSteadily(data.Files, {MaterialsFile(data)}, [&] { return TakeMaterials(data); });
    if (!read) return read;
    return ForEachRecord(usage, UsageLayout, [&](const UsageRecord& record) {
        if (record.Active) AddUsage(record.MaterialId, record.Period);
    });
}

Done UsageImport::TakeMaterials(const DataFiles& data) {
    m_customIds = TextNumbers(MostSlots);
    m_materialNumbers.clear();
    m_customIdNumbers = {};
    const auto add = [&](const MaterialRecord& material) {
        const std::uint32_t number = m_customIds.Add(ComparisonKey(material.CustomId));
        if (number == m_materialNumbers.size()) m_materialNumbers.push_back(material.MaterialId);
        std::optional<std::uint32_t>& known = m_customIdNumbers[material.MaterialId];
        if (!known) known = number; // if several materials have one number, the first counts
    };
    return VisitLiveMaterials<&MaterialRecord::MaterialId, &MaterialRecord::CustomId>(data, add);
}

void UsageImport::AddUsage(std::int16_t materialId, std::string_view storedPeriod) {
    // Under the Material ID, which two live materials may share. A deleted material's usage blocks no line.
    const std::optional<std::uint32_t> number = m_customIdNumbers[materialId];
    if (number) m_usage.Add(UsageKey(*number, Trim(storedPeriod)));
}

std::optional<std::uint32_t> UsageImport::FindCustomId(std::string_view text) const {
    // A longer one equals none that is stored; no key is made of it, which could have 16 MB.
    if (Trim(text).size() > CustomIdLength) return std::nullopt;
    return m_customIds.Find(ComparisonKey(text));
}

std::string_view UsageImport::Check(CheckedLine& checked) {
    // In this order: the log names only the first error of a line.
    const auto& [materialText, month, year, quantity, unit] = checked.Fields;
    const std::optional<std::uint32_t> customId = FindCustomId(materialText);
    if (!customId) return TransferTexts::MaterialUnknown;
    if (!IsMonth(month)) return TransferTexts::MonthInvalid;
    if (!IsNumeric(year)) return TransferTexts::YearInvalid; // any number passes, even -5
    std::string period = WrittenPeriod(month, year);
    if (m_usage.Contains(UsageKey(*customId, period))) return TransferTexts::UsageExists;
    const std::optional<double> number = ParseNumber(quantity);
    if (!number) return TransferTexts::QuantityNotNumeric;
    const std::int16_t unitCode = UnitOf(unit);
    if (unitCode == 0) return TransferTexts::UnitInvalid;
    checked.Usage = {.MaterialId = m_materialNumbers[*customId],
                     .Period = std::move(period),
                     .Quantity = *number,
                     .Unit = unitCode};
    return {};
}

Result<bool> UsageImport::ImportUsageLine(const ImportedLine& line, ImportOutput& output) {
    CheckedLine checked;
    if (!AcceptOrLog(line, output, checked, [this](CheckedLine& split) { return Check(split); })) return true;
    const Result<std::int16_t> number = output.NextNumber();
    if (!number) return number.error();
    checked.Usage.UsageId = *number;
    output.AppendRecord(UsageLayout, checked.Usage);
    AddUsage(checked.Usage.MaterialId, std::string_view(checked.Usage.Period).substr(0, PeriodLength));
    return false;
}

ImportCounts ImportUsage(AppContext& app, const std::filesystem::path& source,
                         const TransferWatcher& watcher) {
    UsageImport import;
    std::vector<StoredRecord<UsageRecord>> stored;
    ImportJob job{
        .Source = source,
        .Log = ImportErrorLog(app, TransferModule::Usage),
        .DataFile = UsageFile(app),
        .SlotLength = UsageLayout.SlotLength(),
        .Prepare = [&](RecordFile& usage) { return import.Prepare(app, usage); },
        .ImportLine = [&](const ImportedLine& line,
                          ImportOutput& output) { return import.ImportUsageLine(line, output); },
    };
    if (app.Changes)
        job.Imported = [&](RecordFile& file, std::int16_t first) {
            stored = NewRecords(file, UsageLayout, first);
        };
    ImportCounts counts;
    ShowFailure(app, RunImport(app.Files, job, watcher, counts));
    if (stored.empty()) return counts;
    std::string name = NameOfImport(source, stored.size());
    NoteUsageTogether(app, std::move(name), std::move(stored));
    return counts;
}

std::int16_t ImportUsageFile(AppContext& app, const std::filesystem::path& source, int& processedCount,
                             int& errorCount, const TransferWatcher& watcher) {
    const ImportCounts counts = ImportUsage(app, source, watcher);
    processedCount = counts.Processed;
    errorCount = counts.Errors;
    return 0;
}
} // namespace mact
