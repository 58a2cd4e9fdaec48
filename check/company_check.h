#pragma once

#include "check/record_findings.h"

#include <optional>
#include <string>
#include <unordered_set>

namespace mact {

/// The checks of one company's files.

/// The joined names of the material-type table; empty where there is no table to compare with.
using TypesAndMethods = std::optional<std::unordered_set<std::string>>;
/// A name in the table cannot be told from one in a material but by this key.
std::string TypeAndMethodKey(std::string_view materialType, std::string_view applicationMethod);

/// Which of a company's files there are.
struct CompanyFiles {
    std::int16_t CompanyId = 0;
    bool HasMaterials = false;
    bool HasUsage = false;
    bool HasNames = false;
};
/// Shows the failure of each file that cannot be read.
void CheckCompany(AppContext& app, const CompanyFiles& company, const TypesAndMethods& types,
                  const FindingTaker& take);

} // namespace mact
