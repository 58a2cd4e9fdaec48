#include "base/numbers.h"
#include "tests/fuzz/fuzz.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

namespace mact {

// The first eight bytes are taken as a number, and all of them as a text.

namespace {

void CheckText(double number) {
    const std::string text = NumberText(number);
    const std::optional<double> read = ParseNumber(text);
    // The largest numbers, rounded up to 15 digits, are more than a double can hold.
    Must(read || std::abs(number) > 1.7976931348623e308, "what is written is a number");
    if (!read) return;
    Must(NumberText(*read) == text, "a written number reads back as one that is written alike");
    Must(std::abs(*read - number) <= std::abs(number) * 1e-14 + 1e-307, "15 digits tell the number");
    Must(text.size() <= 22 && text.find('e') == std::string::npos, "the text is short");
}

void CheckGrouped(double number) {
    std::string text = GroupedText(number);
    const std::size_t point = text.find('.');
    Must(point + 3 == text.size(), "two decimals");
    std::erase(text, ',');
    const std::optional<double> read = ParseNumber(text);
    Must(read.has_value(), "without commas it is a number");
    Must(std::abs(*read - number) <= 0.005 + std::abs(number) * 1e-15, "two decimals tell the number");
}

void CheckRounding(double number) {
    for (const int decimals : {0, 2, 3}) {
        const double rounded = RoundTo(number, decimals);
        if (!std::isfinite(rounded)) continue;
        const double half = 0.5 / std::pow(10.0, decimals);
        Must(std::abs(rounded - number) <= half + std::abs(number) * 1e-15, "rounding moves by half at most");
        Must(std::abs(number) > 1e12 || RoundTo(rounded, decimals) == rounded, "what is rounded stays");
    }
}

void CheckInt16(std::string_view text, std::optional<double> number) {
    const std::optional<std::int16_t> whole = ParseInt16(text);
    if (whole) Must(number && std::abs(*number - *whole) <= 0.5, "a whole number is the nearest");
    if (!whole && number) Must(*number < -32768 || *number > 32767, "only what is too large is refused");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = TextOf(data, size);
    const std::optional<double> number = ParseNumber(text);
    Must(number.has_value() == IsNumeric(text), "a number is numeric");
    CheckInt16(text, number);
    if (number) {
        Must(std::isfinite(*number), "a number is finite");
        CheckText(*number);
        const std::string spaced = " \t" + std::string(text) + "\t ";
        Must(ParseNumber(spaced) == number, "blanks around do not count");
    }
    double bits = 0;
    if (size < sizeof(bits)) return 0;
    std::memcpy(&bits, data, sizeof(bits));
    if (!std::isfinite(bits)) return NumberText(bits).empty() || GroupedText(bits).empty() ? 1 : 0;
    CheckText(bits);
    CheckGrouped(bits);
    CheckRounding(bits);
    return 0;
}
} // namespace mact
