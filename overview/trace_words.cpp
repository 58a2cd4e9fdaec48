#include "overview/trace_words.h"

#include "base/numbers.h"
#include "overview/answers.h"
#include "overview/trace_parts.h"

namespace mact {
namespace {

bool IsJudged(const FigureLine& line) {
    return line.Figure == "content" || line.Figure == "filled" || line.Figure == "emissions";
}

std::string MonthsText(const FigureLine& line) {
    return LineOf(line.Report, " of ", line.Limit);
}

} // namespace

std::string FigureName(const FigureLine& line, MonthNumber monthEnd) {
    const std::string item = TracedText(line.Item);
    if (line.Figure == "months") return "Months that count";
    if (line.Figure == "content") return "Content of " + item;
    if (line.Figure == "filled") return "Filled resin " + item;
    if (line.Figure == "emissions") return "Emissions";
    if (line.Figure == "allowance") return "Allowance";
    if (line.Figure == "headroom") return "Headroom";
    if (line.Figure == "headroom_percent") return "Headroom in percent";
    if (line.Figure == "point_value") return "Point value of " + item;
    return LineOf("Amount of ", item, " in ", LongMonthName(monthEnd), " alone");
}

std::string FigureOutcome(const FigureLine& line, int months) {
    if (line.Figure == "months") return MonthsText(line);
    if (IsJudged(line)) return StateInWords(line.Judged, months);
    const std::string& value = line.Report.empty() ? line.Exact : line.Report;
    return value.empty() ? "none" : LineOf(value, " ", line.Unit);
}

std::string FigureStatement(const FigureLine& line, MonthNumber monthEnd, int months) {
    const bool isMonthAlone = line.Figure == "amount";
    std::string text =
        LineOf(isMonthAlone ? "The month " : "Twelve months ending ", LongMonthName(monthEnd), ": ");
    if (line.Figure == "months") {
        AppendAll(text, MonthsText(line), " months count.");
        if (!line.Item.empty()) AppendAll(text, " Without entry: ", line.Item, ".");
        return text;
    }
    AppendAll(text, ValueText(line.Report, line.Exact, line.Unit), ".");
    if (!line.Limit.empty()) AppendAll(text, " Limit ", line.Limit, " ", line.Unit, ".");
    if (IsJudged(line)) AppendAll(text, " ", StateInWords(line.Judged, months), ".");
    return text;
}

std::string ValueText(std::string_view report, std::string_view exact, std::string_view unit) {
    if (report.empty() && exact.empty()) return "none";
    std::string text;
    if (!report.empty()) AppendAll(text, "report ", report, " ", unit);
    if (!exact.empty()) AppendAll(text, text.empty() ? "" : ", ", "exact ", exact, " ", unit);
    return text;
}
} // namespace mact
