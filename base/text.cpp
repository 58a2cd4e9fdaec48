#include "base/text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace mact {
namespace {

// Bytes 128 to 159 of Windows-1252 in Unicode; all other bytes have the same number in both.
constexpr std::array<char16_t, 32> HighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

char16_t CharacterOf(unsigned char byte) {
    return byte >= 0x80 && byte <= 0x9F ? HighControls[byte - 0x80] : char16_t{byte};
}

std::optional<char> ByteOf(char32_t character) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<char>(character);
    const auto* const found = std::ranges::find(HighControls, character);
    if (found == HighControls.end()) return std::nullopt;
    return static_cast<char>(0x80 + (found - HighControls.begin()));
}

constexpr unsigned char UpperByte(unsigned char byte) {
    if (byte >= 'a' && byte <= 'z') return static_cast<unsigned char>(byte - 32);
    // Accented letters lie 32 apart, except for the four below. 0xF7 (÷) is no letter.
    if (byte >= 0xE0 && byte <= 0xFE && byte != 0xF7) return static_cast<unsigned char>(byte - 32);
    switch (byte) {
    case 0x9A: // š
    case 0x9C: // œ
    case 0x9E: // ž
        return static_cast<unsigned char>(byte - 16);
    case 0xFF: // ÿ
        return 0x9F;
    default:
        return byte;
    }
}

constexpr std::array<unsigned char, 256> UpperBytes = [] {
    std::array<unsigned char, 256> table{};
    for (unsigned byte = 0; byte < 256; ++byte)
        table[byte] = UpperByte(static_cast<unsigned char>(byte));
    return table;
}();

unsigned char Upper(char byte) {
    return UpperBytes[static_cast<unsigned char>(byte)];
}

/// At most three bytes: the code page has no character beyond U+FFFF.
void AppendUtf8(std::string& text, char16_t character) {
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | (character >> 6));
        text += static_cast<char>(0x80 | (character & 0x3F));
    } else {
        text += static_cast<char>(0xE0 | (character >> 12));
        text += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (character & 0x3F));
    }
}

} // namespace

std::string_view Trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return text.substr(0, 0);
    return TrimEnd(text.substr(first));
}

std::string_view TrimEnd(std::string_view text) {
    return text.substr(0, text.find_last_not_of(' ') + 1); // nothing found is the largest number: + 1 is 0
}

std::string UpperCase(std::string_view codePageText) {
    std::string upper(codePageText);
    std::ranges::transform(upper, upper.begin(), [](char byte) { return static_cast<char>(Upper(byte)); });
    return upper;
}

bool EqualsIgnoringCase(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, Upper, Upper);
}

bool IsSameName(std::string_view left, std::string_view right) {
    return EqualsIgnoringCase(Trim(left), Trim(right));
}

int CompareIgnoringCase(std::string_view left, std::string_view right) {
    if (left == right) return 0; // most texts compared are spelled alike
    const auto [inLeft, inRight] = std::ranges::mismatch(left, right, {}, Upper, Upper);
    // Where one text begins the other, the shorter comes first.
    if (inLeft == left.end() || inRight == right.end())
        return static_cast<int>(inRight == right.end()) - static_cast<int>(inLeft == left.end());
    return Upper(*inLeft) - Upper(*inRight);
}

std::string ComparisonKey(std::string_view codePageText) {
    return UpperCase(Trim(codePageText));
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    for (std::size_t start = 0;;) {
        const std::size_t end = text.find(separator, start);
        pieces.push_back(text.substr(start, end - start));
        if (end == std::string_view::npos) return pieces;
        start = end + 1;
    }
}

std::string Utf8FromCodePage(std::string_view codePageText) {
    std::string text;
    text.reserve(codePageText.size());
    for (const char byte : codePageText)
        AppendUtf8(text, CharacterOf(static_cast<unsigned char>(byte)));
    return text;
}

DecodedCharacter DecodeUtf8(std::string_view text) {
    constexpr DecodedCharacter malformed{0xFFFD, 1, true}; // a character that the code page lacks
    const auto byteAt = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const unsigned char first = byteAt(0);
    if (first < 0x80) return {first, 1};
    std::size_t length = 0;
    char32_t character = 0;
    if (first >= 0xC2 && first <= 0xDF) { // 0xC0 and 0xC1 begin only overlong forms
        length = 2;
        character = first & 0x1FU;
    } else if (first >= 0xE0 && first <= 0xEF) {
        length = 3;
        character = first & 0x0FU;
    } else if (first >= 0xF0 && first <= 0xF4) {
        length = 4;
        character = first & 0x07U;
    } else {
        return malformed;
    }
    if (text.size() < length) return malformed;
    for (std::size_t index = 1; index < length; ++index) {
        if ((byteAt(index) & 0xC0U) != 0x80U) return malformed;
        character = (character << 6) | (byteAt(index) & 0x3FU);
    }
    const bool overlong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    if (overlong || surrogate || character > 0x10FFFF) return malformed;
    return {character, length};
}

std::string Printable(std::string_view utf8Text) {
    std::string text;
    text.reserve(utf8Text.size());
    while (!utf8Text.empty()) {
        const DecodedCharacter decoded = DecodeUtf8(utf8Text);
        // A malformed byte, such as one of a path, stays.
        text += IsControl(decoded.Character) ? std::string_view("?") : utf8Text.substr(0, decoded.Length);
        utf8Text.remove_prefix(decoded.Length);
    }
    return text;
}

std::string CodePageFromUtf8(std::string_view utf8Text) {
    std::string text;
    text.reserve(utf8Text.size());
    while (!utf8Text.empty()) {
        const DecodedCharacter decoded = DecodeUtf8(utf8Text);
        text += ByteOf(decoded.Character).value_or('?');
        utf8Text.remove_prefix(decoded.Length);
    }
    return text;
}

std::string Counted(std::uint64_t number, std::string_view of) {
    return std::to_string(number) + ' ' + std::string(of) + (number == 1 ? "" : "s");
}

std::string PathText(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::filesystem::path PathFromUtf8(std::string_view utf8Text) {
    return {std::u8string(utf8Text.begin(), utf8Text.end())};
}
} // namespace mact
