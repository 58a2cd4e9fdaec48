#pragma once

#include "base/app_context.h"

#include <filesystem>

namespace mact {

/// Where the data files are. The shared ones serve every company; the others belong to the current company,
/// whose identifier begins their names.

std::filesystem::path DataFolder(const AppContext& app);

std::filesystem::path HapContentsFile(const AppContext& app);
std::filesystem::path CompaniesFile(const AppContext& app);

std::filesystem::path MaterialsFile(const AppContext& app);
std::filesystem::path UsageFile(const AppContext& app);
std::filesystem::path AdditionalNamesFile(const AppContext& app);

} // namespace mact
