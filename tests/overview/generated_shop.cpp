#include "tests/overview/generated_shop.h"

#include "tests/support/random_data.h"

#include <set>

namespace mact {
namespace {

/// As in 12.05 for 1205 and 2 decimals.
std::string Decimal(std::int64_t number, int decimals) {
    std::string digits = std::to_string(number);
    const auto least = static_cast<std::size_t>(decimals) + 1;
    if (digits.size() < least) digits.insert(0, least - digits.size(), '0');
    return digits.insert(digits.size() - static_cast<std::size_t>(decimals), ".");
}

} // namespace

const std::vector<DefaultType>& DefaultTypes() {
    static const char* const vacuumAfter = "Spray (Vacuum bagging after roll-out)";
    static const char* const nonVacuum = "Non-spray (Vacuum bagging without roll-out)";
    static const std::vector<DefaultType> types = {
        {"Production resin",          "Spray",          "production resin, atomized",    "production resin",   true,  false, 0.014,
         2.425,                                                                                                                            46 },
        {"Production resin",          vacuumAfter,      "production resin, atomized",    "production resin",   false, false,
         0.01185,                                                                                                                   2.425, 46 },
        {"Production resin",          "Non-Spray",      "production resin, nonatomized", "production resin",   true,  false,
         0.014,                                                                                                                     2.275, 46 },
        {"Production resin",          nonVacuum,        "production resin, nonatomized", "production resin",   false, false,
         0.0076,                                                                                                                    2.275, 46 },
        {"Production resin",          "Closed Molding", "",                              "",                   true,  false, 0,     0,     46 },
        {"Pigmented production gel",  "All",            "pigmented gel coat",            "pigmented gel coat", true,  false, 0.445,
         1.675,                                                                                                                            159},
        {"Clear production gel coat", "All",            "clear gel coat",                "clear gel coat",     true,  false, 0.445, 1.675,
         291                                                                                                                                  },
        {"Tooling resin",             "Spray",          "tooling resin, atomized",       "tooling resin",      true,  false, 0.014, 2.425, 54 },
        {"Tooling resin",             "Non-Spray",      "tooling resin, nonatomized",    "tooling resin",      true,  false, 0.014,
         2.275,                                                                                                                            54 },
        {"Tooling gel coat",          "All",            "tooling gel coat",              "tooling gel coat",   true,  false, 0.445, 1.675, 214},
        {"Production resin (Filled)", "Non-Spray",      "",                              "production resin",   true,  true,  0.014, 2.275, 46 },
        {"Tooling resin (Filled)",    "Spray",          "",                              "tooling resin",      true,  true,  0.014, 2.425, 54 },
    };
    return types;
}

std::vector<std::string> GeneratedShop::MaterialLines() const {
    std::vector<std::string> lines;
    for (const GeneratedMaterial& material : Materials) {
        const DefaultType& type = DefaultTypes()[material.Type];
        std::string line = material.CustomId + "|of a made up shop|" + type.MaterialType + '|' + type.Method +
                           '|' + Decimal(material.Density, 2) + '|' + Decimal(material.HapContent, 2);
        for (int number = 0; number < 12; ++number)
            line += "|0";
        lines.push_back(line + '|' + std::to_string(material.Filler));
    }
    return lines;
}

std::vector<std::string> GeneratedShop::UsageLines() const {
    std::vector<std::string> lines;
    for (const GeneratedUse& use : Usage)
        lines.push_back(Materials[use.Material].CustomId + '|' + std::to_string(use.Month) + '|' +
                        std::to_string(use.Year) + '|' + Decimal(use.Quantity, 3) +
                        (use.IsInMgal ? "|mg" : "|lbs"));
    return lines;
}

GeneratedShop GenerateShop(unsigned seed) {
    RandomData random(seed);
    GeneratedShop shop;
    const int materials = random.Int(1, 12);
    for (int number = 1; number <= materials; ++number) {
        GeneratedMaterial material{.CustomId = "M-" + std::to_string(number)};
        material.Type = static_cast<std::size_t>(random.Int(0, static_cast<int>(DefaultTypes().size()) - 1));
        material.Density = random.Int(700, 1600);
        material.HapContent = random.Int(2500, 5200);
        if (DefaultTypes()[material.Type].IsFilled) material.Filler = random.Int(0, 40);
        shop.Materials.push_back(material);
    }
    for (std::size_t material = 0; material < shop.Materials.size(); ++material)
        for (int month = 0; month < 30; ++month) {
            if (random.OneIn(3)) continue; // not every month
            GeneratedUse use{.Material = material, .Year = 2004 + month / 12, .Month = month % 12 + 1};
            use.IsInMgal = random.OneIn(4);
            use.Quantity = use.IsInMgal ? random.Int(1, 2000) : random.Int(1, 20'000'000);
            if (random.OneIn(5)) use.Quantity = random.Int(0, 10'000);
            shop.Usage.push_back(use);
        }
    return shop;
}
} // namespace mact
