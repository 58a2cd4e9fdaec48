#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// Text rules. Record text, logs, transfer files and reports hold Windows-1252 text, one byte per character
/// ("code-page text" below); its five unassigned bytes are the control characters with the same number.
/// Messages and paths are UTF-8.

/// Removes spaces (byte 32), and nothing else, from both ends.
std::string_view Trim(std::string_view text);

/// Removes spaces (byte 32), and nothing else, from the end.
std::string_view TrimEnd(std::string_view text);

/// The code page's own upper-case mapping, byte for byte: é becomes É, ß stays.
std::string UpperCase(std::string_view codePageText);

bool EqualsIgnoringCase(std::string_view left, std::string_view right);

/// Whether two names or identifiers are the same: trimmed, and ignoring case.
bool IsSameName(std::string_view left, std::string_view right);

/// Below, equal to or above 0 if `left` sorts before, with or after `right`, both in upper case.
int CompareIgnoringCase(std::string_view left, std::string_view right);

/// What names and identifiers are compared by: the text, trimmed and in upper case.
std::string ComparisonKey(std::string_view codePageText);

/// The pieces between the separators. Without a separator the whole text is one piece, even if empty.
std::vector<std::string_view> Split(std::string_view text, char separator);

/// Appends the pieces without making temporary strings of them, as pages of a report grow long.
template <class... Pieces> void AppendAll(std::string& text, const Pieces&... pieces) {
    (text.append(std::string_view(pieces)), ...);
}

std::string Utf8FromCodePage(std::string_view codePageText);

/// The text, in UTF-8, to be printed: with "?" for each control character, which a terminal might obey
/// instead of showing it.
std::string Printable(std::string_view utf8Text);

/// The first character of a text in UTF-8 that is not empty.
struct DecodedCharacter {
    char32_t Character = 0; ///< 0xFFFD for a malformed byte
    std::size_t Length = 1; ///< bytes
    bool IsMalformed = false;
};
DecodedCharacter DecodeUtf8(std::string_view text);

/// Whether a terminal might obey the character instead of showing it.
constexpr bool IsControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character <= 0x9F);
}

/// A character that the code page lacks, and every byte of malformed UTF-8, becomes "?".
std::string CodePageFromUtf8(std::string_view utf8Text);

/// "1 record", "2 records".
std::string Counted(std::uint64_t number, std::string_view of);

/// The path as UTF-8 text with the platform's separators.
std::string PathText(const std::filesystem::path& path);

std::filesystem::path PathFromUtf8(std::string_view utf8Text);
} // namespace mact
