#include "overview/month_reports.h"

#include "base/numbers.h"
#include "base/text.h"
#include "overview/output_page.h"
#include "overview/unchanged_files.h"
#include "reports/additional_hap_emission_report.h"
#include "reports/additional_hap_usage_report.h"
#include "reports/compliant_materials_report.h"
#include "reports/emission_average_report.h"
#include "reports/reports.h"
#include "reports/weighted_average_report.h"

#include <array>
#include <optional>
#include <utility>

namespace mact {
namespace {

Result<std::string> CompliantMaterialsPage(AppContext& app, const ReportPeriod& period) {
    return FetchCompliantMaterials(app, period).transform(BuildCompliantMaterialsHtml);
}

Result<std::string> WeightedAveragePage(AppContext& app, const ReportPeriod& period) {
    return FetchWeightedAverage(app, period).transform(BuildWeightedAverageHtml);
}

Result<std::string> EmissionAveragePage(AppContext& app, const ReportPeriod& period) {
    return FetchEmissionAverage(app, period).transform(BuildEmissionAverageHtml);
}

Result<std::string> AdditionalHapUsagePage(AppContext& app, const ReportPeriod& period) {
    return FetchAdditionalHap(app, period).and_then([](const AdditionalHapData& data) {
        return CheckShownNumbers(data).transform(
            [&](const auto&) { return BuildAdditionalHapUsageHtml(data); });
    });
}

Result<std::string> AdditionalHapEmissionPage(AppContext& app, const ReportPeriod& period) {
    return FetchAdditionalHap(app, period).and_then([](const AdditionalHapData& data) {
        return AddUpEmissions(data).transform(
            [&](const PollutantTotals& totals) { return BuildAdditionalHapEmissionHtml(data, totals); });
    });
}

struct Report {
    const char* FileName;
    std::string_view Title;
    Result<std::string> (*Page)(AppContext& app, const ReportPeriod& period);
};
constexpr std::array Reports = {
    Report{CompliantMaterialsFile,    "Compliant materials report",          CompliantMaterialsPage   },
    Report{WeightedAverageFile,       "Weighted-average HAP content report", WeightedAveragePage      },
    Report{EmissionAverageFile,       "Emission-average HAP content report", EmissionAveragePage      },
    Report{AdditionalHapUsageFile,    "Additional HAP(s) usage report",      AdditionalHapUsagePage   },
    Report{AdditionalHapEmissionFile, "Additional HAP(s) emission report",   AdditionalHapEmissionPage},
};

/// By report; empty = it was written.
using ReportFailures = std::array<std::optional<Failure>, Reports.size()>;

/// 2005-07
std::string FolderOfMonth(MonthNumber month) {
    const std::string number = WholeNumberText(month % 12 + 1);
    return WholeNumberText(month / 12) + (number.size() == 1 ? "-0" : "-") + number;
}

/// The same program with other files.
AppContext WithFiles(const AppContext& app, FileAccess& files) {
    return {.Prompts = app.Prompts,
            .Settings = app.Settings,
            .Programs = app.Programs,
            .Dialogs = app.Dialogs,
            .Calendar = app.Calendar,
            .Files = files,
            .ProgramFolder = app.ProgramFolder,
            .CurrentCompanyId = app.CurrentCompanyId,
            .CurrentCompanyName = app.CurrentCompanyName,
            .CurrentCompanyLocation = app.CurrentCompanyLocation,
            .AdditionalNames = app.AdditionalNames,
            .LastUsage = app.LastUsage};
}

ReportFailures WriteReports(const AppContext& app, MonthNumber monthEnd,
                            const std::filesystem::path& folder) {
    UnchangedFiles unchanged(app.Files); // the reports' routines create what is missing
    AppContext looking = WithFiles(app, unchanged);
    const ReportPeriod period{.EndText = MonthText(monthEnd), .Months = WindowMonths};
    ReportFailures failures;
    for (std::size_t index = 0; index < Reports.size(); ++index) {
        const Result<std::string> page = Reports[index].Page(looking, period);
        const Done written = page ? ReplaceFile(app.Files, folder / Reports[index].FileName,
                                                *page + "\r\n") // as PublishReport ends the page's only line
                                  : Done(page.error());
        if (!written) failures[index] = written.error();
    }
    return failures;
}

std::string IndexPage(const AppContext& app, MonthNumber monthEnd, const ReportFailures& failures) {
    const std::string title = "Reports, twelve months ending " + LongMonthName(monthEnd);
    std::string html = PageStart(title);
    AppendAll(html, "<header>\r\n<h1>", title, "</h1>\r\n<p><b>", HtmlOfCodePage(app.CurrentCompanyName),
              "</b><br>", HtmlOfCodePage(app.CurrentCompanyLocation), "</p>\r\n</header>\r\n<ul>\r\n");
    for (std::size_t index = 0; index < Reports.size(); ++index) {
        const auto& [fileName, name, page] = Reports[index];
        if (const auto& failure = failures[index])
            AppendAll(html, "<li>", name, ": <b>not made.</b> ", HtmlText(SentenceOf(*failure)), "</li>\r\n");
        else
            AppendAll(html, "<li><a href=\"", fileName, "\">", name, "</a></li>\r\n");
    }
    return html + "</ul>\r\n" + PageEnd();
}

} // namespace

MonthReports WriteMonthReports(const AppContext& app, MonthNumber monthEnd) {
    const Result<std::filesystem::path> folder =
        OutputFolder(app, {"reports", WholeNumberText(app.CurrentCompanyId), FolderOfMonth(monthEnd)});
    MonthReports reports;
    if (!folder) {
        reports.Failures.push_back(folder.error());
        return reports;
    }
    const ReportFailures failures = WriteReports(app, monthEnd, *folder);
    for (const auto& failure : failures)
        if (failure) reports.Failures.push_back(*failure);
    const std::filesystem::path index = *folder / "index.htm";
    const Done written = ReplaceFile(app.Files, index, IndexPage(app, monthEnd, failures));
    if (written)
        reports.Index = index;
    else
        reports.Failures.push_back(written.error());
    return reports;
}
} // namespace mact
