#pragma once

#include <string_view>

namespace mact {

/// Words of the companies window.
namespace CompanyTexts {

inline constexpr std::string_view NeedsNameAndLocation =
    "You must specify Company Name and Company Location to add new company";
inline constexpr const char* NoCurrentCompany = "None";
inline constexpr const char* NewCompany = "New company";
inline constexpr const char* EditedCompany = "Edited company";

} // namespace CompanyTexts

} // namespace mact
