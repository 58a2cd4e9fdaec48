#include "base/messages.h"
#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "store/steady_reading.h"
#include "transfer/transfer.h"
#include "transfer/transfer_guards.h"

namespace mact {
namespace {

struct MaterialExport {
    std::string Content;
    int Count = 0;
};

/// A "|" within a text is not escaped: an import then finds too many fields.
void AppendLine(std::string& content, const MaterialRecord& material) {
    const auto addText = [&](std::string_view text) {
        content += Trim(text);
        content += '|';
    };
    const auto addNumber = [&](double number) {
        content += NumberText(number);
        content += '|';
    };
    addText(material.CustomId);
    addText(material.Description);
    addText(material.MaterialType);
    addText(material.ApplicationMethod);
    addNumber(material.Density);
    addNumber(material.HapContent);
    for (std::size_t index = 0; index < PollutantContents.size(); ++index) {
        addNumber(material.*PollutantContents[index]);
        addNumber(material.*PollutantFactors[index]);
    }
    content += NumberText(material.Filler); // an import of this line checks it and drops it
    content += "\r\n";
}

/// Includes deleted materials, on purpose: line n is record n. Returns the number of materials.
Result<int> Export(AppContext& app, const std::filesystem::path& target) {
    const Done checked = CheckExportTarget(app, target, {});
    if (!checked) return checked.error();
    const Result<MaterialExport> output =
        ReadSteadily(app.Files, {MaterialsFile(app)}, [&]() -> Result<MaterialExport> {
            MaterialExport exported; // complete before anything is written
            const Done read = VisitMaterials(app, [&](const MaterialRecord& material) {
                AppendLine(exported.Content, material);
                ++exported.Count;
            });
            if (!read) return read.error();
            return exported;
        });
    if (!output) return output.error();
    const Done written = ReplaceFile(app.Files, target, output->Content);
    if (!written) return written.error();
    return output->Count;
}

} // namespace

std::int16_t ExportMaterialFile(AppContext& app, const std::filesystem::path& target, int& processedCount,
                                std::optional<int>& /*errorCount: never set*/) {
    const Result<int> count = Export(app, target);
    ShowFailure(app, count);
    processedCount = count ? *count : 0;
    return 0;
}
} // namespace mact
