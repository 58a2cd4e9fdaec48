#pragma once

#include "base/app_context.h"
#include "transfer/import_output.h"
#include "transfer/line_fields.h"
#include "transfer/transfer.h"

#include <functional>

namespace mact {

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

/// Runs the import, sets the counts and shows its failure, if there is one. The data file is locked all the
/// while.
void RunImport(AppContext& app, const ImportJob& job, const TransferWatcher& watcher, int& processedCount,
               int& errorCount);

/// Splits the line into `checked.Fields` and has them checked by `check`, which answers the first error's
/// message. Logs a rejection.
template <class CheckedLine, class Check>
bool IsRejected(const ImportedLine& line, ImportOutput& output, CheckedLine& checked, const Check& check) {
    const auto fields = SplitFields<std::tuple_size_v<decltype(checked.Fields)>>(line.Text);
    if (!fields) {
        output.LogInvalidFieldCount(line);
        return true;
    }
    checked.Fields = *fields;
    const std::string_view error = check(checked);
    if (!error.empty()) output.LogRejection(line, error);
    return !error.empty();
}

} // namespace mact
