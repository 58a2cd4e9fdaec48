#include "app/backup.h"
#include "app/backup_copy.h"
#include "base/text.h"
#include "tests/support/folder_content.h"
#include "tests/support/limited_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace mact {
namespace {

/// A disk on which something happens when a file is opened, and which may read other bytes than were written.
class OddFiles : public WrappedFiles {
public:
    std::function<void(const std::filesystem::path&)> AtOpening = [](const auto&) {};
    std::filesystem::path Untrue{}; ///< this file reads as blanks

    Result<std::unique_ptr<OpenedFile>> Open(const std::filesystem::path& path, OpenMode mode) override {
        AtOpening(path);
        Result<std::unique_ptr<OpenedFile>> file = WrappedFiles::Open(path, mode);
        if (!file || path != Untrue) return file;
        return std::unique_ptr<OpenedFile>(std::make_unique<UntrueFile>(std::move(*file)));
    }

private:
    class UntrueFile : public WrappedFile {
    public:
        using WrappedFile::WrappedFile;
        Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> bytes) override {
            const Result<std::size_t> count = WrappedFile::ReadAt(offset, bytes);
            std::ranges::fill(bytes, ' ');
            return count;
        }
    };
};

class CopyIntoSetTest : public testing::Test, public TestProgram {
protected:
    std::filesystem::path Data = App.ProgramFolder / "data";
    std::filesystem::path Set = Folder.Path() / "set";
    LimitedFiles Limited;

    CopyIntoSetTest() {
        std::filesystem::create_directory(Set);
        WriteContent(DataFile("1_usage.talvor"), "usage");
        WriteContent(DataFile("companies.talvor"), "companies");
    }
    std::vector<std::string> Copy(FileAccess& files) {
        const auto found = FilesForSet(Data);
        EXPECT_TRUE(found);
        std::vector<std::string> sentences;
        for (const Failure& failure : CopyIntoSet(files, Data, *found, Set))
            sentences.push_back(SentenceOf(failure));
        return sentences;
    }
    std::vector<std::string> Copy() { return Copy(Limited); }
    /// The only failure is that of the usage, and the others are copied.
    void ExpectFailure(const std::vector<std::string>& sentences, const std::string& reason) {
        EXPECT_EQ(sentences,
                  std::vector<std::string>{"Cannot back up the file \"" +
                                           PathText(DataFile("1_usage.talvor")) + "\": " + reason + "."});
        auto expected = FilesIn(Data);
        expected.erase("1_usage.talvor");
        EXPECT_EQ(FilesIn(Set), expected);
    }
    std::vector<std::string> Listed() const {
        std::vector<std::string> names;
        const auto files = FilesForSet(Data);
        for (const FileForSet& file : *files)
            names.push_back(PathText(file.Name));
        return names;
    }
};

TEST_F(CopyIntoSetTest, TakesEveryFileWithItsLength) {
    const auto files = FilesForSet(Data);
    ASSERT_TRUE(files);
    ASSERT_EQ(files->size(), 2U);
    EXPECT_EQ((*files)[0].Name, "1_usage.talvor");
    EXPECT_EQ((*files)[0].Length, 5U);
    EXPECT_FALSE((*files)[0].Problem);
    EXPECT_EQ((*files)[1].Name, "companies.talvor");
    EXPECT_EQ((*files)[1].Length, 9U);
}

TEST_F(CopyIntoSetTest, TakesTheOptionsOfTheOverviewToo) {
    WriteContent(DataFile("1_overview.txt"), "start=3/2005\r\n");
    EXPECT_EQ(Listed(), (std::vector<std::string>{"1_overview.txt", "1_usage.talvor", "companies.talvor"}));
    EXPECT_EQ(Copy(), std::vector<std::string>{});
    EXPECT_EQ(ContentOf(Set / "1_overview.txt"), "start=3/2005\r\n");
}

TEST_F(CopyIntoSetTest, LeavesOutFoldersAndTemporaryFiles) {
    std::filesystem::create_directory(DataFile("folder"));
    WriteContent(DataFile("companies.talvor.mact.tmp"), "temporary");
    EXPECT_EQ(Listed(), (std::vector<std::string>{"1_usage.talvor", "companies.talvor"}));
}

TEST_F(CopyIntoSetTest, ListsAnUndoFileOnlyIfItsDataFileIsGone) {
    WriteContent(DataFile("1_usage.talvor.mact.undo"), "undo");
    WriteContent(DataFile("9_usage.talvor.mact.undo"), "undo");
    EXPECT_EQ(Listed(),
              (std::vector<std::string>{"1_usage.talvor", "9_usage.talvor.mact.undo", "companies.talvor"}));
}

TEST_F(CopyIntoSetTest, AFolderThatIsNotThereIsAFailure) {
    EXPECT_FALSE(FilesForSet(Folder.Path() / "nowhere"));
}

TEST_F(CopyIntoSetTest, CopiesAllFilesAndTheirUndoFiles) {
    WriteContent(DataFile("1_usage.talvor.mact.undo"), "undo");
    WriteContent(DataFile("9_usage.talvor.mact.undo"), "undo of a file that is gone");
    WriteContent(DataFile("empty"), "");
    WriteContent(DataFile("large"), std::string(3'000'001, 'x')); // more than is read at once
    WriteContent(DataFile("one piece"), std::string(1U << 20U, 'x'));
    EXPECT_EQ(Copy(), std::vector<std::string>{});
    EXPECT_TRUE(FilesIn(Set) == FilesIn(Data));
}

TEST_F(CopyIntoSetTest, ReplacesLongerCopiesOfAnEarlierAttempt) {
    WriteContent(Set / "1_usage.talvor", std::string(100, 'x'));
    WriteContent(Set / "1_usage.talvor.mact.undo", "of other bytes");
    EXPECT_EQ(Copy(), std::vector<std::string>{});
    EXPECT_EQ(FilesIn(Set), FilesIn(Data));
}

TEST_F(CopyIntoSetTest, ACopyHasTheTimeOfItsFile) {
    const auto time = std::filesystem::last_write_time(DataFile("1_usage.talvor")) - std::chrono::hours(50);
    std::filesystem::last_write_time(DataFile("1_usage.talvor"), time);
    EXPECT_EQ(Copy(), std::vector<std::string>{});
    EXPECT_EQ(std::filesystem::last_write_time(Set / "1_usage.talvor"), time);
}

TEST_F(CopyIntoSetTest, AFileThatCannotBeReadHasNoCopy) {
    Limited.Limits[DataFile("1_usage.talvor")].LongestFile = 3;
    ExpectFailure(Copy(), "The disk is damaged");
}

TEST_F(CopyIntoSetTest, AFileThatDoesNotFitHasNoCopy) {
    Limited.Limits[Set / "1_usage.talvor"].LongestFile = 3;
    ExpectFailure(Copy(), "The disk is full");
}

TEST_F(CopyIntoSetTest, AFileThatCannotBeFlushedHasNoCopy) {
    Limited.Limits[Set / "1_usage.talvor"].CannotBeFlushed = true;
    ExpectFailure(Copy(), "The disk is gone");
}

TEST_F(CopyIntoSetTest, AFileThatIsLockedHasNoCopyAndItsUndoFileNeither) {
    Limited.Limits[DataFile("1_usage.talvor")].IsLocked = true;
    WriteContent(DataFile("1_usage.talvor.mact.undo"), "of a change under way");
    const auto sentences = Copy();
    std::filesystem::remove(DataFile("1_usage.talvor.mact.undo"));
    ExpectFailure(sentences, "The file is locked");
}

TEST_F(CopyIntoSetTest, ACopyThatReadsOtherwiseDoesNotStay) {
    OddFiles files;
    files.Untrue = Set / "1_usage.talvor";
    ExpectFailure(Copy(files), "its copy differs from it");
}

TEST_F(CopyIntoSetTest, AnUndoFileThatVanishesIsNoFailure) {
    const auto expected = FilesIn(Data);
    WriteContent(DataFile("1_usage.talvor.mact.undo"), "undo");
    WriteContent(DataFile("9_usage.talvor.mact.undo"), "undo of a file that is gone");
    OddFiles files;
    files.AtOpening = [](const std::filesystem::path& path) {
        if (IsUndoFile(path)) std::filesystem::remove(path);
    };
    EXPECT_EQ(Copy(files), std::vector<std::string>{});
    EXPECT_EQ(FilesIn(Set), expected);
}

TEST_F(CopyIntoSetTest, AnUndoFileThatCannotBeReadIsAFailure) {
    WriteContent(DataFile("1_usage.talvor.mact.undo"), "undo");
    Limited.Limits[DataFile("1_usage.talvor.mact.undo")].LongestFile = 2;
    EXPECT_EQ(Copy(), std::vector<std::string>{"Cannot back up the file \"" +
                                               PathText(DataFile("1_usage.talvor.mact.undo")) +
                                               "\": The disk is damaged."});
}

TEST_F(CopyIntoSetTest, ADataFileThatVanishesIsAFailure) {
    OddFiles files;
    files.AtOpening = [&](const std::filesystem::path& path) {
        if (path == DataFile("1_usage.talvor")) std::filesystem::remove(path);
    };
    EXPECT_EQ(Copy(files).size(), 1U);
}

TEST_F(CopyIntoSetTest, AFolderInACopysPlaceIsAFailure) {
    std::filesystem::create_directory(Set / "1_usage.talvor");
    EXPECT_EQ(Copy().size(), 1U);
    EXPECT_EQ(FilesIn(Set).size(), 1U);
}

TEST_F(CopyIntoSetTest, TheDataFolderItselfIsNoSet) {
    const auto expected = FilesIn(Data);
    Set = Data / "." / ".." / "data";
    EXPECT_EQ(Copy(), std::vector<std::string>{"Cannot back up into the folder \"" + PathText(Set) +
                                               "\": it is the data folder itself."});
    EXPECT_EQ(FilesIn(Data), expected);
}

TEST_F(CopyIntoSetTest, EachFileIsLockedWhileItIsCopiedAndOnlyThen) {
    const auto isLocked = [this](const char* name) {
        OsFiles files;
        const auto file = files.Open(DataFile(name), OpenMode::Read);
        return !(*file)->Lock(); // waits for two seconds if it is
    };
    OddFiles files;
    int count = 0;
    files.AtOpening = [&](const std::filesystem::path& path) {
        if (path != Set / "companies.talvor") return;
        ++count;
        EXPECT_TRUE(isLocked("companies.talvor"));
        EXPECT_FALSE(isLocked("1_usage.talvor"));
    };
    EXPECT_EQ(Copy(files), std::vector<std::string>{});
    EXPECT_EQ(count, 1);
}

TEST_F(CopyIntoSetTest, ABackupToItsEndWritesDownWhatIsMissing) {
    Limited.Limits[DataFile("1_usage.talvor")].IsLocked = true;
    AppContext app{Prompts, Settings, Programs, Dialogs, Calendar, Limited, App.ProgramFolder};
    EXPECT_FALSE(RunBackupToItsEnd(app));
    const std::string sentence =
        "Cannot back up the file \"" + PathText(DataFile("1_usage.talvor")) + "\": The file is locked.";
    EXPECT_EQ(ShownTexts(), std::vector<std::string>{sentence});
    EXPECT_EQ(ContentOf(ProgramFile("talvor_backupset_1") / "incomplete.txt"), sentence + "\r\n");
    EXPECT_TRUE(std::filesystem::exists(ProgramFile("backup.mact.note")));
    EXPECT_TRUE(Programs.Started.empty());
}

TEST_F(CopyIntoSetTest, ACompleteBackupToItsEndIsTheFilesAndNothingElse) {
    const auto set = RunBackupToItsEnd(App);
    ASSERT_EQ(set, ProgramFile("talvor_backupset_1"));
    EXPECT_EQ(FilesIn(*set), FilesIn(Data));
    EXPECT_FALSE(std::filesystem::exists(ProgramFile("backup.mact.note")));
    EXPECT_TRUE(std::filesystem::exists(ProgramFile("backup.bat")));
    EXPECT_TRUE(Prompts.Shown.empty());
    EXPECT_TRUE(Programs.Started.empty());
}

#ifndef _WIN32

TEST_F(CopyIntoSetTest, LinksAreFollowedAndDevicesPassedOver) {
    WriteContent(Folder.Path() / "elsewhere", "linked");
    std::filesystem::create_symlink(Folder.Path() / "elsewhere", DataFile("link"));
    std::filesystem::create_symlink("/dev/null", DataFile("device"));
    std::filesystem::create_directory_symlink(Set, DataFile("link to a folder"));
    EXPECT_EQ(Listed(), (std::vector<std::string>{"1_usage.talvor", "companies.talvor", "link"}));
    EXPECT_EQ(Copy(), std::vector<std::string>{});
    EXPECT_EQ(ContentOf(Set / "link"), "linked");
    EXPECT_FALSE(std::filesystem::is_symlink(Set / "link"));
}

TEST_F(CopyIntoSetTest, ALinkToNothingAndOneToItselfAreFailures) {
    const auto expected = FilesIn(Data);
    std::filesystem::create_symlink("nowhere", DataFile("broken link"));
    std::filesystem::create_symlink("loop", DataFile("loop"));
    EXPECT_EQ(Copy(), (std::vector<std::string>{
                          "Cannot back up the file \"" + PathText(DataFile("broken link")) +
                              "\": No such file or directory.",
                          "Cannot back up the file \"" + PathText(DataFile("loop")) +
                              "\": Too many levels of symbolic links.",
                      }));
    EXPECT_EQ(FilesIn(Set), expected);
}

TEST_F(CopyIntoSetTest, LinksInTheSetAreReplacedAndNeverFollowed) {
    const std::filesystem::path other = Folder.Path() / "other";
    WriteContent(other, "untouched");
    WriteContent(DataFile("1_usage.talvor.mact.undo"), "undo");
    WriteContent(DataFile("third"), "3");
    const auto expected = FilesIn(Data);
    std::filesystem::create_symlink(other, Set / "1_usage.talvor");
    std::filesystem::create_symlink(other, Set / "1_usage.talvor.mact.undo");
    std::filesystem::create_hard_link(other, Set / "companies.talvor");
    std::filesystem::create_hard_link(DataFile("third"), Set / "third");
    EXPECT_EQ(Copy(), std::vector<std::string>{});
    EXPECT_EQ(FilesIn(Set), expected);
    EXPECT_EQ(FilesIn(Data), expected);
    EXPECT_EQ(ContentOf(other), "untouched");
    EXPECT_EQ(std::filesystem::hard_link_count(DataFile("third")), 1U);
}

TEST_F(CopyIntoSetTest, ACopyIsAsPrivateAsItsFile) {
    constexpr auto ofOwner = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
    std::filesystem::permissions(DataFile("1_usage.talvor"), ofOwner);
    OddFiles files;
    EXPECT_EQ(Copy(files), std::vector<std::string>{});
    EXPECT_EQ(std::filesystem::status(Set / "1_usage.talvor").permissions(), ofOwner);
}

#endif

} // namespace
} // namespace mact
