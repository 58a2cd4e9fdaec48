#include "tests/cli/cli_shop.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace mact {
namespace {

/// The FILE "-", and report --output.
class StandardStreams : public CliShop {
protected:
    std::filesystem::path TemporaryFiles = Temporary.Path() / "tmp";

    StandardStreams() { std::filesystem::create_directory(TemporaryFiles); }

    /// Runs a line of a shell, in which mact is mact-cli with the program folder.
    ProgramRun Shell(const std::string& line, std::string_view input = {}) const {
        const std::string function = "program=$0; folder=$1; export TMPDIR=\"$2\"; mact() { \"$program\" "
                                     "--folder \"$folder\" \"$@\"; }\n";
        return RunProgram(
            "/bin/sh", {"-c", function + line, MACT_CLI_PROGRAM, PathText(Folder), PathText(TemporaryFiles)},
            Config, input);
    }
    std::string Page(const std::string& name) const { return ContentOf(Folder / name); }
};

TEST_F(StandardStreams, AnImportReadsTheStandardInputLikeAFile) {
    AddCompany("Acme", "Dock 1");
    ASSERT_EQ(Run({"select-company", "1"}).Status, 0);
    const ProgramRun materials = Run({"import-materials", "-"}, std::string(OneMaterial) + "x\r\n");
    EXPECT_EQ(materials.Output, "Total Records Processed : 2\nSucessful Imports : 1\nErrors : 1\n");
    EXPECT_EQ(materials.Status, 4);
    const ProgramRun usage = Run({"import-usage", "-"}, OneUse);
    EXPECT_EQ(usage.Output, "Total Records Processed : 1\nSucessful Imports : 1\nErrors : 0\n");
    EXPECT_EQ(usage.Errors, "");
    EXPECT_EQ(Run({"export-usage", "-"}).Output, OneUse);
}

TEST_F(StandardStreams, AnImportOfAnEmptyInputIsOneOfAnEmptyFile) {
    AddShop();
    const ProgramRun run = Run({"import-usage", "-"}, "");
    EXPECT_EQ(run.Output, "Total Records Processed : 0\nSucessful Imports : 0\nErrors : 0\n");
    EXPECT_EQ(run.Status, 0);
}

TEST_F(StandardStreams, AFileNamedWithADashIsReachedByItsFolder) {
    AddShop();
    WriteContent(Temporary.Path() / "-", "R-1|4|2005|7|lbs\r\n");
    EXPECT_EQ(Run({"import-usage", PathText(Temporary.Path() / "-")}).Status, 0);
    EXPECT_EQ(Run({"export-usage", "-"}).Output, std::string(OneUse) + "R-1|4|2005|7|lbs\r\n");
}

TEST_F(StandardStreams, LeaveNoTemporaryFile) {
    AddShop();
    EXPECT_EQ(Shell("mact import-usage -", "R-1|5|2005|1|lbs\n").Status, 0);
    EXPECT_EQ(Shell("mact import-usage -", "x\n").Status, 4);
    EXPECT_EQ(Shell("mact export-usage -").Status, 0);
    EXPECT_EQ(Shell("mact report compliant --output - | head -c 1").Output, "<");
    EXPECT_EQ(Shell("mact report compliant --ending 1/1999 --output -").Status, 3);
    EXPECT_TRUE(std::filesystem::is_empty(TemporaryFiles));
    std::filesystem::remove(TemporaryFiles); // and need none without "-"
    EXPECT_EQ(Shell("mact report compliant && mact export-usage \"$folder/usage.txt\"").Status, 0);
}

TEST_F(StandardStreams, AnInputThatCannotBeReadIsNamedAndImportsNothing) {
    AddShop();
    const std::string before = ContentOf(Data / "1_usage.talvor");
    const ProgramRun closed = Shell("mact import-usage - <&-");
    EXPECT_EQ(closed.Errors, "Cannot read the standard input: Bad file descriptor.\n");
    EXPECT_EQ(closed.Output, "");
    EXPECT_EQ(closed.Status, 1);
    EXPECT_EQ(Shell("mact import-usage - </").Errors, "Cannot read the standard input: Is a directory.\n");
    std::filesystem::remove(TemporaryFiles);
    const ProgramRun nowhere = Shell("mact import-usage -", OneUse);
    EXPECT_TRUE(nowhere.Errors.starts_with("Cannot keep the standard input in a temporary file: "));
    EXPECT_EQ(nowhere.Status, 1);
    const ProgramRun notPrinted = Shell("mact export-usage -");
    EXPECT_TRUE(notPrinted.Errors.starts_with("Cannot create a temporary folder: "));
    EXPECT_EQ(notPrinted.Output, "");
    EXPECT_EQ(notPrinted.Status, 1);
    EXPECT_EQ(ContentOf(Data / "1_usage.talvor"), before);
}

TEST_F(StandardStreams, AnInputWithoutACompanyIsNotRead) {
    const ProgramRun run = Run({"import-usage", "-"}, OneUse);
    EXPECT_EQ(run.Status, 1);
    EXPECT_EQ(run.Output, "");
}

TEST_F(StandardStreams, AnExportPrintsTheBytesOfItsFileAndTheSummaryElsewhere) {
    AddShop();
    ASSERT_EQ(Run({"import-materials", "-"},
                  "\xC9-1\x1B|\x93quoted\x94|Production resin|Spray|9|1|0|0|0|0|0|0|0|0|0|0|0|0|0\n")
                  .Status,
              0);
    const std::string file = PathText(Temporary.Path() / "exported.txt");
    ASSERT_EQ(Run({"export-materials", file}).Status, 0);
    const ProgramRun run = Run({"export-materials", "-"});
    EXPECT_EQ(run.Output, ContentOf(PathFromUtf8(file)));
    EXPECT_NE(run.Output.find("\n\xC9-1\x1B|\x93quoted\x94|"), std::string::npos);
    EXPECT_EQ(run.Errors, "Total Records Processed : 2\nSucessful Exports : 2\nErrors : \n");
    EXPECT_EQ(run.Status, 0);
}

TEST_F(StandardStreams, AnExportThatFailsPrintsNothing) {
    AddShop();
    std::filesystem::remove(Data / "1_usage.talvor");
    std::filesystem::create_directory(Data / "1_usage.talvor");
    const ProgramRun run = Run({"export-usage", "-"});
    EXPECT_EQ(run.Output, "");
    EXPECT_EQ(run.Status, 1);
}

TEST_F(StandardStreams, AFullOrClosedOutputIsAFailure) {
    AddShop();
    EXPECT_EQ(Shell("mact export-usage - >/dev/full").Status, 1);
    const auto before = FilesIn(Data);
    const ProgramRun closed = Shell("mact add-company Beta Dock >&-");
    EXPECT_EQ(closed.Errors, "Cannot write to the standard output.\n");
    EXPECT_EQ(closed.Status, 1);
    // Without the standard output, a data file must not get its place.
    EXPECT_EQ(ContentOf(Data / "companies.talvor").size(), 2U * 504);
    EXPECT_EQ(ContentOf(Data / "companies.talvor").substr(0, 504), before.at("companies.talvor"));
}

TEST_F(StandardStreams, AReportGoesToAFileByteForByteAndItsOwnFileStays) {
    AddShop();
    for (const char* kind :
         {"compliant", "weighted-average", "emission-average", "additional-usage", "additional-emission"}) {
        const std::filesystem::path page = Temporary.Path() / "a page.htm";
        std::string path = Run({"report", kind, "--ending", "12/2005"}).Output;
        path.pop_back();
        const std::string expected = ContentOf(PathFromUtf8(path));
        WriteContent(PathFromUtf8(path), "earlier");
        const ProgramRun run = Run({"report", kind, "--ending", "12/2005", "--output", PathText(page)});
        EXPECT_EQ(run.Output, PathText(page) + '\n') << run.Errors;
        EXPECT_EQ(run.Status, 0);
        EXPECT_EQ(ContentOf(page), expected) << kind;
        EXPECT_EQ(ContentOf(PathFromUtf8(path)), "earlier");
        EXPECT_EQ(Run({"report", kind, "--ending", "12/2005", "--output", "-"}).Output, expected);
        EXPECT_EQ(ContentOf(PathFromUtf8(path)), "earlier");
    }
}

TEST_F(StandardStreams, AReportThatIsDeclinedLeavesItsFile) {
    AddShop();
    const std::string page = FileNamed("page.htm", "earlier");
    EXPECT_EQ(Run({"report", "compliant", "--ending", "12/1999", "--output", page}).Status, 3);
    EXPECT_EQ(ContentOf(PathFromUtf8(page)), "earlier");
    const ProgramRun printed = Run({"report", "compliant", "--ending", "12/1999", "--output", "-"});
    EXPECT_EQ(printed.Status, 3);
    EXPECT_EQ(printed.Output, "");
}

TEST_F(StandardStreams, AReportIsNotWrittenOverAnotherFileOfTheProgram) {
    AddShop();
    ASSERT_EQ(Run({"report", "weighted-average", "--ending", "12/2005"}).Status, 0);
    std::filesystem::create_symlink(Data / "1_usage.talvor", Temporary.Path() / "link.htm");
    std::filesystem::create_hard_link(Data / "1_usage.talvor", Temporary.Path() / "second.htm");
    const auto data = FilesIn(Data);
    const std::string other = Page("report2.htm");
    std::filesystem::create_directory(Folder / "reports");
    for (const std::filesystem::path& file :
         {Data / "1_usage.talvor", Folder / "reports" / ".." / "data" / "new.htm", Data / "1_overview.txt",
          Folder / "report2.htm", Temporary.Path() / "link.htm", Temporary.Path() / "second.htm"}) {
        const ProgramRun run = Run({"report", "compliant", "--output", PathText(file)});
        EXPECT_EQ(run.Status, 1) << file;
        EXPECT_EQ(run.Output, "");
        EXPECT_EQ(CountLines(run.Errors), 1) << run.Errors;
    }
    EXPECT_EQ(FilesIn(Data), data);
    EXPECT_EQ(Page("report2.htm"), other);
    EXPECT_EQ(Run({"report", "compliant", "--output", PathText(Folder / "report.htm")}).Status, 0); // its own
}

TEST_F(StandardStreams, AReportToAFolderOrIntoNoneOrToNoNameIsAFailureOfOneLine) {
    AddShop();
    for (const std::string& file :
         {PathText(Temporary.Path()), PathText(Temporary.Path() / "none" / "page.htm"),
          std::string()}) { // a variable of a script that is not set
        const ProgramRun run = Run({"report", "compliant", "--output", file});
        EXPECT_EQ(run.Status, 1);
        EXPECT_EQ(CountLines(run.Errors), 1) << run.Errors;
    }
}

TEST_F(StandardStreams, AReportSaysAsJsonWhatWasWritten) {
    AddShop();
    const auto told = [&](const std::vector<std::string>& arguments) {
        const std::string json = Run(arguments).Output;
        const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(json));
        EXPECT_TRUE(document.isObject()) << json;
        return document.object();
    };
    const QJsonObject own = told({"report", "compliant", "--json"});
    EXPECT_EQ(own["kind"], "compliant");
    EXPECT_TRUE(own["ending"].isNull());
    EXPECT_EQ(own["file"].toString().toStdString(), PathText(Folder / "report.htm"));
    const std::string page = PathText(Temporary.Path() / "a \"page\".htm");
    const QJsonObject named =
        told({"report", "emission-average", "--ending", "12/2005", "--output", page, "--json"});
    EXPECT_EQ(named["ending"], "12/2005");
    EXPECT_EQ(named["file"].toString().toStdString(), page);
    EXPECT_TRUE(told({"report", "compliant", "--ending", "1/1999", "--json"})["file"].isNull());
    EXPECT_EQ(Run({"report", "compliant", "--json", "--output", "-"}).Status, 2);
}

} // namespace
} // namespace mact
