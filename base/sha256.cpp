#include "base/sha256.h"

#include <algorithm>
#include <bit>

namespace mact {
namespace {

constexpr std::array<std::uint32_t, 64> RoundConstants = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2,
};

std::uint32_t ByteAt(std::string_view bytes, std::size_t index) {
    return static_cast<unsigned char>(bytes[index]);
}

/// The 64 words of a block's message schedule (FIPS 180-4, 6.2.2).
std::array<std::uint32_t, 64> ScheduleOf(std::string_view block) {
    std::array<std::uint32_t, 64> words{};
    for (std::size_t index = 0; index < 16; ++index)
        words[index] = ByteAt(block, index * 4) << 24U | ByteAt(block, index * 4 + 1) << 16U |
                       ByteAt(block, index * 4 + 2) << 8U | ByteAt(block, index * 4 + 3);
    for (std::size_t index = 16; index < words.size(); ++index) {
        const std::uint32_t back15 = words[index - 15];
        const std::uint32_t back2 = words[index - 2];
        const std::uint32_t sigma0 = std::rotr(back15, 7) ^ std::rotr(back15, 18) ^ back15 >> 3U;
        const std::uint32_t sigma1 = std::rotr(back2, 17) ^ std::rotr(back2, 19) ^ back2 >> 10U;
        words[index] = words[index - 16] + sigma0 + words[index - 7] + sigma1;
    }
    return words;
}

} // namespace

void Sha256::AddBlock(std::string_view block) {
    const std::array<std::uint32_t, 64> words = ScheduleOf(block);
    auto [a, b, c, d, e, f, g, h] = m_state; // as the standard names them
    for (std::size_t round = 0; round < words.size(); ++round) {
        const std::uint32_t sum1 = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
        const std::uint32_t choice = (e & f) ^ (~e & g);
        const std::uint32_t first = h + sum1 + choice + RoundConstants[round] + words[round];
        const std::uint32_t sum0 = std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
        const std::uint32_t majority = (a & b) ^ (a & c) ^ (b & c);
        h = g;
        g = f;
        f = e;
        e = d + first;
        d = c;
        c = b;
        b = a;
        a = first + sum0 + majority;
    }
    const std::array<std::uint32_t, 8> added{a, b, c, d, e, f, g, h};
    for (std::size_t index = 0; index < m_state.size(); ++index)
        m_state[index] += added[index];
}

void Sha256::Add(std::string_view bytes) {
    m_length += bytes.size();
    if (!m_rest.empty()) {
        const std::size_t missing = std::min(BlockLength - m_rest.size(), bytes.size());
        m_rest += bytes.substr(0, missing);
        bytes.remove_prefix(missing);
        if (m_rest.size() < BlockLength) return;
        AddBlock(m_rest);
        m_rest.clear();
    }
    for (; bytes.size() >= BlockLength; bytes.remove_prefix(BlockLength))
        AddBlock(bytes.substr(0, BlockLength));
    m_rest = bytes;
}

std::string Sha256::Digits() {
    const std::uint64_t bits = m_length * 8;
    // A bit 1, then bits 0 up to the last eight bytes of a block, which hold the length.
    constexpr std::size_t lengthBytes = 8;
    const std::size_t used = (m_rest.size() + 1 + lengthBytes) % BlockLength;
    std::string end = "\x80" + std::string((BlockLength - used) % BlockLength, '\0');
    for (unsigned shift = 64; shift > 0; shift -= 8)
        end += static_cast<char>(bits >> (shift - 8) & 0xFFU);
    Add(end);

    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const std::uint32_t word : m_state)
        for (unsigned shift = 32; shift > 0; shift -= 4)
            text += digits[word >> (shift - 4) & 0xFU];
    return text;
}

Result<std::string> Sha256OfFile(FileAccess& files, const std::filesystem::path& path) {
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(path, OpenMode::Read);
    if (!file) return file.error();
    Sha256 hash;
    std::string piece(std::size_t{1} << 20U, '\0');
    for (std::uint64_t offset = 0;; offset += piece.size()) {
        const Result<std::size_t> count = (*file)->ReadAt(offset, piece);
        if (!count) return count.error();
        hash.Add(std::string_view(piece).substr(0, *count));
        if (*count < piece.size()) return hash.Digits();
    }
}
} // namespace mact
