#pragma once

#include <string_view>

namespace mact {

/// Sections and keys of the per-user settings. Values are texts; a missing one reads as the empty text.
namespace Settings {

inline constexpr std::string_view Application = "TALVOR_QUME_APP";

inline constexpr std::string_view Company = "COMPANY";
inline constexpr std::string_view Default = "DEFAULT"; ///< number of the current company

inline constexpr std::string_view Backup = "BACKUP";
inline constexpr std::string_view AutoBackup = "AUTO_BACKUP"; ///< "1" = back up on exit

inline constexpr std::string_view BackupVolume = "BK_VOLUME"; ///< number of the next backup set

inline constexpr std::string_view Browser = "BROWSER";
inline constexpr std::string_view Path = "PATH"; ///< of the backup folder or the browser program, UTF-8

inline constexpr std::string_view System = "SYSTEM"; ///< "1" = without a browser, the system's

inline constexpr std::string_view Looks = "LOOKS";
inline constexpr std::string_view WindowColours = "COLORS"; ///< "light", "dark", or empty = as the desktop
inline constexpr std::string_view Light = "light";
inline constexpr std::string_view Dark = "dark";

} // namespace Settings
} // namespace mact
