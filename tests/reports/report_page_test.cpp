#include "reports/report_page.h"

#include "base/text.h"
#include "reports/report_publishing.h"
#include "reports/reports.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

class PublishTest : public testing::Test {
protected:
    TestProgram Program;

    std::string ReportPath() const { return PathText(Program.ProgramFile("report3.htm")); }
    void SetBrowser(const std::filesystem::path& path) {
        Program.Settings.Values[{"BROWSER", "PATH"}] = PathText(path);
    }
    std::filesystem::path NewBrowser() {
        std::filesystem::path browser = Program.Folder.Path() / "my br\xC3\xB6wser";
        WriteContent(browser, "");
        SetBrowser(browser);
        return browser;
    }
    std::int16_t Publish() {
        return PublishReport(Program.App, "report3.htm", std::string("<html>\x80</html>"));
    }
};

TEST_F(PublishTest, WritesThePageAsOneLine) {
    EXPECT_EQ(Publish(), ReportPublished);
    EXPECT_EQ(ContentOf(Program.ProgramFile("report3.htm")), "<html>\x80</html>\r\n");
}

TEST_F(PublishTest, LongerEarlierReportIsReplacedWhole) {
    WriteContent(Program.ProgramFile("report3.htm"), std::string(500, 'x'));
    Publish();
    EXPECT_EQ(ContentOf(Program.ProgramFile("report3.htm")), "<html>\x80</html>\r\n");
}

TEST_F(PublishTest, WithoutABrowserTheUserIsToldWhereTheReportIs) {
    Publish();
    ASSERT_EQ(Program.Prompts.Shown.size(), 1U);
    EXPECT_EQ(Program.Prompts.LastText(),
              "Report generated sucessfully and has been saved as\r\n" + ReportPath() +
                  "\r\nYou can define a default browser in configuration to view the report automatically.");
    EXPECT_EQ(Program.Prompts.Shown[0].Kind, PromptKind::Information);
    EXPECT_EQ(Program.Prompts.Shown[0].Buttons, PromptButtons::Ok);
    EXPECT_TRUE(Program.Programs.Started.empty());
}

TEST_F(PublishTest, MissingBrowserCountsAsNone) {
    SetBrowser(Program.Folder.Path() / "no browser here");
    EXPECT_EQ(Publish(), ReportPublished);
    EXPECT_TRUE(Program.Prompts.LastText().starts_with("Report generated sucessfully"));
    EXPECT_TRUE(Program.Programs.Started.empty());
}

TEST_F(PublishTest, FolderIsNoBrowser) {
    SetBrowser(Program.Folder.Path());
    Publish();
    EXPECT_TRUE(Program.Prompts.LastText().starts_with("Report generated sucessfully"));
}

TEST_F(PublishTest, BrowserIsStartedInstead) {
    const std::filesystem::path browser = NewBrowser();
    EXPECT_EQ(Publish(), ReportPublished);
    ASSERT_EQ(Program.Programs.Started.size(), 1U);
    EXPECT_EQ(Program.Programs.Started[0].Program, browser);
    EXPECT_FALSE(Program.Programs.Started[0].HasHiddenWindow);
    EXPECT_TRUE(Program.Prompts.Shown.empty());
}

TEST_F(PublishTest, CommandLineQuotesNeitherPath) {
    const std::filesystem::path browser = NewBrowser();
    Publish();
    ASSERT_EQ(Program.Programs.Started.size(), 1U);
    EXPECT_EQ(Program.Programs.Started[0].CommandLine, PathText(browser) + ' ' + ReportPath());
}

TEST_F(PublishTest, ReportPathWithBlanksReachesTheBrowserSplitAtTheBlanks) {
    NewBrowser();
    Program.App.ProgramFolder = Program.Folder.Path() / "a  b";
    std::filesystem::create_directory(Program.App.ProgramFolder);
    Publish();
    ASSERT_EQ(Program.Programs.Started.size(), 1U);
    std::string joined;
    for (const std::string& argument : Program.Programs.Started[0].Arguments) {
        EXPECT_FALSE(argument.empty());
        EXPECT_EQ(argument.find(' '), std::string::npos);
        joined += argument;
    }
    std::string path = ReportPath();
    std::erase(path, ' ');
    EXPECT_EQ(joined, path);
    EXPECT_EQ(Program.Programs.Started[0].Arguments.back(),
              PathText(std::filesystem::path("b") / "report3.htm"));
}

TEST_F(PublishTest, BrowserThatDoesNotStartIsShownAndTheReportStays) {
    NewBrowser();
    Program.Programs.FailsWith = Failure{.Reason = "Cannot start it: no memory"};
    EXPECT_EQ(Publish(), ReportPublished);
    EXPECT_EQ(Program.ShownTexts(), std::vector<std::string>{"Cannot start it: no memory."});
    EXPECT_EQ(ContentOf(Program.ProgramFile("report3.htm")), "<html>\x80</html>\r\n");
}

TEST_F(PublishTest, WithoutABrowserTheSystemsIsUsedIfThatIsSet) {
    Program.Settings.Values[{"BROWSER", "SYSTEM"}] = "1";
    EXPECT_EQ(Publish(), ReportPublished);
    EXPECT_EQ(Program.Programs.OpenedWithSystem, std::vector{Program.ProgramFile("report3.htm")});
    EXPECT_TRUE(Program.Programs.Started.empty());
    EXPECT_TRUE(Program.Prompts.Shown.empty());
}

TEST_F(PublishTest, InPlaceOfAMissingBrowserTheSystemsIsUsedIfThatIsSet) {
    Program.Settings.Values[{"BROWSER", "SYSTEM"}] = "1";
    SetBrowser(Program.Folder.Path() / "no browser here");
    Publish();
    EXPECT_EQ(Program.Programs.OpenedWithSystem.size(), 1U);
    EXPECT_TRUE(Program.Prompts.Shown.empty());
}

TEST_F(PublishTest, ABrowserThatIsThereCountsMoreThanTheSystems) {
    Program.Settings.Values[{"BROWSER", "SYSTEM"}] = "1";
    NewBrowser();
    Publish();
    EXPECT_EQ(Program.Programs.Started.size(), 1U);
    EXPECT_TRUE(Program.Programs.OpenedWithSystem.empty());
}

TEST_F(PublishTest, OnlyTheText1MeansTheSystemsBrowser) {
    for (const char* text : {"", "0", "1.0", "yes"}) {
        Program.Settings.Values[{"BROWSER", "SYSTEM"}] = text;
        Publish();
        EXPECT_TRUE(Program.Prompts.LastText().starts_with("Report generated sucessfully")) << text;
    }
    EXPECT_TRUE(Program.Programs.OpenedWithSystem.empty());
}

TEST_F(PublishTest, SystemsBrowserThatDoesNotStartIsShownAndTheReportStays) {
    Program.Settings.Values[{"BROWSER", "SYSTEM"}] = "1";
    Program.Programs.FailsWith = Failure{.Reason = "Cannot open it: no program"};
    EXPECT_EQ(Publish(), ReportPublished);
    EXPECT_EQ(Program.ShownTexts(), std::vector<std::string>{"Cannot open it: no program."});
    EXPECT_EQ(ContentOf(Program.ProgramFile("report3.htm")), "<html>\x80</html>\r\n");
}

TEST_F(PublishTest, ReportThatCannotBeWrittenIsAFailureShownOnce) {
    NewBrowser();
    std::filesystem::create_directory(Program.ProgramFile("report3.htm"));
    EXPECT_EQ(Publish(), ReportFailed);
    ASSERT_EQ(Program.Prompts.Shown.size(), 1U);
    EXPECT_EQ(Program.Prompts.Shown[0].Kind, PromptKind::Failure);
    EXPECT_TRUE(Program.Programs.Started.empty());
}

TEST(EmptyReportTest, QuestionHasYesAndNo) {
    TestProgram program;
    program.Prompts.Answers = {PromptAnswer::Yes};
    EXPECT_TRUE(UserWantsEmptyReport(program.App));
    EXPECT_FALSE(UserWantsEmptyReport(program.App));
    EXPECT_EQ(program.Prompts.LastText(),
              "No record found on selected month/year. Do you still want to generate report?");
    EXPECT_EQ(program.Prompts.Shown[0].Kind, PromptKind::Question);
    EXPECT_EQ(program.Prompts.Shown[0].Buttons, PromptButtons::YesNo);
}

std::string ShownMonths(const char* endText) {
    const Result<ReportMonths> months = MonthsOf({.EndText = endText});
    return months ? months->Start + " to " + months->End : SentenceOf(months.error());
}

TEST(MonthsOfTest, StartIsElevenMonthsBeforeTheEnd) {
    EXPECT_EQ(ShownMonths("3/2008"), "04/2007 to 03/2008");
    EXPECT_EQ(ShownMonths("12/2007"), "01/2007 to 12/2007");
    EXPECT_EQ(ShownMonths("1/2008"), "02/2007 to 01/2008");
}

} // namespace
} // namespace mact
