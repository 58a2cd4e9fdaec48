#pragma once

#include "overview/attention.h"
#include "overview/overview_options.h"
#include "overview/overview_rows.h"
#include "overview/shop_figures.h"

#include <cstddef>
#include <string>
#include <vector>

namespace mact {

/// The overview of a month end as a page for paper and PDF.

struct OverviewPageSource {
    std::string CompanyName{};     ///< code-page text
    std::string CompanyLocation{}; ///< code-page text
    const ShopFigures& Shop;
    const MonthFigures& Figures;          ///< of the month end
    const std::vector<OverviewRow>& Rows; ///< of the same, as RowsOf sorts them
    const std::vector<Attention>& Findings;
    std::vector<std::string> Notes{}; ///< what else needs attention, a sentence each; UTF-8
    OverviewOptions Options{};
    bool HasChart = false; ///< leaves a place for a picture of that name, as OverviewPageChart
};

/// What stands for the chart in the page.
inline constexpr std::string_view OverviewPageChart = "<img src=\"chart\">";

/// How many lines a table or list of the page has at most; it then says how many more there are. Nobody
/// reads 32,767 lines on paper.
inline constexpr std::size_t MostPageLines = 500;

/// HTML in UTF-8, of no more than what QTextDocument understands. Its title is the line for the foot of each
/// sheet.
std::string OverviewPage(const OverviewPageSource& source);
} // namespace mact
