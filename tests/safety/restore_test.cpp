#include "app/backup.h"
#include "app/data_swap.h"
#include "app/restore.h"
#include "base/text.h"
#include "store/additional_names.h"
#include "store/companies.h"
#include "store/material_types.h"
#include "store/undo_file.h"
#include "tests/safety/recorded_disk.h"
#include "tests/safety/sampling.h"
#include "tests/support/failing_files.h"
#include "tests/support/folder_content.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

/// The operating system's files, each step of which is noted. A flush does not wait for the disk.
class RecordedOsFiles : public WrappedFiles {
public:
    std::vector<DiskStep> Steps;

    Result<std::unique_ptr<OpenedFile>> Open(const std::filesystem::path& path, OpenMode mode) override {
        const bool isNew = mode != OpenMode::Read && !std::filesystem::exists(path);
        Result<std::unique_ptr<OpenedFile>> file = WrappedFiles::Open(path, mode);
        if (!file) return file;
        if (isNew) {
            Steps.push_back({.What = DiskStep::Kind::Create, .Path = path});
            if (mode != OpenMode::Own) NoteFlushOf(path.parent_path());
        } else if (mode == OpenMode::Replace) {
            Steps.push_back({.What = DiskStep::Kind::Cut, .Path = path});
        }
        return std::unique_ptr<OpenedFile>(
            std::make_unique<RecordedFile>(std::move(*file), *this, path, mode));
    }
    Done Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
        Steps.push_back({.What = DiskStep::Kind::Rename, .Path = from, .Target = to});
        NoteFlushOf(to.parent_path());
        return WrappedFiles::Rename(from, to);
    }
    Done RenameFolder(const std::filesystem::path& from, const std::filesystem::path& to) override {
        Steps.push_back({.What = DiskStep::Kind::RenameFolder, .Path = from, .Target = to});
        return WrappedFiles::RenameFolder(from, to);
    }
    Done FlushFolder(const std::filesystem::path& path) override {
        NoteFlushOf(path);
        return Success();
    }
    Done Remove(const std::filesystem::path& path) override {
        const Done removed = WrappedFiles::Remove(path);
        if (removed) Steps.push_back({.What = DiskStep::Kind::Remove, .Path = path});
        return removed;
    }

private:
    void NoteFlushOf(const std::filesystem::path& folder) {
        Steps.push_back({.What = DiskStep::Kind::FlushFolder, .Path = folder});
    }

    class RecordedFile : public WrappedFile {
    public:
        RecordedFile(std::unique_ptr<OpenedFile> file, RecordedOsFiles& files, std::filesystem::path path,
                     OpenMode mode)
            : WrappedFile(std::move(file)), m_files(files), m_path(std::move(path)),
              m_isOwn(mode == OpenMode::Own) {}

        Done WriteAt(std::uint64_t offset, std::string_view bytes) override {
            m_files.Steps.push_back({.What = DiskStep::Kind::Write,
                                     .Path = m_path,
                                     .Offset = offset,
                                     .Bytes = std::string(bytes)});
            return WrappedFile::WriteAt(offset, bytes);
        }
        Done CutTo(std::uint64_t length) override {
            m_files.Steps.push_back({.What = DiskStep::Kind::Cut, .Path = m_path, .Offset = length});
            return WrappedFile::CutTo(length);
        }
        Done Flush() override {
            m_files.Steps.push_back({.What = DiskStep::Kind::Flush, .Path = m_path});
            if (m_isOwn) m_files.NoteFlushOf(m_path.parent_path());
            return Success();
        }

    private:
        RecordedOsFiles& m_files;
        std::filesystem::path m_path;
        bool m_isOwn;
    };
};

/// A shop with a backup set and a change since.
class RestoredShop : public testing::Test, public TestProgram {
protected:
    std::filesystem::path Set = ProgramFile("talvor_backupset_1");
    std::map<std::string, std::string> Before;
    std::map<std::string, std::string> OfSet;
    FailingFiles m_files;

    RestoredShop() {
        EXPECT_TRUE(CreateDefaultHapContents(App));
        EXPECT_TRUE(AddNewCompany(App, "Acme", "Dock 1"));
        EXPECT_TRUE(SaveAdditionalNames(App, {"a", "b", "c", "d", "e", "f"}));
        EXPECT_FALSE(SaveUsage(App, {.MaterialId = 1, .Period = "1/2005", .Quantity = 5, .Unit = 2}));
        EXPECT_TRUE(RunBackupToItsEnd(App));
        // As a save leaves it that was killed: an undo file takes back the second record.
        const std::filesystem::path usage = Set / "1_usage.talvor";
        const std::string added(32, 'x');
        EXPECT_TRUE(UndoFile::Begin(App.Files, usage, {.OldLength = 32, .SlotLength = 32}, {32, added}));
        OfSet = FilesIn(Set);
        EXPECT_EQ(OfSet.erase("1_usage.talvor.mact.undo"), 1U);
        WriteContent(usage, ContentOf(usage) + added);
        EXPECT_TRUE(AddNewCompany(App, "Beta", "Dock 2"));
        EXPECT_FALSE(SaveUsage(App, {.UsageId = 1, .MaterialId = 1, .Period = "9/2005", .Unit = 2}));
        Before = FilesIn(ProgramFile("data"));
        EXPECT_NE(Before, OfSet);
    }
    AppContext AppWith(FileAccess& files) {
        return {Prompts, Settings, Programs, Dialogs, Calendar, files, App.ProgramFolder, 1};
    }
    std::map<std::string, std::string> Data() const { return FilesIn(ProgramFile("data")); }

    std::map<std::filesystem::path, std::string> AllFiles() const {
        std::map<std::filesystem::path, std::string> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(App.ProgramFolder))
            if (entry.is_regular_file()) files[entry.path()] = ContentOf(entry.path());
        return files;
    }
    /// The folder holds exactly these files.
    void Put(const std::map<std::filesystem::path, std::string>& files) const {
        std::filesystem::remove_all(App.ProgramFolder);
        for (const auto& [path, content] : files) {
            std::filesystem::create_directories(path.parent_path());
            WriteContent(path, content);
        }
    }
    /// After the next start the data is as before or as in the set, and nothing else is there.
    void ExpectFinished(bool isOnlyRestored) {
        AppContext app = AppWith(m_files);
        m_files.Start({});
        const Done finished = FinishRestore(app);
        ASSERT_TRUE(finished) << SentenceOf(finished.error());
        auto data = Data();
        std::erase_if(data, [](const auto& file) { return file.first.ends_with(".mact.tmp"); });
        ASSERT_TRUE(data == OfSet || (data == Before && !isOnlyRestored))
            << (data == Before ? "The restore is lost." : "It is neither as before nor as in the set.");
        for (const auto& entry : std::filesystem::directory_iterator(App.ProgramFolder)) {
            const std::string name = PathText(entry.path().filename());
            ASSERT_TRUE(!name.starts_with("data.") && !name.starts_with("restore.")) << name;
        }
    }
};

class RestorePowerCut : public RestoredShop {
protected:
    void CheckStates(const PowerCut& cut, bool isOnlyRestored) {
        const int samples = IsWholeSweep() ? 200 : 4;
        for (int sample = 0; sample < samples; ++sample) {
            // From nothing to everything of what is not on the disk for sure.
            std::bernoulli_distribution isThere(sample % 4 / 3.0);
            Put(cut.Content([&] { return isThere(m_random); }));
            ExpectFinished(isOnlyRestored);
            if (HasFatalFailure()) return;
            ++m_checked;
            if (cut.OpenCount() == 0) return;
        }
    }

    std::uint32_t m_seed = Seed();
    std::mt19937 m_random{m_seed};
    int m_checked = 0;
};

TEST_F(RestorePowerCut, LeavesTheOldDataOrThatOfTheSet) {
    SCOPED_TRACE("MACT_TEST_SEED=" + std::to_string(m_seed));
    const DiskContent before = AllFiles();
    RecordedOsFiles recorded;
    AppContext app = AppWith(recorded);
    ASSERT_TRUE(RestoreSet(app, Set, {}));
    ASSERT_EQ(Data(), OfSet);
    const std::vector<DiskStep> steps = recorded.Steps;
    for (std::size_t count = 0; count <= steps.size(); ++count) {
        SCOPED_TRACE("the power goes after step " + std::to_string(count) + " of " +
                     std::to_string(steps.size()));
        CheckStates(PowerCut(before, steps, count), count == steps.size());
        if (HasFatalFailure()) return;
    }
    EXPECT_GT(m_checked, 100);
}

/// The power goes again while the next start finishes it.
TEST_F(RestorePowerCut, WhileItIsFinishedLeavesThatOfTheSet) {
    SCOPED_TRACE("MACT_TEST_SEED=" + std::to_string(m_seed));
    RecordedOsFiles recorded;
    AppContext app = AppWith(recorded);
    {
        Result<RestoreNote> note = RestoreNote::Take(app);
        ASSERT_TRUE(note && note->Write(ProgramFile("talvor_backupset_2")));
    }
    std::filesystem::copy(ProgramFile("data"), ProgramFile("talvor_backupset_2"));
    std::filesystem::create_directory(ProgramFile("data.mact.new"));
    for (const auto& [name, content] : OfSet)
        WriteContent(ProgramFile("data.mact.new") / name, content);
    const DiskContent before = AllFiles();
    recorded.Steps.clear();
    ASSERT_TRUE(FinishRestore(app));
    ASSERT_EQ(Data(), OfSet);
    const std::vector<DiskStep> steps = recorded.Steps;
    for (std::size_t count = 0; count <= steps.size(); ++count) {
        SCOPED_TRACE("after step " + std::to_string(count));
        CheckStates(PowerCut(before, steps, count), true);
        if (HasFatalFailure()) return;
    }
}

class FailingRestore : public RestoredShop {
protected:
    void CheckFault(const Fault& fault) {
        Prompts.Shown.clear();
        m_files.Start(fault);
        AppContext app = AppWith(m_files);
        const auto restored = RestoreSet(app, Set, {});
        if (!restored) {
            ASSERT_GE(Prompts.Shown.size(), std::size_t{m_asked ? 0U : 1U});
            ASSERT_TRUE(Prompts.Shown.empty() || Prompts.Shown.front().Text.starts_with("Cannot "));
        }
        std::filesystem::remove_all(ProgramFile("data.replaced")); // told of in what was returned
        ExpectFinished(restored.has_value());
        if (HasFatalFailure()) return;
        m_files.Start({});
        ASSERT_TRUE(RestoreSet(app, Set, {})) << testing::PrintToString(ShownTexts());
        ASSERT_EQ(Data(), OfSet);
    }

    bool m_asked = true; ///< without an answer, a file that cannot be backed up ends the restore
};

TEST_F(FailingRestore, LeavesTheOldDataOrThatOfTheSetAndCanBeRepeated) {
    const std::uint32_t seed = Seed();
    SCOPED_TRACE("MACT_TEST_SEED=" + std::to_string(seed));
    std::mt19937 random(seed);
    const auto before = AllFiles();
    m_files.Start({});
    AppContext app = AppWith(m_files);
    ASSERT_TRUE(RestoreSet(app, Set, {}));
    EXPECT_EQ(m_files.RenamedUnflushed(), std::set<std::string>());
    const int operations = m_files.Count();
    ASSERT_GT(operations, 50);
    constexpr FaultKind kinds[] = {FaultKind::Once, FaultKind::HalfWritten, FaultKind::IsFull,
                                   FaultKind::FillsUp, FaultKind::IsGone};
    for (int at = 1; at <= operations; ++at) {
        for (std::size_t kind = 0; kind < std::size(kinds); ++kind) {
            if (!IsWholeSweep() && random() % 5 != 0) continue;
            SCOPED_TRACE("operation " + std::to_string(at) + " of " + std::to_string(operations) + ", kind " +
                         std::to_string(kind));
            Put(before);
            Settings.Values.clear();
            CheckFault({at, kinds[kind], DiskIsDamaged});
            if (HasFailure()) return;
        }
    }
}

} // namespace
} // namespace mact
