#pragma once

#include "overview/shop_records.h"
#include "store/material_types.h"

#include <string>
#include <utility>
#include <vector>

namespace mact {

/// Rows of the material-type table as a fresh program has them, as far as the tests need them.
inline std::vector<HapContentRecord> SomeTypes() {
    const auto row = [](std::string type, std::string method, double limit, double coefficient,
                        double exponent, double emissionLimit) {
        return HapContentRecord{.MaterialType = std::move(type),
                                .HapLimit = limit,
                                .ApplicationMethod = std::move(method),
                                .EfCoefficient = coefficient,
                                .EfExponent = exponent,
                                .EmissionLimit = emissionLimit};
    };
    return {
        row("Production resin", "Spray", 28, 0.014, 2.425, 46),
        row("Production resin", "Spray (Vacuum bagging after roll-out)", 30, 0.01185, 2.425, 46),
        row("Production resin", "Non-Spray", 35, 0.014, 2.275, 46),
        row("Production resin", "Closed Molding", -1, 0, 0, 46),
        row("Pigmented production gel", "All", 33, 0.445, 1.675, 159),
        row("Production resin (Filled)", "Non-Spray", 35, 0.014, 2.275, 46),
    };
}

/// A material of hand lay-up resin, unless said otherwise.
inline ShopMaterial MadeMaterial(std::int16_t number, double hapContent,
                                 std::string type = "Production resin", std::string method = "Non-Spray") {
    return {.Record = number,
            .MaterialId = number,
            .CustomId = "M-" + std::to_string(number),
            .Description = "made up",
            .MaterialType = std::move(type),
            .ApplicationMethod = std::move(method),
            .Density = 9,
            .HapContent = hapContent};
}

/// Adds the use of so many pounds.
inline void Use(ShopRecords& shop, std::int16_t material, std::string period, double pounds) {
    shop.Usage.push_back({.Record = static_cast<std::int16_t>(shop.Usage.size() + 1),
                          .MaterialId = material,
                          .Period = std::move(period),
                          .Quantity = pounds,
                          .Unit = 2});
}

/// The same in each month of 2005.
inline void UseAllYear(ShopRecords& shop, std::int16_t material, double pounds) {
    for (int month = 1; month <= 12; ++month)
        Use(shop, material, std::to_string(month) + "/2005", pounds);
}
} // namespace mact
