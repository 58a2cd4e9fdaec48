#pragma once

#include "base/by_number.h"
#include "base/files.h"
#include "store/record_file.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mact {

/// Changing records that somebody has looked at before: deleted ones are brought back, and what was done to
/// others is taken back. All of the changes are made or none, with one undo file, under one lock.

/// A record as it was looked at, and what it is to become. Its number stays.
template <class Record> struct RecordChange {
    Record Seen{};
    Record New{};
};

/// Why records stay as they are: a sentence for each. If there is one, nothing has been changed.
using Refusals = std::vector<Failure>;

/// What the routines below have to know of a record type.
template <class Record> struct RecordMembers {
    std::string_view Name; ///< as in "usage record"
    std::int16_t Record::*Number;
    bool Record::*Active;
};

template <class Record>
Failure RefusalOf(const RecordChange<Record>& change, const RecordMembers<Record>& members,
                  std::string reason) {
    const bool wasDeleted = !(change.Seen.*members.Active);
    std::string doing = wasDeleted ? "bring back " : "take back what was done to ";
    doing += members.Name;
    doing += ' ' + std::to_string(change.Seen.*members.Number);
    return {.Doing = std::move(doing), .Reason = std::move(reason)};
}

/// What stands against changing the record `found` in slot `slotNumber`; empty if nothing does.
template <class Record, class... Types>
std::string ReasonAgainst(const RecordChange<Record>& change, const Record& found, std::int16_t slotNumber,
                          const RecordLayout<Record, Types...>& layout, const RecordMembers<Record>& members,
                          const RecordFile& file) {
    const bool wasActive = change.Seen.*members.Active;
    if (found.*members.Number != slotNumber)
        return "the file is damaged: the record there has the number " +
               std::to_string(found.*members.Number);
    if (found.*members.Active && !wasActive) return "it is not deleted";
    if (!(found.*members.Active) && wasActive) return "it has been deleted since";
    // By their bytes, since a number that is none equals nothing.
    if (Pack(layout, found) != Pack(layout, change.Seen)) return "it has changed since it was looked at";
    if (!file.HasBytesOf(slotNumber, layout.PackedLength())) return "the file ends within it";
    return {};
}

/// What the records themselves tell about changes.
template <class Record> struct PreparedChanges {
    std::vector<const RecordChange<Record>*> Possible{}; ///< in file order, each record once
    std::vector<Overwritten> Pieces{};                   ///< of those
    Refusals Refused{};                                  ///< of the others
};

/// Reads the whole file, which must be open for writing, and calls `visitOther` with each record that is not
/// going to change. Of several changes of one record the first counts. The bytes after the fields stay.
template <class Record, class... Types, class Visitor>
Result<PreparedChanges<Record>> PrepareChanges(RecordFile& file, const RecordLayout<Record, Types...>& layout,
                                               const RecordMembers<Record>& members,
                                               const std::vector<RecordChange<Record>>& changes,
                                               const Visitor& visitOther) {
    ByNumber<const RecordChange<Record>*> wanted;
    for (const RecordChange<Record>& change : changes) {
        const RecordChange<Record>*& first = wanted[change.Seen.*members.Number];
        if (!first) first = &change;
    }
    PreparedChanges<Record> prepared;
    Record found;
    const auto visit = [&](std::int16_t number, std::string_view slot) {
        Unpack(layout, slot, found);
        const RecordChange<Record>* const change = std::exchange(wanted[number], nullptr);
        std::string reason =
            change ? ReasonAgainst(*change, found, number, layout, members, file) : std::string();
        if (!change || !reason.empty()) visitOther(std::as_const(found));
        if (!change) return true;
        if (!reason.empty()) {
            prepared.Refused.push_back(RefusalOf(*change, members, std::move(reason)));
            return true;
        }
        prepared.Possible.push_back(change);
        std::string after = Pack(layout, change->New);
        after.replace(layout.PackedLength(), std::string::npos, slot.substr(layout.PackedLength()));
        if (std::optional<Overwritten> piece = file.PieceOf(number, slot, after))
            prepared.Pieces.push_back(std::move(*piece));
        return true;
    };
    const Done read = file.ForEachSlot(visit);
    if (!read) return read.error();
    for (const RecordChange<Record>& change : changes)
        if (std::exchange(wanted[change.Seen.*members.Number], nullptr))
            prepared.Refused.push_back(RefusalOf(change, members, "it does not exist"));
    return prepared;
}

/// The changes that bring deleted records back.
template <class Record>
std::vector<RecordChange<Record>> Undeletions(const std::vector<Record>& deleted, bool Record::*active) {
    std::vector<RecordChange<Record>> changes;
    changes.reserve(deleted.size());
    for (const Record& record : deleted) {
        RecordChange<Record>& change = changes.emplace_back(RecordChange<Record>{record, record});
        change.Seen.*active = false;
        change.New.*active = true;
    }
    return changes;
}

/// Calls `visit` with the number of each slot and its record, which is reused. A file that does not exist has
/// none, and is not created. To be called by what reads steadily (steady_reading.h).
template <class Record, class... Types, class Visitor>
Done VisitExistingRecords(FileAccess& files, const std::filesystem::path& path,
                          const RecordLayout<Record, Types...>& layout, const Visitor& visit) {
    const Result<bool> isThere = IsAnythingAt(path);
    if (!isThere) return isThere.error();
    if (!*isThere) return Success();
    Result<RecordFile> file = RecordFile::OpenExisting(files, path, layout.SlotLength());
    if (!file) return file.error();
    return ForEachStoredRecord(*file, layout,
                               [&](std::int16_t number, const Record& record, std::optional<std::int16_t>) {
                                   visit(number, record);
                               });
}
} // namespace mact
