#include "overview/shop_figures.h"

#include "overview/overview_csv.h"
#include "tests/overview/made_records.h"

#include <gtest/gtest.h>

#include <limits>

namespace mact {
namespace {

const MonthNumber December = MonthNumberOf(2005, 12);

class ShopFiguresTest : public testing::Test {
protected:
    ShopRecords Shop{.Types = SomeTypes()};

    MonthFigures At(MonthNumber monthEnd) const { return ShopFigures(Shop).At(monthEnd); }
    MonthFigures AtDecember() const { return At(December); }
    /// The pounds counted in the window that ends with the month.
    double PoundsAt(MonthNumber monthEnd) const {
        double pounds = 0;
        for (const UsedMaterial& used : ShopFigures(Shop).UsedInWindow(monthEnd))
            pounds += used.Pounds;
        return pounds;
    }
    HapContentRecord& TypeRow(std::size_t row) { return Shop.Types[row]; }
};

TEST_F(ShopFiguresTest, AMonthIsInTheWindowsOfTwelveMonthEnds) {
    Shop.Materials = {MadeMaterial(1, 34)};
    Use(Shop, 1, "1/2005", 5);
    EXPECT_EQ(PoundsAt(MonthNumberOf(2004, 12)), 0);
    EXPECT_EQ(PoundsAt(MonthNumberOf(2005, 1)), 5);
    EXPECT_EQ(PoundsAt(December), 5);
    EXPECT_EQ(PoundsAt(MonthNumberOf(2006, 1)), 0);
}

TEST_F(ShopFiguresTest, AnEmptyPeriodIsInEveryWindowAndInNoMonth) {
    Shop.Materials = {MadeMaterial(1, 34)};
    Use(Shop, 1, "   ", 5);
    EXPECT_EQ(PoundsAt(FirstMonthEnd), 5);
    EXPECT_EQ(PoundsAt(LastMonthEnd), 5);
    EXPECT_TRUE(AtDecember().Amounts.empty());
    EXPECT_EQ(ShopFigures(Shop).NewestUse(), std::nullopt);
}

TEST_F(ShopFiguresTest, APeriodThatNoReportFindsIsInNoWindow) {
    Shop.Materials = {MadeMaterial(1, 34)};
    for (const char* period : {"03/2005", "13/2005", "0/2005", "3/05", "3-2005", "3/2005x", "March"})
        Use(Shop, 1, period, 5);
    EXPECT_EQ(PoundsAt(December), 0);
}

TEST_F(ShopFiguresTest, ABarBehindTheOldestMonthIsFoundAsTheReportsFindIt) {
    Shop.Materials = {MadeMaterial(1, 34)};
    Use(Shop, 1, "1/2005|", 5);
    EXPECT_EQ(PoundsAt(December), 5);
    EXPECT_EQ(PoundsAt(MonthNumberOf(2005, 11)), 0);
    EXPECT_EQ(PoundsAt(MonthNumberOf(2006, 1)), 0);
}

TEST_F(ShopFiguresTest, MonthsCountFromTheFirstWithALiveRecordWhateverItsQuantity) {
    Use(Shop, 99, "3/2005", 0); // of no material
    Use(Shop, 99, "6/2005", 0);
    const MonthFigures figures = At(MonthNumberOf(2005, 7));
    EXPECT_EQ(figures.Months, 5);
    EXPECT_EQ(figures.WithoutEntry,
              (std::vector{MonthNumberOf(2005, 4), MonthNumberOf(2005, 5), MonthNumberOf(2005, 7)}));
    EXPECT_EQ(At(MonthNumberOf(2005, 2)).Months, 0);
    EXPECT_EQ(At(MonthNumberOf(2009, 2)).Months, 12);
}

TEST_F(ShopFiguresTest, AStartMonthOfTheUsersOwnCounts) {
    Use(Shop, 1, "3/2005", 0);
    const MonthFigures figures = ShopFigures(Shop, MonthNumberOf(2005, 5)).At(MonthNumberOf(2005, 6));
    EXPECT_EQ(figures.Months, 2);
    EXPECT_EQ(figures.WithoutEntry, (std::vector{MonthNumberOf(2005, 5), MonthNumberOf(2005, 6)}));
}

TEST_F(ShopFiguresTest, WithoutAnyRecordNoMonthCounts) {
    const MonthFigures figures = AtDecember();
    EXPECT_EQ(figures.Months, 0);
    EXPECT_TRUE(figures.WithoutEntry.empty());
    EXPECT_EQ(figures.Average.Judged.Is, State::TooEarly);
    EXPECT_FALSE(figures.IsUsed);
}

TEST_F(ShopFiguresTest, AWindowWithoutUseIsNotUsed) {
    Shop.Materials = {MadeMaterial(1, 34)};
    Use(Shop, 1, "1/2005", 0);
    Use(Shop, 1, "2/2005", -5);
    EXPECT_EQ(AtDecember().Average.Judged, Verdict{State::NotUsed});
    EXPECT_TRUE(AtDecember().Contents.empty());
}

TEST_F(ShopFiguresTest, ClosedMoldingIsOnNeitherSideOfTheAverageAndInNoRow) {
    Shop.Materials = {MadeMaterial(1, 99, "production RESIN", "closed molding")};
    UseAllYear(Shop, 1, 2204.6);
    const MonthFigures figures = AtDecember();
    EXPECT_EQ(figures.Average.Judged, Verdict{State::NotUsed});
    EXPECT_EQ(figures.Average.Allowance.Exact, 0);
    EXPECT_TRUE(figures.Contents.empty() && figures.PointValues.empty());
    ASSERT_EQ(figures.Amounts.size(), 1U);
    EXPECT_EQ(figures.Amounts[0].Item, "closed molding");
    EXPECT_NEAR(figures.Amounts[0].Kilograms, 1000, 1e-9);
}

TEST_F(ShopFiguresTest, BeforeTwelveMonthsNothingIsJudged) {
    Shop.Materials = {MadeMaterial(1, 50)};
    Use(Shop, 1, "6/2005", 1000);
    const MonthFigures figures = AtDecember();
    ASSERT_EQ(figures.Contents.size(), 1U);
    EXPECT_EQ(figures.Contents[0].Judged, Verdict{State::TooEarly});
    EXPECT_EQ(figures.Average.Judged, Verdict{State::TooEarly});
    EXPECT_EQ(StateText(State::TooEarly, figures.Months), "too early (7 of 12)");
}

TEST_F(ShopFiguresTest, AContentAtItsLimitIsWithinAndOneAboveIsOver) {
    Shop.Materials = {MadeMaterial(1, 35)};
    UseAllYear(Shop, 1, 1000);
    EXPECT_EQ(AtDecember().Contents[0].Judged, Verdict{State::Within});
    EXPECT_TRUE(AtDecember().Contents[0].IsEveryMaterialWithin);
    Shop.Materials[0].HapContent = 35.01;
    EXPECT_EQ(AtDecember().Contents[0].Judged, Verdict{State::Over});
    EXPECT_FALSE(AtDecember().Contents[0].IsEveryMaterialWithin);
}

TEST_F(ShopFiguresTest, AContentThatRoundingHidesDiffersByRounding) {
    Shop.Materials = {MadeMaterial(1, 35.004)};
    UseAllYear(Shop, 1, 1000);
    EXPECT_EQ(AtDecember().Contents[0].Content.Report, 35);
    EXPECT_EQ(AtDecember().Contents[0].Judged, (Verdict{State::Differs, Cause::Rounding}));
}

TEST_F(ShopFiguresTest, VacuumBaggingBetweenItsLimitAndThatOfTheRowDiffers) {
    Shop.Materials = {MadeMaterial(1, 29, "Production resin", "Spray (Vacuum bagging after roll-out)")};
    UseAllYear(Shop, 1, 1000); // within 30 by the table's line, above 28 by the row
    const MonthFigures figures = AtDecember();
    EXPECT_EQ(figures.Contents[0].Item, "production resin, atomized");
    EXPECT_EQ(figures.Contents[0].Limit, 28);
    EXPECT_EQ(figures.Contents[0].Judged, (Verdict{State::Differs, Cause::VacuumBagging}));
}

TEST_F(ShopFiguresTest, ARowIsOverInTheReportIfAnyOfItsLinesIs) {
    // Together 27 %: within the row's 28. Alone, the plain spray's 31 % is above its 28.
    Shop.Materials = {MadeMaterial(1, 31, "Production resin", "Spray"),
                      MadeMaterial(2, 23, "Production resin", "Spray (Vacuum bagging after roll-out)")};
    UseAllYear(Shop, 1, 1000);
    UseAllYear(Shop, 2, 1000);
    const ContentFigure row = AtDecember().Contents[0];
    EXPECT_EQ(row.Content.Report, 27);
    EXPECT_EQ(row.Judged, (Verdict{State::Differs, Cause::VacuumBagging}));
}

TEST_F(ShopFiguresTest, EmissionsEqualToTheAllowanceAreATie) {
    TypeRow(2).EfCoefficient = 1; // a point value of 46 with a content of 46
    TypeRow(2).EfExponent = 1;
    Shop.Materials = {MadeMaterial(1, 46)};
    UseAllYear(Shop, 1, 22046);
    const AverageFigures average = AtDecember().Average;
    EXPECT_EQ(average.Emissions.Report, average.Allowance.Report);
    EXPECT_EQ(average.Judged, (Verdict{State::Differs, Cause::Tie}));
    EXPECT_EQ(average.Headroom().Report, 0);
    Shop.Materials[0].HapContent = 45.9;
    EXPECT_EQ(AtDecember().Average.Judged, Verdict{State::Within});
    Shop.Materials[0].HapContent = 46.1;
    EXPECT_EQ(AtDecember().Average.Judged, Verdict{State::Over});
}

TEST_F(ShopFiguresTest, AFilledResinThatIsOverOnlyWithoutItsFillerDiffersByFiller) {
    Shop.Materials = {MadeMaterial(1, 40, "Production resin (Filled)")};
    Shop.Materials[0].Filler = 26;
    UseAllYear(Shop, 1, 2000);
    const MonthFigures figures = AtDecember();
    EXPECT_TRUE(figures.Contents.empty());
    ASSERT_EQ(figures.Filled.size(), 1U);
    EXPECT_NEAR(figures.Filled[0].PointValue, 45.713685, 1e-6);
    EXPECT_EQ(figures.Filled[0].Judged, (Verdict{State::Differs, Cause::Filler}));
    EXPECT_EQ(figures.Average.Judged, (Verdict{State::Differs, Cause::Filler}));
    EXPECT_EQ(figures.PointValues[0].Item, "production resin");
    EXPECT_EQ(figures.Amounts[0].Item, "production resin, filled");
}

TEST_F(ShopFiguresTest, AFilledResinThatTheReportFindsOverButWhosePointValueIsWithinWithoutFillerIsRounding) {
    // 35.01 % is over the limit of the report; its point value is 0.014 * 35.01^2.275 = 45.622, below 46.
    Shop.Materials = {MadeMaterial(1, 35.01, "Production resin (Filled)")};
    UseAllYear(Shop, 1, 2000);
    EXPECT_EQ(AtDecember().Filled[0].Judged, (Verdict{State::Differs, Cause::Rounding}));
}

TEST_F(ShopFiguresTest, AmountsThatTheReportRoundsAwayLeaveThePointValueWithoutAReport) {
    Shop.Materials = {MadeMaterial(1, 60)};
    UseAllYear(Shop, 1, 0.9); // 4.9 kg in all
    const MonthFigures figures = AtDecember();
    EXPECT_EQ(figures.PointValues[0].Report, std::nullopt);
    EXPECT_EQ(figures.Average.Judged, (Verdict{State::Differs, Cause::Rounding}));
}

TEST_F(ShopFiguresTest, RowsThatAUserAddedStandUnderTheirOwnNames) {
    Shop.Types.push_back({.MaterialType = "Polyester \"X\"",
                          .HapLimit = -1,
                          .ApplicationMethod = "Brush",
                          .EfCoefficient = 0.5,
                          .EfExponent = 1,
                          .EmissionLimit = 20});
    Shop.Types.push_back({.MaterialType = "polyester \"x\"",
                          .HapLimit = 30,
                          .ApplicationMethod = "Roller",
                          .EfCoefficient = 0.5,
                          .EfExponent = 1,
                          .EmissionLimit = 20});
    Shop.Materials = {MadeMaterial(1, 50, "POLYESTER \"X\"", "roller"),
                      MadeMaterial(2, 50, "Polyester \"X\"", "Brush")};
    UseAllYear(Shop, 1, 1000);
    UseAllYear(Shop, 2, 1000);
    const MonthFigures figures = AtDecember();
    ASSERT_EQ(figures.Contents.size(), 2U);
    EXPECT_EQ(figures.Contents[0].Item, "Polyester \"X\", Brush");
    EXPECT_EQ(figures.Contents[0].Limit, std::nullopt);
    EXPECT_EQ(figures.Contents[0].Judged, Verdict{State::Within});
    EXPECT_EQ(figures.Contents[1].Item, "polyester \"x\", Roller");
    EXPECT_EQ(figures.Contents[1].Judged, Verdict{State::Over});
    ASSERT_EQ(figures.PointValues.size(), 1U);
    EXPECT_EQ(figures.PointValues[0].Item, "Polyester \"X\"");
    EXPECT_NEAR(figures.PointValues[0].Exact, 25, 1e-12);
    EXPECT_EQ(figures.Amounts[0].Item, "Polyester \"X\", Brush");
    const std::string csv = OverviewCsv(ShopFigures(Shop), figures);
    EXPECT_NE(csv.find("12/2005,content,\"Polyester \"\"X\"\", Brush\",50,50,,%,within,\n"),
              std::string::npos);
}

TEST_F(ShopFiguresTest, AMaterialWhoseTypeIsNotInTheTableCountsNowhere) {
    Shop.Materials = {MadeMaterial(1, 34, "Epoxy", "Spray")};
    UseAllYear(Shop, 1, 1000);
    EXPECT_FALSE(AtDecember().IsUsed);
}

TEST_F(ShopFiguresTest, AFigureThatIsNotFiniteHasNoTextAndNoState) {
    Shop.Materials = {MadeMaterial(1, 34), MadeMaterial(2, 30, "Pigmented production gel", "All")};
    UseAllYear(Shop, 1, 1000);
    UseAllYear(Shop, 2, 1000);
    for (const double quantity : {std::numeric_limits<double>::infinity(), std::nan("")}) {
        Shop.Usage[0].Quantity = quantity;
        const ShopFigures shop(Shop);
        const std::string csv = OverviewCsv(shop, shop.At(December));
        EXPECT_NE(csv.find("12/2005,content,\"production resin, nonatomized\",,,35,%,,\n"),
                  std::string::npos);
        EXPECT_NE(csv.find("12/2005,content,pigmented gel coat,30,30,33,%,within,\n"), std::string::npos);
        EXPECT_NE(csv.find("12/2005,emissions,,,,,kg,,\n"), std::string::npos);
        EXPECT_NE(csv.find("12/2005,headroom_percent,,,,,%,,\n"), std::string::npos);
    }
}

TEST_F(ShopFiguresTest, AnOverflowIsNoAnswerEvenIfALaterQuantityCancelsIt) {
    Shop.Materials = {MadeMaterial(1, 34)};
    Use(Shop, 1, "1/2005", std::numeric_limits<double>::max());
    Use(Shop, 1, "2/2005", std::numeric_limits<double>::max());
    Use(Shop, 1, "3/2005", -std::numeric_limits<double>::max());
    EXPECT_FALSE(AtDecember().Average.Emissions.HasAnswer());
}

TEST_F(ShopFiguresTest, UsageThatHasChangedCountsOnceItIsTaken) {
    Shop.Materials = {MadeMaterial(1, 34), MadeMaterial(2, 34)};
    Use(Shop, 1, "1/2005", 5);
    Use(Shop, 2, "3/2005", 7);
    ShopFigures figures(Shop);
    ASSERT_EQ(figures.At(December).Contents.front().Pounds, 12);
    ASSERT_EQ(figures.At(December).Months, 12);
    Shop.Usage.erase(Shop.Usage.begin());
    Use(Shop, 1, "2/2006", 9);
    figures.TakeUsage();
    EXPECT_EQ(figures.At(December).Contents.front().Pounds, 7);
    EXPECT_EQ(figures.At(December).Months, 10); // from March on
    EXPECT_EQ(figures.NewestUse(), MonthNumberOf(2006, 2));
    EXPECT_EQ(figures.UsedInMonth(MonthNumberOf(2006, 2)).size(), 1U);
}

TEST_F(ShopFiguresTest, AStartMonthOfTheUsersOwnStaysWhenUsageChanges) {
    Shop.Materials = {MadeMaterial(1, 34)};
    Use(Shop, 1, "12/2005", 5);
    ShopFigures figures(Shop, MonthNumberOf(2005, 10));
    Use(Shop, 1, "1/2005", 5);
    figures.TakeUsage();
    EXPECT_EQ(figures.At(December).Months, 3);
}

TEST(ExactTextTest, HasSixDecimalsAndNoZerosAtItsEnd) {
    EXPECT_EQ(ExactText(1.0000005), "1.000001"); // the double lies above the half
    EXPECT_EQ(ExactText(35), "35");
    EXPECT_EQ(ExactText(0.1), "0.1");
    EXPECT_EQ(ExactText(1e-9), "0");
    EXPECT_EQ(ExactText(-1e-9), "0");
    EXPECT_EQ(ExactText(-0.5), "-0.5");
    EXPECT_EQ(ExactText(1e21), "1000000000000000000000");
    EXPECT_EQ(ExactText(std::numeric_limits<double>::infinity()), "");
}

TEST(RoundDecimalTest, TakesWhatBinaryFractionsMovedOffAHalfForThatHalf) {
    EXPECT_EQ(RoundDecimal(46.94500000000001, 0), 46.94);
    EXPECT_EQ(RoundDecimal(46.95499999999999, 0), 46.96);
    EXPECT_EQ(RoundDecimal(46.9451, 0), 46.95);
    EXPECT_EQ(RoundDecimal(-0.125, 0), -0.12);
    EXPECT_EQ(RoundDecimal(12, 0), 12);
}

} // namespace
} // namespace mact
