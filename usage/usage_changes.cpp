#include "usage/usage_changes.h"

#include "base/by_number.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "store/steady_reading.h"

#include <unordered_map>

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

/// Who is of a material and month: a live record, or one that is about to be.
struct Holder {
    std::int16_t UsageId = 0;
    bool IsToCome = false;
};
using Holders = std::unordered_map<std::string, Holder>; // by material and month, as compared

std::string KeyOf(const UsageRecord& usage) {
    return std::to_string(usage.MaterialId) + ' ' + ComparisonKey(usage.Period);
}

/// Empty if no other record is of the material and month. This one is from then on.
std::string TakeMonth(Holders& holders, const UsageRecord& usage) {
    const auto [first, isNew] = holders.try_emplace(KeyOf(usage), Holder{usage.UsageId, true});
    const Holder& holder = first->second;
    if (isNew) return {};
    return "usage record " + std::to_string(holder.UsageId) +
           (holder.IsToCome ? ", to be live too, is of the same material and month"
                            : " is of the same material and month");
}

std::string ReasonOfMaterial(const KnownMaterials& materials, std::int16_t materialId) {
    const KnownMaterial& material = materials[materialId];
    if (material.IsLive) return {};
    return "its material " + std::to_string(materialId) +
           (material.Exists ? " is deleted" : " does not exist");
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

Result<Refusals> ChangeUsage(const DataFiles& data, const std::vector<UsageChange>& changes) {
    Result<RecordFile> file =
        RecordFile::OpenForWriting(data.Files, UsageFile(data), UsageLayout.SlotLength());
    if (!file) return file.error();
    const Result<KnownMaterials> materials = ReadKnownMaterials(data);
    if (!materials) return materials.error();
    Holders holders;
    Result<PreparedChanges<UsageRecord>> prepared =
        PrepareChanges(*file, UsageLayout, Members, changes, [&](const UsageRecord& other) {
            if (other.Active) holders.try_emplace(KeyOf(other), Holder{other.UsageId});
        });
    if (!prepared) return prepared.error();
    for (const UsageChange* change : prepared->Possible) {
        if (!change->New.Active) continue;
        std::string reason = ReasonOfMaterial(*materials, change->New.MaterialId);
        if (reason.empty()) reason = TakeMonth(holders, change->New);
        if (!reason.empty()) prepared->Refused.push_back(RefusalOf(*change, Members, std::move(reason)));
    }
    if (!prepared->Refused.empty()) return prepared->Refused;
    const Done written = file->OverwritePieces(prepared->Pieces);
    if (!written) return written.error();
    return Refusals{};
}

Result<Refusals> UndeleteUsage(const DataFiles& data, const std::vector<UsageRecord>& seen) {
    return ChangeUsage(data, Undeletions(seen, &UsageRecord::Active));
}
} // namespace mact
