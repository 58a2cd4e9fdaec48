#include "reports/report_period.h"

#include "base/numbers.h"
#include "base/text.h"

#include <algorithm>
#include <charconv>

namespace mact {
namespace {

/// The value of a text that consists of `fewest` to `most` digits.
std::optional<int> ParseDigits(std::string_view text, std::size_t fewest, std::size_t most) {
    if (text.size() < fewest || text.size() > most) return std::nullopt;
    if (!std::ranges::all_of(text, [](char digit) { return digit >= '0' && digit <= '9'; }))
        return std::nullopt;
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value); // cannot fail: a few digits
    return value;
}

std::string Padded(std::string digits, std::size_t length) {
    if (digits.size() < length) digits.insert(0, length - digits.size(), '0');
    return digits;
}

} // namespace

std::optional<std::chrono::year_month> ParsePeriodEnd(std::string_view endText) {
    const std::vector<std::string_view> pieces = Split(endText, '/');
    if (pieces.size() != 2) return std::nullopt;
    const std::optional<int> month = ParseDigits(Trim(pieces[0]), 1, 2);
    const std::optional<int> year = ParseDigits(Trim(pieces[1]), 4, 4);
    if (!month || *month < 1 || *month > 12 || !year || *year < 1900) return std::nullopt;
    return std::chrono::year(*year) / std::chrono::month(static_cast<unsigned>(*month));
}

Result<std::string> BuildPeriodList(std::string_view endText, std::int16_t months) {
    const std::optional<std::chrono::year_month> end = ParsePeriodEnd(endText);
    if (!end)
        return Failure{.Doing = "tell the months of the report",
                       .Reason = '"' + Utf8FromCodePage(endText) +
                                 "\" is not a month and a four-digit year, as in 3/2005"};
    // Without leading zeros, as usage records hold their periods: the two are compared as text.
    std::string list = FormatMonthYear(end, false) + '|';
    for (int back = 1; back < months; ++back)
        list += FormatMonthYear(*end - std::chrono::months(back), false) + '|';
    return list;
}

std::string FormatMonthYear(std::optional<std::chrono::year_month> month, bool isPadded) {
    if (!month || !month->ok()) return {};
    const std::string monthText = WholeNumberText(unsigned{month->month()});
    return Padded(monthText, isPadded ? 2 : 1) + '/' + Padded(WholeNumberText(int{month->year()}), 4);
}

std::string ShortMonthName(std::chrono::year_month month) {
    constexpr std::string_view names = "JANFEBMARAPRMAYJUNJULAUGSEPOCTNOVDEC";
    const std::size_t number = unsigned{month.month()};
    return std::string(names.substr((number - 1) * 3, 3)) + ' ' +
           Padded(WholeNumberText(int{month.year()}), 4);
}

Result<ReportMonths> MonthsOf(const ReportPeriod& period) {
    const Result<std::string> list = BuildPeriodList(period.EndText, period.Months);
    if (!list) return list.error();
    const std::chrono::year_month end = *ParsePeriodEnd(period.EndText); // present, or there would be no list
    return ReportMonths{.List = *list,
                        .Start = FormatMonthYear(end - std::chrono::months(period.Months - 1), true),
                        .End = FormatMonthYear(end, true)};
}
} // namespace mact
