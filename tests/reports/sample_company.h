#pragma once

#include "base/app_context.h"
#include "reports/report_period.h"

#include <string>

namespace mact {

/// The company of the expected pages in tests/data/reports: the default type table, eleven materials and
/// their usage around the year that ends with March 2005. make_expected_pages.py there has the same input,
/// typed in again by hand.
void StoreSampleCompany(AppContext& app);

inline const ReportPeriod SamplePeriod{.EndText = "3/2005"};

/// The bytes of an expected page.
std::string ExpectedPage(const std::string& fileName);
} // namespace mact
