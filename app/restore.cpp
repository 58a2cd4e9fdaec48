#include "app/restore.h"

#include "app/backup.h"
#include "app/backup_copy.h"
#include "app/backup_sets.h"
#include "app/data_swap.h"
#include "base/messages.h"
#include "base/text.h"
#include "store/additional_names.h"
#include "store/companies.h"
#include "store/data_folder.h"
#include "store/material_types.h"
#include "store/undo_file.h"

#include <algorithm>
#include <memory>
#include <system_error>

namespace mact {
namespace {

using OptionalRestored = std::optional<Restored>;

Failure CannotRestore(const std::filesystem::path& set, const std::string& reason) {
    return {"restore the backup set", set, reason};
}

Failure CannotRestore(const std::filesystem::path& set, const Failure& failure) {
    const bool isInUse = failure.Reason == UsedByAnotherCopy;
    return CannotRestore(set, isInUse ? "another running copy of the program is working with the data; "
                                        "close it and try again"
                                      : ClauseOf(failure));
}

/// Whether the folder is the other one, or somewhere in it.
bool IsWithin(const std::filesystem::path& folder, const std::filesystem::path& other) {
    std::error_code error;
    const std::filesystem::path inner = std::filesystem::weakly_canonical(folder, error);
    const std::filesystem::path outer = std::filesystem::weakly_canonical(other, error);
    return !error && std::ranges::mismatch(outer, inner).in1 == outer.end();
}

/// The copy is the owner's to write, even if the set is on a disk that cannot be written to.
void MakeWritable(const std::filesystem::path& file) {
    std::error_code ignored; // a file system need not have permissions
    std::filesystem::permissions(file,
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::add, ignored);
}

/// Takes a change back that was cut off when the set was made.
Done ApplyUndoFile(FileAccess& files, const std::filesystem::path& dataFile) {
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(dataFile, OpenMode::Update);
    if (!file) return file.error();
    const Done taken = TakeBackUnfinished(files, dataFile, **file);
    if (!taken) return taken;
    const Result<bool> isThere = files.HasOwn(UndoFileOf(dataFile));
    if (!isThere) return isThere.error();
    return *isThere ? files.Remove(UndoFileOf(dataFile)) : Success(); // a void one that stayed
}

/// The second folder, whole and on the disk.
Done BuildSecondFolder(AppContext& app, const std::filesystem::path& set, const SetContent& content,
                       const DataPlaces& places, const RestoreQuestions& questions) {
    FileAccess& files = app.Files;
    const Done created = files.CreateFolder(places.Second);
    if (!created) return created;
    std::error_code ignored; // as private as the present one; a file system need not have permissions
    const std::filesystem::file_status present = std::filesystem::status(places.Data, ignored);
    if (std::filesystem::is_directory(present))
        std::filesystem::permissions(places.Second, present.permissions() | std::filesystem::perms::owner_all,
                                     ignored);
    for (const std::filesystem::path& name : content.Files) {
        questions.Progress("Copying " + PathText(name));
        const Done copied = CopyUnlocked(files, set / name, places.Second / name);
        if (!copied)
            return Failure{"copy the file", set / name,
                           copied.error().Path.empty() ? copied.error().Reason : ClauseOf(copied.error())};
        MakeWritable(places.Second / name);
    }
    for (const std::filesystem::path& name : content.Files) {
        const Done applied =
            IsUndoFile(name) ? ApplyUndoFile(files, places.Second / DataFileOf(name)) : Success();
        if (!applied) return applied;
    }
    // The material editor would create an empty table.
    if (std::ranges::find(content.Files, HapContentsName) == content.Files.end()) {
        const Done table = CreateDefaultHapContents({files, places.Second, 0});
        if (!table) return table;
    }
    return files.FlushFolder(places.Second);
}

/// Keeps other copies from changing the data folder until it is destroyed.
class DataLocks {
public:
    explicit DataLocks(FileAccess& files) : m_files(files) {}
    DataLocks(const DataLocks&) = delete;
    DataLocks& operator=(const DataLocks&) = delete;
    ~DataLocks() { Release(); }

    Done LockAll(const std::filesystem::path& folder) {
        if (!IsFolderAt(folder)) return Success();
        const Result<std::vector<FileForSet>> found = FilesForSet(folder);
        if (!found) return found.error();
        const Done allowed = m_files.AllowOpenFiles(found->size());
        if (!allowed) return allowed;
        for (const FileForSet& file : *found) {
            const std::filesystem::path path = folder / file.Name;
            const std::string name = PathText(file.Name);
            const bool growsByRecord =
                name.ends_with(MaterialsSuffix) || name.ends_with(UsageSuffix) || name == CompaniesName;
            const Done locked = growsByRecord ? Lock(path) : LockTemporaryOf(path);
            if (!locked) return locked;
        }
        return Success();
    }

    /// The temporary files are removed.
    void Release() {
        for (const std::filesystem::path& path : m_temporary)
            static_cast<void>(m_files.Remove(path)); // the lock outlasts it
        m_temporary.clear();
        m_opened.clear();
    }
    /// The temporary files have gone with their folder.
    void LeaveReplacedFolder() {
        m_temporary.clear();
        m_opened.clear();
    }

private:
    Done Lock(const std::filesystem::path& path) {
        Result<std::unique_ptr<OpenedFile>> file = m_files.Open(path, OpenMode::Read);
        if (!file) return Success(); // nobody else can work with it either
        const Done locked = (*file)->Lock();
        if (locked) m_opened.push_back(std::move(*file));
        return locked;
    }
    /// A file that is replaced as a whole is not locked itself (ReplaceFile).
    Done LockTemporaryOf(const std::filesystem::path& path) {
        const std::filesystem::path temporary = TemporaryFor(path);
        Result<std::unique_ptr<OpenedFile>> file = m_files.Open(temporary, OpenMode::Own);
        if (!file) return Success(); // nor can anybody else replace it
        const Done locked = (*file)->Lock();
        if (!locked) return locked;
        m_opened.push_back(std::move(*file));
        m_temporary.push_back(temporary);
        return locked;
    }

    FileAccess& m_files;
    std::vector<std::unique_ptr<OpenedFile>> m_opened;
    std::vector<std::filesystem::path> m_temporary;
};

/// What is there before the restore, and where.
struct Kept {
    std::filesystem::path Set{}; ///< empty = there was no data folder
    bool IsWhole = false;        ///< every present file is in the set
};

/// Empty if it was shown that there is no set, or if the user does not go on.
std::optional<Kept> KeepPresentData(AppContext& app, const RestoreQuestions& questions) {
    const Result<bool> isThere = LookForFolder(DataFolder(app));
    if (ShowFailure(app, isThere)) return std::nullopt;
    if (!*isThere) return Kept{};
    questions.Progress("Backing up the present data");
    const std::optional<EndedBackup> ended = CopyDataIntoNewSet(app);
    if (!ended) return std::nullopt;
    if (ended->Failures.empty()) return Kept{ended->Set, true};
    std::vector<std::string> sentences;
    for (const Failure& failure : ended->Failures)
        sentences.push_back(SentenceOf(failure));
    if (!questions.GoesOnWithoutBackup(sentences)) return std::nullopt;
    return Kept{ended->Set, false};
}

/// The swap that has failed is taken back, or left to the next start.
Failure AfterFailedSwap(FileAccess& files, const DataPlaces& places, RestoreNote& note,
                        const Failure& failure) {
    const Done takenBack = TakeBackSwap(files, places);
    if (takenBack && note.Empty()) return failure;
    Failure inDoubt = failure;
    inDoubt.Reason += "; the next start of the program finishes the restore";
    return inDoubt;
}

/// From here on nothing but the second folder changes until the note is on the disk.
Done SwapUnderLocks(AppContext& app, const DataPlaces& places, const Kept& kept, RestoreNote& note,
                    const RestoreQuestions& questions) {
    FileAccess& files = app.Files;
    DataLocks locks(files);
    const Done locked = locks.LockAll(places.Data);
    if (!locked) return locked;
    questions.Progress("Comparing the present data with its backup");
    std::filesystem::path holdsAll;
    if (kept.IsWhole) {
        const Result<bool> isSame = HoldsSameFiles(files, places.Data, kept.Set, Compared::FilesForSet);
        if (!isSame) return isSame.error();
        if (!*isSame) // another copy has saved something since it was copied
            return Failure{"work with the folder", places.Data, std::string(UsedByAnotherCopy)};
        holdsAll = kept.Set;
    }
    // A folder in use cannot be renamed there. What is saved just now stays in the replaced folder, which
    // then differs from the kept set.
    if (!files.RenamesFoldersInUse()) {
        locks.Release();
        static_cast<void>(files.FlushFolder(places.Data)); // of the temporary files, which do no harm
    }
    const Done written = note.Write(holdsAll);
    if (!written) {
        const Done emptied = note.Empty();
        return emptied ? written : AfterFailedSwap(files, places, note, written.error());
    }
    const Done swapped = SwapFolders(files, places);
    std::error_code ignored;
    if (!std::filesystem::exists(places.Second, ignored)) locks.LeaveReplacedFolder();
    return swapped ? swapped : AfterFailedSwap(files, places, note, swapped.error());
}

/// What is shown of the company, and its names, from the files as they are now.
void LookUpCompanyAgain(AppContext& app) {
    const std::int16_t companyId = app.CurrentCompanyId;
    MakeCompanyCurrent(app, {});
    app.AdditionalNames = UnusedNames;
    std::vector<CompanyRecord> found;
    // Without a list of companies, looking for one would create it.
    if (companyId == 0 || !IsFileAt(CompaniesFile(app))) return;
    if (!FindCompanies(app, {.CompanyId = companyId}, found)) return;
    MakeCompanyCurrent(app, found.front());
    if (IsFileAt(AdditionalNamesFile(app))) LoadAdditionalNames(app);
}

/// With the note held, and empty.
Result<OptionalRestored> RestoreWithNote(AppContext& app, const std::filesystem::path& set,
                                         const SetContent& content, RestoreNote& note,
                                         const RestoreQuestions& questions) {
    const DataPlaces places = PlacesOf(app);
    Done done = RemoveFolderOfFiles(app.Files, places.Second); // of an attempt that was cut off
    if (done) {
        const auto moved = RemoveReplacedFolder(app.Files, places, {}); // the same
        if (!moved) done = moved.error();
    }
    if (done) done = BuildSecondFolder(app, set, content, places, questions);
    std::optional<Kept> kept;
    if (done) kept = KeepPresentData(app, questions);
    if (kept) done = SwapUnderLocks(app, places, *kept, note, questions);
    const bool isDone = done && kept;
    const Result<std::optional<std::filesystem::path>> written = note.Read();
    const bool hasHappened = !written || *written;
    if (hasHappened) {
        LookUpCompanyAgain(app);
        if (app.Changes) app.Changes->Clear(); // of records that are no longer there
    }
    if (!isDone) {
        // An empty note that stays lets the next start remove what could not be removed.
        if (!hasHappened && RemoveFolderOfFiles(app.Files, places.Second)) static_cast<void>(note.Remove());
        return done ? Result<OptionalRestored>(OptionalRestored{}) : CannotRestore(set, done.error());
    }
    const auto replaced =
        RemoveReplacedFolder(app.Files, places, kept->IsWhole ? kept->Set : std::filesystem::path{});
    Restored restored{kept->Set, replaced ? *replaced : places.Old};
    if (replaced) static_cast<void>(note.Remove()); // otherwise the next start tries again
    return OptionalRestored(restored);
}

Result<OptionalRestored> Restore(AppContext& app, const std::filesystem::path& set,
                                 const RestoreQuestions& questions) {
    const DataPlaces places = PlacesOf(app);
    if (IsWithin(set, places.Data))
        return CannotRestore(set, "it is in the data folder, which is about to be replaced");
    // Choosing another folder, a user may come upon what an attempt has left.
    for (const std::filesystem::path& own : {places.Second, places.Old})
        if (IsWithin(set, own))
            return CannotRestore(set, "its folder is the program's own, for restoring; "
                                      "copy it to another place first");
    const Result<std::filesystem::path> folder = FolderOfSets(app);
    if (!folder) return folder.error();
    if (IsWithin(*folder, places.Data))
        return CannotRestore(set, "the backup folder is in the data folder, which is about to be replaced; "
                                  "choose another one in the configuration");
    const Result<SetContent> content = ReadSetContent(app, set);
    if (!content) return content.error();
    if (content->Files.empty()) return CannotRestore(set, "it holds no files");
    if (!content->Faults.empty() && !questions.RestoresIncompleteSet(content->Faults))
        return OptionalRestored{};
    const Done finished = FinishRestore(app);
    if (!finished) return CannotRestore(set, finished.error());
    Result<RestoreNote> note = RestoreNote::Take(app);
    const Done emptied = note ? note->Empty() : Done(note.error());
    if (!emptied) return CannotRestore(set, emptied.error());
    return RestoreWithNote(app, set, *content, *note, questions);
}

} // namespace

std::optional<Restored> RestoreSet(AppContext& app, const std::filesystem::path& set,
                                   const RestoreQuestions& questions) {
    const Result<OptionalRestored> restored = Restore(app, set, questions);
    if (ShowFailure(app, restored)) return std::nullopt;
    return *restored;
}

std::string RestoredText(const std::filesystem::path& set, const Restored& restored) {
    std::string text = "The data has been restored from " + PathText(set) + ".";
    if (!restored.KeptSet.empty()) text += " What was there before is in " + PathText(restored.KeptSet) + ".";
    if (restored.ReplacedFolder)
        text += " The folder that was replaced holds more than that, and is now " +
                PathText(*restored.ReplacedFolder) + ".";
    return text;
}
} // namespace mact
