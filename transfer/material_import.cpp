#include "transfer/material_import.h"

#include "base/messages.h"
#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_changes.h"
#include "materials/material_record.h"
#include "store/data_folder.h"
#include "store/material_types.h"
#include "transfer/import_run.h"
#include "transfer/transfer_texts.h"

#include <algorithm>
#include <iterator>

namespace mact {
namespace {

constexpr std::size_t FieldCount = 19;
constexpr std::size_t TextLength = 100; // of each text, as stored

/// False if one of the texts is not a number.
bool ParseAll(const std::string_view* texts, std::array<double, 12>& numbers) {
    for (double& number : numbers) {
        const std::optional<double> parsed = ParseNumber(*texts++);
        if (!parsed) return false;
        number = *parsed;
    }
    return true;
}

} // namespace

struct MaterialImport::CheckedLine {
    std::array<std::string_view, FieldCount> Fields{};
    double Density = 0;
    double HapContent = 0;
    std::array<double, 12> PollutantNumbers{}; ///< content and factor in turn
    bool HasFiller = false;

    /// Sets what a line has a field for, without the filler on purpose. Emission factor, comments, filler and
    /// Active keep their defaults, even in a record that is reused: nothing sets them. Texts are cut here
    /// already, since the record's keep their memory, and a field can have 16 MB.
    void Fill(MaterialRecord& material, std::int16_t materialId) const {
        material.MaterialId = materialId;
        material.CustomId = Fields[0].substr(0, TextLength);
        material.MaterialType = Fields[2].substr(0, TextLength);
        material.ApplicationMethod = Fields[3].substr(0, TextLength);
        material.Density = Density;
        material.HapContent = HapContent;
        material.Description = Fields[1].substr(0, TextLength);
        for (std::size_t index = 0; index < PollutantContents.size(); ++index) {
            material.*PollutantContents[index] = PollutantNumbers[2 * index];
            material.*PollutantFactors[index] = PollutantNumbers[2 * index + 1];
        }
    }
};

Done MaterialImport::Prepare(const DataFiles& data, RecordFile& materials) {
    const Result<std::vector<HapContentRecord>> rows = ReadHapContents(data);
    if (!rows) return rows.error();
    for (const HapContentRecord& row : *rows)
        m_typesAndMethods.Add(row.MaterialType, row.ApplicationMethod);
    return ForEachRecord(materials, MaterialLayout, [&](const MaterialRecord& material) {
        // The Material ID of a deleted material may be used again.
        if (material.Active) m_customIds.Add(ComparisonKey(material.CustomId));
    });
}

bool MaterialImport::IsTaken(std::string_view customId) const {
    // A longer one equals none that is stored; no key is made of it, which could have 16 MB.
    return Trim(customId).size() <= TextLength && m_customIds.Contains(ComparisonKey(customId));
}

std::string_view MaterialImport::Check(CheckedLine& checked) {
    // In this order: the log names only the first error of a line. An empty Material ID is like any other.
    const auto& fields = checked.Fields;
    if (IsTaken(fields[0])) return TransferTexts::MaterialExists;
    if (Trim(fields[1]).empty()) return TransferTexts::DescriptionEmpty;
    if (!m_typesAndMethods.Find(fields[2], fields[3])) return TransferTexts::TypeOrMethodUnknown;
    const std::optional<double> density = ParseNumber(fields[4]);
    if (!density) return TransferTexts::DensityNotNumeric;
    const std::optional<double> hapContent = ParseNumber(fields[5]);
    if (!hapContent) return TransferTexts::HapContentNotNumeric;
    if (!ParseAll(&fields[6], checked.PollutantNumbers)) return TransferTexts::PollutantNotNumeric;
    const std::optional<double> filler = ParseNumber(fields[18]); // checked, but not stored
    if (!filler) return TransferTexts::FillerNotNumeric;
    checked.HasFiller = *filler != 0;
    checked.Density = *density;
    checked.HapContent = *hapContent;
    return {};
}

Result<bool> MaterialImport::ImportMaterialLine(const ImportedLine& line, ImportOutput& output) {
    CheckedLine checked;
    if (!AcceptOrLog(line, output, checked, [this](CheckedLine& split) { return Check(split); })) return true;
    const Result<std::int16_t> number = output.NextNumber();
    if (!number) return number.error(); // the file is full: the import ends, without counting this line
    checked.Fill(m_record, *number);
    output.AppendRecord(MaterialLayout, m_record);
    if (checked.HasFiller) output.CountDroppedFiller();
    // Cut as in the file: a second line with the same Material ID of over 100 characters is accepted.
    m_customIds.Add(ComparisonKey(checked.Fields[0].substr(0, TextLength)));
    return false;
}

ImportCounts ImportMaterials(AppContext& app, const std::filesystem::path& source,
                             const TransferWatcher& watcher) {
    MaterialImport import;
    std::vector<StoredRecord<MaterialRecord>> stored;
    ImportJob job{
        .Source = source,
        .Log = ImportErrorLog(app, TransferModule::Materials),
        .DataFile = MaterialsFile(app),
        .SlotLength = MaterialLayout.SlotLength(),
        .Prepare = [&](RecordFile& materials) { return import.Prepare(app, materials); },
        .ImportLine = [&](const ImportedLine& line,
                          ImportOutput& output) { return import.ImportMaterialLine(line, output); },
    };
    if (app.Changes)
        job.Imported = [&](RecordFile& file, std::int16_t first) {
            stored = NewRecords(file, MaterialLayout, first);
        };
    ImportCounts counts;
    ShowFailure(app, RunImport(app.Files, job, watcher, counts));
    if (stored.empty()) return counts;
    std::string name = NameOfImport(source, stored.size());
    NoteMaterials(app, std::move(name), std::move(stored));
    return counts;
}

std::int16_t ImportMaterialFile(AppContext& app, const std::filesystem::path& source, int& processedCount,
                                int& errorCount, const TransferWatcher& watcher) {
    const ImportCounts counts = ImportMaterials(app, source, watcher);
    processedCount = counts.Processed;
    errorCount = counts.Errors;
    return 0;
}
} // namespace mact
