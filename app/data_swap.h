#pragma once

#include "base/app_context.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

namespace mact {

/// Puts a whole second data folder in the place of the data folder.
///
/// A note in the program folder is locked for as long as a restore takes, so that no two copies of the
/// program restore at once. Once it holds what follows, on the disk, the restore has happened: the next start
/// finishes what was cut off. Until then it is empty, and the next start removes the second folder.

inline constexpr std::string_view RestoreNoteName = "restore.mact.note";

/// Where the folders are. If the data folder is a link, they are beside the folder that it leads to.
struct DataPlaces {
    std::filesystem::path Data;
    std::filesystem::path Second; ///< data.mact.new: what is to take the place of the data folder
    std::filesystem::path Old;    ///< data.mact.old: what has been replaced, until it is removed
};
DataPlaces PlacesOf(const AppContext& app);

/// The note, which only the holder of this changes. Destroying it releases the lock.
class RestoreNote {
public:
    /// Waits two seconds at most for another copy; that one still being busy is a Failure.
    static Result<RestoreNote> Take(AppContext& app);

    /// On disk when it succeeds; from then on the restore has happened. `keptSet` holds what is replaced;
    /// empty = no set does, so the replaced folder must stay.
    Done Write(const std::filesystem::path& keptSet);
    /// On disk when it succeeds; then nothing has happened.
    Done Empty();
    /// The set that was written; empty if the note is empty, or was not written to its end.
    Result<std::optional<std::filesystem::path>> Read();
    Done Remove();

private:
    RestoreNote(FileAccess& files, std::filesystem::path path, std::unique_ptr<OpenedFile> file)
        : m_files(&files), m_path(std::move(path)), m_file(std::move(file)) {}

    FileAccess* m_files;
    std::filesystem::path m_path;
    std::unique_ptr<OpenedFile> m_file;
};

/// Removes a folder of files, or whatever else has its name. A link is not followed. On disk when it
/// succeeds: without the note nobody would look for what comes back.
Done RemoveFolderOfFiles(FileAccess& files, const std::filesystem::path& folder);

/// What counts of a folder that is compared with a set. Temporary files never do.
enum class Compared {
    FilesForSet, ///< what a backup copies: files, links to files followed
    Everything,  ///< a link or a folder makes it differ
};
/// Whether every file in the folder is in the set with the same bytes.
Result<bool> HoldsSameFiles(FileAccess& files, const std::filesystem::path& folder,
                            const std::filesystem::path& set, Compared compared);

/// Swaps the folders, whatever has been done of it already. On disk when it succeeds.
Done SwapFolders(FileAccess& files, const DataPlaces& places);

/// Takes a swap back that has failed. A Failure if the note must stay, for the next start to finish it.
Done TakeBackSwap(FileAccess& files, const DataPlaces& places);

/// Removes the replaced folder if the set holds all of it. If not, it gets a name of its own beside the data
/// folder, which is returned; empty if there is no such folder any more.
Result<std::optional<std::filesystem::path>> RemoveReplacedFolder(FileAccess& files, const DataPlaces& places,
                                                                  const std::filesystem::path& keptSet);

/// What a start does first: finishes a restore that was cut off, or removes what is left of one that has not
/// happened. Without the note it only looks for it.
Done FinishRestore(AppContext& app);
} // namespace mact
