#include "usage/usage_entry.h"

#include "base/numbers.h"
#include "base/text.h"
#include "usage/usage_store.h"
#include "usage/usage_texts.h"

#include <algorithm>

namespace mact {

bool IsUsageYear(std::string_view year) {
    const bool isNumber = std::ranges::all_of(year, [](char digit) { return digit >= '0' && digit <= '9'; });
    return isNumber && year.size() == 4 && year >= "1900"; // compared as text: the lengths are equal
}

FormErrors CheckUsageEntry(const UsageEntry& entry) {
    FormErrors errors;
    if (!entry.MaterialId) errors.Add(UsageTexts::NeedsMaterial);
    if (!IsNumeric(Trim(entry.Quantity))) errors.Add(UsageTexts::QuantityNotNumeric);
    if (!entry.Month || !IsUsageYear(Trim(entry.Year))) errors.Add(UsageTexts::NeedsMonthAndYear);
    if (!entry.Unit) errors.Add(UsageTexts::NeedsUnit);
    return errors;
}

UsageRecord RecordOf(const UsageEntry& entry, std::int16_t usageId) {
    return {.UsageId = usageId,
            .MaterialId = entry.MaterialId.value_or(0),
            .Period = WholeNumberText(entry.Month.value_or(0)) + '/' + std::string(Trim(entry.Year)),
            .Quantity = ParseNumber(Trim(entry.Quantity)).value_or(0),
            .Unit = entry.Unit.value_or(0)};
}

Result<bool> IsDuplicate(const DataFiles& data, const UsageRecord& record) {
    // The first alone: where duplicates are in the file already, that one can still be edited.
    return ReadUsage(data, {.Periods = record.Period, .MaterialId = record.MaterialId})
        .transform(
            [&](const auto& found) { return !found.empty() && found.front().UsageId != record.UsageId; });
}
} // namespace mact
