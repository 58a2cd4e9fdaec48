#pragma once

#include "base/app_context.h"
#include "base/list_lines.h"
#include "store/data_folder.h"
#include "usage/usage_record.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace mact {

/// The monthly usage records of a company, in data/<company>_usage.talvor.
///
/// Quantities stay in the unit in which they were entered; reports convert them. Every routine opens and
/// closes the file itself. FindUsage, SaveUsage, DeleteUsage and FillUsageList show a failure once
/// (ShowError), and what they cannot read counts as empty; the others return it.

/// A filter that is left out matches everything.
struct UsageFilter {
    std::optional<std::int16_t> UsageId{};
    /// Joined by "|", as in 1/2005|2/2005; one more "|" at the end lets empty periods pass.
    std::optional<std::string> Periods{};
    std::optional<std::int16_t> MaterialId{};
    std::optional<std::string> MaterialText{}; ///< the Material ID of the record's live material
    std::optional<std::string> Year{};         ///< compared as text
    std::optional<std::string> Month{};        ///< compared as text: 03 is not 3
    /// Only the first matching record of each material. A MaterialId that occurs within the digits of an
    /// earlier one (2 after 12) counts as seen, and so does that of a deleted record.
    bool OneRecordPerMaterial = false;
    bool Active = true;
};
/// Fills `results` in file order and returns true; empties it and returns false if nothing matches.
bool FindUsage(AppContext& app, const UsageFilter& filter, std::vector<UsageRecord>& results);

/// The records that pass, in file order.
Result<std::vector<UsageRecord>> ReadUsage(const DataFiles& data, const UsageFilter& filter = {});

/// Calls `visit` with every record of the file, even deleted ones, in file order. The record is reused. To be
/// called by what reads steadily (store/steady_reading.h).
Done VisitUsage(const DataFiles& data, const std::function<void(const UsageRecord&)>& visit);

/// Overwrites record `record.UsageId` or, if 0, appends. Always saved as live. On disk when it returns false.
[[nodiscard]] Failed SaveUsage(AppContext& app, const UsageRecord& record);

/// Marks the live record as deleted. True also if there is no such record.
[[nodiscard]] Failed DeleteUsage(AppContext& app, std::int16_t usageId);

/// The materials to which live usage records refer.
Result<std::unordered_set<std::int16_t>> ReadUsedMaterials(const DataFiles& data);
/// Whether a live usage record refers to the material.
Result<bool> IsMaterialUsed(const DataFiles& data, std::int16_t materialId);

/// One line per live record, "Material ID (period)", with the UsageId as item data. A record whose material
/// does not exist gets no line: its UsageId replaces the item data of the line before it. If there is no line
/// before it, that is a failure, shown once.
void FillUsageList(AppContext& app, ListLines& list, const std::vector<UsageRecord>& records);

/// The same lines, with the record that each one's text is of: its index in `records`.
struct UsageLines {
    ListLines Lines{};
    std::vector<std::size_t> Records{};
};
UsageLines ListUsage(AppContext& app, const std::vector<UsageRecord>& records);

/// "402 lbs", "0.5 Mgal": as it was entered, whatever the number of digits.
std::string QuantityInWords(const UsageRecord& usage);

/// The distinct years of the live records in order of appearance. Item data: the year, 0 if not a number.
void FillUsageYears(ListLines& list, const std::vector<UsageRecord>& records);

/// A record belongs to a list of periods (UsageFilter::Periods) if its key occurs in the list's.
std::string PeriodKey(std::string_view period);
std::string PeriodListKey(std::string_view periods);

/// The first two pieces of a period between its "/", trimmed; a missing piece is the empty text.
struct PeriodPieces {
    std::string_view Month;
    std::string_view Year;
};
PeriodPieces SplitPeriod(std::string_view period);
} // namespace mact
