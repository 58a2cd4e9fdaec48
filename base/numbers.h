#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mact {

/// Number rules. They do not depend on the locale.

/// The value of a number as a user writes it: optional spaces or tabs around, optional sign, decimal digits
/// with at most one "." and at least one digit, optional exponent. Empty when the text is not such a number
/// or its value is not finite. The value is the correctly rounded double.
std::optional<double> ParseNumber(std::string_view text);

bool IsNumeric(std::string_view text);

/// A number (as ParseNumber reads it) rounded to a whole one, halves to even; empty when it does not fit in
/// 16 or 32 bits.
std::optional<std::int16_t> ParseInt16(std::string_view text);
std::optional<std::int32_t> ParseInt32(std::string_view text);

/// At most 15 significant digits, no trailing zeros, "." as decimal point, scientific form as printf's
/// "%.15G" has it: 35, 0.3, 1E-05. Negative zero is "0".
std::string NumberText(double number);

/// Decimal digits, as in 12 or -3.
std::string WholeNumberText(std::int64_t number);

/// `number` times 10^decimals, rounded to a whole number with halves to even, divided by 10^decimals. May be
/// infinite or not a number where `number` is, or where the product overflows.
double RoundTo(double number, int decimals);

/// "," every three digits, two decimals, leading zero, "-" in front of negatives: 1,234.50
std::string GroupedText(double number);
} // namespace mact
