#include "app/backup.h"
#include "app/backup_note.h"
#include "base/text.h"
#include "tests/safety/mounted.h"
#include "tests/support/folder_content.h"
#include "tests/support/run_program.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <sys/stat.h>

namespace mact {
namespace {

/// The shell's part of a backup, run to its end. Some programs that it uses can be replaced.
class BackupShell : public testing::Test, public TestProgram {
protected:
    std::filesystem::path Base = Folder.Path() / "backup base";
    std::filesystem::path Set = Base / "talvor_backupset_1";

    BackupShell() {
        std::filesystem::create_directory(Base);
        std::filesystem::create_directory(m_programs);
        Settings.Values[{"BACKUP", "PATH"}] = PathText(Base);
        WriteContent(DataFile("1_materials.talvor"), std::string(300, 'm'));
        WriteContent(DataFile("1_usage.talvor"), "usage");
        WriteContent(DataFile("companies.talvor"), "companies");
    }

    std::filesystem::path Data() const { return App.ProgramFolder / "data"; }
    std::map<std::string, std::string> CopiedFiles() const {
        auto copied = FilesIn(Set);
        copied.erase("incomplete.txt");
        return copied;
    }
    std::string Failures() const { return FilesIn(Set)["incomplete.txt"]; }
    bool IsNoteThere() const { return std::filesystem::exists(ProgramFile("backup.mact.note")); }

    /// In the program's place a shell script runs.
    void Replace(const std::string& program, const std::string& script) {
        WriteContent(m_programs / program, "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(m_programs / program, std::filesystem::perms::owner_all);
    }
    ProgramRun CopyInto(const std::filesystem::path& shell, std::vector<std::string> arguments) {
        const ProgramStart& start = Programs.Started.back();
        arguments.insert(arguments.begin(), "PATH=" + PathText(m_programs) + ":/usr/bin:/bin");
        arguments.push_back(PathText(shell));
        arguments.insert(arguments.end(), start.Arguments.begin(), start.Arguments.end());
        return RunProgram("/usr/bin/env", arguments, Folder.Path());
    }
    ProgramRun Copy() { return CopyInto(Programs.Started.back().Program, {}); }
    ProgramRun BackUp() {
        EXPECT_EQ(RunBackup(App, false), Set);
        return Copy();
    }
    /// What the next start says, a while after the copy has ended.
    std::string WarningLater() {
        const auto later = std::filesystem::file_time_type::clock::now() + std::chrono::hours(1);
        return LookAtLastBackup(App, later).Warning;
    }
    std::string WarningOfFailures() const {
        return "The last backup is incomplete: see " + PathText(Set / "incomplete.txt") +
               ". Please make a new one.";
    }
    void ExpectFailure(const ProgramRun& run, const std::string& file, const std::string& reason) {
        EXPECT_EQ(run.Status, 1);
        EXPECT_TRUE(Failures().starts_with("Cannot back up the file \"" + PathText(DataFile(file)) + "\": "))
            << Failures();
        EXPECT_NE(Failures().find(reason), std::string::npos) << Failures();
        EXPECT_TRUE(Failures().ends_with(".\r\n")) << Failures();
        std::string printed = Failures();
        std::erase(printed, '\r');
        EXPECT_EQ(run.Errors, printed);
        EXPECT_TRUE(IsNoteThere());
        EXPECT_EQ(LookAtLastBackup(App).Warning, WarningOfFailures());
    }

private:
    std::filesystem::path m_programs = Folder.Path() / "bin";
};

TEST_F(BackupShell, ACompleteSetHasTheFilesAndNothingElseAndTheNoteIsGone) {
    const ProgramRun run = BackUp();
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(run.Errors, "");
    EXPECT_EQ(FilesIn(Set), FilesIn(Data()));
    EXPECT_FALSE(IsNoteThere());
    EXPECT_EQ(WarningLater(), "");
}

TEST_F(BackupShell, TemporaryFilesAreLeftOutAndUndoFilesAreCopied) {
    WriteContent(DataFile("1_usage.talvor.mact.undo"), "undo");
    WriteContent(DataFile("9_usage.talvor.mact.undo"), "undo of a file that is gone");
    const auto expected = FilesIn(Data());
    WriteContent(DataFile("companies.talvor.mact.tmp"), "temporary");
    EXPECT_EQ(BackUp().Status, 0);
    EXPECT_EQ(FilesIn(Set), expected);
}

TEST_F(BackupShell, AnUndoFileThatVanishesIsNoFailure) {
    const auto expected = FilesIn(Data());
    WriteContent(DataFile("1_usage.talvor.mact.undo"), "undo");
    WriteContent(DataFile("9_usage.talvor.mact.undo"), "undo of a file that is gone");
    Replace("cp", "case $* in *.mact.undo) rm -f ./*.mact.undo; exit 1 ;; esac; exec /bin/cp \"$@\"");
    EXPECT_EQ(BackUp().Status, 0);
    EXPECT_EQ(FilesIn(Set), expected);
    EXPECT_FALSE(IsNoteThere());
}

TEST_F(BackupShell, AnUndoFileThatCannotBeCopiedIsAFailureOfItsDataFile) {
    WriteContent(DataFile("1_usage.talvor.mact.undo"), "undo");
    Replace("cp", "case $* in *.mact.undo) echo no luck >&2; exit 1 ;; esac; exec /bin/cp \"$@\"");
    ExpectFailure(BackUp(), "1_usage.talvor", "no luck");
}

TEST_F(BackupShell, AnUndoFileOfAnEarlierAttemptDoesNotStayInTheSet) {
    std::filesystem::create_directory(Set);
    WriteContent(Set / "1_usage.talvor.mact.undo", "of other bytes");
    EXPECT_EQ(BackUp().Status, 0);
    EXPECT_EQ(FilesIn(Set), FilesIn(Data()));
}

TEST_F(BackupShell, APipeInAnUndoFilesPlaceIsPassedOver) {
    const auto expected = FilesIn(Data());
    ASSERT_EQ(::mkfifo(DataFile("1_usage.talvor.mact.undo").c_str(), 0600), 0);
    EXPECT_EQ(BackUp().Status, 0);
    EXPECT_EQ(FilesIn(Set), expected);
}

TEST_F(BackupShell, FoldersPipesAndDevicesArePassedOver) {
    const auto expected = FilesIn(Data());
    ASSERT_EQ(::mkfifo(DataFile("pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/null", DataFile("device"));
    std::filesystem::create_directory(DataFile("folder"));
    EXPECT_EQ(BackUp().Status, 0);
    EXPECT_EQ(FilesIn(Set), expected);
    EXPECT_FALSE(std::filesystem::exists(Set / "folder"));
}

TEST_F(BackupShell, AFolderWithoutFilesMakesAnEmptySet) {
    for (const auto& [name, content] : FilesIn(Data()))
        std::filesystem::remove(DataFile(name));
    EXPECT_EQ(BackUp().Status, 0);
    EXPECT_TRUE(std::filesystem::is_empty(Set));
}

TEST_F(BackupShell, ABrokenLinkIsAFailureAndTheOthersAreCopied) {
    const auto expected = FilesIn(Data());
    std::filesystem::create_symlink("nowhere", DataFile("broken \"link"));
    ExpectFailure(BackUp(), "broken \"link", "No such file or directory");
    EXPECT_EQ(CopiedFiles(), expected);
}

TEST_F(BackupShell, AFileWhoseStatusCannotBeReadIsAFailure) {
    const auto expected = FilesIn(Data());
    std::filesystem::create_symlink("loop", DataFile("loop"));
    ExpectFailure(BackUp(), "loop", "Too many levels of symbolic links");
    EXPECT_EQ(CopiedFiles(), expected);
}

TEST_F(BackupShell, AFileWhoseBytesCannotBeReadIsAFailureAndHasNoCopy) {
    const auto expected = FilesIn(Data());
    std::filesystem::create_symlink("/proc/self/mem", DataFile("bad"));
    ExpectFailure(BackUp(), "bad", "Input/output error");
    EXPECT_EQ(CopiedFiles(), expected);
}

TEST_F(BackupShell, AFileThatStaysLockedIsAFailureAfterTwoSeconds) {
    auto expected = FilesIn(Data());
    expected.erase("1_usage.talvor");
    WriteContent(DataFile("1_usage.talvor.mact.undo"), "of a change under way");
    const auto file = OsFiles().Open(DataFile("1_usage.talvor"), OpenMode::Read);
    ASSERT_TRUE(file);
    ASSERT_TRUE((*file)->Lock());
    const auto start = std::chrono::steady_clock::now();
    ExpectFailure(BackUp(), "1_usage.talvor", "another running copy of the program is working with it");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_EQ(CopiedFiles(), expected);
}

TEST_F(BackupShell, EachFileIsLockedOnlyWhileItIsCopied) {
    // Locked in vain: the file itself. Locked at once: one that was copied before, and one still to come.
    Replace("cp", R"(case $* in *1_usage.talvor)
  ! /usr/bin/flock -n ./1_usage.talvor true &&
  /usr/bin/flock -n ./1_materials.talvor true && /usr/bin/flock -n ./companies.talvor true || exit 1 ;;
esac
exec /bin/cp "$@")");
    EXPECT_EQ(BackUp().Status, 0) << Failures();
}

TEST_F(BackupShell, LinksInTheSetAreReplacedAndNeverFollowed) {
    const std::filesystem::path other = Folder.Path() / "other";
    WriteContent(other, "untouched");
    std::filesystem::create_directory(Set);
    std::filesystem::create_symlink(other, Set / "1_materials.talvor");
    std::filesystem::create_hard_link(other, Set / "1_usage.talvor");
    std::filesystem::create_hard_link(other, Set / "companies.talvor");
    EXPECT_EQ(BackUp().Status, 0);
    EXPECT_EQ(FilesIn(Set), FilesIn(Data()));
    EXPECT_EQ(ContentOf(other), "untouched");
}

TEST_F(BackupShell, LinksInTheSetToTheDataFilesThemselvesAreReplaced) {
    const auto expected = FilesIn(Data());
    std::filesystem::create_directory(Set);
    std::filesystem::create_symlink(DataFile("1_materials.talvor"), Set / "1_materials.talvor");
    std::filesystem::create_hard_link(DataFile("1_usage.talvor"), Set / "1_usage.talvor");
    EXPECT_EQ(BackUp().Status, 0);
    EXPECT_EQ(FilesIn(Set), expected);
    EXPECT_EQ(FilesIn(Data()), expected);
    EXPECT_FALSE(std::filesystem::is_symlink(Set / "1_materials.talvor"));
    EXPECT_EQ(std::filesystem::hard_link_count(DataFile("1_usage.talvor")), 1U);
}

TEST_F(BackupShell, ALinkToTheDataFolderInTheSetsPlaceIsLeftAlone) {
    const auto expected = FilesIn(Data());
    ASSERT_EQ(RunBackup(App, false), Set);
    std::filesystem::remove(Set);
    std::filesystem::create_directory_symlink(Data(), Set);
    Replace("cp", "exit 1"); // were the files removed first, they would be gone
    EXPECT_EQ(Copy().Status, 1);
    EXPECT_EQ(FilesIn(Data()), expected);
}

TEST_F(BackupShell, ALinkInTheFailuresPlaceIsReplacedAndNeverFollowed) {
    const std::filesystem::path other = Folder.Path() / "other";
    WriteContent(other, "untouched");
    std::filesystem::create_symlink("nowhere", DataFile("broken link"));
    ASSERT_EQ(RunBackup(App, false), Set);
    std::filesystem::create_symlink(other, Set / "incomplete.txt");
    ExpectFailure(Copy(), "broken link", "No such file or directory");
    EXPECT_EQ(ContentOf(other), "untouched");
}

TEST_F(BackupShell, AFolderInACopysPlaceIsAFailure) {
    std::filesystem::create_directories(Set / "1_usage.talvor");
    ExpectFailure(BackUp(), "1_usage.talvor", "directory");
    EXPECT_TRUE(std::filesystem::is_empty(Set / "1_usage.talvor"));
}

TEST_F(BackupShell, ACopyThatDiffersIsAFailureAndDoesNotStay) {
    Replace("cp", "/bin/cp \"$@\" && case $* in *1_usage.talvor) shift 3; printf X | dd of=\"$1\" "
                  "conv=notrunc status=none ;; esac");
    ExpectFailure(BackUp(), "1_usage.talvor", "differ");
    EXPECT_FALSE(std::filesystem::exists(Set / "1_usage.talvor"));
}

TEST_F(BackupShell, ACopyThatCannotBeFlushedIsAFailureAndDoesNotStay) {
    Replace("sync", "case $* in *1_usage.talvor) echo no luck >&2; exit 1 ;; esac; exec /bin/sync \"$@\"");
    ExpectFailure(BackUp(), "1_usage.talvor", "no luck");
    EXPECT_FALSE(std::filesystem::exists(Set / "1_usage.talvor"));
}

TEST_F(BackupShell, EveryCopyTheFolderAndItsParentAreFlushed) {
    const std::filesystem::path log = Folder.Path() / "flushed";
    Replace("sync", "printf '%s\\n' \"$@\" >>'" + std::string("../../flushed") + "'; exec /bin/sync \"$@\"");
    WriteContent(log, "");
    EXPECT_EQ(BackUp().Status, 0);
    const std::string set = PathText(Set);
    EXPECT_EQ(ContentOf(log), "--\n" + set + "/./1_materials.talvor\n--\n" + set + "/./1_usage.talvor\n--\n" +
                                  set + "/./companies.talvor\n--\n" + set + "\n" + set + "/..\n");
}

TEST_F(BackupShell, AFolderThatCannotBeFlushedHasEverythingFlushed) {
    WriteContent(Folder.Path() / "flushed", "");
    Replace("sync", "echo \"$#\" >>../../flushed; case $# in 3) exit 1 ;; esac");
    EXPECT_EQ(BackUp().Status, 0);
    EXPECT_EQ(ContentOf(Folder.Path() / "flushed"), "2\n2\n2\n3\n0\n");
}

TEST_F(BackupShell, ATimeThatCannotBeSetIsNoFailure) {
    Replace("touch", "exit 1");
    EXPECT_EQ(BackUp().Status, 0);
    EXPECT_EQ(FilesIn(Set), FilesIn(Data()));
}

TEST_F(BackupShell, ACopyProgramThatIsKilledIsAFailure) {
    Replace("cp", "case $* in *1_usage.talvor) kill -9 $$ ;; esac; exec /bin/cp \"$@\"");
    const ProgramRun run = BackUp();
    EXPECT_EQ(run.Status, 1);
    EXPECT_NE(Failures().find("1_usage.talvor"), std::string::npos);
    EXPECT_EQ(CopiedFiles().size(), 2U);
    EXPECT_EQ(LookAtLastBackup(App).Warning, WarningOfFailures());
}

TEST_F(BackupShell, ABackupThatIsKilledIsSaidAtTheNextStart) {
    Replace("cp", "case $* in *1_usage.talvor) /bin/cp \"$@\"; kill -9 0 ;; esac; exec /bin/cp \"$@\"");
    ASSERT_EQ(RunBackup(App, false), Set);
    CopyInto("/bin/sh", {"setsid", "--wait"}); // in a process group of its own, which dies as a whole
    EXPECT_TRUE(IsNoteThere());
    EXPECT_EQ(Failures(), "");
    EXPECT_TRUE(LookAtLastBackup(App).IsUnderWay);
    EXPECT_EQ(WarningLater(), WarningOfFailures());
    EXPECT_EQ(Failures(), "The file \"companies.talvor\" is missing.\r\n");
}

TEST_F(BackupShell, AFolderThatIsNotListedWholeIsAFailure) {
    Replace("find", "printf xxxx");
    EXPECT_EQ(BackUp().Status, 1);
    EXPECT_EQ(Failures(),
              "Cannot read the folder \"" + PathText(Data()) + "\": not all of its files were found.\r\n");
    EXPECT_EQ(CopiedFiles(), FilesIn(Data()));
}

TEST_F(BackupShell, AFolderThatCannotBeListedIsAFailure) {
    Replace("find", "echo no luck >&2; exit 1");
    EXPECT_EQ(BackUp().Status, 1);
    EXPECT_EQ(Failures(), "Cannot read the folder \"" + PathText(Data()) + "\": no luck.\r\n");
}

TEST_F(BackupShell, TheNoteOfALaterBackupStays) {
    Replace("cp", "echo later >../backup.mact.note; exec /bin/cp \"$@\"");
    EXPECT_EQ(BackUp().Status, 0);
    EXPECT_EQ(ContentOf(ProgramFile("backup.mact.note")), "later\n");
}

TEST_F(BackupShell, ASecondAttemptThatSucceedsTakesTheFailuresBack) {
    std::filesystem::create_symlink("nowhere", DataFile("broken link"));
    EXPECT_EQ(BackUp().Status, 1);
    std::filesystem::remove(DataFile("broken link"));
    EXPECT_EQ(Copy().Status, 0);
    EXPECT_EQ(FilesIn(Set), FilesIn(Data()));
    EXPECT_FALSE(IsNoteThere());
}

TEST_F(BackupShell, ADataFileNamedLikeTheFailuresIsCopiedLikeAnyOther) {
    WriteContent(DataFile("incomplete.txt"), "of a set that was restored");
    EXPECT_EQ(BackUp().Status, 0);
    EXPECT_EQ(FilesIn(Set), FilesIn(Data()));
    EXPECT_FALSE(IsNoteThere());
}

TEST_F(BackupShell, AFullDiskIsSaidInTheSet) {
    if (!CanMount()) GTEST_SKIP() << "Mounting a small disk is not permitted here.";
    Mounted mounted;
    ASSERT_TRUE(mounted.SmallDisk(Base));
    WriteContent(DataFile("1_usage.talvor"), std::string(3'000'000, 'u'));
    ExpectFailure(BackUp(), "1_usage.talvor", "No space left on device");
    auto expected = FilesIn(Data());
    expected.erase("1_usage.talvor");
    EXPECT_EQ(CopiedFiles(), expected);
}

TEST_F(BackupShell, ADiskTooFullForTheFailuresIsSaidAtTheNextStart) {
    if (!CanMount()) GTEST_SKIP() << "Mounting a small disk is not permitted here.";
    Mounted mounted;
    ASSERT_TRUE(mounted.SmallDisk(Base));
    ASSERT_EQ(RunBackup(App, false), Set);
    FillUp(Base / "filler");
    EXPECT_EQ(Copy().Status, 1);
    EXPECT_EQ(FilesIn(Set).size(), 0U);
    EXPECT_EQ(WarningLater(), "The last backup is incomplete: 3 files are missing or cut short in " +
                                  PathText(Set) + ". Please make a new one.");
    EXPECT_EQ(FilesIn(Set).size(), 0U);
}

} // namespace
} // namespace mact
