#pragma once

#include "store/record_appender.h"
#include "transfer/transfer.h"
#include "transfer/transfer_log.h"

#include <string_view>
#include <vector>

namespace mact {

/// A line of an import file.
struct ImportedLine {
    std::string_view Text;
    int Number = 0; ///< from 1
};

/// Succeeds if both did; otherwise reports both failures, `first`'s first.
Done Both(const Done& first, const Done& second);

/// What an import writes: records for the good lines, log entries for the others, and the counts of both.
///
/// Records and log entries are buffered and written in large blocks. If the disk fills up, the counts and the
/// log are taken back to where they were before the first line whose record did not reach the file.
class ImportOutput {
public:
    ImportOutput(RecordFile records, TransferLog log);

    /// Logs a line that has the wrong number of fields.
    void LogInvalidFieldCount(const ImportedLine& line);
    void LogRejection(const ImportedLine& line, std::string_view message);
    /// To be called after the record of its line was appended.
    void CountDroppedFiller() { ++m_counts.DroppedFillers; }
    /// Logs a line of `length` bytes, more than are read. `line` holds its beginning.
    void LogTooLong(const ImportedLine& line, std::uint64_t length);

    /// The number of the next record. A Failure when the file is full.
    Result<std::int16_t> NextNumber() const { return m_records.NextNumber(); }
    /// Stores the current line's record, before EndLine counts the line.
    template <class Record, class... Types>
    void AppendRecord(const RecordLayout<Record, Types...>& layout, const Record& record) {
        m_records.Add(layout, record);
        m_marks.push_back({m_counts, m_log.PendingLength()});
    }

    /// To be called after each line: counts it, and writes once enough is buffered. False if that failed;
    /// Finish reports why.
    bool EndLine(bool isRejected);
    /// Writes what is buffered and returns once it is on the disk. Reports the first failure of the data file
    /// and the first of the log.
    Done Finish();
    const ImportCounts& Counts() const { return m_counts; }
    /// The data file, to be read after Finish.
    RecordFile& File() { return m_records.File(); }

private:
    /// The state before a line whose record is still buffered.
    struct Mark {
        ImportCounts Counts;
        std::size_t PendingLogLength;
    };
    Done WriteRecords();
    void Write();

    RecordAppender m_records;
    TransferLog m_log;
    Done m_recordsDone = Success(); ///< or the data file's first failure
    Done m_logDone = Success();     ///< or the log's first failure
    ImportCounts m_counts;
    std::vector<Mark> m_marks; ///< one per buffered record
};
} // namespace mact
