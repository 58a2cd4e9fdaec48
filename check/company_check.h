#pragma once

#include "check/record_findings.h"
#include "store/data_folder.h"
#include "store/material_types.h"

#include <optional>
#include <vector>

namespace mact {

/// The checks of one company's files.

/// Which of a company's files there are.
struct CompanyFiles {
    bool HasMaterials = false;
    bool HasUsage = false;
    bool HasNames = false;
};
/// `data` is the company's. `types` is the material-type table; empty where there is none to compare with.
/// Adds a Failure for each file that cannot be read.
void CheckCompany(const DataFiles& data, const CompanyFiles& files,
                  const std::optional<TypeMethodPairs>& types, const FindingTaker& take,
                  std::vector<Failure>& failures);
} // namespace mact
