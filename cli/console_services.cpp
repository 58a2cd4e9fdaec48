#include "cli/console_services.h"

#include "base/text.h"

#include <iostream>

#ifdef _WIN32
#include "platform/os_script_text.h"
#endif

namespace mact {
namespace {

/// The text in one line: a blank for each run of line ends.
std::string OneLine(const std::string& text) {
    std::string line;
    bool isAfterLineEnd = false;
    for (const char character : text) {
        const bool isLineEnd = character == '\r' || character == '\n';
        if (!isLineEnd) {
            if (isAfterLineEnd) line += ' ';
            line += character;
        }
        isAfterLineEnd = isLineEnd;
    }
    return line;
}

} // namespace

PromptAnswer ConsolePrompts::Show(const Prompt& prompt) {
    if (prompt.Buttons != PromptButtons::Ok) return AnswersYes ? PromptAnswer::Yes : PromptAnswer::No;
    if (prompt.Kind == PromptKind::Information) return PromptAnswer::Ok;
    std::cerr << Printable(OneLine(prompt.Text)) << '\n';
    m_hasShownFailure = true;
    return PromptAnswer::Ok;
}

#ifdef _WIN32
Result<std::string> ConsolePrograms::ScriptText(std::string_view utf8Text) {
    return ScriptTextOfConsole(utf8Text);
}
#endif
} // namespace mact
