#include "base/numbers.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace mact {
namespace {

struct NumberTextCase {
    const char* Name;
    double Number;
    const char* Text;
};
void PrintTo(const NumberTextCase& given, std::ostream* out) {
    *out << given.Text;
}

constexpr NumberTextCase NumberTextCases[] = {
    {"Whole",                 35.0,               "35"                  },
    {"OneDecimal",            35.5,               "35.5"                },
    {"RoundedSum",            0.1 + 0.2,          "0.3"                 },
    {"NegativeZero",          -0.0,               "0"                   },
    {"Negative",              -12.25,             "-12.25"              },
    {"SmallestPlain",         0.0001,             "0.0001"              },
    {"SmallScientific",       0.00001,            "1E-05"               },
    {"FifteenDigits",         123456789012345.0,  "123456789012345"     },
    {"FirstScientific",       1e15,               "1E+15"               },
    {"SixteenDigitsRounded",  1234567890123456.0, "1.23456789012346E+15"},
    {"ThreeDigitExponent",    1e100,              "1E+100"              },
    {"NoTrailingZeros",       0.350,              "0.35"                },
    {"FifteenDigitsOfAThird", 1.0 / 3,            "0.333333333333333"   },
};
class NumberTextTest : public testing::TestWithParam<NumberTextCase> {};
TEST_P(NumberTextTest, IsTheGeneralDecimalText) {
    EXPECT_EQ(NumberText(GetParam().Number), GetParam().Text);
}
INSTANTIATE_TEST_SUITE_P(Numbers, NumberTextTest, testing::ValuesIn(NumberTextCases),
                         [](const auto& given) { return given.param.Name; });

TEST(NumberTexts, AreWhatPrintfWrites) {
    std::mt19937_64 random(15); // the same numbers in every run
    for (int round = 0; round < 200000; ++round) {
        const auto bits = random();
        const double anyNumber = std::bit_cast<double>(bits);
        const double wholeNumber = static_cast<double>(static_cast<std::int64_t>(bits) >> (bits % 64));
        const double withinRange = std::isfinite(anyNumber) && anyNumber != 0 ? anyNumber : 1;
        const std::array numbers{withinRange, wholeNumber + 1, wholeNumber / 100 + 0.01,
                                 std::nextafter(wholeNumber / 100 + 0.01, 0)};
        for (const double number : numbers) {
            std::array<char, 40> expected{};
            std::snprintf(expected.data(), expected.size(), "%.15G", number == 0 ? 0 : number);
            ASSERT_EQ(NumberText(number), expected.data());
        }
    }
}

struct ParseCase {
    const char* Name;
    std::string Text;
    double Value;
};
void PrintTo(const ParseCase& given, std::ostream* out) {
    *out << given.Text;
}

const ParseCase ParseCases[] = {
    {"Whole",           "12",                   12               },
    {"BlanksAround",    "  12.5  ",             12.5             },
    {"TabsAround",      "\t12.5\t",             12.5             },
    {"PlusSign",        "+3",                   3                },
    {"MinusSign",       "-3",                   -3               },
    {"PointFirst",      ".5",                   0.5              },
    {"PointLast",       "5.",                   5                },
    {"Exponent",        "1e3",                  1000             },
    {"ExponentSigned",  "1E-05",                0.00001          },
    {"ExponentPlus",    "2E+2",                 200              },
    {"LeadingZeros",    "007",                  7                },
    {"TooSmall",        "1e-400",               0                },
    {"TooSmallByZeros", "0." + std::string(400, '0') + "1",        0},
    {"ZerosAndExponent",                 "0." + std::string(400,                      '0') + "1e401", 1},
    {"ZeroHugeExponent",                "0e99999999999999999999",                                      0                                     },
    {"HugeNegative",                "1e-99999999999999999999", 0},
    {"CorrectlyRounded",                "0.1000000000000000055511151231257827021181583404541015625",                                      0.1                                                                      },
};
class ParseNumberTest : public testing::TestWithParam<ParseCase> {};
TEST_P(ParseNumberTest, ReadsTheNumber) {
    EXPECT_EQ(ParseNumber(GetParam().Text), GetParam().Value);
}
INSTANTIATE_TEST_SUITE_P(Numbers, ParseNumberTest, testing::ValuesIn(ParseCases),
                         [](const auto& given) { return given.param.Name; });

class NotNumericTest : public testing::TestWithParam<std::string> {};
TEST_P(NotNumericTest, IsNotANumber) {
    EXPECT_FALSE(IsNumeric(GetParam()));
}
INSTANTIATE_TEST_SUITE_P(Numbers, NotNumericTest,
                         testing::Values("", " ", ".", "+", "-", "1,234", "0x10", "inf", "nan", "1e", "1e+",
                                         "e5", "1.2.3", "1 2", "--1", "+-1", "- 1", "12lbs", "1e999",
                                         "-1e999", "1e99999999999999999999", std::string(400, '9'), "1\n",
                                         "1d5", std::string("1\0", 2),
                                         "\xA0"
                                         "1"));

// Exponents at the limit of 64 bits: adding the position of the first digit must not overflow.
TEST(ParseNumberLimits, LongWholeNumbersAreTheNearestDouble) {
    EXPECT_EQ(ParseNumber("999999999999999"), 999999999999999.0);
    EXPECT_EQ(ParseNumber("0000000000000012"), 12.0);
    EXPECT_EQ(ParseNumber("9007199254740993"),
              9007199254740992.0); // 2^53 + 1 lies between two, the even one wins
    EXPECT_EQ(ParseNumber("123456789012345678901"), 123456789012345680000.0);
}

TEST(ParseNumberLimits, ADigitBeforeTheLargestExponentIsStillTooLarge) {
    EXPECT_EQ(ParseNumber("1e9223372036854775807"), std::nullopt);
    EXPECT_EQ(ParseNumber("100e9223372036854775807"), std::nullopt);
}
TEST(ParseNumberLimits, AZeroBeforeTheSmallestExponentIsStillZero) {
    EXPECT_EQ(ParseNumber("1e-9223372036854775807"), 0);
    EXPECT_EQ(ParseNumber("0.00001e-9223372036854775807"), 0);
}

TEST(ParseInt16Test, RoundsHalvesToEven) {
    EXPECT_EQ(ParseInt16("2.5"), 2);
    EXPECT_EQ(ParseInt16("3.5"), 4);
    EXPECT_EQ(ParseInt16("-1"), -1);
}
TEST(ParseInt16Test, RefusesWhatDoesNotFit) {
    EXPECT_EQ(ParseInt16("32767"), 32767);
    EXPECT_EQ(ParseInt16("32768"), std::nullopt);
    EXPECT_EQ(ParseInt16("-32769"), std::nullopt);
    EXPECT_EQ(ParseInt16("one"), std::nullopt);
}

TEST(ParseInt32Test, RefusesWhatDoesNotFit) {
    EXPECT_EQ(ParseInt32("2147483647"), 2147483647);
    EXPECT_EQ(ParseInt32("2147483648"), std::nullopt);
    EXPECT_EQ(ParseInt32("-2147483648.5"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(ParseInt32("-2147483649"), std::nullopt);
}

TEST(RoundToTest, HalvesOfTheProductGoToTheEvenNeighbour) {
    EXPECT_EQ(RoundTo(2.675, 2), 2.68); // 2.675 * 100 is 267.5
    EXPECT_EQ(RoundTo(0.125, 2), 0.12);
    EXPECT_EQ(RoundTo(0.5, 0), 0);
    EXPECT_EQ(RoundTo(1.5, 0), 2);
    EXPECT_EQ(RoundTo(2.5, 0), 2);
    EXPECT_EQ(RoundTo(-2.5, 0), -2);
    EXPECT_EQ(RoundTo(0.4567, 3), 0.457);
}
TEST(RoundToTest, IsNotFiniteWhereTheProductOverflows) {
    EXPECT_TRUE(std::isinf(RoundTo(1e308, 2)));
}

TEST(ShortGroupedTextTest, HasNoZerosAtItsEnd) {
    EXPECT_EQ(ShortGroupedText(500500), "500,500");
    EXPECT_EQ(ShortGroupedText(1234.5), "1,234.5");
    EXPECT_EQ(ShortGroupedText(402.256), "402.26");
    EXPECT_EQ(ShortGroupedText(-1000), "-1,000");
    EXPECT_EQ(ShortGroupedText(0), "0");
    EXPECT_EQ(ShortGroupedText(0.1), "0.1");
    EXPECT_EQ(ShortGroupedText(123456789012345), "123,456,789,012,345");
    EXPECT_EQ(ShortGroupedText(1e300), "1E+300");
}

TEST(ShortGroupedTextTest, ASmallNumberKeepsItsFirstDigits) {
    EXPECT_EQ(ShortGroupedText(0.0442), "0.0442");
    EXPECT_EQ(ShortGroupedText(-0.004), "-0.004");
}

TEST(GroupedTextTest, HasSeparatorsTwoDecimalsAndALeadingZero) {
    EXPECT_EQ(GroupedText(1234.5), "1,234.50");
    EXPECT_EQ(GroupedText(0), "0.00");
    EXPECT_EQ(GroupedText(-0.0), "0.00");
    EXPECT_EQ(GroupedText(0.5), "0.50");
    EXPECT_EQ(GroupedText(999), "999.00");
    EXPECT_EQ(GroupedText(1000), "1,000.00");
    EXPECT_EQ(GroupedText(1234567), "1,234,567.00");
    EXPECT_EQ(GroupedText(-1234567), "-1,234,567.00");
    EXPECT_EQ(GroupedText(-123), "-123.00");
    EXPECT_EQ(GroupedText(-0.001), "0.00");
}

} // namespace
} // namespace mact
