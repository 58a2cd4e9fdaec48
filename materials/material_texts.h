#pragma once

#include <string_view>

/// Words about materials that are shown to the user.
namespace MaterialTexts {

inline constexpr std::string_view MaterialIsUsed =
    "There are one or more usage records associated with this material.\r\n"
    "You can not delete this material untill you remove all usage records."; // sic

} // namespace MaterialTexts
