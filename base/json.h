#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// JSON, in UTF-8, that both programs and people read.

/// The text in quotes. Control characters are escaped, also those that JSON would take as they are, since a
/// terminal might obey them; a malformed byte becomes U+FFFD.
std::string JsonText(std::string_view utf8Text);

/// null for an empty text.
std::string JsonTextOrNull(std::string_view utf8Text);

/// An array with each of its objects on a line, ending with LF.
std::string JsonLines(const std::vector<std::string>& objects);
} // namespace mact
