#pragma once

#include "materials/units.h"
#include "overview/attention.h"
#include "overview/shop_figures.h"

#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// Records made by hand, so that they can be damaged in any way. Their month end is 12/2005.
class MadeShop {
public:
    static constexpr MonthNumber MonthEnd = MonthNumberOf(2005, 12);

    MadeShop() {
        AddType("Production resin", "Spray", 28, 0.014, 2.425, 46);
        AddType("Production resin", "Spray (Vacuum bagging after roll-out)", 30, 0.01185, 2.425, 46);
        AddType("Production resin", "Closed Molding", -1, 0, 0, 46);
        AddType("Pigmented production gel", "All", 33, 0.445, 1.675, 159);
        AddType("Production resin (Filled)", "Spray", 28, 0.014, 2.425, 46);
        AddType("Barrier coat", "Brush", 30, 0.445, 1.675, 159); // as a user adds it
    }

    /// With nothing wrong. Its number is its record's: the first has 1.
    ShopMaterial& AddMaterial(std::string customId, std::string type = "Production resin",
                              std::string method = "Spray") {
        const auto record = static_cast<std::int16_t>(Records.Materials.size() + 1);
        return Records.Materials.emplace_back(ShopMaterial{.Record = record,
                                                           .MaterialId = record,
                                                           .CustomId = std::move(customId),
                                                           .MaterialType = std::move(type),
                                                           .ApplicationMethod = std::move(method),
                                                           .Density = 9,
                                                           .HapContent = 28});
    }
    ShopUse& AddUse(std::int16_t material, std::string period = "12/2005", double quantity = 1000,
                    std::int16_t unit = UnitLbs) {
        const auto record = static_cast<std::int16_t>(Records.Usage.size() + 1);
        return Records.Usage.emplace_back(ShopUse{.Record = record,
                                                  .MaterialId = material,
                                                  .Period = std::move(period),
                                                  .Quantity = quantity,
                                                  .Unit = unit});
    }

    std::vector<Attention> Attentions(MonthNumber monthEnd = MonthEnd) const {
        const ShopFigures figures(Records);
        return FindAttention(figures, monthEnd, 1);
    }
    std::vector<std::string> Texts(AttentionKind kind, MonthNumber monthEnd = MonthEnd) const {
        std::vector<std::string> texts;
        for (const Attention& attention : Attentions(monthEnd))
            if (attention.Kind == kind) texts.push_back(attention.Text);
        return texts;
    }
    std::vector<std::string> NotTrusted(MonthNumber monthEnd = MonthEnd) const {
        return Texts(AttentionKind::NotTrusted, monthEnd);
    }
    std::vector<std::string> WorthALook(MonthNumber monthEnd = MonthEnd) const {
        return Texts(AttentionKind::WorthALook, monthEnd);
    }

    ShopRecords Records{};

private:
    void AddType(std::string type, std::string method, double limit, double coefficient, double exponent,
                 double emissionLimit) {
        Records.Types.push_back({.MaterialType = std::move(type),
                                 .HapLimit = limit,
                                 .ApplicationMethod = std::move(method),
                                 .EfCoefficient = coefficient,
                                 .EfExponent = exponent,
                                 .EmissionLimit = emissionLimit});
    }
};
} // namespace mact
