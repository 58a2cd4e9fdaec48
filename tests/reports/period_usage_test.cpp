#include "reports/period_usage.h"

#include "reports/report_period.h"
#include "tests/support/test_program.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

double Pounds(const PeriodUsage& usage, std::int16_t materialId, double density) {
    const Result<double> pounds =
        usage.PoundsUsed({.MaterialId = materialId, .CustomId = "GC-1", .Density = density});
    EXPECT_TRUE(pounds);
    return pounds ? *pounds : -1;
}

TEST(PeriodUsageTest, AddsUpTheRecordsOfOneMaterialInPounds) {
    const PeriodUsage usage({
        {.MaterialId = 1, .Quantity = 2,   .Unit = UnitMgal},
        {.MaterialId = 2, .Quantity = 77,  .Unit = UnitLbs },
        {.MaterialId = 1, .Quantity = 0.5, .Unit = UnitLbs }
    });
    EXPECT_EQ(Pounds(usage, 1, 9), 18000.5);
    EXPECT_EQ(Pounds(usage, 2, 9), 77);
}

TEST(PeriodUsageTest, AddsInFileOrder) {
    // 1e16 + 1 is 1e16 in a double: the 1 is lost. In another order it would survive.
    const PeriodUsage usage({
        {.MaterialId = 1, .Quantity = 1e16,  .Unit = UnitLbs},
        {.MaterialId = 1, .Quantity = 1,     .Unit = UnitLbs},
        {.MaterialId = 1, .Quantity = -1e16, .Unit = UnitLbs}
    });
    EXPECT_EQ(Pounds(usage, 1, 9), 0);
}

TEST(PeriodUsageTest, MaterialWithoutUseHasZeroPounds) {
    const PeriodUsage usage({
        {.MaterialId = 1, .Quantity = 2, .Unit = UnitLbs}
    });
    EXPECT_EQ(Pounds(usage, 3, 9), 0);
}

TEST(PeriodUsageTest, IsEmptyWithoutRecords) {
    EXPECT_TRUE(PeriodUsage({}).IsEmpty());
    EXPECT_FALSE(PeriodUsage({UsageRecord{.MaterialId = 1}}).IsEmpty());
}

TEST(PeriodUsageTest, SumThatIsTooLargeIsAFailureThatNamesTheMaterial) {
    const PeriodUsage usage({
        {.MaterialId = 1, .Quantity = 1e308, .Unit = UnitLbs},
        {.MaterialId = 1, .Quantity = 1e308, .Unit = UnitLbs}
    });
    const Result<double> pounds = usage.PoundsUsed({.MaterialId = 1, .CustomId = "GC-\xD8"});
    ASSERT_FALSE(pounds);
    EXPECT_EQ(SentenceOf(pounds.error()),
              "Cannot add up the pounds used of the material \"GC-\xC3\x98\": the result "
              "is too large or not a number.");
}

TEST(PeriodUsageTest, OverflowOfOneRecordIsAFailureEvenWhereTheNextWouldCancelIt) {
    const PeriodUsage usage({
        {.MaterialId = 1, .Quantity = 1e308, .Unit = UnitMgal},
        {.MaterialId = 1, .Quantity = 5,     .Unit = UnitLbs }
    });
    EXPECT_FALSE(usage.PoundsUsed({.MaterialId = 1, .Density = 10}));
}

TEST(PeriodUsageTest, KilogramsArePoundsDividedByTheRegulationsFactor) {
    EXPECT_DOUBLE_EQ(Kilograms(2204.6), 1000);
}

/// The pounds of material 1 that are found for the months.
double PoundsRead(const std::vector<UsageRecord>& records, const std::string& months) {
    TestProgram program;
    for (const UsageRecord& record : records)
        EXPECT_FALSE(SaveUsage(program.App, record));
    const Result<PeriodUsage> usage = ReadPeriodUsage(program.App, months);
    return usage ? Pounds(*usage, 1, 9) : -1;
}

TEST(ReadPeriodUsageTest, JanuaryIsNotFoundWithinElevenOrTheYear) {
    EXPECT_EQ(PoundsRead(
                  {
                      {.MaterialId = 1, .Period = "1/2008", .Quantity = 4, .Unit = UnitLbs}
    },
                  "11/2008|"),
              0);
}

TEST(ReadPeriodUsageTest, MonthWithALeadingZeroBelongsToNoReport) {
    EXPECT_EQ(PoundsRead(
                  {
                      {.MaterialId = 1, .Period = "03/2005", .Quantity = 4, .Unit = UnitLbs}
    },
                  *BuildPeriodList("3/2005", 12)),
              0);
}

// The list of months ends in a bar, and the search adds another one. An empty period matches between the two.
TEST(ReadPeriodUsageTest, EmptyPeriodBelongsToEveryReport) {
    EXPECT_EQ(PoundsRead(
                  {
                      {.MaterialId = 1, .Period = "", .Quantity = 4, .Unit = UnitLbs}
    },
                  *BuildPeriodList("3/2005", 12)),
              4);
}

TEST(ReadPeriodUsageTest, FirstAndLastMonthCountAndTheirNeighboursDoNot) {
    EXPECT_EQ(PoundsRead(
                  {
                      {.MaterialId = 1, .Period = "3/2004", .Quantity = 1,    .Unit = UnitLbs},
                      {.MaterialId = 1, .Period = "4/2004", .Quantity = 10,   .Unit = UnitLbs},
                      {.MaterialId = 1, .Period = "3/2005", .Quantity = 100,  .Unit = UnitLbs},
                      {.MaterialId = 1, .Period = "4/2005", .Quantity = 1000, .Unit = UnitLbs}
    },
                  *BuildPeriodList("3/2005", 12)),
              110);
}

} // namespace
} // namespace mact
