#include "tests/support/bytes.h"
#include "usage/usage_record.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

const std::string UsageBytes = Hex("05 00") + Hex("0C 00") + "3/2005 " +
                               Hex("00 00 00 00 00 20 5E 40") + // 120.5
                               Hex("02 00") + Hex("FF FF") + Zeros(9);

TEST(UsageRecordTest, PacksToTheBytesOfEarlierVersions) {
    EXPECT_EQ(Pack(UsageLayout,
                   {.UsageId = 5, .MaterialId = 12, .Period = "3/2005", .Quantity = 120.5, .Unit = UnitLbs}),
              UsageBytes);
}

TEST(UsageRecordTest, UnpacksTheBytesOfEarlierVersions) {
    UsageRecord usage;
    Unpack(UsageLayout, UsageBytes, usage);
    EXPECT_EQ(usage.UsageId, 5);
    EXPECT_EQ(usage.MaterialId, 12);
    EXPECT_EQ(usage.Period, "3/2005");
    EXPECT_EQ(usage.Quantity, 120.5);
    EXPECT_EQ(usage.Unit, 2);
    EXPECT_TRUE(usage.Active);
}

TEST(UsageRecordTest, APeriodOfMoreThanSevenCharactersIsCut) {
    EXPECT_EQ(Pack(UsageLayout, {.Period = "10/12345"}).substr(4, 7), "10/1234");
}

} // namespace
} // namespace mact
