#include "app/backup.h"

#include "app/backup_copy.h"
#include "app/backup_note.h"
#include "app/backup_script.h"
#include "base/messages.h"
#include "base/numbers.h"
#include "base/settings.h"
#include "base/text.h"
#include "store/data_folder.h"

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

std::filesystem::path SetName(double volume) {
    return std::string(BackupSetPrefix) + VolumeText(volume);
}

/// False for a link: it could lead into the data folder, whose files would be replaced with their own copies.
bool IsFolderOfItsOwn(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(std::filesystem::symlink_status(path, ignored));
}

/// What is to be done if a folder of the next set's name is there.
enum class SetOfThatName { IsCopiedInto, IsLeftAlone };

/// The number of the next set whose folder does not exist yet.
double FirstFreeVolume(const std::filesystem::path& folder, double volume) {
    std::error_code ignored;
    while (volume < LargestVolume &&
           std::filesystem::exists(std::filesystem::symlink_status(folder / SetName(volume), ignored)))
        ++volume;
    return volume;
}

/// Creates the folder of the next set. Shows its failures; empty if there is no such folder in the end.
std::optional<std::filesystem::path> CreateSet(AppContext& app, SetOfThatName existing) {
    const Result<std::filesystem::path> sets = FolderOfSets(app);
    if (ShowFailure(app, sets)) return std::nullopt;
    const Result<std::string> number = app.Settings.TryRead(Settings::Backup, Settings::BackupVolume);
    if (ShowFailure(app, number)) return std::nullopt;
    // The next number is saved first: whatever fails afterwards, no later backup uses this one.
    const double next = BackupVolume(*number);
    const double volume = existing == SetOfThatName::IsLeftAlone ? FirstFreeVolume(*sets, next) : next;
    ShowFailure(app, app.Settings.Write(Settings::Backup, Settings::BackupVolume, VolumeText(volume + 1)));
    const std::filesystem::path set = *sets / SetName(volume);
    const Done created = app.Files.CreateFolder(set);
    if (created) return set;
    ShowError(app, created.error());
    if (existing == SetOfThatName::IsLeftAlone || !IsFolderOfItsOwn(set))
        return std::nullopt; // otherwise the existing folder gets the files
    // What an earlier attempt could not copy would be taken for failures of this one.
    static_cast<void>(app.Files.Remove(set / BackupFailuresName));
    return set;
}

std::filesystem::path ScriptFile(const AppContext& app) {
    return Tidied(app.ProgramFolder) / BackupScriptName;
}

/// Writes the script that copies the set, then notes what the set should hold.
Result<std::vector<FileForSet>> PrepareCopy(AppContext& app, const std::filesystem::path& set) {
    const Result<std::vector<FileForSet>> files = FilesForSet(DataFolder(app));
    if (!files) return files.error();
    const Result<std::string> line = app.Programs.ScriptText(BackupLine(Tidied(app.ProgramFolder), set));
    if (!line) return line.error(); // a character that the console's character set lacks
    const Done written = ReplaceFile(app.Files, ScriptFile(app), *line + std::string(ScriptLineEnd));
    if (!written) return written.error();
    // Last: of a copy that is not started, which is shown, the next start need not warn.
    const Done noted = WriteBackupNote(app, set, *files);
    if (!noted) return noted.error();
    return *files;
}

} // namespace

bool IsBackupFolderDefined(AppContext& app) {
    const Result<bool> isThere =
        LookForFolder(PathFromUtf8(app.Settings.Read(Settings::Backup, Settings::Path)));
    return !isThere || *isThere; // one that cannot be seen is defined all the same
}

Result<std::filesystem::path> FolderOfSets(AppContext& app) {
    // Settings that cannot be read are not taken for unset: the set would go to another place.
    const Result<std::string> folder = app.Settings.TryRead(Settings::Backup, Settings::Path);
    if (!folder) return folder.error();
    // Nor is a folder that cannot be seen taken for a missing one.
    const Result<bool> isThere = LookForFolder(PathFromUtf8(*folder));
    if (!isThere) return isThere.error();
    return Tidied(*isThere ? PathFromUtf8(*folder) : app.ProgramFolder);
}

double BackupVolume(std::string_view text) {
    const std::optional<double> number = ParseNumber(text);
    if (!number || std::abs(*number) > LargestVolume) return 1;
    // Beyond 15 digits the text of a fraction stays the same when the number is counted up.
    return *number == std::trunc(*number) ? *number : ParseNumber(NumberText(*number)).value_or(1);
}

std::optional<std::filesystem::path> RunBackup(AppContext& app, bool isTold) {
    const std::optional<std::filesystem::path> set = CreateSet(app, SetOfThatName::IsCopiedInto);
    if (!set || ShowFailure(app, PrepareCopy(app, *set))) return std::nullopt;
    if (ShowFailure(app, app.Programs.Start(BackupStart(ScriptFile(app))))) {
        RemoveBackupNote(app, *set);
        return std::nullopt;
    }
    // Shown while the copy is still running, on purpose: it names the folder, and Exit need not wait.
    if (isTold) ShowInformation(app, "Backup has been completed in folder " + PathText(*set));
    return set;
}

namespace {

/// Empty if the copy could not begin, which is shown.
std::optional<EndedBackup> CopyIntoSetOf(AppContext& app, const std::optional<std::filesystem::path>& set) {
    if (!set) return std::nullopt;
    const Result<std::vector<FileForSet>> files = PrepareCopy(app, *set);
    if (ShowFailure(app, files)) return std::nullopt;
    EndedBackup ended{*set, CopyIntoSet(app.Files, DataFolder(app), *files, *set)};
    if (ended.Failures.empty()) {
        RemoveBackupNote(app, *set);
        return ended;
    }
    std::vector<std::string> sentences;
    for (const Failure& failure : ended.Failures)
        sentences.push_back(SentenceOf(failure));
    // The note says that the set is incomplete, even if this cannot be written.
    static_cast<void>(WriteBackupFailures(app.Files, *set, sentences));
    return ended;
}

} // namespace

std::optional<EndedBackup> CopyDataIntoNewSet(AppContext& app) {
    return CopyIntoSetOf(app, CreateSet(app, SetOfThatName::IsLeftAlone));
}

std::optional<std::filesystem::path> RunBackupToItsEnd(AppContext& app) {
    const std::optional<EndedBackup> ended = CopyIntoSetOf(app, CreateSet(app, SetOfThatName::IsCopiedInto));
    if (!ended) return std::nullopt;
    for (const Failure& failure : ended->Failures)
        ShowError(app, failure);
    if (!ended->Failures.empty()) return std::nullopt;
    return ended->Set;
}

void BackUpOnRequest(AppContext& app, const std::function<void()>& defineFolder) {
    const Result<std::string> folder = app.Settings.TryRead(Settings::Backup, Settings::Path);
    if (ShowFailure(app, folder)) return;
    const Result<bool> isThere = LookForFolder(PathFromUtf8(*folder));
    if (isThere && !*isThere) { // of one that cannot be seen the backup itself tells
        const PromptAnswer answer = app.Prompts.Show(
            {std::string(NoFolderDefined), PromptKind::Question, PromptButtons::YesNoCancel});
        if (answer == PromptAnswer::Cancel) return;
        if (answer == PromptAnswer::Yes) defineFolder(); // if none gets defined, the program folder is used
    }
    RunBackup(app, true);
}

void BackUpOnExit(AppContext& app) {
    const Result<std::string> isAutomatic = app.Settings.TryRead(Settings::Backup, Settings::AutoBackup);
    if (!ShowFailure(app, isAutomatic) && *isAutomatic == "1") RunBackup(app, false);
}
} // namespace mact
