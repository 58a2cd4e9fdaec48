#pragma once

#include "overview/month_figures.h"
#include "overview/shop_figures.h"
#include "overview/trace.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// What a traced figure is made of.

/// The sums of a figure's parts, and how they make the figure.
struct TracedAnswer {
    std::string Report{}; ///< as in the CSV
    std::string Exact{};
    std::vector<std::string> Formulas{};
    std::vector<TraceNode> Parts{};
};

/// `figure` as in the CSV; `number` is its place among the figures of the same name.
TracedAnswer TraceAnswer(const ShopFigures& shop, const MonthFigures& figures, std::string_view figure,
                         std::size_t number);
} // namespace mact
