#include "cli/overview_commands.h"

#include "base/text.h"
#include "cli/refusals.h"
#include "overview/answers.h"
#include "overview/company_status.h"
#include "overview/half_year.h"
#include "overview/overview_csv.h"
#include "overview/overview_options.h"
#include "overview/shop_figures.h"
#include "overview/trace.h"
#include "overview/untrusted_figures.h"
#include "reports/report_period.h"
#include "store/companies.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <optional>

namespace mact {
namespace {

/// The month of a text that the parser has accepted.
std::optional<MonthNumber> MonthOfText(const std::string& text) {
    const std::optional<std::chrono::year_month> month = ParsePeriodEnd(text);
    if (!month) return std::nullopt;
    return MonthNumberOf(int{month->year()}, static_cast<int>(unsigned{month->month()}));
}

struct MonthEnds {
    MonthNumber First;
    MonthNumber Last;
};
/// Empty if there is no use from which the rest follows.
std::optional<MonthEnds> MonthEndsOf(const OverviewSpan& span, std::optional<MonthNumber> newestUse) {
    const std::optional<MonthNumber> from = MonthOfText(span.From);
    std::optional<MonthNumber> last = MonthOfText(span.To);
    if (!last) last = newestUse;
    if (!last) last = from;
    if (!last || *last < FirstMonthEnd) return std::nullopt;
    return MonthEnds{from.value_or(std::max(*last - WindowMonths + 1, FirstMonthEnd)), *last};
}

using Row = std::array<std::string, 9>;

/// Text of records as it is printed, still in the code page, in which a character is a byte.
std::string Shown(std::string_view codePageText) {
    return CodePageFromUtf8(Printable(Utf8FromCodePage(codePageText)));
}

std::vector<Row> TableOf(const ShopFigures& shop, const MonthFigures& figures) {
    std::vector<Row> rows{
        {"Figure", "Item", "Report", "Exact", "Limit", "Unit", "State", "Cause", ""}
    };
    const std::vector<FigureLine> lines = LinesOf(shop, figures);
    const std::vector<std::size_t> findings = FindingsOfLines(CountUntrusted(shop, figures));
    for (std::size_t place = 0; place < lines.size(); ++place) {
        const FigureLine& line = lines[place];
        rows.push_back({std::string(line.Figure), Shown(line.Item), line.Report, line.Exact, line.Limit,
                        std::string(line.Unit), line.State, std::string(CauseText(line.Judged.Why)),
                        UntrustedText(findings[place])});
    }
    return rows;
}

void PrintTable(const std::vector<Row>& rows) {
    std::array<std::size_t, std::tuple_size_v<Row>> widths{};
    for (const Row& row : rows)
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size());
    for (const Row& row : rows) {
        std::string line;
        for (std::size_t column = 0; column < row.size(); ++column) {
            const std::string blanks(widths[column] - row[column].size(), ' ');
            const bool isNumber = column >= 2 && column <= 4;
            line += (isNumber ? blanks + row[column] : row[column] + blanks) + "  ";
        }
        std::cout << Utf8FromCodePage(TrimEnd(line)) << '\n';
    }
}

/// What of the user's options was not understood is told, and is no failure.
Result<OverviewOptions> ReadOptions(const DataFiles& data) {
    Result<OverviewOptions> options = ReadOverviewOptions(data);
    if (options)
        for (const std::string& sentence : options->NotUnderstood)
            std::cerr << Printable(sentence) << '\n';
    return options;
}

} // namespace

ExitStatus PrintOverview(AppContext& app, const OverviewSpan& span, bool isCsv) {
    if (!HasCompany(app)) return Refuse(app, NeedsCompany);
    const Result<OverviewOptions> options = ReadOptions(app);
    if (!options) return Fail(app, options.error());
    const Result<ShopRecords> records = ReadShopRecords(app);
    if (!records) return Fail(app, records.error());
    const ShopFigures shop(*records, options->Start);
    const std::optional<MonthEnds> monthEnds = MonthEndsOf(span, shop.NewestUse());
    if (monthEnds && monthEnds->First > monthEnds->Last) {
        std::cerr << "mact-cli: the months from " << MonthText(monthEnds->First) << " to "
                  << MonthText(monthEnds->Last) << " end before they begin\n";
        return StatusWrongUse;
    }
    if (isCsv) std::cout << OverviewCsvHeader();
    if (!isCsv && !monthEnds) std::cout << NewestUseText(shop) << '\n';
    if (!monthEnds) return StatusDone;
    for (MonthNumber monthEnd = monthEnds->First; monthEnd <= monthEnds->Last; ++monthEnd) {
        const MonthFigures figures = shop.At(monthEnd);
        if (isCsv) {
            std::cout << OverviewCsv(shop, figures);
            continue;
        }
        std::cout << (monthEnd == monthEnds->First ? "" : "\n") << "Twelve months ending "
                  << LongMonthName(monthEnd) << '\n';
        PrintTable(TableOf(shop, figures));
    }
    return StatusDone;
}

ExitStatus PrintStatus(AppContext& app, bool isAll, bool isJson) {
    std::vector<CompanyRecord> companies;
    if (isAll) {
        Result<std::vector<CompanyRecord>> found = ReadCompanies(app);
        if (!found) return Fail(app, found.error());
        companies = std::move(*found);
        if (companies.empty()) std::cerr << "There are no companies.\n";
    } else {
        if (!HasCompany(app)) return Refuse(app, NeedsCompany);
        companies.push_back({.CompanyId = app.CurrentCompanyId, .CompanyName = app.CurrentCompanyName});
    }
    std::vector<CompanyStatus> statuses;
    for (const CompanyRecord& company : companies) {
        const DataFiles data(app.Files, DataFolder(app), company.CompanyId);
        Result<CompanyStatus> status = ReadCompanyStatus(data, company.CompanyName);
        if (status)
            statuses.push_back(std::move(*status));
        else
            ShowError(app, status.error()); // and the others are told all the same
    }
    SortWorstFirst(statuses);
    if (isJson) std::cout << StatusJson(statuses);
    ExitStatus worst = statuses.empty() ? StatusUnknown : StatusDone;
    for (const CompanyStatus& status : statuses) {
        if (!isJson) std::cout << StatusLine(status) << '\n';
        const Standing standing = StandingOf(status);
        if (standing == Standing::Trouble) worst = StatusTrouble;
        if (standing == Standing::Unknown && worst == StatusDone) worst = StatusUnknown;
    }
    return worst;
}

ExitStatus PrintTrace(AppContext& app, const std::string& monthEnd, const std::string& figure,
                      const std::string& item) {
    if (!HasCompany(app)) return Refuse(app, NeedsCompany);
    const Result<OverviewOptions> options = ReadOptions(app);
    if (!options) return Fail(app, options.error());
    const Result<ShopRecords> records = ReadShopRecords(app);
    if (!records) return Fail(app, records.error());
    const ShopFigures shop(*records, options->Start);
    const MonthFigures figures = shop.At(*MonthOfText(monthEnd)); // the parser has accepted it
    const std::vector<FigureLine> lines = LinesOf(shop, figures);
    const Result<std::size_t> place = FindFigure(lines, figures.MonthEnd, figure, CodePageFromUtf8(item));
    if (!place) return Fail(app, place.error());
    const std::string doubt = UntrustedText(FindingsOfLines(CountUntrusted(shop, figures))[*place]);
    if (!doubt.empty()) std::cout << doubt << '\n';
    std::cout << TraceText(TraceLine(shop, figures, lines, *place));
    return StatusDone;
}

ExitStatus WriteHalfYear(AppContext& app, const std::string& halfYear, bool mayReplace) {
    if (!HasCompany(app)) return Refuse(app, NeedsCompany);
    const Result<PackFiles> pack = WritePack(app, *ParseHalfYear(halfYear), mayReplace);
    if (!pack) return Fail(app, pack.error());
    std::cout << PathText(pack->Page) << '\n' << PathText(pack->Csv) << '\n';
    return StatusDone;
}
} // namespace mact
