#include "materials/material_record.h"
#include "tests/support/bytes.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

const std::string GelCoatBytes = Hex("07 00") + Padded("GC-110", 100) +
                                 Padded("Pigmented production gel", 100) + Padded("All", 100) +
                                 Hex("00 00 00 00 00 80 22 40") + // 9.25
                                 Hex("00 00 00 00 00 C0 40 40") + // 33.5
                                 Hex("00 00 00 00 00 00 D0 3F") + // 0.25
                                 Padded("State test 2004", 255) + Padded("Gel coat, \xD8st blue", 100) +
                                 Hex("FF FF") + Hex("00 00 00 00 00 00 29 40") + // 12.5
                                 Hex("00 00 00 00 00 00 F8 3F") +                // 1.5
                                 Zeros(72) +                      // nine numbers: pairs 2 to 5, content 6
                                 Hex("00 00 00 00 00 00 F8 3F") + // 1.5
                                 Hex("00 00 00 00 00 00 F8 BF") + // -1.5
                                 Zeros(657);

TEST(MaterialRecordTest, PacksToTheBytesOfEarlierVersions) {
    EXPECT_EQ(Pack(MaterialLayout, {.MaterialId = 7,
                                    .CustomId = "GC-110",
                                    .MaterialType = "Pigmented production gel",
                                    .ApplicationMethod = "All",
                                    .Density = 9.25,
                                    .HapContent = 33.5,
                                    .EmissionFactor = 0.25,
                                    .Comments = "State test 2004",
                                    .Description = "Gel coat, \xD8st blue",
                                    .Content1 = 12.5,
                                    .Factor1 = 1.5,
                                    .Factor6 = 1.5,
                                    .Filler = -1.5}),
              GelCoatBytes);
}

TEST(MaterialRecordTest, UnpackingAndPackingChangesNoByte) {
    ASSERT_EQ(GelCoatBytes.size(), 1444U);
    MaterialRecord material;
    Unpack(MaterialLayout, GelCoatBytes, material);
    EXPECT_EQ(material.CustomId, "GC-110");
    EXPECT_EQ(material.Filler, -1.5);
    EXPECT_EQ(Pack(MaterialLayout, material), GelCoatBytes);
}

TEST(MaterialRecordTest, EachPollutantPairStandsInItsPlace) {
    MaterialRecord material;
    for (std::size_t index = 0; index < 6; ++index) {
        material.*PollutantContents[index] = static_cast<double>(index + 1);
        material.*PollutantFactors[index] = static_cast<double>(10 * (index + 1));
    }
    const std::string slot = Pack(MaterialLayout, material);
    for (std::size_t index = 0; index < 6; ++index) {
        const auto numberAt = [&](std::size_t offset) {
            return std::bit_cast<double>(LoadLittleEndian<std::uint64_t>(slot.data() + offset));
        };
        EXPECT_EQ(numberAt(683 + 16 * index), static_cast<double>(index + 1));
        EXPECT_EQ(numberAt(691 + 16 * index), static_cast<double>(10 * (index + 1)));
    }
}

} // namespace
} // namespace mact
