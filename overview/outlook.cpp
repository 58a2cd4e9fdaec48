#include "overview/outlook.h"

#include "base/text.h"

#include <deque>
#include <string>
#include <unordered_set>
#include <utility>

namespace mact {
namespace {

/// What the use of a month adds to the sums of the average, kg.
struct MonthSums {
    double Emissions = 0;
    double Allowance = 0;
};

MonthSums SumsOfMonth(const ShopFigures& shop, MonthNumber month) {
    MonthSums sums;
    for (const UsedMaterial& used : shop.UsedInMonth(month)) {
        if (shop.ClassOfRow(used.Row).Kind == UseKind::ClosedMolding) continue;
        sums.Emissions += used.PointValueExact * used.Megagrams();
        sums.Allowance += shop.Shop().Types[used.Row].EmissionLimit * used.Megagrams();
    }
    return sums;
}

bool IsOver(const std::deque<MonthSums>& window) {
    MonthSums all;
    for (const MonthSums& month : window) {
        all.Emissions += month.Emissions;
        all.Allowance += month.Allowance;
    }
    return IsAbove(all.Emissions, all.Allowance);
}

} // namespace

std::vector<FirstTrouble> FirstTroubles(const ShopFigures& shop, const std::vector<MonthFigures>& span) {
    std::vector<const MonthFigures*> figures;
    figures.reserve(span.size());
    for (const MonthFigures& each : span)
        figures.push_back(&each);
    return FirstTroubles(shop, figures);
}

std::vector<FirstTrouble> FirstTroubles(const ShopFigures& shop,
                                        const std::vector<const MonthFigures*>& span) {
    std::vector<FirstTrouble> found;
    std::unordered_set<std::string> contents;
    std::unordered_set<std::size_t> materials;
    bool isAverageKnown = false;
    for (const MonthFigures* figures : span) {
        const MonthNumber month = figures->MonthEnd;
        for (const ContentFigure& content : figures->Contents)
            if (IsTrouble(content.Judged.Is) && contents.insert(content.Item).second)
                found.push_back({"content", content.Item, {}, month, content.Judged.Is});
        for (const FilledFigure& filled : figures->Filled)
            if (IsTrouble(filled.Judged.Is) && materials.insert(filled.Material).second)
                found.push_back({"filled", std::string(Trim(shop.Shop().Materials[filled.Material].CustomId)),
                                 filled.Material, month, filled.Judged.Is});
        if (IsTrouble(figures->Average.Judged.Is) && !std::exchange(isAverageKnown, true))
            found.push_back({"emissions", {}, {}, month, figures->Average.Judged.Is});
    }
    return found;
}

std::optional<MonthNumber> MonthOverIfUseGoesOn(const ShopFigures& shop) {
    const std::optional<MonthNumber> newest = shop.NewestUse();
    if (!newest) return std::nullopt;
    std::deque<MonthSums> window;
    for (MonthNumber month = *newest - WindowMonths + 1; month <= *newest; ++month)
        window.push_back(SumsOfMonth(shop, month));
    if (IsOver(window)) return std::nullopt;
    // The sums are linear in the amounts, so the mean of the amounts gives the mean of the sums.
    constexpr int meanOf = 3;
    MonthSums next;
    for (auto month = window.end() - meanOf; month != window.end(); ++month) {
        next.Emissions += month->Emissions / meanOf;
        next.Allowance += month->Allowance / meanOf;
    }
    for (int ahead = 1; ahead <= MonthsLookedAhead; ++ahead) {
        window.pop_front();
        window.push_back(next);
        if (IsOver(window)) return *newest + ahead;
    }
    return std::nullopt;
}
} // namespace mact
