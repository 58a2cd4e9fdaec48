#include "base/failure.h"
#include "overview/overview_csv.h"
#include "overview/what_if.h"
#include "tests/overview/overview_shop.h"

#include <gtest/gtest.h>

#include <limits>

namespace mact {
namespace {

constexpr MonthNumber MonthEnd = MonthNumberOf(2005, 12);

std::string CsvOf(const ShopRecords& shop) {
    const ShopFigures figures(shop);
    return OverviewCsv(figures, figures.At(MonthEnd));
}

class WhatIfTest : public testing::Test {
protected:
    WhatIfTest() {
        Program.ImportMaterials({
            "GC-110|white gel|Pigmented production gel|All|10|33|0|0|0|0|0|0|0|0|0|0|0|0|0",
            "PR-A|resin|Production resin|Non-Spray|8|35|0|0|0|0|0|0|0|0|0|0|0|0|0",
            "PR-B|resin|Production resin|Non-Spray|9|30|0|0|0|0|0|0|0|0|0|0|0|0|0",
            "FR-1|filled|Production resin (Filled)|Non-Spray|9|40|0|0|0|0|0|0|0|0|0|0|0|0|26",
        });
        Program.ImportUsage({"GC-110|1|2005|2204.6|lbs", "PR-A|6|2005|2|mg", "PR-A|7|2005|6000|lbs"});
        const Result<ShopRecords> read = ReadShopRecords(Program.App);
        EXPECT_TRUE(read);
        if (read) Shop = *read;
    }
    ShopRecords With(const std::vector<WhatIfChange>& changes) {
        const Result<ShopRecords> changed = Applied(Shop, changes);
        EXPECT_TRUE(changed);
        return changed ? *changed : ShopRecords{};
    }
    std::vector<std::string> Sentences(const std::vector<WhatIfChange>& changes) {
        const Result<std::vector<std::string>> sentences = SentencesOf(Shop, changes);
        EXPECT_TRUE(sentences);
        return sentences ? *sentences : std::vector<std::string>{};
    }
    std::string Refusal(const WhatIfChange& change) {
        const Result<ShopRecords> changed = Applied(Shop, {change});
        EXPECT_FALSE(SentencesOf(Shop, {change}));
        return changed ? "" : SentenceOf(changed.error());
    }
    std::vector<std::pair<double, std::int16_t>> Quantities(const ShopRecords& shop) {
        std::vector<std::pair<double, std::int16_t>> quantities;
        for (const ShopUse& use : shop.Usage)
            quantities.emplace_back(use.Quantity, use.Unit);
        return quantities;
    }
    using Amounts = std::vector<std::pair<double, std::int16_t>>;
    static constexpr std::int16_t Gel = 1;
    static constexpr std::int16_t ResinA = 2;
    static constexpr std::int16_t ResinB = 3;
    static constexpr std::int16_t FilledResin = 4;
    OverviewShop Program;
    ShopRecords Shop;
};

TEST_F(WhatIfTest, ContentIsChangedInTheCopyAlone) {
    const std::string before = CsvOf(Shop);
    const ShopRecords changed = With({
        {.Kind = WhatIfKind::Content, .MaterialId = Gel, .Number = 31}
    });
    EXPECT_EQ(changed.Materials[0].HapContent, 31);
    EXPECT_NE(CsvOf(changed).find("content,pigmented gel coat,31,31,33,%"), std::string::npos);
    EXPECT_EQ(Shop.Materials[0].HapContent, 33);
    EXPECT_EQ(CsvOf(Shop), before);
}

TEST_F(WhatIfTest, WithoutChangesNothingIsChanged) {
    EXPECT_EQ(CsvOf(With({})), CsvOf(Shop));
    EXPECT_TRUE(Sentences({}).empty());
}

TEST_F(WhatIfTest, EachChangeHasASentence) {
    const std::vector<std::string> expected = {
        "The HAP content of GC-110 is 31 % instead of 33 %.",
        "The density of GC-110 is 9.5 lb/gal instead of 10 lb/gal.",
        "The filler of FR-1 is 0 % instead of 26 %.",
        "The application method of PR-A is \"Spray\" instead of \"Non-Spray\".",
        "The amount of PR-A is 0.5 times as much from 7/2005 on.",
        "PR-B takes the place of PR-A at equal mass.",
        "GC-110 is left out.",
    };
    EXPECT_EQ(
        Sentences({
            {.Kind = WhatIfKind::Content, .MaterialId = Gel,       .Number = 31},
            {.Kind = WhatIfKind::Density,                           .MaterialId = Gel,                        .Number = 9.5},
            {.Kind = WhatIfKind::Filler,              .MaterialId = FilledResin,              .Number = 0},
            {.Kind = WhatIfKind::Method,.MaterialId = ResinA,.Method = " SPRAY "},
            {.Kind = WhatIfKind::Amount,  .MaterialId = ResinA,                 .Number = 0.5, .From = MonthNumberOf(2005, 7)},
            {.Kind = WhatIfKind::Replacement,                           .MaterialId = ResinA,                         .Replacement = ResinB},
            {.Kind = WhatIfKind::LeftOut,              .MaterialId = Gel},
    }),
        expected);
}

TEST_F(WhatIfTest, LaterChangesStartFromWhatEarlierOnesLeft) {
    const std::vector<WhatIfChange> changes = {
        {.Kind = WhatIfKind::Content, .MaterialId = Gel, .Number = 31},
        {.Kind = WhatIfKind::Content, .MaterialId = Gel, .Number = 29},
    };
    EXPECT_EQ(Sentences(changes)[1], "The HAP content of GC-110 is 29 % instead of 31 %.");
    EXPECT_EQ(With(changes).Materials[0].HapContent, 29);
}

TEST_F(WhatIfTest, NamesAreShownInUtf8) {
    Shop.Materials[0].CustomId = "Gr\xFCn\t1";
    EXPECT_EQ(Sentences({
                            {.Kind = WhatIfKind::LeftOut, .MaterialId = Gel}
    })
                  .front(),
              "Gr\xC3\xBCn?1 is left out.");
}

TEST_F(WhatIfTest, DensityCountsForGallonsOnly) {
    const ShopRecords changed = With({
        {.Kind = WhatIfKind::Density, .MaterialId = ResinA, .Number = 7}
    });
    EXPECT_EQ(ShopFigures(Shop).UsedInWindow(MonthEnd)[1].Pounds, 22000); // 2 Mgal * 8 lb/gal + 6000
    EXPECT_EQ(ShopFigures(changed).UsedInWindow(MonthEnd)[1].Pounds, 20000);
}

TEST_F(WhatIfTest, MethodIsSpeltAsInTheTable) {
    const ShopRecords changed = With({
        {.Kind = WhatIfKind::Method, .MaterialId = ResinA, .Method = " SPRAY "}
    });
    EXPECT_EQ(changed.Materials[1].ApplicationMethod, "Spray");
}

TEST_F(WhatIfTest, FillerCountsForFilledResin) {
    Shop.Usage.front().MaterialId = FilledResin;
    const ShopRecords changed = With({
        {.Kind = WhatIfKind::Filler, .MaterialId = FilledResin, .Number = 50}
    });
    const double before = ShopFigures(Shop).At(MonthEnd).Filled.front().PointValue;
    const double after = ShopFigures(changed).At(MonthEnd).Filled.front().PointValue;
    EXPECT_NEAR(after, before / 0.74 * 0.5, 1e-9);
}

TEST_F(WhatIfTest, AmountIsMultipliedFromTheMonthOn) {
    const WhatIfChange change{
        .Kind = WhatIfKind::Amount, .MaterialId = ResinA, .Number = 1.5, .From = MonthNumberOf(2005, 7)};
    EXPECT_EQ(Quantities(With({
                  change
    })),
              (Amounts{{2204.6, 2}, {2, 1}, {9000, 2}}));
    WhatIfChange earlier = change;
    earlier.From = MonthNumberOf(2005, 6);
    EXPECT_EQ(Quantities(With({
                  earlier
    })),
              (Amounts{{2204.6, 2}, {3, 1}, {9000, 2}}));
    Shop.Usage[2].Period = "07/2005";
    EXPECT_EQ(Quantities(With({change})), Quantities(Shop)); // a period that is no month stays
}

TEST_F(WhatIfTest, ReplacementHasTheSameMass) {
    const ShopRecords changed = With({
        {.Kind = WhatIfKind::Replacement, .MaterialId = ResinA, .Replacement = ResinB}
    });
    // 2 Mgal of PR-A at 8 lb/gal, not at PR-B's 9.
    EXPECT_EQ(Quantities(changed), (Amounts{
                                       {2204.6, 2},
                                       {16000,  2},
                                       {6000,   2}
    }));
    const std::vector<UsedMaterial> used = ShopFigures(changed).UsedInWindow(MonthEnd);
    ASSERT_EQ(used.size(), 2u);
    EXPECT_EQ(changed.Materials[used[1].Material].CustomId, "PR-B");
    EXPECT_EQ(used[1].Pounds, 22000);
}

TEST_F(WhatIfTest, ReplacementOfADamagedQuantityHasNoAnswerEither) {
    Shop.Usage[1].Quantity = std::numeric_limits<double>::infinity();
    const ShopRecords changed = With({
        {.Kind = WhatIfKind::Replacement, .MaterialId = ResinA, .Replacement = ResinB}
    });
    EXPECT_FALSE(ShopFigures(changed).At(MonthEnd).Average.Emissions.HasAnswer());
}

TEST_F(WhatIfTest, LeftOutKeepsTheMonthEntered) {
    const ShopRecords changed = With({
        {.Kind = WhatIfKind::LeftOut, .MaterialId = Gel}
    });
    const MonthFigures figures = ShopFigures(changed).At(MonthEnd);
    EXPECT_EQ(figures.Months, 12); // the gel coat alone made 1/2005 the start
    EXPECT_EQ(figures.WithoutEntry, ShopFigures(Shop).At(MonthEnd).WithoutEntry);
    ASSERT_EQ(figures.Contents.size(), 1u);
    EXPECT_EQ(figures.Contents.front().Item, "production resin, nonatomized");
}

TEST_F(WhatIfTest, RefusesNumbersThatCannotBe) {
    EXPECT_EQ(Refusal({.Kind = WhatIfKind::Content, .MaterialId = Gel, .Number = 100.5}),
              "Cannot set the HAP content of GC-110 to 100.5 %: it must be from 0 to 100 %.");
    EXPECT_EQ(Refusal({.Kind = WhatIfKind::Content, .MaterialId = Gel, .Number = -1}),
              "Cannot set the HAP content of GC-110 to -1 %: it must be from 0 to 100 %.");
    EXPECT_EQ(Refusal({.Kind = WhatIfKind::Filler, .MaterialId = FilledResin, .Number = 101}),
              "Cannot set the filler of FR-1 to 101 %: it must be from 0 to 100 %.");
    EXPECT_EQ(Refusal({.Kind = WhatIfKind::Density, .MaterialId = Gel, .Number = -0.5}),
              "Cannot set the density of GC-110 to -0.5 lb/gal: it must be a number that is not negative.");
    EXPECT_EQ(
        Refusal({.Kind = WhatIfKind::Amount, .MaterialId = Gel, .Number = -2}),
        "Cannot multiply the amount of GC-110 by -2: the factor must be a number that is not negative.");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    for (const WhatIfKind kind :
         {WhatIfKind::Content, WhatIfKind::Filler, WhatIfKind::Density, WhatIfKind::Amount})
        for (const double number : {nan, infinite})
            EXPECT_NE(Refusal({.Kind = kind, .MaterialId = Gel, .Number = number}), "");
}

TEST_F(WhatIfTest, TakesTheEndsOfWhatCanBe) {
    for (const double content : {0.0, 100.0})
        EXPECT_EQ(With({
                           {.Kind = WhatIfKind::Content, .MaterialId = Gel, .Number = content}
        })
                      .Materials.front()
                      .HapContent,
                  content);
    EXPECT_EQ(Quantities(With({
                  {.Kind = WhatIfKind::Amount, .MaterialId = ResinA, .Number = 0}
    })),
              (Amounts{{2204.6, 2}, {0, 1}, {0, 2}}));
}

TEST_F(WhatIfTest, RefusesWhatIsNotThere) {
    EXPECT_EQ(Refusal({.Kind = WhatIfKind::LeftOut, .MaterialId = 9}),
              "Cannot change the material with the number 9: there is none.");
    EXPECT_EQ(Refusal({.Kind = WhatIfKind::Replacement, .MaterialId = Gel, .Replacement = 9}),
              "Cannot change the material with the number 9: there is none.");
    EXPECT_EQ(Refusal({.Kind = WhatIfKind::Replacement, .MaterialId = Gel, .Replacement = Gel}),
              "Cannot put GC-110 in place of GC-110: they are the same material.");
    EXPECT_EQ(Refusal({.Kind = WhatIfKind::Method, .MaterialId = Gel, .Method = "Spray"}),
              "Cannot set the application method of GC-110 to \"Spray\": the material-type table has no such "
              "method of \"Pigmented production gel\".");
}

TEST_F(WhatIfTest, ComparesEachMonthEnd) {
    const ShopRecords changed = With({
        {.Kind = WhatIfKind::LeftOut, .MaterialId = ResinA}
    });
    const ShopFigures before(Shop);
    const ShopFigures after(changed);
    const std::vector<MonthComparison> months =
        Compare(before, after, MonthNumberOf(2005, 5), MonthNumberOf(2005, 6));
    ASSERT_EQ(months.size(), 2u);
    EXPECT_EQ(months[0].MonthEnd, MonthNumberOf(2005, 5));
    EXPECT_EQ(months[0].Emissions.Difference.Exact, 0); // PR-A is first used in 6/2005
    // 1 Mg of gel coat at 33 %: p = round2(0.445 * 33^1.675) = 155.55; it may emit 159 kg.
    EXPECT_NEAR(months[1].Emissions.After.Report, 155.55, 0.01);
    EXPECT_EQ(months[1].Allowance.After.Report, 159);
    // 16,000 lb = 7.26 Mg of resin may emit 46 kg/Mg.
    EXPECT_EQ(months[1].Allowance.Difference.Report, -333.96);
    EXPECT_NEAR(months[1].Allowance.Difference.Exact, -46 * 16 / 2.2046, 1e-9);
    EXPECT_NEAR(months[1].Headroom.Difference.Exact,
                months[1].Allowance.Difference.Exact - months[1].Emissions.Difference.Exact, 1e-9);
    EXPECT_EQ(months[1].Headroom.After.Report, after.At(MonthNumberOf(2005, 6)).Average.Headroom().Report);
}

TEST_F(WhatIfTest, ComparesRowsThatComeAndGo) {
    const ShopRecords changed = With({
        {.Kind = WhatIfKind::Method,  .MaterialId = ResinA, .Method = "Spray"},
        {.Kind = WhatIfKind::Content, .MaterialId = Gel,    .Number = 31.5   }
    });
    const MonthComparison month =
        Compare(ShopFigures(Shop), ShopFigures(changed), MonthEnd, MonthEnd).front();
    ASSERT_EQ(month.Contents.size(), 3u);
    const ContentComparison& comes = month.Contents[0];
    EXPECT_EQ(comes.Item, "production resin, atomized");
    EXPECT_FALSE(comes.Before);
    ASSERT_TRUE(comes.After);
    EXPECT_EQ(comes.After->Exact, 35);
    EXPECT_FALSE(comes.Difference);
    EXPECT_EQ(comes.JudgedBefore.Is, State::NotUsed);
    EXPECT_EQ(comes.JudgedAfter.Is, State::Over); // 35 % against 28 %
    const ContentComparison& goes = month.Contents[1];
    EXPECT_EQ(goes.Item, "production resin, nonatomized");
    EXPECT_TRUE(goes.Before);
    EXPECT_FALSE(goes.After);
    EXPECT_EQ(goes.JudgedAfter.Is, State::NotUsed);
    const ContentComparison& stays = month.Contents[2];
    EXPECT_EQ(stays.Item, "pigmented gel coat");
    EXPECT_EQ(stays.Limit, 33);
    ASSERT_TRUE(stays.Difference);
    EXPECT_EQ(stays.Difference->Report, -1.5);
    EXPECT_EQ(stays.Difference->Exact, -1.5);
}

TEST_F(WhatIfTest, ComparesPairsThatAUserAdded) {
    for (const char* method : {"Brush", "Dip"})
        Shop.Types.push_back({.MaterialType = "Bonding putty",
                              .HapLimit = 20,
                              .ApplicationMethod = method,
                              .EfCoefficient = 0.01,
                              .EfExponent = 2,
                              .EmissionLimit = 10});
    Shop.Materials[1].MaterialType = "Bonding putty";
    Shop.Materials[1].ApplicationMethod = "Dip";
    const ShopRecords changed = With({
        {.Kind = WhatIfKind::Method, .MaterialId = ResinA, .Method = "Brush"}
    });
    const MonthComparison month =
        Compare(ShopFigures(Shop), ShopFigures(changed), MonthEnd, MonthEnd).front();
    ASSERT_EQ(month.Contents.size(), 3u);
    EXPECT_EQ(month.Contents[0].Item, "pigmented gel coat");
    EXPECT_EQ(month.Contents[1].Item, "Bonding putty, Brush");
    EXPECT_FALSE(month.Contents[1].Before);
    EXPECT_EQ(month.Contents[2].Item, "Bonding putty, Dip");
    EXPECT_FALSE(month.Contents[2].After);
}

} // namespace
} // namespace mact
