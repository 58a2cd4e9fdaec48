#pragma once

#include "overview/half_year.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace mact {

/// The parts of the half-year pack's page that several of its sections share, and the deviations.

using SixMonths = std::array<MonthFigures, MonthsOfHalfYear>;

/// "differs (tie)"
std::string VerdictText(const Verdict& judged, int months);
/// A material's ID in UTF-8.
std::string NameOfMaterial(const ShopFigures& shop, std::size_t material);

/// The last column heads of a table, one a month; its body follows.
std::string MonthsHead(const std::vector<MonthNumber>& months);
/// To be written on.
std::string BlankLines(int count);

/// The materials of every figure that is over or differs.
std::string DeviationsHtml(const ShopFigures& shop, const SixMonths& six, HalfYear half);
} // namespace mact
