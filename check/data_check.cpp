#include "check/data_check.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "base/settings.h"
#include "base/text.h"
#include "check/company_check.h"
#include "store/companies.h"
#include "store/data_folder.h"
#include "store/material_types.h"

#include <algorithm>
#include <map>

namespace mact {
namespace {

constexpr const char* TableName = "hapcontents.talvor";
constexpr const char* CompaniesName = "companies.talvor";

using CompanyIds = std::unordered_set<std::int16_t>;

TypesAndMethods CheckTable(AppContext& app, const std::set<std::string>& names, const FindingTaker& take) {
    const FileFindings findings(TableName, take);
    if (!names.contains(TableName)) {
        findings.Add("it does not exist");
        return {};
    }
    std::unordered_set<std::string> types;
    const Result<bool> checked =
        VisitCheckedSlots(app.Files, HapContentsFile(app), HapContentLayout, findings,
                          [&](std::int16_t record, const HapContentRecord& row) {
                              types.insert(TypeAndMethodKey(row.MaterialType, row.ApplicationMethod));
                              findings.CheckFinite(record, "the HAP limit", row.HapLimit);
                              findings.CheckFinite(record, "the coefficient", row.EfCoefficient);
                              findings.CheckFinite(record, "the exponent", row.EfExponent);
                              findings.CheckFinite(record, "the emission limit", row.EmissionLimit);
                          });
    if (!checked) ShowError(app, checked.error());
    if (!checked || !*checked) return {};
    if (!types.empty()) return types;
    findings.Add("it holds no material types"); // once, and not for every material
    return {};
}

/// The companies that can be selected; empty where that cannot be told.
std::optional<CompanyIds> CheckCompanies(AppContext& app, const std::set<std::string>& names,
                                         const FindingTaker& take) {
    CompanyIds companies;
    if (!names.contains(CompaniesName)) return companies; // a new installation has none
    const FileFindings findings(CompaniesName, take);
    const Result<bool> checked = VisitCheckedSlots(app.Files, CompaniesFile(app), CompanyLayout, findings,
                                                   [&](std::int16_t record, const CompanyRecord& company) {
                                                       findings.CheckNumber(record, company.CompanyId);
                                                       if (company.Active)
                                                           companies.insert(company.CompanyId);
                                                   });
    if (!checked) ShowError(app, checked.error());
    if (!checked || !*checked) return {};
    return companies;
}

/// Which files of which companies there are, by the companies' numbers.
std::map<std::int16_t, CompanyFiles> FilesOfCompanies(const std::set<std::string>& names) {
    std::map<std::int16_t, CompanyFiles> companies;
    for (const std::string& name : names) {
        const std::size_t end = std::min(name.find('_'), name.size());
        const std::int16_t companyId = ParseInt16(name.substr(0, end)).value_or(0);
        if (companyId < 1 || name.substr(0, end) != std::to_string(companyId)) continue;
        const std::string kind = name.substr(end);
        const bool isMaterials = kind == "_materials.talvor";
        const bool isUsage = kind == "_usage.talvor";
        const bool isNames = kind == "_additional.talvor";
        if (!isMaterials && !isUsage && !isNames) continue;
        CompanyFiles& files = companies[companyId];
        files.CompanyId = companyId;
        files.HasMaterials |= isMaterials;
        files.HasUsage |= isUsage;
        files.HasNames |= isNames;
    }
    return companies;
}

void CheckRememberedCompany(AppContext& app, const std::optional<CompanyIds>& companies,
                            const FindingTaker& take) {
    const std::string remembered = app.Settings.Read(Settings::Company, Settings::Default);
    if (remembered.empty() || !companies) return;
    const std::optional<std::int16_t> companyId = ParseInt16(remembered);
    if (!companyId || !companies->contains(*companyId))
        FileFindings("settings", take)
            .Add("the remembered company " + Quoted(CodePageFromUtf8(remembered)) + " does not exist");
}

/// The name by which the program opens a file. On Windows letter case does not tell files apart.
std::string NameToOpen(std::string name) {
#ifdef _WIN32
    std::ranges::transform(name, name.begin(), [](char character) {
        const bool isCapital = character >= 'A' && character <= 'Z';
        return static_cast<char>(isCapital ? character - 'A' + 'a' : character);
    });
#endif
    return name;
}

/// The names of what lies in the data folder, as the program opens it.
Result<std::set<std::string>> NamesIn(const std::filesystem::path& folder) {
    std::set<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        names.insert(NameToOpen(PathText(entry->path().filename())));
    if (error)
        return Failure{"Cannot list the folder \"" + PathText(folder) + "\": " + error.message() + '.'};
    return names;
}

/// The companies that can be selected, as CheckCompanies gives them.
std::optional<CompanyIds> CheckAllFiles(AppContext& app, const std::set<std::string>& names,
                                        const FindingTaker& take) {
    const TypesAndMethods types = CheckTable(app, names, take);
    std::optional<CompanyIds> companies = CheckCompanies(app, names, take);
    for (const auto& [companyId, files] : FilesOfCompanies(names)) {
        if (companies && !companies->contains(companyId))
            FileFindings(CompaniesName, take)
                .Add("company " + std::to_string(companyId) + ", which has data files, does not exist");
        CheckCompany(app, files, types, take);
    }
    return companies;
}

} // namespace

void CheckDataFiles(AppContext& app, const std::set<std::string>& names, const FindingTaker& take) {
    CheckAllFiles(app, names, take);
}

void CheckData(AppContext& app, const FindingTaker& take) {
    std::error_code error;
    if (!std::filesystem::exists(DataFolder(app), error) && !error) {
        take("data: the folder \"" + PathText(DataFolder(app)) + "\" does not exist");
        return;
    }
    const Result<std::set<std::string>> names = NamesIn(DataFolder(app));
    if (!names) {
        ShowError(app, names.error());
        return;
    }
    CheckRememberedCompany(app, CheckAllFiles(app, *names, take), take);
}

} // namespace mact
