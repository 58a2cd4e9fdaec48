#include "overview/trace.h"

#include "base/numbers.h"
#include "base/text.h"
#include "overview/overview_csv.h"
#include "tests/overview/overview_shop.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace mact {
namespace {

constexpr MonthNumber MonthEnd = MonthNumberOf(2005, 12);

/// The number that follows the last `label` in the text.
double NumberAfter(const std::string& text, std::string_view label) {
    const std::size_t found = text.rfind(label);
    EXPECT_NE(found, std::string::npos) << label << " in " << text;
    if (found == std::string::npos) return std::numeric_limits<double>::quiet_NaN();
    const std::string rest = text.substr(found + label.size());
    const auto number = ParseNumber(rest.substr(0, rest.find_first_of(" ;,)")));
    EXPECT_TRUE(number) << label << " in " << text;
    return number.value_or(std::numeric_limits<double>::quiet_NaN());
}

const std::string& LineWith(const TraceNode& node, std::string_view start) {
    static const std::string none;
    for (const TraceNode& child : node.Children)
        if (child.Text.starts_with(start)) return child.Text;
    ADD_FAILURE() << "no " << start << " below " << node.Text;
    return none;
}

/// The records that the lines stand for, from the top down, as in "M0 U1"; "-" for a line without one.
std::string RecordsOf(const TraceNode& node) {
    std::string text = "-";
    if (node.Material) text = "M" + std::to_string(*node.Material);
    if (node.Use) text = "U" + std::to_string(*node.Use);
    for (const TraceNode& child : node.Children)
        text += " " + RecordsOf(child);
    return text;
}

/// The materials among the root's children.
std::vector<const TraceNode*> MaterialsOf(const TraceNode& root) {
    std::vector<const TraceNode*> materials;
    for (const TraceNode& child : root.Children)
        if (child.Text.find("; density ") != std::string::npos) materials.push_back(&child);
    return materials;
}

class TraceTest : public testing::Test {
protected:
    TraceTest() {
        Program.ImportMaterials({
            "GC-110|white gel|Pigmented production gel|All|10|33|0|0|0|0|0|0|0|0|0|0|0|0|0",
            "PR-A|resin|Production resin|Non-Spray|8|35|0|0|0|0|0|0|0|0|0|0|0|0|0",
            "FR-1|filled|Production resin (Filled)|Non-Spray|9|40|0|0|0|0|0|0|0|0|0|0|0|0|26",
            "PR-B|resin|Production resin|Non-Spray|9|34.5|0|0|0|0|0|0|0|0|0|0|0|0|0",
            "CM|resin|Production resin|Closed Molding|9|40|0|0|0|0|0|0|0|0|0|0|0|0|0",
        });
        Program.ImportUsage({"GC-110|1|2005|2204.6|lbs", "PR-A|6|2005|2|mg", "PR-A|7|2005|6000|lbs",
                             "FR-1|12|2005|3000|lbs", "PR-B|12|2005|2204.6|lbs"});
        const Result<ShopRecords> read = ReadShopRecords(Program.App);
        EXPECT_TRUE(read);
        if (read) Shop = *read;
    }
    std::string Trace(std::string_view figure, std::string_view item = "", MonthNumber monthEnd = MonthEnd) {
        const ShopFigures shop(Shop);
        const Result<TraceNode> traced = TraceFigure(shop, shop.At(monthEnd), figure, item);
        EXPECT_TRUE(traced);
        return traced ? TraceText(*traced) : "";
    }
    std::string Records(std::string_view figure, std::string_view item = "",
                        MonthNumber monthEnd = MonthEnd) {
        const ShopFigures shop(Shop);
        const Result<TraceNode> traced = TraceFigure(shop, shop.At(monthEnd), figure, item);
        EXPECT_TRUE(traced);
        return traced ? RecordsOf(*traced) : "";
    }
    std::string Refusal(std::string_view figure, std::string_view item, MonthNumber monthEnd = MonthEnd) {
        const ShopFigures shop(Shop);
        const Result<TraceNode> traced = TraceFigure(shop, shop.At(monthEnd), figure, item);
        EXPECT_FALSE(traced);
        return traced ? "" : SentenceOf(traced.error());
    }
    OverviewShop Program;
    ShopRecords Shop;
};

// Worked out by hand: 22,000 lb / 2.2046 = 9979.13 kg, of which 35 % is 3492.6955 kg; 1000 kg, of which 34.5
// % is 345 kg; 3837.6955 / 10979.13 = 34.95 %.
TEST_F(TraceTest, ContentIsOpenedDownToTheRecords) {
    EXPECT_EQ(
        Trace("content", "production resin, nonatomized"),
        "content of production resin, nonatomized in the twelve months to 12/2005: report 34.95 %, exact "
        "34.954459 %; limit 35 %; within\n"
        "  Report: round2((sum of a * h / 100) / (sum of a) * 100) = round2(3837.6955 / 10979.13 * 100) = "
        "34.95 %\n"
        "  Exact: (sum of lb * h) / (sum of lb) = 846058.7 / 24204.6 = 34.9544590697636 %\n"
        "  PR-A: Production resin, Non-Spray; density 8 lb/gal; h 35 %; f 0 %; c 0.014; e 2.275; K 46 kg/Mg; "
        "p 45.59 kg/Mg; a 9979.13 kg; m 9.98 Mg\n"
        "    Report: a = round2(22000 / 2.2046) = 9979.13 kg; a * h / 100 = 3492.6955 kg\n"
        "    Exact: lb * h = 22000 * 35 = 770000\n"
        "    lb = 22000, the sum of these usage records:\n"
        "    1_usage.talvor, record 2, period \"6/2005\": 2 Mgal * 8 lb/gal * 1000 = 16000 lb = "
        "7257.55239045632 kg\n"
        "    1_usage.talvor, record 3, period \"7/2005\": 6000 lbs = 6000 lb = 2721.58214642112 kg\n"
        "  PR-B: Production resin, Non-Spray; density 9 lb/gal; h 34.5 %; f 0 %; c 0.014; e 2.275; K 46 "
        "kg/Mg; "
        "p 44.12 kg/Mg; a 1000 kg; m 1 Mg\n"
        "    Report: a = round2(2204.6 / 2.2046) = 1000 kg; a * h / 100 = 345 kg\n"
        "    Exact: lb * h = 2204.6 * 34.5 = 76058.7\n"
        "    lb = 2204.6, the sum of these usage records:\n"
        "    1_usage.talvor, record 5, period \"12/2005\": 2204.6 lbs = 2204.6 lb = 1000 kg\n"
        "  Sum: report 34.95 %, exact 34.954459 %\n");
}

TEST_F(TraceTest, EmissionsShowTheReportsLines) {
    Shop.Usage.erase(Shop.Usage.begin() + 1, Shop.Usage.end() - 2);
    Shop.Usage.pop_back();
    // 1 * 155.55 + 1.36 * 61.78 = 239.5708; exactly 155.5503 + 1.360791 * 61.775251 * 0.74 = 217.7571
    EXPECT_EQ(
        Trace("emissions"),
        "emissions in the twelve months to 12/2005: report 239.57 kg, exact 217.757078 kg; limit 221.56 kg; "
        "differs (filler)\n"
        "  Report: round2(sum of p * m) = round2(239.5708) = 239.57 kg\n"
        "  Exact: sum of p * m = 217.757077680566 kg\n"
        "  GC-110: Pigmented production gel, All; density 10 lb/gal; h 33 %; f 0 %; c 0.445; e 1.675; K 159 "
        "kg/Mg; p 155.55 kg/Mg; a 1000 kg; m 1 Mg\n"
        "    Report: p = round2(0.445 * 33^1.675) = 155.55 kg/Mg; m = round2(2204.6 / 2.2046 / 1000) = 1 Mg; "
        "p "
        "* m = 155.55 kg; K * m = 159 kg\n"
        "    Exact: p = 0.445 * 33^1.675 = 155.550302591213 kg/Mg; m = 2204.6 / 2.2046 / 1000 = 1 Mg; p * m "
        "= "
        "155.550302591213 kg; K * m = 159 kg\n"
        "    lb = 2204.6, the sum of these usage records:\n"
        "    1_usage.talvor, record 1, period \"1/2005\": 2204.6 lbs = 2204.6 lb = 1000 kg\n"
        "  FR-1: Production resin (Filled), Non-Spray; density 9 lb/gal; h 40 %; f 26 %; c 0.014; e 2.275; K "
        "46 "
        "kg/Mg; p 61.78 kg/Mg; a 1360.79 kg; m 1.36 Mg\n"
        "    Report: p = round2(0.014 * 40^2.275) = 61.78 kg/Mg; m = round2(3000 / 2.2046 / 1000) = 1.36 Mg; "
        "p * "
        "m = 84.0208 kg; K * m = 62.56 kg\n"
        "    Exact: p = 0.014 * 40^2.275 * (100 - 26) / 100 = 45.7136854539956 kg/Mg; m = 3000 / 2.2046 / "
        "1000 = "
        "1.36079107321056 Mg; p * m = 62.2067750893527 kg; K * m = 62.5963893676857 kg\n"
        "    lb = 3000, the sum of these usage records:\n"
        "    1_usage.talvor, record 4, period \"12/2005\": 3000 lbs = 3000 lb = 1360.79107321056 kg\n"
        "  Report, by the lines of the emission-average report\n"
        "    Pigmented production gel, All: sum of p * m = 155.55 kg; (sum of m) * K = 1 * 159 = 159 kg\n"
        "      GC-110: p * m = 155.55 * 1 = 155.55 kg\n"
        "    Production resin (Filled), Non-Spray: sum of p * m = 84.0208 kg; (sum of m) * K = 1.36 * 46 = "
        "62.56 "
        "kg\n"
        "      FR-1: p * m = 61.78 * 1.36 = 84.0208 kg\n"
        "  Sum: report 239.57 kg, exact 217.757078 kg\n");
}

TEST_F(TraceTest, HeadroomIsAllowanceLessEmissions) {
    Shop.Usage.resize(1); // 1 Mg of gel coat
    EXPECT_NE(Trace("allowance")
                  .find("  Report: round2(sum of K * m) = round2(159) = 159 kg\n"
                        "  Exact: sum of K * m = 159 kg\n"),
              std::string::npos);
    EXPECT_NE(Trace("headroom")
                  .find("  L, the allowance, is the sum of K * m; E, the emissions, that of p * m\n"
                        "  Report: round2(L - E) = round2(159 - 155.55) = 3.45 kg\n"
                        "  Exact: L - E = 159 - 155.550302591213 = 3.4496974087"),
              std::string::npos);
    EXPECT_TRUE(Trace("headroom").ends_with("\n  Sum: report 3.45 kg, exact 3.449697 kg\n"));
    EXPECT_NE(
        Trace("headroom_percent")
            .find("  Report: round2((L - E) / L * 100) = round2((159 - 155.55) / 159 * 100) = 2.17 %\n"),
        std::string::npos);
    EXPECT_TRUE(Trace("headroom_percent").ends_with("\n  Sum: report 2.17 %, exact 2.169621 %\n"));
}

TEST_F(TraceTest, PercentOfNoAllowanceIsNone) {
    Shop.Usage.clear();
    EXPECT_TRUE(Trace("headroom_percent").ends_with("\n  Sum: none\n"));
    EXPECT_TRUE(Trace("headroom").ends_with("\n  Sum: report 0 kg, exact 0 kg\n"));
}

TEST_F(TraceTest, FilledResinShowsItsFiller) {
    EXPECT_EQ(
        Trace("filled", "FR-1"),
        "filled of FR-1 in the twelve months to 12/2005: exact 45.713685 kg/Mg; limit 46 kg/Mg; differs "
        "(filler)\n"
        "  Exact: c * h^e * (100 - f) / 100 = 0.014 * 40^2.275 * (100 - 26) / 100 = 45.7136854539956 "
        "kg/Mg\n"
        "  FR-1: Production resin (Filled), Non-Spray; density 9 lb/gal; h 40 %; f 26 %; c 0.014; e 2.275; "
        "K 46 kg/Mg; p 61.78 kg/Mg; a 1360.79 kg; m 1.36 Mg\n"
        "    lb = 3000, the sum of these usage records:\n"
        "    1_usage.talvor, record 4, period \"12/2005\": 3000 lbs = 3000 lb = 1360.79107321056 kg\n"
        "  Sum: exact 45.713685 kg/Mg\n");
}

TEST_F(TraceTest, PointValueOfAnOperationHasItsFilledResin) {
    Shop.Usage.pop_back();
    // (45.59 * 9.98 + 61.78 * 1.36) / 11.34
    EXPECT_NE(
        Trace("point_value", "production resin")
            .find("  Report: round2((sum of p * m) / (sum of m)) = round2(539.009 / 11.34) = 47.53 kg/Mg\n"),
        std::string::npos);
    EXPECT_TRUE(Trace("point_value", "production resin")
                    .ends_with("\n  Sum: report 47.53 kg/Mg, exact 45.606066 kg/Mg\n"));
}

TEST_F(TraceTest, PointValueWithoutAnAmountOnceRoundedIsExactOnly) {
    Shop.Usage.resize(1);
    Shop.Usage.front().Quantity = 10; // 0.0045 Mg
    const std::string trace = Trace("point_value", "pigmented gel coat");
    EXPECT_NE(trace.find("  Report: none, since the sum of m is 0\n"), std::string::npos);
    EXPECT_TRUE(trace.ends_with("\n  Sum: exact 155.550303 kg/Mg\n"));
}

TEST_F(TraceTest, AmountIsOfTheMonthAlone) {
    Shop.Usage[2].Period = " 12/2005 ";
    EXPECT_EQ(
        Trace("amount", "production resin, nonatomized"),
        "amount of production resin, nonatomized in 12/2005: exact 3721.582146 kg\n"
        "  Exact: sum of lb / 2.2046 = 3721.58214642112 kg\n"
        "  PR-A: Production resin, Non-Spray; density 8 lb/gal; h 35 %; f 0 %; c 0.014; e 2.275; K 46 "
        "kg/Mg; p 45.59 kg/Mg; a 2721.58 kg; m 2.72 Mg\n"
        "    Exact: 6000 / 2.2046 = 2721.58214642112 kg\n"
        "    lb = 6000, the sum of these usage records:\n"
        "    1_usage.talvor, record 3, period \" 12/2005 \": 6000 lbs = 6000 lb = 2721.58214642112 kg\n"
        "  PR-B: Production resin, Non-Spray; density 9 lb/gal; h 34.5 %; f 0 %; c 0.014; e 2.275; K 46 "
        "kg/Mg; p 44.12 kg/Mg; a 1000 kg; m 1 Mg\n"
        "    Exact: 2204.6 / 2.2046 = 1000 kg\n"
        "    lb = 2204.6, the sum of these usage records:\n"
        "    1_usage.talvor, record 5, period \"12/2005\": 2204.6 lbs = 2204.6 lb = 1000 kg\n"
        "  Sum: exact 3721.582146 kg\n");
}

TEST_F(TraceTest, MonthsShowTheirEntries) {
    Shop.Usage[4].MaterialId = 77;
    EXPECT_EQ(
        Trace("months", "", MonthNumberOf(2006, 6)),
        "months in the twelve months to 6/2006: report 12 months; limit 12 months; complete\n"
        "  Months from the start month, 1/2005, to 6/2006; at most 12 count\n"
        "  7/2005: 1\n"
        "    1_usage.talvor, record 3, period \"7/2005\": 6000 lbs (PR-A)\n"
        "  8/2005: 1, without entry\n"
        "  9/2005: 1, without entry\n"
        "  10/2005: 1, without entry\n"
        "  11/2005: 1, without entry\n"
        "  12/2005: 1\n"
        "    1_usage.talvor, record 4, period \"12/2005\": 3000 lbs (FR-1)\n"
        "    1_usage.talvor, record 5, period \"12/2005\": 2204.6 lbs (no live material has the number 77)\n"
        "  1/2006: 1, without entry\n"
        "  2/2006: 1, without entry\n"
        "  3/2006: 1, without entry\n"
        "  4/2006: 1, without entry\n"
        "  5/2006: 1, without entry\n"
        "  6/2006: 1, without entry\n"
        "  Sum: report 12 months\n");
    EXPECT_TRUE(Trace("months", "", MonthNumberOf(2005, 2)).ends_with("\n  Sum: report 2 months\n"));
    EXPECT_TRUE(Trace("months", "", MonthNumberOf(2004, 2)).ends_with("\n  Sum: report 0 months\n"));
    EXPECT_EQ(Trace("months", "2/2005", MonthNumberOf(2005, 2)), Trace("months", "", MonthNumberOf(2005, 2)));
    Shop.Usage.clear();
    EXPECT_EQ(Trace("months"),
              "months in the twelve months to 12/2005: report 0 months; limit 12 months; too early "
              "(0 of 12)\n"
              "  No month counts, since no live usage record has one.\n"
              "  Sum: report 0 months\n");
}

TEST_F(TraceTest, ItemsAreFoundInAnyLetterCase) {
    EXPECT_EQ(Trace("content", " Pigmented Gel Coat "), Trace("content", "pigmented gel coat"));
}

TEST_F(TraceTest, RefusalSaysWhichFiguresThereAre) {
    EXPECT_EQ(
        Refusal("contents", ""),
        "Cannot trace the figure \"contents\": there are only months, content, filled, emissions, allowance, "
        "headroom, headroom_percent, point_value, amount.");
}

TEST_F(TraceTest, RefusalSaysWhichItemsThereAre) {
    EXPECT_EQ(Refusal("content", "clear gel coat"),
              "Cannot trace the figure \"content\" of \"clear gel coat\" in 12/2005: there is only that of "
              "\"production resin, nonatomized\", \"pigmented gel coat\".");
    EXPECT_EQ(
        Refusal("emissions", "production resin"),
        "Cannot trace the figure \"emissions\" of \"production resin\" in 12/2005: it is one figure of the "
        "whole shop, without an item.");
    EXPECT_EQ(Refusal("filled", "FR-1", MonthNumberOf(2004, 12)),
              "Cannot trace the figure \"filled\" of \"FR-1\" in 12/2004: nothing was used that has one.");
}

TEST_F(TraceTest, TextsOfRecordsAreOneLineOfUtf8) {
    Shop.Materials[2].CustomId = "Gr\xFCn\n1";
    Shop.Usage[3].Period = "12/2005";
    const std::string trace = Trace("filled", "Gr\xFCn\n1");
    EXPECT_TRUE(trace.starts_with("filled of Gr\xC3\xBCn?1 in the twelve months")) << trace;
    EXPECT_NE(trace.find("\n  Gr\xC3\xBCn?1: Production"), std::string::npos);
}

TEST_F(TraceTest, OfTwoFiguresWithOneNameTheFirstIsMeant) {
    Shop.Materials[3].CustomId = "FR-1";
    Shop.Materials[3].MaterialType = "Production resin (Filled)";
    EXPECT_NE(Trace("filled", "FR-1")
                  .find("\n  More than one figure has this name; this is the first.\n  Exact: "
                        "c * h^e * (100 - f) / 100 = 0.014 * 40^2.275"),
              std::string::npos);
}

// The title and two formulas; PR-A, which is the second material, with three lines of arithmetic and its
// records, the second and third; PR-B, the fourth, with the fifth record; the sum.
TEST_F(TraceTest, LinesNameTheRecordsThatTheyStandFor) {
    EXPECT_EQ(Records("content", "production resin, nonatomized"), "- - - M1 - - - U1 U2 M3 - - - U4 -");
    EXPECT_EQ(Records("amount", "production resin, nonatomized"), "- - M3 - - U4 -");
    EXPECT_EQ(Records("filled", "FR-1"), "- - M2 - U3 -");
}

TEST_F(TraceTest, LinesOfTheReportNameTheirMaterials) {
    Shop.Usage.resize(1);
    EXPECT_EQ(Records("emissions"), "- - - M0 - - - U0 - - M0 -");
}

TEST_F(TraceTest, EntryOfAMonthNamesItsRecordEvenWithoutMaterial) {
    Shop.Usage.resize(2);
    Shop.Usage[1] = {.Record = 9, .MaterialId = 77, .Period = "2/2005"};
    EXPECT_EQ(Records("months", "", MonthNumberOf(2005, 2)), "- - - U0 - U1 -");
}

TEST_F(TraceTest, EveryFigureIsFoundAtItsPlace) {
    const ShopFigures shop(Shop);
    const std::vector<FigureLine> lines = LinesOf(shop, shop.At(MonthEnd));
    for (std::size_t place = 0; place < lines.size(); ++place) {
        const Result<std::size_t> found = FindFigure(lines, MonthEnd, lines[place].Figure, lines[place].Item);
        ASSERT_TRUE(found);
        EXPECT_EQ(*found, place);
    }
}

TEST_F(TraceTest, SecondFigureOfTheSameNameIsTracedByItsPlace) {
    Shop.Materials[3].CustomId = "FR-1";
    Shop.Materials[3].MaterialType = "Production resin (Filled)";
    const ShopFigures shop(Shop);
    const MonthFigures figures = shop.At(MonthEnd);
    const std::vector<FigureLine> lines = LinesOf(shop, figures);
    const Result<std::size_t> first = FindFigure(lines, MonthEnd, "filled", "FR-1");
    ASSERT_TRUE(first);
    const TraceNode second = TraceLine(shop, figures, lines, *first + 1);
    EXPECT_EQ(second.Children.front().Text, "More than one figure has this name; this is number 2.");
    EXPECT_EQ(RecordsOf(second), "- - - M3 - U4 -");
}

TEST_F(TraceTest, DamagedQuantityLeavesNoSum) {
    Shop.Usage[0].Quantity = std::numeric_limits<double>::infinity();
    for (const char* figure : {"emissions", "allowance", "headroom", "headroom_percent"})
        EXPECT_TRUE(Trace(figure).ends_with("\n  Sum: none\n")) << figure;
    const std::string trace = Trace("content", "pigmented gel coat");
    EXPECT_TRUE(trace.ends_with("\n  Sum: none\n"));
    EXPECT_NE(trace.find("period \"1/2005\": no finite number lbs = no finite number lb"), std::string::npos);
}

TEST_F(TraceTest, UnknownUnitIsNamed) {
    Shop.Usage[1].Unit = 7;
    EXPECT_NE(
        Trace("content", "production resin, nonatomized")
            .find("period \"6/2005\": 2 of the unknown unit 7, counted as Mgal * 8 lb/gal * 1000 = 16000 lb"),
        std::string::npos);
}

/// Shops made by chance, with what a user or an accident may have put into them.
class TracedShopsTest : public TraceTest {
protected:
    double Chance(int first, int last) { return std::uniform_int_distribution(first, last)(Random); }
    std::size_t Any(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(Random);
    }

    void MakeTypes(const std::vector<HapContentRecord>& defaults) {
        Shop.Types = defaults;
        Shop.Types.push_back({"Bonding putty", 20, "Brush", 0.012, 2.1, 30});
        Shop.Types.push_back({"bonding putty", -1, "Dip", 0.02, 1.9, 31});
        // The same pairs again, with other numbers; the names make more groups of the reports.
        Shop.Types.push_back({"PRODUCTION RESIN", 31, "spray", 0.02, 2, 40});
        Shop.Types.push_back({"Production resin", 31, "Roller", 0.02, 2, 40});
    }
    void MakeShop(const std::vector<HapContentRecord>& defaults) {
        Shop = {.UsageName = "1_usage.talvor"};
        MakeTypes(defaults);
        for (std::int16_t number = 1; number <= 25; ++number) {
            const HapContentRecord& row = Shop.Types[Any(Shop.Types.size())];
            Shop.Materials.push_back({.Record = number,
                                      .MaterialId = number,
                                      .CustomId = "M-" + std::to_string(number),
                                      .MaterialType = row.MaterialType,
                                      .ApplicationMethod = row.ApplicationMethod,
                                      .Density = Chance(70, 120) / 10,
                                      .HapContent = Chance(0, 6000) / 100,
                                      .Filler = Chance(0, 50)});
        }
        for (std::int16_t number = 1; number <= 150; ++number) {
            const int month = static_cast<int>(Chance(MonthNumberOf(2004, 6), MonthNumberOf(2005, 12)));
            const bool isMgal = Chance(1, 4) == 1;
            Shop.Usage.push_back({.Record = number,
                                  .MaterialId = static_cast<std::int16_t>(Chance(1, 26)),
                                  .Period = Chance(1, 30) == 1 ? "" : MonthText(month),
                                  .Quantity = isMgal ? Chance(0, 300) / 100 : Chance(-100, 90000) / 10,
                                  .Unit = static_cast<std::int16_t>(isMgal ? 1 : 2)});
        }
    }
    std::mt19937 Random{20051231};
};

void ExpectExact(double sum, const FigureLine& line) {
    const auto shown = ParseNumber(line.Exact);
    ASSERT_TRUE(shown);
    EXPECT_NEAR(sum, *shown, 1e-6 + 1e-9 * std::abs(sum));
}

/// The usage records of each material add up to its pounds.
void ExpectPounds(const TraceNode& material) {
    double sum = 0;
    for (const TraceNode& child : material.Children)
        if (child.Text.starts_with("1_usage.talvor, record ")) {
            const std::size_t kilograms = child.Text.rfind(" = ");
            sum += NumberAfter(child.Text.substr(0, kilograms), " = ");
        }
    const double pounds = NumberAfter(LineWith(material, "lb = "), "lb = ");
    EXPECT_NEAR(sum, pounds, 1e-9 * std::abs(pounds));
}

void ExpectContent(const TraceNode& root, const FigureLine& line) {
    double kg = 0;
    double kgOfHap = 0;
    double pounds = 0;
    double poundsOfHap = 0;
    for (const TraceNode* material : MaterialsOf(root)) {
        const double amount = NumberAfter(material->Text, "; a ");
        const double content = NumberAfter(material->Text, "; h ");
        kg += amount;
        kgOfHap += amount * content / 100;
        pounds += NumberAfter(LineWith(*material, "lb = "), "lb = ");
        poundsOfHap += NumberAfter(LineWith(*material, "Exact: "), " = ");
    }
    EXPECT_EQ(kgOfHap == 0 ? "0" : NumberText(RoundTo(kgOfHap / kg * 100, 2)), line.Report);
    ExpectExact(poundsOfHap / pounds, line);
}

/// From the lines of the report and from the materials.
AverageFigures AverageOf(const TraceNode& root) {
    AverageFigures average;
    for (const TraceNode* material : MaterialsOf(root)) {
        average.Emissions.Exact += NumberAfter(LineWith(*material, "Exact: "), "; p * m = ");
        average.Allowance.Exact += NumberAfter(LineWith(*material, "Exact: "), "; K * m = ");
    }
    for (const TraceNode& line : root.Children[root.Children.size() - 2].Children) {
        double emissions = 0;
        double megagrams = 0;
        for (const TraceNode& part : line.Children) {
            const double amount = NumberAfter(part.Text.substr(0, part.Text.rfind(" = ")), " * ");
            emissions += NumberAfter(part.Text, ": p * m = ") * amount;
            megagrams += amount;
        }
        average.Emissions.Report += emissions;
        average.Allowance.Report += megagrams * NumberAfter(line.Text, " * ");
    }
    return average;
}

void ExpectAverage(const TraceNode& root, const FigureLine& line) {
    const AverageFigures average = AverageOf(root);
    const bool isHeadroom = line.Figure == "headroom";
    if (isHeadroom || line.Figure == "headroom_percent") {
        const Figure figure = isHeadroom ? average.Headroom() : average.HeadroomPercent();
        EXPECT_EQ(ReportText(figure.Report), line.Report);
        ExpectExact(figure.Exact, line);
        return;
    }
    const Figure& figure = line.Figure == "emissions" ? average.Emissions : average.Allowance;
    EXPECT_EQ(RoundedText(figure.Report), line.Report);
    ExpectExact(figure.Exact, line);
}

void ExpectPointValue(const TraceNode& root, const FigureLine& line) {
    Figure kg;
    Figure mg;
    for (const TraceNode* material : MaterialsOf(root)) {
        const double amount = NumberAfter(material->Text, "; m ");
        kg.Report += NumberAfter(material->Text, "; p ") * amount;
        mg.Report += amount;
        const std::string& exact = LineWith(*material, "Exact: ");
        kg.Exact += NumberAfter(exact, "; p * m = ");
        mg.Exact += NumberAfter(exact, " / 2.2046 / 1000 = ");
    }
    EXPECT_EQ(mg.Report == 0 ? "" : ReportText(RoundDecimal(kg.Report / mg.Report, 0)), line.Report);
    ExpectExact(kg.Exact / mg.Exact, line);
}

void ExpectFilled(const TraceNode& root, const FigureLine& line) {
    ASSERT_EQ(MaterialsOf(root).size(), 1u);
    const std::string& material = MaterialsOf(root).front()->Text;
    EXPECT_TRUE(material.starts_with(line.Item + ": "));
    ExpectExact(NumberAfter(material, "; c ") *
                    std::pow(NumberAfter(material, "; h "), NumberAfter(material, "; e ")) *
                    (100 - NumberAfter(material, "; f ")) / 100,
                line);
}

void ExpectAmount(const TraceNode& root, const FigureLine& line) {
    double kilograms = 0;
    for (const TraceNode* material : MaterialsOf(root))
        for (const TraceNode& child : material->Children)
            if (child.Text.starts_with("1_usage.talvor, record "))
                kilograms += NumberAfter(child.Text, " = ");
    ExpectExact(kilograms, line);
}

void ExpectMonths(const TraceNode& root, const FigureLine& line) {
    EXPECT_EQ(std::to_string(root.Children.size() - 2), line.Report); // but for the formula and the sum
}

void ExpectParts(const TraceNode& root, const FigureLine& line) {
    for (const TraceNode* material : MaterialsOf(root))
        ExpectPounds(*material);
    if (line.Figure == "months") return ExpectMonths(root, line);
    if (line.Figure == "content") return ExpectContent(root, line);
    if (line.Figure == "filled") return ExpectFilled(root, line);
    if (line.Figure == "point_value") return ExpectPointValue(root, line);
    if (line.Figure == "amount") return ExpectAmount(root, line);
    ExpectAverage(root, line);
}

std::string SumText(const FigureLine& line) {
    std::string text = "Sum: ";
    if (!line.Report.empty()) AppendAll(text, "report ", line.Report, " ", line.Unit);
    if (!line.Report.empty() && !line.Exact.empty()) text += ", ";
    if (!line.Exact.empty()) AppendAll(text, "exact ", line.Exact, " ", line.Unit);
    return text;
}

TEST_F(TracedShopsTest, PartsOfEveryFigureAddUpToIt) {
    const std::vector<HapContentRecord> defaults = Shop.Types;
    int traced = 0;
    for (int number = 0; number < 40; ++number) {
        MakeShop(defaults);
        const ShopFigures shop(Shop);
        for (const MonthNumber monthEnd : {MonthNumberOf(2004, 8), MonthNumberOf(2005, 11)}) {
            const MonthFigures figures = shop.At(monthEnd);
            for (const FigureLine& line : LinesOf(shop, figures)) {
                SCOPED_TRACE(std::to_string(number) + " " + std::string(line.Figure) + " " + line.Item);
                const Result<TraceNode> root = TraceFigure(shop, figures, line.Figure, line.Item);
                ASSERT_TRUE(root);
                EXPECT_EQ(root->Children.back().Text, SumText(line));
                ExpectParts(*root, line);
                ++traced;
            }
        }
    }
    EXPECT_GT(traced, 40 * 2 * 15);
}

} // namespace
} // namespace mact
