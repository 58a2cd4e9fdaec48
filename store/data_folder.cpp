#include "store/data_folder.h"

#include <string>

namespace mact {
namespace {

std::filesystem::path CompanyFile(const AppContext& app, std::string_view name) {
    return DataFolder(app) / (std::to_string(app.CurrentCompanyId) + "_" + std::string(name));
}

} // namespace

std::filesystem::path DataFolder(const AppContext& app) {
    return app.ProgramFolder / "data";
}

std::filesystem::path HapContentsFile(const AppContext& app) {
    return DataFolder(app) / "hapcontents.talvor";
}
std::filesystem::path CompaniesFile(const AppContext& app) {
    return DataFolder(app) / "companies.talvor";
}

std::filesystem::path MaterialsFile(const AppContext& app) {
    return CompanyFile(app, "materials.talvor");
}
std::filesystem::path UsageFile(const AppContext& app) {
    return CompanyFile(app, "usage.talvor");
}
std::filesystem::path AdditionalNamesFile(const AppContext& app) {
    return CompanyFile(app, "additional.talvor");
}

} // namespace mact
