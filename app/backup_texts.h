#pragma once

#include <string_view>

namespace mact {

/// Words about backups that are shown to the user.
namespace BackupTexts {

inline constexpr std::string_view CompletedIn = "Backup has been completed in folder ";
inline constexpr std::string_view NoFolderDefined =
    "You do not have a backup folder defined. By default the program will make backups in the program "
    "folder.\r\n"
    "Do you want to define backup folder now?";

} // namespace BackupTexts

} // namespace mact
