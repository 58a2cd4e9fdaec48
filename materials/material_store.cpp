#include "materials/material_store.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_texts.h"
#include "store/data_folder.h"

namespace mact {
namespace {

std::int16_t IdOf(std::string_view slot) {
    return Peek<MaterialLayout, &MaterialRecord::MaterialId>(slot);
}
bool IsLive(std::string_view slot) {
    return Peek<MaterialLayout, &MaterialRecord::Active>(slot);
}

/// A filter with its texts made ready for comparing.
class MaterialMatcher {
public:
    explicit MaterialMatcher(const MaterialFilter& filter)
        : m_filter(filter), m_customId(Key(filter.CustomId)), m_materialType(Key(filter.MaterialType)),
          m_applicationMethod(Key(filter.ApplicationMethod)) {}

    bool Passes(std::string_view slot) const {
        if (m_filter.MaterialId && IdOf(slot) != *m_filter.MaterialId) return false;
        if (m_customId && !Equals<&MaterialRecord::CustomId>(slot, *m_customId)) return false;
        if (m_materialType && !Equals<&MaterialRecord::MaterialType>(slot, *m_materialType)) return false;
        if (m_applicationMethod && !Equals<&MaterialRecord::ApplicationMethod>(slot, *m_applicationMethod))
            return false;
        return IsLive(slot) == m_filter.Active;
    }
    /// Whether many records can pass.
    bool IsWide() const { return !m_filter.MaterialId && !m_filter.CustomId; }

private:
    static std::optional<std::string> Key(const std::optional<std::string>& text) {
        return text ? std::optional(ComparisonKey(*text)) : std::nullopt;
    }
    template <auto Member> static bool Equals(std::string_view slot, const std::string& key) {
        return EqualsIgnoringCase(key, Trim(Peek<MaterialLayout, Member>(slot)));
    }

    const MaterialFilter& m_filter;
    std::optional<std::string> m_customId;
    std::optional<std::string> m_materialType;
    std::optional<std::string> m_applicationMethod;
};

Result<RecordFile> OpenToRead(AppContext& app) {
    return RecordFile::OpenForReading(app.Files, MaterialsFile(app), MaterialLayout.SlotLength());
}
Result<RecordFile> OpenToWrite(AppContext& app) {
    return RecordFile::OpenForWriting(app.Files, MaterialsFile(app), MaterialLayout.SlotLength());
}

Done SetPollutantNumbers(MaterialRecord& material, std::string_view numbers, std::string_view what,
                         const std::array<double MaterialRecord::*, 6>& members) {
    const std::vector<std::string_view> pieces = Split(numbers, '|');
    for (std::size_t index = 0; index < members.size(); ++index) {
        const std::optional<double> number =
            index < pieces.size() ? ParseNumber(pieces[index]) : std::nullopt;
        if (!number)
            return Failure{"Cannot save the material \"" + Utf8FromCodePage(material.CustomId) + "\": the " +
                           std::string(what) + " of additional pollutant " + std::to_string(index + 1) +
                           " is not a number."};
        material.*members[index] = *number;
    }
    return Success();
}

Result<std::int16_t> WriteMaterial(AppContext& app, const MaterialEntry& entry,
                                   std::optional<std::int16_t> materialId,
                                   std::unique_ptr<RecordFile> openFile) {
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
    Done numbers = SetPollutantNumbers(material, entry.Contents, "content", PollutantContents);
    if (numbers) numbers = SetPollutantNumbers(material, entry.Factors, "emission factor", PollutantFactors);
    if (!numbers) return numbers.error();
    if (openFile) return WriteRecord(*openFile, MaterialLayout, material, &MaterialRecord::MaterialId);
    Result<RecordFile> file = OpenToWrite(app);
    if (!file) return file.error();
    return WriteRecord(*file, MaterialLayout, material, &MaterialRecord::MaterialId);
}

/// True when the live record was marked as deleted, false when there is none.
Result<bool> MarkAsDeleted(AppContext& app, std::int16_t materialId) {
    Result<RecordFile> file = OpenToWrite(app);
    if (!file) return file.error();
    return MarkLiveRecordAsDeleted(*file, MaterialLayout, materialId, &MaterialRecord::MaterialId,
                                   &MaterialRecord::Active);
}

} // namespace

Done VisitMaterials(AppContext& app, const std::function<void(const MaterialRecord&)>& visit) {
    Result<RecordFile> file = OpenToRead(app);
    if (!file) return file.error();
    return ForEachRecord<MaterialLayout>(*file, visit);
}

Done VisitLiveMaterialSlots(AppContext& app, const std::function<void(std::string_view slot)>& visit) {
    Result<RecordFile> file = OpenToRead(app);
    if (!file) return file.error();
    return file->ForEachSlot([&](std::int16_t, std::string_view slot) {
        if (IsLive(slot)) visit(slot);
        return true;
    });
}

Result<std::vector<MaterialRecord>> ReadMaterials(AppContext& app, const MaterialFilter& filter) {
    Result<RecordFile> file = OpenToRead(app);
    if (!file) return file.error();
    std::vector<MaterialRecord> found;
    const MaterialMatcher test(filter);
    if (test.IsWide()) found.reserve(static_cast<std::size_t>(file->Count()));
    const auto passes = [&](std::string_view slot) { return test.Passes(slot); };
    const Done read = AppendRecords<MaterialLayout>(*file, passes, found);
    if (!read) return read.error();
    return found;
}

std::optional<std::string_view> MaterialTextMap::Of(std::int16_t materialId) const {
    const Piece& piece = m_pieces[static_cast<std::uint16_t>(materialId)];
    if (!piece.IsKnown) return std::nullopt;
    return std::string_view(m_text).substr(piece.Start, piece.Length);
}

void MaterialTextMap::Add(std::int16_t materialId, std::string_view text) {
    Piece& piece = m_pieces[static_cast<std::uint16_t>(materialId)];
    if (piece.IsKnown) return;
    piece = {static_cast<std::uint32_t>(m_text.size()), static_cast<std::uint8_t>(text.size()), true};
    m_text += text;
}

Result<MaterialTextMap> ReadMaterialTexts(AppContext& app) {
    MaterialTextMap texts;
    const Done read = VisitLiveMaterialSlots(app, [&](std::string_view slot) {
        texts.Add(IdOf(slot), Trim(Peek<MaterialLayout, &MaterialRecord::CustomId>(slot)));
    });
    if (!read) return read.error();
    return texts;
}

bool FindMaterials(AppContext& app, const MaterialFilter& filter, std::vector<MaterialRecord>& results) {
    Result<std::vector<MaterialRecord>> found = ReadMaterials(app, filter);
    if (!found) {
        ShowError(app, found.error());
        return false;
    }
    if (found->empty()) return false;
    results = std::move(*found);
    return true;
}

Failed SaveMaterial(AppContext& app, const MaterialEntry& entry, std::optional<std::int16_t> materialId,
                    std::unique_ptr<RecordFile> openFile) {
    const Result<std::int16_t> written = WriteMaterial(app, entry, materialId, std::move(openFile));
    if (!written) ShowError(app, written.error());
    return !written;
}

Failed DeleteMaterial(AppContext& app, std::int16_t materialId, const MaterialIsUsed& isUsed) {
    const Result<bool> used = isUsed(materialId);
    if (!used) {
        ShowError(app, used.error());
        return true;
    }
    if (*used) {
        ShowInformation(app, MaterialTexts::MaterialIsUsed);
        return true;
    }
    const Result<bool> deleted = MarkAsDeleted(app, materialId);
    if (!deleted) ShowError(app, deleted.error());
    return !deleted || !*deleted;
}

std::string MaterialListText(const MaterialRecord& material) {
    std::string line;
    line.reserve(material.CustomId.size() + 3 + material.Description.size());
    line += Trim(material.CustomId);
    line += " - ";
    line += Trim(material.Description);
    // Two numbers on purpose: cut beyond 50 characters, to the first 35.
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
