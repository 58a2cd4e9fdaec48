#include "app/data_swap.h"
#include "app/startup.h"
#include "base/link_guard.h"
#include "base/messages.h"
#include "base/text.h"
#include "cli/command_line.h"
#include "cli/company_option.h"
#include "cli/console_services.h"
#include "cli/refusals.h"
#include "cli/standard_streams.h"
#include "cli/terminal_guard.h"
#include "overview/unchanged_files.h"
#include "platform/os_files.h"
#include "platform/qt_clock.h"
#include "platform/qt_settings.h"
#include "store/companies.h"
#include "store/data_folder.h"

#include <QCoreApplication>

#include <cstdio>
#include <exception>
#include <iostream>
#include <optional>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

using namespace mact;

namespace {

ExitStatus RunCommand(const CommandLine& asked, AppContext& app) {
    if (asked.Company) {
        const ExitStatus used = UseCompanyMeant(app, *asked.Company);
        if (used != StatusDone) return used;
    }
    return asked.Command(app);
}

ExitStatus StartAndRun(const CommandLine& asked, const ConsolePrompts& prompts, AppContext& app) {
    const Done started = StartUp(app); // fails if the remembered company is not a number
    // It shows by itself that the companies cannot be read. The command would meet the same fault and tell it
    // once more, or work without the company.
    if (ShowFailure(app, started) || prompts.HasShownFailure()) return StatusFailed;
    return RunCommand(asked, app);
}

ExitStatus RunLooking(const CommandLine& asked, const ConsolePrompts& prompts, AppContext& app) {
    if (ShowFailure(app, FinishRestore(app))) return StatusFailed; // it decides what the data folder is
    const Result<bool> hasFolder = IsAnythingAt(DataFolder(app));
    if (!hasFolder) return Fail(app, hasFolder.error());
    if (!*hasFolder) {
        const bool needsSelected = !asked.Company && !asked.IsAll;
        return Refuse(app, std::string(needsSelected ? "No company is selected. " : "") +
                               "There is no data folder \"" + PathText(DataFolder(app)) + "\".");
    }
    UnchangedFiles unchanged(app.Files); // the stores create a file that is missing
    AppContext looking{app.Prompts,  app.Settings, app.Programs,     app.Dialogs,
                       app.Calendar, unchanged,    app.ProgramFolder};
    if (ShowFailure(looking, RestoreCompany(looking)) || prompts.HasShownFailure()) return StatusFailed;
    return RunCommand(asked, looking);
}

ExitStatus StartedAsAsked(const CommandLine& asked, const ConsolePrompts& prompts, AppContext& app) {
    switch (asked.Start) {
    case CommandStart::Whole:
        return StartAndRun(asked, prompts, app);
    case CommandStart::Looking:
        return RunLooking(asked, prompts, app);
    case CommandStart::None:
        break;
    }
    return asked.Command(app); // which takes no company
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

    const ExitStatus status = StartedAsAsked(asked, prompts, app);
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
    std::optional<TerminalGuard> output;
    std::optional<TerminalGuard> errors;
    if (IsStandardOutputTerminal()) output.emplace(std::cout);
    if (IsStandardErrorTerminal()) errors.emplace(std::cerr);
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
