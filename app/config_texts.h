#pragma once

namespace mact {

/// Words of the configuration dialog that its form does not hold.
namespace ConfigTexts {

inline constexpr const char* ChooseBackupFolder = "Choose the backup folder";
inline constexpr const char* ChooseBrowser = "Choose the browser";
inline constexpr const char* NeedsCompany = "Choose a company first: the names are kept for each company.";

} // namespace ConfigTexts

} // namespace mact
