#include "app/backup.h"

#include "app/backup_script.h"
#include "base/messages.h"
#include "base/numbers.h"
#include "base/settings.h"
#include "base/text.h"

#include <cmath>
#include <system_error>

namespace mact {
namespace {

constexpr std::string_view NoFolderDefined =
    "You do not have a backup folder defined. By default the program will make backups in the program "
    "folder.\r\n"
    "Do you want to define backup folder now?";

/// 2^53 - 1: a double holds every whole number up to here exactly, and the next one too.
constexpr double LargestVolume = 9007199254740991.0;

std::filesystem::path BaseFolder(AppContext& app) {
    if (!IsBackupFolderDefined(app)) return app.ProgramFolder;
    return PathFromUtf8(app.Settings.Read(Settings::Backup, Settings::Path));
}

/// The absolute path without doubled separators: in the script's line these show where the first path ends.
std::filesystem::path Tidied(const std::filesystem::path& folder) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(folder, error);
    std::filesystem::path tidied;
    for (const std::filesystem::path& part : error ? folder : absolute)
        if (!part.empty()) tidied /= part; // a separator at the end leaves an empty part
    return tidied;
}

std::string VolumeText(double volume) {
    const bool isWhole = volume == std::trunc(volume);
    return isWhole ? WholeNumberText(static_cast<std::int64_t>(volume)) : NumberText(volume);
}

Done StartCopy(AppContext& app, const std::filesystem::path& target) {
    const std::filesystem::path programFolder = Tidied(app.ProgramFolder);
    const std::filesystem::path script = programFolder / BackupScriptName;
    const Result<std::string> line = app.Programs.ScriptText(BackupLine(programFolder, target));
    if (!line) return line.error(); // a character that the console's character set lacks
    const Done written = ReplaceFile(app.Files, script, *line + std::string(ScriptLineEnd));
    if (!written) return written;
    return app.Programs.Start(BackupStart(script));
}

} // namespace

bool IsBackupFolderDefined(AppContext& app) {
    return IsFolderAt(PathFromUtf8(app.Settings.Read(Settings::Backup, Settings::Path)));
}

double BackupVolume(std::string_view text) {
    const std::optional<double> number = ParseNumber(text);
    if (!number || std::abs(*number) > LargestVolume) return 1;
    // Beyond 15 digits the text of a fraction stays the same when the number is counted up.
    return *number == std::trunc(*number) ? *number : ParseNumber(NumberText(*number)).value_or(1);
}

std::optional<std::filesystem::path> RunBackup(AppContext& app, bool isTold) {
    // The next number is saved first: whatever fails afterwards, no later backup uses this one.
    const double volume = BackupVolume(app.Settings.Read(Settings::Backup, Settings::BackupVolume));
    ShowFailure(app, app.Settings.Write(Settings::Backup, Settings::BackupVolume, VolumeText(volume + 1)));
    const std::filesystem::path target = Tidied(BaseFolder(app)) / ("talvor_backupset_" + VolumeText(volume));
    const Done created = app.Files.CreateFolder(target);
    if (!created) {
        ShowError(app, created.error());
        if (!IsFolderAt(target)) return std::nullopt; // otherwise the existing folder gets the files
    }
    const Done started = StartCopy(app, target);
    if (ShowFailure(app, started)) return std::nullopt;
    // Shown while the copy is still running, on purpose: it names the folder, and Exit need not wait.
    if (isTold) ShowInformation(app, "Backup has been completed in folder " + PathText(target));
    return target;
}

void BackUpOnRequest(AppContext& app, const std::function<void()>& defineFolder) {
    if (!IsBackupFolderDefined(app)) {
        const PromptAnswer answer = app.Prompts.Show(
            {std::string(NoFolderDefined), PromptKind::Question, PromptButtons::YesNoCancel});
        if (answer == PromptAnswer::Cancel) return;
        if (answer == PromptAnswer::Yes) defineFolder(); // if none gets defined, the program folder is used
    }
    RunBackup(app, true);
}

void BackUpOnExit(AppContext& app) {
    if (app.Settings.Read(Settings::Backup, Settings::AutoBackup) == "1") RunBackup(app, false);
}
} // namespace mact
