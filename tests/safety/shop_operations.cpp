#include "tests/safety/shop_operations.h"

#include "app/backup.h"
#include "app/startup.h"
#include "base/messages.h"
#include "materials/material_changes.h"
#include "materials/material_store.h"
#include "reports/reports.h"
#include "store/additional_names.h"
#include "store/companies.h"
#include "store/data_folder.h"
#include "store/material_types.h"
#include "tests/support/test_program.h"
#include "transfer/transfer.h"
#include "usage/usage_changes.h"
#include "usage/usage_store.h"

#include <algorithm>

namespace mact {
namespace {

constexpr const char* NewFolder = "new folder";

MaterialEntry NewMaterial() {
    return {.CustomId = "PR-999",
            .Description = "another laminating resin",
            .MaterialType = "Production resin",
            .ApplicationMethod = "Spray",
            .Density = 9.3,
            .HapContent = 27,
            .Comments = "as delivered",
            .Contents = "27|0|0|0|0|0",
            .Factors = "16|0|0|0|0|0"};
}

bool SaveNewMaterial(AppContext& app) {
    return !SaveMaterial(app, NewMaterial());
}
bool SaveEditedMaterial(AppContext& app) {
    return !SaveMaterial(app, NewMaterial(), 3);
}
bool SaveWithTheFileHandedIn(AppContext& app) {
    Result<RecordFile> file =
        RecordFile::OpenForWriting(app.Files, MaterialsFile(app), MaterialLayout.SlotLength());
    if (!file) {
        ShowError(app, file.error());
        return false;
    }
    return !SaveMaterial(app, NewMaterial(), {}, std::make_unique<RecordFile>(std::move(*file)));
}

bool DeleteUnusedMaterial(AppContext& app) {
    return !DeleteMaterial(app, UnusedMaterial, [&](std::int16_t id) { return IsMaterialUsed(app, id); });
}

bool SaveNewUsage(AppContext& app) {
    return !SaveUsage(app, {.MaterialId = 2, .Period = "1/2031", .Quantity = 0.5, .Unit = UnitMgal});
}
bool SaveEditedUsage(AppContext& app) {
    return !SaveUsage(app, {.UsageId = 40, .MaterialId = 2, .Period = "1/2031", .Unit = UnitLbs});
}
bool DeleteUsageRecord(AppContext& app) {
    return !DeleteUsage(app, 17);
}

/// A refusal is a failure without a message.
bool IsDone(AppContext& app, const Result<std::vector<Failure>>& refused) {
    return !ShowFailure(app, refused) && refused->empty();
}
bool UndeleteAMaterial(AppContext& app) {
    std::vector<MaterialRecord> seen;
    const Done read = VisitMaterials(app, [&](const MaterialRecord& material) {
        if (material.MaterialId == DeletedMaterial) seen.push_back(material);
    });
    return !ShowFailure(app, read) && IsDone(app, UndeleteMaterials(app, seen));
}
bool UndeleteSomeUsage(AppContext& app) {
    std::vector<UsageRecord> seen;
    const Done read = VisitUsage(app, [&](const UsageRecord& usage) {
        if (std::ranges::count(DeletedUsages, usage.UsageId) != 0) seen.push_back(usage);
    });
    return !ShowFailure(app, read) && IsDone(app, UndeleteUsage(app, seen));
}
/// As the list does it. A refusal is a failure without a message.
bool TakeBack(AppContext& app, HistoryKind kind) {
    const auto isUsed = [&](std::int16_t material) { return IsMaterialUsed(app, material); };
    const Result<HistoryRefusal> refusal = app.Changes->Undo({kind, app.CurrentCompanyId}, app, isUsed);
    return !ShowFailure(app, refusal) && refusal->Reasons.empty();
}
/// An edit, a delete and an addition that were made together.
bool TakeBackMaterials(AppContext& app) {
    std::vector<StoredRecord<MaterialRecord>> stored;
    const Done read = VisitMaterials(app, [&](const MaterialRecord& material) {
        if (material.MaterialId != 3 && material.MaterialId < DeletedMaterial) return;
        stored.push_back({material, material, material.MaterialId == UnusedMaterial});
        stored.back().Before->Active = true;
        if (material.MaterialId == 3) stored.back().Before->Description = "as it was";
    });
    if (ShowFailure(app, read)) return false;
    History changes;
    app.Changes = &changes;
    NoteMaterials(app, "change materials", stored);
    const bool isDone = TakeBack(app, HistoryKind::Materials);
    app.Changes = nullptr;
    return isDone;
}
/// An import of records that follow each other.
bool TakeBackImportedUsage(AppContext& app) {
    std::vector<StoredRecord<UsageRecord>> stored;
    const Done read = VisitUsage(app, [&](const UsageRecord& usage) {
        if (usage.UsageId >= 20 && usage.UsageId < 24) stored.push_back({.Record = usage, .IsNew = true});
    });
    if (ShowFailure(app, read)) return false;
    History changes;
    app.Changes = &changes;
    NoteUsageTogether(app, "import usage", stored);
    const bool isDone = TakeBack(app, HistoryKind::Usage);
    app.Changes = nullptr;
    return isDone;
}
bool ListDeleted(AppContext& app) {
    const Result<std::vector<MaterialRecord>> materials = ReadDeletedMaterials(app);
    if (ShowFailure(app, materials)) return false;
    const Result<std::vector<DeletedUsage>> usage = ReadDeletedUsage(app);
    return !ShowFailure(app, usage) && materials->size() == 1 && usage->size() == std::size(DeletedUsages);
}

/// Two records edited that follow each other, one further on, and two of a new month, which are edited if
/// they are there already.
bool SaveSomeUsageTogether(AppContext& app) {
    const Result<std::vector<UsageRecord>> usage = ReadUsage(app);
    if (ShowFailure(app, usage)) return false;
    std::vector<UsageChange> changes;
    for (const std::int16_t material : std::initializer_list<std::int16_t>{2, 3})
        changes.emplace_back().Record = {.MaterialId = material, .Period = "1/2031"};
    for (const UsageRecord& record : *usage) {
        if (record.UsageId == 17 || record.UsageId == 18 || record.UsageId == 40)
            changes.push_back({.Record = record, .AsRead = record});
        if (record.Period != "1/2031") continue;
        for (UsageChange& change : changes)
            if (change.Record.MaterialId == record.MaterialId && change.Record.UsageId == 0)
                change = {.Record = record, .AsRead = record};
    }
    for (UsageChange& change : changes) {
        change.Record.Quantity = 12.5;
        change.Record.Unit = UnitLbs;
    }
    UsageOutcome outcome;
    return !SaveUsageTogether(app, changes, outcome);
}

bool AddCompany(AppContext& app) {
    return !ShowFailure(app, AddNewCompany(app, "Acme", "Dock 1"));
}
/// SaveCompany always returns 0: its caller finds out by listing the companies again.
bool SaveEditedCompany(AppContext& app) {
    return SaveCompany(app, "Acme", "Dock 1", 2) == 0;
}

bool SaveNames(AppContext& app) {
    return !ShowFailure(app, SaveAdditionalNames(app, {"a", "b", "c", "d", "e", "f"}));
}
bool LoadNames(AppContext& app) {
    app.AdditionalNames.clear();
    LoadAdditionalNames(app);
    return !app.AdditionalNames.empty();
}

/// The names are six "-" from then on, whether or not their file could be created.
bool LoadNamesOfANewCompany(AppContext& app) {
    app.CurrentCompanyId = 2;
    LoadAdditionalNames(app);
    return app.AdditionalNames == UnusedNames;
}

/// Goes on without a company if the companies cannot be read.
bool Start(AppContext& app) {
    const Done started = StartUp(app);
    if (!started) ShowError(app, started.error());
    return static_cast<bool>(started);
}
bool StartInANewFolder(AppContext& app) {
    AppContext started{app.Prompts,
                       app.Settings,
                       app.Programs,
                       app.Dialogs,
                       app.Calendar,
                       app.Files,
                       app.ProgramFolder / NewFolder};
    std::error_code ignored;
    std::filesystem::remove_all(started.ProgramFolder, ignored);
    std::filesystem::create_directory(started.ProgramFolder, ignored);
    return Start(started) && std::filesystem::exists(HapContentsFile(started)) &&
           started.CurrentCompanyId == 0;
}

bool RestoreRememberedCompany(AppContext& app) {
    app.CurrentCompanyId = 0;
    const Done restored = RestoreCompany(app);
    const bool isRestored = restored && app.CurrentCompanyId == 1;
    app.CurrentCompanyId = 1;
    return isRestored;
}

bool WriteDefaultTable(AppContext& app) {
    const Done created = CreateDefaultHapContents(app);
    if (!created) ShowError(app, created.error());
    return static_cast<bool>(created);
}

/// The counts say how far an import got; one that failed at its end may have stored every line.
bool ImportNewMaterials(AppContext& app) {
    int processed = 0;
    int errors = 0;
    return ImportMaterialFile(app, app.ProgramFolder / NewMaterialsFile, processed, errors) == 0;
}
bool ImportNewUsage(AppContext& app) {
    int processed = 0;
    int errors = 0;
    return ImportUsageFile(app, app.ProgramFolder / NewUsageFile, processed, errors) == 0;
}
bool ExportMaterials(AppContext& app) {
    int processed = 0;
    std::optional<int> errors;
    ExportMaterialFile(app, app.ProgramFolder / ExportedFile, processed, errors);
    return processed > 0;
}
bool ExportUsage(AppContext& app) {
    int processed = 0;
    std::optional<int> errors;
    ExportUsageFile(app, app.ProgramFolder / ExportedFile, processed, errors);
    return processed > 0;
}

bool ReportOfAll(AppContext& app) {
    return GenerateCompliantMaterialsReport(app, {}) == ReportPublished;
}
template <auto Generate> bool ReportOf2005(AppContext& app) {
    return Generate(app, {.EndText = "12/2005"}) == ReportPublished;
}

bool BackUp(AppContext& app) {
    return RunBackup(app, false).has_value();
}

bool FindLiveMaterials(AppContext& app) {
    std::vector<MaterialRecord> found;
    return FindMaterials(app, {}, found);
}
bool FindUsageOfAMaterial(AppContext& app) {
    std::vector<UsageRecord> found;
    return FindUsage(app, {.MaterialText = "pr-101"}, found);
}
bool ListUsage(AppContext& app) {
    ListLines lines;
    FillUsageList(app, lines,
                  {
                      {.UsageId = 1, .MaterialId = 1, .Period = "3/2005", .Unit = UnitLbs}
    });
    return !lines.empty();
}
bool FindAllCompanies(AppContext& app) {
    std::vector<CompanyRecord> found;
    return FindCompanies(app, {}, found);
}
bool ListMaterialTypes(AppContext& app) {
    std::vector<std::string> names;
    GetMaterialTypes(app, names, true);
    return !names.empty();
}
bool ListApplicationMethods(AppContext& app) {
    std::vector<std::string> methods;
    GetApplicationMethods(app, methods, true, "Tooling resin");
    return !methods.empty();
}
bool ViewLog(AppContext& app) {
    return !ShowFailure(app, ReadErrorLog(app.Files, app.ProgramFolder / NewUsageFile));
}

} // namespace

void DeleteSomeRecords(const AppContext& app) {
    std::string usage = ContentOf(UsageFile(app));
    for (std::size_t at = 0; at < usage.size(); at += UsageLayout.SlotLength())
        if (usage[at + 2] == DeletedMaterial) usage[at + 2] = 1;
    for (const std::int16_t number : DeletedUsages)
        usage.replace((static_cast<std::size_t>(number) - 1) * UsageLayout.SlotLength() + 21, 2, 2, '\0');
    WriteContent(UsageFile(app), usage);
    std::string materials = ContentOf(MaterialsFile(app));
    materials.replace((static_cast<std::size_t>(DeletedMaterial) - 1) * MaterialLayout.SlotLength() + 681, 2,
                      2, '\0');
    WriteContent(MaterialsFile(app), materials);
}

std::string NewMaterials() {
    std::string lines;
    for (int number = 1; number <= 5; ++number)
        lines += "N-" + std::to_string(number) +
                 "|a new resin|Production resin|Spray|9.1|28|1|2|0|0|0|0|0|0|0|0|0|0|0\r\n" +
                 "not a material\r\n";
    return lines;
}

std::string NewUsage() {
    std::string lines;
    for (int month = 1; month <= 5; ++month)
        lines += "PR-101|" + std::to_string(month) + "|2031|120.5|lbs\r\nnot usage\r\n";
    return lines;
}

const std::vector<ShopOperation>& ShopOperations() {
    using enum Telling;
    static const std::vector<ShopOperation> operations = {
        {"SaveNewMaterial",          SaveNewMaterial,                                   ByAnswer },
        {"SaveEditedMaterial",       SaveEditedMaterial,                                ByAnswer },
        {"SaveMaterialFileHandedIn", SaveWithTheFileHandedIn,                           ByAnswer },
        {"DeleteMaterial",           DeleteUnusedMaterial,                              ByAnswer },
        {"SaveNewUsage",             SaveNewUsage,                                      ByAnswer },
        {"SaveEditedUsage",          SaveEditedUsage,                                   ByAnswer },
        {"DeleteUsage",              DeleteUsageRecord,                                 ByAnswer },
        {"SaveUsageTogether",        SaveSomeUsageTogether,                             ByAnswer },
        {"UndeleteMaterials",        UndeleteAMaterial,                                 ByAnswer },
        {"UndeleteUsage",            UndeleteSomeUsage,                                 ByAnswer },
        {"TakeBackMaterials",        TakeBackMaterials,                                 ByAnswer },
        {"TakeBackImportedUsage",    TakeBackImportedUsage,                             ByAnswer },
        {"AddCompany",               AddCompany,                                        ByAnswer },
        {"SaveEditedCompany",        SaveEditedCompany,                                 ByMessage},
        {"SaveNames",                SaveNames,                                         ByAnswer },
        {"LoadNames",                LoadNames,                                         ByAnswer },
        {"LoadNamesOfANewCompany",   LoadNamesOfANewCompany,                            ByMessage},
        {"Start",                    Start,                                             ByMessage},
        {"StartInANewFolder",        StartInANewFolder,                                 ByMessage},
        {"RestoreCompany",           RestoreRememberedCompany,                          ByAnswer },
        {"WriteDefaultTable",        WriteDefaultTable,                                 ByAnswer },
        {"ImportMaterials",          ImportNewMaterials,                                ByMessage},
        {"ImportUsage",              ImportNewUsage,                                    ByMessage},
        {"ExportMaterials",          ExportMaterials,                                   ByAnswer },
        {"ExportUsage",              ExportUsage,                                       ByAnswer },
        {"CompliantReportOfAll",     ReportOfAll,                                       ByAnswer },
        {"CompliantReport",          ReportOf2005<GenerateCompliantMaterialsReport>,    ByAnswer },
        {"WeightedAverageReport",    ReportOf2005<GenerateWeightedAverageReport>,       ByAnswer },
        {"EmissionAverageReport",    ReportOf2005<GenerateEmissionAverageReport>,       ByAnswer },
        {"AdditionalUsageReport",    ReportOf2005<GenerateAdditionalHapUsageReport>,    ByAnswer },
        {"AdditionalEmissionReport", ReportOf2005<GenerateAdditionalHapEmissionReport>, ByAnswer },
        {"Backup",                   BackUp,                                            ByAnswer },
        {"FindMaterials",            FindLiveMaterials,                                 ByAnswer },
        {"FindUsage",                FindUsageOfAMaterial,                              ByAnswer },
        {"ListUsage",                ListUsage,                                         ByAnswer },
        {"FindCompanies",            FindAllCompanies,                                  ByAnswer },
        {"ListDeleted",              ListDeleted,                                       ByAnswer },
        {"ListMaterialTypes",        ListMaterialTypes,                                 ByAnswer },
        {"ListApplicationMethods",   ListApplicationMethods,                            ByAnswer },
        {"ViewErrorLog",             ViewLog,                                           ByAnswer },
    };
    return operations;
}

std::size_t SlotLengthOf(const std::string& fileName) {
    if (fileName.ends_with("_materials.talvor")) return 1444;
    if (fileName.ends_with("_usage.talvor")) return 32;
    if (fileName == "companies.talvor") return 504;
    return 0;
}
} // namespace mact
