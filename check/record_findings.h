#pragma once

#include "check/data_check.h"
#include "store/record_file.h"

#include <string>
#include <string_view>
#include <utility>

namespace mact {

/// Passes on the findings in one file.
class FileFindings {
public:
    FileFindings(std::string file, const FindingTaker& take) : m_file(std::move(file)), m_take(take) {}

    void Add(std::string_view what) const { m_take({.File = m_file, .What = std::string(what)}); }
    void Add(std::int16_t record, std::string_view what) const {
        m_take({.File = m_file, .Record = record, .What = std::string(what)});
    }
    /// A finding if the number is not finite. `name` is as in "the density".
    void CheckFinite(std::int16_t record, std::string_view name, double number) const;
    /// A finding if a record's own number is not that of its slot.
    void CheckNumber(std::int16_t record, std::int16_t identifier) const;
    /// A finding if a record's Active flag is neither -1 (live) nor 0 (deleted).
    void CheckActive(std::int16_t record, std::int16_t flag) const;

private:
    std::string m_file;
    const FindingTaker& m_take;
};

/// Record text in quotes for a finding: UTF-8, trimmed, with "?" for each control character, so in one line.
std::string Quoted(std::string_view codePageText);

/// Adds the findings about a file's length. False if it has too many slots to work with.
Result<bool> CheckLength(FileAccess& files, const std::filesystem::path& path, std::size_t slotLength,
                         const FileFindings& findings);

/// Calls `visit` with the number and record of every slot of an existing file, after the findings about its
/// length and the record's Active flag. False if it has too many slots to work with.
template <class Record, class... Types, class Visitor>
Result<bool> VisitCheckedRecords(FileAccess& files, const std::filesystem::path& path,
                                 const RecordLayout<Record, Types...>& layout, const FileFindings& findings,
                                 Visitor visit) {
    const Result<bool> isUsable = CheckLength(files, path, layout.SlotLength(), findings);
    if (!isUsable || !*isUsable) return isUsable;
    Result<RecordFile> file = RecordFile::OpenExisting(files, path, layout.SlotLength());
    if (!file) return file.error();
    const auto check = [&](std::int16_t number, const Record& record, std::optional<std::int16_t> flag) {
        if (flag) findings.CheckActive(number, *flag);
        visit(number, record);
    };
    const Done read = ForEachStoredRecord(*file, layout, check);
    if (!read) return read.error();
    return true;
}
} // namespace mact
