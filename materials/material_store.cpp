#include "materials/material_store.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_changes.h"
#include "materials/material_texts.h"
#include "store/data_folder.h"
#include "store/steady_reading.h"

namespace mact {
namespace {

bool Matches(const std::optional<std::string>& wanted, std::string_view text) {
    return !wanted || IsSameName(*wanted, text);
}

bool Passes(const MaterialFilter& filter, const MaterialRecord& material) {
    if (filter.MaterialId && material.MaterialId != *filter.MaterialId) return false;
    if (!Matches(filter.CustomId, material.CustomId)) return false;
    if (!Matches(filter.MaterialType, material.MaterialType)) return false;
    if (!Matches(filter.ApplicationMethod, material.ApplicationMethod)) return false;
    return material.Active == filter.Active;
}

Result<RecordFile> OpenToWrite(const DataFiles& data) {
    return RecordFile::OpenForWriting(data.Files, MaterialsFile(data), MaterialLayout.SlotLength());
}

/// Numbers after the sixth are ignored.
Done SetPollutantNumbers(MaterialRecord& material, std::string_view numbers, std::string_view what,
                         const std::array<double MaterialRecord::*, 6>& members) {
    const std::vector<std::string_view> pieces = Split(numbers, '|');
    for (std::size_t index = 0; index < members.size(); ++index) {
        const std::optional<double> number =
            index < pieces.size() ? ParseNumber(pieces[index]) : std::nullopt;
        if (!number)
            return Failure{.Doing = "save the material \"" + Utf8FromCodePage(material.CustomId) + '"',
                           .Reason = "the " + std::string(what) + " of additional pollutant " +
                                     std::to_string(index + 1) + " is not a number"};
        material.*members[index] = *number;
    }
    return Success();
}

using StoredMaterial = StoredRecord<MaterialRecord>;

Result<StoredMaterial> WriteMaterial(const DataFiles& data, const MaterialEntry& entry,
                                     std::optional<std::int16_t> materialId,
                                     std::unique_ptr<RecordFile> openFile, bool keepsBefore) {
    MaterialRecord material{.MaterialId = materialId.value_or(0),
                            .CustomId = std::string(Trim(entry.CustomId)),
                            .MaterialType = entry.MaterialType,
                            .ApplicationMethod = entry.ApplicationMethod,
                            .Density = entry.Density,
                            .HapContent = entry.HapContent,
                            .EmissionFactor = entry.EmissionFactor,
                            .Comments = entry.Comments,
                            .Description = entry.Description,
                            .Filler = entry.Filler};
    // Checked before the file is opened, which would create it.
    Done numbers = SetPollutantNumbers(material, entry.Contents, "content", PollutantContents);
    if (numbers) numbers = SetPollutantNumbers(material, entry.Factors, "emission factor", PollutantFactors);
    if (!numbers) return numbers.error();
    // The caller's file is locked: opening it once more would wait for that lock in vain.
    if (openFile)
        return WriteRecord(*openFile, MaterialLayout, material, &MaterialRecord::MaterialId, keepsBefore);
    Result<RecordFile> file = OpenToWrite(data);
    if (!file) return file.error();
    return WriteRecord(*file, MaterialLayout, material, &MaterialRecord::MaterialId, keepsBefore);
}

/// Empty if there is no such live record.
Result<std::optional<StoredMaterial>> MarkAsDeleted(const DataFiles& data, std::int16_t materialId) {
    Result<RecordFile> file = OpenToWrite(data);
    if (!file) return file.error();
    return MarkLiveRecordAsDeleted(*file, MaterialLayout, materialId, &MaterialRecord::MaterialId,
                                   &MaterialRecord::Active);
}

} // namespace

Done VisitMaterials(const DataFiles& data, const std::function<void(const MaterialRecord&)>& visit) {
    Result<RecordFile> file =
        RecordFile::OpenForReading(data.Files, MaterialsFile(data), MaterialLayout.SlotLength());
    if (!file) return file.error();
    return ForEachRecord(*file, MaterialLayout, visit);
}

Result<std::vector<MaterialRecord>> ReadMaterials(const DataFiles& data, const MaterialFilter& filter) {
    return ReadRecordsSteadily(data.Files, MaterialsFile(data), MaterialLayout,
                               [&](const MaterialRecord& material) { return Passes(filter, material); });
}

Result<MaterialIds> ReadMaterialIds(const DataFiles& data) {
    return ReadSteadily(data.Files, {MaterialsFile(data)}, [&]() -> Result<MaterialIds> {
        MaterialIds ids;
        const auto take = [&](const MaterialRecord& material) {
            std::optional<std::string>& id = ids[material.MaterialId];
            if (!id) id = Trim(material.CustomId); // the first counts
        };
        const Done read =
            VisitLiveMaterials<&MaterialRecord::MaterialId, &MaterialRecord::CustomId>(data, take);
        if (!read) return read.error();
        return ids;
    });
}

bool FindMaterials(AppContext& app, const MaterialFilter& filter, std::vector<MaterialRecord>& results) {
    Result<std::vector<MaterialRecord>> found = ReadMaterials(app, filter);
    if (ShowFailure(app, found)) return false;
    if (found->empty()) return false; // `results` stays, unlike with the finders of other stores
    results = std::move(*found);
    return true;
}

Failed SaveMaterial(AppContext& app, const MaterialEntry& entry, std::optional<std::int16_t> materialId,
                    std::unique_ptr<RecordFile> openFile) {
    const Result<StoredMaterial> stored =
        WriteMaterial(app, entry, materialId, std::move(openFile), app.Changes != nullptr);
    if (ShowFailure(app, stored)) return true;
    NoteMaterial(app, stored->IsNew ? "add" : "edit", *stored);
    return false;
}

Failed DeleteMaterial(AppContext& app, std::int16_t materialId, const MaterialIsUsed& isUsed) {
    const Result<bool> used = isUsed(materialId);
    if (ShowFailure(app, used)) return true; // it may be in use
    if (*used) {
        ShowInformation(app, MaterialTexts::MaterialIsUsed);
        return true;
    }
    const Result<std::optional<StoredMaterial>> deleted = MarkAsDeleted(app, materialId);
    if (ShowFailure(app, deleted) || !*deleted) return true; // also if there was nothing to delete
    NoteMaterial(app, "delete", **deleted);
    return false;
}

std::string MaterialListText(const MaterialRecord& material) {
    std::string line;
    line.reserve(material.CustomId.size() + 3 + material.Description.size());
    line += Trim(material.CustomId);
    line += " - ";
    line += Trim(material.Description);
    // Two limits on purpose: beyond 50 characters a line is cut to its first 35.
    if (line.size() > 50) line = line.substr(0, 35) + "...";
    return line;
}

void FillMaterialList(ListLines& list, const std::vector<MaterialRecord>& records, bool withDescription) {
    list.clear();
    list.reserve(records.size());
    for (const MaterialRecord& material : records) {
        if (!material.Active) continue;
        list.push_back({withDescription ? MaterialListText(material) : std::string(Trim(material.CustomId)),
                        material.MaterialId});
    }
}
} // namespace mact
