#pragma once

#include "base/files.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace mact {

/// An error log while it is written. Lines are collected and written when Write is called.
class TransferLog {
public:
    /// Empties the file and holds it against other running copies.
    static Result<TransferLog> Open(FileAccess& files, const std::filesystem::path& path);

    /// Adds the pieces as one line; the line end is added here.
    void AddLine(std::string_view text, std::string_view more = {});

    /// Bytes added since the last Write.
    std::size_t PendingLength() const { return m_pending.size(); }
    /// Takes back what was added behind `pendingLength`.
    void CutPendingTo(std::size_t pendingLength) { m_pending.resize(pendingLength); }
    /// Where it fails, the lines stay pending, and the file ends behind the last of them that reached it
    /// whole.
    Done Write();
    Done Flush() { return m_file->Flush(); }

private:
    explicit TransferLog(std::unique_ptr<OpenedFile> file) : m_file(std::move(file)) {}
    /// Takes the piece of a line away that a failed write has left.
    void CutToWholeLines();

    std::unique_ptr<OpenedFile> m_file;
    std::uint64_t m_length = 0; ///< of what was written
    std::string m_pending;
};
} // namespace mact
