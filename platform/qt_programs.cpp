#include "platform/qt_programs.h"

#include "base/text.h"

#include <QDesktopServices>
#include <QUrl>

#ifdef _WIN32
#include "platform/os_script_text.h"

#include <array>
#include <system_error>
#include <windows.h>
#else
#include <QProcess>
#include <QStringList>
#endif

namespace mact {

#ifdef _WIN32

namespace {

/// cmd cannot work in a folder of another computer; a script there is started by its path.
bool CanBeFolderOfCommands(const std::filesystem::path& folder) {
    return !folder.empty() && !folder.wstring().starts_with(L"\\\\");
}

std::wstring CommandInterpreter() {
    std::array<wchar_t, MAX_PATH + 1> folder{};
    GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
    return std::wstring(folder.data()) + L"\\cmd.exe";
}

} // namespace

// Not QProcess, on purpose: it would quote the path of a report, which browsers are given unquoted.
Done QtPrograms::Start(const ProgramStart& start) {
    const std::wstring folder = start.Script.parent_path().wstring();
    const bool isByName = CanBeFolderOfCommands(folder);
    const std::wstring program = CommandInterpreter();
    std::wstring commandLine = PathFromUtf8(start.CommandLine).wstring(); // CreateProcessW may write into it
    if (isByName) commandLine = L"cmd /d /c .\\" + start.Script.filename().wstring();
    STARTUPINFOW window{};
    window.cb = sizeof window;
    window.dwFlags = STARTF_USESHOWWINDOW;
    window.wShowWindow = start.HasHiddenWindow ? SW_HIDE : SW_SHOWNORMAL;
    const DWORD flags = start.HasHiddenWindow ? CREATE_NO_WINDOW : 0;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(isByName ? program.c_str() : nullptr, commandLine.data(), nullptr, nullptr, FALSE,
                        flags, nullptr, isByName ? folder.c_str() : nullptr, &window, &process)) {
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
