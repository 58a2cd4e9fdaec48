#include "base/text.h"
#include "tests/support/bytes.h"
#include "tests/support/folder_content.h"
#include "tests/support/run_program.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

#include <QByteArray>

#include <chrono>

namespace mact {
namespace {

/// A program folder with a set of one company, which has been renamed since.
class RestoreCommandTest : public testing::Test {
protected:
    TemporaryFolder Temporary;
    std::filesystem::path Folder = Temporary.Path() / "program";
    std::filesystem::path Config = Temporary.Path() / "settings";
    std::filesystem::path Data = Folder / "data";
    std::filesystem::path Set = Folder / "talvor_backupset_1";
    std::filesystem::path Kept = Folder / "talvor_backupset_2";
    std::map<std::string, std::string> Before;

    RestoreCommandTest() {
        std::filesystem::create_directory(Folder);
        std::filesystem::create_directory(Config);
        EXPECT_EQ(Run({"add-company", "Acme", "Dock 1"}).Status, 0);
        EXPECT_EQ(Run({"backup"}).Status, 0);
        EXPECT_EQ(Run({"add-company", "Beta", "Dock 2"}).Status, 0);
        Before = FilesIn(Data);
    }
    ProgramRun Run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--folder", PathText(Folder)});
        return RunProgram(PathFromUtf8(MACT_CLI_PROGRAM), arguments, Config);
    }
    static void SetTimes(const std::filesystem::path& set, std::chrono::sys_seconds time) {
        for (const auto& entry : std::filesystem::directory_iterator(set))
            std::filesystem::last_write_time(
                entry.path(), std::filesystem::file_time_type::clock::from_sys(
                                  std::chrono::time_point_cast<std::chrono::nanoseconds>(time)));
    }
    void ExpectRestored(const std::vector<std::string>& arguments) const {
        const ProgramRun run = Run(arguments);
        EXPECT_EQ(run.Errors, "");
        EXPECT_EQ(run.Status, 0);
        EXPECT_EQ(run.Output, PathText(Kept) + "\n");
        EXPECT_EQ(FilesIn(Data), FilesIn(Set));
        EXPECT_EQ(FilesIn(Kept), Before);
    }
    void ExpectNothingHasHappened() const {
        EXPECT_EQ(FilesIn(Data), Before);
        for (const char* name : {"data.mact.new", "data.mact.old", "data.replaced", "restore.mact.note"})
            EXPECT_FALSE(std::filesystem::exists(Folder / name)) << name;
    }
};

TEST_F(RestoreCommandTest, ASetIsRestoredByItsFolderAndTheKeptSetIsPrinted) {
    ExpectRestored({"restore", PathText(Set)});
    EXPECT_EQ(Run({"companies"}).Output, "1|Acme|Dock 1\n");
}

TEST_F(RestoreCommandTest, ASetIsRestoredByItsNumber) {
    ExpectRestored({"restore", "1"});
}

TEST_F(RestoreCommandTest, ASetIsRestoredByItsName) {
    ExpectRestored({"restore", "talvor_backupset_1"});
}

TEST_F(RestoreCommandTest, TheSetsAreListedNewestFirst) {
    using std::chrono::sys_days;
    EXPECT_EQ(Run({"backup"}).Status, 0);
    std::filesystem::resize_file(Set / "companies.talvor", 504 + 10);
    SetTimes(Set, sys_days{std::chrono::year{2005} / 3 / 31} + std::chrono::hours(12));
    SetTimes(Kept, sys_days{std::chrono::year{2005} / 4 / 1} + std::chrono::hours(12));
    qputenv("TZ", "UTC"); // handed to the program
    const std::string expected = PathText(Kept) + "|2005-04-01 12:00|Acme; Beta|0|0|0|complete\n" +
                                 PathText(Set) + "|2005-03-31 12:00|Acme|0|0|1|incomplete\n";
    for (const auto& arguments : {
             std::vector<std::string>{"restore"},
             { "restore",    "--list"},
             { "restore", "1", "--list"}
    }) {
        const ProgramRun run = Run(arguments);
        EXPECT_EQ(run.Output, expected);
        EXPECT_EQ(run.Errors, "");
        EXPECT_EQ(run.Status, 0);
    }
    qunsetenv("TZ");
    ExpectNothingHasHappened();
}

TEST_F(RestoreCommandTest, ListingCreatesNothing) {
    std::filesystem::remove_all(Data);
    std::filesystem::remove_all(Set);
    std::filesystem::remove(Folder / "backup.bat");
    EXPECT_EQ(Run({"restore"}).Output, "");
    EXPECT_TRUE(std::filesystem::is_empty(Folder));
}

TEST_F(RestoreCommandTest, AnIncompleteSetIsRefusedWithTheReasonsUnlessThatIsWanted) {
    WriteContent(Set / "incomplete.txt", "The file \"1_usage.talvor\" is missing.\r\n");
    const ProgramRun run = Run({"restore", "1"});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Output, "");
    EXPECT_EQ(run.Errors, "The backup set is cut or incomplete. Not every file could be copied into it. The "
                          "file \"1_usage.talvor\" is missing. Nothing has been restored; --incomplete "
                          "restores what is in it.\n");
    ExpectNothingHasHappened();
    EXPECT_FALSE(std::filesystem::exists(Kept));
    const ProgramRun wanted = Run({"restore", "1", "--incomplete"});
    EXPECT_EQ(wanted.Status, 0) << wanted.Errors;
    EXPECT_EQ(wanted.Output, PathText(Kept) + "\n");
    EXPECT_FALSE(std::filesystem::exists(Data / "incomplete.txt"));
    EXPECT_EQ(Run({"companies"}).Output, "1|Acme|Dock 1\n");
}

TEST_F(RestoreCommandTest, ASetThatIsNotThereIsRefused) {
    const ProgramRun run = Run({"restore", "77"});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Errors, "There is no backup set \"77\". Without a set, restore lists them.\n");
    ExpectNothingHasHappened();
}

TEST_F(RestoreCommandTest, DataThatCannotBeBackedUpIsReplacedOnlyIfThatIsWanted) {
    std::filesystem::create_symlink("/proc/self/mem", Data / "bad"); // no byte of it can be read
    const ProgramRun run = Run({"restore", "1"});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Output, "");
    EXPECT_TRUE(run.Errors.starts_with("The present data cannot be backed up. Cannot back up the file \"" +
                                       PathText(Data / "bad") + "\": "))
        << run.Errors;
    EXPECT_TRUE(std::filesystem::is_symlink(Data / "bad"));
    const ProgramRun wanted = Run({"restore", "1", "--without-backup"});
    EXPECT_EQ(wanted.Status, 0) << wanted.Errors;
    EXPECT_EQ(wanted.Output,
              PathText(Folder / "data.replaced") + "\n" + PathText(Folder / "talvor_backupset_3") + "\n");
    EXPECT_EQ(FilesIn(Data), FilesIn(Set));
    EXPECT_TRUE(std::filesystem::is_symlink(Folder / "data.replaced" / "bad"));
}

TEST_F(RestoreCommandTest, ADamagedDataFolderIsReplacedWithoutAStart) {
    WriteContent(Data / "companies.talvor",
                 std::string(std::size_t{32768} * 504, 'x')); // too many to work with
    EXPECT_EQ(Run({"companies"}).Status, 1);
    Before = FilesIn(Data);
    ExpectRestored({"restore", "1"});
    EXPECT_EQ(Run({"companies"}).Status, 0);
}

TEST_F(RestoreCommandTest, TheNextCommandFinishesARestoreThatWasCutOff) {
    std::filesystem::copy(Set, Folder / "data.mact.new");
    WriteContent(Folder / "restore.mact.note", "");
    EXPECT_EQ(Run({"companies"}).Output, "1|Acme|Dock 1\n2|Beta|Dock 2\n");
    ExpectNothingHasHappened();
}

TEST_F(RestoreCommandTest, TakesNoCompany) {
    EXPECT_EQ(RunProgram(PathFromUtf8(MACT_CLI_PROGRAM),
                         {"--folder", PathText(Folder), "--company", "1", "restore", "1"}, Config)
                  .Status,
              2);
    ExpectNothingHasHappened();
}

} // namespace
} // namespace mact
