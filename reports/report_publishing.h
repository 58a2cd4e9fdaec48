#pragma once

#include "base/app_context.h"
#include "base/result.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace mact {

/// Asks whether a report is wanted although there is nothing to report.
bool UserWantsEmptyReport(AppContext& app);

/// Writes the report's file in the program folder, or the context's ReportTarget, and opens it as OpenReport
/// does. Returns ReportPublished or ReportFailed; if the browser does not start, that is shown, but the
/// report is published. Without a page it shows why there is none and writes nothing.
std::int16_t PublishReport(AppContext& app, std::string_view fileName, Result<std::string> html);

/// Opens a page in the configured browser or, without one, in the system's, if that is set. False if neither
/// is: then nothing was opened.
Result<bool> OpenInBrowser(AppContext& app, const std::filesystem::path& page);

/// The report in the program folder that was written last; empty if there is none.
std::optional<std::filesystem::path> NewestReport(const std::filesystem::path& programFolder);

/// Opens a page that has been written (OpenInBrowser) or, without a browser, says where it was saved. A
/// browser that does not start is shown.
void OpenReport(AppContext& app, const std::filesystem::path& page);
} // namespace mact
