#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mact {

/// Calendar months as whole numbers, so that they can be counted and compared: the month before is one less.
using MonthNumber = int;

/// `month` from 1 to 12.
constexpr MonthNumber MonthNumberOf(int year, int month) {
    return year * 12 + month - 1;
}
/// The months in which an overview can end, as those of the reports.
inline constexpr MonthNumber FirstMonthEnd = MonthNumberOf(1900, 1);
inline constexpr MonthNumber LastMonthEnd = MonthNumberOf(9999, 12);
inline constexpr int WindowMonths = 12; ///< a month end's window: the month and the eleven before it

/// The month of a usage record's period: a month from 1 to 12 without leading zero, "/" and a year of four
/// digits, with or without spaces around. Empty for any other text.
std::optional<MonthNumber> MonthOfPeriod(std::string_view period);

/// M/YYYY
std::string MonthText(MonthNumber month);
/// "DEC 2005"
std::string ShortMonthName(MonthNumber month);
/// "December 2005"
std::string LongMonthName(MonthNumber month);
} // namespace mact
