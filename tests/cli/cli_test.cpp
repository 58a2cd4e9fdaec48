#include "base/text.h"
#include "materials/material_record.h"
#include "store/companies.h"
#include "tests/support/bytes.h"
#include "tests/support/folder_content.h"
#include "tests/support/run_program.h"
#include "tests/support/test_program.h"
#include "usage/usage_record.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

constexpr const char* GoodMaterials =
    "GC-110|Gel coat, white|Pigmented production gel|All|9.5|33|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n"
    "R-1|Resin|Production resin|Spray|9.2|35|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n";
constexpr const char* GoodUsage = "GC-110|3|2005|120.5|lbs\r\nR-1|3|2005|0.1|mg\r\n";

class CliTest : public testing::Test {
protected:
    TemporaryFolder Temporary;
    std::filesystem::path Folder = Temporary.Path() / "program";
    std::filesystem::path Config = Temporary.Path() / "settings";

    CliTest() {
        std::filesystem::create_directory(Folder);
        std::filesystem::create_directory(Config);
    }
    ProgramRun Plain(const std::vector<std::string>& arguments) {
        return RunProgram(PathFromUtf8(MACT_CLI_PROGRAM), arguments, Config);
    }
    ProgramRun Run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--folder", PathText(Folder)});
        return Plain(arguments);
    }
    std::string FileNamed(const std::string& name, std::string_view content) {
        WriteContent(Temporary.Path() / name, content);
        return PathText(Temporary.Path() / name);
    }
    /// A selected company with two materials and their use in March 2005.
    void AddShop() {
        ASSERT_EQ(Run({"add-company", "Acme", "Dock 1"}).Output, "1\n");
        ASSERT_EQ(Run({"select-company", "1"}).Status, 0);
        ASSERT_EQ(Run({"import-materials", FileNamed("materials.txt", GoodMaterials)}).Status, 0);
        ASSERT_EQ(Run({"import-usage", FileNamed("usage.txt", GoodUsage)}).Status, 0);
    }
    void SetSettings(const std::string& settings) {
        std::filesystem::create_directory(Config / "MACT");
        WriteContent(Config / "MACT" / "TALVOR_QUME_APP.conf", settings);
    }
    std::string NamesFile() const { return ContentOf(Folder / "data" / "1_additional.talvor"); }
    static int CountLines(const std::string& text) {
        return static_cast<int>(std::ranges::count(text, '\n'));
    }
};

TEST_F(CliTest, AStartInAFolderWithoutDataCreatesTheDefaultTable) {
    const ProgramRun run = Run({"companies"});
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(run.Output, "");
    EXPECT_EQ(run.Errors, "");
    EXPECT_EQ(std::filesystem::file_size(Folder / "data" / "hapcontents.talvor"), 29U * 232);
}

TEST_F(CliTest, CompaniesAreAddedAndListedWithTheirLetters) {
    EXPECT_EQ(Run({"add-company", "Acme", "Dock 1"}).Output, "1\n");
    EXPECT_EQ(Run({"add-company", " B\u00E5ter \u00D8st ", "Pier \u20AC"}).Output, "2\n");
    const ProgramRun run = Run({"companies"});
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(run.Output, "1|Acme|Dock 1\n2|B\u00E5ter \u00D8st|Pier \u20AC\n");
    EXPECT_EQ(ContentOf(Folder / "data" / "companies.talvor").substr(504, 252),
              Hex("02 00") + Padded(" B\xE5ter \xD8st ", 250));
}

TEST_F(CliTest, ACompanyWithoutLocationIsRefusedAndNothingIsWritten) {
    const ProgramRun run = Run({"add-company", "Acme", "  "});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Errors, "You must specify Company Name and Company Location to add new company\n");
    EXPECT_FALSE(std::filesystem::exists(Folder / "data" / "companies.talvor"));
}

TEST_F(CliTest, ANameThatCannotBeStoredIsRefusedRatherThanChanged) {
    const ProgramRun run = Run({"add-company", "\u0141\u00F3d\u017A", "Dock 1"});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Errors, "Cannot store \"\u0141\u00F3d\u017A\": it has a character that the Windows-1252 "
                          "character set lacks.\n");
}

TEST_F(CliTest, TheSelectedCompanyIsRememberedAndTheOptionIsNot) {
    Run({"add-company", "Acme", "Dock 1"});
    Run({"add-company", "Beta", "Dock 2"});
    const std::string materials = FileNamed("materials.txt", GoodMaterials);
    EXPECT_EQ(Run({"select-company", "1"}).Status, 0);
    EXPECT_EQ(Run({"--company", "2", "import-materials", materials}).Status, 0);
    EXPECT_FALSE(std::filesystem::exists(Folder / "data" / "1_materials.talvor"));
    EXPECT_TRUE(std::filesystem::exists(Folder / "data" / "2_materials.talvor"));
    EXPECT_EQ(Run({"import-materials", materials}).Status, 0);
    EXPECT_TRUE(std::filesystem::exists(Folder / "data" / "1_materials.talvor"));
}

TEST_F(CliTest, ACompanyThatDoesNotExistIsAFailure) {
    for (const std::vector<std::string>& arguments : {
             std::vector<std::string>{"select-company", "7"        },
             { "--company",             "7", "companies"}
    }) {
        const ProgramRun run = Run(arguments);
        EXPECT_EQ(run.Status, 1);
        EXPECT_EQ(run.Errors, "There is no company 7.\n");
    }
}

TEST_F(CliTest, WorkWithoutACompanyIsAFailure) {
    for (const std::vector<std::string>& arguments : {
             std::vector<std::string>{"import-materials", "x"        },
             {"export-usage",     "x"        },
             {"report",           "compliant"}
    }) {
        const ProgramRun run = Run(arguments);
        EXPECT_EQ(run.Status, 1);
        EXPECT_EQ(run.Errors,
                  "No company is selected. Name one with --company, or select one with select-company.\n");
    }
}

TEST_F(CliTest, AnImportPrintsTheSummaryOfItsDialog) {
    Run({"add-company", "Acme", "Dock 1"});
    const ProgramRun run =
        Run({"--company", "1", "import-materials", FileNamed("materials.txt", GoodMaterials)});
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(run.Output, "Total Records Processed : 2\nSucessful Imports : 2\nErrors : 0\n");
    EXPECT_EQ(std::filesystem::file_size(Folder / "data" / "1_materials.talvor"), 2U * 1444);
}

TEST_F(CliTest, AnImportWithRejectedRecordsEndsWithStatus4) {
    Run({"add-company", "Acme", "Dock 1"});
    const ProgramRun run = Run({"--company", "1", "import-materials",
                                FileNamed("materials.txt", std::string(GoodMaterials) + "x\r\n")});
    EXPECT_EQ(run.Status, 4);
    EXPECT_EQ(run.Output, "Total Records Processed : 3\nSucessful Imports : 2\nErrors : 1\n");
    EXPECT_EQ(ContentOf(Folder / "material_import_errors.txt"),
              "x    ***** Invalid number of delimited fields ******\r\n");
}

TEST_F(CliTest, AnImportSaysBelowItsSummaryWhatWasThereAlready) {
    Run({"add-company", "Acme", "Dock 1"});
    const std::string file = FileNamed("materials.txt", GoodMaterials);
    Run({"--company", "1", "import-materials", file});
    EXPECT_EQ(
        Run({"--company", "1", "import-materials", file}).Output,
        "Total Records Processed : 2\nSucessful Imports : 0\nErrors : 2\n"
        "2 lines were rejected because the material was there already; what is stored stays as it was.\n");
}

TEST_F(CliTest, AFileThatCannotBeReadIsAFailureOfOneLine) {
    Run({"add-company", "Acme", "Dock 1"});
    const ProgramRun run =
        Run({"--company", "1", "import-usage", PathText(Temporary.Path() / "missing.txt")});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(CountLines(run.Errors), 1);
    EXPECT_NE(run.Errors.find("missing.txt"), std::string::npos);
}

TEST_F(CliTest, AFailureNamesAPathAsItIs) {
    Run({"add-company", "Acme", "Dock 1"});
    const std::string missing = PathText(Temporary.Path() / "two  blanks.txt");
    EXPECT_EQ(Run({"--company", "1", "import-usage", missing}).Errors,
              "Cannot open the file \"" + missing + "\": No such file or directory.\n");
}

TEST_F(CliTest, ExportsWriteWhatTheImportsRead) {
    AddShop();
    const std::filesystem::path target = Temporary.Path() / "exported.txt";
    ProgramRun run = Run({"export-materials", PathText(target)});
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(run.Output, "Total Records Processed : 2\nSucessful Exports : 2\nErrors : \n");
    EXPECT_EQ(ContentOf(target), GoodMaterials);
    run = Run({"export-usage", PathText(target)});
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(run.Output, "Total Records Processed : 2\nSucessful Exports : 2\nErrors : 0\n");
    EXPECT_EQ(ContentOf(target), "GC-110|3|2005|120.5|lbs\r\nR-1|3|2005|0.1|Mgal\r\n");
}

TEST_F(CliTest, AnExportWithUsageOfAMissingMaterialEndsWithStatus4) {
    AddShop();
    WriteContent(Folder / "data" / "1_materials.talvor", "");
    const ProgramRun run = Run({"export-usage", PathText(Temporary.Path() / "exported.txt")});
    EXPECT_EQ(run.Status, 4);
    EXPECT_EQ(run.Output, "Total Records Processed : 2\nSucessful Exports : 0\nErrors : 2\n");
}

TEST_F(CliTest, EachReportPrintsThePathOfItsFile) {
    AddShop();
    const std::vector<std::pair<std::string, std::string>> reports = {
        {"compliant",           "report.htm" },
        {"weighted-average",    "report2.htm"},
        {"emission-average",    "report3.htm"},
        {"additional-usage",    "report4.htm"},
        {"additional-emission", "report5.htm"}
    };
    for (const auto& [kind, file] : reports) {
        const ProgramRun run = Run({"report", kind, "--ending", "12/2005"});
        EXPECT_EQ(run.Status, 0) << run.Errors;
        EXPECT_EQ(run.Output, PathText(Folder / file) + "\n");
        EXPECT_EQ(run.Errors, "");
        EXPECT_NE(ContentOf(Folder / file).find("<u>Acme</u>"), std::string::npos);
    }
}

TEST_F(CliTest, TheCompliantReportWithoutAnEndingHasAllMaterials) {
    AddShop();
    EXPECT_EQ(Run({"report", "compliant"}).Status, 0);
    EXPECT_NE(ContentOf(Folder / "report.htm").find("<u>All Materials</u>"), std::string::npos);
    EXPECT_EQ(Run({"report", "compliant", "--ending", "12/2005"}).Status, 0);
    EXPECT_NE(ContentOf(Folder / "report.htm").find("Materials used from <u>01/2005</u> to <u>12/2005</u>"),
              std::string::npos);
}

TEST_F(CliTest, AnEmptyReportIsDeclinedUnlessYesIsGiven) {
    AddShop();
    const ProgramRun declined = Run({"report", "compliant", "--ending", "12/2001"});
    EXPECT_EQ(declined.Status, 3);
    EXPECT_EQ(declined.Output, "");
    EXPECT_FALSE(std::filesystem::exists(Folder / "report.htm"));
    const ProgramRun wanted = Run({"report", "compliant", "--ending", "12/2001", "--yes"});
    EXPECT_EQ(wanted.Status, 0);
    EXPECT_NE(ContentOf(Folder / "report.htm").find("No record found"), std::string::npos);
}

TEST_F(CliTest, AReportThatCannotBeWrittenIsAFailureOfOneLine) {
    AddShop();
    std::filesystem::create_directory(Folder / "report2.htm");
    const ProgramRun run = Run({"report", "weighted-average", "--ending", "12/2005"});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Output, "");
    EXPECT_EQ(CountLines(run.Errors), 1);
}

TEST_F(CliTest, AReportStartsNoBrowser) {
    AddShop();
    const std::string browser = FileNamed("browser", "#!/bin/sh\n: >\"$0.started\"\n");
    std::filesystem::permissions(PathFromUtf8(browser), std::filesystem::perms::owner_all);
    SetSettings("[COMPANY]\nDEFAULT=1\n[BROWSER]\nPATH=" + browser + "\n");
    EXPECT_EQ(Run({"report", "compliant"}).Status, 0);
    EXPECT_FALSE(std::filesystem::exists(Temporary.Path() / "browser.started"));
}

TEST_F(CliTest, ANewCompanysPollutantNamesAreSixThatAreNotInUse) {
    Run({"add-company", "Acme", "Dock 1"});
    const ProgramRun run = Run({"--company", "1", "names"});
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(run.Output, "-\n-\n-\n-\n-\n-\n");
    EXPECT_EQ(NamesFile(), "\"-|-|-|-|-|-\"\r\n");
}

TEST_F(CliTest, PollutantNamesAreSetAndListed) {
    Run({"add-company", "Acme", "Dock 1"});
    const ProgramRun set =
        Run({"--company", "1", "names", "MMA", "Styr\u00E8ne", "-", "two words", "-", "-"});
    EXPECT_EQ(set.Status, 0);
    EXPECT_EQ(set.Output, "");
    EXPECT_EQ(NamesFile(), "MMA|Styr\xE8ne|-|two words|-|-\r\n");
    EXPECT_EQ(Run({"--company", "1", "names"}).Output, "MMA\nStyr\u00E8ne\n-\ntwo words\n-\n-\n");
}

TEST_F(CliTest, PollutantNamesWithoutACompanyAreAFailure) {
    for (const ProgramRun& run : {Run({"names"}), Run({"names", "a", "b", "c", "d", "e", "f"})}) {
        EXPECT_EQ(run.Status, 1);
        EXPECT_EQ(run.Errors,
                  "No company is selected. Name one with --company, or select one with select-company.\n");
    }
}

TEST_F(CliTest, PollutantNamesAreSixOrNone) {
    Run({"add-company", "Acme", "Dock 1"});
    for (const std::size_t count : {1U, 5U, 7U}) {
        std::vector<std::string> arguments(count, "MMA");
        arguments.insert(arguments.begin(), {"--company", "1", "names"});
        const ProgramRun run = Run(arguments);
        EXPECT_EQ(run.Status, 2) << count;
        EXPECT_EQ(CountLines(run.Errors), 1) << run.Errors;
    }
    EXPECT_FALSE(std::filesystem::exists(Folder / "data" / "1_additional.talvor"));
}

TEST_F(CliTest, APollutantNameThatIsEmptyIsRefusedInTheWindowsWords) {
    Run({"add-company", "Acme", "Dock 1"});
    for (const char* name : {"", "  "}) {
        const ProgramRun run = Run({"--company", "1", "names", "a", "b", name, "d", "e", "f"});
        EXPECT_EQ(run.Status, 1);
        EXPECT_EQ(run.Errors, "You can not leave any of the pollutant name empty. If you dont want to use "
                              "all pollutants please use '-' as their name to make them disable.\n");
        EXPECT_FALSE(std::filesystem::exists(Folder / "data" / "1_additional.talvor"));
    }
}

TEST_F(CliTest, APollutantNameThatCannotBeStoredIsRefused) {
    Run({"add-company", "Acme", "Dock 1"});
    for (const char* name : {"\u0141", "a|b", "a\nb"}) {
        const ProgramRun run = Run({"--company", "1", "names", "a", "b", "c", "d", "e", name});
        EXPECT_EQ(run.Status, 1);
        EXPECT_EQ(CountLines(run.Errors), 1);
        EXPECT_FALSE(std::filesystem::exists(Folder / "data" / "1_additional.talvor"));
    }
}

TEST_F(CliTest, ABackupIsCompleteWhenItsFolderIsPrinted) {
    AddShop();
    const ProgramRun run = Run({"backup"});
    EXPECT_EQ(run.Status, 0) << run.Errors;
    EXPECT_EQ(run.Output, PathText(Folder / "talvor_backupset_1") + "\n");
    EXPECT_EQ(run.Errors, "");
    EXPECT_EQ(FilesIn(Folder / "talvor_backupset_1"), FilesIn(Folder / "data"));
    EXPECT_GE(FilesIn(Folder / "data").size(), 4U);
    EXPECT_EQ(Run({"backup"}).Output, PathText(Folder / "talvor_backupset_2") + "\n");
}

TEST_F(CliTest, ABackupTakesNoArgument) {
    EXPECT_EQ(Run({"backup", "surplus"}).Status, 2);
    EXPECT_FALSE(std::filesystem::exists(Folder / "backup.bat"));
}

TEST_F(CliTest, ABackupGoesToTheFolderThatIsConfigured) {
    const std::filesystem::path base = Temporary.Path() / "backups";
    std::filesystem::create_directory(base);
    SetSettings("[BACKUP]\nPATH=" + PathText(base) + "\nBK_VOLUME=12\n");
    EXPECT_EQ(Run({"backup"}).Output, PathText(base / "talvor_backupset_12") + "\n");
    EXPECT_EQ(FilesIn(base / "talvor_backupset_12"), FilesIn(Folder / "data"));
}

TEST_F(CliTest, AFileThatCannotBeCopiedIsNamedAndTheOthersAreCopied) {
    AddShop();
    const auto expected = FilesIn(Folder / "data");
    std::filesystem::create_symlink("/proc/self/mem", Folder / "data" / "bad"); // no byte of it can be read
    const ProgramRun run = Run({"backup"});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Output, "");
    EXPECT_EQ(CountLines(run.Errors), 1);
    EXPECT_NE(run.Errors.find("\"" + PathText(Folder / "data" / "bad") + "\""), std::string::npos);
    auto copied = FilesIn(Folder / "talvor_backupset_1");
    EXPECT_EQ(copied["incomplete.txt"], run.Errors.substr(0, run.Errors.size() - 1) + "\r\n");
    copied.erase("incomplete.txt");
    EXPECT_EQ(copied, expected);
    EXPECT_TRUE(std::filesystem::exists(Folder / "backup.mact.note"));
}

TEST_F(CliTest, ABrokenLinkIsAFileThatCannotBeCopied) {
    AddShop();
    const auto expected = FilesIn(Folder / "data");
    std::filesystem::create_symlink("nowhere", Folder / "data" / "broken link");
    const ProgramRun run = Run({"backup"});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Output, "");
    EXPECT_EQ(run.Errors, "Cannot back up the file \"" + PathText(Folder / "data" / "broken link") +
                              "\": No such file or directory.\n");
    auto copied = FilesIn(Folder / "talvor_backupset_1");
    copied.erase("incomplete.txt");
    EXPECT_EQ(copied, expected);
}

TEST_F(CliTest, ABackupLeavesOutTemporaryFilesAndTakesUndoFilesAlong) {
    AddShop();
    WriteContent(Folder / "data" / "1_usage.talvor.mact.undo", "undo");
    const auto expected = FilesIn(Folder / "data");
    WriteContent(Folder / "data" / "1_additional.talvor.mact.tmp", "temporary");
    EXPECT_EQ(Run({"backup"}).Status, 0);
    EXPECT_EQ(FilesIn(Folder / "talvor_backupset_1"), expected);
    EXPECT_FALSE(std::filesystem::exists(Folder / "backup.mact.note"));
}

TEST_F(CliTest, ABackupsNumberMayBeAFraction) {
    SetSettings("[BACKUP]\nBK_VOLUME=2.5\n");
    EXPECT_EQ(Run({"backup"}).Output, PathText(Folder / "talvor_backupset_2.5") + "\n");
    EXPECT_EQ(Run({"backup"}).Output, PathText(Folder / "talvor_backupset_3.5") + "\n");
}

TEST_F(CliTest, ABackupSetThatIsThereIsToldAndGetsTheFilesAllTheSame) {
    std::filesystem::create_directory(Folder / "talvor_backupset_1");
    const ProgramRun run = Run({"backup"});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Output, PathText(Folder / "talvor_backupset_1") + "\n");
    EXPECT_EQ(run.Errors,
              "Cannot create the folder \"" + PathText(Folder / "talvor_backupset_1") + "\": File exists.\n");
    EXPECT_EQ(FilesIn(Folder / "talvor_backupset_1"), FilesIn(Folder / "data"));
    EXPECT_EQ(Run({"backup"}).Status, 0);
}

TEST_F(CliTest, ACheckOfGoodFilesPrintsNothing) {
    AddShop();
    const ProgramRun run = Run({"check"});
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(run.Output, "");
    EXPECT_EQ(run.Errors, "");
}

TEST_F(CliTest, ACheckPrintsALineForEachFindingOfEveryCompanyAndEndsWithStatus4) {
    AddShop();
    Run({"add-company", "Beta", "Dock 2"});
    const std::string usage = FileNamed("february.txt", "R-1|02|2005|1|lbs\r\n");
    ASSERT_EQ(Run({"--company", "2", "import-materials", FileNamed("materials.txt", GoodMaterials)}).Status,
              0);
    ASSERT_EQ(Run({"--company", "2", "import-usage", usage}).Status, 0);
    const auto before = FilesIn(Folder / "data");
    const ProgramRun run = Run({"check"});
    EXPECT_EQ(run.Status, 4);
    EXPECT_EQ(run.Output,
              "2_usage.talvor, record 1: its period \"02/2005\" is in no report; a month is written "
              "as in 3/2005\n");
    EXPECT_EQ(run.Errors, "");
    EXPECT_EQ(FilesIn(Folder / "data"), before);
}

TEST_F(CliTest, ACheckCreatesNeitherFolderNorFile) {
    const ProgramRun withoutFolder = Run({"check"});
    EXPECT_EQ(withoutFolder.Status, 4);
    EXPECT_EQ(withoutFolder.Output,
              "data: the folder \"" + PathText(Folder / "data") + "\" does not exist\n");
    EXPECT_FALSE(std::filesystem::exists(Folder / "data"));
    std::filesystem::create_directory(Folder / "data");
    const ProgramRun withoutTable = Run({"check"});
    EXPECT_EQ(withoutTable.Status, 4);
    EXPECT_EQ(withoutTable.Output, "hapcontents.talvor: it does not exist\n");
    EXPECT_TRUE(std::filesystem::is_empty(Folder / "data"));
}

TEST_F(CliTest, ACheckOfAFileThatCannotBeReadEndsWithStatus1AndChecksTheRest) {
    AddShop();
    std::filesystem::remove(Folder / "data" / "1_materials.talvor");
    std::filesystem::create_directory(Folder / "data" / "1_materials.talvor");
    WriteContent(Folder / "data" / "1_additional.talvor", "MMA\r\n");
    const ProgramRun run = Run({"check"});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Output, "1_additional.talvor: it does not hold six names\n");
    EXPECT_EQ(run.Errors, "Cannot open the file \"" + PathText(Folder / "data" / "1_materials.talvor") +
                              "\": Is a directory.\n");
}

TEST_F(CliTest, ACheckIsNotStoppedByWhatIsRemembered) {
    AddShop();
    SetSettings("[COMPANY]\nDEFAULT=x\n");
    const ProgramRun run = Run({"check"});
    EXPECT_EQ(run.Status, 4);
    EXPECT_EQ(run.Output, "settings: the remembered company \"x\" does not exist\n");
    EXPECT_EQ(run.Errors, "");
}

TEST_F(CliTest, WrongUseIsSaidInOneLineAndEndsWithStatus2) {
    const std::vector<std::vector<std::string>> wrong = {
        {          },
        {                    "no-such-command"          },
        {         "companies",           "surplus"},
        {                 "add-company",           "Acme"},
        {              "select-company",           "Acme"},
        {              "select-company",           "40000"},
        {                      "report",           "annual"},
        {                      "report",           "weighted-average"},
        {                      "report", "weighted-average", "--ending", "13/2005"},
        {          "report",    "weighted-average", "--ending", "2005"},
        {"check",     "surplus"},
        {                       "--company","1", "check"},
        {                "--nothing",           "companies"}
    };
    for (const std::vector<std::string>& arguments : wrong) {
        const ProgramRun run = Run(arguments);
        SCOPED_TRACE(arguments.empty() ? "" : arguments.back());
        EXPECT_EQ(run.Status, 2);
        EXPECT_EQ(CountLines(run.Errors), 1) << run.Errors;
        EXPECT_EQ(run.Output, "");
    }
    EXPECT_FALSE(std::filesystem::exists(Folder / "data"));
}

TEST_F(CliTest, HelpAndVersionAreThereForEveryCommand) {
    for (const char* command :
         {"companies", "add-company", "select-company", "import-materials", "import-usage",
          "export-materials", "export-usage", "report", "names", "backup", "check"}) {
        SCOPED_TRACE(command);
        const ProgramRun help = Plain({command, "--help"});
        EXPECT_EQ(help.Status, 0);
        EXPECT_NE(help.Output.find(command), std::string::npos);
        const ProgramRun version = Plain({command, "--version"});
        EXPECT_EQ(version.Status, 0);
        EXPECT_EQ(version.Output, "MACT (V1.1)\n");
    }
    EXPECT_EQ(Plain({"--help"}).Status, 0);
    EXPECT_EQ(Plain({"--version"}).Output, "MACT (V1.1)\n");
}

TEST_F(CliTest, ARememberedCompanyThatIsNotANumberStopsTheProgram) {
    Run({"add-company", "Acme", "Dock 1"});
    Run({"select-company", "1"});
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Config))
        if (entry.is_regular_file()) {
            std::string content = ContentOf(entry.path());
            const std::size_t value = content.find("DEFAULT=1");
            ASSERT_NE(value, std::string::npos);
            WriteContent(entry.path(), content.replace(value, 9, "DEFAULT=x"));
        }
    const ProgramRun run = Run({"companies"});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(CountLines(run.Errors), 1);
}

TEST_F(CliTest, CompaniesThatCannotBeReadAreToldOnceByEachCommand) {
    AddShop();
    std::filesystem::remove(Folder / "data" / "companies.talvor");
    std::filesystem::create_directory(Folder / "data" / "companies.talvor");
    const std::string sentence =
        "Cannot open the file \"" + PathText(Folder / "data" / "companies.talvor") + "\": Is a directory.\n";
    for (const std::string_view line : {"companies", "add-company Acme Dock", "select-company 1", "names",
                                        "--company 1 names", "report compliant", "export-usage usage.txt"}) {
        const std::vector<std::string_view> words = Split(line, ' ');
        const ProgramRun run = Run({words.begin(), words.end()});
        EXPECT_EQ(run.Status, 1);
        EXPECT_EQ(run.Output, "");
        EXPECT_EQ(run.Errors, sentence) << line;
    }
}

TEST_F(CliTest, NamesThatCannotBeReadAreNotPrinted) {
    AddShop();
    std::filesystem::create_directory(Folder / "data" / "1_additional.talvor");
    const ProgramRun run = Run({"names"});
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Output, "");
    EXPECT_EQ(CountLines(run.Errors), 1);
}

TEST_F(CliTest, ControlCharactersOfRecordsArePrintedAsQuestionMarks) {
    EXPECT_EQ(Run({"add-company", "A\x1B[2Jcme\nInc",
                   "Do\xC2\x9D"
                   "ck"})
                  .Output,
              "1\n");
    EXPECT_EQ(Run({"companies"}).Output, "1|A?[2Jcme?Inc|Do?ck\n");
    ASSERT_EQ(Run({"select-company", "1"}).Status, 0);
    ASSERT_EQ(Run({"names", "M\x1BMA", "b", "c", "d", "e", "f"}).Status, 0);
    EXPECT_EQ(Run({"names"}).Output, "M?MA\nb\nc\nd\ne\nf\n");
    EXPECT_EQ(NamesFile(), "M\x1BMA|b|c|d|e|f\r\n"); // stored as they are
}

TEST_F(CliTest, ControlCharactersOfAMessageArePrintedAsQuestionMarks) {
    EXPECT_EQ(
        Run({"add-company", "A\x1B[2J\xC5\x81", "Dock"}).Errors,
        "Cannot store \"A?[2J\xC5\x81\": it has a character that the Windows-1252 character set lacks.\n");
}

} // namespace
} // namespace mact
