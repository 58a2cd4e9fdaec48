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

/// Whether each material keeps within the HAP content limit of its type and method: all materials, or those
/// used in the report's months, one row per usage record.

struct CompliantRow {
    std::string Material{};           ///< Material ID, " - ", description
    std::string Method{};             ///< type name, "/", application method, as spelt in the type table
    double HapContent = 0;            ///< weight percent
    std::optional<double> HapLimit{}; ///< weight percent; empty = no limit (stored as -1)
};
struct CompliantMaterialsData {
    ReportHeading Heading{};
    bool IsAllMaterials = false; ///< the heading has months only if this is false
    bool HasRecords = false;     ///< false = no materials or no usage; true without rows if no type matches
    std::vector<CompliantRow> Rows{};
};

/// A content equal to the limit complies.
bool IsCompliant(const CompliantRow& row);

/// The first row of the type table for each type and method, looked up trimmed and ignoring case.
class LimitTable {
public:
    explicit LimitTable(const std::vector<HapContentRecord>& rows);
    /// The material's row; empty if its type and method are not in the table.
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
