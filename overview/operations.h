#pragma once

#include "store/material_types.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace mact {

/// How the rule sorts materials: the rows of Table 2 to Subpart VVVV of 40 CFR 63, and the operations that
/// are averaged (63.5698(b)).

struct TableTwoRow {
    std::string_view Name;
    double HapLimit; ///< weight percent
};
inline constexpr std::array TableTwoRows = {
    TableTwoRow{"production resin, atomized",    28},
    TableTwoRow{"production resin, nonatomized", 35},
    TableTwoRow{"pigmented gel coat",            33},
    TableTwoRow{"clear gel coat",                48},
    TableTwoRow{"tooling resin, atomized",       30},
    TableTwoRow{"tooling resin, nonatomized",    39},
    TableTwoRow{"tooling gel coat",              40},
};
inline constexpr std::array<std::string_view, 5> Operations = {
    "production resin", "pigmented gel coat", "clear gel coat", "tooling resin", "tooling gel coat",
};

inline constexpr std::size_t ProductionResinOperation = 0;
inline constexpr std::size_t ToolingResinOperation = 3;

/// What a material type and application method count as.
enum class UseKind {
    Content,       ///< in a row of weighted content, and in the average
    Filled,        ///< a filled resin: in no such row, but in the average (63.5713(a))
    ClosedMolding, ///< in neither (63.5728(a))
};
struct UseClass {
    UseKind Kind = UseKind::Content;
    std::optional<std::size_t> Row{}; ///< in TableTwoRows; empty: a filled resin, or a pair that a user added
    std::optional<std::size_t>
        Operation{};              ///< in Operations; empty: of a pair that a user added, or of closed molding
    bool IsVacuumBagging = false; ///< by a method that has no limit of its own in Table 2
};
/// Classifies a row of the material-type table. Names are compared trimmed and ignoring case.
UseClass ClassOf(const HapContentRecord& row);
} // namespace mact
