#pragma once

#include "base/result.h"
#include "store/data_folder.h"

#include <string>
#include <vector>

namespace mact {

/// What is wrong with the company's materials and usage files themselves, so that records may be missing from
/// every figure: a length that is no whole number of records, a record in a place not its own, one marked as
/// neither live nor deleted, a change that cannot be taken back. In the words of the data check, a line each,
/// UTF-8; of many lines the first few and how many more there are. Creates no file and locks none.
Result<std::vector<std::string>> FindFileDamage(const DataFiles& data);
} // namespace mact
