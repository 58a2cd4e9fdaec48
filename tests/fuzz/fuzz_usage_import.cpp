#include "materials/material_store.h"
#include "tests/fuzz/fuzz.h"
#include "tests/support/memory_program.h"
#include "transfer/transfer.h"
#include "usage/usage_store.h"

namespace mact {

// The whole input is a file of usage to import. There is one material of the samples, and a few others.

namespace {

void AddMaterials(MemoryProgram& program) {
    std::string slots;
    std::int16_t number = 0;
    for (const char* customId : {"GC-110", "GC-215", "R-100", "R-200F", "a", "", " b"}) {
        ++number;
        slots += Pack(MaterialLayout, {.MaterialId = number, .CustomId = customId, .Active = number != 5});
    }
    program.File(MaterialsFile(program.App)) = slots;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryProgram program;
    AddMaterials(program);
    program.File("source.txt") = TextOf(data, size);
    int processed = 0;
    int errors = 0;
    ImportUsageFile(program.App, "source.txt", processed, errors);
    Must(program.Prompts.Shown.empty(), "an import of a readable file does not fail");

    std::vector<UsageRecord> usage;
    FindUsage(program.App, {}, usage);
    Must(processed - errors == static_cast<int>(usage.size()), "every good line is a record");
    std::int16_t number = 0;
    for (const UsageRecord& record : usage) {
        Must(record.UsageId == ++number, "the numbers are those of the slots");
        Must(record.MaterialId >= 1 && record.MaterialId <= 7 && record.MaterialId != 5,
             "of a live material");
        Must(record.Unit == UnitMgal || record.Unit == UnitLbs, "in a unit");
    }
    Must(ReadErrorLog(program.Files, ImportErrorLog(program.App, TransferModule::Usage))->empty() ==
             (errors == 0),
         "every rejected line is in the log");

    std::optional<int> exportErrors;
    ExportUsageFile(program.App, "target.txt", processed, exportErrors);
    Must(processed == static_cast<int>(usage.size()) && exportErrors == 0, "every record is exported");
    return 0;
}
} // namespace mact
