#pragma once

#include "base/messages.h"
#include "materials/material_store.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace mact {

/// What the material editor makes of its entries. All texts are code-page text.

/// The values of one additional pollutant, as typed.
struct PollutantValues {
    std::string Content = "0"; ///< weight percent
    std::string Factor = "0";
    bool IsUsed = true; ///< false = its name is "-"
};
using SixPollutants = std::array<PollutantValues, 6>;

/// What the editor holds, as typed and selected.
struct TypedMaterial {
    std::string CustomId{};
    std::string Description{};
    std::optional<std::string> MaterialType{};      ///< empty = nothing selected
    std::optional<std::string> ApplicationMethod{}; ///< empty = nothing selected
    std::string Density{};                          ///< lb/gal
    std::string HapContent{};                       ///< weight percent
    bool HasEmissionFactor = false;                 ///< the user wants to give one
    std::string EmissionFactor{};
    std::string Comments{};
    bool CanHaveFiller = false; ///< the user may type one
    std::string Filler = "0";   ///< weight percent
    SixPollutants Pollutants{};
};

enum class MaterialField {
    CustomId,
    Description,
    MaterialType,
    ApplicationMethod,
    Density,
    HapContent,
    EmissionFactor,
    Filler
};

/// One message per failed check, in the order of the form. No range is checked.
FormErrors CheckMaterialEntry(const TypedMaterial& material);
/// The first field that fails; empty if none does.
std::optional<MaterialField> FirstFaultyField(const TypedMaterial& material);

/// A single message, however many values of used pollutants are not numbers.
FormErrors CheckPollutants(const SixPollutants& pollutants);

/// What is saved of entries that passed the checks.
MaterialEntry ToMaterialEntry(const TypedMaterial& material);

/// The six values joined by "|".
std::string JoinedContents(const SixPollutants& pollutants);
std::string JoinedFactors(const SixPollutants& pollutants);

/// Whether materials of this type take a filler: only the two filled resins, by their exact names, do.
bool TakesFiller(std::string_view materialType);
} // namespace mact
