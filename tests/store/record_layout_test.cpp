#include "store/companies.h"
#include "store/material_types.h"
#include "tests/support/bytes.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

const std::string CompanyBytes = Hex("02 01")                        // 258
                                 + Padded("Fjord B\xE5ter", 250)     // å
                                 + Padded("\xC5lesund, pier 3", 250) // Å
                                 + Hex("FF FF");

TEST(CompanyLayoutTest, PacksToTheBytesOfEarlierVersions) {
    EXPECT_EQ(
        Pack(CompanyLayout,
             {.CompanyId = 258, .CompanyName = "Fjord B\xE5ter", .CompanyLocation = "\xC5lesund, pier 3"}),
        CompanyBytes);
}

TEST(CompanyLayoutTest, UnpacksTheBytesOfEarlierVersions) {
    CompanyRecord company;
    Unpack(CompanyLayout, CompanyBytes, company);
    EXPECT_EQ(company.CompanyId, 258);
    EXPECT_EQ(company.CompanyName, "Fjord B\xE5ter");
    EXPECT_EQ(company.CompanyLocation, "\xC5lesund, pier 3");
    EXPECT_TRUE(company.Active);
}

TEST(HapContentLayoutTest, PacksToTheBytesOfEarlierVersions) {
    // 28, 0.014, 2.425 and 46 as IEEE 754 binary64 numbers, little-endian.
    EXPECT_EQ(Pack(HapContentLayout, {.MaterialType = "Production resin",
                                      .HapLimit = 28,
                                      .ApplicationMethod = "Spray",
                                      .EfCoefficient = 0.014,
                                      .EfExponent = 2.425,
                                      .EmissionLimit = 46}),
              Padded("Production resin", 100) + Hex("00 00 00 00 00 00 3C 40") + Padded("Spray", 100) +
                  Hex("79 E9 26 31 08 AC 8C 3F") + Hex("66 66 66 66 66 66 03 40") +
                  Hex("00 00 00 00 00 00 47 40"));
}

struct SmallRecord {
    std::string Name{};
    bool Active = false;
};
constexpr std::tuple SmallFields{
    Text(&SmallRecord::Name, 4),
    Flag(&SmallRecord::Active),
};
constexpr RecordLayout SmallLayout{8, SmallFields};

TEST(RecordLayoutTest, ALongerTextIsCutToItsFirstCharacters) {
    EXPECT_EQ(Pack(SmallLayout, {.Name = "ABCDEF", .Active = true}), "ABCD" + Hex("FF FF 00 00"));
}
TEST(RecordLayoutTest, AShorterTextIsFilledWithSpacesAndTheRestOfTheSlotIsZero) {
    EXPECT_EQ(Pack(SmallLayout, {.Name = "A"}), "A   " + Hex("00 00 00 00"));
}
TEST(RecordLayoutTest, SlotsFollowEachOther) {
    std::string slots = "first";
    AppendPacked(SmallLayout, {.Name = "A"}, slots);
    AppendPacked(SmallLayout, {.Name = "B", .Active = true}, slots);
    EXPECT_EQ(slots, "firstA   " + Hex("00 00 00 00") + "B   " + Hex("FF FF 00 00"));
}
TEST(RecordLayoutTest, AnyFlagButMinusOneIsFalse) {
    SmallRecord record;
    Unpack(SmallLayout, "ABCD" + Hex("01 00 00 00"), record);
    EXPECT_FALSE(record.Active);
    Unpack(SmallLayout, "ABCD" + Hex("FF FF 00 00"), record);
    EXPECT_TRUE(record.Active);
}

TEST(RecordLayoutTest, ATextLosesTheSpacesAtItsEndAlone) {
    SmallRecord record{.Name = "before"};
    Unpack(SmallLayout, " A  " + Hex("00 00 00 00"), record);
    EXPECT_EQ(record.Name, " A");
    Unpack(SmallLayout, "    " + Hex("00 00 00 00"), record);
    EXPECT_EQ(record.Name, "");
    Unpack(SmallLayout, std::string("A\0\0\0", 4) + Hex("00 00 00 00"), record);
    EXPECT_EQ(record.Name, std::string("A\0\0\0", 4));
}

TEST(RecordLayoutTest, FieldsThatAreNotAskedForStayAsTheyAre) {
    CompanyRecord company{.CompanyId = 3, .CompanyName = "before", .CompanyLocation = "before"};
    UnpackOnly<&CompanyRecord::CompanyLocation, &CompanyRecord::CompanyId>(CompanyLayout, CompanyBytes,
                                                                           company);
    EXPECT_EQ(company.CompanyId, 258);
    EXPECT_EQ(company.CompanyName, "before");
    EXPECT_EQ(company.CompanyLocation, "\xC5lesund, pier 3");
}

TEST(RecordLayoutTest, AStoredFlagIsTheNumberInTheSlot) {
    EXPECT_EQ(StoredFlag(SmallLayout, "ABCD" + Hex("FF FF 00 00")), -1);
    EXPECT_EQ(StoredFlag(SmallLayout, "ABCD" + Hex("07 00 00 00")), 7);
    EXPECT_EQ(StoredFlag(HapContentLayout, std::string(232, '\0')), std::nullopt);
}

} // namespace
} // namespace mact
