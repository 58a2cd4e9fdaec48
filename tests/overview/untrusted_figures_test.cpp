#include "overview/untrusted_figures.h"

#include "overview/overview_csv.h"
#include "tests/overview/made_shop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <map>

namespace mact {
namespace {

/// One material in each sort of figure, all used at the month end, with nothing wrong.
class UntrustedTest : public testing::Test {
public:
    enum Place : std::size_t { Resin, GelCoat, Filled, Closed, Added };

    UntrustedTest() {
        Shop.AddMaterial("PR");
        Shop.AddMaterial("GC", "Pigmented production gel", "All");
        Shop.AddMaterial("FR", "Production resin (Filled)", "Spray");
        Shop.AddMaterial("CM", "Production resin", "Closed Molding");
        Shop.AddMaterial("BC", "Barrier coat", "Brush");
        for (std::int16_t number = 1; number <= 5; ++number)
            Shop.AddUse(number);
    }
    ShopMaterial& Material(Place place) { return Shop.Records.Materials[place]; }
    ShopUse& Use(Place place) { return Shop.Records.Usage[place]; }

    /// The figures that are not trusted, by name, with the number of findings.
    using Counts = std::map<std::string, std::size_t>;
    Counts Untrusted() const {
        const ShopFigures shop(Shop.Records);
        const MonthFigures figures = shop.At(MadeShop::MonthEnd);
        const UntrustedFigures counted =
            CountUntrusted(shop, figures, FindAttention(shop, MadeShop::MonthEnd, 1));
        Counts counts;
        const auto add = [&](const std::string& name, std::size_t count) {
            if (count > 0) counts[name] = count;
        };
        for (std::size_t place = 0; place < figures.Contents.size(); ++place)
            add("content " + figures.Contents[place].Item, counted.Contents.at(place));
        for (std::size_t place = 0; place < figures.Filled.size(); ++place)
            add("filled " + Shop.Records.Materials[figures.Filled[place].Material].CustomId,
                counted.Filled.at(place));
        add("average", counted.Average);
        for (std::size_t place = 0; place < figures.PointValues.size(); ++place)
            add("point value " + figures.PointValues[place].Item, counted.PointValues.at(place));
        for (std::size_t place = 0; place < figures.Amounts.size(); ++place)
            add("amount " + figures.Amounts[place].Item, counted.Amounts.at(place));
        return counts;
    }

    MadeShop Shop;
    const Counts OfResin = {
        {"content production resin, atomized", 1},
        {"average",                            1},
        {"point value production resin",       1},
        {"amount production resin, atomized",  1},
    };
    /// All but the filled resin.
    const Counts OfAll = {
        {"content production resin, atomized", 1},
        {"content pigmented gel coat",         1},
        {"content Barrier coat, Brush",        1},
        {"average",                            1},
        {"point value production resin",       1},
        {"point value pigmented gel coat",     1},
        {"point value Barrier coat",           1},
        {"amount production resin, atomized",  1},
        {"amount pigmented gel coat",          1},
        {"amount Barrier coat, Brush",         1},
        {"amount production resin, filled",    1},
        {"amount closed molding",              1},
    };
};

TEST_F(UntrustedTest, GoodRecordsAreTrusted) {
    EXPECT_EQ(Untrusted(), Counts{});
}

TEST_F(UntrustedTest, WhatIsWorthALookIsTrusted) {
    Material(Resin).EmissionFactor = 1;
    EXPECT_EQ(Untrusted(), Counts{});
}

TEST_F(UntrustedTest, WrongUseTouchesTheFiguresOfItsMaterial) {
    Use(Resin).Unit = 3;
    EXPECT_EQ(Untrusted(), OfResin);
}

TEST_F(UntrustedTest, FindingsAreCounted) {
    Use(Resin).Unit = 3;
    Material(Resin).HapContent = 150;
    EXPECT_EQ(Untrusted(), (Counts{
                               {"content production resin, atomized", 2},
                               {"average",                            2},
                               {"point value production resin",       2},
                               {"amount production resin, atomized",  1}, // no content is in it
    }));
}

TEST_F(UntrustedTest, WrongUseOfAnEarlierMonthIsNotInTheAmountOfTheLast) {
    Shop.AddUse(1, "11/2005", 1, 3);
    Counts expected = OfResin;
    expected.erase("amount production resin, atomized");
    EXPECT_EQ(Untrusted(), expected);
}

TEST_F(UntrustedTest, WrongContentIsNotInTheAmount) {
    Material(Resin).HapContent = 0.3;
    Counts expected = OfResin;
    expected.erase("amount production resin, atomized");
    EXPECT_EQ(Untrusted(), expected);
}

TEST_F(UntrustedTest, UseOfNoMonthMayBelongToAny) {
    Shop.AddUse(1, "");
    EXPECT_EQ(Untrusted(), OfResin);
    Shop.Records.Usage.back().Period = "03/2005";
    EXPECT_EQ(Untrusted(), OfResin);
    Shop.Records.Usage.back().Period = "3/0005";
    EXPECT_EQ(Untrusted(), OfResin);
}

TEST_F(UntrustedTest, AmountRoundedAwayTouchesTheAverageAlone) {
    Use(Resin).Quantity = 11;
    EXPECT_EQ(Untrusted(), (Counts{
                               {"average",                      1},
                               {"point value production resin", 1}
    }));
}

TEST_F(UntrustedTest, FilledResinHasAFigureOfItsOwnAndIsInNoContent) {
    Use(Filled).Unit = 3;
    EXPECT_EQ(Untrusted(), (Counts{
                               {"filled FR",                       1},
                               {"average",                         1},
                               {"point value production resin",    1},
                               {"amount production resin, filled", 1}
    }));
}

TEST_F(UntrustedTest, AnotherFilledResinIsTrusted) {
    Shop.AddMaterial("FR2", "Production resin (Filled)", "Spray").HapContent = 0;
    Shop.AddUse(6);
    const Counts counts = Untrusted();
    EXPECT_FALSE(counts.contains("filled FR"));
    EXPECT_TRUE(counts.contains("filled FR2"));
}

TEST_F(UntrustedTest, ClosedMoldingTouchesItsAmountAlone) {
    Use(Closed).Unit = 3;
    EXPECT_EQ(Untrusted(), (Counts{
                               {"amount closed molding", 1}
    }));
}

TEST_F(UntrustedTest, PairThatAUserAddedHasFiguresOfItsOwn) {
    Use(Added).Unit = 3;
    EXPECT_EQ(Untrusted(), (Counts{
                               {"content Barrier coat, Brush", 1},
                               {"average",                     1},
                               {"point value Barrier coat",    1},
                               {"amount Barrier coat, Brush",  1}
    }));
}

TEST_F(UntrustedTest, MethodsThatAUserAddedShareThePointValueOfTheirType) {
    Shop.Records.Types.push_back({.MaterialType = "BARRIER COAT",
                                  .HapLimit = 30,
                                  .ApplicationMethod = "Roller",
                                  .EfCoefficient = 0.445,
                                  .EfExponent = 1.675,
                                  .EmissionLimit = 159});
    Shop.AddMaterial("BC2", "Barrier coat", "Roller");
    Shop.AddUse(6, "12/2005", 1000, 3);
    EXPECT_EQ(Untrusted(), (Counts{
                               {"content BARRIER COAT, Roller", 1},
                               {"average",                      1},
                               {"point value Barrier coat",     1},
                               {"amount BARRIER COAT, Roller",  1}
    }));
}

TEST_F(UntrustedTest, UseWhoseMaterialIsGoneMayBelongToAnyRow) {
    Shop.AddUse(99);
    EXPECT_EQ(Untrusted(), OfAll);
}

TEST_F(UntrustedTest, TypeOutsideTheTableMayBelongToAnyRow) {
    Shop.AddMaterial("PR-X", "Prodction resin");
    Shop.AddUse(6);
    EXPECT_EQ(Untrusted(), OfAll);
}

TEST_F(UntrustedTest, MaterialThatCountsAsNothingTouchesTheFiguresItWouldBeIn) {
    Shop.AddMaterial("PR-0").Density = 0;
    Shop.AddUse(6, "12/2005", 1, UnitMgal);
    EXPECT_EQ(Untrusted(), OfResin);
}

// Twelve months, not the last one alone; a content is in no amount.
TEST_F(UntrustedTest, WhatWasUsedOfAMaterialHasTheFindingsOnItsAmount) {
    Shop.AddUse(1, "11/2005", 1, 3);
    Use(Resin).Unit = 3;
    Use(Closed).Unit = 3;
    Material(GelCoat).HapContent = 0.3;
    const ShopFigures shop(Shop.Records);
    EXPECT_EQ(CountUntrusted(shop, shop.At(MadeShop::MonthEnd)).AmountOfMaterial,
              (std::map<std::size_t, std::size_t>{
                  {Resin,  2},
                  {Closed, 1}
    }));
}

TEST_F(UntrustedTest, EachLineHasTheFindingsOfItsFigure) {
    Use(Resin).Unit = 3;
    Use(Filled).Unit = 3;
    const ShopFigures shop(Shop.Records);
    const MonthFigures figures = shop.At(MadeShop::MonthEnd);
    const std::vector<FigureLine> lines = LinesOf(shop, figures);
    const std::vector<std::size_t> findings = FindingsOfLines(CountUntrusted(shop, figures));
    ASSERT_EQ(findings.size(), lines.size());
    Counts counts;
    for (std::size_t place = 0; place < lines.size(); ++place)
        if (findings[place] > 0)
            counts[std::string(lines[place].Figure) + ' ' + lines[place].Item] = findings[place];
    EXPECT_EQ(counts, (Counts{
                          {"content production resin, atomized", 1},
                          {"filled FR",                          1},
                          {"emissions ",                         2},
                          {"allowance ",                         2},
                          {"headroom ",                          2},
                          {"headroom_percent ",                  2},
                          {"point_value production resin",       2},
                          {"amount production resin, atomized",  1},
                          {"amount production resin, filled",    1}
    }));
}

TEST(UntrustedText, SaysTheNumberOfFindings) {
    EXPECT_EQ(UntrustedText(0), "");
    EXPECT_EQ(UntrustedText(1), "not trusted: 1 finding");
    EXPECT_EQ(UntrustedText(2), "not trusted: 2 findings");
    EXPECT_EQ(UntrustedSentence(0), "");
    EXPECT_EQ(UntrustedSentence(2), " Not trusted: 2 findings.");
}

TEST(UntrustedAtTheLimit, FindingsOfAnyRowAreCountedFast) {
    MadeShop shop;
    for (int number = 1; number <= 32767; ++number) {
        shop.AddMaterial("PR-" + std::to_string(number), "Production resin (Filled)");
        shop.AddUse(static_cast<std::int16_t>(number <= 16000 ? number : -number));
    }
    const ShopFigures figures(shop.Records);
    const MonthFigures month = figures.At(MadeShop::MonthEnd);
    const std::vector<Attention> findings = FindAttention(figures, MadeShop::MonthEnd, 1);
    const auto begin = std::chrono::steady_clock::now();
    const UntrustedFigures counted = CountUntrusted(figures, month, findings);
    EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count(), 2);
    EXPECT_EQ(counted.Average, 16767U);
    EXPECT_EQ(counted.PointValues, (std::vector<std::size_t>{16767}));
    EXPECT_EQ(std::ranges::count(counted.Filled, 0U), 16000);
}
} // namespace
} // namespace mact
