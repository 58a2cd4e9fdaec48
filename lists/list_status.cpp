#include "lists/list_status.h"

#include "base/text.h"
#include "overview/months.h"
#include "usage/usage_store.h"

#include <algorithm>

namespace mact {
namespace {

std::string PeriodInWords(const UsageRecord& usage) {
    const std::optional<MonthNumber> month = MonthOfPeriod(usage.Period);
    return month ? ShortMonthName(*month) : Utf8FromCodePage(Trim(usage.Period));
}

} // namespace

std::string SavedUsageText(const UsageRecord& saved, std::string_view customId,
                           const std::vector<UsageRecord>& live) {
    const auto ofMonth = static_cast<std::size_t>(std::ranges::count_if(
        live, [&](const UsageRecord& each) { return IsSameName(each.Period, saved.Period); }));
    return "Saved " + Utf8FromCodePage(Trim(customId)) + ", " + PeriodInWords(saved) + ", " +
           QuantityInWords(saved) + "; " + Counted(ofMonth, "record") + " this month";
}

std::string ListedText(std::size_t listed, std::size_t all, std::string_view of) {
    return (listed == all ? std::string() : std::to_string(listed) + " of ") + Counted(all, of);
}
} // namespace mact
