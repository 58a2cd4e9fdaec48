#pragma once

#include <string_view>

namespace mact {

/// Texts about materials that users see.
namespace MaterialTexts {

inline constexpr std::string_view MaterialIsUsed =
    "There are one or more usage records associated with this material.\r\n"
    "You can not delete this material untill you remove all usage records."; // sic

inline constexpr const char* NewCaption = "New Material";
inline constexpr const char* UpdateCaption = "Update Material";

inline constexpr std::string_view NeedsCustomId = "- You must provide Material ID.";
inline constexpr std::string_view NeedsDescription = "- You must provide Description for material.";
inline constexpr std::string_view NeedsMaterialType = "- You must select material type.";
inline constexpr std::string_view NeedsApplicationMethod = "- You must select application type."; // sic
inline constexpr std::string_view DensityNotNumeric = "- Density should be a numeric value.";
inline constexpr std::string_view HapContentNotNumeric =
    "- HAP Content limit should be a numeric value(%)."; // sic
inline constexpr std::string_view EmissionFactorNotNumeric =
    "- Emission factor should be a proper numeric value.";
inline constexpr std::string_view NeedsFiller = "- Your must specify filler for this resin."; // sic

inline constexpr std::string_view IdExists = "- Material with the same Id already exsists."; // sic
inline constexpr std::string_view MaterialNotFound = "- Material not found. Please reopen the list form.";

inline constexpr std::string_view PollutantNotNumeric =
    "- All the values for contents and emission factors should be valid numeric values.";
inline constexpr std::string_view AskToDefineNames =
    "You are using additional HAPs first time, you have to define the names first.\r\n"
    "Do you want to continue?";

// "Mnufacturers" is sic.
inline constexpr const char* AboutEmissionFactors =
    "Default emission factors are provided in the software from the MACT standards. Each state may require "
    "use of specified emission factors. Further, an individual plant or company may have completed testing "
    "to determine emission factors for specific operations and materials. Those data can be used in this "
    "calculation program, with an identifier to the source of the emission data. One such source of emission "
    "data for emissions from fiberglass boat manufacturing operations is contained in the National Marine "
    "Mnufacturers Association's \"Baseline Characterization of Emissions from Fiberglass Boat Manufacture,\" "
    "posted at the EPA's emission factor website";
inline constexpr const char* EmissionFactorAddress = "(URL: http://www.epa.gov/ttn/chief/)";

} // namespace MaterialTexts
} // namespace mact
