#pragma once

#include "base/app_context.h"
#include "cli/commands.h"

#include <cstdint>
#include <string>
#include <vector>

namespace mact {

/// Deleted records on the command line.

/// Prints a line for each deleted record of the current company: materials|number|Material ID, and then
/// usage|number|Material ID|month|quantity|unit.
ExitStatus ListDeleted(AppContext& app);

/// Brings back the deleted records with these numbers, all or none, and prints the lines that ListDeleted
/// printed of them. `file` must be one of RecordFileNames().
ExitStatus Undelete(AppContext& app, const std::string& file, const std::vector<std::int16_t>& numbers);
const std::vector<std::string>& RecordFileNames();
} // namespace mact
