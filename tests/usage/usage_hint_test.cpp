#include "usage/usage_hint.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

UsageRecord Used(std::int16_t usageId, std::int16_t materialId, double quantity,
                 std::int16_t unit = UnitLbs) {
    return {
        .UsageId = usageId, .MaterialId = materialId, .Period = "3/2005", .Quantity = quantity, .Unit = unit};
}

UsageEntry Entry(const char* quantity, std::int16_t unit) {
    return {.MaterialId = 1, .Month = 3, .Year = "2005", .Quantity = quantity, .Unit = unit};
}

TEST(MedianMonthTest, OfAnOddNumberOfRecordsIsTheOneInTheMiddle) {
    EXPECT_EQ(MedianMonth({Used(1, 1, 900), Used(2, 1, 100), Used(3, 1, 400)}, 1, 9, 0), 400);
}

TEST(MedianMonthTest, OfAnEvenNumberIsTheMeanOfTheTwoInTheMiddle) {
    EXPECT_EQ(MedianMonth({Used(1, 1, 900), Used(2, 1, 100), Used(3, 1, 400), Used(4, 1, 500)}, 1, 9, 0),
              450);
}

TEST(MedianMonthTest, IsInPoundsWhateverTheUnit) {
    EXPECT_EQ(MedianMonth({Used(1, 1, 0.5, UnitMgal)}, 1, 9, 0), 4500); // 500 gallons of 9 lb
}

TEST(MedianMonthTest, LeavesOutOtherMaterialsDeletedRecordsAndTheOneThatIsEdited) {
    UsageRecord deleted = Used(3, 1, 7000);
    deleted.Active = false;
    const std::vector<UsageRecord> usage{Used(1, 1, 400), Used(2, 2, 7000), deleted, Used(4, 1, 7000)};
    EXPECT_EQ(MedianMonth(usage, 1, 9, 4), 400);
}

TEST(MedianMonthTest, IsEmptyWithoutRecords) {
    EXPECT_EQ(MedianMonth({}, 1, 9, 0), std::nullopt);
    EXPECT_EQ(MedianMonth({Used(4, 1, 7000)}, 1, 9, 4), std::nullopt);
}

TEST(MedianMonthTest, RecordsThatAreTooLargeForPoundsAreLeftOut) {
    EXPECT_EQ(MedianMonth({Used(1, 1, 1e308, UnitMgal), Used(2, 1, 400)}, 1, 9, 0), 400);
    EXPECT_EQ(MedianMonth({Used(1, 1, 1.5e308), Used(2, 1, 1.7e308)}, 1, 9, 0), 1.6e308); // not their sum
}

TEST(UsageDoubtTest, IsTheHintWithoutTheQuantity) {
    EXPECT_EQ(DoubtOn(Entry("80", UnitLbs), 9.1, 402),
              "under a fifth of 402 lbs, this material's median month");
    EXPECT_EQ(DoubtOn(Entry("402", UnitLbs), 9.1, 402), "");
    EXPECT_EQ(DoubtOn(Entry("", UnitLbs), 9.1, 402), "");
}

TEST(UsageHintTest, ShowsTheQuantityInPounds) {
    const Hint hint = HintOn(Entry("55", UnitMgal), 9.1, {}); // 55,000 gallons of 9.1 lb
    EXPECT_EQ(hint.Text, "= 500,500 lbs");
    EXPECT_FALSE(hint.IsDoubtful);
    EXPECT_EQ(HintOn(Entry(" 402.5 ", UnitLbs), 9.1, {}).Text, "= 402.5 lbs");
}

TEST(UsageHintTest, DoubtsMoreThanFiveTimesTheMedianMonth) {
    const Hint hint = HintOn(Entry("55", UnitMgal), 9.1, 402);
    EXPECT_EQ(
        hint.Text,
        "= 500,500 lbs: over five times 402 lbs, this material's median month; 1 Mgal is 1,000 gallons");
    EXPECT_TRUE(hint.IsDoubtful);
    EXPECT_EQ(HintOn(Entry("2010.5", UnitLbs), 9.1, 402).Text,
              "= 2,010.5 lbs: over five times 402 lbs, this material's median month");
    EXPECT_FALSE(HintOn(Entry("2010", UnitLbs), 9.1, 402).IsDoubtful); // five times is not over
}

TEST(UsageHintTest, DoubtsLessThanAFifthOfTheMedianMonth) {
    const Hint hint = HintOn(Entry("80", UnitLbs), 9.1, 402);
    EXPECT_EQ(hint.Text, "= 80 lbs: under a fifth of 402 lbs, this material's median month");
    EXPECT_TRUE(hint.IsDoubtful);
    EXPECT_FALSE(HintOn(Entry("81", UnitLbs), 9.1, 402).IsDoubtful); // a fifth is 80.4
    EXPECT_FALSE(HintOn(Entry("80.4", UnitLbs), 9.1, 402).IsDoubtful);
}

TEST(UsageHintTest, DoubtsAQuantityBelowZeroAndADensityOfZero) {
    EXPECT_EQ(HintOn(Entry("-3", UnitLbs), 9.1, {}).Text, "= -3 lbs: a quantity below 0");
    EXPECT_EQ(HintOn(Entry("3", UnitMgal), 0, {}).Text,
              "= 0 lbs: gallons weigh nothing, since the material's density is 0");
    EXPECT_TRUE(HintOn(Entry("3", UnitMgal), 0, {}).IsDoubtful);
    EXPECT_FALSE(HintOn(Entry("0", UnitMgal), 9.1, {}).IsDoubtful);
}

TEST(UsageHintTest, AMedianMonthOfNothingIsNoMeasure) {
    EXPECT_FALSE(HintOn(Entry("3", UnitLbs), 9.1, 0).IsDoubtful);
    EXPECT_FALSE(HintOn(Entry("3", UnitLbs), 9.1, -5).IsDoubtful);
}

TEST(UsageHintTest, SaysNothingUntilThereIsAQuantityOfAMaterialInAUnit) {
    EXPECT_EQ(HintOn(Entry("", UnitLbs), 9.1, 402).Text, "");
    EXPECT_EQ(HintOn(Entry("5o", UnitLbs), 9.1, 402).Text, "");
    UsageEntry entry = Entry("5", UnitLbs);
    entry.Unit.reset();
    EXPECT_EQ(HintOn(entry, 9.1, 402).Text, "");
    entry = Entry("5", UnitLbs);
    entry.MaterialId.reset();
    EXPECT_EQ(HintOn(entry, 9.1, 402).Text, "");
}

TEST(UsageHintTest, SaysThatAQuantityIsTooLarge) {
    EXPECT_EQ(HintOn(Entry("1e308", UnitMgal), 9.1, 402).Text, "too large to be shown in lbs");
    EXPECT_TRUE(HintOn(Entry("1e308", UnitMgal), 9.1, 402).IsDoubtful);
}

} // namespace
} // namespace mact
