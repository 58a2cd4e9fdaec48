#include "platform/os_script_text.h"

#include <array>
#include <cwchar>
#include <windows.h>

namespace mact {
namespace {

/// The console's character set, as of every console that is opened anew. This process has another one: its
/// manifest asks for UTF-8.
UINT ConsoleCodePage() {
    std::array<wchar_t, 16> text{};
    DWORD size = sizeof text;
    const LSTATUS status =
        RegGetValueW(HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\Nls\\CodePage", L"OEMCP",
                     RRF_RT_REG_SZ, nullptr, text.data(), &size);
    const unsigned long number = status == ERROR_SUCCESS ? std::wcstoul(text.data(), nullptr, 10) : 0;
    return number == 0 ? CP_OEMCP : static_cast<UINT>(number);
}

} // namespace

Result<std::string> ScriptTextOfConsole(std::string_view utf8Text) {
    const UINT codePage = ConsoleCodePage();
    if (codePage == CP_UTF8) return std::string(utf8Text);
    const int utf8Length = static_cast<int>(utf8Text.size());
    std::wstring wide(utf8Text.size(), L'\0'); // never more units than bytes
    const int wideLength = MultiByteToWideChar(CP_UTF8, 0, utf8Text.data(), utf8Length, wide.data(),
                                               static_cast<int>(wide.size()));
    constexpr std::size_t longestCharacter = 2; // bytes, in the widest of the console's sets
    std::string text(wide.size() * longestCharacter, '\0');
    BOOL isLacking = FALSE;
    const int length = WideCharToMultiByte(codePage, WC_NO_BEST_FIT_CHARS, wide.data(), wideLength,
                                           text.data(), static_cast<int>(text.size()), nullptr, &isLacking);
    if (length == 0 || isLacking)
        return Failure{.Doing = "name the folders of a command script",
                       .Reason = "the console's character set lacks a character of " + std::string(utf8Text)};
    text.resize(static_cast<std::size_t>(length));
    return text;
}
} // namespace mact
