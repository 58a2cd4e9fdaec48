#pragma once

#include "base/result.h"

#include <cstdint>

namespace mact {

/// The units in which quantities are entered and reported.

inline constexpr std::int16_t UnitMgal = 1; ///< thousands of gallons
inline constexpr std::int16_t UnitLbs = 2;  ///< pounds

inline constexpr double KgPerMg = 1000;

/// `quantity` in `wantedUnit`, UnitLbs or UnitMgal; any `unit` but the wanted one is taken as the other of
/// the two. Density in lb/gal. A result that is not finite (density 0 where gallons are wanted) is a Failure.
Result<double> ConvertQuantity(double quantity, double density, std::int16_t unit, std::int16_t wantedUnit);

/// At 2.2046 pounds to the kilogram.
double Kilograms(double pounds);
} // namespace mact
