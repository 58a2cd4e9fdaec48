#include "overview/overview_options_entry.h"

#include "base/numbers.h"
#include "base/text.h"
#include "usage/usage_entry.h"

namespace mact {
namespace {

constexpr int MonthsOfYear = 12;
constexpr double MostPercent = 100;

std::optional<double> PercentOf(std::string_view text) {
    const std::optional<double> number = ParseNumber(Trim(text));
    return number && *number >= 0 && *number <= MostPercent ? number : std::nullopt;
}

} // namespace

bool HasWholeStart(const OverviewOptionsEntry& entry) {
    const std::string_view year = Trim(entry.StartYear);
    return entry.StartMonth ? IsUsageYear(year) : year.empty();
}

bool IsPercent(std::string_view text) {
    return PercentOf(text).has_value();
}

bool IsOneLine(std::string_view utf8Text) {
    constexpr std::string_view lineSeparator = "\xE2\x80\xA8";
    constexpr std::string_view paragraphSeparator = "\xE2\x80\xA9";
    return Printable(utf8Text) == utf8Text && utf8Text.find(lineSeparator) == std::string_view::npos &&
           utf8Text.find(paragraphSeparator) == std::string_view::npos;
}

FormErrors CheckOverviewOptions(const OverviewOptionsEntry& entry) {
    FormErrors errors;
    if (!HasWholeStart(entry)) errors.Add("- The start month needs a month and a year from 1900 to 9999.");
    if (!IsPercent(entry.WarnHeadroom))
        errors.Add("- The headroom to warn of must be a number from 0 to 100, as in 7.5.");
    if (!IsPercent(entry.WarnContent))
        errors.Add("- The content to warn of must be a number from 0 to 100, as in 0.5.");
    if (!IsOneLine(entry.Address)) errors.Add("- The address must be one line, without tabs.");
    return errors;
}

std::string_view ChoiceText(const std::optional<OperationOption>& option) {
    if (!option) return "Not chosen";
    switch (*option) {
    case OperationOption::Average:
        return "Emission average";
    case OperationOption::TableTwo:
        return "Table 2 weighted content";
    case OperationOption::Filled:
        return "Filled resin";
    case OperationOption::Closed:
        return "Closed molding";
    case OperationOption::NotUsed:
        break;
    }
    return "Not used";
}

OverviewOptionsEntry EntryOf(const OverviewOptions& options) {
    OverviewOptionsEntry entry{.WarnHeadroom = NumberText(options.WarnHeadroom),
                               .WarnContent = NumberText(options.WarnContent),
                               .OptionOf = options.OptionOf,
                               .Address = options.Address};
    if (options.Start) {
        entry.StartMonth = static_cast<std::int16_t>(*options.Start % MonthsOfYear + 1);
        entry.StartYear = WholeNumberText(*options.Start / MonthsOfYear);
    }
    return entry;
}

OverviewOptions OptionsOf(const OverviewOptionsEntry& entry, const OverviewOptions& before) {
    OverviewOptions options = before;
    options.Start.reset();
    if (entry.StartMonth)
        options.Start = MonthNumberOf(ParseInt16(Trim(entry.StartYear)).value_or(0), *entry.StartMonth);
    options.WarnHeadroom = PercentOf(entry.WarnHeadroom).value_or(before.WarnHeadroom);
    options.WarnContent = PercentOf(entry.WarnContent).value_or(before.WarnContent);
    options.OptionOf = entry.OptionOf;
    options.Address = entry.Address;
    options.NotUnderstood.clear();
    return options;
}
} // namespace mact
