#pragma once

#include <string_view>

namespace mact {

/// Words about the names of the additional pollutants that are shown to the user.
namespace AdditionalNamesTexts {

inline constexpr std::string_view NameIsEmpty =
    "You can not leave any of the pollutant name empty.\r\n"
    "If you dont want to use all pollutants please use '-' as their name to make them disable."; // sic

} // namespace AdditionalNamesTexts

} // namespace mact
