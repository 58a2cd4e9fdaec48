#include "transfer/import_output.h"

#include "transfer/transfer_texts.h"

namespace mact {
namespace {

/// Bytes. Of records, much is written at once: before each write the undo file is told and flushed.
constexpr std::size_t RecordsLength = std::size_t{1} << 22;
constexpr std::size_t LongestSlot = 4096;
constexpr std::size_t LogLength = std::size_t{1} << 20;

void KeepFirst(Done& failure, const Done& next) {
    if (failure) failure = next;
}

} // namespace

ImportOutput::ImportOutput(RecordFile records, TransferLog log)
    : m_records(std::move(records), RecordsLength + LongestSlot), m_log(std::move(log)) {}

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
    if (message == TransferTexts::MaterialExists || message == TransferTexts::UsageExists)
        ++m_counts.AlreadyThere;
}

void ImportOutput::LogTooLong(const ImportedLine& line, std::uint64_t length) {
    std::string text(line.Text);
    text += TransferTexts::BeginningOf;
    text += std::to_string(length);
    text += TransferTexts::BytesOfLine;
    LogRejection({text, line.Number}, TransferTexts::LineTooLong);
}

bool ImportOutput::EndLine(bool isRejected) {
    ++m_counts.Processed;
    if (isRejected) ++m_counts.Errors;
    // Both buffers are emptied together, since a mark counts from the start of the buffered log.
    if (m_records.PendingLength() >= RecordsLength || m_log.PendingLength() >= LogLength) Write();
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
