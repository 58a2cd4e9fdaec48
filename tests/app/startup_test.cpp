#include "app/startup.h"
#include "base/text.h"
#include "store/companies.h"
#include "store/material_types.h"
#include "tests/support/bytes.h"
#include "tests/support/test_program.h"
#include "tests/support/wrapped_files.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

class StartUpTest : public testing::Test, public TestProgram {
protected:
    StartUpTest() { App.CurrentCompanyId = 0; }
    void Remember(const std::string& text) { Settings.Values[{"COMPANY", "DEFAULT"}] = text; }
};

TEST_F(StartUpTest, AnEmptyFolderGetsADataFolderAndTheDefaultTableAndNoCompany) {
    std::filesystem::remove_all(App.ProgramFolder / "data");
    ASSERT_TRUE(StartUp(App));
    EXPECT_EQ(std::filesystem::file_size(DataFile("hapcontents.talvor")), 29U * 232);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(App.ProgramFolder / "data"), {}), 1);
    EXPECT_EQ(App.CurrentCompanyId, 0);
    EXPECT_EQ(App.CurrentCompanyName, "");
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(StartUpTest, ADataFolderWithoutTheTableGetsIt) {
    WriteContent(DataFile("1_usage.talvor"), Zeros(32));
    ASSERT_TRUE(StartUp(App));
    EXPECT_EQ(std::filesystem::file_size(DataFile("hapcontents.talvor")), 29U * 232);
    EXPECT_EQ(ContentOf(DataFile("1_usage.talvor")), Zeros(32));
}

TEST_F(StartUpTest, AnExistingTableIsNotTouchedEvenIfEmpty) {
    WriteContent(DataFile("hapcontents.talvor"), "");
    ASSERT_TRUE(StartUp(App));
    EXPECT_EQ(ContentOf(DataFile("hapcontents.talvor")), "");
}

#ifndef _WIN32
TEST_F(StartUpTest, ATableThatCannotBeLookedForIsAFailureAndNothingIsPutInItsPlace) {
    const std::filesystem::path table = DataFile("hapcontents.talvor");
    std::filesystem::create_symlink(table, table); // a loop: the system does not say that nothing is there
    const Done started = StartUp(App);
    ASSERT_FALSE(started);
    EXPECT_EQ(SentenceOf(started.error()), "Cannot look for the file \"" + PathText(table) + "\": " +
                                               ReasonOf(std::errc::too_many_symbolic_link_levels, 0) + ".");
    EXPECT_TRUE(std::filesystem::is_symlink(table));
    EXPECT_FALSE(CreateDefaultHapContents(App));
    EXPECT_TRUE(std::filesystem::is_symlink(table));
}
#endif

TEST_F(StartUpTest, TheRememberedCompanyIsCurrent) {
    SaveCompany(App, " Acme ", "Dock 1");
    Remember("1");
    ASSERT_TRUE(StartUp(App));
    EXPECT_EQ(App.CurrentCompanyId, 1);
    EXPECT_EQ(App.CurrentCompanyName, "Acme");
    EXPECT_EQ(App.CurrentCompanyLocation, "Dock 1");
}

TEST_F(StartUpTest, ARememberedCompanyBeyondTheFilesEndLeavesNoneSelected) {
    SaveCompany(App, "Acme", "Dock 1");
    Remember("2");
    ASSERT_TRUE(StartUp(App));
    EXPECT_EQ(App.CurrentCompanyId, 0);
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(StartUpTest, ARememberedCompanyThatIsNotANumberStopsTheProgram) {
    Remember("Acme");
    const Done started = StartUp(App);
    ASSERT_FALSE(started);
    EXPECT_EQ(SentenceOf(started.error()),
              "Cannot restore the company that was selected last time: the setting COMPANY/DEFAULT holds "
              "\"Acme\", which is not the number of a company.");
    Remember("40000");
    EXPECT_FALSE(StartUp(App));
}

TEST_F(StartUpTest, ADataFolderThatCannotBeCreatedStopsTheProgram) {
    std::filesystem::remove_all(App.ProgramFolder);
    const Done started = StartUp(App);
    ASSERT_FALSE(started);
    EXPECT_EQ(SentenceOf(started.error()),
              "Cannot create the folder \"" + PathText(App.ProgramFolder / "data") +
                  "\": " + ReasonOf(std::errc::no_such_file_or_directory, 3) + ".");
}

/// Files in which another running copy creates each folder just before this one does.
class LateFiles : public WrappedFiles {
public:
    Done CreateFolder(const std::filesystem::path& path) override {
        const Done first = WrappedFiles::CreateFolder(path);
        return first ? WrappedFiles::CreateFolder(path) : first;
    }
};

TEST_F(StartUpTest, ADataFolderThatAnotherCopyCreatedMeanwhileIsNoFailure) {
    std::filesystem::remove_all(App.ProgramFolder / "data");
    LateFiles files;
    AppContext app{Prompts, Settings, Programs, Dialogs, Calendar, files, App.ProgramFolder};
    EXPECT_TRUE(StartUp(app));
    EXPECT_EQ(std::filesystem::file_size(DataFile("hapcontents.talvor")), 29U * 232);
}

TEST_F(StartUpTest, AFileInTheDataFoldersPlaceStopsTheProgram) {
    std::filesystem::remove_all(App.ProgramFolder / "data");
    WriteContent(App.ProgramFolder / "data", "x");
    EXPECT_FALSE(StartUp(App));
    EXPECT_EQ(ContentOf(App.ProgramFolder / "data"), "x");
}

} // namespace
} // namespace mact
