#include "overview/what_if.h"

#include "base/numbers.h"
#include "base/text.h"
#include "materials/units.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

namespace mact {
namespace {

std::string Shown(std::string_view codePageText) {
    return Printable(Utf8FromCodePage(Trim(codePageText)));
}

std::string NameOf(const ShopMaterial& material) {
    return Shown(material.CustomId);
}

Result<std::size_t> FindMaterial(const ShopRecords& shop, std::int16_t materialId) {
    const auto found = std::ranges::find(shop.Materials, materialId, &ShopMaterial::MaterialId);
    if (found == shop.Materials.end())
        return Failure{.Doing = "change the material with the number " + WholeNumberText(materialId),
                       .Reason = "there is none"};
    return static_cast<std::size_t>(found - shop.Materials.begin());
}

/// A number of a material, and how it is spoken of.
struct Property {
    double ShopMaterial::*Value;
    std::string_view Name;
    std::string_view Unit;
    double Highest;
};
constexpr Property Content{&ShopMaterial::HapContent, "HAP content", " %", 100};
constexpr Property Filler{&ShopMaterial::Filler, "filler", " %", 100};
constexpr Property Density{&ShopMaterial::Density, "density", " lb/gal", std::numeric_limits<double>::max()};

Result<std::string> SetNumber(ShopMaterial& material, const Property& property, double number) {
    const std::string unit(property.Unit);
    const std::string name = "the " + std::string(property.Name) + " of " + NameOf(material);
    if (!(number >= 0 && number <= property.Highest))
        return Failure{.Doing = "set " + name + " to " + NumberText(number) + unit,
                       .Reason = property.Highest == 100 ? "it must be from 0 to 100 %"
                                                         : "it must be a number that is not negative"};
    const double before = std::exchange(material.*property.Value, number);
    return 'T' + name.substr(1) + " is " + NumberText(number) + unit + " instead of " + NumberText(before) +
           unit + '.';
}

Result<std::string> SetMethod(const ShopRecords& shop, ShopMaterial& material, std::string_view method) {
    const auto row = std::ranges::find_if(shop.Types, [&](const HapContentRecord& each) {
        return IsSameName(each.MaterialType, material.MaterialType) &&
               IsSameName(each.ApplicationMethod, method);
    });
    if (row == shop.Types.end())
        return Failure{
            .Doing = "set the application method of " + NameOf(material) + " to \"" + Shown(method) + '"',
            .Reason =
                "the material-type table has no such method of \"" + Shown(material.MaterialType) + '"'};
    const std::string before =
        std::exchange(material.ApplicationMethod, std::string(Trim(row->ApplicationMethod)));
    return "The application method of " + NameOf(material) + " is \"" + Shown(row->ApplicationMethod) +
           "\" instead of \"" + Shown(before) + "\".";
}

template <class Change> void ChangeUses(ShopRecords& shop, std::int16_t materialId, const Change& change) {
    for (ShopUse& use : shop.Usage)
        if (use.MaterialId == materialId) change(use);
}

Result<std::string> MultiplyAmount(ShopRecords& shop, const ShopMaterial& material, double factor,
                                   MonthNumber from) {
    if (!(factor >= 0 && std::isfinite(factor)))
        return Failure{.Doing = "multiply the amount of " + NameOf(material) + " by " + NumberText(factor),
                       .Reason = "the factor must be a number that is not negative"};
    ChangeUses(shop, material.MaterialId, [&](ShopUse& use) {
        const std::optional<MonthNumber> month = MonthOfPeriod(use.Period);
        if (month && *month >= from) use.Quantity *= factor;
    });
    return "The amount of " + NameOf(material) + " is " + NumberText(factor) + " times as much from " +
           MonthText(from) + " on.";
}

Result<std::string> Replace(ShopRecords& shop, const ShopMaterial& material, std::int16_t replacement) {
    const Result<std::size_t> found = FindMaterial(shop, replacement);
    if (!found) return found.error();
    const ShopMaterial& other = shop.Materials[*found];
    if (other.MaterialId == material.MaterialId)
        return Failure{.Doing = "put " + NameOf(other) + " in place of " + NameOf(material),
                       .Reason = "they are the same material"};
    ChangeUses(shop, material.MaterialId, [&](ShopUse& use) {
        const Result<double> pounds = ConvertQuantity(use.Quantity, material.Density, use.Unit, UnitLbs);
        use.MaterialId = other.MaterialId;
        // A quantity without a result stays without one.
        use.Quantity = pounds ? *pounds : std::numeric_limits<double>::quiet_NaN();
        use.Unit = UnitLbs;
    });
    return NameOf(other) + " takes the place of " + NameOf(material) + " at equal mass.";
}

Result<std::string> LeaveOut(ShopRecords& shop, const ShopMaterial& material) {
    ChangeUses(shop, material.MaterialId, [](ShopUse& use) {
        use.Quantity = 0;
        use.Unit = UnitLbs;
    });
    return NameOf(material) + " is left out.";
}

/// The sentence of what was done.
Result<std::string> Apply(ShopRecords& shop, const WhatIfChange& change) {
    const Result<std::size_t> found = FindMaterial(shop, change.MaterialId);
    if (!found) return found.error();
    ShopMaterial& material = shop.Materials[*found];
    switch (change.Kind) {
    case WhatIfKind::Content:
        return SetNumber(material, Content, change.Number);
    case WhatIfKind::Density:
        return SetNumber(material, Density, change.Number);
    case WhatIfKind::Filler:
        return SetNumber(material, Filler, change.Number);
    case WhatIfKind::Method:
        return SetMethod(shop, material, change.Method);
    case WhatIfKind::Amount:
        return MultiplyAmount(shop, material, change.Number, change.From);
    case WhatIfKind::Replacement:
        return Replace(shop, material, change.Replacement);
    case WhatIfKind::LeftOut:
        break;
    }
    return LeaveOut(shop, material);
}

Figure Difference(const Figure& before, const Figure& after) {
    const double scale = std::max(std::abs(before.Report), std::abs(after.Report));
    return {RoundDecimal(after.Report - before.Report, scale), after.Exact - before.Exact};
}

Comparison CompareFigures(const Figure& before, const Figure& after) {
    return {.Before = before, .After = after, .Difference = Difference(before, after)};
}

/// The difference is that of the sums, not of the rounded headrooms.
Comparison CompareHeadroom(const AverageFigures& before, const AverageFigures& after) {
    const auto unrounded = [](const AverageFigures& average) {
        return Figure{average.Allowance.Report - average.Emissions.Report, average.Headroom().Exact};
    };
    const double scale = std::max({before.Allowance.Report, before.Emissions.Report, after.Allowance.Report,
                                   after.Emissions.Report}); // of what the difference was calculated from
    Comparison comparison{.Before = before.Headroom(), .After = after.Headroom()};
    const Figure from = unrounded(before);
    const Figure to = unrounded(after);
    comparison.Difference = {RoundDecimal(to.Report - from.Report, scale), to.Exact - from.Exact};
    return comparison;
}

/// One of the two may be missing.
ContentComparison CompareContent(const ContentFigure* before, const ContentFigure* after) {
    const ContentFigure& either = before ? *before : *after;
    ContentComparison comparison{.Item = either.Item,
                                 .Limit = either.Limit,
                                 .JudgedBefore = {.Is = State::NotUsed},
                                 .JudgedAfter = {.Is = State::NotUsed}};
    if (before) {
        comparison.Before = before->Content;
        comparison.JudgedBefore = before->Judged;
    }
    if (after) {
        comparison.After = after->Content;
        comparison.JudgedAfter = after->Judged;
    }
    if (before && after) comparison.Difference = Difference(before->Content, after->Content);
    return comparison;
}

/// Table 2's rows are in front of the pairs that a user added.
bool IsInFront(const ContentFigure& left, const ContentFigure& right) {
    const auto place = [](const ContentFigure& content) {
        return std::tuple(content.Pair.has_value(), content.Row, content.Pair);
    };
    return place(left) < place(right);
}

std::vector<ContentComparison> CompareContents(const std::vector<ContentFigure>& before,
                                               const std::vector<ContentFigure>& after) {
    std::vector<ContentComparison> contents;
    auto left = before.begin();
    auto right = after.begin();
    while (left != before.end() || right != after.end()) {
        const bool takesLeft = right == after.end() || (left != before.end() && !IsInFront(*right, *left));
        const bool takesRight = left == before.end() || (right != after.end() && !IsInFront(*left, *right));
        contents.push_back(CompareContent(takesLeft ? &*left : nullptr, takesRight ? &*right : nullptr));
        if (takesLeft) ++left;
        if (takesRight) ++right;
    }
    return contents;
}

} // namespace

Result<ShopRecords> Applied(const ShopRecords& shop, const std::vector<WhatIfChange>& changes) {
    ShopRecords changed = shop;
    for (const WhatIfChange& change : changes) {
        const Result<std::string> sentence = Apply(changed, change);
        if (!sentence) return sentence.error();
    }
    return changed;
}

Result<std::vector<std::string>> SentencesOf(const ShopRecords& shop,
                                             const std::vector<WhatIfChange>& changes) {
    ShopRecords changed = shop;
    std::vector<std::string> sentences;
    for (const WhatIfChange& change : changes) {
        Result<std::string> sentence = Apply(changed, change);
        if (!sentence) return sentence.error();
        sentences.push_back(std::move(*sentence));
    }
    return sentences;
}

MonthComparison Compare(const MonthFigures& before, const MonthFigures& after) {
    return {.MonthEnd = before.MonthEnd,
            .Emissions = CompareFigures(before.Average.Emissions, after.Average.Emissions),
            .Allowance = CompareFigures(before.Average.Allowance, after.Average.Allowance),
            .Headroom = CompareHeadroom(before.Average, after.Average),
            .JudgedBefore = before.Average.Judged,
            .JudgedAfter = after.Average.Judged,
            .Contents = CompareContents(before.Contents, after.Contents)};
}

std::vector<MonthComparison> Compare(const ShopFigures& before, const ShopFigures& after, MonthNumber first,
                                     MonthNumber last) {
    std::vector<MonthComparison> months;
    for (MonthNumber month = first; month <= last; ++month)
        months.push_back(Compare(before.At(month), after.At(month)));
    return months;
}
} // namespace mact
