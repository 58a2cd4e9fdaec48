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

std::size_t CountDigits(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::find_if_not(text, IsDigit) - text.begin());
}

/// An unsigned number's text, taken apart.
struct NumberParts {
    std::string_view WholeDigits;
    std::string_view FractionDigits;
    std::string_view Exponent; ///< with its sign; empty = none
};

std::optional<NumberParts> TakeApart(std::string_view text) {
    NumberParts parts;
    parts.WholeDigits = text.substr(0, CountDigits(text));
    text.remove_prefix(parts.WholeDigits.size());
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        parts.FractionDigits = text.substr(0, CountDigits(text));
        text.remove_prefix(parts.FractionDigits.size());
    }
    if (parts.WholeDigits.empty() && parts.FractionDigits.empty()) return std::nullopt;
    if (text.empty()) return parts;
    if (text.front() != 'e' && text.front() != 'E') return std::nullopt;
    parts.Exponent = text.substr(1);
    std::string_view digits = parts.Exponent;
    if (digits.starts_with('+') || digits.starts_with('-')) digits.remove_prefix(1);
    if (digits.empty() || CountDigits(digits) != digits.size()) return std::nullopt;
    return parts;
}

/// Whether a number (not zero) that is outside double's range is too small for it rather than too large.
bool IsTooSmall(const NumberParts& parts) {
    // The power of ten of the first digit that counts; an exponent that fits nowhere is as good as a huge
    // one.
    std::int64_t power = 0;
    const std::size_t whole = parts.WholeDigits.find_first_not_of('0');
    if (whole != std::string_view::npos) {
        power = static_cast<std::int64_t>(parts.WholeDigits.size() - whole) - 1;
    } else {
        power = -static_cast<std::int64_t>(parts.FractionDigits.find_first_not_of('0')) - 1;
    }
    if (parts.Exponent.empty()) return power < 0;
    const bool isNegative = parts.Exponent.starts_with('-');
    const std::string_view digits =
        parts.Exponent.substr(isNegative || parts.Exponent.starts_with('+') ? 1 : 0);
    std::int64_t exponent = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    if (read.ec != std::errc{}) return isNegative;
    exponent = std::min(exponent, std::numeric_limits<std::int64_t>::max() / 2); // the sum has to fit too
    return (isNegative ? power - exponent : power + exponent) < 0;
}

bool IsAllZeros(const NumberParts& parts) {
    return parts.WholeDigits.find_first_not_of('0') == std::string_view::npos &&
           parts.FractionDigits.find_first_not_of('0') == std::string_view::npos;
}

/// 1250 is 12.5.
std::string HundredthsText(std::int64_t hundredths) {
    const std::int64_t whole = std::abs(hundredths) / 100;
    const auto rest = static_cast<int>(std::abs(hundredths) % 100);
    std::array<char, 24> buffer{};
    char* end = buffer.data();
    if (hundredths < 0) *end++ = '-';
    end = std::to_chars(end, buffer.data() + buffer.size(), whole).ptr;
    if (rest != 0) {
        *end++ = '.';
        *end++ = static_cast<char>('0' + rest / 10);
        if (rest % 10 != 0) *end++ = static_cast<char>('0' + rest % 10);
    }
    return {buffer.data(), end};
}

template <class Whole> std::optional<Whole> ParseWhole(std::string_view text) {
    const std::optional<double> number = ParseNumber(text);
    if (!number) return std::nullopt;
    const double whole = std::nearbyint(*number);
    using Limits = std::numeric_limits<Whole>;
    if (whole < Limits::min() || whole > Limits::max()) return std::nullopt;
    return static_cast<Whole>(whole);
}

} // namespace

std::optional<double> ParseNumber(std::string_view text) {
    text = TrimSpacesAndTabs(text);
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) text.remove_prefix(1);
    const std::optional<NumberParts> parts = TakeApart(text);
    if (!parts) return std::nullopt;

    double value = 0;
    if (!IsAllZeros(*parts)) {
        const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
        if (read.ec == std::errc::result_out_of_range) {
            if (!IsTooSmall(*parts)) return std::nullopt;
            value = 0;
        }
        if (!std::isfinite(value)) return std::nullopt;
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
    if (number == 0) return "0";
    // Most numbers are whole or have two decimals, and are written many times faster as whole numbers. A
    // double that is nearest to a decimal of at most 15 digits shows that decimal when it is rounded to 15
    // digits.
    const double hundredths = std::nearbyint(number * 100);
    if (std::abs(hundredths) < 1e15 && hundredths / 100 == number)
        return HundredthsText(static_cast<std::int64_t>(hundredths));
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
    if (number < 0 && !isZero) text.insert(0, 1, '-');
    return text;
}

} // namespace mact
