#pragma once

#include "check/record_findings.h"
#include "store/data_folder.h"
#include "store/material_types.h"

#include <optional>
#include <vector>

namespace mact {

/// Which of a company's files exist.
struct CompanyFiles {
    bool HasMaterials = false;
    bool HasUsage = false;
    bool HasNames = false;
};
/// Checks the files of the company that `data` is for. `types` is the material-type table; empty if there is
/// none to check against. Adds a Failure for each file that cannot be read.
void CheckCompany(const DataFiles& data, const CompanyFiles& files,
                  const std::optional<TypeMethodPairs>& types, const FindingTaker& take,
                  std::vector<Failure>& failures);
} // namespace mact
