#pragma once

#include "base/app_context.h"
#include "base/files.h"

#include <filesystem>

namespace mact {

/// These keep a transfer from destroying the user's data and from waiting for a file that never ends.

/// Fails if the source is the log, which the import empties.
Done CheckSourceIsNotLog(const std::filesystem::path& source, const std::filesystem::path& log);

/// Fails if the source is a pipe, a socket, a device, or the data file that the import writes to.
Done CheckImportSource(const std::filesystem::path& source, const std::filesystem::path& dataFile);

/// Fails if the target is a data file, the log that the export writes (empty = none), a pipe or a socket.
Done CheckExportTarget(const AppContext& app, const std::filesystem::path& target,
                       const std::filesystem::path& log);
} // namespace mact
