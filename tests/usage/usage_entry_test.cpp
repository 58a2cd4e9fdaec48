#include "tests/support/test_program.h"
#include "usage/usage_entry.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

const UsageEntry GoodEntry{
    .MaterialId = 12, .Month = 3, .Year = "2026", .Quantity = " 12.5 ", .Unit = UnitLbs};

std::string ErrorsOf(const UsageEntry& entry) {
    return CheckUsageEntry(entry).Text();
}

TEST(UsageEntryTest, AWholeEntryHasNoErrors) {
    EXPECT_TRUE(CheckUsageEntry(GoodEntry).IsEmpty());
}

TEST(UsageEntryTest, EachErrorHasItsLineInTheOrderOfTheForm) {
    EXPECT_EQ(ErrorsOf({}), "- You must select material to add a usage.\r\n"
                            "- Quantity Used must ba a valid numeric value.\r\n"
                            "- You must select month and year.\r\n"
                            "- You must select unit.\r\n");
}

TEST(UsageEntryTest, AQuantityMustBeANumber) {
    for (const char* quantity : {"", "  ", "12,5", "1e999", "twelve", "0x10", "1 2"}) {
        UsageEntry entry = GoodEntry;
        entry.Quantity = quantity;
        EXPECT_EQ(ErrorsOf(entry), "- Quantity Used must ba a valid numeric value.\r\n") << quantity;
    }
    for (const char* quantity : {"0", "-3", "1e3", ".5", "5."}) {
        UsageEntry entry = GoodEntry;
        entry.Quantity = quantity;
        EXPECT_EQ(ErrorsOf(entry), "") << quantity;
    }
}

TEST(UsageEntryTest, AMonthAndAYearOfFourDigitsAreNeeded) {
    UsageEntry entry = GoodEntry;
    entry.Month.reset();
    EXPECT_EQ(ErrorsOf(entry), "- You must select month and year.\r\n");
    for (const char* year : {"", "26", "202", "20260", "20x6", "1899", "-200", "+200"}) {
        entry = GoodEntry;
        entry.Year = year;
        EXPECT_EQ(ErrorsOf(entry), "- You must select month and year.\r\n") << year;
    }
    for (const char* year : {"1900", "2000", "2026", "9999"}) {
        entry = GoodEntry;
        entry.Year = year;
        EXPECT_EQ(ErrorsOf(entry), "") << year;
    }
}

TEST(UsageEntryTest, TheRecordHasTheMonthWithoutALeadingZeroAndTheNumberOfTheText) {
    const UsageRecord record = RecordOf(GoodEntry, 7);
    EXPECT_EQ(record.UsageId, 7);
    EXPECT_EQ(record.MaterialId, 12);
    EXPECT_EQ(record.Period, "3/2026");
    EXPECT_EQ(record.Quantity, 12.5);
    EXPECT_EQ(record.Unit, UnitLbs);
}

class UsageDuplicateTest : public testing::Test, public TestProgram {
protected:
    void Save(std::int16_t materialId, const std::string& period) {
        EXPECT_FALSE(
            SaveUsage(App, {.MaterialId = materialId, .Period = period, .Quantity = 1, .Unit = UnitLbs}));
    }
    bool IsRefused(std::int16_t usageId, std::int16_t materialId, const std::string& period) {
        const Result<bool> isDuplicate =
            IsDuplicate(App, {.UsageId = usageId, .MaterialId = materialId, .Period = period});
        return ShowFailure(App, isDuplicate) || *isDuplicate;
    }
};

TEST_F(UsageDuplicateTest, ASecondRecordForAMaterialAndMonthIsRefused) {
    Save(12, "3/2026");
    EXPECT_TRUE(IsRefused(0, 12, "3/2026"));
    EXPECT_FALSE(IsRefused(0, 12, "4/2026"));
    EXPECT_FALSE(IsRefused(0, 2, "3/2026"));
}

TEST_F(UsageDuplicateTest, ARecordIsNoDuplicateOfItself) {
    Save(12, "3/2026");
    EXPECT_FALSE(IsRefused(1, 12, "3/2026"));
    EXPECT_TRUE(IsRefused(2, 12, "3/2026"));
}

TEST_F(UsageDuplicateTest, OfSeveralRecordsTheFirstCounts) {
    Save(12, "3/2026");
    Save(12, "3/2026"); // as an older version may have left them
    EXPECT_FALSE(IsRefused(1, 12, "3/2026"));
    EXPECT_TRUE(IsRefused(2, 12, "3/2026"));
}

TEST_F(UsageDuplicateTest, ADeletedRecordIsNoDuplicate) {
    Save(12, "3/2026");
    ASSERT_FALSE(DeleteUsage(App, 1));
    EXPECT_FALSE(IsRefused(0, 12, "3/2026"));
}

TEST_F(UsageDuplicateTest, UsageThatCannotBeReadIsRefusedWithItsReason) {
    std::filesystem::create_directory(DataFile("1_usage.talvor"));
    EXPECT_TRUE(IsRefused(0, 12, "3/2026"));
    EXPECT_EQ(Prompts.Shown.size(), 1U);
    EXPECT_EQ(Prompts.Shown.front().Kind, PromptKind::Failure);
}

} // namespace
} // namespace mact
