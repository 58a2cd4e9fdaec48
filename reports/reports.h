#pragma once

#include "base/app_context.h"
#include "reports/report_period.h"

#include <array>
#include <cstdint>
#include <filesystem>

namespace mact {

/// The five compliance reports. Each reads its data, builds the page, writes it to the program folder and
/// opens it in the browser. With nothing to report, the compliant materials report and the two on additional
/// HAP first ask whether one is wanted. A failure is shown once (ShowError) and leaves the file unwritten.

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
inline constexpr std::array ReportFiles = {CompliantMaterialsFile, WeightedAverageFile, EmissionAverageFile,
                                           AdditionalHapUsageFile, AdditionalHapEmissionFile};
} // namespace mact
