#pragma once

#include "store/record_file.h"

#include <string>

namespace mact {

/// Appends many records to a file, collecting them until Write: a write for each would slow an import down.
class RecordAppender {
public:
    /// Up to `room` bytes are collected without being copied again.
    RecordAppender(RecordFile file, std::size_t room) : m_file(std::move(file)) {
        m_pending.reserve(room); // memory that is never touched costs no time
    }

    /// The number for the next record to be added. A Failure if the file is full.
    Result<std::int16_t> NextNumber() const { return m_file.NextNumber(m_pendingCount); }

    template <class Record, class... Types>
    void Add(const RecordLayout<Record, Types...>& layout, const Record& record) {
        AppendPacked(layout, record, m_pending);
        ++m_pendingCount;
    }
    std::size_t PendingLength() const { return m_pending.size(); } ///< bytes added since the last Write

    /// Writes what was added. Sets `stored` to how many of those records are in the file now, perhaps
    /// not all after a failure; the rest is dropped.
    Done Write(std::size_t& stored) {
        const std::int16_t before = m_file.Count();
        const Done written = m_pending.empty() ? Success() : m_file.AppendSlots(m_pending);
        stored = static_cast<std::size_t>(m_file.Count() - before); // correct after a failure too
        // Dropped even then: another try could store the first of them twice.
        m_pending.clear();
        m_pendingCount = 0;
        return written;
    }
    /// Returns once everything written is on the disk, to stay there.
    Done Finish() { return m_file.FinishAppending(); }
    RecordFile& File() { return m_file; }

private:
    RecordFile m_file;
    std::string m_pending; ///< slots, one after the other
    std::size_t m_pendingCount = 0;
};
} // namespace mact
