#include "overview/sheet_outlook.h"

#include "tests/overview/generated_shop.h"
#include "tests/overview/overview_shop.h"
#include "tests/overview/stored_sheet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <limits>

namespace mact {
namespace {

using std::chrono::December;
using std::chrono::January;
using std::chrono::year;

constexpr std::int16_t Resin = 1;
constexpr std::int16_t RichResin = 2;
constexpr std::int16_t FilledResin = 3;
constexpr std::int16_t ClosedResin = 4;
constexpr double TenMg = 22046; // in lb

/// 10 Mg of a resin at 34 % in each month of 2005: its point value is 42.68 kg/Mg, of 46.
class SheetOutlookTest : public testing::Test {
protected:
    OverviewShop Program;
    SheetOutlook Outlook;
    std::vector<UsageRecord> Stored; ///< January first

    SheetOutlookTest() {
        Program.ImportMaterials({
            "PR-1|resin|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0",
            "PR-2|resin|Production resin|Non-Spray|9|40|0|0|0|0|0|0|0|0|0|0|0|0|0",
            "FR-1|filled|Production resin (Filled)|Non-Spray|9|36|0|0|0|0|0|0|0|0|0|0|0|0|20",
            "CM-1|closed|Production resin|Closed Molding|9|36|0|0|0|0|0|0|0|0|0|0|0|0|0",
        });
        std::vector<std::string> lines;
        for (int month = 1; month <= 12; ++month)
            lines.push_back("PR-1|" + std::to_string(month) + "|2005|22046|lbs");
        Program.ImportUsage(lines);
        FindUsage(Program.App, {}, Stored);
    }
    static UsageChange Row(std::int16_t material, double pounds, const std::string& period = "12/2005") {
        return {
            .Record = {.MaterialId = material, .Period = period, .Quantity = pounds, .Unit = UnitLbs}
        };
    }
    UsageChange Edited(double pounds) const {
        UsageChange change{.Record = Stored.back(), .AsRead = Stored.back()};
        change.Record.Quantity = pounds;
        return change;
    }
    SheetAnswer Answered(const std::vector<UsageChange>& changes,
                         std::chrono::year_month month = year{2005} / December) {
        if (!Outlook.IsReady()) ReadAll(Outlook, Program.App);
        return Outlook.AnswerFor(month, changes);
    }
};

/// 110 Mg without January, 120 Mg with it, of each of which 3.32 kg are left.
TEST_F(SheetOutlookTest, SaysWhereTheMonthWouldStand) {
    const auto month = year{2006} / January;
    EXPECT_EQ(Answered({}, month).Line,
              "As stored, JAN 2006: emission average 92.8 % of the allowance, 365.20 kg left.");
    const SheetAnswer answer = Answered({Row(Resin, TenMg, "1/2006")}, month);
    EXPECT_EQ(
        answer.Line,
        "With this sheet, JAN 2006: emission average 92.8 % of the allowance, 398.40 kg left (as now).");
    EXPECT_TRUE(answer.Worse.empty());
}

/// 100 Mg at 40 % have a point value of 61.78 kg/Mg: 5121.6 + 6178 kg of 220 * 46. The content of the row is
/// (120 * 34 + 100 * 40) / 220 = 36.7 %, of 35.
TEST_F(SheetOutlookTest, SaysWhatGoesOver) {
    const SheetAnswer answer = Answered({Row(RichResin, 10 * TenMg)});
    EXPECT_EQ(
        answer.Line,
        "With this sheet, DEC 2005: emission average 111.7 % of the allowance, 1,179.60 kg too much (now "
        "92.8 %); 2 figures are over or differ (now 0).");
    EXPECT_EQ(answer.Worse,
              std::vector<std::string>{
                  "Over with this sheet, and not now: emission average; production resin, nonatomized."});
}

TEST_F(SheetOutlookTest, WhatIsOverAlreadyDoesNotGoOver) {
    Program.ImportUsage({"PR-2|12|2005|220460|lbs"});
    const SheetAnswer answer = Answered({Row(ClosedResin, TenMg)});
    EXPECT_EQ(
        answer.Line,
        "With this sheet, DEC 2005: emission average 111.7 % of the allowance, 1,179.60 kg too much (as "
        "now); 2 figures are over or differ.");
    EXPECT_TRUE(answer.Worse.empty());
}

TEST_F(SheetOutlookTest, AnEditedRecordCountsOnce) {
    EXPECT_EQ(
        Answered({Edited(2 * TenMg)}).Line, // 130 Mg
        "With this sheet, DEC 2005: emission average 92.8 % of the allowance, 431.60 kg left (as now).");
    EXPECT_EQ(
        Answered({Edited(TenMg)}).Line,
        "With this sheet, DEC 2005: emission average 92.8 % of the allowance, 398.40 kg left (as now).");
}

TEST_F(SheetOutlookTest, ADeletedRecordDoesNotCount) {
    UsageChange change = Edited(TenMg);
    change.Record.Active = false;
    const SheetAnswer answer = Answered({change});
    EXPECT_EQ(
        answer.Line,
        "With this sheet, DEC 2005: emission average 92.8 % of the allowance, 365.20 kg left (as now).");
    EXPECT_EQ(answer.Figures.WithoutEntry, std::vector<MonthNumber>{MonthNumberOf(2005, 12)});
    EXPECT_EQ(Answered({}).Figures.WithoutEntry, std::vector<MonthNumber>{}); // is there again
}

/// 500 Mg have 48.61 kg/Mg as reported: 5121.6 + 24305 of 28520. With the filler it is 38.89.
TEST_F(SheetOutlookTest, SaysWhatDiffers) {
    const SheetAnswer answer = Answered({Row(FilledResin, 50 * TenMg)});
    EXPECT_EQ(answer.Line, "With this sheet, DEC 2005: emission average 103.2 % of the allowance, differs "
                           "(filler) (now 92.8 %); 2 figures are over or differ (now 0).");
    EXPECT_EQ(answer.Worse,
              std::vector<std::string>{
                  "Differs with this sheet, and not now: emission average (filler); FR-1 (filler)."});
}

TEST_F(SheetOutlookTest, SaysThatThereIsNoAnswer) {
    UsageChange endless = Row(RichResin, 1e308);
    endless.Record.Unit = UnitMgal;
    const SheetAnswer answer = Answered({endless});
    EXPECT_EQ(answer.Line, "With this sheet, DEC 2005: no answer (now emission average 92.8 % of the "
                           "allowance). Not trusted: 1 finding.");
    EXPECT_EQ(answer.Worse,
              std::vector<std::string>{"Without an answer with this sheet, as a number is too large or not a "
                                       "number: emission average; production resin, nonatomized."});
}

/// As reported it has one: the reports know no filler.
TEST_F(SheetOutlookTest, SaysThatThereIsNoExactAnswer) {
    ASSERT_FALSE(SaveMaterial(Program.App,
                              {.CustomId = "FR-1",
                               .MaterialType = "Production resin (Filled)",
                               .ApplicationMethod = "Non-Spray",
                               .Density = 9,
                               .HapContent = 36,
                               .Contents = "0|0|0|0|0|0",
                               .Factors = "0|0|0|0|0|0",
                               .Filler = std::numeric_limits<double>::quiet_NaN()},
                              FilledResin));
    const SheetAnswer answer = Answered({Row(FilledResin, 50 * TenMg)});
    EXPECT_EQ(answer.Line, "With this sheet, DEC 2005: emission average 103.2 % of the allowance, no exact "
                           "answer (now 92.8 %). Not trusted: 1 finding.");
    EXPECT_EQ(answer.Worse,
              std::vector<std::string>{"Without an answer with this sheet, as a number is too large or not a "
                                       "number: emission average; FR-1."});
}

TEST_F(SheetOutlookTest, DoesNotSpellOutKilogramsOfHundredsOfDigits) {
    EXPECT_EQ(Answered({Edited(1e300)}).Line,
              "With this sheet, DEC 2005: emission average 92.8 % of the allowance (as now).");
}

TEST_F(SheetOutlookTest, SaysThatItIsTooEarly) {
    const auto month = year{2004} / December;
    const SheetAnswer answer = Answered({Row(RichResin, TenMg, "12/2004")}, month);
    EXPECT_EQ(answer.Line, "With this sheet, DEC 2004: too early to tell, 1 of 12 months (now too early to "
                           "tell, 0 of 12 months).");
    EXPECT_TRUE(answer.Worse.empty());
}

TEST_F(SheetOutlookTest, CountsFromTheStartMonthOfTheOptions) {
    WriteContent(OverviewOptionsFile(Program.App), "start=7/2005\n");
    EXPECT_EQ(Answered({Row(RichResin, 10 * TenMg)}).Line,
              "With this sheet, DEC 2005: too early to tell, 6 of 12 months (as now).");
}

/// Nothing of 2005 is in the window of December 2006.
TEST_F(SheetOutlookTest, SaysThatNothingAveragedIsUsed) {
    const auto month = year{2006} / December;
    EXPECT_EQ(Answered({Row(ClosedResin, TenMg, "12/2006")}, month).Line,
              "With this sheet, DEC 2006: nothing was used that is averaged (as now).");
    EXPECT_EQ(
        Answered({Row(Resin, TenMg, "12/2006")}, month).Line,
        "With this sheet, DEC 2006: emission average 92.8 % of the allowance, 33.20 kg left (now nothing "
        "was used that is averaged).");
}

/// 4 lb are 0.00 Mg.
TEST_F(SheetOutlookTest, SaysWhatIsNotTrusted) {
    EXPECT_EQ(Answered({Row(RichResin, 4)}).Line,
              "With this sheet, DEC 2005: emission average 92.8 % of the allowance, 398.40 kg left (as now). "
              "Not trusted: 1 finding.");
}

TEST_F(SheetOutlookTest, ReadsInStepsAndTriesAgainAfterAFailure) {
    const std::filesystem::path usage = Program.DataFile("1_usage.talvor");
    const std::filesystem::path aside = Program.ProgramFile("aside");
    std::filesystem::rename(usage, aside);
    std::filesystem::create_directory(usage);
    EXPECT_FALSE(Outlook.Step(Program.App));
    EXPECT_FALSE(Outlook.IsReady());
    std::filesystem::remove(usage);
    std::filesystem::rename(aside, usage);
    const Result<bool> read = Outlook.Step(Program.App);
    ASSERT_TRUE(read);
    EXPECT_FALSE(*read);
    const Result<bool> prepared = Outlook.Step(Program.App);
    ASSERT_TRUE(prepared);
    EXPECT_TRUE(*prepared);
    EXPECT_TRUE(Outlook.IsReady());
}

TEST_F(SheetOutlookTest, ChangesNoFile) {
    const std::string before = ContentOf(Program.DataFile("1_usage.talvor"));
    Answered({Row(RichResin, TenMg)});
    EXPECT_EQ(ContentOf(Program.DataFile("1_usage.talvor")), before);
}

/// Records that were deleted or edited out of order make the file's order matter.
TEST(SheetOutlookOfGeneratedShopsTest, SaysWhatTheOverviewSaysOnceItIsStored) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const GeneratedShop made = GenerateShop(seed);
        OverviewShop program;
        program.ImportMaterials(made.MaterialLines());
        program.ImportUsage(made.UsageLines());
        std::vector<UsageRecord> usage;
        FindUsage(program.App, {}, usage);
        ASSERT_FALSE(usage.empty());
        for (std::size_t place = 0; place < usage.size(); place += 5)
            ASSERT_FALSE(DeleteUsage(program.App, usage[place].UsageId));
        const auto newest = std::ranges::max_element(
            made.Usage, {}, [](const GeneratedUse& use) { return std::pair(use.Year, use.Month); });
        const std::chrono::year_month last{year{newest->Year},
                                           std::chrono::month{static_cast<unsigned>(newest->Month)}};
        for (const int later : {-3, 0, 1, 1}) {
            SCOPED_TRACE(later);
            ExpectSaidOnceStored(program.App, last + std::chrono::months{later}, random);
        }
    }
}

/// Whatever the order of the changes, the sum of a material is that of the file.
TEST_F(SheetOutlookTest, ARecordThatIsBroughtBackStandsWhereItWas) {
    // In this order 0.1 + 0.2 + 0.3 is 0.6000000000000001, in the other 0.6.
    Program.ImportUsage({"PR-2|9|2005|0.1|lbs", "PR-2|10|2005|0.2|lbs", "PR-2|11|2005|0.3|lbs"});
    std::vector<UsageRecord> usage;
    FindUsage(Program.App, {.MaterialId = RichResin}, usage);
    ASSERT_EQ(usage.size(), 3U);
    ASSERT_FALSE(DeleteUsage(Program.App, usage.front().UsageId));
    UsageChange change{.Record = usage.front(), .AsRead = usage.front()};
    change.AsRead->Active = false;
    Answered({change});
    const std::vector<UsedMaterial> used = Outlook.Shop().UsedInWindow(MonthNumberOf(2005, 12));
    const auto rich = std::ranges::find(used, std::size_t{1}, &UsedMaterial::Material);
    ASSERT_NE(rich, used.end());
    EXPECT_EQ(rich->Pounds, 0.1 + 0.2 + 0.3);
}

TEST(SheetOutlookAtTheLimit, AnswersFast) {
    constexpr int most = 32767;
    std::vector<std::string> materials;
    std::vector<UsageChange> changes;
    for (int number = 1; number <= most; ++number) {
        materials.push_back("M-" + std::to_string(number) +
                            "|resin|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0");
        changes.push_back({
            .Record = {.MaterialId = static_cast<std::int16_t>(number),
                       .Period = "12/2005",
                       .Quantity = TenMg,
                       .Unit = UnitLbs}
        });
    }
    OverviewShop program;
    program.ImportMaterials(materials);
    SheetOutlook outlook;
    ReadAll(outlook, program.App);
    const auto begin = std::chrono::steady_clock::now();
    const SheetAnswer answer = outlook.AnswerFor(year{2005} / December, changes);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    EXPECT_LT(seconds.count(), 2); // quadratic: minutes
    EXPECT_DOUBLE_EQ(answer.Figures.Average.Allowance.Report, 460.0 * most);
}

} // namespace
} // namespace mact
