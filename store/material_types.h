#pragma once

#include "base/app_context.h"
#include "store/data_folder.h"
#include "store/record_layout.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mact {

/// The material-type table that all companies share, in data/hapcontents.talvor: for each material type and
/// application method, the figures that a material is judged by (40 CFR 63, Subpart VVVV, Tables 2 and 3).
///
/// FindHapContents, GetMaterialTypes and GetApplicationMethods show a failure once (ShowError) and go on as
/// if the table were empty; the others return it.

struct HapContentRecord {
    std::string MaterialType{};
    double HapLimit = 0; ///< highest organic HAP content that complies, weight percent; -1 = no limit applies
    std::string ApplicationMethod{};
    double EfCoefficient = 0; ///< of the emission-factor equation: kg of HAP per Mg of material =
    double EfExponent = 0;    ///< coefficient * (HAP content in weight percent) ^ exponent
    double EmissionLimit = 0; ///< kg of HAP per Mg of material; the same for every method of a type
};
inline constexpr std::tuple HapContentFields{
    Text(&HapContentRecord::MaterialType, 100),      Double(&HapContentRecord::HapLimit),
    Text(&HapContentRecord::ApplicationMethod, 100), Double(&HapContentRecord::EfCoefficient),
    Double(&HapContentRecord::EfExponent),           Double(&HapContentRecord::EmissionLimit),
};
inline constexpr RecordLayout HapContentLayout{232, HapContentFields};
static_assert(HapContentLayout.PackedLength() == 232); // files of earlier versions depend on it

/// A filter that is left out matches everything. Texts are compared trimmed and ignoring case.
struct HapContentFilter {
    std::optional<std::string> MaterialType{};
    std::optional<std::string> ApplicationMethod{};
};

/// The row's HAP limit in weight percent; empty if no limit applies.
std::optional<double> LimitOf(const HapContentRecord& row);

/// Writes the 29 default rows into slots 1 to 29; slots beyond them stay.
Done CreateDefaultHapContents(const DataFiles& data);

/// The rows that pass, in file order.
Result<std::vector<HapContentRecord>> ReadHapContents(const DataFiles& data,
                                                      const HapContentFilter& filter = {});

/// Fills `results` in file order and returns true; empties it and returns false if nothing matches.
bool FindHapContents(AppContext& app, const HapContentFilter& filter, std::vector<HapContentRecord>& results);

/// The trimmed names in file order. With `isDistinct`, skips a name that occurs, case included, anywhere in
/// the names taken so far (strung together, each with "|" in front).
void GetMaterialTypes(AppContext& app, std::vector<std::string>& names, bool isDistinct);
void GetApplicationMethods(AppContext& app, std::vector<std::string>& methods, bool isDistinct,
                           const std::optional<std::string>& materialType = {});

/// Numbers pairs of type and method from 0 in the order in which they are added. Pairs that differ only in
/// letter case or surrounding spaces are one.
class TypeMethodPairs {
public:
    std::size_t Add(std::string_view materialType, std::string_view applicationMethod);
    /// Empty for a pair that was not added.
    std::optional<std::size_t> Find(std::string_view materialType, std::string_view applicationMethod) const;
    bool IsEmpty() const { return m_numbers.empty(); }

private:
    struct Less {
        using is_transparent = void; // looks up views without copying them
        using Views = std::pair<std::string_view, std::string_view>;
        bool operator()(const Views& left, const Views& right) const;
    };
    std::map<std::pair<std::string, std::string>, std::size_t, Less> m_numbers;
};

/// The distinct types, as GetMaterialTypes lists them, of rows already read.
std::vector<std::string> DistinctMaterialTypes(const std::vector<HapContentRecord>& rows);
} // namespace mact
