#include "overview/operations.h"

#include "base/text.h"
#include "reports/type_groups.h"
#include "reports/weighted_average_report.h"

#include <algorithm>
#include <utility>

namespace mact {
namespace {

constexpr std::size_t ProductionResinRow = 0; // atomized; the row after it is nonatomized
constexpr std::size_t ToolingResinRow = 4;

/// A resin's methods in the default table.
struct ResinMethod {
    std::string_view Key; ///< as compared
    bool IsAtomized;
    bool IsVacuumBagging;
};
constexpr ResinMethod ResinMethods[] = {
    {"SPRAY",                                       true,  false},
    {"SPRAY (VACUUM BAGGING AFTER ROLL-OUT)",       true,  true },
    {"SPRAY (VACUUM BAGGING WITHOUT ROLL-OUT)",     true,  true },
    {"NON-SPRAY",                                   false, false},
    {"NON-SPRAY (VACUUM BAGGING AFTER ROLL-OUT)",   false, true },
    {"NON-SPRAY (VACUUM BAGGING WITHOUT ROLL-OUT)", false, true },
};

/// A gel coat's row and operation, by its type in the default table.
struct GelCoat {
    std::string_view Key;
    std::size_t Row;
    std::size_t Operation;
};
constexpr GelCoat GelCoats[] = {
    {"PIGMENTED PRODUCTION GEL",  2, 1},
    {"CLEAR PRODUCTION GEL COAT", 3, 2},
    {"TOOLING GEL COAT",          6, 4},
};

UseClass ClassOfResin(std::size_t firstRow, std::size_t operation, const std::string& method) {
    const auto* const known = std::ranges::find(ResinMethods, std::string_view(method), &ResinMethod::Key);
    if (known == std::end(ResinMethods)) return {};
    return {.Row = firstRow + (known->IsAtomized ? 0 : 1),
            .Operation = operation,
            .IsVacuumBagging = known->IsVacuumBagging};
}

} // namespace

UseClass ClassOf(const HapContentRecord& row) {
    if (IsClosedMolding(row.ApplicationMethod)) return {.Kind = UseKind::ClosedMolding};
    const std::string type = ComparisonKey(row.MaterialType);
    const std::string method = ComparisonKey(row.ApplicationMethod);
    if (IsFilledResin(row.MaterialType)) {
        const bool isProduction = type.starts_with("PRODUCTION");
        return {.Kind = UseKind::Filled,
                .Operation = isProduction ? ProductionResinOperation : ToolingResinOperation,
                .IsVacuumBagging = method.find("VACUUM BAGGING") != std::string::npos};
    }
    if (type == "PRODUCTION RESIN") return ClassOfResin(ProductionResinRow, ProductionResinOperation, method);
    if (type == "TOOLING RESIN") return ClassOfResin(ToolingResinRow, ToolingResinOperation, method);
    const auto* const gelCoat = std::ranges::find(GelCoats, std::string_view(type), &GelCoat::Key);
    if (gelCoat == std::end(GelCoats) || method != "ALL") return {};
    return {.Row = gelCoat->Row, .Operation = gelCoat->Operation};
}
} // namespace mact
