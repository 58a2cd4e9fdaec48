#include "overview/overview_csv.h"

#include "base/numbers.h"
#include "base/text.h"

#include <array>
#include <charconv>
#include <cmath>

namespace mact {
namespace {

constexpr std::string_view Percent = "%";
constexpr std::string_view Kg = "kg";
constexpr std::string_view KgPerMgUnit = "kg/Mg";

/// RFC 4180: quoted only if need be.
std::string Cell(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
    std::string cell = "\"";
    for (const char character : text) {
        if (character == '"') cell += '"';
        cell += character;
    }
    return cell + '"';
}

FigureLine MonthsLine(const MonthFigures& figures) {
    FigureLine line{.Figure = "months", .Limit = WholeNumberText(WindowMonths), .Unit = "months"};
    for (const MonthNumber month : figures.WithoutEntry) {
        if (!line.Item.empty()) line.Item += ' ';
        line.Item += MonthText(month);
    }
    line.Report = WholeNumberText(figures.Months);
    line.State = figures.Months == WindowMonths ? "complete" : StateText(State::TooEarly, figures.Months);
    return line;
}

void AddContents(const MonthFigures& figures, std::vector<FigureLine>& lines) {
    for (const ContentFigure& content : figures.Contents)
        lines.push_back({.Figure = "content",
                         .Item = content.Item,
                         .Report = ReportText(content.Content.Report),
                         .Exact = ExactText(content.Content.Exact),
                         .Limit = content.Limit ? ReportText(*content.Limit) : std::string(),
                         .Unit = Percent,
                         .Judged = content.Judged});
}

void AddFilled(const ShopFigures& shop, const MonthFigures& figures, std::vector<FigureLine>& lines) {
    for (const FilledFigure& filled : figures.Filled)
        lines.push_back({.Figure = "filled",
                         .Item = std::string(Trim(shop.Shop().Materials[filled.Material].CustomId)),
                         .Exact = ExactText(filled.PointValue),
                         .Limit = ReportText(filled.Limit),
                         .Unit = KgPerMgUnit,
                         .Judged = filled.Judged});
}

void AddAverage(const AverageFigures& average, std::vector<FigureLine>& lines) {
    const Figure headroom = average.Headroom();
    const Figure percent = average.HeadroomPercent();
    const Figure& allowance = average.Allowance;
    lines.push_back({.Figure = "emissions",
                     .Report = RoundedText(average.Emissions.Report),
                     .Exact = ExactText(average.Emissions.Exact),
                     .Limit = RoundedText(allowance.Report),
                     .Unit = Kg,
                     .Judged = average.Judged});
    lines.push_back({.Figure = "allowance",
                     .Report = RoundedText(allowance.Report),
                     .Exact = ExactText(allowance.Exact),
                     .Unit = Kg});
    lines.push_back({.Figure = "headroom",
                     .Report = ReportText(headroom.Report),
                     .Exact = ExactText(headroom.Exact),
                     .Unit = Kg});
    lines.push_back({.Figure = "headroom_percent",
                     .Report = ReportText(percent.Report),
                     .Exact = ExactText(percent.Exact),
                     .Unit = Percent});
}

void AddPointValues(const MonthFigures& figures, std::vector<FigureLine>& lines) {
    for (const PointValueFigure& value : figures.PointValues)
        lines.push_back({.Figure = "point_value",
                         .Item = value.Item,
                         .Report = value.Report ? ReportText(*value.Report) : std::string(),
                         .Exact = ExactText(value.Exact),
                         .Limit = ReportText(value.Limit),
                         .Unit = KgPerMgUnit});
}

void AddAmounts(const MonthFigures& figures, std::vector<FigureLine>& lines) {
    for (const AmountFigure& amount : figures.Amounts)
        lines.push_back(
            {.Figure = "amount", .Item = amount.Item, .Exact = ExactText(amount.Kilograms), .Unit = Kg});
}

} // namespace

std::string StateText(State state, int months) {
    switch (state) {
    case State::None:
        break;
    case State::Within:
        return "within";
    case State::Over:
        return "over";
    case State::Differs:
        return "differs";
    case State::TooEarly:
        return "too early (" + WholeNumberText(months) + " of " + WholeNumberText(WindowMonths) + ')';
    case State::NotUsed:
        return "not used";
    }
    return {};
}

std::string_view CauseText(Cause cause) {
    switch (cause) {
    case Cause::None:
        break;
    case Cause::Tie:
        return "tie";
    case Cause::Filler:
        return "filler";
    case Cause::VacuumBagging:
        return "vacuum bagging";
    case Cause::Rounding:
        return "rounding";
    }
    return {};
}

std::string ReportText(double number) {
    return std::isfinite(number) ? NumberText(number) : std::string();
}

std::string RoundedText(double number) {
    return ReportText(RoundTo(number, 2));
}

std::string ExactText(double number) {
    if (!std::isfinite(number)) return {};
    std::array<char, 400> buffer{}; // the largest double has 309 digits in front of the point
    const auto written =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed, 6);
    std::string text(buffer.data(), written.ptr);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return text == "-0" ? "0" : text;
}

std::vector<FigureLine> LinesOf(const ShopFigures& shop, const MonthFigures& figures) {
    std::vector<FigureLine> lines{MonthsLine(figures)};
    AddContents(figures, lines);
    AddFilled(shop, figures, lines);
    AddAverage(figures.Average, lines);
    AddPointValues(figures, lines);
    AddAmounts(figures, lines);
    for (FigureLine& line : lines)
        if (line.State.empty()) line.State = StateText(line.Judged.Is, figures.Months);
    return lines;
}

std::string OverviewCsvHeader() {
    return "month_end,figure,item,report,exact,limit,unit,state,cause\n";
}

std::string OverviewCsv(const ShopFigures& shop, const MonthFigures& figures) {
    std::string csv;
    for (const FigureLine& line : LinesOf(shop, figures))
        AppendAll(csv, MonthText(figures.MonthEnd), ",", line.Figure, ",", Cell(Utf8FromCodePage(line.Item)),
                  ",", line.Report, ",", line.Exact, ",", line.Limit, ",", line.Unit, ",", line.State, ",",
                  CauseText(line.Judged.Why), "\n");
    return csv;
}
} // namespace mact
