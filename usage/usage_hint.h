#pragma once

#include "base/hint.h"
#include "usage/usage_entry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mact {

/// The quantity, in pounds, that half of the material's monthly records stay below; of an even number of
/// records the mean of the two in the middle. `usage` may be of all materials; record `exceptUsageId`, which
/// is being edited, is left out. `density` in lb/gal. Empty without records.
std::optional<double> MedianMonth(const std::vector<UsageRecord>& usage, std::int16_t materialId,
                                  double density, std::int16_t exceptUsageId);

/// Why the entry may be a mistake: a clause without a full stop, UTF-8; empty if nothing speaks for one.
std::string DoubtOn(const UsageEntry& entry, double density, std::optional<double> medianMonth);

/// What the usage editor says below a quantity while it is typed: what it is in pounds, and whether that is
/// over five times or under a fifth of the median month. Nothing while quantity or unit are missing.
Hint HintOn(const UsageEntry& entry, double density, std::optional<double> medianMonth);
} // namespace mact
