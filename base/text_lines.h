#pragma once

#include "base/files.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mact {

/// How much of a line is kept in memory.
struct LineLimits {
    std::size_t Longest = std::size_t{16} * 1024 * 1024; ///< bytes; a longer line is only measured
    std::size_t KeptOfLonger = 100;                      ///< the first bytes of a longer one; at most Longest
};

/// Reads a text file line by line. CR LF, LF or CR alone ends a line; the last one need not be ended. However
/// long a line is, little more than LineLimits::Longest bytes of it are ever in memory.
class TextLines {
public:
    /// `file` must outlive the reader.
    explicit TextLines(OpenedFile& file, LineLimits limits = {}) : m_file(file), m_limits(limits) {}

    /// The next line without its line end, or the beginning of one that is too long; empty after the last.
    /// The view is valid until the next call.
    Result<std::optional<std::string_view>> Next();
    /// Of the line that Next has returned last, in bytes without its line end.
    std::uint64_t Length() const { return m_length; }
    bool IsTooLong() const { return m_length > m_limits.Longest; }
    /// Bytes of the file that the lines so far take, with their line ends.
    std::uint64_t BytesRead() const { return m_offset - (m_buffer.size() - m_start); }

private:
    Result<bool> ReadMore();
    void LookForEnds(std::size_t from);
    /// The line that goes on until `end` in the buffer.
    std::string_view Take(std::size_t end);
    /// Drops the bytes before `end` if they make the line too long.
    void DropIfTooLong(std::size_t end);

    OpenedFile& m_file;
    LineLimits m_limits;
    std::string m_buffer;
    std::size_t m_start = 0; ///< where the rest of the line, or the next one, begins in m_buffer
    // The next of each from m_start on; npos = none in m_buffer.
    std::size_t m_lineFeed = std::string::npos;
    std::size_t m_carriageReturn = std::string::npos;
    std::uint64_t m_offset = 0; ///< where the file goes on after m_buffer
    std::uint64_t m_length = 0; ///< of the line, without what is still in m_buffer
    std::string m_keptOfLonger; ///< the beginning of a line of which bytes were dropped
    bool m_isAtEnd = false;
};
} // namespace mact
