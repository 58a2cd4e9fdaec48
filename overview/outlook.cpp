#include "overview/outlook.h"

#include "base/text.h"

#include <algorithm>
#include <deque>

namespace mact {
namespace {

class Troubles {
public:
    void Add(std::string_view figure, std::string_view item, MonthNumber month, State state) {
        if (state != State::Over && state != State::Differs) return;
        const auto isKnown = [&](const FirstTrouble& known) {
            return known.Figure == figure && known.Item == item;
        };
        if (std::ranges::none_of(m_found, isKnown))
            m_found.push_back({std::string(figure), std::string(item), month, state});
    }
    std::vector<FirstTrouble> Take() { return std::move(m_found); }

private:
    std::vector<FirstTrouble> m_found;
};

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
    Troubles troubles;
    for (const MonthFigures& figures : span) {
        for (const ContentFigure& content : figures.Contents)
            troubles.Add("content", content.Item, figures.MonthEnd, content.Judged.Is);
        for (const FilledFigure& filled : figures.Filled)
            troubles.Add("filled", Trim(shop.Shop().Materials[filled.Material].CustomId), figures.MonthEnd,
                         filled.Judged.Is);
        troubles.Add("emissions", {}, figures.MonthEnd, figures.Average.Judged.Is);
    }
    return troubles.Take();
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
