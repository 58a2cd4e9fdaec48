#include "reports/report_publishing.h"

#include "base/files.h"
#include "base/messages.h"
#include "base/settings.h"
#include "base/text.h"
#include "reports/reports.h"

#include <filesystem>

namespace mact {
namespace {

/// Unquoted on purpose: a report path with blanks reaches the browser in pieces.
ProgramStart BrowserStart(const std::string& browser, const std::string& reportPath) {
    ProgramStart start;
    start.Program = PathFromUtf8(browser);
    start.CommandLine = browser + ' ' + reportPath; // on Windows, where the browser splits it
    for (const std::string_view piece : Split(reportPath, ' '))
        if (!piece.empty()) start.Arguments.emplace_back(piece);
    return start;
}

void ShowSavedAs(AppContext& app, const std::string& reportPath) {
    std::string text("Report generated sucessfully and has been saved as"); // sic
    text += "\r\n" + reportPath + "\r\n";
    text += "You can define a default browser in configuration to view the report automatically.";
    ShowInformation(app, text);
}

} // namespace

bool UserWantsEmptyReport(AppContext& app) {
    return app.Prompts.Show({"No record found on selected month/year. Do you still want to generate report?",
                             PromptKind::Question, PromptButtons::YesNo}) == PromptAnswer::Yes;
}

Result<bool> OpenInBrowser(AppContext& app, const std::filesystem::path& page) {
    const std::string browser = app.Settings.Read(Settings::Browser, Settings::Path);
    if (!browser.empty() && IsFileAt(PathFromUtf8(browser))) // one that is gone counts as none
        return app.Programs.Start(BrowserStart(browser, PathText(page))).transform([](const auto&) {
            return true;
        });
    if (app.Settings.Read(Settings::Browser, Settings::System) != "1") return false;
    return app.Programs.OpenWithSystem(page).transform([](const auto&) { return true; });
}

void OpenReport(AppContext& app, const std::filesystem::path& page) {
    const Result<bool> isOpened = OpenInBrowser(app, page);
    if (!ShowFailure(app, isOpened) && !*isOpened) ShowSavedAs(app, PathText(page));
}

std::optional<std::filesystem::path> NewestReport(const std::filesystem::path& programFolder) {
    std::optional<std::filesystem::path> newest;
    std::filesystem::file_time_type newestTime{};
    for (const char* name : ReportFiles) {
        const std::filesystem::path report = programFolder / name;
        std::error_code error;
        if (!std::filesystem::is_regular_file(report, error)) continue;
        const auto time = std::filesystem::last_write_time(report, error);
        if (error || (newest && time < newestTime)) continue;
        newest = report;
        newestTime = time;
    }
    return newest;
}

std::int16_t PublishReport(AppContext& app, std::string_view fileName, Result<std::string> html) {
    const std::filesystem::path report =
        app.ReportTarget.empty() ? app.ProgramFolder / fileName : app.ReportTarget;
    if (html) *html += "\r\n"; // of the page's only line
    const Done written = html ? ReplaceFile(app.Files, report, *html) : html.error();
    if (ShowFailure(app, written)) return ReportFailed;
    OpenReport(app, report);
    return ReportPublished;
}
} // namespace mact
