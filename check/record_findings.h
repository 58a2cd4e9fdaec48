#pragma once

#include "check/data_check.h"
#include "store/record_file.h"

#include <string>
#include <string_view>
#include <utility>

namespace mact {

/// What the checks of the data files share.

/// The findings in one file.
class FileFindings {
public:
    FileFindings(std::string file, const FindingTaker& take) : m_file(std::move(file)), m_take(take) {}

    void Add(std::string_view what) const { m_take(m_file + ": " + std::string(what)); }
    void Add(std::int16_t record, std::string_view what) const {
        m_take(m_file + ", record " + std::to_string(record) + ": " + std::string(what));
    }
    /// A finding when the number is not finite. `name` is as in "the density".
    void CheckFinite(std::int16_t record, std::string_view name, double number) const;
    void CheckNumber(std::int16_t record, std::int16_t identifier) const;
    /// A finding when a record's Active flag is neither that of a live record nor that of a deleted one.
    void CheckActive(std::int16_t record, std::int16_t flag) const;

private:
    std::string m_file;
    const FindingTaker& m_take;
};

/// Record text in quotes for a finding: UTF-8, trimmed, in one line, "?" for each control character.
std::string Quoted(std::string_view codePageText);

/// What there is to know of a file's slots before one is read: adds the findings about its length. False when
/// it has too many slots to work with.
Result<bool> CheckSlots(FileAccess& files, const std::filesystem::path& path, std::size_t slotLength,
                        const FileFindings& findings);

/// The flags of a slot as they are stored: a record has only what they are taken for.
template <class Record>
void CheckFlags(const FileFindings& findings, std::int16_t record, const RecordLayout<Record>& layout,
                std::string_view slot) {
    for (std::size_t index = 0; index < layout.Fields().size(); ++index)
        if (layout.Fields()[index].Kind == FieldKind::Flag)
            findings.CheckActive(record, LoadInt16(slot.data() + layout.OffsetOf(index)));
}

/// Calls `visit` with the number and the record of every slot of a file that exists, after the findings about
/// its length and the slot's flags. False when it has too many slots to work with.
template <class Record, class Visitor>
Result<bool> VisitCheckedSlots(FileAccess& files, const std::filesystem::path& path,
                               const RecordLayout<Record>& layout, const FileFindings& findings,
                               Visitor visit) {
    const Result<bool> isUsable = CheckSlots(files, path, layout.SlotLength(), findings);
    if (!isUsable || !*isUsable) return isUsable;
    Result<RecordFile> file = RecordFile::OpenExisting(files, path, layout.SlotLength());
    if (!file) return file.error();
    Record record;
    const Done read = file->ForEachSlot([&](std::int16_t number, std::string_view slot) {
        CheckFlags(findings, number, layout, slot);
        Unpack(layout, slot, record);
        visit(number, record);
        return true;
    });
    if (!read) return read.error();
    return true;
}

} // namespace mact
