#pragma once

#include "base/files.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace mact {

/// The SHA-256 of FIPS 180-4, by which a file can be told from any other.
class Sha256 {
public:
    void Add(std::string_view bytes);
    /// 64 hexadecimal digits, in lower case. Nothing can be added after it.
    std::string Digits();

private:
    static constexpr std::size_t BlockLength = 64; // bytes

    void AddBlock(std::string_view block);

    std::array<std::uint32_t, 8> m_state{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                         0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    std::string m_rest; ///< the beginning of a block
    std::uint64_t m_length = 0;
};

/// Of all bytes of a file.
Result<std::string> Sha256OfFile(FileAccess& files, const std::filesystem::path& path);
} // namespace mact
