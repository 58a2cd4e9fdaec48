#include "transfer/import_output.h"

#include "transfer/transfer_texts.h"

namespace mact {
namespace {

constexpr std::size_t ChunkLength = std::size_t{1} << 20; // bytes, in either buffer

void KeepFirst(Done& failure, const Done& next) {
    if (failure) failure = next;
}

} // namespace

Done Both(const Done& first, const Done& second) {
    if (first || second) return first ? second : first;
    return BothOf(first.error(), second.error());
}

void ImportOutput::LogInvalidFieldCount(const ImportedLine& line) {
    m_log.AddLine(line.Text, TransferTexts::InvalidFieldCount);
}

void ImportOutput::LogRejection(const ImportedLine& line, std::string_view message) {
    m_log.AddLine(TransferTexts::RecordNumber, std::to_string(line.Number));
    m_log.AddLine(TransferTexts::Record, line.Text);
    m_log.AddLine(message);
    m_log.AddLine({}); // an entry ends with an empty line
}

bool ImportOutput::EndLine(bool isRejected) {
    ++m_counts.Processed;
    if (isRejected) ++m_counts.Errors;
    // Both buffers are emptied together, since a mark counts from the start of the buffered log.
    if (m_records.PendingLength() >= ChunkLength || m_log.PendingLength() >= ChunkLength) Write();
    return m_recordsDone && m_logDone;
}

Done ImportOutput::WriteRecords() {
    std::size_t stored = 0;
    const Done written = m_records.Write(stored);
    if (!written && stored < m_marks.size()) {
        // Takes back the line of the first record that is missing, and all lines after it, rejected or not.
        const Mark& mark = m_marks[stored];
        m_counts = mark.Counts;
        m_log.CutPendingTo(mark.PendingLogLength);
    }
    m_marks.clear(); // after a failure too: the appender has dropped the rest
    return written;
}

void ImportOutput::Write() {
    // Records first: once log entries are in the file they cannot be taken back.
    KeepFirst(m_recordsDone, WriteRecords());
    KeepFirst(m_logDone, m_log.Write());
}

Done ImportOutput::Finish() {
    Write();
    // Flushed even after a failure, since what did reach the files stays.
    KeepFirst(m_recordsDone, m_records.Finish());
    KeepFirst(m_logDone, m_log.Flush());
    return Both(m_recordsDone, m_logDone);
}
} // namespace mact
