#pragma once

#include "base/services.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace mact {

/// The command script that copies a backup set, backup.bat in the program folder. It is one line:
///
///     copy "<program folder>\data\\*.*" "<target>\*.*"
///
/// On Windows the command interpreter runs it. Elsewhere the separators are "/", and the shell is given a
/// program that takes the two folders out of that line and copies every regular file of the first into the
/// second: nothing of a folder's name is expanded or run.

inline constexpr std::string_view BackupScriptName = "backup.bat";

#ifdef _WIN32
inline constexpr std::string_view ScriptLineEnd = "\r\n";
#else
inline constexpr std::string_view ScriptLineEnd = "\n";
#endif

/// The script's line without its end, UTF-8. Both folders are absolute and without doubled separators.
std::string BackupLine(const std::filesystem::path& programFolder, const std::filesystem::path& target);

/// Runs the script without a window. The program's status is 0 when every file was copied; it writes one line
/// for each that was not to its error output.
ProgramStart BackupStart(const std::filesystem::path& script);
} // namespace mact
