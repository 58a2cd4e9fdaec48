#pragma once

#include "base/app_context.h"
#include "base/result.h"
#include "materials/material_record.h"
#include "reports/report_page.h"
#include "store/material_types.h"

#include <optional>
#include <string>
#include <vector>

namespace mact {

/// Whether each material keeps to the HAP content limit of its type and method: all materials, or those used
/// in the report's months, one row per usage record.

struct CompliantRow {
    std::string Material{};           ///< Material ID, " - ", description
    std::string Method{};             ///< type name, "/", application method, as the type table writes them
    double HapContent = 0;            ///< weight percent
    std::optional<double> HapLimit{}; ///< weight percent; empty = no limit (stored as -1)
};
struct CompliantMaterialsData {
    ReportHeading Heading{};
    bool IsAllMaterials = false; ///< the heading's months count only when this is false
    bool HasRecords = false;     ///< false = nothing to report; true without rows when no type fits
    std::vector<CompliantRow> Rows{};
};

/// A content equal to the limit complies.
bool IsCompliant(const CompliantRow& row);

/// The first row of the type table for each type and method, found trimmed and without regard to case.
class LimitTable {
public:
    explicit LimitTable(const std::vector<HapContentRecord>& rows);
    /// Of a material's names, type, method and HAP content. Empty when its type and method are not in the
    /// table.
    std::optional<CompliantRow> RowOf(const MaterialRecord& material) const;

private:
    struct Limit {
        std::string Method; ///< as in CompliantRow
        std::optional<double> HapLimit;
    };
    TypeMethodPairs m_pairs;
    std::vector<Limit> m_limits; ///< by the pair's number
};

/// An empty period end selects all materials.
Result<CompliantMaterialsData> FetchCompliantMaterials(const AppContext& app, const ReportPeriod& period);

std::string BuildCompliantMaterialsHtml(const CompliantMaterialsData& data);
} // namespace mact
