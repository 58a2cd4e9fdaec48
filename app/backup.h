#pragma once

#include "base/app_context.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

namespace mact {

/// Copies every file of the data folder, those of all companies, into a new numbered folder, a backup set.
/// A script of one line, backup.bat in the program folder, does the copying on its own: it goes on when the
/// program has ended.

/// Whether BACKUP/PATH names a folder that exists. Backups go to the program folder otherwise.
bool IsBackupFolderDefined(AppContext& app);

/// Starts the copy into the next set and returns the set's folder; with `isTold` a message names it.
///
/// A failure is shown. After some the backup goes on: a folder of the set's name that is there already gets
/// the files all the same, since a backup on exit has no second chance; so it does when the number of the
/// next set cannot be saved. Others end it: when there is no folder to copy into, when the script cannot be
/// written or cannot be started. Then no older script is run, no completion is told, and the result is empty;
/// a folder that was created stays.
std::optional<std::filesystem::path> RunBackup(AppContext& app, bool isTold);

/// What the main window's button does: without a backup folder the user is asked whether to define one, with
/// `defineFolder`. No makes the backup in the program folder, Cancel none.
void BackUpOnRequest(AppContext& app, const std::function<void()>& defineFolder);

/// What the Exit button does first: a backup without a message when AUTO_BACKUP is "1", to the letter.
void BackUpOnExit(AppContext& app);

/// The number of the next set, from the text of BK_VOLUME: rounded to a whole number, halves to even. A text
/// that is not a number, or too large a number to count on from, is 1; a negative one counts as it is.
std::int64_t BackupVolume(std::string_view text);
} // namespace mact
