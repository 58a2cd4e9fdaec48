#include "overview/half_year_page.h"

#include "base/text.h"
#include "overview/half_year_parts.h"
#include "overview/overview_csv.h"

#include <algorithm>
#include <map>
#include <utility>

namespace mact {
namespace {

/// What a table shows at one month end. All texts are UTF-8.
struct Cell {
    std::string Report{};
    std::string Exact{};
    std::string State{};
    Verdict Judged{};
    std::size_t Findings = 0; ///< that make it not trusted
};
/// A row of a table: one figure at the six month ends.
struct FigureRow {
    std::string Label{}; ///< UTF-8
    std::string Limit{};
    std::array<Cell, MonthsOfHalfYear> Cells{};
};

/// The operation of each row of Table 2.
constexpr std::array<std::size_t, TableTwoRows.size()> OperationOfRow = {0, 0, 1, 2, 3, 3, 4};

std::string Capitalized(std::string_view text) {
    return UpperCase(text.substr(0, 1)) + std::string(text.substr(1));
}

std::string_view OptionName(const std::optional<OperationOption>& option) {
    if (!option) return "none chosen";
    switch (*option) {
    case OperationOption::Average:
        return "emission average";
    case OperationOption::TableTwo:
        return "weighted content by Table 2";
    case OperationOption::Filled:
        return "filled resin";
    case OperationOption::Closed:
        return "closed molding";
    case OperationOption::NotUsed:
        break;
    }
    return "not used";
}

std::string CellHtml(const Cell& cell) {
    std::string html = "<td class=\"number\">" + HtmlText(cell.Report);
    if (!cell.Exact.empty()) AppendAll(html, "<small>", HtmlText(cell.Exact), "</small>");
    const std::string_view look = cell.Judged.Is == State::Over      ? "over"
                                  : cell.Judged.Is == State::Differs ? "differs"
                                                                     : "other";
    if (!cell.State.empty()) AppendAll(html, "<span class=\"", look, "\">", HtmlText(cell.State), "</span>");
    return html + UntrustedHtml(cell.Findings) + "</td>";
}

std::string TableHtml(const std::vector<FigureRow>& rows, HalfYear half) {
    const auto months = MonthEndsOf(half);
    std::string html =
        "<table class=\"figures\">\r\n<thead><tr><th scope=\"col\" class=\"label\">Twelve months ending</th>"
        "<th scope=\"col\">Limit</th>" +
        MonthsHead({months.begin(), months.end()});
    for (const FigureRow& row : rows) {
        AppendAll(html, "<tr><th scope=\"row\">", HtmlText(row.Label), "</th><td>", HtmlText(row.Limit),
                  "</td>");
        for (const Cell& cell : row.Cells)
            html += CellHtml(cell);
        html += "</tr>\r\n";
    }
    return html + "</tbody></table>\r\n";
}

/// Rows by what they stand for, in its order.
template <class Key> using RowsBy = std::map<Key, FigureRow>;

/// The cell of a month end. A new row says "not used" until a month end is filled in.
template <class Key>
Cell& CellOf(RowsBy<Key>& rows, const Key& key, const FigureRow& made, std::size_t month) {
    const auto [row, isNew] = rows.try_emplace(key, made);
    if (isNew)
        for (Cell& cell : row->second.Cells)
            cell.State = StateText(State::NotUsed, 0);
    return row->second.Cells[month];
}

template <class Key> void Append(std::vector<FigureRow>& rows, RowsBy<Key> added) {
    for (auto& row : added)
        rows.push_back(std::move(row.second));
}

/// Which figures of a month end belong in a table: those of an operation, or of what a user added.
using OfOperation = std::optional<std::size_t>;

OfOperation OperationOf(const ContentFigure& content) {
    return content.Row ? OfOperation(OperationOfRow[*content.Row]) : std::nullopt;
}
OfOperation OperationOf(const PointValueFigure& value) {
    const auto* const found = std::ranges::find(Operations, std::string_view(value.Item));
    if (found == Operations.end()) return std::nullopt;
    return static_cast<std::size_t>(found - Operations.begin());
}
OfOperation OperationOf(const FilledFigure& filled, const ShopFigures& shop) {
    const auto row = shop.RowOf(filled.Material);
    return row ? shop.ClassOfRow(*row).Operation : std::nullopt;
}

RowsBy<std::size_t> ContentRows(const SixMonths& six, OfOperation operation) {
    RowsBy<std::size_t> rows; // Table 2's first
    for (std::size_t month = 0; month < six.size(); ++month) {
        const auto& [figures, untrusted] = six[month];
        for (std::size_t number = 0; number < figures.Contents.size(); ++number) {
            const ContentFigure& content = figures.Contents[number];
            if (OperationOf(content) != operation) continue;
            const std::size_t place =
                content.Row ? *content.Row : TableTwoRows.size() + content.Pair.value_or(0);
            CellOf(rows, place,
                   {.Label = "Content of " + Utf8FromCodePage(content.Item) + ", %",
                    .Limit = content.Limit ? ReportText(*content.Limit) + " %" : "none"},
                   month) = {.Report = ReportText(content.Content.Report),
                             .Exact = ExactText(content.Content.Exact),
                             .State = VerdictText(content.Judged, figures.Months),
                             .Judged = content.Judged,
                             .Findings = untrusted.Contents[number]};
        }
    }
    return rows;
}

RowsBy<std::size_t> FilledRows(const ShopFigures& shop, const SixMonths& six, OfOperation operation) {
    RowsBy<std::size_t> rows; // by material
    for (std::size_t month = 0; month < six.size(); ++month) {
        const auto& [figures, untrusted] = six[month];
        for (std::size_t number = 0; number < figures.Filled.size(); ++number) {
            const FilledFigure& filled = figures.Filled[number];
            if (OperationOf(filled, shop) != operation) continue;
            CellOf(
                rows, filled.Material,
                {.Label = "Point value of filled resin " + NameOfMaterial(shop, filled.Material) + ", kg/Mg",
                 .Limit = ReportText(filled.Limit) + " kg/Mg"},
                month) = {.Exact = ExactText(filled.PointValue),
                          .State = VerdictText(filled.Judged, figures.Months),
                          .Judged = filled.Judged,
                          .Findings = untrusted.Filled[number]};
        }
    }
    return rows;
}

RowsBy<std::string> PointValueRows(const SixMonths& six, OfOperation operation) {
    RowsBy<std::string> rows;
    for (std::size_t month = 0; month < six.size(); ++month) {
        const auto& [figures, untrusted] = six[month];
        for (std::size_t number = 0; number < figures.PointValues.size(); ++number) {
            const PointValueFigure& value = figures.PointValues[number];
            if (OperationOf(value) != operation) continue;
            CellOf(rows, value.Item,
                   {.Label = "Point value of " + Utf8FromCodePage(value.Item) + ", kg/Mg",
                    .Limit = ReportText(value.Limit) + " kg/Mg"},
                   month) = {.Report = value.Report ? ReportText(*value.Report) : std::string(),
                             .Exact = ExactText(value.Exact),
                             .Findings = untrusted.PointValues[number]};
        }
    }
    return rows;
}

std::vector<FigureRow> RowsOf(const ShopFigures& shop, const SixMonths& six, OfOperation operation) {
    std::vector<FigureRow> rows;
    Append(rows, ContentRows(six, operation));
    Append(rows, FilledRows(shop, six, operation));
    Append(rows, PointValueRows(six, operation));
    return rows;
}

std::string OperationsHtml(const PackSource& source, const ShopFigures& shop, const SixMonths& six,
                           HalfYear half) {
    std::string html =
        "<h2>Operations</h2>\r\n<p>In each cell the figure of the reports stands first, below it the "
        "one that is not rounded on the way.</p>\r\n";
    for (std::size_t operation = 0; operation < Operations.size(); ++operation) {
        const std::vector<FigureRow> rows = RowsOf(shop, six, operation);
        const auto& option = source.Options.OptionOf[operation];
        AppendAll(html, "<h3>", Capitalized(Operations[operation]),
                  "</h3>\r\n<p>Option: ", OptionName(option), ".");
        if (rows.empty()) html += " No use is recorded for these month ends.";
        if (!rows.empty() && option == OperationOption::NotUsed) html += " Use is recorded all the same.";
        html += "</p>\r\n";
        if (!rows.empty()) html += TableHtml(rows, half);
    }
    const std::vector<FigureRow> added = RowsOf(shop, six, {});
    if (!added.empty())
        AppendAll(html, "<h3>Types added to the table</h3>\r\n<p>Judged by the table's own limits.</p>\r\n",
                  TableHtml(added, half));
    return html;
}

std::string AverageHtml(const SixMonths& six, HalfYear half) {
    std::vector<FigureRow> rows{
        {.Label = "Emissions, kg", .Limit = "allowance"},
        {.Label = "Allowance, kg"                       },
        {.Label = "Headroom, kg"},
        {.Label = "Headroom, % of the allowance"                       }
    };
    for (std::size_t month = 0; month < six.size(); ++month) {
        const auto& [figures, untrusted] = six[month];
        const AverageFigures& average = figures.Average;
        const Figure headroom = average.Headroom();
        const Figure percent = average.HeadroomPercent();
        rows[0].Cells[month] = {.Report = RoundedText(average.Emissions.Report),
                                .Exact = ExactText(average.Emissions.Exact),
                                .State = VerdictText(average.Judged, figures.Months),
                                .Judged = average.Judged};
        rows[1].Cells[month] = {.Report = RoundedText(average.Allowance.Report),
                                .Exact = ExactText(average.Allowance.Exact)};
        rows[2].Cells[month] = {.Report = ReportText(headroom.Report), .Exact = ExactText(headroom.Exact)};
        rows[3].Cells[month] = {.Report = ReportText(percent.Report), .Exact = ExactText(percent.Exact)};
        for (FigureRow& row : rows)
            row.Cells[month].Findings = untrusted.Average;
    }
    return "<h2>Emission average of all operations</h2>\r\n" + TableHtml(rows, half);
}

std::string MonthsHtml(const SixMonths& six, HalfYear half) {
    FigureRow count{.Label = "Months since the start month", .Limit = ReportText(WindowMonths)};
    FigureRow without{.Label = "Months without any entry"};
    for (std::size_t month = 0; month < six.size(); ++month) {
        count.Cells[month].Report = ReportText(six[month].Figures.Months);
        for (const MonthNumber each : six[month].Figures.WithoutEntry)
            AppendAll(without.Cells[month].Report, without.Cells[month].Report.empty() ? "" : ", ",
                      MonthText(each));
    }
    return "<h2>Months</h2>\r\n<p>A month without entry is not taken for one without use.</p>\r\n" +
           TableHtml({count, without}, half);
}

std::string HeadHtml(const PackSource& source, HalfYear half) {
    const std::string name = Utf8FromCodePage(Trim(source.CompanyName));
    const std::string period = HalfYearText(half);
    std::string html = PageStart("Half-year pack, " + period + (name.empty() ? "" : ", " + name));
    AppendAll(html, "<header>\r\n<h1>Half-year pack, ", period, "</h1>\r\n<p><b>", HtmlText(name), "</b><br>",
              HtmlOfCodePage(source.CompanyLocation), "</p>\r\n");
    if (source.Options.Address.empty())
        html += "<div class=\"field\">Address<span></span></div>\r\n";
    else
        AppendAll(html, "<p>Address: ", HtmlText(source.Options.Address), "</p>\r\n");
    AppendAll(html, "<p>Due 60 days after the half year, on <b>", DueDateText(half),
              "</b>, unless your permit sets another date.</p>\r\n</header>\r\n");
    return html;
}

std::string CertificationHtml() {
    std::string html = "<h2>Certification</h2>\r\n<p>For the responsible official's own statement; this page "
                       "makes none.</p>\r\n" +
                       BlankLines(3);
    for (const std::string_view field : {"Name and title", "Signature", "Date"})
        AppendAll(html, "<div class=\"field\">", field, "<span></span></div>\r\n");
    return html;
}

std::string FilesHtml(const PackSource& source) {
    std::string html = "<h2>Data files</h2>\r\n<p>What the figures were calculated from.</p>\r\n"
                       "<table>\r\n<thead><tr><th scope=\"col\">File</th><th scope=\"col\">SHA-256</th>"
                       "</tr></thead>\r\n<tbody>\r\n";
    for (const HashedFile& file : source.Files)
        AppendAll(html, "<tr><th scope=\"row\">", HtmlText(file.Name), "</th><td class=\"digest\">",
                  file.Digest.value_or("no such file"), "</td></tr>\r\n");
    return html + "</tbody></table>\r\n";
}

} // namespace

std::string PackPage(const PackSource& source, const ShopFigures& figures, HalfYear half) {
    SixMonths six;
    std::ranges::transform(MonthEndsOf(half), six.begin(), [&](MonthNumber monthEnd) {
        PackMonth month{.Figures = figures.At(monthEnd)};
        month.Untrusted = CountUntrusted(figures, month.Figures);
        return month;
    });
    return HeadHtml(source, half) + MonthsHtml(six, half) + OperationsHtml(source, figures, six, half) +
           AverageHtml(six, half) + DeviationsHtml(figures, six, half) +
           "<h2>Changes in the process</h2>\r\n" + BlankLines(4) + CertificationHtml() + FilesHtml(source) +
           PageEnd();
}
} // namespace mact
