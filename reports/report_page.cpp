#include "reports/report_page.h"

#include "base/text.h"

namespace mact {
namespace {

std::string MonthsHtml(const ReportHeading& heading, std::string_view from, std::string_view to) {
    std::string html(from);
    html += " <u>" + heading.Start + "</u> ";
    html += to;
    html += " <u>" + heading.End + "</u>";
    return html;
}

} // namespace

ReportHeading HeadingOf(const AppContext& app, const ReportMonths& months) {
    return {.CompanyName = app.CurrentCompanyName,
            .CompanyLocation = app.CurrentCompanyLocation,
            .Start = months.Start,
            .End = months.End};
}

// PageEndHtml closes the div.
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

Failure CannotCalculate(std::string_view doing) {
    return {.Doing = std::string(doing), .Reason = "the result is too large or not a number"};
}

Failure CannotShow(std::string_view what, std::string_view name) {
    return {.Doing = "show " + std::string(what) + " \"" + Utf8FromCodePage(name) + '"',
            .Reason = "it is too large or not a number"};
}

std::string MaterialNamed(std::string_view customId) {
    return "the material \"" + Utf8FromCodePage(Trim(customId)) + '"';
}
} // namespace mact
