#pragma once

#include <string_view>

namespace mact {

/// Words of the import and export windows.
namespace TransferDialogTexts {

inline constexpr std::string_view FileNotFound = "File not found. Please make sure that your have specified "
                                                 "the correct path or use browse feature to give "
                                                 "accurate path."; // sic
inline constexpr const char* ImportMaterials = "Import Material Records";
inline constexpr const char* ImportUsage = "Import Usage Records";
inline constexpr const char* ExportMaterials = "Export Material Records";
inline constexpr const char* ExportUsage = "Export Usage Records";
inline constexpr const char* Importing = "Importing...";
inline constexpr const char* Idle = "Idle";
inline constexpr const char* ErrorLogTitle = "Material Import - Error Log"; // for all three logs

} // namespace TransferDialogTexts

} // namespace mact
