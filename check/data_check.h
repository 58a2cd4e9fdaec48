#pragma once

#include "base/app_context.h"
#include "base/failure.h"
#include "store/data_folder.h"

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace mact {

/// Finds what the program would silently leave out or count wrongly. Changes and creates no files.

/// One thing that is wrong. All texts are UTF-8.
struct Finding {
    std::string File{};      ///< its name in the data folder; "data" and "settings" for these two
    std::int16_t Record = 0; ///< 0 = none of them in particular
    std::string What{};
};
/// 1_usage.talvor, record 2: its material 7 does not exist
std::string LineOf(const Finding& finding);

using FindingTaker = std::function<void(const Finding& finding)>;
using FindingLineTaker = std::function<void(const std::string& line)>; ///< takes the LineOf a finding

/// Checks the shared files and those of every company that has files in the data folder, current or not. Of a
/// deleted record only the place in the file and the mark as deleted are checked. Returns a Failure for each
/// file that cannot be read; the others are still checked.
[[nodiscard]] std::vector<Failure> CheckData(const AppContext& app, const FindingTaker& take);
[[nodiscard]] std::vector<Failure> CheckData(const AppContext& app, const FindingLineTaker& take);

/// The same for the files of these names in the data folder, leaving out the remembered company. The names
/// must be those by which the program opens the files.
[[nodiscard]] std::vector<Failure> CheckDataFiles(const DataFiles& data, const std::set<std::string>& names,
                                                  const FindingLineTaker& take);
} // namespace mact
