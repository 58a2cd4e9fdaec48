#include "store/additional_names.h"

#include "base/text.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

class AdditionalNamesTest : public testing::Test, public TestProgram {
protected:
    std::string Loaded(std::string_view content) {
        WriteContent(DataFile("1_additional.talvor"), content);
        App.AdditionalNames = "before";
        LoadAdditionalNames(App);
        return App.AdditionalNames;
    }
};

TEST_F(AdditionalNamesTest, ACompanyWithoutTheFileGetsSixUnusedNames) {
    LoadAdditionalNames(App);
    EXPECT_EQ(App.AdditionalNames, "-|-|-|-|-|-");
    EXPECT_EQ(ContentOf(DataFile("1_additional.talvor")), "\"-|-|-|-|-|-\"\r\n");
    App.AdditionalNames.clear();
    LoadAdditionalNames(App);
    EXPECT_EQ(App.AdditionalNames, "-|-|-|-|-|-");
}

TEST_F(AdditionalNamesTest, APlainLineReadsBackAsItWasWritten) {
    EXPECT_EQ(Loaded("MMA|Styrene|-|-|-|-\r\n"), "MMA|Styrene|-|-|-|-");
    EXPECT_EQ(Loaded("M\xE9thyl|Styrene|-|-|-|-"), "M\xE9thyl|Styrene|-|-|-|-");
}

TEST_F(AdditionalNamesTest, OfNamesWithACommaOnlyWhatFollowsTheLastSurvives) {
    EXPECT_EQ(Loaded("1,3-Butadiene|MMA|-|-|-|-\r\n"), "3-Butadiene|MMA|-|-|-|-");
}

TEST_F(AdditionalNamesTest, SpacesAroundAnUnquotedValueAreDropped) {
    EXPECT_EQ(Loaded("  MMA|-|-|-|-|-  \r\n"), "MMA|-|-|-|-|-");
}

TEST_F(AdditionalNamesTest, AQuotedValueKeepsSpacesCommasAndLineEnds) {
    EXPECT_EQ(Loaded("\" MMA, x|-|-|-|-|- \"\r\n"), " MMA, x|-|-|-|-|- ");
    EXPECT_EQ(Loaded("\"MMA\r\nx|-\"\r\n"), "MMA\r\nx|-");
}

TEST_F(AdditionalNamesTest, TextAfterAClosingQuoteIsDropped) {
    EXPECT_EQ(Loaded("\"MMA|-\" rest\r\n"), "MMA|-");
}

TEST_F(AdditionalNamesTest, AQuoteThatIsNeverClosedRunsToTheEnd) {
    EXPECT_EQ(Loaded("\"MMA|-\r\n"), "MMA|-\r\n");
}

TEST_F(AdditionalNamesTest, TheLastValueOfTheLastLineCounts) {
    EXPECT_EQ(Loaded("MMA\r\nStyrene\r\n"), "Styrene");
    EXPECT_EQ(Loaded("MMA\nStyrene"), "Styrene");
    EXPECT_EQ(Loaded("MMA\rStyrene"), "Styrene");
}

TEST_F(AdditionalNamesTest, ABlankLastLineAndAnEmptyFileGiveTheEmptyText) {
    EXPECT_EQ(Loaded("MMA\r\n\r\n"), "");
    EXPECT_EQ(Loaded(""), "");
}

TEST_F(AdditionalNamesTest, ACommaAtTheEndIsFollowedByAnEmptyValue) {
    EXPECT_EQ(Loaded("MMA,\r\n"), "");
    EXPECT_EQ(Loaded("MMA,"), "");
}

TEST_F(AdditionalNamesTest, AFileOfAMegabyteIsReadToItsEnd) {
    std::string content;
    while (content.size() < 1'000'000)
        content += "a,\"b\",\r\n";
    EXPECT_EQ(Loaded(content + "MMA|-|-|-|-|-"), "MMA|-|-|-|-|-");
}

TEST_F(AdditionalNamesTest, AFolderInTheFilesPlaceIsShownOnceAndChangesNothing) {
    std::filesystem::create_directory(DataFile("1_additional.talvor"));
    App.AdditionalNames = "before";
    LoadAdditionalNames(App);
    EXPECT_EQ(App.AdditionalNames, "before");
    EXPECT_EQ(Prompts.Shown.size(), 1U);
}

TEST_F(AdditionalNamesTest, EachCompanyHasItsOwnNames) {
    WriteContent(DataFile("2_additional.talvor"), "MMA|-|-|-|-|-\r\n");
    LoadAdditionalNames(App);
    EXPECT_EQ(App.AdditionalNames, "-|-|-|-|-|-");
    App.CurrentCompanyId = 2;
    LoadAdditionalNames(App);
    EXPECT_EQ(App.AdditionalNames, "MMA|-|-|-|-|-");
}

TEST(SplitAdditionalNamesTest, NamesThatAreNotExactlySixCountAsUnused) {
    const PollutantNames unused = {"-", "-", "-", "-", "-", "-"};
    EXPECT_EQ(SplitAdditionalNames("a|b|c|d|e"), unused);
    EXPECT_EQ(SplitAdditionalNames("a|b|c|d|e|f|g"), unused);
    EXPECT_EQ(SplitAdditionalNames(""), unused);
    EXPECT_EQ(SplitAdditionalNames(" a |b|c|d|e|-"), (PollutantNames{" a ", "b", "c", "d", "e", "-"}));
}

TEST(IsUsedNameTest, ADashWithBlanksAroundIsUnused) {
    EXPECT_FALSE(IsUsedName("-"));
    EXPECT_FALSE(IsUsedName(" - "));
    EXPECT_TRUE(IsUsedName("--"));
    EXPECT_TRUE(IsUsedName(""));
}

struct ReadBackCase {
    const char* Name;
    PollutantNames Names;
    const char* Text;
};
const ReadBackCase ReadBackCases[] = {
    {"Plain",                  {"MMA", "Styrene", "-", "-", "-", "-"},    ""                                },
    {"BlanksAround",           {" MMA ", "Styrene", "-", "-", "-", "- "}, ""                                },
    {"QuoteWithin",            {"MMA", "\"S\"", "a\"b", "-", "-", "-"},   ""                                },
    {"Empty",                  {"", "", "", "", "", ""},                  ""                                },
    {"Comma",
     {"1,3-Butadiene", "MMA", "-", "-", "-", "-"},
     "These names will be read back as \"3-Butadiene\", \"MMA\", \"-\", \"-\", \"-\", \"-\". Avoid commas." },
    {"CommaBehindTheFirst",
     {"MMA", "1,3-Butadiene", "-", "-", "-", "-"},
     "None of these names will be read back: the file would hold 5 names, and six are needed. Avoid commas."},
    {"CommaInTheLast",
     {"a", "b", "c", "d", "e", "f,g"},
     "None of these names will be read back: the file would hold 1 name, and six are needed. Avoid commas." },
    {"CommaAtTheEnd",
     {"a", "b", "c", "d", "e", "f,"},
     "None of these names will be read back: the file would hold 0 names, and six are needed. Avoid commas."},
    {"Bar",
     {"a|b", "c", "d", "e", "f", "g"},
     "None of these names will be read back: the file would hold 7 names, and six are needed. Avoid \"|\"." },
    {"LeadingQuote",
     {"\"MMA\"", "Styrene", "-", "-", "-", "-"},
     "None of these names will be read back: the file would hold 1 name, and six are needed. Avoid a "
     "quotation "
     "mark in front."                                                                                       },
    {"QuoteThatIsNeverClosed",
     {"\"MMA", "Styrene", "-", "-", "-", "-"},
     "These names will be read back as \"MMA\", \"Styrene\", \"-\", \"-\", \"-\", \"-<line break>\". Avoid a "
     "quotation mark in front."                                                                             },
    {"AllOfThem",
     {"a", "b|c", "d, \"e", "f", "g", "h"},
     "None of these names will be read back: the file would hold 4 names, and six are needed. Avoid commas "
     "and "
     "\"|\" and a quotation mark in front."                                                                 },
};
class ReadBackTest : public testing::TestWithParam<ReadBackCase> {};

TEST_P(ReadBackTest, SaysWhatTheNextLoadMakesOfTheNames) {
    EXPECT_EQ(WhatIsReadBack(GetParam().Names), GetParam().Text);
}

TEST_P(ReadBackTest, SaysNothingOnlyIfTheNextLoadGivesTheSame) {
    TestProgram program;
    ASSERT_TRUE(SaveAdditionalNames(program.App, GetParam().Names));
    LoadAdditionalNames(program.App);
    PollutantNames typed = GetParam().Names;
    PollutantNames loaded = SplitAdditionalNames(program.App.AdditionalNames);
    for (PollutantNames* names : {&typed, &loaded})
        for (std::string& name : *names)
            name = Trim(name);
    EXPECT_EQ(WhatIsReadBack(GetParam().Names).empty(),
              AreSix(program.App.AdditionalNames) && loaded == typed);
}
INSTANTIATE_TEST_SUITE_P(Names, ReadBackTest, testing::ValuesIn(ReadBackCases),
                         [](const auto& test) { return test.param.Name; });

TEST(WhatIsReadBackTest, ShowsLongNamesShortenedAndInUtf8) {
    const std::string text = WhatIsReadBack({"x,\xE9" + std::string(249, 'w'), "MMA", "-", "-", "-", "-"});
    EXPECT_TRUE(
        text.starts_with("These names will be read back as \"\xC3\xA9" + std::string(39, 'w') + "...\""))
        << text;
}
} // namespace
} // namespace mact
