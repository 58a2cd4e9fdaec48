#include "overview/what_if_entry.h"

#include "base/numbers.h"
#include "base/text.h"
#include "materials/units.h"
#include "overview/overview_csv.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace mact {
namespace {

std::string Shown(std::string_view codePageText) {
    return Printable(Utf8FromCodePage(Trim(codePageText)));
}

CheckedWhatIf Wrong(WhatIfField field, std::string sentence) {
    return {.Field = field, .Wrong = std::move(sentence)};
}

/// A number of a material, and how it is spoken of.
struct Property {
    double ShopMaterial::*Value;
    std::string_view Name;
    std::string_view Unit;
    std::string_view Range;
    double Highest;
};
constexpr Property Content{&ShopMaterial::HapContent, "HAP content", " %", "a number from 0 to 100 %", 100};
constexpr Property Filler{&ShopMaterial::Filler, "filler", " %", "a number from 0 to 100 %", 100};
constexpr Property Density{&ShopMaterial::Density, "density", " lb/gal",
                           "a number of lb/gal that is not negative", std::numeric_limits<double>::max()};

const Property& PropertyOf(WhatIfKind kind) {
    if (kind == WhatIfKind::Density) return Density;
    return kind == WhatIfKind::Filler ? Filler : Content;
}

CheckedWhatIf CheckNumber(const ShopMaterial& material, const WhatIfEntry& entry) {
    const Property& property = PropertyOf(entry.Kind);
    const std::optional<double> number = ParseNumber(entry.Number);
    if (!number || *number < 0 || *number > property.Highest)
        return Wrong(WhatIfField::Number, "The new " + std::string(property.Name) + " must be " +
                                              std::string(property.Range) + '.');
    if (*number == material.*property.Value)
        return Wrong(WhatIfField::Number, "The " + std::string(property.Name) + " of " +
                                              Shown(material.CustomId) + " is " + NumberText(*number) +
                                              std::string(property.Unit) + " already.");
    return {
        .Change = WhatIfChange{.Kind = entry.Kind, .MaterialId = material.MaterialId, .Number = *number}
    };
}

CheckedWhatIf CheckMethod(const ShopRecords& changed, const ShopMaterial& material,
                          const WhatIfEntry& entry) {
    if (!entry.Method && MethodsFor(changed, *entry.Material).empty())
        return Wrong(WhatIfField::None,
                     "The material-type table has no method for \"" + Shown(material.MaterialType) + "\".");
    if (!entry.Method) return Wrong(WhatIfField::Method, "Choose the new application method.");
    if (IsSameName(*entry.Method, material.ApplicationMethod))
        return Wrong(WhatIfField::Method, "The application method of " + Shown(material.CustomId) + " is \"" +
                                              Shown(*entry.Method) + "\" already.");
    return {
        .Change =
            WhatIfChange{.Kind = entry.Kind, .MaterialId = material.MaterialId, .Method = *entry.Method}
    };
}

/// A use of 0 cannot be made more or less. Without a month, in any.
bool IsUsed(const ShopRecords& changed, const ShopMaterial& material, std::optional<MonthNumber> from) {
    return std::ranges::any_of(changed.Usage, [&](const ShopUse& use) {
        if (use.MaterialId != material.MaterialId || use.Quantity == 0) return false;
        if (!from) return true;
        const std::optional<MonthNumber> month = MonthOfPeriod(use.Period);
        return month && *month >= *from;
    });
}

CheckedWhatIf CheckAmount(const ShopRecords& changed, const ShopMaterial& material,
                          const WhatIfEntry& entry) {
    const std::optional<double> factor = ParseNumber(entry.Number);
    if (!factor || *factor < 0)
        return Wrong(WhatIfField::Number,
                     "The factor must be a number that is not negative, as in 0.5 for half as much.");
    const std::optional<MonthNumber> from =
        MonthOfPeriod(WholeNumberText(entry.Month.value_or(0)) + '/' + std::string(Trim(entry.Year)));
    if (!from || *from < FirstMonthEnd)
        return Wrong(WhatIfField::From, "The month must be from JAN 1900 to DEC 9999.");
    if (!IsUsed(changed, material, from))
        return Wrong(WhatIfField::From, "There is no use of " + Shown(material.CustomId) + " in " +
                                            ShortMonthName(*from) + " or later.");
    return {
        .Change = WhatIfChange{
                               .Kind = entry.Kind, .MaterialId = material.MaterialId, .Number = *factor, .From = *from}
    };
}

CheckedWhatIf CheckReplacement(const ShopRecords& changed, const ShopMaterial& material,
                               const WhatIfEntry& entry) {
    if (!entry.Replacement || *entry.Replacement >= changed.Materials.size())
        return Wrong(WhatIfField::Replacement, "Choose the material that takes its place.");
    const ShopMaterial& other = changed.Materials[*entry.Replacement];
    if (other.MaterialId == material.MaterialId)
        return Wrong(WhatIfField::Replacement,
                     "Choose another material than " + Shown(material.CustomId) + " itself.");
    if (!IsUsed(changed, material, {}))
        return Wrong(WhatIfField::None, "There is no use of " + Shown(material.CustomId) + " to replace.");
    return {
        .Change = WhatIfChange{
                               .Kind = entry.Kind, .MaterialId = material.MaterialId, .Replacement = other.MaterialId}
    };
}

CheckedWhatIf CheckLeftOut(const ShopRecords& changed, const ShopMaterial& material) {
    if (!IsUsed(changed, material, {}))
        return Wrong(WhatIfField::None, "There is no use of " + Shown(material.CustomId) + " to leave out.");
    return {
        .Change = WhatIfChange{.Kind = WhatIfKind::LeftOut, .MaterialId = material.MaterialId}
    };
}

/// "Today 33 %; with the changes 31 %."
std::string TodayText(const std::string& today, const std::string& withChanges) {
    return "Today " + today + (withChanges == today ? "." : "; with the changes " + withChanges + '.');
}

std::string NumberToday(const ShopFigures& shop, const ShopRecords& changed, const WhatIfEntry& entry) {
    const std::size_t material = *entry.Material;
    const Property& property = PropertyOf(entry.Kind);
    const auto text = [&](const ShopRecords& records) {
        return NumberText(records.Materials[material].*property.Value) + std::string(property.Unit);
    };
    std::string sentence = TodayText(text(shop.Shop()), text(changed));
    const std::optional<std::size_t> row = shop.RowOf(material);
    if (entry.Kind == WhatIfKind::Density)
        sentence += " It counts for quantities in gallons.";
    else if (entry.Kind == WhatIfKind::Filler && !(row && shop.ClassOfRow(*row).Kind == UseKind::Filled))
        sentence += " It counts for filled resins, and this is none.";
    else if (entry.Kind == WhatIfKind::Filler)
        sentence += " No report applies it: see the exact figures.";
    return sentence;
}

std::string AmountText(const ShopFigures& shop, std::size_t material, MonthNumber monthEnd) {
    double sum = 0;
    for (const std::size_t place : shop.UsesInWindow(material, monthEnd)) {
        const ShopUse& use = shop.Shop().Usage[place];
        const Result<double> pounds =
            ConvertQuantity(use.Quantity, shop.Shop().Materials[material].Density, use.Unit, UnitLbs);
        sum += pounds ? *pounds : std::numeric_limits<double>::quiet_NaN();
    }
    const std::string kilograms = RoundedText(Kilograms(sum));
    return kilograms.empty() ? "no number" : kilograms + " kg";
}

std::string ReplacementToday(const ShopRecords& changed, const WhatIfEntry& entry) {
    if (!entry.Replacement) return "The other material is used in its place, of equal mass.";
    const ShopMaterial& other = changed.Materials[*entry.Replacement];
    return Shown(other.CustomId) + " has " + NumberText(other.HapContent) +
           " % HAP: " + Shown(other.MaterialType) + ", " + Shown(other.ApplicationMethod) +
           ". It is used at equal mass.";
}

std::string PercentText(const std::optional<double>& content) {
    if (!content) return "none";
    return *content > 100 ? "any" : RoundedText(*content) + " %";
}

std::string RowText(const ShopFigures& shop, std::size_t row, const std::optional<double>& content) {
    const UseClass& its = shop.ClassOfRow(row);
    if (its.Kind == UseKind::Filled) return "of its row none (a filled resin is in no row)";
    const HapContentRecord& type = shop.Shop().Types[row];
    const std::string name = its.Row ? std::string(TableTwoRows[*its.Row].Name) : Shown(PairName(type));
    const std::string text = "of its row (" + name + ") " + PercentText(content);
    return its.Row || LimitOf(type) ? text : text + " (it has no limit)";
}

} // namespace

CheckedWhatIf CheckWhatIf(const ShopRecords& changed, const WhatIfEntry& entry) {
    if (!entry.Material || *entry.Material >= changed.Materials.size())
        return Wrong(WhatIfField::Material, "Choose a material.");
    const ShopMaterial& material = changed.Materials[*entry.Material];
    switch (entry.Kind) {
    case WhatIfKind::Content:
    case WhatIfKind::Density:
    case WhatIfKind::Filler:
        return CheckNumber(material, entry);
    case WhatIfKind::Method:
        return CheckMethod(changed, material, entry);
    case WhatIfKind::Amount:
        return CheckAmount(changed, material, entry);
    case WhatIfKind::Replacement:
        return CheckReplacement(changed, material, entry);
    case WhatIfKind::LeftOut:
        break;
    }
    return CheckLeftOut(changed, material);
}

std::vector<std::string> MethodsFor(const ShopRecords& shop, std::size_t material) {
    std::vector<std::string> methods;
    std::unordered_set<std::string> known;
    for (const HapContentRecord& row : shop.Types)
        if (IsSameName(row.MaterialType, shop.Materials[material].MaterialType) &&
            known.insert(ComparisonKey(row.ApplicationMethod)).second)
            methods.emplace_back(Trim(row.ApplicationMethod));
    return methods;
}

std::string StartingPoint(const ShopFigures& shop, const ShopRecords& changed, const WhatIfEntry& entry,
                          MonthNumber monthEnd) {
    if (!entry.Material) return {};
    const std::size_t material = *entry.Material;
    const auto method = [&](const ShopRecords& records) {
        return '"' + Shown(records.Materials[material].ApplicationMethod) + '"';
    };
    switch (entry.Kind) {
    case WhatIfKind::Content:
    case WhatIfKind::Density:
    case WhatIfKind::Filler:
        return NumberToday(shop, changed, entry);
    case WhatIfKind::Method:
        return TodayText(method(shop.Shop()), method(changed));
    case WhatIfKind::Replacement:
        return ReplacementToday(changed, entry);
    case WhatIfKind::Amount:
    case WhatIfKind::LeftOut:
        break;
    }
    return "The amount recorded for the twelve months ending with " + ShortMonthName(monthEnd) + " is " +
           AmountText(shop, material, monthEnd) + '.';
}

std::string BreakEvenText(const ShopFigures& after, const std::vector<BreakEven>& breakEvens,
                          std::size_t material, MonthNumber monthEnd) {
    const std::string text = "Break-even content of " + Shown(after.Shop().Materials[material].CustomId) +
                             " for " + ShortMonthName(monthEnd) + ": ";
    const auto found = std::ranges::lower_bound(breakEvens, material, {}, &BreakEven::Material);
    const std::optional<std::size_t> row = after.RowOf(material);
    if (found == breakEvens.end() || found->Material != material || !row)
        return text + "none, it has no part in the average.";
    return text + "of the average " + PercentText(found->OfAverage) + ", " +
           RowText(after, *row, found->PossibleOfRow()) + '.';
}
} // namespace mact
