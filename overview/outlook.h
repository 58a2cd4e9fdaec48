#pragma once

#include "overview/shop_figures.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace mact {

/// Since when there is trouble, and from when on there will be.

/// The earliest month end of a span that is over or differs.
struct FirstTrouble {
    std::string Figure{};                  ///< "content", "filled" or "emissions", as in the CSV
    std::string Item{};                    ///< as in the CSV; code-page text
    std::optional<std::size_t> Material{}; ///< of a filled resin, in ShopRecords::Materials
    MonthNumber Month = 0;
    State Is = State::None;
};
/// Of each figure that is in trouble anywhere in the span, in the order in which they first are.
std::vector<FirstTrouble> FirstTroubles(const ShopFigures& shop, const std::vector<MonthFigures>& span);
std::vector<FirstTrouble> FirstTroubles(const ShopFigures& shop,
                                        const std::vector<const MonthFigures*>& span);

inline constexpr int MonthsLookedAhead = 24;
/// The month end at which the exact emissions exceed the allowance if use goes on as the mean of the last
/// three months up to the newest use, material by material. Empty if it does not within 24 months, if the
/// average is over at the newest use already, or if there is no use.
std::optional<MonthNumber> MonthOverIfUseGoesOn(const ShopFigures& shop);
} // namespace mact
