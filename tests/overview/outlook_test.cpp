#include "overview/outlook.h"

#include "tests/overview/made_records.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

/// Resin whose point value is its content, so that the average is over above 46 %.
class OutlookTest : public testing::Test {
protected:
    ShopRecords Shop{
        .Types = SomeTypes(), .Materials = {MadeMaterial(1, 40), MadeMaterial(2, 52)}
    };

    OutlookTest() {
        Shop.Types[2].EfCoefficient = 1;
        Shop.Types[2].EfExponent = 1;
    }
    std::optional<MonthNumber> MonthOver() const { return MonthOverIfUseGoesOn(ShopFigures(Shop)); }
};

TEST_F(OutlookTest, FindsTheMonthInWhichTheMeanOfThreeMonthsMakesTheAverageOver) {
    UseAllYear(Shop, 1, 1000);
    Use(Shop, 2, "12/2005", 3000);
    // The mean of the three months is 1000 lb of each. With n more such months the window has 12,000 lb at 40
    // % and 3000 + 1000 n at 52 %; above 46 % it is once the latter is more than the former, with n = 10.
    EXPECT_EQ(MonthOver(), MonthNumberOf(2006, 10));
}

TEST_F(OutlookTest, AMeanThatStaysWithinIsNeverOver) {
    UseAllYear(Shop, 1, 1000);
    Use(Shop, 2, "12/2005", 2000);
    EXPECT_EQ(MonthOver(), std::nullopt);
}

TEST_F(OutlookTest, AnAverageThatIsOverAlreadyIsNotForetold) {
    UseAllYear(Shop, 2, 1000);
    EXPECT_EQ(MonthOver(), std::nullopt);
}

TEST_F(OutlookTest, ThereIsNothingToForetellWithoutUse) {
    EXPECT_EQ(MonthOver(), std::nullopt);
}

} // namespace
} // namespace mact
