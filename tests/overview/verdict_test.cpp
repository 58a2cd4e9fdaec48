#include "overview/verdict.h"

#include "overview/answers.h"
#include "store/companies.h"
#include "tests/overview/overview_shop.h"
#include "tests/support/folder_content.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

/// 22,046 lb of a resin at 34 % in each month of 2005: its point value is 42.68 kg/Mg, of 46. That is 92.8 %.
class VerdictTest : public testing::Test {
protected:
    OverviewShop Program;
    VerdictReader Reader;

    VerdictTest() {
        Program.ImportMaterials({"PR-1|resin|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        std::vector<std::string> lines;
        for (int month = 1; month <= 12; ++month)
            lines.push_back("PR-1|" + std::to_string(month) + "|2005|22046|lbs");
        Program.ImportUsage(lines);
    }
    std::string LineNow() {
        if (Reader.Begin(Program.App))
            while (!Reader.Step(Program.App)) {
            }
        return Reader.Line();
    }
};

TEST_F(VerdictTest, SaysWhereTheShopStandsAtTheNewestMonthWithUse) {
    EXPECT_EQ(LineNow(), "DEC 2005: emission average 92.8 % of the allowance; nothing needs attention");
}

/// As reported 48.61 kg/Mg, of 46; with a filler of 20 % it is 38.89.
TEST_F(VerdictTest, SaysThatTheAverageDiffers) {
    Program.ImportMaterials(
        {"FR-1|resin|Production resin (Filled)|Non-Spray|9|36|0|0|0|0|0|0|0|0|0|0|0|0|20"});
    std::vector<std::string> lines;
    for (int month = 1; month <= 12; ++month)
        lines.push_back("FR-1|" + std::to_string(month) + "|2006|22046|lbs");
    Program.ImportUsage(lines);
    EXPECT_EQ(LineNow(),
              "DEC 2006: emission average 105.7 % of the allowance, differs (filler); 1 point needs "
              "attention");
}

TEST_F(VerdictTest, IsCalculatedAgainOnlyWhenAFileHasChanged) {
    LineNow();
    EXPECT_FALSE(Reader.Begin(Program.App));
    Program.ImportUsage({"PR-1|1|2006|22046|lbs"});
    EXPECT_TRUE(Reader.Begin(Program.App));
    EXPECT_EQ(LineNow(), "JAN 2006: emission average 92.8 % of the allowance; nothing needs attention");
    WriteContent(OverviewOptionsFile(Program.App), "start=7/2005\n");
    EXPECT_EQ(LineNow(), "JAN 2006: too early to tell, 7 of 12 months; nothing needs attention");
}

TEST_F(VerdictTest, TakesAStepAtATime) {
    ASSERT_TRUE(Reader.Begin(Program.App));
    EXPECT_EQ(Reader.Line(), "");
    EXPECT_FALSE(Reader.Step(Program.App));
    EXPECT_FALSE(Reader.Step(Program.App));
    EXPECT_FALSE(Reader.Step(Program.App));
    EXPECT_TRUE(Reader.Step(Program.App));
    EXPECT_TRUE(Reader.Step(Program.App)); // there is nothing left to do
}

TEST_F(VerdictTest, CountsWhatTheListShowsBesidesRecords) {
    WriteContent(Program.DataFile("1_usage.talvor"),
                 ContentOf(Program.DataFile("1_usage.talvor")) + "abc"); // surplus bytes
    WriteContent(OverviewOptionsFile(Program.App), "start=13/2005\n");
    EXPECT_EQ(LineNow(), "DEC 2005: emission average 92.8 % of the allowance; 2 points need attention");
}

TEST_F(VerdictTest, TheLineOfAnotherCompanyIsGoneAtOnce) {
    LineNow();
    ASSERT_TRUE(AddNewCompany(Program.App, "Other", "Elsewhere"));
    Program.App.CurrentCompanyId = 2;
    EXPECT_TRUE(Reader.Begin(Program.App));
    EXPECT_EQ(Reader.Line(), "");
    EXPECT_EQ(LineNow(), "No use is recorded yet.");
    Program.App.CurrentCompanyId = 0;
    EXPECT_EQ(LineNow(), "");
}

TEST_F(VerdictTest, AFailureIsItsSentenceUntilTheFileCanBeRead) {
    const std::filesystem::path usage = Program.DataFile("1_usage.talvor");
    std::filesystem::rename(usage, Program.ProgramFile("kept"));
    std::filesystem::create_directory(usage);
    EXPECT_TRUE(LineNow().starts_with("Cannot ")) << LineNow();
    EXPECT_NE(LineNow().find("1_usage.talvor"), std::string::npos) << LineNow();
    EXPECT_TRUE(Reader.Begin(Program.App)); // it tries again
    std::filesystem::remove(usage);
    std::filesystem::rename(Program.ProgramFile("kept"), usage);
    EXPECT_TRUE(LineNow().starts_with("DEC 2005: ")) << LineNow();
    EXPECT_TRUE(Program.Prompts.Shown.empty());
}

TEST_F(VerdictTest, UseInNoMonthIsNotTakenForNone) {
    Result<ShopRecords> shop = ReadShopRecords(Program.App);
    ASSERT_TRUE(shop);
    for (ShopUse& use : shop->Usage)
        use.Period = "03/2005"; // not written M/YYYY
    EXPECT_EQ(NewestUseText(ShopFigures(*shop)),
              "Use is recorded, but none of it in a month that can be read.");
}

TEST_F(VerdictTest, CreatesAndChangesNothing) {
    std::filesystem::remove(Program.DataFile("1_usage.talvor"));
    const auto before = FilesIn(Program.App.ProgramFolder / "data");
    EXPECT_EQ(LineNow(), "No use is recorded yet.");
    EXPECT_EQ(FilesIn(Program.App.ProgramFolder / "data"), before);
    EXPECT_TRUE(Program.Prompts.Shown.empty());
}

} // namespace
} // namespace mact
