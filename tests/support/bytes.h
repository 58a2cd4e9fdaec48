#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace mact {

/// Helpers that write out the bytes of data files piece by piece.

inline std::string Padded(std::string_view text, std::size_t length) {
    std::string padded(text);
    padded.resize(length, ' ');
    return padded;
}

inline std::string Zeros(std::size_t length) {
    return std::string(length, '\0');
}

/// The bytes that hexadecimal digits stand for; blanks between them are ignored.
inline std::string Hex(std::string_view digits) {
    std::string bytes;
    int high = -1;
    for (const char digit : digits) {
        if (digit == ' ') continue;
        const int value = digit <= '9' ? digit - '0' : (digit | 0x20) - 'a' + 10;
        if (high < 0) {
            high = value;
        } else {
            bytes += static_cast<char>(high * 16 + value);
            high = -1;
        }
    }
    return bytes;
}
} // namespace mact
