#include "transfer/import_run.h"

#include "base/text.h"
#include "base/text_lines.h"
#include "transfer/transfer_guards.h"

namespace mact {
namespace {

/// True if the line was rejected, false if it was stored.
Result<bool> ImportLine(const ImportJob& job, const TextLines& lines, const ImportedLine& line,
                        ImportOutput& output) {
    if (!lines.IsTooLong()) return job.ImportLine(line, output);
    output.LogTooLong(line, lines.Length());
    return true;
}

/// Reports failures to read. The output keeps those to write, and its Finish reports them.
Done ImportLines(const ImportJob& job, OpenedFile& source, ImportOutput& output,
                 const TransferWatcher& watcher) {
    const Result<std::uint64_t> length = source.Length();
    if (!length) return length.error();
    TextLines lines(source);
    for (;;) {
        const Result<std::optional<std::string_view>> line = lines.Next();
        if (!line) return line.error();
        if (!*line) return Success();
        const int number = output.Counts().Processed + 1; // every line counts, rejected and empty ones too
        const Result<bool> isRejected = ImportLine(job, lines, {**line, number}, output);
        if (!isRejected) return isRejected.error();
        if (!output.EndLine(*isRejected)) return Success();
        if (watcher && !watcher({lines.BytesRead(), *length, number})) return Success();
    }
}

Result<std::unique_ptr<OpenedFile>> OpenSource(FileAccess& files, const ImportJob& job) {
    const Done checked = CheckImportSource(job.Source, job.DataFile);
    if (!checked) return checked.error();
    return files.Open(job.Source, OpenMode::Read);
}

} // namespace

Done RunImport(FileAccess& files, const ImportJob& job, const TransferWatcher& watcher,
               ImportCounts& counts) {
    counts = {};
    // Before anything else, since opening the log empties it.
    const Done checked = CheckSourceIsNotLog(job.Source, job.Log);
    if (!checked) return checked;
    const Result<std::unique_ptr<OpenedFile>> source = OpenSource(files, job);
    // Emptied even without a source to read: the last run's entries must not pass for this one's.
    Result<TransferLog> log = TransferLog::Open(files, job.Log);
    if (!source) return source.error();
    if (!log) return log.error();
    // Locked before Prepare reads it, so that no other copy can add a record that Prepare misses.
    Result<RecordFile> records = RecordFile::OpenForWriting(files, job.DataFile, job.SlotLength);
    if (!records) return records.error();
    const Done prepared = job.Prepare(*records);
    if (!prepared) return prepared;

    const std::int16_t before = records->Count();
    ImportOutput output(std::move(*records), std::move(*log));
    const Done imported = ImportLines(job, **source, output, watcher);
    const Done finished = output.Finish(); // in any case: the lines before a failure are kept
    counts = output.Counts();
    if (job.Imported && output.File().Count() > before)
        job.Imported(output.File(), static_cast<std::int16_t>(before + 1));
    return Both(imported, finished);
}

std::string NameOfImport(const std::filesystem::path& source, std::size_t records) {
    return "import \"" + Printable(PathText(source.filename())) + "\" (" + Counted(records, "record") + ')';
}
} // namespace mact
