#include "base/numbers.h"
#include "tests/support/random_data.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace mact {
namespace {

constexpr unsigned Cases = 1000;

/// A number of 1 to 15 digits, of almost any size.
double AnyNumber(RandomData& data) {
    std::string text = data.OneIn(2) ? "-" : "";
    text += static_cast<char>('0' + data.Int(1, 9));
    text += '.';
    for (int digit = data.Int(0, 14); digit > 0; --digit)
        text += static_cast<char>('0' + data.Int(0, 9));
    text += 'e' + std::to_string(data.OneIn(2) ? data.Int(-5, 16) : data.Int(-300, 300));
    return std::strtod(text.c_str(), nullptr);
}

std::string Printed(const char* format, double number) {
    char text[400];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

TEST(NumberProperties, ANumberOfUpTo15DigitsReadsBackAsItself) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomData data(seed);
        const double number = AnyNumber(data);
        EXPECT_EQ(ParseNumber(NumberText(number)), number) << NumberText(number);
    });
}

TEST(NumberProperties, AnyNumberIsWrittenAsPrintfWritesIt) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomData data(seed);
        const double number = AnyNumber(data) / data.Int(1, 9);
        EXPECT_EQ(NumberText(number), Printed("%.15G", number));
    });
}

TEST(NumberProperties, WhatIsReadIsWhatTheStandardLibraryReads) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomData data(seed);
        std::string text;
        for (int length = data.Int(0, 8); length > 0; --length)
            text += data.Pick<char>({'0', '1', '5', '9', '.', '-', '+', 'e', 'E'});
        char* end = nullptr;
        const double number = std::strtod(text.c_str(), &end);
        const bool isNumber = !text.empty() && *end == '\0' && end != text.c_str() && std::isfinite(number);
        const std::optional<double> parsed = ParseNumber(text);
        EXPECT_EQ(parsed.has_value(), isNumber) << text;
        EXPECT_EQ(parsed.value_or(0), isNumber ? number : 0) << text;
        EXPECT_EQ(ParseNumber(" \t" + text + " ").has_value(), isNumber) << text;
        EXPECT_EQ(IsNumeric(text), isNumber) << text;
    });
}

TEST(NumberProperties, RoundingMovesByHalfAUnitAtMostAndIsDoneOnce) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomData data(seed);
        const double number = data.Number(-1000000, 1000000) / data.Int(1, 9);
        for (const int decimals : {0, 2, 3}) {
            const double rounded = RoundTo(number, decimals);
            EXPECT_LE(std::abs(rounded - number), 0.5 / std::pow(10, decimals) * (1 + 1e-6)) << number;
            EXPECT_EQ(RoundTo(rounded, decimals), rounded) << number;
        }
    });
}

TEST(NumberProperties, HalvesGoToTheEvenNeighbour) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomData data(seed);
        const int whole = data.Int(-100000, 100000);
        EXPECT_EQ(std::fmod(RoundTo(whole + 0.5, 0), 2), 0) << whole;
        EXPECT_EQ(std::abs(RoundTo(whole + 0.5, 0) - whole - 0.5), 0.5) << whole;
    });
}

TEST(NumberProperties, GroupedTextIsPrintfsWithACommaEveryThreeDigits) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomData data(seed);
        const double number = data.Number(-9999999, 9999999) / data.Int(1, 9);
        std::string expected = Printed("%.2f", std::abs(number));
        for (int at = static_cast<int>(expected.size()) - 6; at > 0; at -= 3)
            expected.insert(static_cast<std::size_t>(at), ",");
        if (number < 0 && expected != "0.00") expected.insert(0, "-");
        EXPECT_EQ(GroupedText(number), expected);
    });
}

TEST(NumberProperties, AWholeNumberIsTheNearestOneThatFits) {
    ForEachSeed(Cases, [](unsigned seed) {
        RandomData data(seed);
        const double number = data.Number(-40000, 40000);
        const std::optional<std::int16_t> whole = ParseInt16(NumberText(number));
        const double nearest = RoundTo(number, 0);
        EXPECT_EQ(whole.has_value(), nearest >= -32768 && nearest <= 32767) << number;
        EXPECT_EQ(whole.value_or(0), whole ? nearest : 0) << number;
    });
}

} // namespace
} // namespace mact
