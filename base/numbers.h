#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mact {

/// Number rules, independent of the locale.

/// The nearest double to a number as users write it: optional spaces or tabs around it, an optional sign,
/// decimal digits with at most one "." and at least one digit, an optional exponent. Empty if the text is no
/// such number or is too large for a double; one too small for a double is 0.
std::optional<double> ParseNumber(std::string_view text);

bool IsNumeric(std::string_view text);

/// A number (as ParseNumber reads it) rounded to a whole one, halves to even; empty also if out of range.
std::optional<std::int16_t> ParseInt16(std::string_view text);
std::optional<std::int32_t> ParseInt32(std::string_view text);

/// At most 15 significant digits, no trailing zeros, "." as decimal point, an exponent where printf's "%.15G"
/// has one: 35, 0.3, 1E-05. Negative zero is "0".
std::string NumberText(double number);

/// Decimal digits, as in 12 or -3.
std::string WholeNumberText(std::int64_t number);

/// `number` times 10^decimals, rounded to a whole number with halves to even, divided by 10^decimals. Not
/// finite if `number` is not, or if the product overflows.
double RoundTo(double number, int decimals);

/// "," every three digits, two decimals, leading zero, "-" in front of negatives: 1,234.50
std::string GroupedText(double number);
/// The same without zeros at its end: 1,234.5 or 402. For hints: a small number keeps its first digits
/// (0.004), and one from 1e15 on is as NumberText has it.
std::string ShortGroupedText(double number);
} // namespace mact
