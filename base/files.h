#pragma once

#include "base/result.h"
#include "base/services.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string_view>

namespace mact {

/// Why a file cannot be locked, or not be read in peace.
inline constexpr std::string_view UsedByAnotherCopy =
    "another running copy of the program is working with it";

/// An open file. Destroying it closes it and releases its lock.
class OpenedFile : public Service {
public:
    /// In bytes.
    virtual Result<std::uint64_t> Length() = 0;
    /// Reads into `bytes` from `offset` on. Returns how many were read: fewer only at the end of the file.
    virtual Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> bytes) = 0;
    /// Writes all of `bytes`. A gap between the end of the file and `offset` is filled with zero bytes.
    virtual Done WriteAt(std::uint64_t offset, std::string_view bytes) = 0;
    /// Cuts the file to `length` bytes; a shorter file is left alone.
    virtual Done CutTo(std::uint64_t length) = 0;
    /// Returns once everything written is on the disk, and the name of a file opened as Own too. A name that
    /// another mode has created is there already.
    virtual Done Flush() = 0;
    /// Keeps out other writers that lock the file, waiting at most two seconds for one of them to finish.
    /// If that one has renamed or removed the file, its path is opened again.
    virtual Done Lock() = 0;
    /// When the content last changed, in units of the system's: good only for being compared.
    virtual Result<std::int64_t> TimeOfChange() = 0;
    /// Makes TimeOfChange differ from `earlier`: two changes in quick succession can leave it the same.
    virtual Done MakeTimeDifferFrom(std::int64_t earlier) = 0;
};

enum class OpenMode {
    Read,         ///< an existing file
    ReadOrCreate, ///< for reading; a missing file is created empty
    Update,       ///< for reading and writing; a missing file is created empty
    Replace,      ///< for writing; created empty, or emptied
    Own,          ///< as Update, for a name that only the program uses: whatever else has that name, a link
                  ///< above all, is removed and not followed
};

enum class NameKind {
    Plain,        ///< the only name of a file, or no file's
    Link,         ///< a link that holds a path
    OneOfSeveral, ///< of a file that has more names
};

/// What the program needs of the operating system's files.
class FileAccess : public Service {
public:
    /// Opening a folder is a Failure.
    virtual Result<std::unique_ptr<OpenedFile>> Open(const std::filesystem::path& path, OpenMode mode) = 0;
    /// Replaces `to` if it exists.
    virtual Done Rename(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
    virtual Done Remove(const std::filesystem::path& path) = 0;
    /// Whether a file stands at a name that only the program uses; a link does not count. A Failure if the
    /// system cannot tell.
    virtual Result<bool> HasOwn(const std::filesystem::path& path) = 0;
    virtual Done CreateFolder(const std::filesystem::path& path) = 0;
    /// `to` must be free. On disk only once the folder that holds the two has been flushed.
    virtual Done RenameFolder(const std::filesystem::path& from, const std::filesystem::path& to) {
        return Rename(from, to);
    }
    /// Returns once the names in the folder are on the disk.
    virtual Done FlushFolder(const std::filesystem::path&) { return Success(); }
    /// Whether a folder can be renamed while files in it are open.
    virtual bool RenamesFoldersInUse() const { return true; }
    /// Lets that many files be open at once, besides a few others. A Failure if the system does not.
    virtual Done AllowOpenFiles(std::size_t) { return Success(); }
    virtual NameKind KindOfName(const std::filesystem::path&) { return NameKind::Plain; }
    /// A Failure if the path is a link that must not be followed.
    virtual Done CheckLink(const std::filesystem::path&) { return Success(); }
};

/// Replaces the file's content through a temporary file beside it and a rename, so that a crash or a full
/// disk leaves the old content. If two running copies do this at once, one waits for the other. A link is
/// followed, the file's permissions are kept, and a file that the user may not write to is a Failure. What is
/// not a regular file (a device) is written in place.
Done ReplaceFile(FileAccess& files, const std::filesystem::path& path, std::string_view content);

/// The temporary file used to replace `path`. One that a killed copy left behind is overwritten.
std::filesystem::path TemporaryFor(const std::filesystem::path& path);

/// The longest file, in bytes, that is read as a whole. The largest valid one, a material-type table of
/// 32,767 rows, has 7.6 MB: a file beyond this limit is damaged and might not fit in memory.
inline constexpr std::uint64_t LongestWholeFile = std::uint64_t{64} * 1024 * 1024;

/// The same for a file of a few short texts.
inline constexpr std::uint64_t LongestSmallFile = std::uint64_t{2} * 1024 * 1024;

/// All bytes of a file. A file of more than `longest` bytes is a Failure.
Result<std::string> ReadWholeFile(FileAccess& files, const std::filesystem::path& path,
                                  std::uint64_t longest = LongestWholeFile);

/// Where a link leads, be there anything or not; another path leads to itself.
std::filesystem::path EndOfLinks(std::filesystem::path path);

/// Whether both are one name in one folder, however the folder is spelled.
bool AreSameName(const std::filesystem::path& left, const std::filesystem::path& right);

/// Whether the path leads to a file (anything but a folder), or to a folder. Links are followed.
bool IsFileAt(const std::filesystem::path& path);
bool IsFolderAt(const std::filesystem::path& path);
/// The same; a Failure if the system cannot tell, as after an input/output error.
Result<bool> LookForFile(const std::filesystem::path& path);
Result<bool> LookForFolder(const std::filesystem::path& path);
/// Whether the path leads to anything. A Failure if the system cannot tell, as after an input/output error:
/// what cannot be seen may well be there, so nothing must be created in its place.
Result<bool> IsAnythingAt(const std::filesystem::path& path);
} // namespace mact
