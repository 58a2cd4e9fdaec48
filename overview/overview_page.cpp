#include "overview/overview_page.h"

#include "base/numbers.h"
#include "base/text.h"
#include "overview/answers.h"
#include "overview/output_page.h"
#include "overview/overview_csv.h"
#include "overview/state_sign.h"
#include "overview/statements.h"
#include "overview/untrusted_figures.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace mact {
namespace {

/// Qt leaves out the space behind a table whose last cell is empty.
constexpr const char* EmptyCell = "&nbsp;";

std::string CountText(std::size_t count) {
    return WholeNumberText(static_cast<std::int64_t>(count));
}

/// The name of a figure, with what is not to be trusted of it.
std::string WithDoubt(std::string name, std::size_t findings) {
    if (findings > 0) AppendAll(name, " (", UntrustedText(findings), ")");
    return name;
}

/// A table that is filled row by row, up to MostPageLines.
class Table {
public:
    struct Column {
        std::string_view Head; ///< UTF-8
        bool IsNumber = false;
    };

    explicit Table(std::initializer_list<Column> columns) : m_columns(columns) {
        m_html = "<table border=\"1\" cellspacing=\"0\" cellpadding=\"3\" width=\"100%\">\r\n<thead><tr>";
        for (const Column& column : m_columns)
            AppendAll(m_html, "<th align=\"", AlignmentOf(column), "\">", HtmlText(column.Head), "</th>");
        m_html += "</tr></thead>\r\n<tbody>\r\n";
    }
    bool HasRoom() const { return m_rows < MostPageLines; }
    /// `cells` are UTF-8. One row too many is only counted.
    void Add(const std::vector<std::string>& cells) {
        if (!HasRoom()) return;
        ++m_rows;
        m_html += "<tr>";
        for (std::size_t column = 0; column < cells.size(); ++column)
            AppendAll(m_html, "<td align=\"", AlignmentOf(m_columns[column]), "\">",
                      cells[column].empty() ? EmptyCell : HtmlText(cells[column]), "</td>");
        m_html += "</tr>\r\n";
    }
    /// `all` is how many rows there are, with those beyond the table.
    std::string Html(std::size_t all) const {
        std::string html = m_html + "</tbody></table>\r\n";
        if (all > m_rows) AppendAll(html, "<p>and ", CountText(all - m_rows), " more</p>\r\n");
        return html;
    }

private:
    static std::string_view AlignmentOf(const Column& column) { return column.IsNumber ? "right" : "left"; }

    std::vector<Column> m_columns;
    std::string m_html;
    std::size_t m_rows = 0;
};

class Page {
public:
    explicit Page(const OverviewPageSource& source)
        : m_source(source), m_figures(source.Figures),
          m_untrusted(CountUntrusted(source.Shop, source.Figures, source.Findings)) {}

    std::string Html() {
        AddHead();
        AddAnswers();
        AddRows();
        AddAverage();
        AddPointValues();
        AddAmounts();
        AddAttention();
        AddStatements();
        return std::move(m_html) + "</body></html>\r\n";
    }

private:
    void AddHeading(std::string_view text) { AppendAll(m_html, "<h2>", HtmlText(text), "</h2>\r\n"); }
    void AddParagraph(std::string_view text) { AppendAll(m_html, "<p>", HtmlText(text), "</p>\r\n"); }

    void AddHead() {
        const std::string_view name = Trim(m_source.CompanyName);
        const std::string_view location = Trim(m_source.CompanyLocation);
        std::string company = Utf8FromCodePage(name);
        if (!name.empty() && !location.empty()) company += ", ";
        company += Utf8FromCodePage(location);
        const std::string ending = "Twelve months ending " + ShortMonthName(m_figures.MonthEnd);
        AppendAll(m_html, "<html><head><meta charset=\"utf-8\"><title>", ending, company.empty() ? "" : ", ",
                  HtmlText(company), "</title></head>\r\n<body>\r\n", "<h1>Compliance Overview</h1>\r\n");
        if (!company.empty()) AppendAll(m_html, "<p><b>", HtmlText(company), "</b></p>\r\n");
        AppendAll(m_html, "<p><b>", ending, "</b></p>\r\n");
        AddMonths();
        if (m_source.HasChart) AppendAll(m_html, "<p>", OverviewPageChart, "</p>\r\n");
    }

    void AddMonths() {
        std::string text = "Months since the start month: " + WholeNumberText(m_figures.Months) + " of " +
                           WholeNumberText(WindowMonths) + '.';
        if (m_figures.WithoutEntry.empty()) {
            if (m_figures.Months > 0) text += " None of them is without an entry.";
        } else {
            text += " Without any entry: ";
            for (std::size_t place = 0; place < m_figures.WithoutEntry.size(); ++place)
                AppendAll(text, place == 0 ? "" : ", ", ShortMonthName(m_figures.WithoutEntry[place]));
            text += ". A month without entry is not taken for one without use.";
        }
        AddParagraph(text);
    }

    void AddAnswers() {
        AddHeading("Where the shop stands");
        for (const Answer& answer : AnswersOf(m_source.Shop, m_figures, m_untrusted, m_source.Options)) {
            AppendAll(m_html, "<h3>", HtmlText(answer.Question), "</h3>\r\n<p><b>", SignOf(answer.Is),
                      HtmlText(answer.Text), "</b></p>\r\n");
            AddParagraph(answer.Meaning + " See the " + answer.Report + '.');
        }
    }

    void AddRows() {
        AddHeading("Rows, worst first");
        if (m_source.Rows.empty()) return AddParagraph("Nothing was used that has a limit of its content.");
        Table table({
            {"Type and method"},
            {"Mg used",         true},
            {"Content",                 true},
            {"Limit",true},
            {"Headroom",           true},
            {"State"                },
            {"First trouble"  }
        });
        for (const OverviewRow& row : m_source.Rows) {
            if (!table.HasRoom()) break;
            const std::string unit(UnitOf(row));
            table.Add({Utf8FromCodePage(Trim(row.Item)) + (row.Material ? " (filled resin)" : ""),
                       RoundedText(row.Megagrams), RoundedText(row.Value) + unit,
                       row.Limit ? ReportText(*row.Limit) + unit : "No limit",
                       row.Headroom ? RoundedText(*row.Headroom) + " %" : std::string(),
                       std::string(SignOf(row.Judged.Is)) + StateInWords(row, m_figures.Months),
                       row.Since ? ShortMonthName(*row.Since) : std::string()});
        }
        m_html += table.Html(m_source.Rows.size());
    }

    void AddAverage() {
        AddHeading("Emissions and allowance");
        const AverageFigures& average = m_figures.Average;
        const Figure headroom = average.Headroom();
        const Figure percent = average.HeadroomPercent();
        Table table({
            {"Figure"     },
            {"As reported", true},
            {"Not rounded",             true},
            {"Unit"}
        });
        table.Add(
            {"Emissions", RoundedText(average.Emissions.Report), ExactText(average.Emissions.Exact), "kg"});
        table.Add(
            {"Allowance", RoundedText(average.Allowance.Report), ExactText(average.Allowance.Exact), "kg"});
        table.Add({"Headroom", ReportText(headroom.Report), ExactText(headroom.Exact), "kg"});
        table.Add({"Headroom", ReportText(percent.Report), ExactText(percent.Exact), "% of the allowance"});
        m_html += table.Html(4);
        if (m_untrusted.Average > 0)
            AddParagraph("These figures are " + UntrustedText(m_untrusted.Average) + '.');
    }

    void AddPointValues() {
        AddHeading("Point values of the operations");
        const std::vector<PointValueFigure>& values = m_figures.PointValues;
        if (values.empty()) return AddParagraph("Nothing was used that is averaged.");
        Table table({
            {"Operation"},
            { "As reported, kg/Mg",       true},
            { "Not rounded, kg/Mg",       true},
            { "Limit, kg/Mg",       true}
        });
        for (std::size_t place = 0; place < values.size() && table.HasRoom(); ++place)
            table.Add({WithDoubt(Utf8FromCodePage(values[place].Item), m_untrusted.PointValues[place]),
                       values[place].Report ? ReportText(*values[place].Report) : std::string(),
                       ExactText(values[place].Exact), ReportText(values[place].Limit)});
        m_html += table.Html(values.size());
    }

    void AddAmounts() {
        AddHeading("Used in " + ShortMonthName(m_figures.MonthEnd) + " alone");
        const std::vector<AmountFigure>& amounts = m_figures.Amounts;
        if (amounts.empty()) return AddParagraph("No use is recorded for this month.");
        Table table({
            {"What"},
            { "kg",  true}
        });
        for (std::size_t place = 0; place < amounts.size() && table.HasRoom(); ++place)
            table.Add({WithDoubt(Utf8FromCodePage(amounts[place].Item), m_untrusted.Amounts[place]),
                       RoundedText(amounts[place].Kilograms)});
        m_html += table.Html(amounts.size());
    }

    /// Trouble is what a finding of kind NotTrusted is; they come first.
    void AddAttention() {
        AddHeading("Needs attention");
        const std::size_t findings = m_source.Findings.size();
        for (std::size_t place = 0; place < std::min(findings, MostPageLines); ++place) {
            const Attention& finding = m_source.Findings[place];
            const bool isTrouble = finding.Kind == AttentionKind::NotTrusted;
            AddParagraph(std::string(SignOf(isTrouble ? State::Over : State::NotUsed)) + finding.Text);
        }
        if (findings > MostPageLines) AddParagraph("and " + CountText(findings - MostPageLines) + " more");
        for (const std::string& note : m_source.Notes)
            AddParagraph(std::string(SignOf(State::NotUsed)) + note);
        if (findings == 0 && m_source.Notes.empty())
            AddParagraph(std::string(SignOf(State::Within)) + "No record needs attention.");
    }

    void AddStatements() {
        AddHeading("What these figures are, and what they are not");
        for (std::size_t place = 0; place < OverviewStatements.size(); ++place)
            AddParagraph(CountText(place + 1) + ". " + std::string(OverviewStatements[place]));
    }

    const OverviewPageSource& m_source;
    const MonthFigures& m_figures;
    const UntrustedFigures m_untrusted;
    std::string m_html;
};

} // namespace

std::string OverviewPage(const OverviewPageSource& source) {
    return Page(source).Html();
}
} // namespace mact
