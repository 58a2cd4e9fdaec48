#pragma once

#include "overview/shop_figures.h"

#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// The figures of month ends as text.

/// The state as in the CSV: "within", "too early (3 of 12)"; empty for State::None.
std::string StateText(State state, int months);
std::string_view CauseText(Cause cause);

/// As the reports show a number; empty if it is not finite.
std::string ReportText(double number);
/// The same, rounded to 2 decimals, as the reports round sums.
std::string RoundedText(double number);
/// Rounded to 6 decimals, without zeros at its end, never scientific, never -0; empty if it is not finite.
std::string ExactText(double number);

/// One line of the CSV, as texts. Item is code-page text.
struct FigureLine {
    std::string_view Figure{};
    std::string Item{};
    std::string Report{};
    std::string Exact{};
    std::string Limit{};
    std::string_view Unit{};
    Verdict Judged{};
    std::string State{};
};
/// The lines of a month end, in the order of the CSV.
std::vector<FigureLine> LinesOf(const ShopFigures& shop, const MonthFigures& figures);

/// month_end,figure,item,report,exact,limit,unit,state,cause
std::string OverviewCsvHeader();
/// The month end's lines in UTF-8, each ending with LF; cells are quoted as RFC 4180 says.
std::string OverviewCsv(const ShopFigures& shop, const MonthFigures& figures);
} // namespace mact
