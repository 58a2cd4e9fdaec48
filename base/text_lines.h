#pragma once

#include "base/files.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mact {

/// Reads a text file line by line. CR LF, LF or CR alone ends a line; the last one need not be ended.
class TextLines {
public:
    /// `file` must outlive the reader.
    explicit TextLines(OpenedFile& file) : m_file(file) {}

    /// The next line without its line end; empty after the last. The view is valid until the next call.
    Result<std::optional<std::string_view>> Next();
    /// Bytes of the file that the lines so far take, with their line ends.
    std::uint64_t BytesRead() const { return m_offset - (m_buffer.size() - m_start); }

private:
    Result<bool> ReadMore();

    OpenedFile& m_file;
    std::string m_buffer;
    std::size_t m_start = 0;    ///< where the next line begins in m_buffer
    std::uint64_t m_offset = 0; ///< where the file goes on after m_buffer
    bool m_isAtEnd = false;
};
} // namespace mact
