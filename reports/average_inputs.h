#pragma once

#include "base/app_context.h"
#include "base/result.h"
#include "reports/period_usage.h"
#include "reports/report_frame.h"
#include "reports/report_period.h"
#include "reports/type_groups.h"

#include <vector>

namespace mact {

/// What both averaging reports calculate with.
struct AverageInputs {
    ReportHeading Heading{};
    std::vector<TypeGroup> Types{};
    MaterialsByMethod Materials{};
    PeriodUsage Usage;
};

/// Reads the material-type table, the live materials and the usage of the period. Shows nothing.
Result<AverageInputs> ReadAverageInputs(AppContext& app, const ReportPeriod& period);

} // namespace mact
