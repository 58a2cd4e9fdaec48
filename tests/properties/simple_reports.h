#pragma once

#include "materials/material_record.h"
#include "store/material_types.h"
#include "usage/usage_record.h"

#include <array>
#include <string>
#include <vector>

namespace mact {

/// The five reports again, calculated plainly and slowly, sharing nothing with the program but the records:
/// what the cells of each page contain.

/// The files of a company, with every record.
struct ShopFiles {
    std::vector<HapContentRecord> Types{};
    std::vector<MaterialRecord> Materials{};
    std::vector<UsageRecord> Usage{};
    std::array<std::string, 6> Names{};
};

using Rows = std::vector<std::vector<std::string>>;

/// The rows below the header row; `months` are those of the report, as in 3/2005.
Rows CompliantRows(const ShopFiles& shop);
Rows CompliantRows(const ShopFiles& shop, const std::vector<std::string>& months);
Rows WeightedAverageRows(const ShopFiles& shop, const std::vector<std::string>& months);
Rows EmissionAverageRows(const ShopFiles& shop, const std::vector<std::string>& months);
Rows AdditionalUsageRows(const ShopFiles& shop, const std::vector<std::string>& months);
Rows AdditionalEmissionRows(const ShopFiles& shop, const std::vector<std::string>& months);

/// The rows of a page below its header row; the cells are without their tags.
Rows RowsOfPage(const std::string& page);
} // namespace mact
