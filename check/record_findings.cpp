#include "check/record_findings.h"

#include "base/text.h"
#include "store/undo_file.h"

#include <cmath>

namespace mact {

void FileFindings::CheckFinite(std::int16_t record, std::string_view name, double number) const {
    if (!std::isfinite(number)) Add(record, std::string(name) + " is not a finite number");
}

void FileFindings::CheckNumber(std::int16_t record, std::int16_t identifier) const {
    if (identifier != record)
        Add(record, "its identifier is " + std::to_string(identifier) + ", not its number");
}

void FileFindings::CheckActive(std::int16_t record, std::int16_t flag) const {
    if (flag != -1 && flag != 0)
        Add(record, "its mark of a live record is " + std::to_string(flag) +
                        ", neither -1 nor 0: it counts as deleted");
}

std::string Quoted(std::string_view codePageText) {
    return '"' + Printable(Utf8FromCodePage(Trim(codePageText))) + '"';
}

Result<bool> CheckLength(FileAccess& files, const std::filesystem::path& path, std::size_t slotLength,
                         const FileFindings& findings) {
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(path, OpenMode::Read);
    if (!file) return file.error();
    const Result<UndoFinding> undo = ReadUndoFile(files, path, **file);
    if (!undo) return undo.error();
    if (undo->IsForeign)
        findings.Add("a change that was cut off cannot be taken back, since the file has changed meanwhile");
    const Result<std::uint64_t> present = (*file)->Length();
    if (!present) return present.error();
    const std::uint64_t length = undo->Before ? undo->Before->Length : *present;

    const std::uint64_t whole = length / slotLength;
    const std::uint64_t rest = length % slotLength;
    const std::uint64_t slots = CountSlots(length, slotLength);
    const bool isRestCounted = slots > whole; // the slots are rounded
    if (slots > MostSlots) {
        findings.Add("it has " + std::to_string(slots) + " records and cannot be worked with: " +
                     std::to_string(MostSlots) + " is the most that a data file can hold");
        return false;
    }
    if (isRestCounted) // the bytes that it lacks read as zeros
        findings.Add(static_cast<std::int16_t>(slots),
                     "it is short, with " + std::to_string(rest) + " of " + Counted(slotLength, "byte"));
    if (rest > 0 && !isRestCounted) // the next record overwrites them
        findings.Add(Counted(rest, "surplus byte") + " after " + Counted(whole, "record"));
    return true;
}
} // namespace mact
