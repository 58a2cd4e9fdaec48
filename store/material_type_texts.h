#pragma once

#include <string_view>

namespace mact {

/// Words of the material-type window.
namespace MaterialTypeTexts {

inline constexpr std::string_view NeedsName = "- You must provide Material Type Name.";
inline constexpr std::string_view TypeNotNumeric = "- Material type can only be a numeric value (1 or 2).";
inline constexpr std::string_view HapContentsNotNumeric =
    "- HAP Content limit should be a numeric value(%)."; // sic

} // namespace MaterialTypeTexts

} // namespace mact
