#pragma once

#include "base/files.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace mact {

/// What goes into a backup set: every regular file of the data folder, links followed, except temporary
/// files. A data file's undo file goes with it, under the same lock, since the two belong together.

struct FileForSet {
    std::filesystem::path Name{};
    std::uint64_t Length = 0;         ///< bytes; 0 if unknown
    std::optional<Failure> Problem{}; ///< why it cannot be copied
};

/// The data folder's files. An undo file is listed only if its data file is gone. A file whose status cannot
/// be read, and a link to nothing, are listed with their problem; folders, pipes and devices are not listed.
/// A Failure if the folder cannot be read.
Result<std::vector<FileForSet>> FilesForSet(const std::filesystem::path& dataFolder);

/// Whether the name is that of an undo file, which exists only while its data file is being changed.
bool IsUndoFile(const std::filesystem::path& name);
/// The name of an undo file's data file.
std::filesystem::path DataFileOf(const std::filesystem::path& undoFile);

/// Copies a file as CopyIntoSet does, but without locking it: for a file that nobody changes. `target` has
/// the permissions and the time of `source`.
Done CopyUnlocked(FileAccess& files, const std::filesystem::path& source,
                  const std::filesystem::path& target);

/// A Failure without a path unless both files hold the same bytes.
Done CheckHasSameBytes(OpenedFile& file, OpenedFile& copy);

/// Whether the name is that of a temporary file, which never goes into a set.
bool IsTemporaryFile(const std::filesystem::path& name);

/// Copies the files one by one, each locked meanwhile, flushes every copy and compares it with its file.
/// Links in the set's folder are replaced, never followed. Returns a failure for each file that is not in the
/// set.
std::vector<Failure> CopyIntoSet(FileAccess& files, const std::filesystem::path& dataFolder,
                                 const std::vector<FileForSet>& filesForSet,
                                 const std::filesystem::path& set);
} // namespace mact
