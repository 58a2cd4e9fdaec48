#include "app/backup_note.h"

#include "base/text.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <system_error>
#include <utility>

namespace mact {
namespace {

/// A copy that has written nothing for so long has ended.
constexpr auto LongestSilence = std::chrono::minutes(1);

/// No name holds a zero byte, though it may hold any line end.
constexpr char PieceEnd = '\0';

std::filesystem::path NoteFile(const AppContext& app) {
    return app.ProgramFolder / BackupNoteName;
}

/// A link in the set is none of its files.
bool IsRegularFile(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(std::filesystem::symlink_status(path, ignored));
}

/// Bytes; 0 if unknown.
std::uint64_t LengthOf(const std::filesystem::path& path) {
    std::error_code error;
    const std::uintmax_t length = std::filesystem::file_size(path, error);
    return error ? 0 : length;
}

/// A file of that name in the data folder is copied like any other; the failures would replace its copy.
bool HasFailures(const BackupNote& note) {
    const std::filesystem::path failures = note.Set / BackupFailuresName;
    if (!IsRegularFile(failures)) return false;
    const std::uint64_t length = LengthOf(failures);
    return std::ranges::none_of(note.Files, [&](const NotedFile& file) {
        return file.Name == BackupFailuresName && file.Length == length;
    });
}

bool IsUnderWay(const AppContext& app, const BackupNote& note, std::filesystem::file_time_type now) {
    std::vector<std::filesystem::path> written = {NoteFile(app), note.Set};
    for (const NotedFile& file : note.Files)
        written.push_back(note.Set / file.Name);
    return std::ranges::any_of(written, [&](const std::filesystem::path& path) {
        std::error_code error;
        const auto age = now - std::filesystem::last_write_time(path, error);
        return !error && age < LongestSilence && age > -LongestSilence;
    });
}

} // namespace

Done WriteBackupNote(AppContext& app, const std::filesystem::path& set,
                     const std::vector<FileForSet>& files) {
    std::string content = PathText(set) + PieceEnd;
    for (const FileForSet& file : files)
        if (!IsUndoFile(file.Name))
            content += std::to_string(file.Length) + PieceEnd + PathText(file.Name) + PieceEnd;
    std::error_code ignored;
    const std::filesystem::path path = NoteFile(app);
    if (std::filesystem::is_symlink(std::filesystem::symlink_status(path, ignored))) {
        const Done removed = app.Files.Remove(path); // only the program uses this name
        if (!removed) return removed;
    }
    return ReplaceFile(app.Files, path, content);
}

std::optional<BackupNote> ReadBackupNote(AppContext& app) {
    if (!IsRegularFile(NoteFile(app))) return std::nullopt;
    const Result<std::string> content = ReadWholeFile(app.Files, NoteFile(app));
    if (!content) return std::nullopt;
    const std::vector<std::string_view> pieces = Split(*content, PieceEnd);
    BackupNote note{.Set = PathFromUtf8(pieces.front())};
    // The last piece is what follows the last zero byte: nothing.
    for (std::size_t index = 1; index + 2 < pieces.size(); index += 2) {
        const std::string_view digits = pieces[index];
        NotedFile file{.Name = PathFromUtf8(pieces[index + 1])};
        std::from_chars(digits.data(), digits.data() + digits.size(), file.Length); // 0 if it is no number
        note.Files.push_back(std::move(file));
    }
    return note;
}

std::vector<std::string> WhatIsMissing(const BackupNote& note) {
    std::vector<std::string> sentences;
    for (const NotedFile& file : note.Files) {
        const std::filesystem::path copy = note.Set / file.Name;
        const std::string name = '"' + PathText(file.Name) + '"';
        if (!IsRegularFile(copy))
            sentences.push_back("The file " + name + " is missing.");
        else if (const std::uint64_t length = LengthOf(copy); length < file.Length)
            sentences.push_back("The file " + name + " is cut short: it has " + std::to_string(length) +
                                " bytes instead of " + std::to_string(file.Length) + ".");
    }
    return sentences;
}

void RemoveBackupNote(AppContext& app, const std::filesystem::path& set) {
    const std::optional<BackupNote> note = ReadBackupNote(app);
    if (note && note->Set == set) static_cast<void>(app.Files.Remove(NoteFile(app)));
}

Done WriteBackupFailures(FileAccess& files, const std::filesystem::path& set,
                         const std::vector<std::string>& sentences) {
    std::string content;
    for (const std::string& sentence : sentences)
        content += sentence + "\r\n";
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(set / BackupFailuresName, OpenMode::Own);
    if (!file) return file.error();
    Done written = (*file)->CutTo(0);
    if (written) written = (*file)->WriteAt(0, content);
    if (written) written = (*file)->Flush();
    if (!written) static_cast<void>(files.Remove(set / BackupFailuresName)); // it would not say all
    return written;
}

LastBackup LookAtLastBackup(AppContext& app, std::filesystem::file_time_type now) {
    const std::optional<BackupNote> note = ReadBackupNote(app);
    if (!note || !IsFolderAt(note->Set)) return {};
    bool isWrittenDown = HasFailures(*note);
    const std::vector<std::string> missing = WhatIsMissing(*note);
    if (!isWrittenDown) {
        if (IsUnderWay(app, *note, now)) return {.IsUnderWay = true};
        if (missing.empty()) {
            RemoveBackupNote(app, note->Set);
            return {};
        }
        isWrittenDown = static_cast<bool>(WriteBackupFailures(app.Files, note->Set, missing));
    }
    const std::string count =
        missing.size() == 1 ? "1 file is" : std::to_string(missing.size()) + " files are";
    const std::string what = isWrittenDown ? "see " + PathText(note->Set / BackupFailuresName)
                                           : count + " missing or cut short in " + PathText(note->Set);
    return {.Warning = "The last backup is incomplete: " + what + ". Please make a new one."};
}
} // namespace mact
