#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace mact {

/// A shop made up from a seed, with numbers as whole multiples of decimal fractions, so that what follows
/// from them can be worked out exactly.
struct GeneratedMaterial {
    std::string CustomId{};
    std::size_t Type = 0; ///< in DefaultTypes
    int Density = 0;      ///< hundredths of lb/gal
    int HapContent = 0;   ///< hundredths of a percent
    int Filler = 0;       ///< percent
};
struct GeneratedUse {
    std::size_t Material = 0;
    int Year = 0;
    int Month = 0;
    std::int64_t Quantity = 0; ///< thousandths
    bool IsInMgal = false;
};
struct GeneratedShop {
    std::vector<GeneratedMaterial> Materials{};
    std::vector<GeneratedUse> Usage{};

    /// The lines of import files.
    std::vector<std::string> MaterialLines() const;
    std::vector<std::string> UsageLines() const;
};
GeneratedShop GenerateShop(unsigned seed);

/// What the rule says of a type and method of the default table.
struct DefaultType {
    const char* MaterialType;
    const char* Method;
    const char* Row;       ///< of Table 2; empty = none
    const char* Operation; ///< empty = closed molding
    bool IsPlain;          ///< no vacuum bagging
    bool IsFilled;
    double Coefficient;
    double Exponent;
    double EmissionLimit; ///< kg/Mg
};
const std::vector<DefaultType>& DefaultTypes();
} // namespace mact
