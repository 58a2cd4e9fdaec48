#pragma once

#include "base/app_context.h"
#include "base/files.h"

#include <filesystem>

namespace mact {

/// What keeps a transfer from destroying the user's own data, or from waiting for a file that never ends.

/// A source that is not the log that the import empties.
Done CheckSourceIsNotLog(const std::filesystem::path& source, const std::filesystem::path& log);

/// A source that is a file (not a folder, a pipe or a device), and not the data file that the import writes.
Done CheckImportSource(const std::filesystem::path& source, const std::filesystem::path& dataFile);

/// A target that is no data file of any company, not the log that the export writes (empty = none), and no
/// pipe.
Done CheckExportTarget(const AppContext& app, const std::filesystem::path& target,
                       const std::filesystem::path& log);
} // namespace mact
