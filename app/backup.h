#pragma once

#include "base/app_context.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace mact {

/// A backup copies every file of the data folder, of all companies, into a new numbered folder, the backup
/// set. A one-line script, backup.bat in the program folder, does the copying by itself and goes on after the
/// program has ended.

/// What the name of a set's folder begins with; its number follows.
inline constexpr std::string_view BackupSetPrefix = "talvor_backupset_";

/// Whether BACKUP/PATH names an existing folder. Otherwise backups go to the program folder.
bool IsBackupFolderDefined(AppContext& app);

/// Starts the copy into the next set and returns the set's folder; with `isTold`, a message names it.
///
/// Failures are shown. The backup goes on if the number of the next set cannot be saved, and if a folder of
/// the set's name exists (no link): it gets the files all the same, since a backup on exit has no second
/// chance. The backup ends if there is no folder to copy into, if the data folder cannot be read, if what the
/// set should hold cannot be noted (backup_note.h), or if the script cannot be written or started. Then no
/// older script is run, no completion is announced, and the result is empty; a folder that was created stays.
std::optional<std::filesystem::path> RunBackup(AppContext& app, bool isTold);

/// The same, but copies the files itself instead of starting the script, and returns once all of them are in
/// the set. The result is also empty if one is not: each is shown, and written down in the set.
std::optional<std::filesystem::path> RunBackupToItsEnd(AppContext& app);

/// A set whose copy has ended.
struct EndedBackup {
    std::filesystem::path Set;
    std::vector<Failure> Failures{}; ///< one for each file that is not in it, written down in the set
};
/// Where the next set is made: the configured folder, or the program folder if that is not there.
Result<std::filesystem::path> FolderOfSets(AppContext& app);

/// As RunBackupToItsEnd, without showing the failures of files, and never into a set that is there: the
/// number is counted up to a free one. Empty if the copy could not begin, which is shown.
std::optional<EndedBackup> CopyDataIntoNewSet(AppContext& app);

/// What the main window's button does. Without a backup folder the user is asked whether to define one, which
/// `defineFolder` does. No backs up into the program folder; Cancel makes no backup.
void BackUpOnRequest(AppContext& app, const std::function<void()>& defineFolder);

/// What the Exit button does first: a backup without a message if AUTO_BACKUP is exactly "1".
void BackUpOnExit(AppContext& app);

/// The number of the next set, from the text of BK_VOLUME; fractions and negative numbers are allowed. 1 if
/// the text is not a number, or is beyond +-9,007,199,254,740,991.
double BackupVolume(std::string_view text);
} // namespace mact
