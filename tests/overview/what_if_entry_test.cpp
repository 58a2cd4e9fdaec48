#include "overview/what_if_entry.h"
#include "tests/overview/made_records.h"

#include <gtest/gtest.h>

#include <limits>

namespace mact {
namespace {

constexpr MonthNumber MonthEnd = MonthNumberOf(2005, 12);
constexpr double OneMg = 2204.6; // pounds

class WhatIfEntryTest : public testing::Test {
protected:
    enum Place : std::size_t { Resin, Gel, Filled, Strange };

    WhatIfEntryTest() {
        Shop.Types = SomeTypes();
        Shop.Materials = {
            MadeMaterial(1, 35),
            MadeMaterial(2, 33, "Pigmented production gel", "All"),
            MadeMaterial(3, 40, "Production resin (Filled)"),
            MadeMaterial(4, 40, "Putty", "Brush"),
        };
        Shop.Materials[Filled].Filler = 26;
    }
    std::string Wrong(const WhatIfEntry& entry) {
        const CheckedWhatIf checked = CheckWhatIf(Shop, entry);
        EXPECT_NE(checked.Change.has_value(), !checked.Wrong.empty());
        return checked.Wrong;
    }
    WhatIfField Field(const WhatIfEntry& entry) { return CheckWhatIf(Shop, entry).Field; }
    std::string Start(const WhatIfEntry& entry) {
        return StartingPoint(ShopFigures(Shop), Shop, entry, MonthEnd);
    }
    std::string BreakEvens(std::size_t material) {
        const ShopFigures figures(Shop);
        return BreakEvenText(figures, BreakEvensAt(figures, MonthEnd), material, MonthEnd);
    }
    ShopRecords Shop;
};

TEST_F(WhatIfEntryTest, WithoutAMaterialOneIsToBeChosen) {
    EXPECT_EQ(Wrong({}), "Choose a material.");
    EXPECT_EQ(Field({}), WhatIfField::Material);
    EXPECT_EQ(Start({}), "");
}

TEST_F(WhatIfEntryTest, ANumberBecomesTheChange) {
    const CheckedWhatIf checked =
        CheckWhatIf(Shop, {.Material = Gel, .Kind = WhatIfKind::Content, .Number = " 31.5 "});
    ASSERT_TRUE(checked.Change);
    EXPECT_EQ(checked.Change->Kind, WhatIfKind::Content);
    EXPECT_EQ(checked.Change->MaterialId, 2);
    EXPECT_EQ(checked.Change->Number, 31.5);
    EXPECT_EQ(checked.Field, WhatIfField::None);
}

TEST_F(WhatIfEntryTest, TheEndsOfTheRangeAreInIt) {
    for (const char* number : {"0", "100"})
        EXPECT_EQ(Wrong({.Material = Gel, .Kind = WhatIfKind::Content, .Number = number}), "");
    EXPECT_EQ(Wrong({.Material = Gel, .Kind = WhatIfKind::Density, .Number = "0"}), "");
}

TEST_F(WhatIfEntryTest, WhatIsThereAlreadyIsNoChange) {
    EXPECT_EQ(Wrong({.Material = Filled, .Kind = WhatIfKind::Filler, .Number = "26"}),
              "The filler of M-3 is 26 % already.");
    EXPECT_EQ(Wrong({.Material = Gel, .Kind = WhatIfKind::Density, .Number = "9"}),
              "The density of M-2 is 9 lb/gal already.");
    EXPECT_EQ(Wrong({.Material = Resin, .Kind = WhatIfKind::Method, .Method = "NON-SPRAY"}),
              "The application method of M-1 is \"NON-SPRAY\" already.");
}

TEST_F(WhatIfEntryTest, AMethodIsToBeChosenIfThereIsOne) {
    EXPECT_EQ(Wrong({.Material = Resin, .Kind = WhatIfKind::Method}), "Choose the new application method.");
    EXPECT_EQ(Field({.Material = Resin, .Kind = WhatIfKind::Method}), WhatIfField::Method);
    EXPECT_EQ(Wrong({.Material = Strange, .Kind = WhatIfKind::Method}),
              "The material-type table has no method for \"Putty\".");
    EXPECT_EQ(Field({.Material = Strange, .Kind = WhatIfKind::Method}), WhatIfField::None);
}

TEST_F(WhatIfEntryTest, MethodsAreThoseOfTheTypeOnceEach) {
    Shop.Types.push_back({.MaterialType = "production resin ", .ApplicationMethod = "SPRAY"});
    EXPECT_EQ(MethodsFor(Shop, Resin),
              (std::vector<std::string>{"Spray", "Spray (Vacuum bagging after roll-out)", "Non-Spray",
                                        "Closed Molding"}));
    EXPECT_TRUE(MethodsFor(Shop, Strange).empty());
}

TEST_F(WhatIfEntryTest, AnAmountNeedsUseFromTheMonthOn) {
    Use(Shop, 1, "6/2005", OneMg);
    Use(Shop, 1, "9/2005", 0);
    WhatIfEntry entry{
        .Material = Resin, .Kind = WhatIfKind::Amount, .Number = "0.5", .Month = 6, .Year = "2005"};
    const CheckedWhatIf checked = CheckWhatIf(Shop, entry);
    ASSERT_TRUE(checked.Change);
    EXPECT_EQ(checked.Change->Number, 0.5);
    EXPECT_EQ(checked.Change->From, MonthNumberOf(2005, 6));
    entry.Month = 7;
    EXPECT_EQ(Wrong(entry), "There is no use of M-1 in JUL 2005 or later.");
    EXPECT_EQ(Field(entry), WhatIfField::From);
}

TEST_F(WhatIfEntryTest, AnotherMaterialIsToBeChosenForAReplacement) {
    EXPECT_EQ(Wrong({.Material = Gel, .Kind = WhatIfKind::Replacement}),
              "Choose the material that takes its place.");
    EXPECT_EQ(Wrong({.Material = Gel, .Kind = WhatIfKind::Replacement, .Replacement = Gel}),
              "Choose another material than M-2 itself.");
    EXPECT_EQ(Wrong({.Material = Gel, .Kind = WhatIfKind::Replacement, .Replacement = Resin}),
              "There is no use of M-2 to replace.");
    Use(Shop, 2, "6/2005", OneMg);
    const CheckedWhatIf checked =
        CheckWhatIf(Shop, {.Material = Gel, .Kind = WhatIfKind::Replacement, .Replacement = Resin});
    ASSERT_TRUE(checked.Change);
    EXPECT_EQ(checked.Change->MaterialId, 2);
    EXPECT_EQ(checked.Change->Replacement, 1);
}

TEST_F(WhatIfEntryTest, TheStartingPointSaysWhatCounts) {
    EXPECT_EQ(Start({.Material = Resin, .Kind = WhatIfKind::Density}),
              "Today 9 lb/gal. It counts for quantities in gallons.");
    EXPECT_EQ(Start({.Material = Filled, .Kind = WhatIfKind::Filler}),
              "Today 26 %. No report applies it: see the exact figures.");
    EXPECT_EQ(Start({.Material = Resin, .Kind = WhatIfKind::Filler}),
              "Today 0 %. It counts for filled resins, and this is none.");
    EXPECT_EQ(Start({.Material = Resin, .Kind = WhatIfKind::Method}), "Today \"Non-Spray\".");
    EXPECT_EQ(Start({.Material = Resin, .Kind = WhatIfKind::Replacement}),
              "The other material is used in its place, of equal mass.");
}

TEST_F(WhatIfEntryTest, TheAmountIsThatOfTheTwelveMonths) {
    Use(Shop, 1, "12/2004", OneMg); // before
    Use(Shop, 1, "1/2005", OneMg);
    Use(Shop, 1, "12/2005", OneMg);
    const WhatIfEntry entry{.Material = Resin, .Kind = WhatIfKind::LeftOut};
    EXPECT_EQ(Start(entry), "The amount recorded for the twelve months ending with DEC 2005 is 2000 kg.");
    Shop.Usage.back().Quantity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Start(entry), "The amount recorded for the twelve months ending with DEC 2005 is no number.");
}

TEST_F(WhatIfEntryTest, NamesAreShownInUtf8) {
    Shop.Materials[Gel].CustomId = "Gr\xFCn\t1";
    EXPECT_EQ(Wrong({.Material = Gel, .Kind = WhatIfKind::LeftOut}),
              "There is no use of Gr\xC3\xBCn?1 to leave out.");
}

TEST_F(WhatIfEntryTest, AFilledResinHasNoBreakEvenOfARow) {
    Use(Shop, 3, "6/2005", OneMg);
    // 0.014 h^2.275 * 0.74 = 46 at 40.1100 %.
    EXPECT_EQ(BreakEvens(Filled),
              "Break-even content of M-3 for DEC 2005: of the average 40.11 %, of its row "
              "none (a filled resin is in no row).");
}

TEST_F(WhatIfEntryTest, AnyContentWillDoWhereTheRoomIsLarge) {
    Use(Shop, 2, "6/2005", 1);
    Use(Shop, 1, "6/2005", 10000 * OneMg);
    EXPECT_EQ(BreakEvens(Gel), "Break-even content of M-2 for DEC 2005: of the average any, of its row "
                               "(pigmented gel coat) 33 %.");
}

TEST_F(WhatIfEntryTest, ARowWithoutALimitIsSaid) {
    Shop.Types.push_back({.MaterialType = "Putty",
                          .HapLimit = -1,
                          .ApplicationMethod = "Brush",
                          .EfCoefficient = 0.01,
                          .EfExponent = 2,
                          .EmissionLimit = 16});
    Use(Shop, 4, "6/2005", OneMg);
    EXPECT_EQ(
        BreakEvens(Strange), // 0.01 * 40^2 = 16
        "Break-even content of M-4 for DEC 2005: of the average 40 %, of its row (Putty, Brush) none (it "
        "has no limit).");
}

TEST_F(WhatIfEntryTest, ClosedMoldingHasNoPartInTheAverage) {
    Shop.Materials[Resin].ApplicationMethod = "Closed Molding";
    Use(Shop, 1, "6/2005", OneMg);
    EXPECT_EQ(BreakEvens(Resin),
              "Break-even content of M-1 for DEC 2005: none, it has no part in the average.");
}

} // namespace
} // namespace mact
