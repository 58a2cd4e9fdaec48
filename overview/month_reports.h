#pragma once

#include "base/app_context.h"
#include "base/failure.h"
#include "overview/months.h"

#include <filesystem>
#include <vector>

namespace mact {

/// All five reports of a month end, in reports/<company>/<yyyy-mm>/ in the program folder, beside an index
/// page that leads to them. The reports in the program folder itself stay as they are.

struct MonthReports {
    std::filesystem::path Index{};   ///< empty = it could not be written
    std::vector<Failure> Failures{}; ///< the index names those of reports too
};
/// Makes the reports of the current company for the twelve months that end with the month, byte for byte as
/// the reports' window does. Asks nothing, also if one is empty. Creates no data file. A report that fails
/// leaves its earlier page, if there is one, and the other reports.
MonthReports WriteMonthReports(const AppContext& app, MonthNumber monthEnd);
} // namespace mact
