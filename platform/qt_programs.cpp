#include "platform/qt_programs.h"

#include "base/text.h"

#include <QDesktopServices>
#include <QUrl>

#ifdef _WIN32
#include "platform/os_script_text.h"

#include <system_error>
#include <windows.h>
#else
#include <QProcess>
#include <QStringList>
#endif

namespace mact {

#ifdef _WIN32

// Not QProcess, on purpose: it would quote the path of a report, which browsers are given unquoted.
Done QtPrograms::Start(const ProgramStart& start) {
    std::wstring commandLine = PathFromUtf8(start.CommandLine).wstring(); // CreateProcessW may write into it
    STARTUPINFOW window{};
    window.cb = sizeof window;
    window.dwFlags = STARTF_USESHOWWINDOW;
    window.wShowWindow = start.HasHiddenWindow ? SW_HIDE : SW_SHOWNORMAL;
    const DWORD flags = start.HasHiddenWindow ? CREATE_NO_WINDOW : 0;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, flags, nullptr, nullptr,
                        &window, &process)) {
        const std::error_code reason(static_cast<int>(GetLastError()), std::system_category());
        return Failure{.Doing = "start \"" + start.CommandLine + '"', .Reason = reason.message()};
    }
    CloseHandle(process.hThread); // the program runs on
    CloseHandle(process.hProcess);
    return Success();
}

Result<std::string> QtPrograms::ScriptText(std::string_view utf8Text) {
    return ScriptTextOfConsole(utf8Text);
}

#else

Done QtPrograms::Start(const ProgramStart& start) {
    QStringList arguments;
    for (const std::string& argument : start.Arguments)
        arguments << QString::fromStdString(argument);
    QProcess process;
    process.setProgram(QString::fromStdString(PathText(start.Program)));
    process.setArguments(arguments);
    if (process.startDetached()) return Success();
    return Failure{"start the program", start.Program, process.errorString().toStdString()};
}

#endif

Done QtPrograms::OpenWithSystem(const std::filesystem::path& file) {
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(PathText(file)))))
        return Success();
    return Failure{"open the file", file, "the system has no program for it"};
}
} // namespace mact
