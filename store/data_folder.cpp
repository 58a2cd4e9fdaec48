#include "store/data_folder.h"

namespace mact {
namespace {

std::filesystem::path CompanyFile(const DataFiles& data, std::string_view suffix) {
    return data.Folder / (std::to_string(data.CompanyId) + std::string(suffix));
}

} // namespace

std::filesystem::path DataFolder(const AppContext& app) {
    return app.ProgramFolder / "data";
}

std::filesystem::path HapContentsFile(const DataFiles& data) {
    return data.Folder / HapContentsName;
}
std::filesystem::path CompaniesFile(const DataFiles& data) {
    return data.Folder / CompaniesName;
}
std::filesystem::path MaterialsFile(const DataFiles& data) {
    return CompanyFile(data, MaterialsSuffix);
}
std::filesystem::path UsageFile(const DataFiles& data) {
    return CompanyFile(data, UsageSuffix);
}
std::filesystem::path AdditionalNamesFile(const DataFiles& data) {
    return CompanyFile(data, AdditionalNamesSuffix);
}
std::filesystem::path OverviewOptionsFile(const DataFiles& data) {
    return CompanyFile(data, OverviewOptionsSuffix);
}
} // namespace mact
