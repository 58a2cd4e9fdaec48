#pragma once

#include "base/app_context.h"
#include "base/list_lines.h"
#include "materials/material_record.h"
#include "store/record_file.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// The materials of the current company, in data/<company>_materials.talvor.
///
/// Every routine opens the file, works and closes it before it returns. A file that cannot be opened is shown
/// once (ShowError) and counts as empty.

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

/// The same without showing anything; empty when nothing matches.
Result<std::vector<MaterialRecord>> ReadMaterials(AppContext& app, const MaterialFilter& filter = {});

/// Calls `visit` with every record of the file, deleted ones too, in file order. Shows nothing.
Done VisitMaterials(AppContext& app, const std::function<void(const MaterialRecord&)>& visit);

/// Calls `visit` with the slot of every live record, in file order, for those who need a few of its fields
/// (Peek). Shows nothing.
Done VisitLiveMaterialSlots(AppContext& app, const std::function<void(std::string_view slot)>& visit);

/// The Material ID, trimmed, of each live material by its number: what other records show of a material.
class MaterialTextMap {
public:
    /// Empty where there is no such material. The view lasts as long as this.
    std::optional<std::string_view> Of(std::int16_t materialId) const;
    /// The first text of a number stays.
    void Add(std::int16_t materialId, std::string_view text);

private:
    struct Piece {
        std::uint32_t Start = 0;
        std::uint8_t Length = 0; ///< at most 100 as stored
        bool IsKnown = false;
    };
    // All texts in one, and a place for every number there can be: no memory of its own for each material.
    std::string m_text;
    std::vector<Piece> m_pieces = std::vector<Piece>(std::size_t{1} << 16);
};
/// Shows nothing.
Result<MaterialTextMap> ReadMaterialTexts(AppContext& app);

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
