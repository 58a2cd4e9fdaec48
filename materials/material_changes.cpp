#include "materials/material_changes.h"

#include "base/text.h"
#include "store/record_history.h"
#include "store/steady_reading.h"

#include <optional>

namespace mact {
namespace {

constexpr RecordMembers<MaterialRecord> Members{"material", &MaterialRecord::MaterialId,
                                                &MaterialRecord::Active};

std::string ReasonOfCustomId(LiveKeys& customIds, const MaterialChange& change) {
    const std::string key = ComparisonKey(change.Record.CustomId);
    const std::optional<std::int16_t> holder = customIds.Take(key);
    if (!holder) return {};
    if (*holder == 0) return "another of these records has the same Material ID";
    // Two of one Material ID may be left from elsewhere: a change that keeps it makes that no worse.
    if (change.AsRead && change.AsRead->Active && ComparisonKey(change.AsRead->CustomId) == key) return {};
    return "material " + std::to_string(*holder) + " has the same Material ID";
}

} // namespace

Result<std::vector<MaterialRecord>> ReadDeletedMaterials(const DataFiles& data) {
    const std::filesystem::path path = MaterialsFile(data);
    return ReadSteadily(data.Files, {path}, [&]() -> Result<std::vector<MaterialRecord>> {
        std::vector<MaterialRecord> deleted;
        const auto take = [&](std::int16_t number, const MaterialRecord& material) {
            if (!material.Active && material.MaterialId == number) deleted.push_back(material);
        };
        const Done read = VisitExistingRecords(data.Files, path, MaterialLayout, take);
        if (!read) return read.error();
        return deleted;
    });
}

Result<MaterialOutcome> ChangeMaterials(const DataFiles& data, const std::vector<MaterialChange>& changes,
                                        const MaterialIsUsed& isUsed) {
    if (changes.empty()) return MaterialOutcome{};
    Result<RecordFile> file =
        RecordFile::OpenForWriting(data.Files, MaterialsFile(data), MaterialLayout.SlotLength());
    if (!file) return file.error();
    LiveKeys customIds;
    RecordChanger changer(*file, MaterialLayout, Members, changes);
    const Done looked = changer.Look([&](std::int16_t slot, const MaterialRecord& other) {
        if (other.Active) customIds.Add(ComparisonKey(other.CustomId), slot);
    });
    if (!looked) return looked.error();
    for (std::size_t index = 0; index < changes.size(); ++index) {
        if (changer.IsRefused(index)) continue;
        const MaterialChange& change = changes[index];
        if (change.Record.Active) {
            changer.Refuse(index, ReasonOfCustomId(customIds, change));
        } else if (change.AsRead && change.AsRead->Active) {
            const Result<bool> used = isUsed(change.Record.MaterialId); // under the lock
            if (!used) return used.error();
            if (*used) changer.Refuse(index, "later usage refers to it");
        }
    }
    return changer.Finish();
}

void NoteMaterials(AppContext& app, std::string name, std::vector<StoredRecord<MaterialRecord>> stored) {
    NoteChanges<MaterialRecord>(app, {HistoryKind::Materials, app.CurrentCompanyId}, std::move(name),
                                std::move(stored), Members, ChangeMaterials);
}

void NoteMaterial(AppContext& app, std::string_view doing, const StoredRecord<MaterialRecord>& stored) {
    NoteMaterials(app, std::string(doing) + ' ' + Utf8FromCodePage(Trim(stored.Record.CustomId)), {stored});
}

Result<std::vector<Failure>> UndeleteMaterials(const DataFiles& data,
                                               const std::vector<MaterialRecord>& seen) {
    const std::vector<MaterialChange> changes = Undeletions(seen, &MaterialRecord::Active);
    const auto isUsed = [](std::int16_t) -> Result<bool> { return false; }; // asked of live ones only
    const Result<MaterialOutcome> outcome = ChangeMaterials(data, changes, isUsed);
    if (!outcome) return outcome.error();
    return FailuresOf(changes, outcome->Refused, Members, "bring back");
}
} // namespace mact
