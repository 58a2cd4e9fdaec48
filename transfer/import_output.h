#pragma once

#include "store/record_file.h"
#include "transfer/transfer_log.h"

#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// A line of an import file.
struct ImportedLine {
    std::string_view Text;
    int Number = 0; ///< from 1
};

struct ImportCounts {
    int Processed = 0;
    int Errors = 0;
};

/// Succeeds when both did; otherwise tells what failed, the first's failure first.
Done Both(const Done& first, const Done& second);

/// What an import writes: the records of the good lines, the log of the others, and the counts of both.
///
/// Records and log entries are collected and written many at a time. When the disk is full in between, the
/// counts and the log go back to where they were before the first line whose record is not in the file.
class ImportOutput {
public:
    ImportOutput(RecordFile records, TransferLog log)
        : m_records(std::move(records)), m_log(std::move(log)) {}

    /// Of a line that cannot be split into its fields.
    void LogInvalidFieldCount(const ImportedLine& line);
    void LogRejection(const ImportedLine& line, std::string_view message);

    /// The number of the next record. A Failure when the file is full.
    Result<std::int16_t> NextNumber() const { return m_records.NextNumber(m_slotMarks.size()); }
    /// Stores the present line's record.
    template <class Record> void AppendRecord(const RecordLayout<Record>& layout, const Record& record) {
        AppendPacked(layout, record, m_slots);
        m_slotMarks.push_back({m_counts, m_log.PendingLength()});
    }

    /// To be called after each line: counts it, and writes when enough was collected. False when that failed:
    /// Finish tells why.
    bool EndLine(bool isRejected);
    /// Writes everything and returns when it is on the disk. Tells the first failure of the records and the
    /// first of the log.
    Done Finish();
    const ImportCounts& Counts() const { return m_counts; }

private:
    /// How things stood before a line.
    struct Mark {
        ImportCounts Counts;
        std::size_t PendingLogLength;
    };
    Done WriteRecords();
    void Write();

    RecordFile m_records;
    TransferLog m_log;
    Done m_recordsDone = Success(); ///< or the first failure
    Done m_logDone = Success();     ///< the same
    ImportCounts m_counts;
    std::string m_slots;
    std::vector<Mark> m_slotMarks; ///< one for each of m_slots
};

} // namespace mact
