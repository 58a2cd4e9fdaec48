#include "lists/list_status.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

UsageRecord Used(const char* period, double quantity, std::int16_t unit) {
    return {.UsageId = 1, .MaterialId = 1, .Period = period, .Quantity = quantity, .Unit = unit};
}

TEST(ListStatusTest, NamesWhatWasSavedAndCountsItsMonth) {
    const UsageRecord saved = Used("11/2026", 402, UnitLbs);
    const std::vector<UsageRecord> live{Used("11/2026", 5, UnitLbs), Used("10/2026", 5, UnitLbs), saved};
    EXPECT_EQ(SavedUsageText(saved, "PF-402  ", live),
              "Saved PF-402, NOV 2026, 402 lbs; 2 records this month");
    EXPECT_EQ(SavedUsageText(saved, "PF-402", {saved}),
              "Saved PF-402, NOV 2026, 402 lbs; 1 record this month");
}

TEST(ListStatusTest, ShowsTheQuantityAsItWasEntered) {
    const UsageRecord saved = Used("1/2005", 0.0125, UnitMgal);
    EXPECT_EQ(SavedUsageText(saved, "GC\xE9", {saved}),
              "Saved GC\u00E9, JAN 2005, 0.0125 Mgal; 1 record this month");
}

TEST(ListStatusTest, AnUnusualPeriodIsShownAsItIs) {
    const UsageRecord saved = Used("13/2005", 1, 7);
    EXPECT_EQ(SavedUsageText(saved, "GC", {saved}), "Saved GC, 13/2005, 1 (unit 7); 1 record this month");
}

TEST(ListStatusTest, CountsWhatIsListed) {
    EXPECT_EQ(ListedText(187, 187, "record"), "187 records");
    EXPECT_EQ(ListedText(1, 1, "material"), "1 material");
    EXPECT_EQ(ListedText(12, 187, "record"), "12 of 187 records");
}

} // namespace
} // namespace mact
