#pragma once

#include "overview/half_year.h"

#include <string>
#include <vector>

namespace mact {

/// The half-year packs kept so far, held against today's records.

/// Those of the current company, oldest first, by their CSVs.
Result<std::vector<HalfYear>> KeptPacks(const AppContext& app);

/// A figure that no longer comes out as in the pack. All texts are UTF-8.
struct PackDifference {
    std::string Figure{}; ///< "9/2005, content, pigmented gel coat"
    std::string Kept{};   ///< what the CSV says of it; empty = nothing
    std::string Today{};  ///< the same from today's records
    bool operator==(const PackDifference&) const = default;
};
/// Compares the kept pack's CSV with `figures`. Without differences its figures still come out the same. How
/// cells are quoted and lines end does not count, since a spreadsheet may have saved the file again. A file
/// that cannot be read, or is no such CSV, is a Failure.
Result<std::vector<PackDifference>> ComparePack(const AppContext& app, const ShopFigures& figures,
                                                HalfYear half);
} // namespace mact
