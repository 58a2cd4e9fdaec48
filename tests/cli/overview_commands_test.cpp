#include "base/text.h"
#include "tests/support/folder_content.h"
#include "tests/support/run_program.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>

namespace mact {
namespace {

/// One resin, 2204.6 lb = 1000 kg of it in each month of 2005, and none in 2006 but for a record of 0 lb in
/// June.
constexpr const char* OneMaterial =
    "R-1|Resin, hand|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n";

class OverviewCommands : public testing::Test {
protected:
    TemporaryFolder Temporary;
    std::filesystem::path Folder = Temporary.Path() / "program";
    std::filesystem::path Config = Temporary.Path() / "settings";

    OverviewCommands() {
        std::filesystem::create_directory(Folder);
        std::filesystem::create_directory(Config);
    }
    ProgramRun Run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--folder", PathText(Folder)});
        return RunProgram(PathFromUtf8(MACT_CLI_PROGRAM), arguments, Config);
    }
    void AddCompany() {
        ASSERT_EQ(Run({"add-company", "Acme", "Dock 1"}).Output, "1\n");
        ASSERT_EQ(Run({"select-company", "1"}).Status, 0);
    }
    void AddShop() {
        AddCompany();
        WriteContent(Temporary.Path() / "materials.txt", OneMaterial);
        std::string usage;
        for (int month = 1; month <= 12; ++month)
            usage += "R-1|" + std::to_string(month) + "|2005|2204.6|lbs\r\n";
        WriteContent(Temporary.Path() / "usage.txt", usage + "R-1|6|2006|0|lbs\r\n");
        ASSERT_EQ(Run({"import-materials", PathText(Temporary.Path() / "materials.txt")}).Status, 0);
        ASSERT_EQ(Run({"import-usage", PathText(Temporary.Path() / "usage.txt")}).Status, 0);
    }
};

// By hand: 12 Mg at a point value of 0.014 * 34^2.275 = 42.681785 (report: 42.68), against 46.
constexpr const char* FiguresOfDecember =
    "month_end,figure,item,report,exact,limit,unit,state,cause\n"
    "12/2005,months,,12,,12,months,complete,\n"
    "12/2005,content,\"production resin, nonatomized\",34,34,35,%,within,\n"
    "12/2005,emissions,,512.16,512.181418,552,kg,within,\n"
    "12/2005,allowance,,552,552,,kg,,\n"
    "12/2005,headroom,,39.84,39.818582,,kg,,\n"
    "12/2005,headroom_percent,,7.22,7.213511,,%,,\n"
    "12/2005,point_value,production resin,42.68,42.681785,46,kg/Mg,,\n"
    "12/2005,amount,\"production resin, nonatomized\",,1000,,kg,,\n";

TEST_F(OverviewCommands, TheCsvHasTheFiguresOfTheMonthEndsAskedFor) {
    AddShop();
    const ProgramRun run = Run({"overview", "--csv", "--from", "12/2005", "--to", "12/2005"});
    EXPECT_EQ(run.Output, FiguresOfDecember);
    EXPECT_EQ(run.Errors, "");
    EXPECT_EQ(run.Status, 0);
}

TEST_F(OverviewCommands, ByDefaultTheTwelveMonthEndsUpToTheNewestUseAreShown) {
    AddShop();
    const std::string csv = Run({"overview", "--csv"}).Output;
    EXPECT_EQ(csv.find("6/2005,"), std::string::npos);
    EXPECT_NE(csv.find("\n7/2005,months,,7,,12,months,too early (7 of 12),\n"), std::string::npos);
    EXPECT_NE(csv.find("\n6/2006,months,1/2006 2/2006 3/2006 4/2006 5/2006,12,,12,months,complete,\n"),
              std::string::npos);
    EXPECT_EQ(csv.find("\n7/2006,"), std::string::npos);
}

TEST_F(OverviewCommands, TheTableIsForPeople) {
    AddShop();
    const ProgramRun run = Run({"overview", "--from", "11/2005", "--to", "12/2005"});
    EXPECT_TRUE(run.Output.starts_with("Twelve months ending November 2005\nFigure "));
    EXPECT_NE(run.Output.find("\n\nTwelve months ending December 2005\nFigure "), std::string::npos);
    EXPECT_NE(run.Output.find("\nemissions         "), std::string::npos);
    EXPECT_EQ(run.Status, 0);
}

TEST_F(OverviewCommands, WithoutDataThereIsNothingToShowAndThatIsNoFailure) {
    AddCompany();
    EXPECT_EQ(Run({"overview", "--csv"}).Output,
              "month_end,figure,item,report,exact,limit,unit,state,cause\n");
    const ProgramRun run = Run({"overview"});
    EXPECT_EQ(run.Output, "No use is recorded yet.\n");
    EXPECT_EQ(run.Status, 0);
    EXPECT_NE(Run({"overview", "--csv", "--to", "1/1900"}).Output.find("\n1/1900,months,,0,,12,months,"),
              std::string::npos);
}

TEST_F(OverviewCommands, AMonthOutOfRangeOrASpanThatEndsBeforeItBeginsIsWrongUse) {
    AddShop();
    for (const char* month : {"12/1899", "1/10000", "13/2005", "June"}) {
        const ProgramRun run = Run({"overview", "--from", month});
        EXPECT_EQ(run.Status, 2) << month;
        EXPECT_EQ(run.Output, "");
    }
    const ProgramRun run = Run({"overview", "--from", "2/2006", "--to", "1/2006"});
    EXPECT_EQ(run.Status, 2);
    EXPECT_EQ(run.Errors, "mact-cli: the months from 2/2006 to 1/2006 end before they begin\n");
    EXPECT_EQ(run.Output, "");
}

TEST_F(OverviewCommands, WithoutACompanyItSaysToChooseOne) {
    const ProgramRun run = Run({"overview"});
    EXPECT_EQ(run.Status, 1);
    EXPECT_NE(run.Errors.find("No company is selected."), std::string::npos);
}

TEST_F(OverviewCommands, ChangeNoFileOfTheDataFolder) {
    AddShop();
    const auto before = FilesIn(Folder / "data");
    Run({"overview"});
    Run({"overview", "--csv"});
    EXPECT_EQ(FilesIn(Folder / "data"), before);
}

TEST_F(OverviewCommands, TheStatusIsOneLineAndItsExitStatusTheAnswer) {
    AddShop();
    // The newest use is of June 2006, whose twelve months lack five entries.
    EXPECT_EQ(Run({"status"}).Output, "1|Acme|6/2006|within|not used|within|2.86|5|0\n");
    EXPECT_EQ(Run({"status"}).Status, 0);
    ASSERT_EQ(Run({"add-company", "Second", "Dock 2"}).Output, "2\n");
    const ProgramRun second = Run({"--company", "2", "status"});
    EXPECT_EQ(second.Output, "2|Second||not used|not used|not used||0|0\n");
    EXPECT_EQ(second.Status, 6);
    const ProgramRun all = Run({"status", "--all"});
    EXPECT_TRUE(all.Output.starts_with("2|Second|"));
    EXPECT_EQ(all.Status, 6);
    EXPECT_TRUE(Run({"status", "--json"})
                    .Output.starts_with("[\n  {\"id\": 1, \"name\": \"Acme\", \"month\": \"6/2006\""));
}

TEST_F(OverviewCommands, TroubleOfOneCompanyIsTheStatusOfAll) {
    AddShop();
    ASSERT_EQ(Run({"add-company", "Second", "Dock 2"}).Output, "2\n");
    std::string over(OneMaterial);
    over.replace(over.find("|34|"), 4, "|36|");
    WriteContent(Temporary.Path() / "over.txt", over);
    const std::string usage = PathText(Temporary.Path() / "usage.txt");
    ASSERT_EQ(Run({"--company", "2", "import-materials", PathText(Temporary.Path() / "over.txt")}).Status, 0);
    ASSERT_EQ(Run({"--company", "2", "import-usage", usage}).Status, 0);
    const ProgramRun all = Run({"status", "--all"});
    EXPECT_TRUE(all.Output.starts_with("2|Second|6/2006|over|not used|over|"));
    EXPECT_EQ(all.Status, 5);
}

TEST_F(OverviewCommands, TheStartMonthThatTheUserSetCounts) {
    AddShop();
    WriteContent(Folder / "data" / "1_overview.txt", "start=3/2006\n");
    EXPECT_EQ(Run({"status"}).Output,
              "1|Acme|6/2006|too early (4 of 12)|not used|too early (4 of 12)|2.86|3|0\n");
    EXPECT_EQ(Run({"status"}).Status, 6);
    EXPECT_NE(Run({"overview", "--csv"}).Output.find("\n6/2006,months,3/2006 4/2006 5/2006,4,"),
              std::string::npos);
}

TEST_F(OverviewCommands, ATraceLeadsToTheUsageRecords) {
    AddShop();
    const ProgramRun run = Run({"trace", "12/2005", "content", "production resin, nonatomized"});
    EXPECT_EQ(run.Status, 0);
    EXPECT_NE(
        run.Output.find("1_usage.talvor, record 12, period \"12/2005\": 2204.6 lbs = 2204.6 lb = 1000 kg\n"),
        std::string::npos);
    EXPECT_TRUE(run.Output.ends_with("  Sum: report 34 %, exact 34 %\n"));
    const ProgramRun none = Run({"trace", "12/2005", "content", "clear gel coat"});
    EXPECT_EQ(none.Status, 1);
    EXPECT_NE(none.Errors.find("production resin, nonatomized"), std::string::npos); // says which there are
    EXPECT_EQ(Run({"trace", "12/05", "content"}).Status, 2);
}

// 1 lb of a gel coat in 12/2005, typed with a content of 0.3 %, is two findings: the second is that it rounds
// to 0.00 Mg, which no content and no amount is touched by.
TEST_F(OverviewCommands, WhatIsNotTrustedSaysSo) {
    AddShop();
    EXPECT_EQ(Run({"overview"}).Output.find("trusted"), std::string::npos);
    WriteContent(Temporary.Path() / "materials.txt",
                 "GC|d|Pigmented production gel|All|9|0.3|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n");
    WriteContent(Temporary.Path() / "usage.txt", "GC|12|2005|1|lbs\r\n");
    ASSERT_EQ(Run({"import-materials", PathText(Temporary.Path() / "materials.txt")}).Status, 0);
    ASSERT_EQ(Run({"import-usage", PathText(Temporary.Path() / "usage.txt")}).Status, 0);
    const std::string table = Run({"overview", "--from", "12/2005", "--to", "12/2005"}).Output;
    std::map<std::string, std::string> doubts; // by the first words of the line
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t doubt = line.find("not trusted");
        if (doubt != std::string::npos) doubts[line.substr(0, line.find("  "))] += line.substr(doubt) + ';';
    }
    EXPECT_EQ(doubts, (std::map<std::string, std::string>{
                          {"allowance",        "not trusted: 2 findings;"},
                          {"content",          "not trusted: 1 finding;" },
                          {"emissions",        "not trusted: 2 findings;"},
                          {"headroom",         "not trusted: 2 findings;"},
                          {"headroom_percent", "not trusted: 2 findings;"},
                          {"point_value",      "not trusted: 2 findings;"},
    }));
    EXPECT_EQ(Run({"overview", "--csv"}).Output.find("trusted"), std::string::npos);
    EXPECT_TRUE(
        Run({"trace", "12/2005", "emissions"}).Output.starts_with("not trusted: 2 findings\nemissions in "));
    EXPECT_TRUE(Run({"trace", "12/2005", "content", "pigmented gel coat"})
                    .Output.starts_with("not trusted: 1 finding\ncontent of pigmented gel coat in "));
    const std::string trusted = Run({"trace", "12/2005", "content", "production resin, nonatomized"}).Output;
    EXPECT_TRUE(trusted.starts_with("content of production resin, nonatomized in "));
    EXPECT_EQ(trusted.find("trusted"), std::string::npos);
}

TEST_F(OverviewCommands, AHalfYearPackIsReplacedOnlyWithYes) {
    AddShop();
    const std::filesystem::path page = Folder / "half-year" / "1" / "2005-2.htm";
    const std::filesystem::path csv = Folder / "half-year" / "1" / "2005-2.csv";
    EXPECT_EQ(Run({"half-year", "2/2005"}).Output, PathText(page) + '\n' + PathText(csv) + '\n');
    const std::string kept = ContentOf(csv);
    EXPECT_NE(kept.find("12/2005,emissions,,512.16,512.181418,552,kg,within,\r\n"), std::string::npos);
    WriteContent(csv, "changed");
    EXPECT_EQ(Run({"half-year", "2/2005"}).Status, 1);
    EXPECT_EQ(ContentOf(csv), "changed");
    EXPECT_EQ(Run({"half-year", "2/2005", "--yes"}).Status, 0);
    EXPECT_EQ(ContentOf(csv), kept);
    EXPECT_EQ(Run({"half-year", "3/2005"}).Status, 2);
}

} // namespace
} // namespace mact
