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
} // namespace mact
