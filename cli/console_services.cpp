#include "cli/console_services.h"

#include <iostream>

namespace {

/// The text in one line: each run of line ends becomes one blank, and everything else stays, as a path must.
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
    std::cerr << OneLine(prompt.Text) << '\n';
    m_hasShownFailure = true;
    return PromptAnswer::Ok;
}
