#include "usage/usage_changes.h"

#include "base/by_number.h"
#include "base/messages.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "store/record_history.h"
#include "store/steady_reading.h"

#include <optional>

namespace mact {
namespace {

constexpr RecordMembers<UsageRecord> Members{"usage record", &UsageRecord::UsageId, &UsageRecord::Active};

struct KnownMaterial {
    bool Exists = false;
    bool IsLive = false;
    std::string CustomId{}; ///< trimmed
};
using KnownMaterials = ByNumber<KnownMaterial>;

/// If several materials have one number, the first live one counts, or else the first.
void Take(KnownMaterials& known, const MaterialRecord& material) {
    KnownMaterial& entry = known[material.MaterialId];
    if (entry.Exists && (entry.IsLive || !material.Active)) return;
    entry = {true, material.Active, std::string(Trim(material.CustomId))};
}

Result<KnownMaterials> ReadKnownMaterials(const DataFiles& data) {
    return ReadSteadily(data.Files, {MaterialsFile(data)}, [&]() -> Result<KnownMaterials> {
        KnownMaterials known;
        const Done read =
            VisitMaterials(data, [&](const MaterialRecord& material) { Take(known, material); });
        if (!read) return read.error();
        return known;
    });
}

std::string KeyOf(const UsageRecord& usage) {
    return std::to_string(usage.MaterialId) + ' ' + ComparisonKey(usage.Period);
}

std::string ReasonOfMaterial(const KnownMaterials& materials, std::int16_t materialId) {
    const KnownMaterial& material = materials[materialId];
    if (material.IsLive) return {};
    return "its material " + std::to_string(materialId) +
           (material.Exists ? " is deleted" : " does not exist");
}

std::string ReasonOfMonth(LiveKeys& months, const UsageChange& change) {
    const std::optional<std::int16_t> holder = months.Take(KeyOf(change.Record));
    if (!holder) return {};
    if (*holder == 0) return "another of these records is of the same material and month";
    const bool keepsItsMonth =
        change.AsRead && change.AsRead->Active && KeyOf(*change.AsRead) == KeyOf(change.Record);
    if (keepsItsMonth && change.Record.UsageId < *holder) return {};
    return "usage record " + std::to_string(*holder) + " is of the same material and month";
}

/// Its Material ID, if that can be read.
std::string NameOfMaterial(const DataFiles& data, std::int16_t materialId) {
    const Result<MaterialIds> materialIds = ReadMaterialIds(data);
    if (!materialIds || !(*materialIds)[materialId]) return "material " + std::to_string(materialId);
    return Utf8FromCodePage(*(*materialIds)[materialId]);
}

/// Of what was refused, as one failure.
Failure FailureOf(const DataFiles& data, const std::vector<UsageChange>& changes,
                  const std::vector<RefusedChange>& refused) {
    const RefusedChange& first = refused.front();
    const UsageRecord& record = changes[first.Change].Record;
    std::string reason = first.Reason;
    if (refused.size() > 1) reason += ", and " + std::to_string(refused.size() - 1) + " more cannot be saved";
    return {.Doing = "save the usage of " + NameOfMaterial(data, record.MaterialId) + " in " +
                     Utf8FromCodePage(Trim(record.Period)),
            .Reason = std::move(reason)};
}

} // namespace

Result<std::vector<DeletedUsage>> ReadDeletedUsage(const DataFiles& data) {
    const std::filesystem::path path = UsageFile(data);
    return ReadSteadily(data.Files, {MaterialsFile(data), path}, [&]() -> Result<std::vector<DeletedUsage>> {
        KnownMaterials materials;
        const Done known = VisitExistingRecords(
            data.Files, MaterialsFile(data), MaterialLayout,
            [&](std::int16_t, const MaterialRecord& material) { Take(materials, material); });
        if (!known) return known.error();
        std::vector<DeletedUsage> deleted;
        const auto take = [&](std::int16_t number, const UsageRecord& usage) {
            if (!usage.Active && usage.UsageId == number)
                deleted.push_back({usage, materials[usage.MaterialId].CustomId});
        };
        const Done read = VisitExistingRecords(data.Files, path, UsageLayout, take);
        if (!read) return read.error();
        return deleted;
    });
}

Result<UsageOutcome> ChangeUsage(const DataFiles& data, const std::vector<UsageChange>& changes) {
    if (changes.empty()) return UsageOutcome{};
    // Locked before anything is checked, so that no other copy can change what was found.
    Result<RecordFile> file =
        RecordFile::OpenForWriting(data.Files, UsageFile(data), UsageLayout.SlotLength());
    if (!file) return file.error();
    const Result<KnownMaterials> materials = ReadKnownMaterials(data);
    if (!materials) return materials.error();
    LiveKeys months;
    RecordChanger changer(*file, UsageLayout, Members, changes);
    const Done looked = changer.Look([&](std::int16_t slot, const UsageRecord& other) {
        if (other.Active) months.Add(KeyOf(other), slot);
    });
    if (!looked) return looked.error();
    for (std::size_t index = 0; index < changes.size(); ++index) {
        const UsageRecord& record = changes[index].Record;
        if (!record.Active || changer.IsRefused(index)) continue;
        changer.Refuse(index, ReasonOfMaterial(*materials, record.MaterialId));
        if (!changer.IsRefused(index)) changer.Refuse(index, ReasonOfMonth(months, changes[index]));
    }
    return changer.Finish();
}

void NoteUsageTogether(AppContext& app, std::string name, std::vector<StoredRecord<UsageRecord>> stored) {
    NoteChanges<UsageRecord>(app, {HistoryKind::Usage, app.CurrentCompanyId}, std::move(name),
                             std::move(stored), Members,
                             [](const DataFiles& data, const std::vector<UsageChange>& changes,
                                const RecordIsUsed&) { return ChangeUsage(data, changes); });
}

void NoteUsage(AppContext& app, std::string_view doing, const StoredRecord<UsageRecord>& stored) {
    if (!app.Changes) return; // the materials need not be read
    NoteUsageTogether(app,
                      std::string(doing) + ' ' + NameOfMaterial(app, stored.Record.MaterialId) + " (" +
                          Utf8FromCodePage(Trim(stored.Record.Period)) + ')',
                      {stored});
}

Failed SaveUsageTogether(AppContext& app, const std::vector<UsageChange>& changes, UsageOutcome& outcome) {
    outcome = {};
    Result<UsageOutcome> written = ChangeUsage(app, changes);
    if (ShowFailure(app, written)) return true;
    outcome = std::move(*written);
    if (!outcome.Refused.empty()) {
        ShowError(app, FailureOf(app, changes, outcome.Refused));
        return true;
    }
    if (changes.empty()) return false;
    if (!app.Changes) return false;
    std::vector<StoredRecord<UsageRecord>> stored;
    stored.reserve(changes.size());
    for (std::size_t index = 0; index < changes.size(); ++index)
        stored.push_back({outcome.Stored[index], changes[index].AsRead, changes[index].Record.UsageId == 0});
    std::string name = "sheet of " + Utf8FromCodePage(Trim(changes.front().Record.Period)) + " (" +
                       Counted(stored.size(), "record") + ')';
    NoteUsageTogether(app, std::move(name), std::move(stored));
    return false;
}

Result<std::vector<Failure>> UndeleteUsage(const DataFiles& data, const std::vector<UsageRecord>& seen) {
    const std::vector<UsageChange> changes = Undeletions(seen, &UsageRecord::Active);
    const Result<UsageOutcome> outcome = ChangeUsage(data, changes);
    if (!outcome) return outcome.error();
    return FailuresOf(changes, outcome->Refused, Members, "bring back");
}
} // namespace mact
