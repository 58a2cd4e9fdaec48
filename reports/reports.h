#pragma once

#include "base/app_context.h"
#include "reports/report_period.h"

#include <cstdint>
#include <filesystem>

namespace mact {

/// The five compliance reports. Each reads what it needs, asks whether an empty report is wanted where it has
/// that question, builds the page and publishes it: the file in the program folder, then the browser. A
/// failure is shown once (ShowError), and that report's file is not written.

inline constexpr std::int16_t ReportPublished = 0;
inline constexpr std::int16_t ReportDeclined =
    1; ///< the user did not want an empty report; nothing was written
inline constexpr std::int16_t ReportFailed = -1; ///< a failure was shown; nothing was written

std::int16_t GenerateCompliantMaterialsReport(AppContext& app, const ReportPeriod& period);
std::int16_t GenerateWeightedAverageReport(AppContext& app, const ReportPeriod& period);
std::int16_t GenerateEmissionAverageReport(AppContext& app, const ReportPeriod& period);
std::int16_t GenerateAdditionalHapUsageReport(AppContext& app, const ReportPeriod& period);
std::int16_t GenerateAdditionalHapEmissionReport(AppContext& app, const ReportPeriod& period);

/// The reports' files, in the program folder.
inline constexpr const char* CompliantMaterialsFile = "report.htm";
inline constexpr const char* WeightedAverageFile = "report2.htm";
inline constexpr const char* EmissionAverageFile = "report3.htm";
inline constexpr const char* AdditionalHapUsageFile = "report4.htm";
inline constexpr const char* AdditionalHapEmissionFile = "report5.htm";
} // namespace mact
