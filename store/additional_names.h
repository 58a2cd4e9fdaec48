#pragma once

#include "base/app_context.h"
#include "store/data_folder.h"

#include <array>
#include <string>
#include <string_view>

namespace mact {

/// The names of the six additional pollutants that a company tracks, in data/<company>_additional.talvor: one
/// line, the six names joined by "|". A name of "-" is not in use.

inline constexpr std::string_view UnusedNames = "-|-|-|-|-|-";
/// Shown when the user leaves a name empty.
inline constexpr std::string_view NameIsEmpty =
    "You can not leave any of the pollutant name empty.\r\n"
    "If you dont want to use all pollutants please use '-' as their name to make them disable."; // sic
using PollutantNames = std::array<std::string, 6>;

/// Reads the current company's names into `app.AdditionalNames`; a missing file is created with six unused
/// ones. Of the file's comma-separated values only the last is taken, so that of names with a comma only what
/// follows the last comma survives. If the file cannot be read, the names stay as they were.
Done ReadAdditionalNames(AppContext& app);

/// The same, but shows a failure (ShowError).
void LoadAdditionalNames(AppContext& app);

/// Writes the names as given, for the next load; the context keeps those it has.
Done SaveAdditionalNames(const DataFiles& data, const PollutantNames& names);

/// What the next load would make of the names, in a sentence or two; empty if it is the same six names.
/// Blanks around a name do not count. UTF-8.
std::string WhatIsReadBack(const PollutantNames& names);

/// Whether the names are exactly six.
bool AreSix(std::string_view names);

/// The six names; any other number of names counts as six "-".
PollutantNames SplitAdditionalNames(std::string_view names);

bool IsUsedName(std::string_view name);

/// The last value of comma-separated text. A quoted value is all that is between its quotes; an unquoted one
/// is trimmed. Text between a closing quote and the next comma or line end is dropped.
std::string_view LastCommaSeparatedValue(std::string_view text);
} // namespace mact
