#pragma once

#include "base/services.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace mact {

/// The command script that copies a backup set, backup.bat in the program folder. It is a single line:
///
///     copy "<program folder>\data\\*.*" "<target>\*.*"
///
/// On Windows the command interpreter runs it. Elsewhere the separators are "/", and the shell runs a fixed
/// program that takes the two folders out of that line and copies the files as backup_copy.h says: no part of
/// a folder's name is expanded or run. It writes what it could not copy into the set, and removes the note
/// (backup_note.h) of a complete set.

inline constexpr std::string_view BackupScriptName = "backup.bat";

#ifdef _WIN32
inline constexpr std::string_view ScriptLineEnd = "\r\n";
#else
inline constexpr std::string_view ScriptLineEnd = "\n";
#endif

/// The script's line without its line end, UTF-8. Both folders must be absolute, without doubled separators.
std::string BackupLine(const std::filesystem::path& programFolder, const std::filesystem::path& target);

/// Runs the script without a window. The program ends with status 0 if the set is complete; for each file
/// that is not in it, it writes a line to its error output.
ProgramStart BackupStart(const std::filesystem::path& script);
} // namespace mact
