#include "base/files.h"

#include "base/interrupted.h"

#include <system_error>

namespace mact {
namespace {

/// Links are followed.
std::filesystem::file_status StatusOf(const std::filesystem::path& path, std::error_code& error) {
    return WhileInterrupted(error,
                            [&](std::error_code& given) { return std::filesystem::status(path, given); });
}

/// `doing` is what the Failure says if the system cannot tell.
Result<std::filesystem::file_status> KnownStatusOf(const std::filesystem::path& path, const char* doing) {
    std::error_code error;
    const std::filesystem::file_status status = StatusOf(path, error);
    if (status.type() == std::filesystem::file_type::none) return Failure{doing, path, error.message()};
    return status;
}

Done WriteAll(OpenedFile& file, std::string_view content) {
    const Done written = file.WriteAt(0, content);
    if (!written) return written;
    return file.Flush();
}

/// In place: a rename would put a file where the device is.
Done WriteToDevice(FileAccess& files, const std::filesystem::path& path, std::string_view content) {
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(path, OpenMode::Replace);
    if (!file) return file.error();
    return WriteAll(**file, content);
}

/// As far as the file system has permissions.
void CopyPermissions(const std::filesystem::file_status& from, const std::filesystem::path& to) {
    std::error_code ignored;
    WhileInterrupted(ignored, [&](std::error_code& given) {
        std::filesystem::permissions(to, from.permissions(), given);
        return 0;
    });
}

/// For a link, the file that it leads to, which may not exist yet.
std::filesystem::path FollowLinks(const std::filesystem::path& path) {
    std::error_code error;
    const std::filesystem::path followed = WhileInterrupted(
        error, [&](std::error_code& given) { return std::filesystem::canonical(path, given); });
    if (!error) return followed;
    // canonical refuses a link to a missing file; the link itself says where to create it.
    const std::filesystem::path target = WhileInterrupted(
        error, [&](std::error_code& given) { return std::filesystem::read_symlink(path, given); });
    return error ? path : path.parent_path() / target;
}

/// A rename needs no permission for the file that it replaces, so a read-only one must be refused here.
Done CheckIsWritable(FileAccess& files, const std::filesystem::path& path) {
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(path, OpenMode::Update);
    return file ? Success() : Done(file.error());
}

/// Names the target first: the user does not know the temporary file.
Failure CannotWrite(const std::filesystem::path& target, const Failure& ofTemporary) {
    return {"write the file", target, ClauseOf(ofTemporary)};
}

} // namespace

std::filesystem::path TemporaryFor(const std::filesystem::path& path) {
    std::filesystem::path temporary = path;
    temporary += ".mact.tmp"; // a name that no user would choose
    return temporary;
}

Done ReplaceFile(FileAccess& files, const std::filesystem::path& path, std::string_view content) {
    const Done checked = files.CheckLink(path);
    if (!checked) return checked;
    const std::filesystem::path target = FollowLinks(path);
    std::error_code error;
    const std::filesystem::file_status status = StatusOf(target, error);
    // What cannot be seen may be there, and be private.
    if (status.type() == std::filesystem::file_type::none)
        return Failure{"write the file", target, error.message()};
    if (std::filesystem::exists(status)) {
        if (!std::filesystem::is_regular_file(status)) return WriteToDevice(files, target, content);
        const Done isWritable = CheckIsWritable(files, target);
        if (!isWritable) return isWritable;
    }

    const std::filesystem::path temporary = TemporaryFor(target);
    const Result<bool> wasThere = files.HasOwn(temporary);
    if (!wasThere) return CannotWrite(target, wasThere.error());
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(temporary, OpenMode::Own);
    if (!file) return CannotWrite(target, file.error());
    // Emptied only once it is locked: another running copy may be about to rename it into place.
    const Done locked = (*file)->Lock();
    if (!locked) {
        if (!*wasThere) static_cast<void>(files.Remove(temporary)); // one that was there may be that copy's
        return CannotWrite(target, locked.error());
    }
    // Before there is anything to read, since the file may be private; and on the locked file.
    if (std::filesystem::exists(status)) CopyPermissions(status, temporary);
    Done replaced = (*file)->CutTo(0);
    // WriteAll flushes: after a crash, a file renamed before that could be empty.
    if (replaced) replaced = WriteAll(**file, content);
    if (!replaced) replaced = CannotWrite(target, replaced.error());
    if (replaced) replaced = files.Rename(temporary, target);  // the lock outlasts it
    if (!replaced) static_cast<void>(files.Remove(temporary)); // the first failure is the one to report
    return replaced;
}

Result<std::string> ReadWholeFile(FileAccess& files, const std::filesystem::path& path,
                                  std::uint64_t longest) {
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(path, OpenMode::Read);
    if (!file) return file.error();
    const Result<std::uint64_t> length = (*file)->Length();
    if (!length) return length.error();
    if (*length > longest)
        return Failure{"read the file", path,
                       "it has " + std::to_string(*length) + " bytes, and " + std::to_string(longest) +
                           " is the most that is read as a whole"};
    std::string content(static_cast<std::size_t>(*length), '\0');
    const Result<std::size_t> count = (*file)->ReadAt(0, content);
    if (!count) return count.error();
    content.resize(*count); // less if the file was cut meanwhile
    return content;
}

bool IsFileAt(const std::filesystem::path& path) {
    std::error_code ignored;
    const std::filesystem::file_status status = StatusOf(path, ignored);
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

bool IsFolderAt(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(StatusOf(path, ignored));
}

Result<bool> LookForFile(const std::filesystem::path& path) {
    return KnownStatusOf(path, "look for the file").transform([](const auto& status) {
        return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
    });
}

Result<bool> LookForFolder(const std::filesystem::path& path) {
    return KnownStatusOf(path, "look for the folder").transform([](const auto& status) {
        return std::filesystem::is_directory(status);
    });
}

Result<bool> IsAnythingAt(const std::filesystem::path& path) {
    return KnownStatusOf(path, "look for the file").transform([](const auto& status) {
        return std::filesystem::exists(status);
    });
}

bool AreSameName(const std::filesystem::path& left, const std::filesystem::path& right) {
    std::error_code error; // a folder that does not exist is the same as none
    return left.filename() == right.filename() &&
           std::filesystem::equivalent(left.parent_path(), right.parent_path(), error) && !error;
}

std::filesystem::path EndOfLinks(std::filesystem::path path) {
    constexpr int most = 40; // as the system's
    std::error_code error;
    for (int links = 0; links < most; ++links) {
        const std::filesystem::path target = std::filesystem::read_symlink(path, error);
        if (error) break;
        path = path.parent_path() / target;                  // an absolute target replaces what is before it
        if (!path.has_filename()) path = path.parent_path(); // it ended with a separator
    }
    return path;
}
} // namespace mact
