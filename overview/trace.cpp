#include "overview/trace.h"

#include "base/numbers.h"
#include "base/text.h"
#include "overview/trace_answers.h"
#include "overview/trace_parts.h"
#include "overview/trace_words.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace mact {
namespace {

constexpr std::string_view FigureNames[] = {
    "months",   "content",          "filled",      "emissions", "allowance",
    "headroom", "headroom_percent", "point_value", "amount",
};

Failure NoSuchFigure(std::string_view figure) {
    std::string names;
    for (const std::string_view name : FigureNames)
        AppendAll(names, names.empty() ? "" : ", ", name);
    return {.Doing = LineOf("trace the figure \"", TracedText(figure), "\""),
            .Reason = "there are only " + names};
}

Failure NoSuchItem(std::string_view figure, std::string_view item, const std::string& month,
                   const std::vector<const FigureLine*>& lines) {
    std::string items;
    for (const FigureLine* line : lines)
        if (!line->Item.empty())
            AppendAll(items, items.empty() ? "\"" : ", \"", TracedText(line->Item), "\"");
    return {.Doing = LineOf("trace the figure \"", figure, "\" of \"", TracedText(item), "\" in ", month),
            .Reason = lines.empty()   ? "nothing was used that has one"
                      : items.empty() ? "it is one figure of the whole shop, without an item"
                                      : "there is only that of " + items};
}

std::string TitleOf(const FigureLine& line, MonthNumber monthEnd) {
    const bool isMonthAlone = line.Figure == "amount";
    const bool hasItem = line.Figure != "months" && !line.Item.empty();
    std::string title = LineOf(line.Figure, hasItem ? " of " : "", hasItem ? TracedText(line.Item) : "",
                               isMonthAlone ? " in " : " in the twelve months to ", MonthText(monthEnd));
    AppendAll(title, ": ", ValueText(line.Report, line.Exact, line.Unit));
    if (!line.Limit.empty()) AppendAll(title, "; limit ", line.Limit, " ", line.Unit);
    if (!line.State.empty()) AppendAll(title, "; ", line.State);
    if (line.Judged.Why != Cause::None) AppendAll(title, " (", CauseText(line.Judged.Why), ")");
    return title;
}

/// Empty unless another figure has the same name and item.
std::string TwinText(const std::vector<FigureLine>& lines, std::size_t place) {
    const auto isTwin = [&](const FigureLine& line) {
        return line.Figure == lines[place].Figure && line.Item == lines[place].Item;
    };
    if (std::ranges::count_if(lines, isTwin) < 2) return {};
    const auto before =
        std::count_if(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(place), isTwin);
    return LineOf("More than one figure has this name; this is ",
                  before == 0 ? "the first" : "number " + WholeNumberText(before + 1), ".");
}

void AddLines(const TraceNode& node, std::size_t depth, std::string& text) {
    text.append(2 * depth, ' ');
    AppendAll(text, node.Text, "\n");
    for (const TraceNode& child : node.Children)
        AddLines(child, depth + 1, text);
}

} // namespace

Result<std::size_t> FindFigure(const std::vector<FigureLine>& all, MonthNumber monthEnd,
                               std::string_view figure, std::string_view item) {
    if (std::ranges::find(FigureNames, figure) == std::end(FigureNames)) return NoSuchFigure(figure);
    std::vector<const FigureLine*> lines;
    for (const FigureLine& line : all)
        if (line.Figure == figure) lines.push_back(&line);
    const auto placeOf = [&](const FigureLine* line) { return static_cast<std::size_t>(line - all.data()); };
    if (figure == "months" && Trim(item).empty()) return placeOf(lines.front());
    // As it is written, or else in another letter case: a type that a user added may be called nearly as an
    // operation is.
    const auto isSame = [&](const FigureLine* line) { return line->Item == item; };
    const auto isAlike = [&](const FigureLine* line) { return IsSameName(line->Item, item); };
    auto found = std::ranges::find_if(lines, isSame);
    if (found == lines.end()) found = std::ranges::find_if(lines, isAlike);
    if (found == lines.end()) return NoSuchItem(figure, item, MonthText(monthEnd), lines);
    return placeOf(*found);
}

TraceNode TraceLine(const ShopFigures& shop, const MonthFigures& figures,
                    const std::vector<FigureLine>& lines, std::size_t place) {
    const FigureLine& line = lines[place];
    const auto number = std::count_if(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(place),
                                      [&](const FigureLine& each) { return each.Figure == line.Figure; });
    TracedAnswer answer = TraceAnswer(shop, figures, line.Figure, static_cast<std::size_t>(number));
    TraceNode root{.Text = TitleOf(line, figures.MonthEnd)};
    std::string twin = TwinText(lines, place);
    if (!twin.empty()) root.Children.push_back({.Text = std::move(twin)});
    for (std::string& formula : answer.Formulas)
        root.Children.push_back({.Text = std::move(formula)});
    std::ranges::move(answer.Parts, std::back_inserter(root.Children));
    root.Children.push_back({.Text = "Sum: " + ValueText(answer.Report, answer.Exact, line.Unit)});
    return root;
}

Result<TraceNode> TraceFigure(const ShopFigures& shop, const MonthFigures& figures, std::string_view figure,
                              std::string_view item) {
    const std::vector<FigureLine> lines = LinesOf(shop, figures);
    return FindFigure(lines, figures.MonthEnd, figure, item).transform([&](std::size_t place) {
        return TraceLine(shop, figures, lines, place);
    });
}

std::string TraceText(const TraceNode& root) {
    std::string text;
    AddLines(root, 0, text);
    return text;
}
} // namespace mact
