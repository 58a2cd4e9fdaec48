#pragma once

#include "base/app_context.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace mact {

/// Import and export of materials and usage as text files, one record per line, fields separated by "|".
///
/// A failure (a file that cannot be read or written) is shown once (ShowError) and ends the transfer; the
/// counts are those reached before it. What was imported until then is stored.

enum class TransferModule { Materials = 1, Usage = 2 };

/// How far a transfer is.
struct TransferProgress {
    std::uint64_t BytesDone = 0;
    std::uint64_t BytesInAll = 0;
    int Lines = 0; ///< done so far
};
/// Called after each line, so it must be cheap most of the time. False stops the transfer after that line.
using TransferWatcher = std::function<bool(const TransferProgress&)>;

/// Appends each good line of `source` as a record of the current company and writes every rejected line, with
/// the reason, into the error log. Returns 0. An import is on disk when it returns.
std::int16_t ImportMaterialFile(AppContext& app, const std::filesystem::path& source, int& processedCount,
                                int& errorCount, const TransferWatcher& watcher = {});
std::int16_t ImportUsageFile(AppContext& app, const std::filesystem::path& source, int& processedCount,
                             int& errorCount, const TransferWatcher& watcher = {});

/// Replaces `target` by all records, deleted ones too. Returns 0. A failed export leaves the target as it was
/// and counts nothing. A material export never sets the error count.
std::int16_t ExportMaterialFile(AppContext& app, const std::filesystem::path& target, int& processedCount,
                                std::optional<int>& errorCount);
/// Records whose material does not exist go to the error log, and count as errors.
std::int16_t ExportUsageFile(AppContext& app, const std::filesystem::path& target, int& processedCount,
                             std::optional<int>& errorCount);

/// The file that a text box names: blanks around its text do not count, unless there is a file whose name has
/// them.
std::filesystem::path TypedPath(std::string_view utf8Text);

/// The three lines that a dialog shows after its run, separated by CR LF.
std::string ImportSummary(int processedCount, int errorCount);
/// Without an error count its line ends after "Errors : ".
std::string ExportSummary(int processedCount, std::optional<int> errorCount);

/// The logs, in the program folder; each run writes its own anew.
std::filesystem::path ImportErrorLog(const AppContext& app, TransferModule module);
std::filesystem::path UsageExportErrorLog(const AppContext& app);

/// A log's lines, each ended with CR LF, in code-page text.
Result<std::string> ReadErrorLog(FileAccess& files, const std::filesystem::path& log);
} // namespace mact
