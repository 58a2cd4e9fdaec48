#pragma once

#include "base/files.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace mact {

/// An error log that is being written. Lines are buffered until Write is called.
class TransferLog {
public:
    /// Locks the file against other running copies and empties it.
    static Result<TransferLog> Open(FileAccess& files, const std::filesystem::path& path);

    /// Adds the two texts as one line; the line end is added here.
    void AddLine(std::string_view text, std::string_view more = {});

    /// Bytes added since the last Write.
    std::size_t PendingLength() const { return m_pending.size(); }
    /// Drops what was added after the first `pendingLength` bytes.
    void CutPendingTo(std::size_t pendingLength) { m_pending.resize(pendingLength); }
    /// If it fails, the lines stay pending, and the file ends after the last line that was written in full.
    Done Write();
    Done Flush() { return m_file->Flush(); }

private:
    explicit TransferLog(std::unique_ptr<OpenedFile> file) : m_file(std::move(file)) {}
    /// Removes the partial line that a failed write has left.
    void CutToWholeLines();

    std::unique_ptr<OpenedFile> m_file;
    std::uint64_t m_length = 0; ///< of what was written
    std::string m_pending;
};
} // namespace mact
