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
/// counts are those reached before it. What has been imported by then stays.

enum class TransferModule { Materials = 1, Usage = 2 };

/// How far a transfer has got.
struct TransferProgress {
    std::uint64_t BytesDone = 0;
    std::uint64_t BytesInAll = 0;
    int Lines = 0; ///< done so far
};
/// Called after each line, so it must usually be cheap. False stops the transfer after that line.
using TransferWatcher = std::function<bool(const TransferProgress&)>;

/// Appends each good line of `source` as a record of the current company and writes every rejected line, with
/// the reason, to the error log. Returns 0, once everything is on the disk.
std::int16_t ImportMaterialFile(AppContext& app, const std::filesystem::path& source, int& processedCount,
                                int& errorCount, const TransferWatcher& watcher = {});
std::int16_t ImportUsageFile(AppContext& app, const std::filesystem::path& source, int& processedCount,
                             int& errorCount, const TransferWatcher& watcher = {});

/// What became of the lines of an import.
struct ImportCounts {
    int Processed = 0;
    int Errors = 0;         ///< rejected lines
    int AlreadyThere = 0;   ///< those among them whose material, or usage of that month, existed already
    int DroppedFillers = 0; ///< stored materials whose line has a filler
};
/// The same two, with all counts.
ImportCounts ImportMaterials(AppContext& app, const std::filesystem::path& source,
                             const TransferWatcher& watcher = {});
ImportCounts ImportUsage(AppContext& app, const std::filesystem::path& source,
                         const TransferWatcher& watcher = {});

/// Replaces the content of `target` with all records, deleted ones included. Returns 0. A failed export
/// leaves the target as it was and counts nothing. A material export never sets the error count.
std::int16_t ExportMaterialFile(AppContext& app, const std::filesystem::path& target, int& processedCount,
                                std::optional<int>& errorCount);
/// Records without a live material go to the error log instead and count as errors.
std::int16_t ExportUsageFile(AppContext& app, const std::filesystem::path& target, int& processedCount,
                             std::optional<int>& errorCount);

/// The file that a text box names: blanks around it are ignored, unless a file with exactly that name exists.
std::filesystem::path TypedPath(std::string_view utf8Text);

/// The three lines that a dialog shows after a run, separated by CR LF.
std::string ImportSummary(int processedCount, int errorCount);
/// What the summary does not say, in a sentence or two; empty if there is nothing to add.
std::string ImportRemarks(const ImportCounts& counts, TransferModule module);
/// Without an error count the last line ends after "Errors : ".
std::string ExportSummary(int processedCount, std::optional<int> errorCount);

/// The logs, in the program folder; each run replaces its own.
std::filesystem::path ImportErrorLog(const AppContext& app, TransferModule module);
std::filesystem::path UsageExportErrorLog(const AppContext& app);

/// A log's lines, each ending with CR LF, in code-page text. Of a very long log, or one with very long lines,
/// a part, and in front of it a note that says so.
Result<std::string> ReadErrorLog(FileAccess& files, const std::filesystem::path& log);
} // namespace mact
