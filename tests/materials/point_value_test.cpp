#include "materials/point_value.h"

#include <cmath>

#include <gtest/gtest.h>

namespace mact {
namespace {

TEST(PointValueTest, IsTheEquationsResultRoundedToTwoDecimals) {
    // 0.014 * 35^2.425 = 77.7096..., 0.445 * 33^1.675 = 155.5514...
    EXPECT_EQ(PointValue({.EfCoefficient = 0.014, .EfExponent = 2.425}, 35), 77.71);
    EXPECT_EQ(PointValue({.EfCoefficient = 0.445, .EfExponent = 1.675}, 33), 155.55);
}

TEST(PointValueTest, HalfACentGoesToTheEvenNeighbour) {
    EXPECT_EQ(PointValue({.EfCoefficient = 0.125, .EfExponent = 1}, 1), 0.12);
    EXPECT_EQ(PointValue({.EfCoefficient = 0.375, .EfExponent = 1}, 1), 0.38);
}

TEST(PointValueTest, HasNoResultForAnInvalidPower) {
    EXPECT_FALSE(std::isfinite(PointValue({.EfCoefficient = 1, .EfExponent = -1}, 0)));
    EXPECT_FALSE(std::isfinite(PointValue({.EfCoefficient = 1, .EfExponent = 0.5}, -4)));
}

} // namespace
} // namespace mact
