#include "materials/material_store.h"
#include "store/material_types.h"
#include "tests/fuzz/fuzz.h"
#include "tests/support/memory_program.h"
#include "transfer/transfer.h"

namespace mact {

// The whole input is a file of materials to import.

namespace {

int ImportInto(MemoryProgram& program, std::string_view content, int& errors) {
    int processed = 0;
    program.File("source.txt") = content;
    ImportMaterialFile(program.App, "source.txt", processed, errors);
    return processed;
}

std::string ExportOf(MemoryProgram& program) {
    int processed = 0;
    std::optional<int> errors;
    ExportMaterialFile(program.App, "target.txt", processed, errors);
    return program.File("target.txt");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryProgram program;
    Must(bool(CreateDefaultHapContents(program.App)), "there is a table");
    int errors = 0;
    const int processed = ImportInto(program, TextOf(data, size), errors);
    Must(program.Prompts.Shown.empty(), "an import of a readable file does not fail");

    std::vector<MaterialRecord> materials;
    FindMaterials(program.App, {}, materials);
    Must(processed - errors == static_cast<int>(materials.size()), "every good line is a record");
    std::int16_t number = 0;
    for (const MaterialRecord& material : materials)
        Must(material.MaterialId == ++number, "the numbers are those of the slots");
    Must(ReadErrorLog(program.Files, ImportErrorLog(program.App, TransferModule::Materials))->empty() ==
             (errors == 0),
         "every rejected line is in the log");

    // Texts that were cut when they were stored may be rejected in another company. Whatever that company
    // accepts, the next one accepts unchanged.
    MemoryProgram other;
    Must(bool(CreateDefaultHapContents(other.App)), "there is a table");
    const int again = ImportInto(other, ExportOf(program), errors);
    Must(again == static_cast<int>(materials.size()), "every record is a line of the export");
    MemoryProgram third;
    Must(bool(CreateDefaultHapContents(third.App)), "there is a table");
    const std::string exported = ExportOf(other);
    ImportInto(third, exported, errors);
    Must(errors == 0 && ExportOf(third) == exported, "an export of an import is good for another company");
    return 0;
}
} // namespace mact
