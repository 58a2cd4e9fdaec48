#include "overview/overview_rows.h"

#include "base/text.h"
#include "materials/units.h"
#include "overview/answers.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>
#include <utility>

namespace mact {
namespace {

std::optional<double> PercentLeft(double value, std::optional<double> limit) {
    if (!limit || !std::isfinite(value)) return std::nullopt;
    return (*limit - value) / *limit * 100;
}

std::pair<int, double> WorstFirst(const OverviewRow& row) {
    return {-Badness(row.Judged.Is), row.Headroom.value_or(std::numeric_limits<double>::infinity())};
}

void AddContents(const MonthFigures& figures, const UntrustedFigures& untrusted,
                 const OverviewOptions& options, std::vector<OverviewRow>& rows) {
    for (std::size_t index = 0; index < figures.Contents.size(); ++index) {
        const ContentFigure& content = figures.Contents[index];
        rows.push_back({.Figure = "content",
                        .Item = content.Item,
                        .Megagrams = Kilograms(content.Pounds) / KgPerMg,
                        .Value = content.Content.Report,
                        .Exact = content.Content.Exact,
                        .Limit = content.Limit,
                        .Headroom = PercentLeft(content.Content.Exact, content.Limit),
                        .Judged = content.Judged,
                        .IsNarrow = IsNarrow(content, options),
                        .Findings = untrusted.Contents[index]});
    }
}

void AddFilled(const ShopFigures& shop, const MonthFigures& figures, const UntrustedFigures& untrusted,
               std::vector<OverviewRow>& rows) {
    if (figures.Filled.empty()) return;
    std::unordered_map<std::size_t, double> megagrams;
    for (const UsedMaterial& used : shop.UsedInWindow(figures.MonthEnd))
        megagrams[used.Material] = used.Megagrams();
    for (std::size_t index = 0; index < figures.Filled.size(); ++index) {
        const FilledFigure& filled = figures.Filled[index];
        rows.push_back({.Figure = "filled",
                        .Item = std::string(Trim(shop.Shop().Materials[filled.Material].CustomId)),
                        .Material = filled.Material,
                        .Megagrams = megagrams[filled.Material],
                        .Value = filled.PointValue,
                        .Exact = filled.PointValue,
                        .Limit = filled.Limit,
                        .Headroom = PercentLeft(filled.PointValue, filled.Limit),
                        .Judged = filled.Judged,
                        .Findings = untrusted.Filled[index]});
    }
}

void AddFirstMonths(const std::vector<FirstTrouble>& troubles, std::vector<OverviewRow>& rows) {
    std::unordered_map<std::string, MonthNumber> ofContents;
    std::unordered_map<std::size_t, MonthNumber> ofFilled;
    for (const FirstTrouble& first : troubles) {
        if (first.Material)
            ofFilled.emplace(*first.Material, first.Month);
        else if (first.Figure == "content")
            ofContents.emplace(first.Item, first.Month);
    }
    for (OverviewRow& row : rows) {
        if (row.Material) {
            if (const auto first = ofFilled.find(*row.Material); first != ofFilled.end())
                row.Since = first->second;
        } else if (const auto first = ofContents.find(row.Item); first != ofContents.end()) {
            row.Since = first->second;
        }
    }
}

} // namespace

std::vector<OverviewRow> RowsOf(const ShopFigures& shop, const MonthFigures& figures,
                                const UntrustedFigures& untrusted, const std::vector<FirstTrouble>& troubles,
                                const OverviewOptions& options) {
    std::vector<OverviewRow> rows;
    rows.reserve(figures.Contents.size() + figures.Filled.size());
    AddContents(figures, untrusted, options, rows);
    AddFilled(shop, figures, untrusted, rows);
    AddFirstMonths(troubles, rows);
    std::ranges::stable_sort(rows, {}, WorstFirst);
    return rows;
}

std::optional<ChartValue> ValueAt(const OverviewRow& row, const MonthFigures& figures) {
    if (row.Material) {
        const auto filled = std::ranges::lower_bound(figures.Filled, *row.Material, {}, // in file order
                                                     &FilledFigure::Material);
        if (filled == figures.Filled.end() || filled->Material != *row.Material) return std::nullopt;
        return ChartValue{.Percent = filled->PointValue / filled->Limit * 100, .Judged = filled->Judged};
    }
    const auto content = std::ranges::find(figures.Contents, row.Item, &ContentFigure::Item);
    if (content == figures.Contents.end() || !content->Limit) return std::nullopt;
    return ChartValue{.Percent = content->Content.Report / *content->Limit * 100, .Judged = content->Judged};
}

ChartValue ValueOf(const AverageFigures& average) {
    return {.Percent = average.Emissions.Report / average.Allowance.Report * 100, .Judged = average.Judged};
}

std::string_view UnitOf(const OverviewRow& row) {
    return row.Material ? " kg/Mg" : " %";
}

std::string StateInWords(const OverviewRow& row, int months) {
    std::string words = StateInWords(row.Judged, months);
    if (row.IsNarrow) words += ", narrowly";
    if (row.Findings > 0) words += "; " + UntrustedText(row.Findings);
    return words;
}
} // namespace mact
