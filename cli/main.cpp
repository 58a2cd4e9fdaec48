#include "app/startup.h"
#include "base/link_guard.h"
#include "base/messages.h"
#include "base/text.h"
#include "cli/command_line.h"
#include "cli/company_option.h"
#include "cli/console_services.h"
#include "cli/standard_streams.h"
#include "platform/os_files.h"
#include "platform/qt_clock.h"
#include "platform/qt_settings.h"

#include <QCoreApplication>

#include <cstdio>
#include <exception>
#include <iostream>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

using namespace mact;

namespace {

ExitStatus StartAndRun(const CommandLine& asked, const ConsolePrompts& prompts, AppContext& app) {
    if (asked.NotStartedFor
            .empty()) { // StartUp creates files, and fails if the remembered company is not a number
        const Done started = StartUp(app);
        // It shows by itself that the companies cannot be read. The command would meet the same fault and
        // tell it once more, or work without the company.
        if (ShowFailure(app, started) || prompts.HasShownFailure()) return StatusFailed;
    }
    if (asked.Company) {
        const ExitStatus used = UseCompanyMeant(app, *asked.Company);
        if (used != StatusDone) return used;
    }
    return asked.Command(app);
}

ExitStatus Run(const CommandLine& asked) {
    const std::string folder =
        asked.Folder.empty() ? QCoreApplication::applicationDirPath().toStdString() : asked.Folder;
    std::error_code error;
    std::filesystem::path programFolder =
        std::filesystem::absolute(PathFromUtf8(folder), error).lexically_normal();
    ConsolePrompts prompts;
    prompts.AnswersYes = asked.AnswersYes;
    QtSettings settings(programFolder);
    ConsolePrograms programs;
    NoFileDialogs dialogs;
    QtClock calendar;
    OsFiles systemFiles;
    LinkGuard files(systemFiles, programFolder, SettingsFile());
    AppContext app{prompts, settings, programs, dialogs, calendar, files, programFolder};

    const ExitStatus status = StartAndRun(asked, prompts, app);
    std::cout.flush(); // a full disk may only show now
    if (!std::cout) ShowError(app, {.Doing = "write to the standard output"});
    return prompts.HasShownFailure() ? StatusFailed : status; // even after StatusDone
}

} // namespace

int main(int argc, char* argv[]) try {
#ifdef Q_OS_WIN
    SetConsoleOutputCP(CP_UTF8);
#endif
    HoldStandardStreams();
    // Drops Qt's warnings, such as that of a locale without UTF-8: the error output is for failures.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const QCoreApplication application(argc, argv);
    std::vector<std::string> arguments;
    for (const QString& text :
         QCoreApplication::arguments().mid(1)) // not argv, which is not UTF-8 on Windows
        arguments.push_back(text.toStdString());
    CommandLine asked;
    const std::optional<ExitStatus> ended = ReadCommandLine(std::move(arguments), asked);
    return ended ? *ended : Run(asked);
} catch (const std::exception& error) {
    // None of our own code throws, so memory has run out.
    std::fputs("mact-cli: ", stderr);
    std::fputs(error.what(), stderr);
    std::fputs("\n", stderr);
    return StatusFailed;
}
