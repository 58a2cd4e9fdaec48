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
/// Every routine opens and closes the file itself. FindMaterials, SaveMaterial and DeleteMaterial show a
/// failure once (ShowError), and FindMaterials goes on as if the file were empty; the others return it.

/// A filter that is left out matches everything. Texts are compared trimmed and ignoring case.
struct MaterialFilter {
    std::optional<std::int16_t> MaterialId{};
    std::optional<std::string> CustomId{};
    std::optional<std::string> MaterialType{};
    std::optional<std::string> ApplicationMethod{};
    bool Active = true;
};
/// Fills `results` in file order and returns true; if nothing matches, leaves it alone and returns false.
bool FindMaterials(AppContext& app, const MaterialFilter& filter, std::vector<MaterialRecord>& results);

/// The materials that pass, in file order.
Result<std::vector<MaterialRecord>> ReadMaterials(const DataFiles& data, const MaterialFilter& filter = {});

/// Calls `visit` with every record of the file, even deleted ones, in file order. The record is reused. To be
/// called by what reads steadily (store/steady_reading.h).
Done VisitMaterials(const DataFiles& data, const std::function<void(const MaterialRecord&)>& visit);
/// The same with every live record, with only the named members filled in, as in
/// VisitLiveMaterials<&MaterialRecord::Density>(...). The usage list at the limit takes 4.3 ms
/// with it, and 6.8 ms (1.6 times) with all members.
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

/// Each live material's trimmed Material ID by its number, to show in place of the number. If several live
/// materials have the same number, the first counts.
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
/// Overwrites record `materialId` or, without a number, appends. On disk when it returns false. A caller that
/// has the materials file open for writing passes it in, and it is closed here. Fewer than six contents or
/// factors, or one that is not a number, is a failure, and nothing is written.
[[nodiscard]] Failed SaveMaterial(AppContext& app, const MaterialEntry& entry,
                                  std::optional<std::int16_t> materialId = {},
                                  std::unique_ptr<RecordFile> openFile = nullptr);

/// Whether a usage record refers to the material; a Failure if unclear. A callback, as usage/ lies above.
using MaterialIsUsed = std::function<Result<bool>(std::int16_t materialId)>;

/// Marks the live record as deleted; its other fields keep their bytes. A material that is in use is refused
/// with a message. True also if there is no such record.
[[nodiscard]] Failed DeleteMaterial(AppContext& app, std::int16_t materialId, const MaterialIsUsed& isUsed);

/// One line per live record: Material ID or, `withDescription`, MaterialListText. Item data: MaterialId.
void FillMaterialList(ListLines& list, const std::vector<MaterialRecord>& records, bool withDescription);

/// "Material ID - description"; beyond 50 characters, the first 35 of it and "...".
std::string MaterialListText(const MaterialRecord& material);
} // namespace mact
