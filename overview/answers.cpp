#include "overview/answers.h"

#include "base/numbers.h"
#include "base/text.h"
#include "overview/overview_csv.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>
#include <utility>

namespace mact {
namespace {

std::string Decimals(double number, int decimals) {
    std::array<char, 400> buffer{}; // the largest double has 309 digits in front of the point
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                       std::chars_format::fixed, decimals);
    return {buffer.data(), written.ptr};
}

Answer EveryMaterial(const MonthFigures& figures) {
    Answer answer{.Question = "Every material within its limit",
                  .Meaning = "One option is enough for each operation: materials within their limits need no "
                             "averaging.",
                  .Report = "Compliant Materials Report"};
    std::vector<std::string> above;
    for (const ContentFigure& content : figures.Contents)
        if (!content.IsEveryMaterialWithin) above.push_back(CardName(content.Item));
    if (figures.Contents.empty()) {
        answer.Is = State::NotUsed;
        answer.Text = "Nothing was used that has a limit of its content.";
    } else if (above.empty()) {
        answer.Is = figures.Months < WindowMonths ? State::TooEarly : State::Within;
        answer.Text = "No material in use is above its limit.";
    } else {
        answer.Is = figures.Months < WindowMonths ? State::TooEarly : State::Over;
        answer.Text = "Not every material in use is within: " + FirstFew(above) + '.';
    }
    if (answer.Is == State::TooEarly)
        answer.Text = StateInWords({.Is = State::TooEarly}, figures.Months) + ". " + answer.Text;
    return answer;
}

std::vector<std::string> WorstFirst(std::vector<std::pair<int, std::string>> troubles) {
    std::ranges::stable_sort(troubles, std::greater<>(), &std::pair<int, std::string>::first);
    std::vector<std::string> texts;
    texts.reserve(troubles.size());
    for (auto& [badness, text] : troubles)
        texts.push_back(std::move(text));
    return texts;
}

Answer WeightedContents(const ShopFigures& shop, const MonthFigures& figures,
                        const OverviewOptions& options) {
    Answer answer{.Question = "Weighted content of each row",
                  .Meaning =
                      "A row within its limit makes up for single materials above it; a row over its limit "
                      "can still be in the average.",
                  .Report = "Weighted-Average HAP Content Report"};
    Verdict worst{.Is = State::NotUsed};
    std::vector<std::pair<int, std::string>> troubles; // with how bad each is
    const auto add = [&](const std::string& item, const Verdict& verdict) {
        if (WorseOf(worst.Is, verdict.Is) != worst.Is) worst = verdict;
        if (WorseOf(State::None, verdict.Is) == verdict.Is)
            troubles.emplace_back(Badness(verdict.Is), item + ": " + StateInWords(verdict, figures.Months));
    };
    std::vector<std::string> narrow;
    for (const ContentFigure& content : figures.Contents) {
        add(CardName(content.Item), content.Judged);
        if (IsNarrow(content, options)) narrow.push_back(CardName(content.Item));
    }
    for (const FilledFigure& filled : figures.Filled)
        add(CardName(Trim(shop.Shop().Materials[filled.Material].CustomId)), filled.Judged);
    answer.Is = worst.Is;
    answer.IsNarrow = worst.Is == State::Within && !narrow.empty();
    if (worst.Is == State::NotUsed)
        answer.Text = "Nothing was used that has a limit of its content.";
    else if (!troubles.empty())
        answer.Text = FirstFew(WorstFirst(std::move(troubles))) + '.';
    else if (answer.IsNarrow)
        answer.Text = "Within, narrowly: " + FirstFew(narrow) + '.';
    else
        answer.Text = StateInWords(worst, figures.Months) + '.';
    return answer;
}

Answer EmissionAverage(const MonthFigures& figures, const OverviewOptions& options) {
    const AverageFigures& average = figures.Average;
    const bool isNarrow =
        average.Judged.Is == State::Within && average.HeadroomPercent().Report < options.WarnHeadroom;
    Answer answer{.Question = "Emissions against the allowance",
                  .Is = average.Judged.Is,
                  .Text = StateInWords(average.Judged, figures.Months) + (isNarrow ? ", narrowly." : "."),
                  .Meaning =
                      "The average lets one operation make up for another; it needs none of the other two.",
                  .Report = "Emission-Average HAP Content Report",
                  .IsNarrow = isNarrow};
    const std::string percent = PercentOfAllowance(average);
    if (average.Judged.Is == State::NotUsed) answer.Text = "Nothing was used that is averaged.";
    if (percent.empty() || average.Judged.Is == State::NotUsed) return answer;
    answer.Text += ' ' + percent + " of the allowance, " + HeadroomInWords(average) + '.';
    return answer;
}

} // namespace

std::string CardName(std::string_view codePageText) {
    constexpr std::size_t most = 32; // more than a row of Table 2 has
    if (codePageText.size() <= most) return Utf8FromCodePage(codePageText);
    return Utf8FromCodePage(codePageText.substr(0, most - 1)) + "\u2026";
}

std::string FirstFew(const std::vector<std::string>& names) {
    constexpr std::size_t most = 7; // the rows of Table 2
    constexpr std::size_t mostLetters = 200;
    std::string text;
    std::size_t count = 0;
    for (; count < std::min(names.size(), most) && text.size() < mostLetters; ++count)
        text += (count == 0 ? "" : "; ") + names[count];
    if (names.size() > count)
        text += " and " + WholeNumberText(static_cast<std::int64_t>(names.size() - count)) + " more";
    return text;
}

std::string StateInWords(const Verdict& verdict, int months) {
    if (verdict.Is == State::None) return "No answer: a number is too large or not a number";
    if (verdict.Is == State::TooEarly)
        return "Too early (" + WholeNumberText(months) + " of " + WholeNumberText(WindowMonths) + " months)";
    std::string text = StateText(verdict.Is, months);
    text[0] = UpperCase(text.substr(0, 1))[0];
    if (verdict.Why != Cause::None) text += " (" + std::string(CauseText(verdict.Why)) + ')';
    return text;
}

std::string PercentText(double percent) {
    constexpr int mostDecimals = 6;
    int decimals = 1;
    while (percent != 100 && decimals < mostDecimals &&
           Decimals(percent, decimals) == Decimals(100, decimals))
        ++decimals;
    return Decimals(percent, decimals) + " %";
}

std::string PercentOfAllowance(const AverageFigures& average) {
    const double percent = average.Emissions.Report / average.Allowance.Report * 100;
    if (average.Allowance.Report == 0 || !std::isfinite(percent)) return {};
    return PercentText(percent);
}

bool IsNarrow(const ContentFigure& content, const OverviewOptions& options) {
    return content.Judged.Is == State::Within && content.Limit &&
           *content.Limit - content.Content.Report < options.WarnContent;
}

std::vector<Answer> AnswersOf(const ShopFigures& shop, const MonthFigures& figures,
                              const UntrustedFigures& untrusted, const OverviewOptions& options) {
    std::vector<Answer> answers = {EveryMaterial(figures), WeightedContents(shop, figures, options),
                                   EmissionAverage(figures, options)};
    for (Answer& answer : answers) {
        answer.Findings = &answer == &answers.back() ? untrusted.Average : untrusted.AnyContent;
        answer.Text += UntrustedSentence(answer.Findings);
    }
    return answers;
}

std::string NewestUseText(const ShopFigures& shop) {
    if (const auto newest = shop.NewestUse())
        return "The newest month with use is " + LongMonthName(*newest) + '.';
    if (shop.Shop().Usage.empty()) return "No use is recorded yet.";
    return "Use is recorded, but none of it in a month that can be read.";
}

std::string HeadroomInWords(const AverageFigures& average) {
    const double left = average.Headroom().Report;
    return GroupedText(std::abs(left)) + " kg " + (left < 0 ? "too much" : "left");
}

std::string AverageInWords(const MonthFigures& figures) {
    const State state = figures.Average.Judged.Is;
    const std::string percent = PercentOfAllowance(figures.Average);
    if (state == State::TooEarly)
        return "too early to tell, " + WholeNumberText(figures.Months) + " of " +
               WholeNumberText(WindowMonths) + " months";
    if (percent.empty()) return state == State::NotUsed ? "nothing was used that is averaged" : "no answer";
    std::string text = "emission average " + percent + " of the allowance";
    if (state == State::Differs) // the percentage is the reports' alone
        AppendAll(text, ", differs (", CauseText(figures.Average.Judged.Why), ")");
    return text;
}

std::size_t CountTroubles(const MonthFigures& figures) {
    const auto isTrouble = [](const auto& figure) { return IsTrouble(figure.Judged.Is); };
    return static_cast<std::size_t>(std::ranges::count_if(figures.Contents, isTrouble) +
                                    std::ranges::count_if(figures.Filled, isTrouble)) +
           (isTrouble(figures.Average) ? 1U : 0U);
}

std::string TroublesInWords(std::size_t troubles) {
    return WholeNumberText(static_cast<std::int64_t>(troubles)) +
           (troubles == 1 ? " figure is over or differs" : " figures are over or differ");
}

std::string VerdictLine(const MonthFigures& figures, std::size_t attention) {
    const std::string line = ShortMonthName(figures.MonthEnd) + ": " + AverageInWords(figures) + "; ";
    if (attention > 0)
        return line + WholeNumberText(static_cast<std::int64_t>(attention)) +
               (attention == 1 ? " point needs attention" : " points need attention");
    const std::size_t troubles = CountTroubles(figures);
    return line + (troubles == 0 ? "nothing needs attention" : TroublesInWords(troubles));
}
} // namespace mact
