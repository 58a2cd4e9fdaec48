#include "base/text_lines.h"

#include <algorithm>
#include <span>

namespace mact {
namespace {

constexpr std::size_t ChunkLength = std::size_t{1} << 18; // bytes

} // namespace

Result<bool> TextLines::ReadMore() {
    if (m_isAtEnd) return false;
    m_buffer.erase(0, m_start);
    m_start = 0;
    const std::size_t kept = m_buffer.size();
    // For a line that outgrows the buffer, at once all that it may need: doubling would take twice as much,
    // and memory that is never touched costs nothing.
    if (kept > ChunkLength) m_buffer.reserve(m_limits.Longest + 1 + ChunkLength);
    m_buffer.resize(kept + ChunkLength);
    const Result<std::size_t> count = m_file.ReadAt(m_offset, std::span(m_buffer).subspan(kept));
    if (!count) {
        m_buffer.resize(kept);
        return count.error();
    }
    m_buffer.resize(kept + *count);
    m_offset += *count;
    m_isAtEnd = *count < ChunkLength; // ReadAt is short only there
    return *count > 0;
}

void TextLines::LookForEnds(std::size_t from) {
    m_lineFeed = m_buffer.find('\n', from);
    m_carriageReturn = m_buffer.find('\r', from);
}

std::string_view TextLines::Take(std::size_t end) {
    const bool isWhole = m_length == 0; // nothing of it was dropped
    const std::string_view rest = std::string_view(m_buffer).substr(m_start, end - m_start);
    m_length += rest.size();
    m_start = end;
    if (!isWhole) return m_keptOfLonger;
    return IsTooLong() ? rest.substr(0, m_limits.KeptOfLonger) : rest;
}

void TextLines::DropIfTooLong(std::size_t end) {
    const std::size_t count = end - m_start;
    if (m_length + count <= m_limits.Longest) return;
    if (m_length == 0) m_keptOfLonger = m_buffer.substr(m_start, m_limits.KeptOfLonger);
    m_length += count;
    m_start = end;
}

Result<std::optional<std::string_view>> TextLines::Next() {
    m_length = 0;
    // Each is looked for only once it is passed, or a file without it would be searched to its end for each
    // line.
    if (m_lineFeed < m_start) m_lineFeed = m_buffer.find('\n', m_start);
    if (m_carriageReturn < m_start) m_carriageReturn = m_buffer.find('\r', m_start);
    for (;;) {
        const std::size_t end = std::min(m_lineFeed, m_carriageReturn);
        // A CR at the end of the buffer may be half of a CR LF: the next byte of the file decides.
        const bool mayBeHalf =
            end != std::string::npos && m_buffer[end] == '\r' && end + 1 == m_buffer.size();
        if (end != std::string::npos && !(mayBeHalf && !m_isAtEnd)) {
            const std::string_view line = Take(end);
            m_start = end + (m_buffer.compare(end, 2, "\r\n") == 0 ? 2 : 1);
            return std::optional(line);
        }
        const std::size_t searchedNow = end == std::string::npos ? m_buffer.size() : end;
        DropIfTooLong(searchedNow);
        const std::size_t searched = searchedNow - m_start;
        const Result<bool> more = ReadMore();
        if (!more) return more.error();
        // A CR that ends the file is found again in the next round, and then ends its line by itself.
        if (!*more && !mayBeHalf) break;
        // ReadMore has moved the line to the buffer's front. The part already searched holds no line end.
        LookForEnds(m_start + searched);
    }
    if (m_start == m_buffer.size() && m_length == 0)
        return std::optional<std::string_view>{}; // nothing after the last end
    return std::optional(Take(m_buffer.size()));
}
} // namespace mact
