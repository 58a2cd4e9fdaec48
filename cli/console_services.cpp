#include "cli/console_services.h"

#include <QDate>

#include <iostream>

namespace {

/// The text in one line: runs of line ends and blanks become one blank.
std::string OneLine(const std::string& text) {
    std::string line;
    for (const char character : text) {
        const bool isBlank = character == '\r' || character == '\n' || character == ' ';
        if (!isBlank) {
            line += character;
        } else if (!line.empty() && line.back() != ' ') {
            line += ' ';
        }
    }
    while (line.ends_with(' '))
        line.pop_back();
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

std::chrono::year_month SystemClock::CurrentMonth() {
    const QDate today = QDate::currentDate();
    return std::chrono::year{today.year()} / today.month();
}
