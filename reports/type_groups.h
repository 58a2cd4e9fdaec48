#pragma once

#include "base/app_context.h"
#include "base/result.h"
#include "materials/material_record.h"
#include "reports/period_usage.h"
#include "reports/report_page.h"
#include "store/data_folder.h"
#include "store/material_types.h"

#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// What the two averaging reports share: the material-type table in page order, the materials by type and
/// method, and the usage of the months.

/// A type name with its application methods in file order, without closed molding.
struct TypeGroup {
    std::string Name{}; ///< trimmed
    std::vector<HapContentRecord> Methods{};
};
/// The distinct type names in ascending order, ignoring case; equal ones keep their order. Names that differ
/// only in case are two groups, each with the methods of both.
std::vector<TypeGroup> GroupByType(const std::vector<HapContentRecord>& rows);

/// Case-sensitive.
bool IsClosedMolding(std::string_view applicationMethod);

/// What the averages need to know of a material.
struct AveragedMaterial {
    std::int16_t MaterialId = 0;
    std::string CustomId{};
    double Density = 0;    ///< lb/gal
    double HapContent = 0; ///< weight percent
};

/// Materials by type and method, looked up trimmed and ignoring case.
class MaterialsByMethod {
public:
    void Add(std::string_view materialType, std::string_view applicationMethod, AveragedMaterial material);
    /// The materials of the row's type and method, in the order in which they were added.
    const std::vector<AveragedMaterial>& Of(const HapContentRecord& row) const;

private:
    TypeMethodPairs m_pairs;
    std::vector<std::vector<AveragedMaterial>> m_materials; ///< by the pair's number
    std::vector<AveragedMaterial> m_none;
};
/// The live materials.
Result<MaterialsByMethod> ReadMaterialsByMethod(const DataFiles& data);

/// What both averaging reports calculate from.
struct AverageInputs {
    ReportHeading Heading{};
    std::vector<TypeGroup> Types{};
    MaterialsByMethod Materials{};
    PeriodUsage Usage;
};
/// Reads the material-type table, the live materials and the usage of the period.
Result<AverageInputs> ReadAverageInputs(const AppContext& app, const ReportPeriod& period);
} // namespace mact
