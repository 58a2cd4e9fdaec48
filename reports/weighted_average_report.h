#pragma once

#include "base/app_context.h"
#include "base/result.h"
#include "reports/period_usage.h"
#include "reports/report_page.h"
#include "reports/type_groups.h"
#include "store/material_types.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// The HAP content of each material type and application method, weighted by the amounts used in the report's
/// months, against its limit. Filled resins and closed molding are left out.

struct WeightedAverageRow {
    std::string Method{};
    double Amount = 0;                ///< kg
    double Hap = 0;                   ///< kg
    std::optional<double> HapLimit{}; ///< weight percent; empty = no limit (stored as -1)
};
struct WeightedAverageGroup {
    std::string MaterialType{};
    std::vector<WeightedAverageRow> Rows{};
};
struct WeightedAverageData {
    ReportHeading Heading{};
    std::vector<WeightedAverageGroup> Groups{};
};

/// Kilograms rounded to 2 decimals; 0 if nothing was used.
double AmountInKg(double pounds);
/// Weight percent, rounded to 2 decimals; 0 for a method without use or without HAP.
double WeightedContent(const WeightedAverageRow& row);
/// A content equal to the limit complies.
bool IsCompliant(const WeightedAverageRow& row);
/// Whether the type is one of the two filled resins, which the report leaves out. In any letter case, on
/// purpose: the editor, which asks TakesFiller, is stricter.
bool IsFilledResin(std::string_view materialType);

/// Adds up the method's materials. A Failure if a sum is too large or not a number.
Result<WeightedAverageRow> AverageMethod(const HapContentRecord& method,
                                         const std::vector<AveragedMaterial>& materials,
                                         const PeriodUsage& usage);

Result<WeightedAverageData> FetchWeightedAverage(const AppContext& app, const ReportPeriod& period);

std::string BuildWeightedAverageHtml(const WeightedAverageData& data);
} // namespace mact
