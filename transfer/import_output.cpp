#include "transfer/import_output.h"

#include "transfer/transfer_texts.h"

namespace {
constexpr std::size_t ChunkLength = std::size_t{1} << 18;
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

Done ImportOutput::EndLine(bool isRejected) {
    ++m_counts.Processed;
    if (isRejected) ++m_counts.Errors;
    if (m_slots.size() < ChunkLength && m_log.PendingLength() < ChunkLength) return Success();
    return Write();
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

Done ImportOutput::Write() {
    // The records first: only entries that are not written yet can be taken back.
    const Done recordsWritten = WriteRecords();
    const Done logWritten = m_log.Write();
    return recordsWritten ? logWritten : recordsWritten;
}

Done ImportOutput::Finish() {
    const Done written = Write();
    const Done recordsFlushed = m_records.Flush();
    const Done logFlushed = m_log.Flush();
    if (!written) return written;
    return recordsFlushed ? logFlushed : recordsFlushed;
}
