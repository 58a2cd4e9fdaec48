#include "platform/os_script_text.h"

#include <windows.h>

namespace mact {

Result<std::string> ScriptTextOfConsole(std::string_view utf8Text) {
    const int utf8Length = static_cast<int>(utf8Text.size());
    std::wstring wide(utf8Text.size(), L'\0'); // never more units than bytes
    const int wideLength = MultiByteToWideChar(CP_UTF8, 0, utf8Text.data(), utf8Length, wide.data(),
                                               static_cast<int>(wide.size()));
    constexpr std::size_t longestCharacter = 2; // bytes, in the widest of the console's sets
    std::string text(wide.size() * longestCharacter, '\0');
    BOOL isLacking = FALSE;
    const int length = WideCharToMultiByte(CP_OEMCP, WC_NO_BEST_FIT_CHARS, wide.data(), wideLength,
                                           text.data(), static_cast<int>(text.size()), nullptr, &isLacking);
    if (length == 0 || isLacking)
        return Failure{.Doing = "name the folders of a command script",
                       .Reason = "the console's character set lacks a character of " + std::string(utf8Text)};
    text.resize(static_cast<std::size_t>(length));
    return text;
}
} // namespace mact
