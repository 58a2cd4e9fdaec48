#pragma once

#include "base/files.h"
#include "base/result.h"
#include "store/record_layout.h"
#include "store/undo_file.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// The most slots that a usable file can have: record numbers are signed 16-bit integers.
inline constexpr std::uint64_t MostSlots = 32767;

/// How many slots a file of `length` bytes has, rounded to the nearest whole number, halves to even.
std::uint64_t CountSlots(std::uint64_t length, std::uint64_t slotLength);

/// A whole slot that is to be written into a file.
struct NewSlot {
    std::int16_t Number = 0;
    std::string Bytes{};
};

/// A file of fixed-length slots, numbered from 1, without a header.
///
/// It is opened for one operation and then closed. A missing file is created empty. What a short last slot
/// lacks reads as zero bytes. Opening a file of more than MostSlots is a Failure.
///
/// Every change happens wholly or not at all, whenever the program is killed or the power goes (undo_file.h):
/// a file whose last change was cut off is read as it was before, and opening it for writing takes that
/// change back. Reading while another copy writes may mix two states, unless it is done steadily
/// (steady_reading.h).
class RecordFile {
public:
    static Result<RecordFile> OpenForReading(FileAccess& files, const std::filesystem::path& path,
                                             std::size_t slotLength) {
        return Open(files, path, slotLength, OpenMode::ReadOrCreate);
    }
    /// For reading; a missing file is a Failure and is not created.
    static Result<RecordFile> OpenExisting(FileAccess& files, const std::filesystem::path& path,
                                           std::size_t slotLength) {
        return Open(files, path, slotLength, OpenMode::Read);
    }
    /// Keeps out other writers until the file is closed.
    static Result<RecordFile> OpenForWriting(FileAccess& files, const std::filesystem::path& path,
                                             std::size_t slotLength) {
        return Open(files, path, slotLength, OpenMode::Update);
    }

    /// By CountSlots, so that a short last slot counts from about half its length on.
    std::int16_t Count() const { return m_count; }

    /// Calls `visit` with each slot's number and bytes, in file order, until it returns false.
    template <class Visitor> Done ForEachSlot(const Visitor& visit) {
        std::string chunk;
        for (int number = 1; number <= m_count;) {
            const Result<std::string_view> bytes = ReadChunk(static_cast<std::int16_t>(number), chunk);
            if (!bytes) return bytes.error();
            for (std::size_t at = 0; at < bytes->size(); at += m_slotLength, ++number)
                if (!visit(static_cast<std::int16_t>(number), bytes->substr(at, m_slotLength)))
                    return Success();
        }
        return Success();
    }
    /// What is in slot `number`, or a Failure.
    Result<std::string> ReadSlot(std::int16_t number);
    /// Overwrites a slot, or appends one if `number` is Count() + 1; a number beyond that is a Failure. On
    /// disk when it succeeds. A write that fails is undone; if the Failure says that it could not be, the
    /// undo file stays, and the next to open the file takes the write back.
    Done WriteSlot(std::int16_t number, std::string_view slot);
    /// The same for several slots at once: all of them are written, or none. No two may have the same number.
    /// Of those that are there, which may be given without their end, only the bytes that differ are written,
    /// so that one undo file has room for small changes of all records of a full file.
    Done WriteSlots(std::vector<NewSlot> newSlots);
    /// Appends whole slots, which stay only once FinishAppending has been called: until then the undo file
    /// takes them back. After a failure Count includes those that reached the file, and no piece of another
    /// one is left, or the Failure says that it could not be taken back.
    Done AppendSlots(std::string_view bytes);
    /// Returns once everything appended is on the disk, to stay there. It stays even after a failure.
    Done FinishAppending();
    /// The number of the slot after `pending` ones still to be appended. A Failure if the file is full.
    Result<std::int16_t> NextNumber(std::size_t pending = 0) const;
    /// In bytes, without what a change that was cut off has added.
    std::uint64_t Length() const { return m_before.Length; }
    /// Whether the file has the first `length` bytes of slot `number`, and does not end within them.
    bool HasBytesOf(std::int16_t number, std::size_t length) const {
        return StartOf(number) + length <= Length();
    }

private:
    RecordFile(FileAccess& files, std::unique_ptr<OpenedFile> file, std::filesystem::path path,
               std::size_t slotLength)
        : m_files(&files), m_file(std::move(file)), m_path(std::move(path)), m_slotLength(slotLength) {}
    static Result<RecordFile> Open(FileAccess& files, const std::filesystem::path& path,
                                   std::size_t slotLength, OpenMode mode);
    Done BeginWriting();
    Done BeginReading();
    /// Where a slot begins, in bytes.
    std::uint64_t StartOf(std::int64_t number) const {
        return (static_cast<std::uint64_t>(number) - 1) * m_slotLength;
    }
    /// Bytes that follow each other in the file.
    struct Run {
        std::uint64_t Start = 0; ///< bytes
        std::string_view Bytes{};
    };
    /// What a write replaces: the file's length, and for each run the bytes that are in its place.
    struct Replaced {
        std::uint64_t Length = 0;
        std::vector<std::string> Bytes{};
        std::int64_t Time = 0; ///< OpenedFile::TimeOfChange
    };
    /// The bytes in which the slot differs from that in the file, which has all of it; none if it does not.
    Result<Run> DifferingRun(const NewSlot& slot);
    Result<Replaced> ReadBeforeWrite(const std::vector<Run>& runs);
    /// Writes the runs over what is `replaced`, after the undo file has been told. Only the last may reach
    /// beyond the end of the file. `reached` is where the last one that was begun starts.
    Done WriteOver(const Replaced& replaced, const std::vector<Run>& runs, std::uint64_t& reached);
    /// The runs in the order of the file, all or none of them. `last` is the last slot of theirs.
    Done WriteRuns(const std::vector<Run>& runs, std::int16_t last);
    /// The Failure if slot `number` can be written neither over another one nor behind the last of `count`.
    std::optional<Failure> CannotWrite(int number, int count) const;
    /// Returns once what was written is on the disk.
    Done Flush();
    /// How many of the `wanted` bytes appended at `start` the file's length shows; 0 if it cannot be read.
    std::uint64_t LengthWritten(std::uint64_t start, std::uint64_t wanted);
    /// Undoes a failed write: restores the file's length and bytes. False if it cannot.
    bool TakeBack(const Replaced& replaced, const std::vector<Run>& runs);
    /// The same, and on the disk, so that the undo file is no longer needed and goes.
    bool TakeBackForGood(const Replaced& replaced, const std::vector<Run>& runs);
    /// Reads one or more slots from number `first` on into `chunk`.
    Result<std::string_view> ReadChunk(std::int16_t first, std::string& chunk);

    FileAccess* m_files;
    std::unique_ptr<OpenedFile> m_file;
    std::filesystem::path m_path;
    std::size_t m_slotLength;
    std::int16_t m_count = 0;
    OldState m_before{};                  ///< as the file was opened; for reading, what is in it
    bool m_hasPiece = false;              ///< a part of a slot was appended and could not be cut off
    std::optional<UndoFile> m_undo{};     ///< of the change under way
    std::optional<std::int64_t> m_time{}; ///< when the file had last changed before it
};

/// Calls `visit` with each slot's number and bytes, in file order. A missing file has none, and is not
/// created.
template <class Visitor>
Done ForEachSlotIfThere(FileAccess& files, const std::filesystem::path& path, std::size_t slotLength,
                        const Visitor& visit) {
    const Result<bool> isThere = IsAnythingAt(path);
    if (!isThere) return isThere.error();
    if (!*isThere) return Success();
    Result<RecordFile> file = RecordFile::OpenExisting(files, path, slotLength);
    if (!file) return file.error();
    return file->ForEachSlot([&](std::int16_t number, std::string_view slot) {
        visit(number, slot);
        return true;
    });
}

/// The record in slot `number`; empty if it cannot be read.
template <class Record, class... Types>
std::optional<Record> ReadRecordAt(RecordFile& file, const RecordLayout<Record, Types...>& layout,
                                   std::int16_t number) {
    const Result<std::string> slot = file.ReadSlot(number);
    if (!slot) return std::nullopt;
    Record record;
    Unpack(layout, *slot, record);
    return record;
}

/// Calls `visit` with each record, in file order. The record is reused: copy or move out what must last.
template <class Record, class... Types, class Visitor>
Done ForEachRecord(RecordFile& file, const RecordLayout<Record, Types...>& layout, const Visitor& visit) {
    Record record;
    return file.ForEachSlot([&](std::int16_t, std::string_view slot) {
        Unpack(layout, slot, record);
        visit(record);
        return true;
    });
}

/// The same, with each record's slot number and its flag as stored (StoredFlag).
template <class Record, class... Types, class Visitor>
Done ForEachStoredRecord(RecordFile& file, const RecordLayout<Record, Types...>& layout,
                         const Visitor& visit) {
    Record record;
    return file.ForEachSlot([&](std::int16_t number, std::string_view slot) {
        Unpack(layout, slot, record);
        visit(number, record, StoredFlag(layout, slot));
        return true;
    });
}

/// The records that pass, in file order. Another copy may write meanwhile: see ReadRecordsSteadily.
template <class Record, class... Types, class Test>
Result<std::vector<Record>> ReadRecords(RecordFile& file, const RecordLayout<Record, Types...>& layout,
                                        const Test& passes) {
    std::vector<Record> records;
    records.reserve(static_cast<std::size_t>(file.Count())); // memory that is never touched costs no time
    const Done read = file.ForEachSlot([&](std::int16_t, std::string_view slot) {
        // Unpacked in place, since a copy would allocate memory for each text again.
        Unpack(layout, slot, records.emplace_back());
        if (!passes(records.back())) records.pop_back();
        return true;
    });
    if (!read) return read.error();
    return records;
}

/// A record that was written, and what was there.
template <class Type> struct StoredRecord {
    Type Record{};
    std::optional<Type> Before{}; ///< empty if it is new, or if it could not be read or was not asked for
    bool IsNew = false;
};

/// Writes `record` into slot `record.*number` or, if that is 0, into the next new one; then it gets its
/// number. Only if it `keepsBefore` is a record that is overwritten read first.
template <class Record, class... Types>
Result<StoredRecord<Record>> WriteRecord(RecordFile& file, const RecordLayout<Record, Types...>& layout,
                                         Record record, std::int16_t Record::*number, bool keepsBefore) {
    StoredRecord<Record> stored{std::move(record)};
    std::int16_t& slot = stored.Record.*number;
    if (slot == 0) {
        const Result<std::int16_t> next = file.NextNumber();
        if (!next) return next.error();
        slot = *next;
        stored.IsNew = true;
    } else if (keepsBefore) {
        stored.Before = ReadRecordAt(file, layout, slot);
    }
    // No search: only in a damaged file is a record in any slot but that of its number.
    const Done written = file.WriteSlot(slot, Pack(layout, stored.Record));
    if (!written) return written.error();
    return stored;
}

/// Clears the Active flag of live record `id`. Its other fields keep their bytes; those after the last field
/// become zero. Empty if there is no such live record.
template <class Record, class... Types>
Result<std::optional<StoredRecord<Record>>>
MarkLiveRecordAsDeleted(RecordFile& file, const RecordLayout<Record, Types...>& layout, std::int16_t id,
                        std::int16_t Record::*number, bool Record::*active) {
    StoredRecord<Record> stored;
    Record& record = stored.Record;
    std::int16_t foundIn = 0;
    const Done searched = file.ForEachSlot([&](std::int16_t slotNumber, std::string_view slot) {
        Unpack(layout, slot, record);
        if (record.*number == id && record.*active) foundIn = slotNumber;
        return foundIn == 0; // stops with the found record in `record`
    });
    if (!searched) return searched.error();
    if (foundIn == 0) return std::optional<StoredRecord<Record>>();
    // Unpacking drops the spaces at the end of a text and packing restores them, so no other field changes.
    // Written where it was found: in a damaged file slot `id` may hold another record.
    stored.Before = record;
    record.*active = false;
    const Done written = file.WriteSlot(foundIn, Pack(layout, record));
    if (!written) return written.error();
    return std::optional(std::move(stored));
}
} // namespace mact
