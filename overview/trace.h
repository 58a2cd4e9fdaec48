#pragma once

#include "base/result.h"
#include "overview/month_figures.h"
#include "overview/overview_csv.h"
#include "overview/shop_figures.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// Opens a figure of a month end into what it was calculated from, down to the usage records. The parts are
/// added up anew, in the order and with the roundings of the figure itself; the last child of the root is
/// their sum.

struct TraceNode {
    std::string Text{};                    ///< UTF-8, one line
    std::optional<std::size_t> Use{};      ///< the record that the line stands for, in ShopRecords::Usage
    std::optional<std::size_t> Material{}; ///< the same, in ShopRecords::Materials
    std::vector<TraceNode> Children{};
};

/// The place of a figure in `lines`, those of `monthEnd`. `figure` and `item` (code-page text, in any letter
/// case) as in the CSV; "months" needs no item. A Failure that says which there are if there is no such
/// figure or item.
Result<std::size_t> FindFigure(const std::vector<FigureLine>& lines, MonthNumber monthEnd,
                               std::string_view figure, std::string_view item);

/// `figures` are the shop's; `lines` are LinesOf both. A figure that has its name and item in common with
/// another one can be traced by its place alone.
TraceNode TraceLine(const ShopFigures& shop, const MonthFigures& figures,
                    const std::vector<FigureLine>& lines, std::size_t place);

/// Both in one. Of figures with the same name and item the first is meant.
Result<TraceNode> TraceFigure(const ShopFigures& shop, const MonthFigures& figures, std::string_view figure,
                              std::string_view item);

/// A line for each node, two blanks further in than the one above it, each ending with LF; UTF-8.
std::string TraceText(const TraceNode& root);
} // namespace mact
