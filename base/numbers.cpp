#include "base/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace mact {
namespace {

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

std::string_view TrimSpacesAndTabs(std::string_view text) {
    const auto isBlank = [](char character) { return character == ' ' || character == '\t'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// Whether a number outside double's range is too small for it rather than too large. Zero is too small.
bool IsTooSmall(std::string_view text) {
    const std::size_t exponentAt = std::min(text.find_first_of("eE"), text.size());
    const std::string_view digits = text.substr(0, exponentAt);
    const std::size_t first = digits.find_first_of("123456789");
    if (first == std::string_view::npos) return true;
    const auto point = static_cast<std::int64_t>(std::min(digits.find('.'), digits.size()));
    // The power of ten of the first significant digit, before the exponent is added.
    const std::int64_t power = point - static_cast<std::int64_t>(first) - (first < digits.find('.') ? 1 : 0);

    std::string_view exponentText = text.substr(std::min(exponentAt + 1, text.size()));
    const bool isNegative = exponentText.starts_with('-');
    if (isNegative || exponentText.starts_with('+')) exponentText.remove_prefix(1);
    std::int64_t exponent = 0;
    const auto read =
        std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent);
    // An exponent beyond 64 bits is capped at half their range, so that the sum below cannot overflow.
    constexpr std::int64_t huge = std::numeric_limits<std::int64_t>::max() / 2;
    if (read.ec == std::errc::result_out_of_range || exponent > huge) exponent = huge;
    return (isNegative ? power - exponent : power + exponent) < 0;
}

/// A number of digits alone, few enough for a double to hold each such number exactly. Most numbers of an
/// import are like this: one at the limit takes 1.1 times as long if from_chars reads them all.
std::optional<double> ParseFewDigits(std::string_view text) {
    constexpr std::size_t most = 15;
    if (text.empty() || text.size() > most) return std::nullopt;
    std::int64_t number = 0;
    for (const char digit : text) {
        if (!IsDigit(digit)) return std::nullopt;
        number = number * 10 + (digit - '0');
    }
    return static_cast<double>(number);
}

template <class Whole> std::optional<Whole> ParseWhole(std::string_view text) {
    const std::optional<double> number = ParseNumber(text);
    if (!number) return std::nullopt;
    const double whole = std::nearbyint(*number); // halves to even
    using Limits = std::numeric_limits<Whole>;
    if (whole < Limits::min() || whole > Limits::max()) return std::nullopt;
    return static_cast<Whole>(whole);
}

} // namespace

std::optional<double> ParseNumber(std::string_view text) {
    if (const auto digits = ParseFewDigits(text)) return digits;
    text = TrimSpacesAndTabs(text);
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) text.remove_prefix(1);
    // std::from_chars would also take "inf", "nan" and a second minus sign.
    if (text.empty() || !(IsDigit(text.front()) || text.front() == '.')) return std::nullopt;
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, value);
    if (read.ptr != end) return std::nullopt;
    // from_chars does not say at which end the range was left: too small is 0, too large is no number.
    if (read.ec == std::errc::result_out_of_range) {
        if (!IsTooSmall(text)) return std::nullopt;
        value = 0;
    }
    return isNegative ? -value : value;
}

bool IsNumeric(std::string_view text) {
    return ParseNumber(text).has_value();
}

std::optional<std::int16_t> ParseInt16(std::string_view text) {
    return ParseWhole<std::int16_t>(text);
}

std::optional<std::int32_t> ParseInt32(std::string_view text) {
    return ParseWhole<std::int32_t>(text);
}

std::string NumberText(double number) {
    if (number == 0) return "0"; // negative zero too
    std::array<char, 32> buffer{};
    const auto written =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, 15);
    std::string text(buffer.data(), written.ptr);
    std::ranges::replace(text, 'e', 'E');
    return text;
}

std::string WholeNumberText(std::int64_t number) {
    return std::to_string(number);
}

double RoundTo(double number, int decimals) {
    double factor = 1;
    for (int decimal = 0; decimal < decimals; ++decimal)
        factor *= 10;
    // nearbyint on purpose: it rounds halves to even, which std::round does not.
    return std::nearbyint(number * factor) / factor;
}

std::string GroupedText(double number) {
    std::array<char, 400> buffer{}; // the largest double has 309 digits in front of the point
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(number),
                                       std::chars_format::fixed, 2);
    std::string text(buffer.data(), written.ptr);
    if (!std::isfinite(number)) return text;
    for (std::size_t point = text.find('.'); point > 3; point -= 3)
        text.insert(point - 3, 1, ',');
    const bool isZero = text.find_first_not_of("0.") == std::string::npos;
    if (number < 0 && !isZero) text.insert(0, 1, '-'); // -0.001 is 0.00
    return text;
}

std::string ShortGroupedText(double number) {
    constexpr double most = 1e15; // beyond it, digits make no sense
    if (std::abs(number) < 0.1) return NumberText(RoundTo(number, 6));
    if (std::abs(number) >= most) return NumberText(number);
    std::string text = GroupedText(number);
    text.erase(text.find_last_not_of('0') + 1); // its point stops it
    if (text.ends_with('.')) text.pop_back();
    return text;
}
} // namespace mact
