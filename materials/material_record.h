#pragma once

#include "store/record_layout.h"

#include <array>
#include <cstdint>
#include <string>

namespace mact {

/// A resin or gel coat.
struct MaterialRecord {
    std::int16_t MaterialId = 0;     ///< the record's own number; 0 = not stored yet
    std::string CustomId{};          ///< the user's Material ID
    std::string MaterialType{};      ///< a type name of the material-type table
    std::string ApplicationMethod{}; ///< a method name of the material-type table
    double Density = 0;              ///< lb/gal
    double HapContent = 0;           ///< organic HAP, weight percent
    double EmissionFactor = 0;       ///< alternate emission factor; 0 = none given
    std::string Comments{};          ///< the basis of the alternate emission factor
    std::string Description{};
    bool Active = true; ///< false = deleted; the slot stays
    // Pair i belongs to additional pollutant name i.
    double Content1 = 0; ///< weight percent
    double Factor1 = 0;  ///< percent of the content that is emitted
    double Content2 = 0;
    double Factor2 = 0;
    double Content3 = 0;
    double Factor3 = 0;
    double Content4 = 0;
    double Factor4 = 0;
    double Content5 = 0;
    double Factor5 = 0;
    double Content6 = 0;
    double Factor6 = 0;
    double Filler = 0; ///< weight percent; only filled resins have one
};
inline constexpr std::tuple MaterialFields{
    Int16(&MaterialRecord::MaterialId),       Text(&MaterialRecord::CustomId, 100),
    Text(&MaterialRecord::MaterialType, 100), Text(&MaterialRecord::ApplicationMethod, 100),
    Double(&MaterialRecord::Density),         Double(&MaterialRecord::HapContent),
    Double(&MaterialRecord::EmissionFactor),  Text(&MaterialRecord::Comments, 255),
    Text(&MaterialRecord::Description, 100),  Flag(&MaterialRecord::Active),
    Double(&MaterialRecord::Content1),        Double(&MaterialRecord::Factor1),
    Double(&MaterialRecord::Content2),        Double(&MaterialRecord::Factor2),
    Double(&MaterialRecord::Content3),        Double(&MaterialRecord::Factor3),
    Double(&MaterialRecord::Content4),        Double(&MaterialRecord::Factor4),
    Double(&MaterialRecord::Content5),        Double(&MaterialRecord::Factor5),
    Double(&MaterialRecord::Content6),        Double(&MaterialRecord::Factor6),
    Double(&MaterialRecord::Filler),
};
inline constexpr RecordLayout MaterialLayout{1444, MaterialFields};
static_assert(MaterialLayout.PackedLength() == 787); // files of earlier versions depend on it

/// The additional pollutants' numbers as arrays; element i belongs to name i.
inline constexpr std::array<double MaterialRecord::*, 6> PollutantContents = {
    &MaterialRecord::Content1, &MaterialRecord::Content2, &MaterialRecord::Content3,
    &MaterialRecord::Content4, &MaterialRecord::Content5, &MaterialRecord::Content6};
inline constexpr std::array<double MaterialRecord::*, 6> PollutantFactors = {
    &MaterialRecord::Factor1, &MaterialRecord::Factor2, &MaterialRecord::Factor3,
    &MaterialRecord::Factor4, &MaterialRecord::Factor5, &MaterialRecord::Factor6};
} // namespace mact
