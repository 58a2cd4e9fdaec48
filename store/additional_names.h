#pragma once

#include "base/app_context.h"
#include "store/data_folder.h"

#include <array>
#include <string>
#include <string_view>

namespace mact {

/// The names of the six additional pollutants that a company tracks, in data/<company>_additional.talvor: one
/// line, the six names joined by "|". A name "-" is not in use.

inline constexpr std::string_view UnusedNames = "-|-|-|-|-|-";
/// What the user is told who leaves one of them empty.
inline constexpr std::string_view NameIsEmpty =
    "You can not leave any of the pollutant name empty.\r\n"
    "If you dont want to use all pollutants please use '-' as their name to make them disable."; // sic
using PollutantNames = std::array<std::string, 6>;

/// Reads the current company's names into `app.AdditionalNames`; a missing file is created with six unused
/// ones. The file is read as comma-separated values, of which the last one counts: of names that contain a
/// comma only what follows the last comma survives. Where the file cannot be read the names are as before.
Done ReadAdditionalNames(AppContext& app);

/// The same, with a failure shown (ShowError).
void LoadAdditionalNames(AppContext& app);

/// Writes the names as they stand, for the next load; those in the context stay.
Done SaveAdditionalNames(const DataFiles& data, const PollutantNames& names);

/// Six names; any other number of them counts as six "-".
PollutantNames SplitAdditionalNames(std::string_view names);

bool IsUsedName(std::string_view name);

/// The last value of comma-separated text: quoted values keep what stands between their quotes, unquoted ones
/// lose the spaces around them. Text between a closing quote and the next comma or line end is dropped.
std::string LastCommaSeparatedValue(std::string_view text);
} // namespace mact
