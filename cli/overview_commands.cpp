#include "cli/overview_commands.h"

#include "base/text.h"
#include "cli/refusals.h"
#include "overview/overview_csv.h"
#include "overview/shop_figures.h"
#include "reports/report_period.h"

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

using Row = std::array<std::string, 8>;

/// Text of records as it is printed, still in the code page, in which a character is a byte.
std::string Shown(std::string_view codePageText) {
    return CodePageFromUtf8(Printable(Utf8FromCodePage(codePageText)));
}

std::vector<Row> TableOf(const ShopFigures& shop, const MonthFigures& figures) {
    std::vector<Row> rows{
        {"Figure", "Item", "Report", "Exact", "Limit", "Unit", "State", "Cause"}
    };
    for (const FigureLine& line : LinesOf(shop, figures))
        rows.push_back({std::string(line.Figure), Shown(line.Item), line.Report, line.Exact, line.Limit,
                        std::string(line.Unit), line.State, std::string(CauseText(line.Judged.Why))});
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

} // namespace

ExitStatus PrintOverview(AppContext& app, const OverviewSpan& span, bool isCsv) {
    if (!HasCompany(app)) return Refuse(app, NeedsCompany);
    const Result<ShopRecords> records = ReadShopRecords(app);
    if (!records) return Fail(app, records.error());
    const ShopFigures shop(*records);
    const std::optional<MonthEnds> monthEnds = MonthEndsOf(span, shop.NewestUse());
    if (monthEnds && monthEnds->First > monthEnds->Last) {
        std::cerr << "mact-cli: the months from " << MonthText(monthEnds->First) << " to "
                  << MonthText(monthEnds->Last) << " end before they begin\n";
        return StatusWrongUse;
    }
    if (isCsv) std::cout << OverviewCsvHeader();
    if (!isCsv && !monthEnds) std::cout << "No use is recorded yet.\n";
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
} // namespace mact
