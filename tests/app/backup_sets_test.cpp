#include "app/backup.h"
#include "app/backup_note.h"
#include "app/backup_sets.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "store/companies.h"
#include "store/material_types.h"
#include "store/undo_file.h"
#include "tests/support/bytes.h"
#include "tests/support/folder_content.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>

namespace mact {
namespace {

using Sentences = std::vector<std::string>;

/// A shop with two companies; the first has two materials and two usage records, one of each deleted.
class BackupSetsTest : public testing::Test, public TestProgram {
protected:
    std::filesystem::path Set = ProgramFile("talvor_backupset_1");

    BackupSetsTest() {
        EXPECT_TRUE(CreateDefaultHapContents(App));
        EXPECT_TRUE(AddNewCompany(App, "Acme", "Dock 1"));
        EXPECT_TRUE(AddNewCompany(App, "B\xE9ta", "Dock 2"));
        for (const char* name : {"PR-1", "PR-2"})
            EXPECT_FALSE(SaveMaterial(App, {.CustomId = name,
                                            .Description = "a resin",
                                            .MaterialType = "Production resin",
                                            .ApplicationMethod = "Spray",
                                            .Density = 9.3,
                                            .HapContent = 27,
                                            .Contents = "27|0|0|0|0|0",
                                            .Factors = "16|0|0|0|0|0"}));
        for (const char* period : {"1/2005", "2/2005"})
            EXPECT_FALSE(SaveUsage(App, {.MaterialId = 1, .Period = period, .Quantity = 5, .Unit = 2}));
        EXPECT_FALSE(DeleteMaterial(App, 2, [](std::int16_t) { return false; }));
        EXPECT_FALSE(DeleteUsage(App, 2));
        EXPECT_TRUE(RunBackupToItsEnd(App));
    }
    Sentences Faults() { return DescribeSet(App, Set).Faults; }
    static void SetTimes(const std::filesystem::path& set, std::filesystem::file_time_type time) {
        for (const auto& entry : std::filesystem::directory_iterator(set))
            std::filesystem::last_write_time(entry.path(), time);
    }
    std::vector<std::string> FoundNames() {
        std::vector<std::string> names;
        const auto sets = FindBackupSets(App);
        EXPECT_TRUE(sets);
        if (sets)
            for (const FoundSet& set : *sets)
                names.push_back(PathText(set.Folder.filename()));
        return names;
    }
};

TEST_F(BackupSetsTest, ACompleteSetIsDescribedByItsRecords) {
    const SetDescription set = DescribeSet(App, Set);
    EXPECT_EQ(set.Folder, Set);
    EXPECT_EQ(set.Companies, (Sentences{"Acme", "B\xC3\xA9ta"}));
    EXPECT_EQ(CompaniesText(set), "Acme; B\xC3\xA9ta");
    EXPECT_EQ(set.Materials, 1U);
    EXPECT_EQ(set.UsageRecords, 1U);
    EXPECT_EQ(set.Findings, Sentences());
    EXPECT_EQ(set.Faults, Sentences());
}

TEST_F(BackupSetsTest, TheDateIsTheNewestOfItsFiles) {
    const auto newest = std::filesystem::file_time_type::clock::now() - std::chrono::hours(48);
    SetTimes(Set, newest - std::chrono::hours(3));
    std::filesystem::last_write_time(Set / "1_usage.talvor", newest);
    WriteContent(Set / "incomplete.txt", "written later");
    // Read back, since a file system need not keep nanoseconds.
    EXPECT_EQ(DescribeSet(App, Set).Newest, std::filesystem::last_write_time(Set / "1_usage.talvor"));
}

#ifndef _WIN32
TEST_F(BackupSetsTest, ADateIsShownInTheLocalTime) {
    setenv("TZ", "UTC-2", 1); // NOLINT(concurrency-mt-unsafe): two hours east
    tzset();
    using std::chrono::sys_days;
    const auto time = sys_days{std::chrono::year{2005} / 3 / 31} + std::chrono::hours(15) +
                      std::chrono::minutes(5) + std::chrono::seconds(59);
    EXPECT_EQ(DateText(std::filesystem::file_time_type::clock::from_sys(
                  std::chrono::time_point_cast<std::chrono::nanoseconds>(time))),
              "2005-03-31 17:05");
    EXPECT_EQ(DateText({}), "");
    unsetenv("TZ"); // NOLINT(concurrency-mt-unsafe)
    tzset();
}
#endif

TEST_F(BackupSetsTest, TheCheckSaysWhatIsWrongWithTheRecords) {
    std::string usage = ContentOf(Set / "1_usage.talvor");
    usage[0] = 7; // the record's own number
    WriteContent(Set / "1_usage.talvor", usage);
    const SetDescription set = DescribeSet(App, Set);
    ASSERT_EQ(set.Findings.size(), 1U);
    EXPECT_EQ(set.Findings.front().rfind("1_usage.talvor, record 1: ", 0), 0U) << set.Findings.front();
    EXPECT_EQ(set.Faults, Sentences());
}

TEST_F(BackupSetsTest, LookingAtASetChangesNothing) {
    std::filesystem::remove(Set / "companies.talvor");
    std::filesystem::remove(Set / "1_usage.talvor");
    const auto before = FilesIn(Set);
    DescribeSet(App, Set);
    EXPECT_EQ(FilesIn(Set), before);
}

TEST_F(BackupSetsTest, SetsAreFoundInTheBackupFolderAndTheProgramFolderNewestFirst) {
    const std::filesystem::path sets = Folder.Path() / "sets";
    for (const char* name : {"talvor_backupset_2", "talvor_backupset_10", "other", "talvor_backupset_0"})
        std::filesystem::create_directories(sets / name);
    WriteContent(sets / "talvor_backupset_3", "a file");
    Settings.Values[{"BACKUP", "PATH"}] = PathText(sets);
    WriteContent(sets / "talvor_backupset_2" / "1_usage.talvor", "");
    WriteContent(sets / "talvor_backupset_10" / "1_usage.talvor", "");
    const auto now = std::filesystem::file_time_type::clock::now();
    SetTimes(Set, now - std::chrono::hours(2));
    SetTimes(sets / "talvor_backupset_2", now - std::chrono::hours(3));
    SetTimes(sets / "talvor_backupset_10", now - std::chrono::hours(1));
    EXPECT_EQ(FoundNames(), (Sentences{"talvor_backupset_10", "talvor_backupset_1", "talvor_backupset_2",
                                       "talvor_backupset_0"})); // the last is empty
}

TEST_F(BackupSetsTest, OfSetsWithTheSameDateTheHigherNumberComesFirst) {
    std::filesystem::copy(Set, ProgramFile("talvor_backupset_9"));
    std::filesystem::copy(Set, ProgramFile("talvor_backupset_10"));
    const auto now = std::filesystem::file_time_type::clock::now();
    for (const char* name : {"talvor_backupset_1", "talvor_backupset_9", "talvor_backupset_10"})
        SetTimes(ProgramFile(name), now);
    EXPECT_EQ(FoundNames(), (Sentences{"talvor_backupset_10", "talvor_backupset_9", "talvor_backupset_1"}));
}

TEST_F(BackupSetsTest, ABackupFolderThatIsTheProgramFolderIsListedOnce) {
    Settings.Values[{"BACKUP", "PATH"}] = PathText(App.ProgramFolder / "");
    EXPECT_EQ(FoundNames(), Sentences{"talvor_backupset_1"});
}

TEST_F(BackupSetsTest, ABackupFolderThatIsGoneHasNoSets) {
    Settings.Values[{"BACKUP", "PATH"}] = PathText(Folder.Path() / "gone");
    EXPECT_EQ(FoundNames(), Sentences{"talvor_backupset_1"});
}

TEST_F(BackupSetsTest, ASetIsMeantByItsNumberItsNameOrItsFolder) {
    using Path = std::optional<std::filesystem::path>;
    EXPECT_EQ(*SetMeantBy(App, "1"), Path(Set));
    EXPECT_EQ(*SetMeantBy(App, "talvor_backupset_1"), Path(Set));
    EXPECT_EQ(*SetMeantBy(App, PathText(Set)), Path(Set));
    const std::filesystem::path copy = Folder.Path() / "from the stick";
    std::filesystem::create_directory(copy);
    EXPECT_EQ(*SetMeantBy(App, PathText(copy)), Path(copy));
    EXPECT_EQ(*SetMeantBy(App, "2"), Path());
    EXPECT_EQ(*SetMeantBy(App, PathText(Set / "companies.talvor")), Path());
}

TEST_F(BackupSetsTest, AMissingFileMakesItIncomplete) {
    std::filesystem::remove(Set / "companies.talvor");
    std::filesystem::remove(Set / "hapcontents.talvor");
    EXPECT_EQ(Faults(), (Sentences{"The file \"hapcontents.talvor\" is missing.",
                                   "The file \"companies.talvor\" is missing."}));
}

TEST_F(BackupSetsTest, AnEmptySetIsSaidToBeEmpty) {
    std::filesystem::remove_all(Set);
    std::filesystem::create_directory(Set);
    EXPECT_EQ(Faults(), Sentences{"It holds no files."});
}

TEST_F(BackupSetsTest, AFileThatEndsWithinARecordIsCut) {
    for (const auto& [name, length] : std::map<std::string, int>{
             {"1_materials.talvor", 1444},
             {"1_usage.talvor",     33  },
             {"companies.talvor",   503 },
             {"hapcontents.talvor", 100 }
    })
        std::filesystem::resize_file(Set / name, static_cast<std::uintmax_t>(length));
    EXPECT_EQ(Faults(), (Sentences{"The file \"1_usage.talvor\" ends within a record.",
                                   "The file \"companies.talvor\" ends within a record.",
                                   "The file \"hapcontents.talvor\" ends within a record."}));
}

TEST_F(BackupSetsTest, ARecordThatWasBeingAddedIsNotACut) {
    const std::filesystem::path usage = Set / "1_usage.talvor";
    ASSERT_TRUE(UndoFile::Begin(App.Files, usage, {.OldLength = 64, .SlotLength = 32}, {64, Zeros(32)}));
    std::filesystem::resize_file(usage, 64 + 10);
    EXPECT_EQ(Faults(), Sentences());
    EXPECT_EQ(DescribeSet(App, Set).UsageRecords, 1U);
}

TEST_F(BackupSetsTest, AnUndoFileWithoutItsDataFileIsAFault) {
    WriteContent(Set / "5_usage.talvor.mact.undo", "undo");
    EXPECT_EQ(Faults(), Sentences{"The data file of \"5_usage.talvor.mact.undo\" is missing."});
    EXPECT_EQ(std::ranges::count(ReadSetContent(App, Set)->Files, "5_usage.talvor.mact.undo"), 0);
}

TEST_F(BackupSetsTest, WhatTheCopyWroteDownIsRepeated) {
    WriteContent(Set / "incomplete.txt", "The file \"9_usage.talvor\" is missing.\r\n\r\nAnother one.\r\n");
    EXPECT_EQ(Faults(), (Sentences{"Not every file could be copied into it.",
                                   "The file \"9_usage.talvor\" is missing.", "Another one."}));
}

TEST_F(BackupSetsTest, WhatTheNoteOfTheBackupMissesIsAFault) {
    ASSERT_TRUE(WriteBackupNote(
        App, Set,
        {
            {.Name = "1_usage.talvor", .Length = 96},
            {.Name = "8_usage.talvor", .Length = 32}
    }));
    EXPECT_EQ(Faults(), (Sentences{"The file \"1_usage.talvor\" is cut short: it has 64 bytes instead of 96.",
                                   "The file \"8_usage.talvor\" is missing."}));
    ASSERT_TRUE(WriteBackupNote(App, ProgramFile("talvor_backupset_2"), {{.Name = "8_usage.talvor"}}));
    EXPECT_EQ(Faults(), Sentences());
}

TEST_F(BackupSetsTest, ASetThatCannotBeReadIsDescribedByItsFailure) {
    EXPECT_EQ(DescribeSet(App, ProgramFile("gone")).Faults,
              Sentences{"Cannot read the folder \"" + PathText(ProgramFile("gone")) +
                        "\": " + std::make_error_code(std::errc::no_such_file_or_directory).message() + "."});
}

TEST_F(BackupSetsTest, AFileOfMoreRecordsThanCountIsAFaultAndNotRead) {
    std::filesystem::resize_file(Set / "1_usage.talvor", std::uintmax_t{32768} * 32);
    const Sentences faults = Faults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults.front(), "Cannot work with the file \"" + PathText(Set / "1_usage.talvor") +
                                  "\": it has 32768 records, and 32767 is the most that a data file can "
                                  "hold.");
    EXPECT_EQ(DescribeSet(App, Set).UsageRecords, 0U);
}

#ifndef _WIN32
TEST_F(BackupSetsTest, LinksAreNotFollowed) {
    std::filesystem::create_symlink("/dev/zero", Set / "2_usage.talvor");
    std::filesystem::create_directory(Set / "letters");
    EXPECT_EQ(Faults(), Sentences{"\"2_usage.talvor\" is a link, which is not restored."});
}

TEST_F(BackupSetsTest, ASetThatCannotBeLookedAtIsListedAndSaysSo) {
    const std::filesystem::path around = ProgramFile("talvor_backupset_7");
    std::filesystem::create_directory_symlink(around, around); // leads to itself for ever
    const std::vector<std::string> names = FoundNames();
    EXPECT_EQ(std::ranges::count(names, "talvor_backupset_7"), 1);
    const SetDescription set = DescribeSet(App, around);
    ASSERT_EQ(set.Faults.size(), 1U);
    EXPECT_TRUE(set.Faults[0].starts_with("Cannot read the folder \"" + PathText(around))) << set.Faults[0];
}
#endif

} // namespace
} // namespace mact
