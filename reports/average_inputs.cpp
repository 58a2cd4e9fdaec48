#include "reports/average_inputs.h"

#include <utility>

namespace mact {

Result<AverageInputs> ReadAverageInputs(AppContext& app, const ReportPeriod& period) {
    const Result<ReportMonths> months = MonthsOf(period);
    if (!months) return months.error();
    const Result<std::vector<HapContentRecord>> rows = ReadHapContents(app);
    if (!rows) return rows.error();
    Result<MaterialsByMethod> materials = ReadMaterialsByMethod(app);
    if (!materials) return materials.error();
    Result<PeriodUsage> usage = ReadPeriodUsage(app, months->List);
    if (!usage) return usage.error();
    return AverageInputs{.Heading = HeadingOf(app, *months),
                         .Types = GroupByType(*rows),
                         .Materials = std::move(*materials),
                         .Usage = std::move(*usage)};
}

} // namespace mact
