#pragma once

#include "base/app_context.h"
#include "base/result.h"
#include "reports/report_page.h"
#include "store/additional_names.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace mact {

/// The data behind the two reports on additional pollutants.

inline constexpr std::size_t PollutantCount = std::tuple_size_v<PollutantNames>;

struct AdditionalHapMaterial {
    std::string MaterialId{}; ///< Material ID, trimmed
    double Pounds = 0;        ///< used in the report's months
    // Element i belongs to pollutant name i.
    std::array<double, PollutantCount> Contents{}; ///< weight percent
    std::array<double, PollutantCount> Factors{};  ///< percent of the content that is emitted
};
struct AdditionalHapData {
    ReportHeading Heading{};
    PollutantNames Names{};
    bool HasRecords = false;                        ///< false = no usage in these months, or no live material
    std::vector<AdditionalHapMaterial> Materials{}; ///< all live ones, used or not, in file order
};
Result<AdditionalHapData> FetchAdditionalHap(AppContext& app, const ReportPeriod& period);
} // namespace mact
