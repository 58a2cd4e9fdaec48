#pragma once

#include "base/app_context.h"
#include "cli/commands.h"

#include <string>

namespace mact {

/// The compliance overview on the command line. None of these changes a data file.

/// Which month ends are asked for, as M/YYYY; empty = not said.
struct OverviewSpan {
    std::string From{};
    std::string To{};
};
/// Prints the figures of the month ends: as a table, or as CSV. By default the twelve up to the newest month
/// with use; without any use, none.
ExitStatus PrintOverview(AppContext& app, const OverviewSpan& span, bool isCsv);

/// Prints a line for the current company or, with `isAll`, for each, worst first.
ExitStatus PrintStatus(AppContext& app, bool isAll, bool isJson);

/// Prints what a figure of the month end (M/YYYY) was calculated from. `figure` and `item` are as in the CSV,
/// in UTF-8.
ExitStatus PrintTrace(AppContext& app, const std::string& monthEnd, const std::string& figure,
                      const std::string& item);

/// Writes the half-year pack of 1/2005 or 2/2005 and prints the paths of its files. One that is kept is
/// replaced only if `mayReplace`.
ExitStatus WriteHalfYear(AppContext& app, const std::string& halfYear, bool mayReplace);
} // namespace mact
