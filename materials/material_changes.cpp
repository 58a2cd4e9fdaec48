#include "materials/material_changes.h"

#include "base/text.h"
#include "store/steady_reading.h"

#include <unordered_map>

namespace mact {
namespace {

constexpr RecordMembers<MaterialRecord> Members{"material", &MaterialRecord::MaterialId,
                                                &MaterialRecord::Active};

/// Who has a Material ID: a live record, or one that is about to be.
struct Holder {
    std::int16_t MaterialId = 0;
    bool IsToCome = false;
};
using Holders = std::unordered_map<std::string, Holder>; // by the Material ID, as compared

/// Empty if no other material has the Material ID. The material has it from then on.
std::string TakeCustomId(Holders& holders, const MaterialRecord& material) {
    const auto [first, isNew] =
        holders.try_emplace(ComparisonKey(material.CustomId), Holder{material.MaterialId, true});
    const Holder& holder = first->second;
    if (isNew) return {};
    return "material " + std::to_string(holder.MaterialId) +
           (holder.IsToCome ? ", to be live too, has the same Material ID" : " has the same Material ID");
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

Result<Refusals> ChangeMaterials(const DataFiles& data, const std::vector<MaterialChange>& changes,
                                 const MaterialIsUsed& isUsed) {
    Result<RecordFile> file =
        RecordFile::OpenForWriting(data.Files, MaterialsFile(data), MaterialLayout.SlotLength());
    if (!file) return file.error();
    Holders holders;
    Result<PreparedChanges<MaterialRecord>> prepared =
        PrepareChanges(*file, MaterialLayout, Members, changes, [&](const MaterialRecord& other) {
            if (other.Active) holders.try_emplace(ComparisonKey(other.CustomId), Holder{other.MaterialId});
        });
    if (!prepared) return prepared.error();
    for (const MaterialChange* change : prepared->Possible) {
        const auto refuse = [&](std::string reason) {
            prepared->Refused.push_back(RefusalOf(*change, Members, std::move(reason)));
        };
        if (change->Seen.Active) {
            const Result<bool> used = isUsed(change->Seen.MaterialId); // under the lock
            if (!used) return used.error();
            if (*used) refuse("later usage refers to it");
        }
        std::string reason = change->New.Active ? TakeCustomId(holders, change->New) : std::string();
        if (!reason.empty()) refuse(std::move(reason));
    }
    if (!prepared->Refused.empty()) return prepared->Refused;
    const Done written = file->OverwritePieces(prepared->Pieces);
    if (!written) return written.error();
    return Refusals{};
}

Result<Refusals> UndeleteMaterials(const DataFiles& data, const std::vector<MaterialRecord>& seen) {
    const auto isUsed = [](std::int16_t) -> Result<bool> { return false; }; // asked of live ones only
    return ChangeMaterials(data, Undeletions(seen, &MaterialRecord::Active), isUsed);
}
} // namespace mact
