#include "materials/material_entry.h"

#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_texts.h"

#include <algorithm>
#include <vector>

namespace mact {
namespace {

struct Fault {
    MaterialField Field;
    std::string_view Message;
};

bool IsEmpty(std::string_view text) {
    return Trim(text).empty();
}

/// In the order of the form, for the messages; the first fault also decides which field gets the focus.
std::vector<Fault> FaultsOf(const TypedMaterial& material) {
    struct Check {
        bool IsFailed;
        Fault Report;
    };
    // These two are checked only if the user can enter them.
    const bool hasBadFactor = material.HasEmissionFactor && !IsNumeric(Trim(material.EmissionFactor));
    const bool hasBadFiller = material.CanHaveFiller && !IsNumeric(Trim(material.Filler));
    using enum MaterialField;
    const Check checks[] = {
        {IsEmpty(material.CustomId),            {CustomId, MaterialTexts::NeedsCustomId}                  },
        {IsEmpty(material.Description),         {Description, MaterialTexts::NeedsDescription}            },
        {!material.MaterialType,                {MaterialType, MaterialTexts::NeedsMaterialType}          },
        {!material.ApplicationMethod,           {ApplicationMethod, MaterialTexts::NeedsApplicationMethod}},
        {!IsNumeric(Trim(material.Density)),    {Density, MaterialTexts::DensityNotNumeric}               },
        {!IsNumeric(Trim(material.HapContent)), {HapContent, MaterialTexts::HapContentNotNumeric}         },
        {hasBadFactor,                          {EmissionFactor, MaterialTexts::EmissionFactorNotNumeric} },
        {hasBadFiller,                          {Filler, MaterialTexts::NeedsFiller}                      },
    };
    std::vector<Fault> faults;
    for (const Check& check : checks)
        if (check.IsFailed) faults.push_back(check.Report);
    return faults;
}

/// What is not checked may be no number: an emission factor that is not wanted is the empty text.
double NumberOrZero(std::string_view text) {
    return ParseNumber(Trim(text)).value_or(0);
}

std::string Joined(const SixPollutants& pollutants, std::string PollutantValues::*value) {
    std::string joined;
    for (const PollutantValues& pollutant : pollutants)
        joined += pollutant.*value + '|';
    joined.pop_back(); // the last "|"
    return joined;
}

} // namespace

FormErrors CheckMaterialEntry(const TypedMaterial& material) {
    FormErrors errors;
    for (const Fault& fault : FaultsOf(material))
        errors.Add(fault.Message);
    return errors;
}

std::optional<MaterialField> FirstFaultyField(const TypedMaterial& material) {
    const std::vector<Fault> faults = FaultsOf(material);
    if (faults.empty()) return {};
    return faults.front().Field;
}

FormErrors CheckPollutants(const SixPollutants& pollutants) {
    const bool hasFault = std::ranges::any_of(pollutants, [](const PollutantValues& pollutant) {
        return pollutant.IsUsed && (!IsNumeric(pollutant.Content) || !IsNumeric(pollutant.Factor));
    });
    FormErrors errors;
    if (hasFault) errors.Add(MaterialTexts::PollutantNotNumeric);
    return errors;
}

MaterialEntry ToMaterialEntry(const TypedMaterial& material) {
    return {.CustomId = std::string(Trim(material.CustomId)),
            .Description = std::string(Trim(material.Description)),
            .MaterialType = material.MaterialType.value_or(std::string()),
            .ApplicationMethod = material.ApplicationMethod.value_or(std::string()),
            .Density = NumberOrZero(material.Density),
            .HapContent = NumberOrZero(material.HapContent),
            .EmissionFactor = NumberOrZero(material.EmissionFactor),
            .Comments = std::string(Trim(material.Comments)),
            .Contents = JoinedContents(material.Pollutants),
            .Factors = JoinedFactors(material.Pollutants),
            .Filler = NumberOrZero(material.Filler)};
}

std::string JoinedContents(const SixPollutants& pollutants) {
    return Joined(pollutants, &PollutantValues::Content);
}

std::string JoinedFactors(const SixPollutants& pollutants) {
    return Joined(pollutants, &PollutantValues::Factor);
}

bool TakesFiller(std::string_view materialType) {
    return materialType == "Production resin (Filled)" || materialType == "Tooling resin (Filled)";
}
} // namespace mact
