#include "transfer/transfer_log.h"

Result<TransferLog> TransferLog::Open(FileAccess& files, const std::filesystem::path& path) {
    Result<std::unique_ptr<OpenFile>> file = files.Open(path, OpenMode::Update);
    if (!file) return file.error();
    // Not before it is ours: another running copy may be writing the log of its own run.
    Done emptied = (*file)->Lock();
    if (emptied) emptied = (*file)->CutTo(0);
    if (!emptied) return emptied.error();
    return TransferLog(std::move(*file));
}

void TransferLog::AddLine(std::string_view text, std::string_view more) {
    m_pending += text;
    m_pending += more;
    m_pending += "\r\n";
}

Done TransferLog::Write() {
    const Done written = m_file->WriteAt(m_length, m_pending);
    if (!written) return written;
    m_length += m_pending.size();
    m_pending.clear();
    return written;
}
