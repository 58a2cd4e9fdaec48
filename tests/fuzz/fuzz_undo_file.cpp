#include "store/record_file.h"
#include "tests/fuzz/fuzz.h"
#include "tests/fuzz/undo_input.h"
#include "tests/support/memory_program.h"
#include "usage/usage_store.h"

namespace mact {

// The input is a usage file and an undo file beside it, in the form of undo_input.h.

namespace {

std::vector<std::string> UsageIn(AppContext& app) {
    std::vector<std::string> records;
    const Done read =
        VisitUsage(app, [&](const UsageRecord& usage) { records.push_back(Pack(UsageLayout, usage)); });
    Must(static_cast<bool>(read), "files that can be read do not fail");
    return records;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryProgram program;
    const UndoInput input = UndoInputOf(TextOf(data, size));
    const std::filesystem::path file = UsageFile(program.App);
    const std::filesystem::path undo = UndoFileOf(file);
    program.File(file) = input.Usage;
    if (input.IsRaw)
        program.File(undo) = input.Raw;
    else
        static_cast<void>(
            UndoFile::Begin(program.Files, file, input.Change, {input.AppendedAt, input.Appended}));

    const std::string undoBytes = program.File(undo);
    const std::vector<std::string> before = UsageIn(program.App);
    Must(program.File(file) == input.Usage && program.File(undo) == undoBytes, "reading changes nothing");

    const bool isOpen =
        static_cast<bool>(RecordFile::OpenForWriting(program.Files, file, UsageLayout.SlotLength()));
    Must(isOpen, "the file can be written");
    Must(!program.Files.Has(undo), "an undo file is used up, removed or set aside");
    Must(UsageIn(program.App) == before, "taking back yields what was read");
    if (program.Files.Has(SetAsideUndoFileOf(file)))
        Must(program.File(file) == input.Usage, "one that does not belong to the file changes nothing");
    return 0;
}
} // namespace mact
