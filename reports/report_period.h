#pragma once

#include "base/result.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mact {

/// The twelve months that a report covers.

struct ReportPeriod {
    std::string
        EndText{}; ///< last month, as in 3/2008; empty = all materials (compliant materials report only)
    std::int16_t Months = 12;
};

/// The month in a text M/YYYY; empty unless it has a month from 1 to 12 and a year from 1900 to 9999.
std::optional<std::chrono::year_month> ParsePeriodEnd(std::string_view endText);

/// The months of the period, newest first, each followed by "|": 3/2008|2/2008|...|4/2007|
Result<std::string> BuildPeriodList(std::string_view endText, std::int16_t months);

/// MM/YYYY if padded, M/YYYY otherwise; the empty text without a month.
std::string FormatMonthYear(std::optional<std::chrono::year_month> month, bool isPadded);

/// "DEC 2005"
std::string ShortMonthName(std::chrono::year_month month);

struct ReportMonths {
    std::string List{};  ///< from BuildPeriodList
    std::string Start{}; ///< MM/YYYY
    std::string End{};   ///< MM/YYYY
};
Result<ReportMonths> MonthsOf(const ReportPeriod& period);
} // namespace mact
