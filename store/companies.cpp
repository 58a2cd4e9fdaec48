#include "store/companies.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "base/settings.h"
#include "base/text.h"
#include "store/data_folder.h"
#include "store/record_file.h"
#include "store/record_history.h"
#include "store/steady_reading.h"

namespace mact {
namespace {

/// This way round on purpose: the record's name is looked for in the filter.
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

constexpr RecordMembers<CompanyRecord> Members{"company", &CompanyRecord::CompanyId, &CompanyRecord::Active};

/// Deleted ones too: their numbers lead to this company. Also if that is unclear.
bool HasRecords(const DataFiles& data) {
    const auto isEmpty = [](const std::filesystem::path& path) {
        std::error_code error;
        const auto length = std::filesystem::file_size(path, error);
        return error ? error == std::errc::no_such_file_or_directory : length == 0;
    };
    return !isEmpty(MaterialsFile(data)) || !isEmpty(UsageFile(data));
}

Result<StoredRecord<CompanyRecord>> WriteCompany(const DataFiles& data, const CompanyRecord& company,
                                                 bool keepsBefore) {
    Result<RecordFile> file =
        RecordFile::OpenForWriting(data.Files, CompaniesFile(data), CompanyLayout.SlotLength());
    if (!file) return file.error();
    return WriteRecord(*file, CompanyLayout, company, &CompanyRecord::CompanyId, keepsBefore);
}

} // namespace

Result<std::vector<CompanyRecord>> ReadCompanies(const DataFiles& data, const CompanyFilter& filter) {
    return ReadRecordsSteadily(data.Files, CompaniesFile(data), CompanyLayout,
                               [&](const CompanyRecord& company) { return Passes(filter, company); });
}

bool FindCompanies(AppContext& app, const CompanyFilter& filter, std::vector<CompanyRecord>& results) {
    results.clear();
    Result<std::vector<CompanyRecord>> found = ReadCompanies(app, filter);
    if (ShowFailure(app, found)) return false;
    results = std::move(*found);
    return !results.empty();
}

Done StoreCompany(AppContext& app, const CompanyRecord& company) {
    const Result<StoredRecord<CompanyRecord>> stored = WriteCompany(app, company, app.Changes != nullptr);
    if (!stored) return stored.error();
    NoteChanges<CompanyRecord>(app, {.Kind = HistoryKind::Companies},
                               (stored->IsNew ? "add " : "edit ") +
                                   Utf8FromCodePage(Trim(stored->Record.CompanyName)),
                               {*stored}, Members, ChangeCompanies);
    return Success();
}

Result<CompanyOutcome> ChangeCompanies(const DataFiles& data, const std::vector<CompanyChange>& changes,
                                       const RecordIsUsed& isUsed) {
    Result<RecordFile> file =
        RecordFile::OpenForWriting(data.Files, CompaniesFile(data), CompanyLayout.SlotLength());
    if (!file) return file.error();
    RecordChanger changer(*file, CompanyLayout, Members, changes);
    const Done looked = changer.Look([](std::int16_t, const CompanyRecord&) {});
    if (!looked) return looked.error();
    for (std::size_t index = 0; index < changes.size(); ++index) {
        const CompanyRecord& company = changes[index].Record;
        if (company.Active || changer.IsRefused(index)) continue;
        const Result<bool> used = isUsed(company.CompanyId);
        if (!used) return used.error();
        if (*used) changer.Refuse(index, "it is the current company");
        if (HasRecords(DataFiles(data.Files, data.Folder, company.CompanyId)))
            changer.Refuse(index, "it has materials or usage by now");
    }
    return changer.Finish();
}

Result<bool> IsCurrentCompany(AppContext& app, std::int16_t companyId) {
    if (companyId == app.CurrentCompanyId) return true;
    const Result<std::string> remembered = app.Settings.TryRead(Settings::Company, Settings::Default);
    if (!remembered) return remembered.error();
    return ParseInt16(*remembered) == companyId;
}

std::int16_t SaveCompany(AppContext& app, const std::string& name, const std::string& location,
                         std::optional<std::int16_t> companyId) {
    const Done written = StoreCompany(
        app, {.CompanyId = companyId.value_or(0), .CompanyName = name, .CompanyLocation = location});
    ShowFailure(app, written);
    // 0 after a failure too, on purpose.
    return 0;
}

Result<std::int16_t> AddNewCompany(const DataFiles& data, const std::string& name,
                                   const std::string& location) {
    const Result<StoredRecord<CompanyRecord>> stored =
        WriteCompany(data, {.CompanyName = name, .CompanyLocation = location}, false);
    if (!stored) return stored.error();
    return stored->Record.CompanyId;
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

Done SelectCompany(AppContext& app, const CompanyRecord& company) {
    MakeCompanyCurrent(app, company); // first, so that it holds even if Write fails
    return app.Settings.Write(Settings::Company, Settings::Default, std::to_string(company.CompanyId));
}

Done RestoreCompany(AppContext& app) {
    const Result<std::string> setting = app.Settings.TryRead(Settings::Company, Settings::Default);
    if (!setting) return setting.error();
    const std::string& remembered = *setting;
    if (remembered.empty()) return Success(); // none was ever selected
    const std::optional<std::int16_t> companyId = ParseInt16(remembered);
    if (!companyId)
        return Failure{.Doing = "restore the company that was selected last time",
                       .Reason = "the setting COMPANY/DEFAULT holds \"" + remembered +
                                 "\", which is not the number of a company"};
    // A company that is gone is no failure: the user can choose another one.
    std::vector<CompanyRecord> found;
    if (FindCompanies(app, {.CompanyId = *companyId}, found)) MakeCompanyCurrent(app, found.front());
    return Success();
}
} // namespace mact
