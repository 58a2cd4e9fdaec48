#pragma once

#include <string_view>

namespace mact {

/// Words about reports that are shown in messages.
namespace ReportTexts {

inline constexpr std::string_view NoRecordFound =
    "No record found on selected month/year. Do you still want to generate report?";
/// Followed by the report's path, between line breaks, and the hint.
inline constexpr std::string_view SavedAs = "Report generated sucessfully and has been saved as"; // sic
inline constexpr std::string_view BrowserHint =
    "You can define a default browser in configuration to view the report automatically.";

} // namespace ReportTexts

} // namespace mact
