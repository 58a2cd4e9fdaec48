#pragma once

#include "overview/shop_figures.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace mact {

/// The HAP contents at which a used material would just fill what the others leave of a limit, all else as it
/// is, in weight percent, by the exact figures. One above 100 means that any content will do.
struct BreakEven {
    std::size_t Material = 0; ///< in ShopRecords::Materials
    /// Of the average. Empty if the others leave nothing, or if emissions do not rise with the content.
    std::optional<double> OfAverage{};
    /// Of its row of weighted content; below 0 if the others alone use up more than the limit. Empty if it is
    /// in no row, or its row has no limit.
    std::optional<double> OfRow{};
    /// The same, empty if there is no room for any.
    std::optional<double> PossibleOfRow() const;
};

/// Of each material used in the month end's window, but for closed molding, in file order.
std::vector<BreakEven> BreakEvensAt(const ShopFigures& shop, MonthNumber monthEnd);
} // namespace mact
