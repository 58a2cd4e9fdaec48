#pragma once

#include "base/messages.h"
#include "store/data_folder.h"
#include "usage/usage_record.h"

#include <optional>
#include <string>
#include <string_view>

namespace mact {

/// What the usage editor holds, as selected and typed.
struct UsageEntry {
    std::optional<std::int16_t> MaterialId{}; ///< empty = nothing selected
    std::optional<std::int16_t> Month{};      ///< 1 to 12; empty = nothing selected
    std::string Year{};
    std::string Quantity{};
    std::optional<std::int16_t> Unit{}; ///< empty = nothing selected
};

/// One message per failed check, in the order of the form.
FormErrors CheckUsageEntry(const UsageEntry& entry);

/// Four digits, from 1900 on: the years in which a report can end.
bool IsUsageYear(std::string_view year);

/// The record of an entry that passed every check. `usageId` 0 = a new one.
UsageRecord RecordOf(const UsageEntry& entry, std::int16_t usageId);

/// Whether the first live record in the file with this material and month is another one.
Result<bool> IsDuplicate(const DataFiles& data, const UsageRecord& record);
} // namespace mact
