#include "transfer/import_output.h"

#include "transfer/transfer_texts.h"

namespace mact {
namespace {

constexpr std::size_t ChunkLength = std::size_t{1} << 20;

void KeepFirst(Done& failure, const Done& next) {
    if (failure) failure = next;
}

} // namespace

Done Both(const Done& first, const Done& second) {
    if (first || second) return first ? second : first;
    return Failure{first.error().Description + ' ' + second.error().Description};
}

void ImportOutput::LogInvalidFieldCount(const ImportedLine& line) {
    m_log.AddLine(line.Text, TransferTexts::InvalidFieldCount);
}

void ImportOutput::LogRejection(const ImportedLine& line, std::string_view message) {
    m_log.AddLine(TransferTexts::RecordNumber, std::to_string(line.Number));
    m_log.AddLine(TransferTexts::Record, line.Text);
    m_log.AddLine(message);
    m_log.AddLine({});
}

bool ImportOutput::EndLine(bool isRejected) {
    ++m_counts.Processed;
    if (isRejected) ++m_counts.Errors;
    if (m_slots.size() >= ChunkLength || m_log.PendingLength() >= ChunkLength) Write();
    return m_recordsDone && m_logDone;
}

Done ImportOutput::WriteRecords() {
    if (m_slots.empty()) return Success();
    const auto countBefore = static_cast<std::size_t>(m_records.Count());
    const Done written = m_records.AppendSlots(m_slots);
    const std::size_t stored = static_cast<std::size_t>(m_records.Count()) - countBefore;
    if (!written && stored < m_slotMarks.size()) {
        const Mark& mark = m_slotMarks[stored];
        m_counts = mark.Counts;
        m_log.CutPendingTo(mark.PendingLogLength);
    }
    m_slots.clear();
    m_slotMarks.clear();
    return written;
}

void ImportOutput::Write() {
    // The records first: only entries that are not written yet can be taken back.
    KeepFirst(m_recordsDone, WriteRecords());
    KeepFirst(m_logDone, m_log.Write());
}

Done ImportOutput::Finish() {
    Write();
    KeepFirst(m_recordsDone, m_records.Flush());
    KeepFirst(m_logDone, m_log.Flush());
    return Both(m_recordsDone, m_logDone);
}

} // namespace mact
