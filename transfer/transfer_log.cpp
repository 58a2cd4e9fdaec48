#include "transfer/transfer_log.h"

#include <algorithm>

namespace mact {
namespace {
constexpr std::string_view LineEnd = "\r\n";
constexpr std::size_t LongestKept = std::size_t{4} << 20; // bytes of memory that stay for the next lines
constexpr std::size_t RestOfEntry = 1024;                 // bytes
} // namespace

Result<TransferLog> TransferLog::Open(FileAccess& files, const std::filesystem::path& path) {
    Result<std::unique_ptr<OpenedFile>> file = files.Open(path, OpenMode::Update);
    if (!file) return file.error();
    // Emptied only under the lock: another running copy may be writing its own log there.
    Done emptied = (*file)->Lock();
    if (emptied) emptied = (*file)->CutTo(0);
    if (!emptied) return emptied.error();
    return TransferLog(std::move(*file));
}

void TransferLog::AddLine(std::string_view text, std::string_view more) {
    // At once, with room for the rest of the entry: a long line would be copied, and be there twice, for the
    // few bytes behind it.
    const std::size_t needed = m_pending.size() + text.size() + more.size() + LineEnd.size();
    if (needed > m_pending.capacity()) m_pending.reserve(needed + RestOfEntry);
    m_pending += text;
    m_pending += more;
    m_pending += LineEnd;
}

Done TransferLog::Write() {
    const Done written = m_file->WriteAt(m_length, m_pending); // a retry overwrites the first try
    if (!written) {
        CutToWholeLines();
        return written;
    }
    m_length += m_pending.size();
    m_pending.clear();
    // A long line's memory goes back, so that the next one needs no more than itself.
    if (m_pending.capacity() > LongestKept) m_pending.shrink_to_fit();
    return written;
}

void TransferLog::CutToWholeLines() {
    const Result<std::uint64_t> length = m_file->Length();
    if (!length) return;
    // How many of the pending bytes arrived, going by the file's length.
    const std::uint64_t reached = std::clamp(*length, m_length, m_length + m_pending.size()) - m_length;
    const std::size_t lineEnd =
        std::string_view(m_pending).substr(0, static_cast<std::size_t>(reached)).rfind(LineEnd);
    const std::size_t whole = lineEnd == std::string_view::npos ? 0 : lineEnd + LineEnd.size();
    static_cast<void>(m_file->CutTo(m_length + whole)); // the write's failure is the one to report
}
} // namespace mact
