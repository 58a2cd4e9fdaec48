#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// Text rules. Record text, logs, transfer files and reports hold Windows-1252 text, one byte a character
/// ("code-page text" below); its five unassigned bytes stand for the control characters of the same number.
/// Messages and paths are UTF-8.

/// Removes spaces (byte 32), and nothing else, from both ends.
std::string_view Trim(std::string_view text);

/// Removes spaces (byte 32), and nothing else, from the end.
std::string_view TrimEnd(std::string_view text);

/// The code page's own upper-case mapping, a byte for a byte: é becomes É, ß stays.
std::string UpperCase(std::string_view codePageText);

bool EqualsIgnoringCase(std::string_view left, std::string_view right);

/// Whether two names or identifiers are the same: trimmed, and ignoring case.
bool IsSameName(std::string_view left, std::string_view right);

/// Below 0, 0 or above 0 where the upper-cased `left` comes before, equals or comes after that of `right`.
int CompareIgnoringCase(std::string_view left, std::string_view right);

/// The text by which names and identifiers are compared: trimmed and upper-cased.
std::string ComparisonKey(std::string_view codePageText);

/// The pieces between the separators; a text without one is one piece, the empty text too.
std::vector<std::string_view> Split(std::string_view text, char separator);

/// Appends texts to a text that grows to many pages: no text of its own for each piece.
template <class... Pieces> void AppendAll(std::string& text, const Pieces&... pieces) {
    (text.append(std::string_view(pieces)), ...);
}

std::string Utf8FromCodePage(std::string_view codePageText);

/// A character that the code page lacks, and every byte of malformed UTF-8, becomes "?".
std::string CodePageFromUtf8(std::string_view utf8Text);

/// The path as UTF-8 text with the platform's separators.
std::string PathText(const std::filesystem::path& path);

std::filesystem::path PathFromUtf8(std::string_view utf8Text);
} // namespace mact
