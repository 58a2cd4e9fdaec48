#pragma once

#include "base/app_context.h"
#include "base/result.h"
#include "reports/period_usage.h"
#include "reports/report_page.h"
#include "reports/type_groups.h"
#include "store/material_types.h"

#include <string>
#include <vector>

namespace mact {

/// The HAP emitted by the materials used in the report's months, according to their point values, against
/// what the same amounts may emit. Closed molding is left out. Amounts are in Mg and emissions in kg,
/// whatever the column headings say.

struct EmissionRow {
    std::string Material{}; ///< Material ID
    double HapContent = 0;  ///< weight percent
    double PointValue = 0;  ///< kg of HAP per Mg of material, rounded to 2 decimals
    double Amount = 0;      ///< Mg, rounded to 2 decimals
};
/// One application method of a material type.
struct EmissionMethod {
    std::string Method{};
    double EmissionLimit = 0; ///< kg of HAP per Mg of material
    std::vector<EmissionRow> Rows{};
    double Amount = 0;   ///< of all rows, Mg
    double Emission = 0; ///< of all rows, kg, not rounded
};
struct EmissionGroup {
    std::string MaterialType{};
    std::vector<EmissionMethod> Methods{};
};
struct EmissionAverageData {
    ReportHeading Heading{};
    std::vector<EmissionGroup> Groups{};
    double Emission = 0;  ///< of the whole report, kg, not rounded
    double Allowance = 0; ///< of the whole report, kg, not rounded
};

/// Mg rounded to 2 decimals; 0 if nothing was used.
double AmountInMg(double pounds);
/// Kg, not rounded.
double Emission(const EmissionRow& row);
/// An emission equal to the allowance complies.
bool IsCompliant(const EmissionAverageData& data);

/// Adds up the method's materials. A Failure if a result is too large or not a number.
Result<EmissionMethod> EmitMethod(const HapContentRecord& method,
                                  const std::vector<AveragedMaterial>& materials, const PeriodUsage& usage);

Result<EmissionAverageData> FetchEmissionAverage(const AppContext& app, const ReportPeriod& period);

std::string BuildEmissionAverageHtml(const EmissionAverageData& data);
} // namespace mact
