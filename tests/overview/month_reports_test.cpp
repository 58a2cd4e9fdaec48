#include "overview/month_reports.h"

#include "base/text.h"
#include "overview/output_page.h"
#include "overview/statements.h"
#include "reports/reports.h"
#include "store/additional_names.h"
#include "tests/overview/overview_shop.h"
#include "tests/support/folder_content.h"
#include "tests/support/limited_files.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

constexpr MonthNumber July2005 = MonthNumberOf(2005, 7);

class MonthReportsTest : public testing::Test, public OverviewShop {
protected:
    using Content = std::map<std::string, std::string>;

    MonthReportsTest() {
        App.CurrentCompanyName = "Acme <Boats>";
        App.CurrentCompanyLocation = "Port Ellery";
        ImportMaterials({"PR-A|resin|Production resin|Non-Spray|9|34|5|50|0|0|0|0|0|0|0|0|0|0|0",
                         "PG|gel|Pigmented production gel|All|9|31|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        ImportUsage({"PR-A|7|2005|4000|lbs", "PG|7|2005|2500|lbs", "PR-A|7|2004|1000|lbs"});
    }
    std::filesystem::path Folder7() const { return App.ProgramFolder / "reports" / "1" / "2005-07"; }
    Content DataFiles() const { return FilesIn(App.ProgramFolder / "data"); }
    std::string Index() const { return ContentOf(Folder7() / "index.htm"); }
    /// What the reports' window makes, in the program folder.
    Content Generated() {
        const ReportPeriod period{.EndText = "7/2005"};
        Prompts.Answers.assign(5, PromptAnswer::Yes);
        GenerateCompliantMaterialsReport(App, period);
        GenerateWeightedAverageReport(App, period);
        GenerateEmissionAverageReport(App, period);
        GenerateAdditionalHapUsageReport(App, period);
        GenerateAdditionalHapEmissionReport(App, period);
        Prompts.Shown.clear();
        Content reports;
        for (const char* name : {"report.htm", "report2.htm", "report3.htm", "report4.htm", "report5.htm"})
            reports[name] = ContentOf(ProgramFile(name));
        return reports;
    }
    void ExpectSameAsGenerated() {
        Content written = FilesIn(Folder7());
        written.erase("index.htm");
        EXPECT_EQ(written, Generated());
    }
};

TEST_F(MonthReportsTest, AreByteForByteThoseOfTheWindow) {
    ASSERT_TRUE(SaveAdditionalNames(App, {"MMA", "-", "-", "-", "-", "-"}));
    const MonthReports reports = WriteMonthReports(App, July2005);
    EXPECT_TRUE(reports.Failures.empty());
    EXPECT_EQ(reports.Index, Folder7() / "index.htm");
    EXPECT_EQ(FilesIn(Folder7()).size(), 6u);
    ExpectSameAsGenerated();
    EXPECT_NE(ContentOf(Folder7() / "report5.htm").find("MMA"), std::string::npos);
}

TEST_F(MonthReportsTest, LeaveTheReportsInTheProgramFolder) {
    for (const char* name : {"report.htm", "report2.htm", "report3.htm", "report4.htm", "report5.htm"})
        WriteContent(ProgramFile(name), "earlier");
    const Content before = FilesIn(App.ProgramFolder);
    EXPECT_TRUE(WriteMonthReports(App, July2005).Failures.empty());
    EXPECT_EQ(FilesIn(App.ProgramFolder), before);
}

TEST_F(MonthReportsTest, AskNothingWhenThereIsNothingToReportAndCreateNoDataFile) {
    App.CurrentCompanyId = 2;
    const Content before = DataFiles();
    const MonthReports reports = WriteMonthReports(App, July2005);
    EXPECT_TRUE(reports.Failures.empty());
    EXPECT_TRUE(Prompts.Shown.empty());
    EXPECT_EQ(DataFiles(), before);
    Content written = FilesIn(App.ProgramFolder / "reports" / "2" / "2005-07");
    written.erase("index.htm");
    EXPECT_EQ(written.size(), 5u);
    EXPECT_EQ(written, Generated()); // which does create data files
    EXPECT_NE(DataFiles(), before);
}

TEST_F(MonthReportsTest, StartNoBrowserAndKeepTheContext) {
    App.AdditionalNames = "as it was";
    WriteContent(Folder.Path() / "browser", "");
    Settings.Values[{"BROWSER", "PATH"}] = PathText(Folder.Path() / "browser");
    EXPECT_TRUE(WriteMonthReports(App, July2005).Failures.empty());
    EXPECT_TRUE(Programs.Started.empty());
    EXPECT_EQ(App.AdditionalNames, "as it was");
}

TEST_F(MonthReportsTest, IndexLeadsToThem) {
    EXPECT_TRUE(WriteMonthReports(App, July2005).Failures.empty());
    const std::string index = Index();
    for (const char* text :
         {"<h1>Reports, twelve months ending July 2005</h1>", "<b>Acme &lt;Boats&gt;</b><br>Port Ellery",
          "<li><a href=\"report.htm\">Compliant materials report</a></li>",
          "<li><a href=\"report2.htm\">Weighted-average HAP content report</a></li>",
          "<li><a href=\"report3.htm\">Emission-average HAP content report</a></li>",
          "<li><a href=\"report4.htm\">Additional HAP(s) usage report</a></li>",
          "<li><a href=\"report5.htm\">Additional HAP(s) emission report</a></li>"})
        EXPECT_NE(index.find(text), std::string::npos) << text;
    for (const std::string_view statement : OverviewStatements)
        EXPECT_NE(index.find(HtmlText(statement)), std::string::npos) << statement;
}

TEST_F(MonthReportsTest, OneThatFailsIsNamedAndLeavesTheOthers) {
    std::filesystem::create_directory(DataFile("1_additional.talvor")); // two of the reports read it
    const MonthReports reports = WriteMonthReports(App, July2005);
    ASSERT_EQ(reports.Failures.size(), 2u);
    EXPECT_EQ(reports.Failures[0].Path, DataFile("1_additional.talvor"));
    EXPECT_EQ(FilesIn(Folder7()).size(), 4u);
    EXPECT_TRUE(FilesIn(Folder7()).contains("report3.htm"));
    EXPECT_NE(Index().find("<li>Additional HAP(s) usage report: <b>not made.</b> Cannot "),
              std::string::npos);
    EXPECT_EQ(Index().find("report4.htm"), std::string::npos);
    EXPECT_NE(Index().find("<a href=\"report3.htm\">"), std::string::npos);
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(MonthReportsTest, OneThatCannotBeWrittenLeavesItsEarlierPage) {
    EXPECT_TRUE(WriteMonthReports(App, July2005).Failures.empty());
    const std::string earlier = ContentOf(Folder7() / "report2.htm");
    ImportUsage({"PR-A|6|2005|4000|lbs"});
    LimitedFiles full;
    full.Limits[TemporaryFor(Folder7() / "report2.htm")].LongestFile = 10;
    const AppContext app{Prompts, Settings, Programs, Dialogs, Calendar, full, App.ProgramFolder, 1};
    EXPECT_EQ(WriteMonthReports(app, July2005).Failures.size(), 1u);
    EXPECT_EQ(ContentOf(Folder7() / "report2.htm"), earlier);
    EXPECT_NE(Index().find("Weighted-average HAP content report: <b>not made.</b>"), std::string::npos);
}

TEST_F(MonthReportsTest, WhoseFolderCannotBeCreatedAreOneFailure) {
    WriteContent(ProgramFile("reports"), "a file in its place");
    const MonthReports reports = WriteMonthReports(App, July2005);
    ASSERT_EQ(reports.Failures.size(), 1u);
    EXPECT_EQ(reports.Failures[0].Path, ProgramFile("reports"));
    EXPECT_TRUE(reports.Index.empty());
}

TEST_F(MonthReportsTest, WhoseIndexCannotBeWrittenHaveNone) {
    std::filesystem::create_directories(Folder7() / "index.htm");
    const MonthReports reports = WriteMonthReports(App, July2005);
    EXPECT_EQ(reports.Failures.size(), 1u);
    EXPECT_TRUE(reports.Index.empty());
    EXPECT_EQ(FilesIn(Folder7()).size(), 5u);
}

} // namespace
} // namespace mact
