#pragma once

#include "overview/half_year.h"
#include "overview/untrusted_figures.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace mact {

/// The parts of the half-year pack's page that several of its sections share, and the deviations.

struct PackMonth {
    MonthFigures Figures{};
    UntrustedFigures Untrusted{};
};
using SixMonths = std::array<PackMonth, MonthsOfHalfYear>;

/// "differs (tie)"
std::string VerdictText(const Verdict& judged, int months);
/// What a cell says of a figure that is not to be trusted, on a line of its own.
std::string UntrustedHtml(std::size_t findings);
/// A material's ID in UTF-8.
std::string NameOfMaterial(const ShopFigures& shop, std::size_t material);

/// The last column heads of a table, one a month; its body follows.
std::string MonthsHead(const std::vector<MonthNumber>& months);
/// To be written on.
std::string BlankLines(int count);

/// The materials of every figure that is over or differs.
std::string DeviationsHtml(const ShopFigures& shop, const SixMonths& six, HalfYear half);
} // namespace mact
