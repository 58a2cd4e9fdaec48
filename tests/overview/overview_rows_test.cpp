#include "overview/overview_rows.h"

#include "overview/answers.h"
#include "tests/overview/made_shop.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

/// Each material is used for 1000 lb in December, after a first entry in January.
class OverviewRowsTest : public testing::Test {
protected:
    MadeShop Shop;

    OverviewRowsTest() {
        Shop.AddMaterial("START");
        Shop.AddUse(1, "1/2005", 0);
    }
    ShopMaterial& Used(std::string customId, double content, std::string type = "Production resin",
                       std::string method = "Spray") {
        ShopMaterial& material = Shop.AddMaterial(std::move(customId), std::move(type), std::move(method));
        material.HapContent = content;
        Shop.AddUse(material.MaterialId);
        return material;
    }
    std::vector<OverviewRow> Rows(const OverviewOptions& options = {}) const {
        const ShopFigures shop(Shop.Records);
        std::vector<MonthFigures> span;
        for (int back = 35; back >= 0; --back)
            span.push_back(shop.At(MadeShop::MonthEnd - back));
        return RowsOf(shop, span.back(),
                      CountUntrusted(shop, span.back(), FindAttention(shop, MadeShop::MonthEnd, 1)),
                      FirstTroubles(shop, span), options);
    }
    std::vector<std::string> Items() const {
        std::vector<std::string> items;
        for (const OverviewRow& row : Rows())
            items.push_back(row.Item);
        return items;
    }
};

TEST_F(OverviewRowsTest, TheWorstStateComesFirstThenTheLeastHeadroom) {
    Used("GC", 33, "Pigmented production gel", "All"); // at its limit
    Used("BC", 10, "Barrier coat", "Brush");           // a third of its limit
    Used("PR", 28.1);                                  // above
    // 0.014 * 30^2.425 is 53.5; less 10 % that is 48.1 kg/Mg, above 46; without the filler it is above too.
    Used("FR", 30, "Production resin (Filled)").Filler = 10;
    EXPECT_EQ(Items(), (std::vector<std::string>{"FR", "production resin, atomized", "pigmented gel coat",
                                                 "Barrier coat, Brush"}));
}

TEST_F(OverviewRowsTest, ARowHoldsAmountValueLimitAndWhatIsLeft) {
    Used("GC", 30, "Pigmented production gel", "All");
    Shop.AddUse(2, "11/2005", 1204.6);
    const std::vector<OverviewRow> rows = Rows();
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].Figure, "content");
    EXPECT_NEAR(rows[0].Megagrams, 1, 1e-12); // 2204.6 lb
    EXPECT_EQ(rows[0].Value, 30);
    EXPECT_EQ(rows[0].Limit, 33);
    ASSERT_TRUE(rows[0].Headroom);
    EXPECT_NEAR(*rows[0].Headroom, 100.0 / 11, 1e-12); // 3 of 33
    EXPECT_EQ(rows[0].Judged.Is, State::Within);
    EXPECT_FALSE(rows[0].IsNarrow);
    EXPECT_EQ(rows[0].Since, std::nullopt);
    EXPECT_EQ(rows[0].Findings, 0U);
    EXPECT_EQ(StateInWords(rows[0], 12), "Within");
}

TEST_F(OverviewRowsTest, WithinByLessThanHalfAPointIsNarrow) {
    Used("GC", 32.51, "Pigmented production gel", "All");
    EXPECT_TRUE(Rows()[0].IsNarrow);
    EXPECT_EQ(StateInWords(Rows()[0], 12), "Within, narrowly");
    Shop.Records.Materials[1].HapContent = 32.5;
    EXPECT_FALSE(Rows()[0].IsNarrow);
    EXPECT_TRUE(Rows({.WarnContent = 1})[0].IsNarrow);
    Shop.Records.Materials[1].HapContent = 33.5; // over, which says more
    EXPECT_FALSE(Rows()[0].IsNarrow);
}

TEST_F(OverviewRowsTest, TroubleSinceIsTheFirstMonthEndOfTheSpanThatHadIt) {
    Shop.Records.Usage[0].Period = "1/2003";
    Used("OLD", 40);
    Shop.Records.Usage.back().Period = "5/2004"; // over until 4/2005
    Used("NEW", 20);
    // 40 % before the twelve months, 20 % in them.
    const std::vector<OverviewRow> rows = Rows();
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].Judged.Is, State::Within);
    EXPECT_EQ(rows[0].Since, MonthNumberOf(2004, 5));
}

TEST_F(OverviewRowsTest, FilledResinsOfOneNameKeepTheirOwnMonths) {
    Shop.Records.Usage[0].Period = "1/2003";
    Used("FR", 20, "Production resin (Filled)").Filler = 10;
    Used("FR", 40, "Production resin (Filled)").Filler = 10;
    const std::vector<OverviewRow> rows = Rows();
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].Material, 2U);
    EXPECT_EQ(rows[0].Since, MadeShop::MonthEnd);
    EXPECT_EQ(rows[1].Material, 1U);
    EXPECT_EQ(rows[1].Since, std::nullopt);
}

TEST_F(OverviewRowsTest, WhatIsNotTrustedIsSaid) {
    Used("GC", 30, "Pigmented production gel", "All");
    Shop.AddUse(2, "12/2005", -5);
    EXPECT_EQ(Rows()[0].Findings, 2U); // negative, and twice in one month
    EXPECT_EQ(StateInWords(Rows()[0], 12), "Within; not trusted: 2 findings");
}

TEST_F(OverviewRowsTest, ARowWithoutALimitHasNoHeadroomAndIsLastOfItsState) {
    Shop.Records.Types.back().HapLimit = -1;
    Used("BC", 99, "Barrier coat", "Brush");
    Used("GC", 3, "Pigmented production gel", "All");
    const std::vector<OverviewRow> rows = Rows();
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].Item, "pigmented gel coat");
    EXPECT_EQ(rows[1].Limit, std::nullopt);
    EXPECT_EQ(rows[1].Headroom, std::nullopt);
}

TEST_F(OverviewRowsTest, ARowsValueAtAnotherMonthEndIsPercentOfItsLimit) {
    Used("GC", 33, "Pigmented production gel", "All");
    Used("FR", 20, "Production resin (Filled)").Filler = 50;
    const std::vector<OverviewRow> rows = Rows();
    ASSERT_EQ(rows.size(), 2U);
    const ShopFigures shop(Shop.Records);
    const MonthFigures november = shop.At(MadeShop::MonthEnd - 1);
    const MonthFigures january = shop.At(MadeShop::MonthEnd + 1);
    for (const OverviewRow& row : rows) {
        EXPECT_FALSE(ValueAt(row, november)); // used in December alone
        const auto value = ValueAt(row, january);
        ASSERT_TRUE(value);
        // 0.014 * 20^2.425 / 2 = 10.003 kg/Mg, of 46.
        EXPECT_NEAR(value->Percent, row.Material ? 21.75 : 100.0, 0.01);
        EXPECT_EQ(value->Judged.Is, State::Within);
    }
}

TEST(PercentTextTest, HasAsManyDecimalsAsTellItFromAHundred) {
    EXPECT_EQ(PercentText(99), "99.0 %");
    EXPECT_EQ(PercentText(100), "100.0 %");
    EXPECT_EQ(PercentText(100.06), "100.1 %");
    EXPECT_EQ(PercentText(100.004), "100.004 %");
    EXPECT_EQ(PercentText(99.96), "99.96 %");
    EXPECT_EQ(PercentText(99.9999999), "100.000000 %");
    EXPECT_EQ(PercentText(0), "0.0 %");
}

TEST_F(OverviewRowsTest, AnswersSayWhatIsNarrowAndWhatIsNotTrusted) {
    Used("GC", 32.6, "Pigmented production gel", "All");
    const ShopFigures shop(Shop.Records);
    const MonthFigures figures = shop.At(MadeShop::MonthEnd);
    std::vector<Answer> answers = AnswersOf(shop, figures);
    EXPECT_EQ(answers[1].Text, "Within, narrowly: pigmented gel coat.");
    EXPECT_TRUE(answers[1].IsNarrow);
    // 0.445 * 32.6^1.675 = 152.41 kg/Mg, of 159: 0.45 Mg emit 68.58 kg of 71.55 kg. 4.15 % are left.
    EXPECT_EQ(answers[2].Text, "Within, narrowly. 95.9 % of the allowance, 2.97 kg left.");
    EXPECT_TRUE(answers[2].IsNarrow);
    answers = AnswersOf(shop, figures, {}, {.WarnHeadroom = 4, .WarnContent = 0.3});
    EXPECT_EQ(answers[1].Text, "Within.");
    EXPECT_EQ(answers[2].Text, "Within. 95.9 % of the allowance, 2.97 kg left.");
    EXPECT_FALSE(answers[1].IsNarrow || answers[2].IsNarrow);
    Shop.Records.Materials[1].HapContent = 0.5; // a fraction typed as percent
    const ShopFigures damaged(Shop.Records);
    const MonthFigures wrong = damaged.At(MadeShop::MonthEnd);
    answers =
        AnswersOf(damaged, wrong, CountUntrusted(damaged, wrong, FindAttention(damaged, wrong.MonthEnd, 1)));
    EXPECT_EQ(answers[0].Text, "No material in use is above its limit. Not trusted: 1 finding.");
    EXPECT_EQ(answers[1].Text, "Within. Not trusted: 1 finding.");
    EXPECT_TRUE(answers[2].Text.ends_with(" Not trusted: 1 finding."));
    EXPECT_EQ(answers[2].Findings, 1U);
}

TEST_F(OverviewRowsTest, AnAnswerNamesSevenOfManyAndCountsTheRest) {
    for (int number = 1; number <= 9; ++number)
        Used("FR-" + std::to_string(number), 40, "Production resin (Filled)").Filler = 10;
    const ShopFigures shop(Shop.Records);
    const std::string text = AnswersOf(shop, shop.At(MadeShop::MonthEnd))[1].Text;
    EXPECT_TRUE(text.starts_with("FR-1: Over; FR-2: Over; ")) << text;
    EXPECT_TRUE(text.ends_with("; FR-7: Over and 2 more.")) << text;
}

TEST_F(OverviewRowsTest, AnAnswerCutsLongNamesOff) {
    Used(std::string(32, 'M'), 40, "Production resin (Filled)").Filler = 10;
    Used(std::string(33, 'W'), 40, "Production resin (Filled)").Filler = 10;
    const ShopFigures shop(Shop.Records);
    EXPECT_EQ(AnswersOf(shop, shop.At(MadeShop::MonthEnd))[1].Text,
              std::string(32, 'M') + ": Over; " + std::string(31, 'W') + "\u2026: Over.");
}

TEST_F(OverviewRowsTest, AnAnswerEndsAtTheNameThatMakesItLong) {
    for (int number = 1; number <= 7; ++number) // 38 letters with the state, 40 with "; "
        Used(std::to_string(number) + std::string(31, 'W'), 40, "Production resin (Filled)").Filler = 10;
    const ShopFigures shop(Shop.Records);
    const std::string text = AnswersOf(shop, shop.At(MadeShop::MonthEnd))[1].Text;
    EXPECT_TRUE(text.ends_with("; 6" + std::string(31, 'W') + ": Over and 1 more.")) << text;
}

TEST_F(OverviewRowsTest, AFindingInSeveralFiguresCountsOnceForTheirCard) {
    Used("GC", 30, "Pigmented production gel", "All");
    Used("PR", 20);
    Shop.AddUse(99); // of no material: it may belong to any row
    const ShopFigures shop(Shop.Records);
    const MonthFigures figures = shop.At(MadeShop::MonthEnd);
    const UntrustedFigures untrusted =
        CountUntrusted(shop, figures, FindAttention(shop, MadeShop::MonthEnd, 1));
    EXPECT_EQ(untrusted.Contents, (std::vector<std::size_t>{1, 1}));
    EXPECT_EQ(untrusted.AnyContent, 1U);
}

} // namespace
} // namespace mact
