#include "check/data_check.h"

#include "base/numbers.h"
#include "base/settings.h"
#include "base/text.h"
#include "check/company_check.h"
#include "store/companies.h"
#include "store/data_folder.h"
#include "store/material_types.h"
#include "store/steady_reading.h"
#include "store/undo_file.h"

#include <algorithm>
#include <map>
#include <unordered_set>

namespace mact {
namespace {

using CompanyIds = std::unordered_set<std::int16_t>;

/// The pairs of the material-type table; empty if there is nothing to check materials against.
Result<std::optional<TypeMethodPairs>> CheckTable(const DataFiles& data, const std::set<std::string>& names,
                                                  const FindingTaker& take) {
    const std::string name(HapContentsName);
    const FileFindings findings(name, take);
    if (!names.contains(name)) {
        findings.Add("it does not exist");
        return std::optional<TypeMethodPairs>{};
    }
    TypeMethodPairs types;
    const Result<bool> checked =
        VisitCheckedRecords(data.Files, HapContentsFile(data), HapContentLayout, findings,
                            [&](std::int16_t record, const HapContentRecord& row) {
                                types.Add(row.MaterialType, row.ApplicationMethod);
                                findings.CheckFinite(record, "the HAP limit", row.HapLimit);
                                findings.CheckFinite(record, "the coefficient", row.EfCoefficient);
                                findings.CheckFinite(record, "the exponent", row.EfExponent);
                                findings.CheckFinite(record, "the emission limit", row.EmissionLimit);
                            });
    if (!checked) return checked.error();
    if (*checked && !types.IsEmpty()) return std::optional(types);
    if (*checked) findings.Add("it holds no material types"); // once, rather than for every material
    return std::optional<TypeMethodPairs>{};
}

/// The companies that can be selected; empty if there are too many to work with.
Result<std::optional<CompanyIds>> CheckCompanies(const DataFiles& data, const std::set<std::string>& names,
                                                 const FindingTaker& take) {
    CompanyIds companies;
    const std::string name(CompaniesName);
    if (!names.contains(name)) return std::optional(companies); // a new installation has none
    const FileFindings findings(name, take);
    const auto check = [&](std::int16_t record, const CompanyRecord& company) {
        findings.CheckNumber(record, company.CompanyId);
        if (company.Active) companies.insert(company.CompanyId);
    };
    const Result<bool> checked =
        VisitCheckedRecords(data.Files, CompaniesFile(data), CompanyLayout, findings, check);
    if (!checked) return checked.error();
    return *checked ? std::optional(companies) : std::nullopt;
}

/// Which companies have which files, by the companies' numbers.
std::map<std::int16_t, CompanyFiles> FilesOfCompanies(const std::set<std::string>& names) {
    std::map<std::int16_t, CompanyFiles> companies;
    for (const std::string& name : names) {
        const std::size_t end = std::min(name.find('_'), name.size());
        // The text has to be the program's own: it never opens 01_usage.talvor or 1.0_usage.talvor.
        const std::int16_t companyId = ParseInt16(name.substr(0, end)).value_or(0);
        if (companyId < 1 || name.substr(0, end) != std::to_string(companyId)) continue;
        const std::string kind = name.substr(end);
        const bool isMaterials = kind == MaterialsSuffix;
        const bool isUsage = kind == UsageSuffix;
        const bool isNames = kind == AdditionalNamesSuffix;
        if (!isMaterials && !isUsage && !isNames) continue;
        CompanyFiles& files = companies[companyId];
        files.HasMaterials |= isMaterials;
        files.HasUsage |= isUsage;
        files.HasNames |= isNames;
    }
    return companies;
}

Done CheckRememberedCompany(SettingsStore& settings, const std::optional<CompanyIds>& companies,
                            const FindingTaker& take) {
    const Result<std::string> remembered = settings.TryRead(Settings::Company, Settings::Default);
    if (!remembered) return remembered.error();
    if (remembered->empty() || !companies) return Success(); // none, or no list to look it up in
    const std::optional<std::int16_t> companyId = ParseInt16(*remembered);
    if (!companyId || !companies->contains(*companyId))
        FileFindings("settings", take)
            .Add("the remembered company " + Quoted(CodePageFromUtf8(*remembered)) + " does not exist");
    return Success();
}

/// The name by which the program opens a file: on Windows, names that differ only in case are the same file.
std::string NameToOpen(std::string name) {
#ifdef _WIN32
    std::ranges::transform(name, name.begin(), [](char character) {
        const bool isCapital = character >= 'A' && character <= 'Z';
        return static_cast<char>(isCapital ? character - 'A' + 'a' : character);
    });
#endif
    return name;
}

/// The names of everything in the data folder, as the program would open it.
Result<std::set<std::string>> NamesIn(const std::filesystem::path& folder) {
    std::set<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        names.insert(NameToOpen(PathText(entry->path().filename())));
    if (error) return Failure{"list the folder", folder, error.message()};
    return names;
}

/// What a check yields.
struct Checked {
    std::vector<Finding> Findings;
    std::vector<Failure> Failures;
    std::optional<CompanyIds> Companies; ///< that can be selected; empty if they are not known
};

Checked CheckOnce(const DataFiles& data, const std::set<std::string>& names) {
    Checked checked;
    const FindingTaker take = [&](const Finding& finding) { checked.Findings.push_back(finding); };
    // A shared file that cannot be read is one Failure; what depends on it is then not judged.
    const auto types = CheckTable(data, names, take);
    if (!types) checked.Failures.push_back(types.error());
    const auto companies = CheckCompanies(data, names, take);
    if (!companies) checked.Failures.push_back(companies.error());
    checked.Companies = companies ? *companies : std::nullopt;
    for (const auto& [companyId, files] : FilesOfCompanies(names)) {
        if (checked.Companies && !checked.Companies->contains(companyId))
            FileFindings(std::string(CompaniesName), take)
                .Add("company " + std::to_string(companyId) + ", which has data files, does not exist");
        CheckCompany({data.Files, data.Folder, companyId}, files, types ? *types : std::nullopt, take,
                     checked.Failures);
    }
    for (const std::string& name : names)
        if (name.find(PathText(SetAsideUndoFileOf({}))) != std::string::npos)
            FileFindings(name, take)
                .Add("a change that was cut off was not taken back, since the data file had changed "
                     "meanwhile; "
                     "compare that with a backup, then remove this file");
    return checked;
}

/// The companies that can be selected; empty if they are not known.
std::optional<CompanyIds> CheckAllFiles(const DataFiles& data, const std::set<std::string>& names,
                                        const FindingTaker& take, std::vector<Failure>& failures) {
    std::vector<std::filesystem::path> paths;
    for (const std::string& name : names)
        // One that does not open is a Failure of its own, and the others are still checked.
        if (name.ends_with(DataFileEnding) && data.Files.Open(data.Folder / name, OpenMode::Read))
            paths.push_back(data.Folder / name);
    const Result<Checked> checked =
        ReadSteadily(data.Files, paths, [&]() -> Result<Checked> { return CheckOnce(data, names); });
    if (!checked) {
        failures.push_back(checked.error());
        return std::nullopt;
    }
    for (const Finding& finding : checked->Findings)
        take(finding);
    failures = checked->Failures;
    return checked->Companies;
}

FindingTaker AsLines(const FindingLineTaker& take) {
    return [&take](const Finding& finding) { take(LineOf(finding)); };
}

} // namespace

std::string LineOf(const Finding& finding) {
    const std::string record = finding.Record == 0 ? "" : ", record " + std::to_string(finding.Record);
    return finding.File + record + ": " + finding.What;
}

std::vector<Failure> CheckDataFiles(const DataFiles& data, const std::set<std::string>& names,
                                    const FindingLineTaker& take) {
    std::vector<Failure> failures;
    CheckAllFiles(data, names, AsLines(take), failures);
    return failures;
}

std::vector<Failure> CheckData(const AppContext& app, const FindingTaker& take) {
    const std::filesystem::path folder = DataFolder(app);
    std::error_code error;
    if (!std::filesystem::exists(folder, error) && !error) {
        take({.File = "data", .What = "the folder \"" + PathText(folder) + "\" does not exist"});
        return {};
    }
    const Result<std::set<std::string>> names = NamesIn(folder);
    if (!names) return {names.error()};
    std::vector<Failure> failures;
    const std::optional<CompanyIds> companies = CheckAllFiles(app, *names, take, failures);
    const Done checked = CheckRememberedCompany(app.Settings, companies, take);
    if (!checked) failures.push_back(checked.error());
    return failures;
}

std::vector<Failure> CheckData(const AppContext& app, const FindingLineTaker& take) {
    return CheckData(app, AsLines(take));
}
} // namespace mact
