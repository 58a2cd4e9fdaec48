#pragma once

#include "reports/additional_hap_data.h"

namespace mact {

/// How many kilograms of each additional pollutant the materials used in the report's months emitted.

/// Element i belongs to pollutant name i.
using PollutantTotals = std::array<double, PollutantCount>; ///< kg

/// Rounded to 2 decimals.
double KilogramsUsed(double pounds);
/// Whole kilograms, halves to even, from `kilograms` of a material; `content` and `factor` are in percent.
double PollutantEmission(double content, double kilograms, double factor);

/// Adds up the rounded emissions of the materials. A Failure if a sum is too large or not a number.
Result<PollutantTotals> AddUpEmissions(const AdditionalHapData& data);
/// The sum over the pollutants that have a name.
double TotalOfNamed(const PollutantNames& names, const PollutantTotals& totals);

std::string BuildAdditionalHapEmissionHtml(const AdditionalHapData& data, const PollutantTotals& totals);
} // namespace mact
