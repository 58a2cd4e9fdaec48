#pragma once

#include "base/app_context.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace mact {

/// Where the data files are. Two are shared; the others belong to one company each and begin with its number.

inline constexpr std::string_view HapContentsName = "hapcontents.talvor";
inline constexpr std::string_view CompaniesName = "companies.talvor";
inline constexpr std::string_view DataFileEnding = ".talvor"; // of all but the overview's options
// These follow the company's number.
inline constexpr std::string_view MaterialsSuffix = "_materials.talvor";
inline constexpr std::string_view UsageSuffix = "_usage.talvor";
inline constexpr std::string_view AdditionalNamesSuffix = "_additional.talvor";
inline constexpr std::string_view OverviewOptionsSuffix = "_overview.txt";

std::filesystem::path DataFolder(const AppContext& app);

/// All that a store needs of the context, and so all that it can touch.
struct DataFiles {
    DataFiles(FileAccess& files, std::filesystem::path folder, std::int16_t companyId)
        : Files(files), Folder(std::move(folder)), CompanyId(companyId) {}
    /// Those of the current company. Not explicit, so that callers can pass the context.
    DataFiles(const AppContext& app) : DataFiles(app.Files, DataFolder(app), app.CurrentCompanyId) {}

    FileAccess& Files;
    std::filesystem::path Folder;
    std::int16_t CompanyId;
};

std::filesystem::path HapContentsFile(const DataFiles& data);
std::filesystem::path CompaniesFile(const DataFiles& data);
std::filesystem::path MaterialsFile(const DataFiles& data);
std::filesystem::path UsageFile(const DataFiles& data);
std::filesystem::path AdditionalNamesFile(const DataFiles& data);
std::filesystem::path OverviewOptionsFile(const DataFiles& data);
} // namespace mact
