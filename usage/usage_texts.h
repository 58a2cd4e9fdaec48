#pragma once

#include <string_view>

namespace mact {

/// Texts of the usage editor.
namespace UsageTexts {

inline constexpr const char* NewTitle = "New Usage";
inline constexpr std::string_view NeedsMaterials =
    "You can not add new usage record without adding Materials first.";
inline constexpr std::string_view UsageNotFound = "- Usage not found. Please reopen the list form.";
inline constexpr std::string_view MaterialsNotFound = "- Materials Data is not found.";

inline constexpr std::string_view NeedsMaterial = "- You must select material to add a usage.";
inline constexpr std::string_view QuantityNotNumeric =
    "- Quantity Used must ba a valid numeric value."; // sic
inline constexpr std::string_view NeedsMonthAndYear = "- You must select month and year.";
inline constexpr std::string_view NeedsUnit = "- You must select unit.";
inline constexpr std::string_view IsDuplicate =
    "- Usage with the same Material ID and Date already exsist."; // sic

} // namespace UsageTexts
} // namespace mact
