#pragma once

#include "base/result.h"
#include "base/service.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string_view>

namespace mact {

/// A file that is open. Closed, and its lock released, when it is destroyed.
class OpenedFile : public Service {
public:
    /// In bytes.
    virtual Result<std::uint64_t> Length() = 0;
    /// Fills `bytes` from `offset` on and returns how many there were: fewer only at the end of the file.
    virtual Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> bytes) = 0;
    /// Writes all of `bytes`; bytes between the end of the file and `offset` become zero.
    virtual Done WriteAt(std::uint64_t offset, std::string_view bytes) = 0;
    /// Cuts the file off after `length` bytes; a file that is shorter stays as it is.
    virtual Done CutTo(std::uint64_t length) = 0;
    /// Returns when everything written is on the disk.
    virtual Done Flush() = 0;
    /// Holds the file against other writers that lock it. Waits at most two seconds for one that has it.
    /// Where that one has renamed or removed the file, it is opened again by its path.
    virtual Done Lock() = 0;
};

enum class OpenMode {
    Read,         ///< an existing file
    ReadOrCreate, ///< for reading; a missing file is created empty
    Update,       ///< for reading and writing; a missing file is created empty
    Replace,      ///< for writing; created empty, or emptied
};

/// The operating system's files, as far as the program works with them.
class FileAccess : public Service {
public:
    /// A folder is never opened.
    virtual Result<std::unique_ptr<OpenedFile>> Open(const std::filesystem::path& path, OpenMode mode) = 0;
    /// Replaces `to`.
    virtual Done Rename(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
    virtual Done Remove(const std::filesystem::path& path) = 0;
    virtual Done CreateFolder(const std::filesystem::path& path) = 0;
};

/// Puts `content` in the place of the file's, so that a crash or a full disk leaves the old content: through
/// a temporary file beside it and a rename. Of two running copies that do so at once one waits for the other.
/// A link is followed, the permissions of the file stay, and a file that may not be written is not replaced.
/// What is not a regular file (a device) is written as it stands.
Done ReplaceFile(FileAccess& files, const std::filesystem::path& path, std::string_view content);

/// The temporary file by which a file is replaced. What a copy that was killed left there is written over.
std::filesystem::path TemporaryFor(const std::filesystem::path& path);

/// The longest file, in bytes, that is read as a whole. The largest that the format knows, a material-type
/// table of 32,767 rows, has 7.6 MB: a longer one is damaged, and may be longer than there is memory.
inline constexpr std::uint64_t LongestWholeFile = std::uint64_t{64} * 1024 * 1024;

/// All bytes of a file. One that is longer than LongestWholeFile is a Failure.
Result<std::string> ReadWholeFile(FileAccess& files, const std::filesystem::path& path);

/// Whether there is a file (anything but a folder) or a folder at the path; a link is followed.
bool IsFileAt(const std::filesystem::path& path);
bool IsFolderAt(const std::filesystem::path& path);
} // namespace mact
