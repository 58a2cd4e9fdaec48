#pragma once

#include "base/app_context.h"
#include "base/failure.h"
#include "store/data_folder.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace mact {

/// Finds what the program would silently leave out or count wrongly. Changes and creates no files.

/// Takes one finding: a line of UTF-8 text with the file, the record if there is one, and what is wrong.
using FindingTaker = std::function<void(const std::string& line)>;

/// Checks the shared files and those of every company that has files in the data folder, current or not. Of a
/// deleted record only the place in the file and the mark as deleted are checked. Returns a Failure for each
/// file that cannot be read; the others are still checked.
[[nodiscard]] std::vector<Failure> CheckData(const AppContext& app, const FindingTaker& take);

/// The same for the files of these names in the data folder, leaving out the remembered company. The names
/// must be those by which the program opens the files.
[[nodiscard]] std::vector<Failure> CheckDataFiles(const DataFiles& data, const std::set<std::string>& names,
                                                  const FindingTaker& take);
} // namespace mact
