#pragma once

#include "overview/break_even.h"
#include "overview/what_if.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace mact {

/// A change as the what-if window holds it, chosen and typed, and what the window says about it. Sentences
/// are UTF-8. `changed` are the records with the changes so far, which a further one starts from.
struct WhatIfEntry {
    std::optional<std::size_t> Material{}; ///< in ShopRecords::Materials; empty = none chosen
    WhatIfKind Kind = WhatIfKind::Content;
    std::string Number{};                     ///< as typed: the content, density, filler or factor
    std::optional<std::string> Method{};      ///< code-page text
    std::optional<int> Month{};               ///< from 1; the first whose amount changes
    std::string Year{};                       ///< as typed
    std::optional<std::size_t> Replacement{}; ///< in ShopRecords::Materials
};

/// What of the entry is to be mended.
enum class WhatIfField { None, Material, Number, Method, From, Replacement };
/// The change that is meant or, without one, what is wrong.
struct CheckedWhatIf {
    std::optional<WhatIfChange> Change{};
    WhatIfField Field =
        WhatIfField::None; ///< where to mend it; None = nowhere, as there is nothing to change
    std::string Wrong{};   ///< "The new HAP content must be a number from 0 to 100 %."
};
CheckedWhatIf CheckWhatIf(const ShopRecords& changed, const WhatIfEntry& entry);

/// The application methods that the material-type table has for the material, in its order; code-page text.
std::vector<std::string> MethodsFor(const ShopRecords& shop, std::size_t material);

/// What the entry's change starts from: "Today 33 %; with the changes 31 %." `shop` has no changes, and
/// amounts are those of its twelve months.
std::string StartingPoint(const ShopFigures& shop, const ShopRecords& changed, const WhatIfEntry& entry,
                          MonthNumber monthEnd);

/// "Break-even content of GC-110 for DEC 2005: of the average 33.4 %, of its row (pigmented gel coat) none."
std::string BreakEvenText(const ShopFigures& after, const std::vector<BreakEven>& breakEvens,
                          std::size_t material, MonthNumber monthEnd);
} // namespace mact
