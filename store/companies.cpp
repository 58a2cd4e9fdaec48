#include "store/companies.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "base/settings.h"
#include "base/text.h"
#include "store/data_folder.h"
#include "store/record_file.h"

namespace mact {
namespace {

bool OccursWithin(const std::string& field, const std::string& filterText) {
    return UpperCase(filterText).find(ComparisonKey(field)) != std::string::npos;
}

bool Passes(const CompanyFilter& filter, const CompanyRecord& company) {
    if (filter.CompanyId && company.CompanyId != *filter.CompanyId) return false;
    if (filter.CompanyName && !OccursWithin(company.CompanyName, *filter.CompanyName)) return false;
    if (filter.CompanyLocation && !OccursWithin(company.CompanyLocation, *filter.CompanyLocation))
        return false;
    return company.Active;
}

Result<std::vector<CompanyRecord>> ReadCompanies(AppContext& app, const CompanyFilter& filter) {
    Result<RecordFile> file =
        RecordFile::OpenForReading(app.Files, CompaniesFile(app), CompanyLayout.SlotLength());
    if (!file) return file.error();
    std::vector<CompanyRecord> found;
    const Done read = ForEachRecord<CompanyLayout>(*file, [&](const CompanyRecord& company) {
        if (Passes(filter, company)) found.push_back(company);
    });
    if (!read) return read.error();
    return found;
}

/// The number of the company that was written.
Result<std::int16_t> WriteCompany(AppContext& app, const CompanyRecord& company) {
    Result<RecordFile> file =
        RecordFile::OpenForWriting(app.Files, CompaniesFile(app), CompanyLayout.SlotLength());
    if (!file) return file.error();
    return WriteRecord(*file, CompanyLayout, company, &CompanyRecord::CompanyId);
}

} // namespace

bool FindCompanies(AppContext& app, const CompanyFilter& filter, std::vector<CompanyRecord>& results) {
    results.clear();
    Result<std::vector<CompanyRecord>> found = ReadCompanies(app, filter);
    if (!found) {
        ShowError(app, found.error());
        return false;
    }
    results = std::move(*found);
    return !results.empty();
}

std::int16_t SaveCompany(AppContext& app, const std::string& name, const std::string& location,
                         std::optional<std::int16_t> companyId) {
    const Result<std::int16_t> written = WriteCompany(
        app, {.CompanyId = companyId.value_or(0), .CompanyName = name, .CompanyLocation = location});
    if (!written) ShowError(app, written.error());
    return 0;
}

Failed AddNewCompany(AppContext& app, const std::string& name, const std::string& location,
                     std::int16_t& companyId) {
    const Result<std::int16_t> written =
        WriteCompany(app, {.CompanyName = name, .CompanyLocation = location});
    if (!written) {
        ShowError(app, written.error());
        return true;
    }
    companyId = *written;
    return false;
}

void FillCompanyList(ListLines& list, const std::vector<CompanyRecord>& records) {
    list.clear();
    for (const CompanyRecord& company : records) {
        if (!company.Active) continue;
        std::string line(Trim(company.CompanyName));
        line += " (";
        line += Trim(company.CompanyLocation);
        line += ')';
        list.push_back({line, company.CompanyId});
    }
}

void MakeCompanyCurrent(AppContext& app, const CompanyRecord& company) {
    app.CurrentCompanyId = company.CompanyId;
    app.CurrentCompanyName = Trim(company.CompanyName);
    app.CurrentCompanyLocation = Trim(company.CompanyLocation);
}

void SelectCompany(AppContext& app, const CompanyRecord& company) {
    MakeCompanyCurrent(app, company);
    const Done written =
        app.Settings.Write(Settings::Company, Settings::Default, std::to_string(company.CompanyId));
    if (!written) ShowError(app, written.error());
}

Done RestoreCompany(AppContext& app) {
    const std::string remembered = app.Settings.Read(Settings::Company, Settings::Default);
    if (remembered.empty()) return Success();
    const std::optional<std::int16_t> companyId = ParseInt16(remembered);
    if (!companyId)
        return Failure{
            "Cannot restore the company that was selected last time: the setting COMPANY/DEFAULT holds \"" +
            remembered + "\", which is not the number of a company."};
    std::vector<CompanyRecord> found;
    if (FindCompanies(app, {.CompanyId = *companyId}, found)) MakeCompanyCurrent(app, found.front());
    return Success();
}

} // namespace mact
