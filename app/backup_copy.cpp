#include "app/backup_copy.h"

#include "base/interrupted.h"
#include "base/text.h"
#include "store/undo_file.h"

#include <algorithm>
#include <set>
#include <string>
#include <system_error>

namespace mact {
namespace {

constexpr std::size_t PieceLength = std::size_t{1} << 20U; // bytes read and written at once

Failure CannotBackUp(const std::filesystem::path& file, const std::string& reason) {
    return {"back up the file", file, reason};
}

/// Empty if it is nothing that a set gets.
std::optional<FileForSet> Described(const std::filesystem::path& file) {
    std::error_code error;
    const std::filesystem::file_status status =
        WhileInterrupted(error, [&](std::error_code& given) { return std::filesystem::status(file, given); });
    FileForSet described{.Name = file.filename()};
    if (std::filesystem::is_regular_file(status)) {
        const std::uintmax_t length = std::filesystem::file_size(file, error);
        if (!error) described.Length = length;
        return described;
    }
    if (std::filesystem::status_known(status) && std::filesystem::exists(status)) return std::nullopt;
    if (!error) error = std::make_error_code(std::errc::no_such_file_or_directory);
    described.Problem = CannotBackUp(file, error.message());
    return described;
}

Done CopyBytes(OpenedFile& from, OpenedFile& to) {
    std::string piece(PieceLength, '\0');
    for (std::uint64_t offset = 0;;) {
        const Result<std::size_t> count = from.ReadAt(offset, piece);
        if (!count) return count.error();
        const Done written = to.WriteAt(offset, std::string_view(piece).substr(0, *count));
        if (!written) return written;
        if (*count < piece.size()) return Success();
        offset += *count;
    }
}

/// Frees a name in the set, whatever it stands for.
Done RemoveFromSet(FileAccess& files, const std::filesystem::path& path) {
    std::error_code error;
    const std::filesystem::file_status status = WhileInterrupted(
        error, [&](std::error_code& given) { return std::filesystem::symlink_status(path, given); });
    if (!std::filesystem::status_known(status)) return Failure{"look for the file", path, error.message()};
    return std::filesystem::exists(status) ? files.Remove(path) : Success();
}

Done WriteCopy(FileAccess& files, OpenedFile& file, const std::filesystem::path& source,
               const std::filesystem::path& target) {
    const Result<std::unique_ptr<OpenedFile>> copy = files.Open(target, OpenMode::Own);
    if (!copy) return copy.error();
    std::error_code ignored; // a file system need not have permissions
    const std::filesystem::file_status status = std::filesystem::status(source, ignored);
    // Before there is anything to read, since the file may be private.
    if (std::filesystem::exists(status)) std::filesystem::permissions(target, status.permissions(), ignored);
    Done copied = CopyBytes(file, **copy);
    if (copied) copied = (*copy)->Flush();
    if (copied) copied = CheckHasSameBytes(file, **copy);
    return copied;
}

/// A copy that is not whole is removed, lest it be taken for one that is.
Done CopyOpenFile(FileAccess& files, OpenedFile& file, const std::filesystem::path& source,
                  const std::filesystem::path& target) {
    const Done freed = RemoveFromSet(files, target);
    if (!freed) return freed;
    const Done copied = WriteCopy(files, file, source, target);
    if (!copied) {
        static_cast<void>(RemoveFromSet(files, target)); // the first failure is the one to report
        return copied;
    }
    std::error_code error; // ignored: a file system need not let a time be set
    const auto time = std::filesystem::last_write_time(source, error);
    if (!error) std::filesystem::last_write_time(target, time, error);
    return Success();
}

Done CopyUndoFile(FileAccess& files, const std::filesystem::path& source,
                  const std::filesystem::path& target) {
    const Result<bool> isThere = files.HasOwn(source);
    if (!isThere) return CannotBackUp(source, ClauseOf(isThere.error()));
    if (!*isThere) return RemoveFromSet(files, target); // an earlier attempt's would not fit the data file
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(source, OpenMode::Read);
    const Done copied = file ? CopyOpenFile(files, **file, source, target) : Done(file.error());
    if (copied) return copied;
    const Result<bool> isStillThere = files.HasOwn(source);
    if (isStillThere && !*isStillThere) return Success(); // it has served its purpose
    return CannotBackUp(source, ClauseOf(copied.error()));
}

Done CopyDataFile(FileAccess& files, const std::filesystem::path& source,
                  const std::filesystem::path& target) {
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(source, OpenMode::Read);
    Done copied = file ? (*file)->Lock() : Done(file.error());
    if (copied) copied = CopyOpenFile(files, **file, source, target);
    if (!copied) return CannotBackUp(source, ClauseOf(copied.error()));
    return CopyUndoFile(files, UndoFileOf(source), UndoFileOf(target)); // the lock outlasts it
}

} // namespace

Done CopyUnlocked(FileAccess& files, const std::filesystem::path& source,
                  const std::filesystem::path& target) {
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(source, OpenMode::Read);
    return file ? CopyOpenFile(files, **file, source, target) : Done(file.error());
}

Done CheckHasSameBytes(OpenedFile& file, OpenedFile& copy) {
    std::string piece(PieceLength, '\0');
    std::string copied(PieceLength, '\0');
    for (std::uint64_t offset = 0;; offset += PieceLength) {
        const Result<std::size_t> count = file.ReadAt(offset, piece);
        if (!count) return count.error();
        const Result<std::size_t> copiedCount = copy.ReadAt(offset, copied);
        if (!copiedCount) return copiedCount.error();
        if (std::string_view(piece).substr(0, *count) != std::string_view(copied).substr(0, *copiedCount))
            return Failure{.Reason = "its copy differs from it"};
        if (*count < piece.size()) return Success();
    }
}

bool IsTemporaryFile(const std::filesystem::path& name) {
    return PathText(name).ends_with(PathText(TemporaryFor({})));
}

bool IsUndoFile(const std::filesystem::path& name) {
    return PathText(name).ends_with(PathText(UndoFileOf({})));
}

std::filesystem::path DataFileOf(const std::filesystem::path& undoFile) {
    const std::string text = PathText(undoFile);
    return PathFromUtf8(std::string_view(text).substr(0, text.size() - PathText(UndoFileOf({})).size()));
}

Result<std::vector<FileForSet>> FilesForSet(const std::filesystem::path& dataFolder) {
    std::set<std::filesystem::path> names;
    std::error_code error;
    std::filesystem::directory_iterator entry(dataFolder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error))
        names.insert(entry->path().filename());
    if (error) return Failure{"read the folder", dataFolder, error.message()};
    std::vector<FileForSet> found;
    for (const std::filesystem::path& name : names) {
        if (IsTemporaryFile(name) || (IsUndoFile(name) && names.contains(DataFileOf(name)))) continue;
        const std::optional<FileForSet> described = Described(dataFolder / name);
        if (described) found.push_back(*described);
    }
    return found;
}

std::vector<Failure> CopyIntoSet(FileAccess& files, const std::filesystem::path& dataFolder,
                                 const std::vector<FileForSet>& filesForSet,
                                 const std::filesystem::path& set) {
    std::error_code ignored; // folders that cannot be compared fail below
    if (std::filesystem::equivalent(dataFolder, set, ignored))
        return {
            {"back up into the folder", set, "it is the data folder itself"}
        };
    std::vector<Failure> failures;
    for (const FileForSet& file : filesForSet) {
        const auto copy = IsUndoFile(file.Name) ? CopyUndoFile : CopyDataFile;
        const Done copied =
            file.Problem ? *file.Problem : copy(files, dataFolder / file.Name, set / file.Name);
        if (!copied) failures.push_back(copied.error());
    }
    return failures;
}
} // namespace mact
