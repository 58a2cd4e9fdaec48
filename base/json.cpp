#include "base/json.h"

#include "base/text.h"

namespace mact {
namespace {

/// The character is below U+0100.
std::string Escaped(char32_t character) {
    constexpr std::string_view digits = "0123456789abcdef";
    return {'\\', 'u', '0', '0', digits[character / 16], digits[character % 16]};
}

} // namespace

std::string JsonText(std::string_view utf8Text) {
    std::string json = "\"";
    while (!utf8Text.empty()) {
        const DecodedCharacter decoded = DecodeUtf8(utf8Text);
        if (decoded.Character == '"' || decoded.Character == '\\') json += '\\';
        if (IsControl(decoded.Character))
            json += Escaped(decoded.Character);
        else
            json += decoded.IsMalformed ? "\xEF\xBF\xBD" : utf8Text.substr(0, decoded.Length);
        utf8Text.remove_prefix(decoded.Length);
    }
    return json + '"';
}

std::string JsonTextOrNull(std::string_view utf8Text) {
    return utf8Text.empty() ? "null" : JsonText(utf8Text);
}

std::string JsonLines(const std::vector<std::string>& objects) {
    std::string json = "[";
    for (const std::string& object : objects)
        json += (json.size() == 1 ? "\n  " : ",\n  ") + object;
    return json + (objects.empty() ? "]\n" : "\n]\n");
}
} // namespace mact
