#include "app/backup.h"
#include "app/backup_note.h"
#include "base/text.h"
#include "tests/support/folder_content.h"
#include "tests/support/limited_files.h"

#include <gtest/gtest.h>

#include <chrono>

namespace mact {
namespace {

/// What a start of the program says about the backup before it.
class LastBackupTest : public testing::Test, public TestProgram {
protected:
    std::filesystem::path Set = ProgramFile("talvor_backupset_1");

    LastBackupTest() {
        WriteContent(DataFile("1_usage.talvor"), "usage");
        WriteContent(DataFile("companies.talvor"), "companies");
    }
    bool IsNoteThere() const { return std::filesystem::exists(ProgramFile("backup.mact.note")); }
    void CopyAll() const {
        for (const auto& [name, content] : FilesIn(App.ProgramFolder / "data"))
            WriteContent(Set / name, content);
    }
    static std::filesystem::file_time_type AnHourLater() {
        return std::filesystem::file_time_type::clock::now() + std::chrono::hours(1);
    }
    LastBackup LookLater() { return LookAtLastBackup(App, AnHourLater()); }
    std::string IncompleteAsWrittenDown() const {
        return "The last backup is incomplete: see " + PathText(Set / "incomplete.txt") +
               ". Please make a new one.";
    }
};

TEST_F(LastBackupTest, WithoutANoteThereIsNothingToSay) {
    EXPECT_EQ(LookAtLastBackup(App).Warning, "");
    EXPECT_FALSE(LookAtLastBackup(App).IsUnderWay);
}

TEST_F(LastBackupTest, TheNoteHasTheSetAndItsFilesWithTheirLengths) {
    WriteContent(DataFile("companies.talvor.mact.tmp"), "temporary");
    WriteContent(DataFile("companies.talvor.mact.undo"), "undo");
    WriteContent(DataFile("9_usage.talvor.mact.undo"), "undo of a file that is gone");
    ASSERT_TRUE(RunBackup(App, false));
    using std::string_literals::operator""s;
    EXPECT_EQ(ContentOf(ProgramFile("backup.mact.note")),
              PathText(Set) + "\0"s + "5\0"s + "1_usage.talvor\0"s + "9\0"s + "companies.talvor\0"s);
    const auto note = ReadBackupNote(App);
    ASSERT_TRUE(note);
    EXPECT_EQ(note->Set, Set);
    ASSERT_EQ(note->Files.size(), 2U);
    EXPECT_EQ(note->Files[1].Name, "companies.talvor");
    EXPECT_EQ(note->Files[1].Length, 9U);
}

TEST_F(LastBackupTest, ACompleteSetIsNotMentionedAndItsNoteIsRemoved) {
    RunBackup(App, false);
    CopyAll();
    EXPECT_EQ(LookLater().Warning, "");
    EXPECT_FALSE(IsNoteThere());
    EXPECT_EQ(FilesIn(Set), FilesIn(App.ProgramFolder / "data"));
}

TEST_F(LastBackupTest, FilesThatGrewSinceTheNoteAreComplete) {
    RunBackup(App, false);
    WriteContent(DataFile("1_usage.talvor"), "usage and more of it");
    CopyAll();
    EXPECT_EQ(LookLater().Warning, "");
    EXPECT_FALSE(IsNoteThere());
}

TEST_F(LastBackupTest, WhatIsMissingIsSaidAndWrittenDown) {
    RunBackup(App, false);
    CopyAll();
    WriteContent(Set / "1_usage.talvor", "usa");
    std::filesystem::remove(Set / "companies.talvor");
    EXPECT_EQ(LookLater().Warning, IncompleteAsWrittenDown());
    EXPECT_EQ(ContentOf(Set / "incomplete.txt"),
              "The file \"1_usage.talvor\" is cut short: it has 3 bytes instead of 5.\r\n"
              "The file \"companies.talvor\" is missing.\r\n");
    EXPECT_TRUE(IsNoteThere());
    EXPECT_EQ(LookLater().Warning, IncompleteAsWrittenDown()) << "at every start";
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(LastBackupTest, AFolderInAFilesPlaceIsMissing) {
    RunBackup(App, false);
    CopyAll();
    std::filesystem::remove(Set / "companies.talvor");
    std::filesystem::create_directory(Set / "companies.talvor");
    EXPECT_EQ(LookLater().Warning, IncompleteAsWrittenDown());
}

TEST_F(LastBackupTest, WhatTheCopyWroteDownCountsEvenIfNothingIsMissing) {
    RunBackup(App, false);
    CopyAll();
    WriteContent(Set / "incomplete.txt", "Cannot back up the file.\r\n");
    EXPECT_EQ(LookAtLastBackup(App).Warning, IncompleteAsWrittenDown());
    EXPECT_EQ(ContentOf(Set / "incomplete.txt"), "Cannot back up the file.\r\n");
    EXPECT_TRUE(IsNoteThere());
}

TEST_F(LastBackupTest, ADataFileNamedLikeTheFailuresIsNone) {
    WriteContent(DataFile("incomplete.txt"), "of a set that was restored");
    RunBackup(App, false);
    CopyAll();
    EXPECT_EQ(LookLater().Warning, "");
    EXPECT_FALSE(IsNoteThere());
}

TEST_F(LastBackupTest, FailuresInPlaceOfACopyOfThatNameCount) {
    WriteContent(DataFile("incomplete.txt"), "of a set that was restored");
    RunBackup(App, false);
    CopyAll();
    WriteContent(Set / "incomplete.txt", "Cannot back up the file \"x\", for a long reason.\r\n");
    EXPECT_EQ(LookLater().Warning, IncompleteAsWrittenDown());
}

TEST_F(LastBackupTest, ACopyThatMayStillBeRunningIsNotJudged) {
    RunBackup(App, false);
    EXPECT_TRUE(LookAtLastBackup(App).IsUnderWay);
    const auto later = AnHourLater();
    WriteContent(Set / "1_usage.talvor", "us"); // still being written
    std::filesystem::last_write_time(Set / "1_usage.talvor", later - std::chrono::seconds(59));
    const LastBackup found = LookAtLastBackup(App, later);
    EXPECT_TRUE(found.IsUnderWay);
    EXPECT_EQ(found.Warning, "");
    EXPECT_TRUE(IsNoteThere());
    EXPECT_FALSE(std::filesystem::exists(Set / "incomplete.txt"));
}

TEST_F(LastBackupTest, ACompleteSetWhoseCopyMayStillBeRunningKeepsItsNote) {
    RunBackup(App, false);
    CopyAll();
    EXPECT_TRUE(LookAtLastBackup(App).IsUnderWay);
    EXPECT_TRUE(IsNoteThere());
}

TEST_F(LastBackupTest, OfASetThatIsGoneNothingIsSaidAndTheNoteStays) {
    RunBackup(App, false);
    std::filesystem::remove(Set);
    const LastBackup found = LookLater();
    EXPECT_EQ(found.Warning, "");
    EXPECT_FALSE(found.IsUnderWay);
    EXPECT_TRUE(IsNoteThere());
    std::filesystem::create_directory(Set); // it is plugged in again
    EXPECT_EQ(LookLater().Warning, IncompleteAsWrittenDown());
}

TEST_F(LastBackupTest, ANewerCompleteBackupEndsTheWarning) {
    RunBackup(App, false);
    EXPECT_EQ(LookLater().Warning, IncompleteAsWrittenDown());
    EXPECT_EQ(RunBackupToItsEnd(App), ProgramFile("talvor_backupset_2"));
    EXPECT_EQ(LookLater().Warning, "");
    EXPECT_FALSE(IsNoteThere());
}

TEST_F(LastBackupTest, ASecondAttemptIntoTheSameFolderForgetsTheFailuresOfTheFirst) {
    RunBackup(App, false);
    EXPECT_EQ(LookLater().Warning, IncompleteAsWrittenDown());
    Settings.Values[{"BACKUP", "BK_VOLUME"}] = "1";
    RunBackup(App, false);
    EXPECT_FALSE(std::filesystem::exists(Set / "incomplete.txt"));
    CopyAll();
    EXPECT_EQ(LookLater().Warning, "");
}

TEST_F(LastBackupTest, WhatCannotBeWrittenDownIsCounted) {
    RunBackup(App, false);
    LimitedFiles files;
    files.Limits[Set / "incomplete.txt"].LongestFile = 10;
    AppContext app{Prompts, Settings, Programs, Dialogs, Calendar, files, App.ProgramFolder};
    EXPECT_EQ(LookAtLastBackup(app, AnHourLater()).Warning,
              "The last backup is incomplete: 2 files are missing or cut short in " + PathText(Set) +
                  ". Please make a new one.");
    EXPECT_FALSE(std::filesystem::exists(Set / "incomplete.txt"));
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(LastBackupTest, ASingleFileThatCannotBeWrittenDownIsCountedAsOne) {
    RunBackup(App, false);
    CopyAll();
    std::filesystem::remove(Set / "companies.talvor");
    std::filesystem::create_directory(Set / "incomplete.txt");
    EXPECT_EQ(LookLater().Warning, "The last backup is incomplete: 1 file is missing or cut short in " +
                                       PathText(Set) + ". Please make a new one.");
}

TEST_F(LastBackupTest, ADamagedNoteSaysAsMuchAsCanBeRead) {
    using std::string_literals::operator""s;
    const std::string set = PathText(Set);
    std::filesystem::create_directory(Set);
    for (const std::string& content :
         {""s, "x"s, std::string(1000, '\0'), set, set + "\0"s, set + "\0"s + "12"s, set + "\0"s + "12\0"s}) {
        WriteContent(ProgramFile("backup.mact.note"), content);
        EXPECT_EQ(LookLater().Warning, "") << testing::PrintToString(content);
    }
    WriteContent(ProgramFile("backup.mact.note"),
                 set + "\0"s + "99999999999999999999999\0"s + "a\0"s + "many\0"s + "b\0"s + "-1\0"s + "c"s);
    EXPECT_EQ(LookLater().Warning, IncompleteAsWrittenDown());
    EXPECT_EQ(ContentOf(Set / "incomplete.txt"),
              "The file \"a\" is missing.\r\nThe file \"b\" is missing.\r\n");
}

TEST_F(LastBackupTest, AFolderInTheNotesPlaceSaysNothing) {
    std::filesystem::create_directory(ProgramFile("backup.mact.note"));
    EXPECT_EQ(LookAtLastBackup(App).Warning, "");
}

TEST_F(LastBackupTest, TheNoteOfAnotherSetStays) {
    RunBackup(App, false);
    RemoveBackupNote(App, ProgramFile("talvor_backupset_2"));
    EXPECT_TRUE(IsNoteThere());
    RemoveBackupNote(App, Set);
    EXPECT_FALSE(IsNoteThere());
}

#ifndef _WIN32

TEST_F(LastBackupTest, NamesWithLineBreaksAndQuotesAreNotedAsTheyAre) {
    WriteContent(DataFile("line\nbreak \"x\""), "x");
    RunBackup(App, false);
    const auto note = ReadBackupNote(App);
    ASSERT_TRUE(note);
    ASSERT_EQ(note->Files.size(), 3U);
    EXPECT_EQ(note->Files[2].Name, "line\nbreak \"x\"");
}

TEST_F(LastBackupTest, AFileWhoseStatusCannotBeReadIsMissing) {
    std::filesystem::create_symlink("loop", DataFile("loop"));
    RunBackup(App, false);
    WriteContent(Set / "1_usage.talvor", "usage");
    WriteContent(Set / "companies.talvor", "companies");
    EXPECT_EQ(LookLater().Warning, IncompleteAsWrittenDown());
    EXPECT_EQ(ContentOf(Set / "incomplete.txt"), "The file \"loop\" is missing.\r\n");
}

TEST_F(LastBackupTest, LinksInTheSetAreNoneOfItsFilesAndAreNotFollowed) {
    const std::filesystem::path other = Folder.Path() / "other";
    WriteContent(other, "untouched");
    RunBackup(App, false);
    CopyAll();
    std::filesystem::remove(Set / "companies.talvor");
    std::filesystem::create_symlink(other, Set / "companies.talvor");
    std::filesystem::create_symlink(other, Set / "incomplete.txt");
    EXPECT_EQ(LookLater().Warning, IncompleteAsWrittenDown());
    EXPECT_EQ(ContentOf(other), "untouched");
    EXPECT_EQ(ContentOf(Set / "incomplete.txt"), "The file \"companies.talvor\" is missing.\r\n");
}

TEST_F(LastBackupTest, ALinkInTheNotesPlaceIsReplacedAndNotFollowed) {
    const std::filesystem::path other = Folder.Path() / "other";
    WriteContent(other, "untouched");
    std::filesystem::create_symlink(other, ProgramFile("backup.mact.note"));
    RunBackup(App, false);
    EXPECT_EQ(ContentOf(other), "untouched");
    EXPECT_TRUE(ReadBackupNote(App));
}

#endif

} // namespace
} // namespace mact
