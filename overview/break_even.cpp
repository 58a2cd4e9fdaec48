#include "overview/break_even.h"

#include <cmath>

namespace mact {
namespace {

/// For each number, the sum of all others. None is subtracted: what is left of a sum would not be exactly 0.
std::vector<double> SumsOfOthers(const std::vector<double>& numbers) {
    std::vector<double> others(numbers.size(), 0);
    double before = 0;
    for (std::size_t each = 0; each < numbers.size(); ++each) {
        others[each] = before;
        before += numbers[each];
    }
    double after = 0;
    for (std::size_t each = numbers.size(); each > 0; --each) {
        others[each - 1] += after;
        after += numbers[each - 1];
    }
    return others;
}

std::optional<double> IfFinite(double number) {
    if (!std::isfinite(number)) return std::nullopt;
    return number;
}

/// Of the average.
std::optional<double> ContentFor(double room, const UsedMaterial& used, const ShopFigures& shop) {
    const HapContentRecord& row = shop.Shop().Types[used.Row];
    const bool isFilled = shop.ClassOfRow(used.Row).Kind == UseKind::Filled;
    const double share = isFilled ? (100 - shop.Shop().Materials[used.Material].Filler) / 100 : 1;
    const double perPower = used.Megagrams() * row.EfCoefficient * share;
    if (!(room > 0 && perPower > 0 && row.EfExponent > 0)) return std::nullopt;
    return IfFinite(std::pow(room / perPower, 1 / row.EfExponent));
}

std::optional<double> LimitOfRow(const UseClass& its, const HapContentRecord& type) {
    if (its.Row) return TableTwoRows[*its.Row].HapLimit;
    return LimitOf(type);
}

/// The used materials of the average, and what each of them adds.
struct AverageParts {
    std::vector<UsedMaterial> Used{};
    std::vector<double> Emissions{};
    double Allowance = 0;
};

AverageParts AveragePartsOf(const ShopFigures& shop, MonthNumber monthEnd) {
    AverageParts parts;
    for (const UsedMaterial& used : shop.UsedInWindow(monthEnd)) {
        if (shop.ClassOfRow(used.Row).Kind == UseKind::ClosedMolding) continue;
        parts.Used.push_back(used);
        parts.Emissions.push_back(used.PointValueExact * used.Megagrams());
        parts.Allowance += shop.Shop().Types[used.Row].EmissionLimit * used.Megagrams();
    }
    return parts;
}

/// Fills in OfRow of the materials at these places, which share a row.
void FillRow(const ShopFigures& shop, const AverageParts& parts, const std::vector<std::size_t>& places,
             std::vector<BreakEven>& breakEvens) {
    std::vector<double> poundsOfHap;
    double pounds = 0;
    for (const std::size_t place : places) {
        const UsedMaterial& used = parts.Used[place];
        poundsOfHap.push_back(used.Pounds * shop.Shop().Materials[used.Material].HapContent);
        pounds += used.Pounds;
    }
    const std::vector<double> others = SumsOfOthers(poundsOfHap);
    for (std::size_t each = 0; each < places.size(); ++each) {
        const UsedMaterial& used = parts.Used[places[each]];
        const std::optional<double> limit =
            LimitOfRow(shop.ClassOfRow(used.Row), shop.Shop().Types[used.Row]);
        if (limit) breakEvens[places[each]].OfRow = IfFinite((*limit * pounds - others[each]) / used.Pounds);
    }
}

} // namespace

std::optional<double> BreakEven::PossibleOfRow() const {
    return OfRow && *OfRow > 0 ? OfRow : std::nullopt;
}

std::vector<BreakEven> BreakEvensAt(const ShopFigures& shop, MonthNumber monthEnd) {
    const AverageParts parts = AveragePartsOf(shop, monthEnd);
    const std::vector<double> others = SumsOfOthers(parts.Emissions);
    std::vector<BreakEven> breakEvens;
    std::vector<std::vector<std::size_t>> ofRow(TableTwoRows.size());
    std::vector<std::vector<std::size_t>> ofPair(shop.Shop().Types.size());
    for (std::size_t place = 0; place < parts.Used.size(); ++place) {
        const UsedMaterial& used = parts.Used[place];
        breakEvens.push_back({.Material = used.Material,
                              .OfAverage = ContentFor(parts.Allowance - others[place], used, shop)});
        const UseClass& its = shop.ClassOfRow(used.Row);
        if (its.Kind == UseKind::Content) (its.Row ? ofRow[*its.Row] : ofPair[used.Row]).push_back(place);
    }
    for (const auto* rows : {&ofRow, &ofPair})
        for (const std::vector<std::size_t>& places : *rows)
            FillRow(shop, parts, places, breakEvens);
    return breakEvens;
}
} // namespace mact
