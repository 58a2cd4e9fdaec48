#pragma once

#include "base/app_context.h"
#include "transfer/import_output.h"
#include "transfer/transfer.h"

#include <functional>

/// What an import reads and writes, and what it does with a line.
struct ImportJob {
    std::filesystem::path Source;
    std::filesystem::path Log;
    std::filesystem::path DataFile;
    std::size_t SlotLength = 0;
    /// Called once, with the data file as it is before the import.
    std::function<Done(RecordFile& dataFile)> Prepare;
    /// True when the line was rejected, false when it was stored.
    std::function<Result<bool>(const ImportedLine& line, ImportOutput& output)> ImportLine;
};

/// Runs the import and shows its failure, if there is one. The data file is locked all the while.
ImportCounts RunImport(AppContext& app, const ImportJob& job, const TransferWatcher& watcher);
