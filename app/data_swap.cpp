#include "app/data_swap.h"

#include "app/backup_copy.h"
#include "base/interrupted.h"
#include "base/sha256.h"
#include "base/text.h"
#include "store/data_folder.h"

#include <string>
#include <system_error>
#include <vector>

namespace mact {
namespace {

constexpr std::string_view NoteTitle = "MACT restore 1";
constexpr char PieceEnd = '\0';              // no path holds it
constexpr std::uint64_t LongestNote = 65536; // bytes

std::filesystem::path WithSuffix(std::filesystem::path path, const std::string& suffix) {
    path += suffix;
    return path;
}

/// Links are not followed. A Failure if the system cannot tell.
Result<std::filesystem::file_status> StatusAt(const std::filesystem::path& path) {
    std::error_code error;
    const std::filesystem::file_status status = WhileInterrupted(
        error, [&](std::error_code& given) { return std::filesystem::symlink_status(path, given); });
    if (status.type() == std::filesystem::file_type::none)
        return Failure{"look for the folder", path, error.message()};
    return status;
}

Result<bool> IsThere(const std::filesystem::path& path) {
    return StatusAt(path).transform([](const auto& status) { return std::filesystem::exists(status); });
}

Result<std::filesystem::path> FreeNameBeside(const std::filesystem::path& data) {
    for (int number = 1;; ++number) {
        const std::string suffix = ".replaced" + (number > 1 ? std::to_string(number) : std::string());
        std::filesystem::path name = WithSuffix(data, suffix);
        const Result<bool> isThere = IsThere(name);
        if (!isThere) return isThere.error();
        if (!*isThere) return name;
    }
}

Result<std::vector<std::filesystem::path>> EntriesOf(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> entries;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        entries.push_back(entry->path());
    if (error) return Failure{"read the folder", folder, error.message()};
    return entries;
}

Result<bool> HasSameFileIn(FileAccess& files, const std::filesystem::path& file,
                           const std::filesystem::path& set, Compared compared) {
    const Result<std::filesystem::file_status> status = StatusAt(file);
    if (!status) return status.error();
    if (!std::filesystem::is_regular_file(*status)) {
        if (compared == Compared::Everything) return false;
        std::error_code ignored; // a link to nothing is none
        if (!std::filesystem::is_regular_file(std::filesystem::status(file, ignored))) return true;
    }
    const std::filesystem::path copy = set / file.filename();
    const Result<bool> isKept = files.HasOwn(copy);
    if (!isKept || !*isKept) return isKept;
    const Result<std::unique_ptr<OpenedFile>> opened = files.Open(file, OpenMode::Read);
    if (!opened) return opened.error();
    const Result<std::unique_ptr<OpenedFile>> openedCopy = files.Open(copy, OpenMode::Read);
    if (!openedCopy) return openedCopy.error();
    const Done areSame = CheckHasSameBytes(**opened, **openedCopy);
    if (!areSame && !areSame.error().Path.empty()) return areSame.error();
    return static_cast<bool>(areSame);
}

struct FoldersThere {
    bool Data;
    bool Second;
    bool Old;
};
Result<FoldersThere> LookForFolders(const DataPlaces& places) {
    const Result<bool> hasData = IsThere(places.Data);
    if (!hasData) return hasData.error();
    const Result<bool> hasSecond = IsThere(places.Second);
    if (!hasSecond) return hasSecond.error();
    const Result<bool> hasOld = IsThere(places.Old);
    if (!hasOld) return hasOld.error();
    return FoldersThere{*hasData, *hasSecond, *hasOld};
}

/// With the replaced folder in its place already, the data folder is one that somebody has made since.
Done PutDataAside(FileAccess& files, const DataPlaces& places, bool hasOld) {
    const Result<std::filesystem::path> name = hasOld ? FreeNameBeside(places.Data) : places.Old;
    return name ? files.RenameFolder(places.Data, *name) : Done(name.error());
}

/// The restore had not happened.
Done RemoveWhatIsLeft(FileAccess& files, const DataPlaces& places) {
    const Result<FoldersThere> there = LookForFolders(places);
    if (!there) return there.error();
    if (!there->Data && !there->Old) return Success(); // nor may what could be all there is be removed
    if (!there->Data) {                                // the note has been damaged since
        const Done renamed = files.RenameFolder(places.Old, places.Data);
        if (!renamed) return renamed;
    }
    return RemoveFolderOfFiles(files, places.Second);
}

} // namespace

DataPlaces PlacesOf(const AppContext& app) {
    std::filesystem::path data = EndOfLinks(DataFolder(app)).lexically_normal();
    if (!data.has_filename()) data = data.parent_path(); // a link to "." or "a/.." ends with a separator then
    return {data, WithSuffix(data, ".mact.new"), WithSuffix(data, ".mact.old")};
}

Result<RestoreNote> RestoreNote::Take(AppContext& app) {
    const std::filesystem::path path = app.ProgramFolder / RestoreNoteName;
    Result<std::unique_ptr<OpenedFile>> file = app.Files.Open(path, OpenMode::Own);
    if (!file) return file.error();
    const Done locked = (*file)->Lock();
    if (locked) return RestoreNote(app.Files, path, std::move(*file));
    if (locked.error().Reason != UsedByAnotherCopy) return locked.error();
    return Failure{.Doing = "work with the data",
                   .Reason = "another running copy of the program is restoring a backup set"};
}

Done RestoreNote::Write(const std::filesystem::path& keptSet) {
    std::string content = std::string(NoteTitle) + PieceEnd + PathText(keptSet) + PieceEnd;
    Sha256 sum;
    sum.Add(content);
    content += sum.Digits() + PieceEnd;
    const Done written = m_file->WriteAt(0, content);
    return written ? m_file->Flush() : written;
}

Done RestoreNote::Empty() {
    const Done cut = m_file->CutTo(0);
    return cut ? m_file->Flush() : cut;
}

Result<std::optional<std::filesystem::path>> RestoreNote::Read() {
    const std::optional<std::filesystem::path> none;
    const Result<std::uint64_t> length = m_file->Length();
    if (!length) return length.error();
    if (*length == 0 || *length > LongestNote) return none;
    std::string content(static_cast<std::size_t>(*length), '\0');
    const Result<std::size_t> count = m_file->ReadAt(0, content);
    if (!count) return count.error();
    const std::vector<std::string_view> pieces = Split(content, PieceEnd);
    if (*count < content.size() || pieces.size() != 4 || pieces[0] != NoteTitle) return none;
    Sha256 sum;
    sum.Add(std::string_view(content).substr(0, pieces[0].size() + pieces[1].size() + 2));
    if (sum.Digits() != pieces[2]) return none;
    return std::optional(PathFromUtf8(pieces[1]));
}

Done RestoreNote::Remove() {
    return m_files->Remove(m_path);
}

Done RemoveFolderOfFiles(FileAccess& files, const std::filesystem::path& folder) {
    const Result<std::filesystem::file_status> status = StatusAt(folder);
    if (!status) return status.error();
    if (!std::filesystem::exists(*status)) return Success();
    if (!std::filesystem::is_directory(*status)) return files.Remove(folder);
    const Result<std::vector<std::filesystem::path>> entries = EntriesOf(folder);
    if (!entries) return entries.error();
    for (const std::filesystem::path& entry : *entries) {
        const Done removed = files.Remove(entry);
        if (!removed) return removed;
    }
    const Done flushed = files.FlushFolder(folder);
    if (!flushed) return flushed;
    std::error_code error;
    std::filesystem::remove(folder, error);
    if (error) return Failure{"remove the folder", folder, error.message()};
    return files.FlushFolder(folder.parent_path());
}

Result<bool> HoldsSameFiles(FileAccess& files, const std::filesystem::path& folder,
                            const std::filesystem::path& set, Compared compared) {
    const Result<std::vector<std::filesystem::path>> entries = EntriesOf(folder);
    if (!entries) return entries.error();
    for (const std::filesystem::path& entry : *entries) {
        if (IsTemporaryFile(entry.filename())) continue;
        const Result<bool> isSame = HasSameFileIn(files, entry, set, compared);
        if (!isSame || !*isSame) return isSame;
    }
    return true;
}

Done SwapFolders(FileAccess& files, const DataPlaces& places) {
    const Result<FoldersThere> there = LookForFolders(places);
    if (!there) return there.error();
    if (!there->Second && !there->Data) // as when the disk that the data folder leads to is not there
        return Failure{"finish the restore of a backup set", places.Data, "the folder is missing"};
    // No flush in between, which would make it longer that there is no data folder.
    Done done = there->Second && there->Data ? PutDataAside(files, places, there->Old) : Success();
    if (done && there->Second) {
        done = files.RenameFolder(places.Second, places.Data);
        const Result<bool> isMade = IsThere(places.Data);
        if (!done && isMade && *isMade) { // by a copy that has just been started
            done = PutDataAside(files, places, true);
            if (done) done = files.RenameFolder(places.Second, places.Data);
        }
    }
    return done ? files.FlushFolder(places.Data.parent_path()) : done;
}

Done TakeBackSwap(FileAccess& files, const DataPlaces& places) {
    const Result<FoldersThere> there = LookForFolders(places);
    if (!there) return there.error();
    if (!there->Second) return Failure{"rename the folder", places.Data, "it has been done"};
    Done done = there->Old && there->Data ? PutDataAside(files, places, true) : Success();
    if (done && there->Old) done = files.RenameFolder(places.Old, places.Data);
    return done ? files.FlushFolder(places.Data.parent_path()) : done;
}

Result<std::optional<std::filesystem::path>> RemoveReplacedFolder(FileAccess& files, const DataPlaces& places,
                                                                  const std::filesystem::path& keptSet) {
    const Result<bool> hasOld = IsThere(places.Old);
    if (!hasOld) return hasOld.error();
    if (!*hasOld) return std::optional<std::filesystem::path>{};
    const Result<bool> isKept =
        keptSet.empty() ? false : HoldsSameFiles(files, places.Old, keptSet, Compared::Everything);
    if (isKept && *isKept) {
        const Done removed = RemoveFolderOfFiles(files, places.Old);
        const Result<bool> isStillThere = IsThere(places.Old);
        if (removed || (isStillThere && !*isStillThere)) return std::optional<std::filesystem::path>{};
    }
    const Result<std::filesystem::path> name = FreeNameBeside(places.Data);
    if (!name) return name.error();
    const Done renamed = files.RenameFolder(places.Old, *name);
    if (!renamed) return renamed.error();
    const Done flushed = files.FlushFolder(places.Data.parent_path());
    if (!flushed) return flushed.error();
    return std::optional(*name);
}

Done FinishRestore(AppContext& app) {
    const Result<bool> isThere = app.Files.HasOwn(app.ProgramFolder / RestoreNoteName);
    if (!isThere) return isThere.error();
    if (!*isThere) return Success();
    Result<RestoreNote> note = RestoreNote::Take(app);
    if (!note) return note.error();
    const Result<std::optional<std::filesystem::path>> keptSet = note->Read();
    if (!keptSet) return keptSet.error();
    const DataPlaces places = PlacesOf(app);
    if (!*keptSet) {
        // What cannot be removed does no harm: the next restore tries again.
        if (RemoveWhatIsLeft(app.Files, places)) static_cast<void>(note->Remove());
        return Success();
    }
    const Done swapped = SwapFolders(app.Files, places);
    if (!swapped) return swapped;
    // A replaced folder that cannot be removed need not keep the program from starting: the next start tries
    // again. A note that stays does no harm.
    if (RemoveReplacedFolder(app.Files, places, **keptSet)) static_cast<void>(note->Remove());
    return Success();
}
} // namespace mact
