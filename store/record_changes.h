#pragma once

#include "base/by_number.h"
#include "base/files.h"
#include "store/record_file.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace mact {

/// Changing several records as one: some are overwritten, others appended, under one lock and with one undo
/// file, all of them or none. Saves of several records, bringing back deleted ones and taking back what was
/// done are all made with this.

/// A record that is to be stored.
template <class Type> struct RecordChange {
    Type Record{}; ///< without a number, it is appended
    /// The record that it replaces, as it was looked at; needed if Record has a number.
    std::optional<Type> AsRead{};
};

/// Why a change cannot be made.
struct RefusedChange {
    std::size_t Change = 0; ///< index
    std::string Reason{};   ///< UTF-8, what is the matter with the record ("it has changed since ...")
    bool IsForGood = false; ///< the record is not as it was read, so that trying again will not help
};

/// What came of changes: either all of them are stored, or none is.
template <class Type> struct ChangeOutcome {
    std::vector<Type> Stored{};           ///< in the order of the changes, with their numbers
    std::vector<RefusedChange> Refused{}; ///< in the order of the changes; empty = stored
};

/// What the routines below have to know of a record type.
template <class Type> struct RecordMembers {
    std::string_view Name; ///< as in "usage record"
    std::int16_t Type::*Number;
    bool Type::*Active;
};

/// What only one live record may have: a Material ID, or a month of a material.
class LiveKeys {
public:
    /// To be called with each live record that no change replaces, in file order.
    void Add(std::string key, std::int16_t slot) { m_holders.try_emplace(std::move(key), slot); }
    /// The slot of the record that has it; 0 = another of the changes; empty if none has it. From then on
    /// the asking change has it.
    std::optional<std::int16_t> Take(std::string key) {
        const auto [holder, isFree] = m_holders.try_emplace(std::move(key), std::int16_t{0});
        if (isFree) return std::nullopt;
        return holder->second;
    }

private:
    std::unordered_map<std::string, std::int16_t> m_holders;
};

/// The changes of one file, which is open for writing.
template <class Type, class... Types> class RecordChanger {
public:
    RecordChanger(RecordFile& file, const RecordLayout<Type, Types...>& layout,
                  const RecordMembers<Type>& members, const std::vector<RecordChange<Type>>& changes)
        : m_file(file), m_layout(layout), m_members(members), m_changes(changes), m_refused(changes.size()) {}

    /// Reads the whole file: finds what has changed since it was looked at, and calls `visitOther` with the
    /// slot and the record of all that no change replaces.
    template <class Visitor> Done Look(const Visitor& visitOther) {
        ByNumber<std::size_t> wanted = Wanted();
        Type found;
        const Done read = m_file.ForEachSlot([&](std::int16_t slot, std::string_view bytes) {
            Unpack(m_layout, bytes, found);
            const std::size_t change = std::exchange(wanted[slot], 0);
            if (change != 0) RefuseForGood(change - 1, ReasonAgainst(m_changes[change - 1], slot, found));
            if (change == 0 || IsRefused(change - 1)) visitOther(slot, std::as_const(found));
            return true;
        });
        for (std::size_t index = 0; index < m_changes.size(); ++index)
            if (NumberOf(index) != 0 && wanted[NumberOf(index)] == index + 1)
                RefuseForGood(index, "it does not exist");
        return read;
    }
    bool IsRefused(std::size_t change) const { return !m_refused[change].Reason.empty(); }
    /// An empty reason is none. Of several the first counts.
    void Refuse(std::size_t change, std::string reason) {
        if (!IsRefused(change)) m_refused[change] = {change, std::move(reason)};
    }
    /// Makes all of the changes, if none has been refused. The bytes after a record's fields stay.
    Result<ChangeOutcome<Type>> Finish() {
        ChangeOutcome<Type> outcome;
        for (std::size_t index = 0; index < m_changes.size(); ++index)
            if (IsRefused(index)) outcome.Refused.push_back(m_refused[index]);
        if (!outcome.Refused.empty()) return outcome;

        std::vector<NewSlot> newSlots;
        std::size_t appended = 0;
        for (const RecordChange<Type>& change : m_changes) {
            Type& record = outcome.Stored.emplace_back(change.Record);
            const bool isNew = record.*m_members.Number == 0;
            if (isNew) {
                const Result<std::int16_t> next = m_file.NextNumber(appended++);
                if (!next) return next.error();
                record.*m_members.Number = *next;
            }
            NewSlot& slot = newSlots.emplace_back(NewSlot{record.*m_members.Number, Pack(m_layout, record)});
            if (!isNew) slot.Bytes.resize(m_layout.PackedLength());
        }
        const Done written = m_file.WriteSlots(std::move(newSlots));
        if (!written) return written.error();
        return outcome;
    }

private:
    void RefuseForGood(std::size_t change, std::string reason) {
        Refuse(change, std::move(reason));
        m_refused[change].IsForGood = IsRefused(change);
    }
    std::int16_t NumberOf(std::size_t change) const { return m_changes[change].Record.*m_members.Number; }
    /// The change of each record, counted from 1; 0 = none.
    ByNumber<std::size_t> Wanted() {
        ByNumber<std::size_t> wanted;
        for (std::size_t index = 0; index < m_changes.size(); ++index) {
            if (NumberOf(index) == 0) {
                if (m_changes[index].AsRead) Refuse(index, "it does not exist");
                continue;
            }
            std::size_t& change = wanted[NumberOf(index)];
            if (change != 0)
                Refuse(index, "it would be changed twice at once");
            else
                change = index + 1;
        }
        return wanted;
    }
    /// What stands against replacing the record `found`; empty if nothing does.
    std::string ReasonAgainst(const RecordChange<Type>& change, std::int16_t slot, const Type& found) const {
        if (found.*m_members.Number != slot)
            return "the file is damaged: the record there has the number " +
                   std::to_string(found.*m_members.Number);
        const bool wasActive = !change.AsRead || *change.AsRead.*m_members.Active;
        if (found.*m_members.Active && !wasActive) return "it is not deleted";
        if (!(found.*m_members.Active) && wasActive) return "it has been deleted since";
        // By their bytes, since a number that is none equals nothing.
        if (!change.AsRead || Pack(m_layout, found) != Pack(m_layout, *change.AsRead))
            return "it has changed since it was looked at";
        if (!m_file.HasBytesOf(slot, m_layout.PackedLength())) return "the file ends within it";
        return {};
    }

    RecordFile& m_file;
    const RecordLayout<Type, Types...>& m_layout;
    const RecordMembers<Type>& m_members;
    const std::vector<RecordChange<Type>>& m_changes;
    std::vector<RefusedChange> m_refused; ///< of each change; without a reason it is not
};

/// The changes that bring deleted records back.
template <class Type>
std::vector<RecordChange<Type>> Undeletions(const std::vector<Type>& deleted, bool Type::*active) {
    std::vector<RecordChange<Type>> changes;
    changes.reserve(deleted.size());
    for (const Type& record : deleted) {
        RecordChange<Type>& change = changes.emplace_back(RecordChange<Type>{record, record});
        change.Record.*active = true;
        *change.AsRead.*active = false;
    }
    return changes;
}

/// Each refused change as a failure: "Cannot bring back usage record 3: it is not deleted."
template <class Type>
std::vector<Failure> FailuresOf(const std::vector<RecordChange<Type>>& changes,
                                const std::vector<RefusedChange>& refused, const RecordMembers<Type>& members,
                                std::string_view doing) {
    std::vector<Failure> failures;
    failures.reserve(refused.size());
    for (const RefusedChange& each : refused)
        failures.push_back({.Doing = std::string(doing) + ' ' + std::string(members.Name) + ' ' +
                                     std::to_string(changes[each.Change].Record.*members.Number),
                            .Reason = each.Reason});
    return failures;
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
