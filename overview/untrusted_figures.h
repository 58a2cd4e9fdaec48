#pragma once

#include "overview/attention.h"
#include "overview/month_figures.h"
#include "overview/shop_figures.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace mact {

/// How many findings of kind NotTrusted touch each figure of a month end.
struct UntrustedFigures {
    std::vector<std::size_t> Contents{};    ///< as MonthFigures::Contents
    std::vector<std::size_t> Filled{};      ///< as MonthFigures::Filled
    std::size_t AnyContent = 0;             ///< Contents and Filled together, each finding once
    std::size_t Average = 0;                ///< emissions, allowance and headroom
    std::vector<std::size_t> PointValues{}; ///< as MonthFigures::PointValues
    std::vector<std::size_t> Amounts{};     ///< as MonthFigures::Amounts
    /// What was used of a material in the twelve months, by ShopRecords::Materials; of those with findings.
    std::map<std::size_t, std::size_t> AmountOfMaterial{};
};
/// A finding touches the figures that its material is in, or would be in: its content row, its own figure as
/// a filled resin, the average, the point value of its operation, and the amount of the last month if it is
/// about use of that month or of no month. If the material is gone, or its type and method are not in the
/// table, that may be any row and operation, so all are touched, but no filled resin: each is a material of
/// its own. Closed molding touches amounts alone. `figures` and `findings` are those of one month end.
UntrustedFigures CountUntrusted(const ShopFigures& shop, const MonthFigures& figures,
                                const std::vector<Attention>& findings);
/// Of findings that it seeks itself.
UntrustedFigures CountUntrusted(const ShopFigures& shop, const MonthFigures& figures);

/// Of each of the month end's LinesOf. The months are counted, not calculated: they have none.
std::vector<std::size_t> FindingsOfLines(const UntrustedFigures& untrusted);

/// "not trusted: 2 findings"; empty without any.
std::string UntrustedText(std::size_t findings);
/// The same as a sentence behind others: " Not trusted: 2 findings."; empty without any.
std::string UntrustedSentence(std::size_t findings);
} // namespace mact
