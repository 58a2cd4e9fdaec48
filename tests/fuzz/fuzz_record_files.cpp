#include "base/text.h"
#include "materials/material_store.h"
#include "reports/reports.h"
#include "store/companies.h"
#include "store/material_types.h"
#include "tests/fuzz/data_files.h"
#include "tests/fuzz/fuzz.h"
#include "transfer/transfer.h"
#include "usage/usage_store.h"

namespace mact {

// The input is a company's data files, in the form of data_files.h. Everything that reads them runs over
// them.

namespace {

void ListCompanies(AppContext& app) {
    std::vector<CompanyRecord> companies;
    FindCompanies(app, {}, companies);
    const std::size_t all = companies.size();
    FindCompanies(app, {.CompanyName = "Acme Boats", .CompanyLocation = "Port Ellery"}, companies);
    Must(companies.size() <= all, "a filter takes away");
    ListLines list;
    FillCompanyList(list, companies);
    Must(list.size() == companies.size(), "every company has a line");
}

void ListMaterials(AppContext& app) {
    std::vector<MaterialRecord> materials;
    FindMaterials(app, {}, materials);
    ListLines list;
    FillMaterialList(list, materials, true);
    Must(list.size() == materials.size(), "every material has a line");
    if (materials.empty()) return;
    const MaterialRecord first = materials.front();
    std::vector<MaterialRecord> found;
    Must(FindMaterials(app, {.MaterialId = first.MaterialId, .CustomId = first.CustomId}, found) &&
             Pack(MaterialLayout, found.front()) == Pack(MaterialLayout, first),
         "a material is found by what it holds");
    FindMaterials(app, {.MaterialType = first.MaterialType, .ApplicationMethod = first.ApplicationMethod},
                  found);
}

void ListUsage(AppContext& app) {
    std::vector<UsageRecord> usage;
    FindUsage(app, {}, usage);
    ListLines list;
    FillUsageList(app, list, usage);
    Must(list.size() <= usage.size(), "no usage has two lines");
    FillUsageYears(list, usage);
    if (usage.empty()) return;
    const PeriodPieces pieces = SplitPeriod(usage.front().Period);
    std::vector<UsageRecord> found;
    const std::string period(Trim(usage.front().Period));
    Must(FindUsage(app, {.Periods = period, .Year = std::string(pieces.Year)}, found),
         "usage is found by what it holds");
    FindUsage(app, {.MaterialText = "GC-110", .Month = "3", .OneRecordPerMaterial = true}, found);
}

void WriteReports(AppContext& app) {
    const ReportPeriod year{.EndText = "12/2005"};
    for (const std::int16_t result :
         {GenerateCompliantMaterialsReport(app, {}), GenerateCompliantMaterialsReport(app, year),
          GenerateWeightedAverageReport(app, year), GenerateEmissionAverageReport(app, year),
          GenerateAdditionalHapUsageReport(app, year), GenerateAdditionalHapEmissionReport(app, year)})
        Must(result == ReportPublished || result == ReportDeclined || result == ReportFailed,
             "a report ends");
}

void Export(AppContext& app) {
    int processed = 0;
    std::optional<int> errors;
    ExportMaterialFile(app, "materials.txt", processed, errors);
    ExportUsageFile(app, "usage.txt", processed, errors);
    Must(*errors <= processed, "no more errors than records");
}

/// Saves a new record, then deletes the first live one.
void SaveAndDelete(MemoryProgram& program) {
    const std::string before = program.File(UsageFile(program.App));
    std::vector<UsageRecord> usage;
    FindUsage(program.App, {}, usage);
    Must(!SaveUsage(program.App, {.MaterialId = 1, .Period = "3/2005", .Quantity = 1, .Unit = 1}),
         "there is room for a record");
    const std::string saved = program.File(UsageFile(program.App));
    Must(saved.size() % UsageLayout.SlotLength() == 0, "a saved file is whole slots");
    const std::size_t kept = std::min(before.size(), saved.size() - UsageLayout.SlotLength());
    Must(saved.compare(0, kept, before, 0, kept) == 0, "earlier records stay");
    if (usage.empty()) return;
    Must(!DeleteUsage(program.App, usage.front().UsageId), "a live record can be deleted");
    Must(program.File(UsageFile(program.App)).size() == saved.size(), "its slot stays");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryProgram program;
    PutFiles(program, TextOf(data, size));
    std::vector<std::string> names;
    GetMaterialTypes(program.App, names, true);
    GetApplicationMethods(program.App, names, true, "Production resin");
    ListCompanies(program.App);
    ListMaterials(program.App);
    ListUsage(program.App);
    WriteReports(program.App);
    Export(program.App);
    SaveAndDelete(program);
    return 0;
}
} // namespace mact
