#pragma once

#include "app/backup_copy.h"
#include "base/app_context.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// What the last backup set should hold, noted in the program folder before its copy starts, because a copy
/// can be killed and the power can go. Whoever finds the set complete removes the note: the copy itself, or,
/// where it cannot (the copy command of Windows) or did not live to do so, the next start of the program.

inline constexpr std::string_view BackupNoteName = "backup.mact.note";
/// In a set that is incomplete: a sentence for each file that is not in it.
inline constexpr std::string_view BackupFailuresName = "incomplete.txt";

struct NotedFile {
    std::filesystem::path Name{};
    std::uint64_t Length = 0; ///< bytes, when the copy was about to start
};
struct BackupNote {
    std::filesystem::path Set; ///< the set's folder
    std::vector<NotedFile> Files{};
};

/// On disk when it succeeds. Undo files are left out: the next moment they may be gone.
Done WriteBackupNote(AppContext& app, const std::filesystem::path& set, const std::vector<FileForSet>& files);
/// Empty if there is none, or none that can be read.
std::optional<BackupNote> ReadBackupNote(AppContext& app);
/// A sentence for each file that the set lacks, or has cut short.
std::vector<std::string> WhatIsMissing(const BackupNote& note);
/// Leaves the note of another set alone.
void RemoveBackupNote(AppContext& app, const std::filesystem::path& set);

/// Writes the sentences into the set; on disk when it succeeds.
Done WriteBackupFailures(FileAccess& files, const std::filesystem::path& set,
                         const std::vector<std::string>& sentences);

struct LastBackup {
    std::string Warning{};   ///< UTF-8; empty = nothing to say
    bool IsUnderWay = false; ///< its copy may still be running: look again later
};
/// Compares the set with its note. Removes the note of a complete set; writes down in an incomplete one what
/// is missing, unless its copy did. Of a set that is gone (a stick that was pulled out) nothing is said.
LastBackup
LookAtLastBackup(AppContext& app,
                 std::filesystem::file_time_type now = std::filesystem::file_time_type::clock::now());
} // namespace mact
