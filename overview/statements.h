#pragma once

#include <array>
#include <string_view>

namespace mact {

/// What the overview's window and every page of it say about their figures. UTF-8.
inline constexpr std::array<std::string_view, 7> OverviewStatements = {
    "Calculated from the records as they are now: content, method and density of a material apply to all its "
    "months, past ones too.",
    "Open-molding resin and gel coat only. Not checked: add-on control, mixing, cleaning, adhesives, "
    "aluminum "
    "coatings, and whether the plant is covered at all.",
    "All recorded use is taken as being in the average and not exempt; operations may meet different options "
    "(63.5701).",
    "HAP content must be the top of a supplier's range, or the measured value where the rule says so "
    "(63.5758(a)(5)).",
    "Filled resin: the amount is that of the filled resin, the content that of the neat resin.",
    "Point values compare with the allowance; they are no emission inventory.",
    "\"Within\" is arithmetic, not a finding of compliance.",
};
} // namespace mact
