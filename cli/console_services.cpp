#include "cli/console_services.h"

#include "base/text.h"

#include <QProcess>

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

void StartProcess(QProcess& process, const ProgramStart& start) {
#ifdef _WIN32
    process.startCommand(QString::fromStdString(start.CommandLine));
#else
    QStringList arguments;
    for (const std::string& argument : start.Arguments)
        arguments << QString::fromStdString(argument);
    process.start(QString::fromStdString(PathText(start.Program)), arguments);
#endif
}

} // namespace

PromptAnswer ConsolePrompts::Show(const Prompt& prompt) {
    if (prompt.Buttons != PromptButtons::Ok) return AnswersYes ? PromptAnswer::Yes : PromptAnswer::No;
    if (prompt.Kind == PromptKind::Information) return PromptAnswer::Ok;
    std::cerr << Printable(OneLine(prompt.Text)) << '\n';
    m_hasShownFailure = true;
    return PromptAnswer::Ok;
}

Done ConsolePrograms::Start(const ProgramStart& start) {
    if (!start.HasHiddenWindow) return Success(); // the browser
    constexpr int withoutEnd = -1;                // ms
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice()); // or it might wait for input
    StartProcess(process, start);
    const bool isEnded = process.waitForFinished(withoutEnd) && process.exitStatus() == QProcess::NormalExit;
    if (isEnded && process.exitCode() == 0) return Success();
    const std::string said = process.readAllStandardError().trimmed().toStdString();
    if (!said.empty()) return Failure{.Reason = said}; // the program's own sentences
    const std::string name = process.program().toStdString();
    if (isEnded)
        return Failure{.Reason = "The program \"" + name + "\" ended with status " +
                                 std::to_string(process.exitCode())};
    return Failure{"run the program", PathFromUtf8(name), process.errorString().toStdString()};
}

#ifdef _WIN32
Result<std::string> ConsolePrograms::ScriptText(std::string_view utf8Text) {
    return ScriptTextOfConsole(utf8Text);
}
#endif
} // namespace mact
