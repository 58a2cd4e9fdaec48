#pragma once

#include "base/app_context.h"
#include "base/by_number.h"
#include "base/list_lines.h"
#include "materials/material_record.h"
#include "store/data_folder.h"
#include "store/record_file.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mact {

/// The materials of a company, in data/<company>_materials.talvor.
///
/// Every routine opens the file, works and closes it before it returns. FindMaterials, SaveMaterial and
/// DeleteMaterial show a failure once (ShowError), and a file that cannot be opened counts as empty; the
/// others return it.

/// A filter that is left out matches everything. Texts are compared trimmed and ignoring case.
struct MaterialFilter {
    std::optional<std::int16_t> MaterialId{};
    std::optional<std::string> CustomId{};
    std::optional<std::string> MaterialType{};
    std::optional<std::string> ApplicationMethod{};
    bool Active = true;
};
/// Fills `results` in file order and returns true; leaves it as it was and returns false when nothing
/// matches.
bool FindMaterials(AppContext& app, const MaterialFilter& filter, std::vector<MaterialRecord>& results);

/// The materials that pass, in file order.
Result<std::vector<MaterialRecord>> ReadMaterials(const DataFiles& data, const MaterialFilter& filter = {});

/// Calls `visit` with every record of the file, deleted ones too, in file order. The record is reused.
Done VisitMaterials(const DataFiles& data, const std::function<void(const MaterialRecord&)>& visit);
/// Calls `visit` with every live record, in file order, of which only the named members are filled in, as in
/// VisitLiveMaterials<&MaterialRecord::Density>(...). That takes half the time of reading all of them.
template <auto... Members, class Visitor>
Done VisitLiveMaterials(const DataFiles& data, const Visitor& visit) {
    Result<RecordFile> file =
        RecordFile::OpenForReading(data.Files, MaterialsFile(data), MaterialLayout.SlotLength());
    if (!file) return file.error();
    MaterialRecord material;
    return file->ForEachSlot([&](std::int16_t, std::string_view slot) {
        UnpackOnly<&MaterialRecord::Active, Members...>(MaterialLayout, slot, material);
        if (material.Active) visit(std::as_const(material));
        return true;
    });
}

/// The Material ID, trimmed, of each live material by its number: what other records show of a material. Of
/// several live materials with one number the first counts.
using MaterialIds = ByNumber<std::optional<std::string>>;
Result<MaterialIds> ReadMaterialIds(const DataFiles& data);

/// What a material is saved from.
struct MaterialEntry {
    std::string CustomId{}; ///< stored trimmed
    std::string Description{};
    std::string MaterialType{};
    std::string ApplicationMethod{};
    double Density = 0;        ///< lb/gal
    double HapContent = 0;     ///< weight percent
    double EmissionFactor = 0; ///< 0 = none given
    std::string Comments{};
    std::string Contents{}; ///< six numbers joined by "|"
    std::string Factors{};  ///< six numbers joined by "|"
    double Filler = 0;      ///< weight percent
};
/// Overwrites record `materialId`, or appends without it. On disk when it returns false. A caller that holds
/// the materials file open may hand it in; it is closed all the same. Fewer than six contents or factors, or
/// one that is not a number, is a failure, and nothing is written.
[[nodiscard]] Failed SaveMaterial(AppContext& app, const MaterialEntry& entry,
                                  std::optional<std::int16_t> materialId = {},
                                  std::unique_ptr<RecordFile> openFile = nullptr);

/// Whether a usage record refers to the material; a Failure where that cannot be told.
using MaterialIsUsed = std::function<Result<bool>(std::int16_t materialId)>;

/// Marks the live record as deleted; the other bytes of its fields stay. A material that is in use is refused
/// with a message.
[[nodiscard]] Failed DeleteMaterial(AppContext& app, std::int16_t materialId, const MaterialIsUsed& isUsed);

/// One line per live record: its Material ID, with `withDescription` followed by " - " and the description,
/// and shortened. The item data is the MaterialId.
void FillMaterialList(ListLines& list, const std::vector<MaterialRecord>& records, bool withDescription);

/// "Material ID - description", shortened to 35 characters and "..." when it is longer than 50.
std::string MaterialListText(const MaterialRecord& material);
} // namespace mact
