#include "overview/overview_options.h"

#include "base/failure.h"
#include "tests/support/folder_content.h"
#include "tests/support/limited_files.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

constexpr MonthNumber March2005 = MonthNumberOf(2005, 3);

class OverviewOptionsTest : public testing::Test, public TestProgram {
protected:
    std::filesystem::path File = DataFile("1_overview.txt");

    OverviewOptions Read() {
        const Result<OverviewOptions> options = ReadOverviewOptions(App);
        EXPECT_TRUE(options);
        return options ? *options : OverviewOptions{};
    }
    OverviewOptions ReadFrom(std::string_view content) {
        WriteContent(File, content);
        return Read();
    }
};

TEST_F(OverviewOptionsTest, AreDefaultsWithoutAFileWhichIsNotCreated) {
    const OverviewOptions options = Read();
    EXPECT_FALSE(options.Start);
    EXPECT_EQ(options.WarnHeadroom, 5);
    EXPECT_EQ(options.WarnContent, 0.5);
    for (const auto& option : options.OptionOf)
        EXPECT_FALSE(option);
    EXPECT_EQ(options.Address, "");
    EXPECT_TRUE(options.NotUnderstood.empty());
    EXPECT_TRUE(FilesIn(App.ProgramFolder / "data").empty());
}

TEST_F(OverviewOptionsTest, AreTheLinesOfTheFile) {
    const OverviewOptions options = ReadFrom("start=3/2005\r\n"
                                             "warn_headroom=7.5\n"
                                             "warn_content=1\r"
                                             "option.production resin=average\r\n"
                                             "option.pigmented gel coat=table2\r\n"
                                             "option.clear gel coat=filled\r\n"
                                             "option.tooling resin=closed\r\n"
                                             "option.tooling gel coat=not used\r\n"
                                             "address= 14 Slipway Road \xC3\xB8= ");
    EXPECT_EQ(options.Start, March2005);
    EXPECT_EQ(options.WarnHeadroom, 7.5);
    EXPECT_EQ(options.WarnContent, 1);
    EXPECT_EQ(options.OptionOf[0], OperationOption::Average);
    EXPECT_EQ(options.OptionOf[1], OperationOption::TableTwo);
    EXPECT_EQ(options.OptionOf[2], OperationOption::Filled);
    EXPECT_EQ(options.OptionOf[3], OperationOption::Closed);
    EXPECT_EQ(options.OptionOf[4], OperationOption::NotUsed);
    EXPECT_EQ(options.Address, "14 Slipway Road \xC3\xB8=");
    EXPECT_TRUE(options.NotUnderstood.empty());
    EXPECT_TRUE(options.OtherLines.empty());
}

TEST_F(OverviewOptionsTest, AreReadBehindAByteOrderMark) {
    EXPECT_EQ(ReadFrom("\xEF\xBB\xBFstart=3/2005").Start, March2005);
}

TEST_F(OverviewOptionsTest, AreWrittenWholeWithCrLf) {
    OverviewOptions options;
    options.Start = March2005;
    options.WarnContent = 0.25;
    options.OptionOf[0] = OperationOption::Average;
    options.OptionOf[4] = OperationOption::NotUsed;
    options.Address = "14 Slipway Road\r\nstart=1/1900";
    ASSERT_TRUE(SaveOverviewOptions(App, options));
    EXPECT_EQ(ContentOf(File), "start=3/2005\r\n"
                               "warn_headroom=5\r\n"
                               "warn_content=0.25\r\n"
                               "option.production resin=average\r\n"
                               "option.tooling gel coat=not used\r\n"
                               "address=14 Slipway Road??start=1/1900\r\n");
    EXPECT_EQ(FilesIn(App.ProgramFolder / "data").size(), 1u);
}

TEST_F(OverviewOptionsTest, KeepLinesOfOtherKeysWhenWrittenAgain) {
    OverviewOptions options = ReadFrom("color=blue\r\nstart=2/2005\r\n# a note\r\n"
                                       "option.boat polish=average\r\n\r\n");
    EXPECT_TRUE(options.NotUnderstood.empty());
    options.Start = March2005;
    ASSERT_TRUE(SaveOverviewOptions(App, options));
    EXPECT_EQ(ContentOf(File), "start=3/2005\r\nwarn_headroom=5\r\nwarn_content=0.5\r\n"
                               "color=blue\r\n# a note\r\noption.boat polish=average\r\n");
}

TEST_F(OverviewOptionsTest, AValueThatIsNotUnderstoodCountsAsNotSetAndIsReported) {
    const OverviewOptions options = ReadFrom("start=03/2005\r\nwarn_headroom=-1\r\nwarn_content=half\r\n"
                                             "option.clear gel coat=Average\r\naddress=here\r\n");
    EXPECT_FALSE(options.Start);
    EXPECT_EQ(options.WarnHeadroom, 5);
    EXPECT_EQ(options.WarnContent, 0.5);
    EXPECT_FALSE(options.OptionOf[2]);
    EXPECT_EQ(options.Address, "here");
    EXPECT_EQ(
        options.NotUnderstood,
        (std::vector<std::string>{
            "The line \"start=03/2005\" of 1_overview.txt is not understood and counts as not set.",
            "The line \"warn_headroom=-1\" of 1_overview.txt is not understood and counts as not set.",
            "The line \"warn_content=half\" of 1_overview.txt is not understood and counts as not set.",
            "The line \"option.clear gel coat=Average\" of 1_overview.txt is not understood and counts as "
            "not set."}));
}

TEST_F(OverviewOptionsTest, AStartMonthIsOneThatAnOverviewCanEndWith) {
    EXPECT_EQ(ReadFrom("start=1/1900").Start, MonthNumberOf(1900, 1));
    EXPECT_EQ(ReadFrom("start=12/9999").Start, MonthNumberOf(9999, 12));
    EXPECT_FALSE(ReadFrom("start=12/1899").Start);
}

TEST_F(OverviewOptionsTest, AnEmptyValueIsNotSetAndNoFault) {
    const OverviewOptions options = ReadFrom("start=\r\noption.clear gel coat=\r\naddress=\r\n");
    EXPECT_FALSE(options.Start);
    EXPECT_FALSE(options.OptionOf[2]);
    EXPECT_TRUE(options.NotUnderstood.empty());
}

TEST_F(OverviewOptionsTest, OfAKeyThatStandsTwiceTheLastCounts) {
    EXPECT_EQ(ReadFrom("start=2/2005\r\nstart=3/2005\r\n").Start, March2005);
}

TEST_F(OverviewOptionsTest, ALongLineIsReportedByItsBeginning) {
    const OverviewOptions options = ReadFrom("start=" + std::string(10000, 'x'));
    EXPECT_EQ(options.NotUnderstood,
              std::vector<std::string>{"The line \"start=" + std::string(74, 'x') +
                                       "...\" of 1_overview.txt is not understood and counts as not set."});
}

TEST_F(OverviewOptionsTest, AFileThatCannotBeReadIsAFailure) {
    std::filesystem::create_directory(File);
    const Result<OverviewOptions> options = ReadOverviewOptions(App);
    ASSERT_FALSE(options);
    EXPECT_EQ(options.error().Path, File);
}

TEST_F(OverviewOptionsTest, AFileThatIsTooLongIsAFailure) {
    EXPECT_TRUE(ReadFrom(std::string(LongestSmallFile, 'x')).NotUnderstood.empty());
    WriteContent(File, std::string(LongestSmallFile + 1, 'x'));
    EXPECT_FALSE(ReadOverviewOptions(App));
}

TEST_F(OverviewOptionsTest, BelongToTheCompany) {
    WriteContent(File, "start=3/2005");
    App.CurrentCompanyId = 2;
    EXPECT_FALSE(Read().Start);
    ASSERT_TRUE(SaveOverviewOptions(App, {.Start = MonthNumberOf(2006, 1)}));
    EXPECT_EQ(ContentOf(File), "start=3/2005");
    EXPECT_EQ(Read().Start, MonthNumberOf(2006, 1));
}

TEST_F(OverviewOptionsTest, ThatCannotBeWrittenLeaveTheOldOnes) {
    WriteContent(File, "start=3/2005");
    LimitedFiles full;
    full.Limits[TemporaryFor(File)].LongestFile = 4;
    EXPECT_FALSE(SaveOverviewOptions({full, App.ProgramFolder / "data", 1}, {}));
    EXPECT_EQ(FilesIn(App.ProgramFolder / "data"), (std::map<std::string, std::string>{
                                                       {"1_overview.txt", "start=3/2005"}
    }));
}

} // namespace
} // namespace mact
