#pragma once

#include "base/app_context.h"
#include "base/result.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace mact {

/// The question before an empty report, and a report's end.

/// Asks, when there is nothing to report.
bool UserWantsEmptyReport(AppContext& app);

/// Writes the report's file in the program folder and opens it in the configured browser, or says where it
/// was saved when there is none. Returns ReportPublished or ReportFailed; a browser that does not start is
/// shown, but the report was published. Without a page it shows why there is none, and writes nothing.
std::int16_t PublishReport(AppContext& app, std::string_view fileName, Result<std::string> html);
} // namespace mact
