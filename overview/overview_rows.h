#pragma once

#include "overview/outlook.h"
#include "overview/overview_options.h"
#include "overview/shop_figures.h"
#include "overview/untrusted_figures.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// A line of the overview's table: a row of weighted content, or a filled resin.
struct OverviewRow {
    std::string Figure{};                  ///< "content" or "filled", as in the CSV
    std::string Item{};                    ///< as in the CSV; code-page text
    std::optional<std::size_t> Material{}; ///< of a filled resin, in ShopRecords::Materials
    double Megagrams = 0;                  ///< used in the twelve months
    double Value = 0;                      ///< weight percent, as reported; of a filled resin kg/Mg
    double Exact = 0;                      ///< the same, not rounded
    std::optional<double> Limit{};         ///< in the same unit; empty = no limit
    std::optional<double> Headroom{};      ///< what is left of the limit, exact, in percent of it
    Verdict Judged{};
    bool IsNarrow = false;              ///< within, by less than the user wants to be warned of
    std::optional<MonthNumber> Since{}; ///< the first month of trouble
    std::size_t Findings = 0;           ///< that make it untrustworthy
};
/// The worst first: by state, then by headroom; those without a limit are the last of their state.
std::vector<OverviewRow> RowsOf(const ShopFigures& shop, const MonthFigures& figures,
                                const UntrustedFigures& untrusted, const std::vector<FirstTrouble>& troubles,
                                const OverviewOptions& options);

/// What is shown of a month end: of a row, or of the average.
struct ChartValue {
    double Percent = 0; ///< of its limit, as reported; not a number without a limit
    Verdict Judged{};
};
/// Empty if the row is not used there, or has no limit.
std::optional<ChartValue> ValueAt(const OverviewRow& row, const MonthFigures& figures);
ChartValue ValueOf(const AverageFigures& average);

/// What a row's figures are given in: " %" or " kg/Mg".
std::string_view UnitOf(const OverviewRow& row);
/// The state in words, with what warns: "Within, narrowly; not trusted: 2 findings".
std::string StateInWords(const OverviewRow& row, int months);
} // namespace mact
