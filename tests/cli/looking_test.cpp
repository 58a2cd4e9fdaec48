#include "tests/cli/cli_shop.h"

namespace mact {
namespace {

/// The commands that only look.
class Looking : public CliShop {
protected:
    std::string NoFolder = "There is no data folder \"" + PathText(Data) + "\".\n";

    void RememberCompany() const {
        std::filesystem::create_directory(Config / "MACT");
        WriteContent(Config / "MACT" / "TALVOR_QUME_APP.conf", "[COMPANY]\nDEFAULT=1\n");
    }
};

TEST_F(Looking, SayThatThereIsNoDataFolderAndCreateNone) {
    for (const std::string_view line :
         {"overview", "overview --csv", "status", "status --json", "trace 12/2005 content"}) {
        const std::vector<std::string_view> words = Split(line, ' ');
        const std::vector<std::string> command(words.begin(), words.end());
        SCOPED_TRACE(line);
        const ProgramRun run = Run(command);
        EXPECT_EQ(run.Errors, "No company is selected. " + NoFolder);
        EXPECT_EQ(run.Output, "");
        EXPECT_EQ(run.Status, 1);
        std::vector<std::string> ofCompany = command;
        ofCompany.insert(ofCompany.end(), {"--company", "Acme"});
        EXPECT_EQ(Run(ofCompany).Errors, NoFolder);
    }
    const ProgramRun all = Run({"status", "--all", "--json"});
    EXPECT_EQ(all.Errors, NoFolder);
    EXPECT_EQ(all.Output, "");
    EXPECT_EQ(all.Status, 1);
    EXPECT_TRUE(std::filesystem::is_empty(Folder));
}

TEST_F(Looking, SayTheSameOfAProgramFolderThatIsNotThere) {
    std::filesystem::remove(Folder);
    EXPECT_EQ(Run({"status"}).Errors, "No company is selected. " + NoFolder);
    EXPECT_EQ(Run({"check"}).Output, "data: the folder \"" + PathText(Data) + "\" does not exist\n");
    EXPECT_FALSE(std::filesystem::exists(Folder));
}

TEST_F(Looking, CreateNoFileInAnEmptyDataFolder) {
    std::filesystem::create_directory(Data);
    RememberCompany();
    EXPECT_EQ(Run({"overview"}).Errors,
              "No company is selected. Name one with --company, or select one with select-company.\n");
    EXPECT_EQ(Run({"status", "--company", "1"}).Errors, "There is no company 1.\n");
    EXPECT_EQ(Run({"status", "--company", "Acme"}).Errors, "There is no company \"Acme\".\n");
    EXPECT_EQ(Run({"trace", "12/2005", "content"}).Status, 1);
    const ProgramRun all = Run({"status", "--all", "--json"});
    EXPECT_EQ(all.Output, "[]\n");
    EXPECT_EQ(all.Errors, "There are no companies.\n");
    EXPECT_EQ(all.Status, 6);
    EXPECT_EQ(Run({"check"}).Status, 4);
    EXPECT_TRUE(std::filesystem::is_empty(Data));
}

TEST_F(Looking, CreateNoFileForACompanyWithoutAny) {
    AddCompany("Acme", "Dock 1");
    RememberCompany();
    const auto before = FilesIn(Data);
    EXPECT_EQ(Run({"overview"}).Output, "No use is recorded yet.\n");
    EXPECT_EQ(Run({"status"}).Status, 6);
    EXPECT_EQ(Run({"status", "--company", "Acme"}).Status, 6);
    EXPECT_EQ(Run({"trace", "12/2005", "emissions"}).Errors, "");
    EXPECT_EQ(FilesIn(Data), before);
}

// A folder at the name of the file of companies.
TEST_F(Looking, TellOnceThatTheCompaniesCannotBeRead) {
    std::filesystem::create_directories(Data / "companies.talvor");
    RememberCompany();
    for (const char* command : {"overview", "status"}) {
        const ProgramRun run = Run({command});
        EXPECT_EQ(run.Errors,
                  "Cannot open the file \"" + PathText(Data / "companies.talvor") + "\": Is a directory.\n");
        EXPECT_EQ(run.Status, 1);
    }
}

TEST_F(Looking, FinishARestoreThatWasCutOffSinceItDecidesWhatTheDataAre) {
    AddShop();
    std::filesystem::copy(Data, Folder / "data.mact.new");
    WriteContent(Folder / "restore.mact.note", ""); // it has not happened yet
    EXPECT_EQ(Run({"status"}).Status, 6);
    EXPECT_FALSE(std::filesystem::exists(Folder / "data.mact.new"));
    EXPECT_FALSE(std::filesystem::exists(Folder / "restore.mact.note"));
}

} // namespace
} // namespace mact
