#include "reports/report_frame.h"

#include "base/messages.h"
#include "base/settings.h"
#include "base/text.h"
#include "reports/report_texts.h"
#include "reports/reports.h"

#include <filesystem>

namespace mact {
namespace {

std::string MonthsHtml(const ReportHeading& heading, std::string_view from, std::string_view to) {
    std::string html(from);
    html += " <u>" + heading.Start + "</u> ";
    html += to;
    html += " <u>" + heading.End + "</u>";
    return html;
}

/// A report path with blanks reaches the browser in pieces: it has never been quoted.
ProgramStart BrowserStart(const std::string& browser, const std::string& reportPath) {
    ProgramStart start;
    start.Program = PathFromUtf8(browser);
    start.CommandLine = browser + ' ' + reportPath;
    for (const std::string_view piece : Split(reportPath, ' '))
        if (!piece.empty()) start.Arguments.emplace_back(piece);
    return start;
}

void ShowSavedAs(AppContext& app, const std::string& reportPath) {
    std::string text(ReportTexts::SavedAs);
    text += "\r\n" + reportPath + "\r\n";
    text += ReportTexts::BrowserHint;
    ShowInformation(app, text);
}

void OpenInBrowser(AppContext& app, const std::filesystem::path& report) {
    const std::string browser = app.Settings.Read(Settings::Browser, Settings::Path);
    if (browser.empty() || !IsFileAt(PathFromUtf8(browser))) {
        ShowSavedAs(app, PathText(report));
        return;
    }
    const Done started = app.Programs.Start(BrowserStart(browser, PathText(report)));
    if (!started) ShowError(app, started.error());
}

} // namespace

Result<ReportMonths> MonthsOf(const ReportPeriod& period) {
    const Result<std::string> list = BuildPeriodList(period.EndText, period.Months);
    if (!list) return list.error();
    const std::chrono::year_month end = *ParsePeriodEnd(period.EndText); // the list could be built
    return ReportMonths{.List = *list,
                        .Start = FormatMonthYear(end - std::chrono::months(period.Months - 1), true),
                        .End = FormatMonthYear(end, true)};
}

ReportHeading HeadingOf(const AppContext& app, const ReportMonths& months) {
    return {.CompanyName = app.CurrentCompanyName,
            .CompanyLocation = app.CurrentCompanyLocation,
            .Start = months.Start,
            .End = months.End};
}

std::string CompanyHtml(const ReportHeading& heading) {
    return "<div align='center'><font face='Verdana' size='3'><b><u>" + heading.CompanyName +
           "</u></b></font><br><font face='Verdana' size='1'>" + heading.CompanyLocation + "</font><br><br>";
}

std::string TitleHtml(std::string_view title, std::string_view periodHtml) {
    std::string html = "<font face='Verdana' size='2'><b>";
    html += title;
    html += "</b></font><br><font face='Verdana' size='1'><b>";
    html += periodHtml;
    html += "</b></font><br><br>";
    return html;
}

std::string MaterialsUsedHtml(const ReportHeading& heading) {
    return MonthsHtml(heading, "Materials used from", "to");
}

std::string FromToHtml(const ReportHeading& heading) {
    return MonthsHtml(heading, "From", "To");
}

bool UserWantsEmptyReport(AppContext& app) {
    return app.Prompts.Show({std::string(ReportTexts::NoRecordFound), PromptKind::Question,
                             PromptButtons::YesNo}) == PromptAnswer::Yes;
}

std::int16_t PublishReport(AppContext& app, std::string_view fileName, std::string html) {
    const std::filesystem::path report = app.ProgramFolder / fileName;
    html += "\r\n";
    const Done written = ReplaceFile(app.Files, report, html);
    if (!written) return FailReport(app, written.error());
    OpenInBrowser(app, report);
    return ReportPublished;
}

std::int16_t FailReport(AppContext& app, const Failure& failure) {
    ShowError(app, failure);
    return ReportFailed;
}

Failure CannotCalculate(std::string_view doing) {
    std::string sentence = "Cannot ";
    sentence += doing;
    sentence += ": the result is too large or not a number.";
    return {sentence};
}

Failure CannotShow(std::string_view what, std::string_view name) {
    std::string sentence = "Cannot show ";
    sentence += what;
    return {sentence + " \"" + Utf8FromCodePage(name) + "\": it is too large or not a number."};
}

} // namespace mact
