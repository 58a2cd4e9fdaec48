#pragma once

namespace mact {

/// Words of the main window.
namespace MainTexts {

inline constexpr const char* Title = "EPA - MACT (HAP Content Reporting Application)";
inline constexpr const char* CurrentCompany = "Current company: ";
inline constexpr const char* NoCompany =
    "No company selected yet \xE2\x80\x93 choose Companies to add or select one.";
inline constexpr const char* NeedsCompany = "Choose Companies first: add a company or select one.";
inline constexpr const char* Materials = "The resins and gel coats of the current company";
inline constexpr const char* Usage = "How much of each material was used, month by month";
inline constexpr const char* Reports = "The compliance reports for twelve months";

} // namespace MainTexts

} // namespace mact
