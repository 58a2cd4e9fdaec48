#pragma once

#include "base/files.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mact {

/// Reads a text file line by line: CR LF, LF or CR alone ends a line, and a last line without an end counts.
class TextLines {
public:
    /// `file` must outlive the reader.
    explicit TextLines(OpenedFile& file) : m_file(file) {}

    /// The next line without its end; empty after the last. The view lasts until the next call.
    Result<std::optional<std::string_view>> Next();
    /// Bytes taken from the file so far.
    std::uint64_t BytesRead() const { return m_offset - (m_buffer.size() - m_start); }

private:
    Result<bool> ReadMore();

    OpenedFile& m_file;
    std::string m_buffer;
    std::size_t m_start = 0;    ///< where the next line begins in m_buffer
    std::uint64_t m_offset = 0; ///< what follows m_buffer in the file
    bool m_isAtEnd = false;
};
} // namespace mact
