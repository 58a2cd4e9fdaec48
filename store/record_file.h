#pragma once

#include "base/files.h"
#include "base/result.h"
#include "store/record_layout.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// The most slots a file can have and still be worked with: record numbers are signed 16-bit integers.
inline constexpr std::uint64_t MostSlots = 32767;

/// How many slots a file of `length` bytes has: rounded to the nearest whole number, halves to even.
std::uint64_t CountSlots(std::uint64_t length, std::uint64_t slotLength);

/// A file of fixed-length slots, numbered from 1, without a header.
///
/// It is opened for one operation and closed with it. A file that does not exist is created empty. Bytes that
/// a short last slot lacks read as zero bytes. A file of more than MostSlots cannot be worked with.
class RecordFile {
public:
    static Result<RecordFile> OpenForReading(FileAccess& files, const std::filesystem::path& path,
                                             std::size_t slotLength) {
        return Open(files, path, slotLength, OpenMode::ReadOrCreate);
    }
    /// For reading; a file that does not exist is a Failure, and is not created.
    static Result<RecordFile> OpenExisting(FileAccess& files, const std::filesystem::path& path,
                                           std::size_t slotLength) {
        return Open(files, path, slotLength, OpenMode::Read);
    }
    /// Holds the file against other writers until it is closed.
    static Result<RecordFile> OpenForWriting(FileAccess& files, const std::filesystem::path& path,
                                             std::size_t slotLength) {
        return Open(files, path, slotLength, OpenMode::Update);
    }

    /// As CountSlots has it: a last slot that was written short counts from its half on.
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
    /// Overwrites a slot, or appends when `number` is one more than the count; a number beyond that is a
    /// Failure. On disk when it succeeds. Where it fails the file is as it was, or the Failure says that it
    /// could not be made so.
    Done WriteSlot(std::int16_t number, std::string_view slot);
    /// Appends whole slots, without waiting for the disk. Where it fails, Count tells how many of them are in
    /// the file, and no piece of another one stays, or the Failure says that it could not be taken back.
    Done AppendSlots(std::string_view bytes);
    /// The number of the next appended slot, behind `pending` ones that are still to be written. A Failure
    /// when the file is full.
    Result<std::int16_t> NextNumber(std::size_t pending = 0) const;
    /// Returns when everything written is on the disk.
    Done Flush() { return m_file->Flush(); }

private:
    RecordFile(std::unique_ptr<OpenedFile> file, std::filesystem::path path, std::size_t slotLength)
        : m_file(std::move(file)), m_path(std::move(path)), m_slotLength(slotLength) {}
    static Result<RecordFile> Open(FileAccess& files, const std::filesystem::path& path,
                                   std::size_t slotLength, OpenMode mode);
    /// Where a slot begins in the file.
    std::uint64_t StartOf(std::int64_t number) const {
        return (static_cast<std::uint64_t>(number) - 1) * m_slotLength;
    }
    /// The bytes, of a slot at the most, that a write at `start` would replace in a file of `length` bytes.
    Result<std::string> ReadBeforeWrite(std::uint64_t start, std::uint64_t length);
    /// How many of the `wanted` bytes of a failed append at `start` have reached the file; 0 where the file
    /// does not tell.
    std::uint64_t LengthWritten(std::uint64_t start, std::uint64_t wanted);
    /// Undoes a failed write at `start`: puts back the bytes that were there, and the file's length. False
    /// when it cannot.
    bool TakeBack(std::uint64_t start, std::string_view before, std::uint64_t length);
    /// Some slots from number `first` on, at least one; they stand in `chunk`.
    Result<std::string_view> ReadChunk(std::int16_t first, std::string& chunk);

    std::unique_ptr<OpenedFile> m_file;
    std::filesystem::path m_path;
    std::size_t m_slotLength;
    std::int16_t m_count = 0;
};

/// Calls `visit` with each record, in file order. The record is reused: copy or move out what is to last.
template <class Record, class... Types, class Visitor>
Done ForEachRecord(RecordFile& file, const RecordLayout<Record, Types...>& layout, const Visitor& visit) {
    Record record;
    return file.ForEachSlot([&](std::int16_t, std::string_view slot) {
        Unpack(layout, slot, record);
        visit(record);
        return true;
    });
}

/// The same with each record's number, and its flag as it is stored (StoredFlag).
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

/// The records that pass, in file order.
template <class Record, class... Types, class Test>
Result<std::vector<Record>> ReadRecords(RecordFile& file, const RecordLayout<Record, Types...>& layout,
                                        const Test& passes) {
    std::vector<Record> records;
    records.reserve(static_cast<std::size_t>(file.Count())); // memory that stays unused costs no time
    const Done read = file.ForEachSlot([&](std::int16_t, std::string_view slot) {
        // Unpacked in its place, since a copy would allocate memory for each text once more.
        Unpack(layout, slot, records.emplace_back());
        if (!passes(records.back())) records.pop_back();
        return true;
    });
    if (!read) return read.error();
    return records;
}

/// Puts `record` into slot `record.*number`, or appends it (setting that number) where the number is 0. The
/// number of the record that was written.
template <class Record, class... Types>
Result<std::int16_t> WriteRecord(RecordFile& file, const RecordLayout<Record, Types...>& layout,
                                 Record record, std::int16_t Record::*number) {
    if (record.*number == 0) {
        const Result<std::int16_t> next = file.NextNumber();
        if (!next) return next.error();
        record.*number = *next;
    }
    const Done written = file.WriteSlot(record.*number, Pack(layout, record));
    if (!written) return written.error();
    return record.*number;
}

/// Clears the Active flag of live record `id` in its slot and leaves the other bytes of its fields as they
/// are. False when there is no such live record.
template <class Record, class... Types>
Result<bool> MarkLiveRecordAsDeleted(RecordFile& file, const RecordLayout<Record, Types...>& layout,
                                     std::int16_t id, std::int16_t Record::*number, bool Record::*active) {
    Record record;
    std::int16_t foundIn = 0;
    const Done searched = file.ForEachSlot([&](std::int16_t slotNumber, std::string_view slot) {
        Unpack(layout, slot, record);
        if (record.*number == id && record.*active) foundIn = slotNumber;
        return foundIn == 0;
    });
    if (!searched) return searched.error();
    if (foundIn == 0) return false;
    // Unpacking drops the spaces at the end of a text and packing restores them, so nothing else changes. It
    // is the slot in which the record was found: in a damaged file slot `id` may hold another record.
    record.*active = false;
    const Done written = file.WriteSlot(foundIn, Pack(layout, record));
    if (!written) return written.error();
    return true;
}
} // namespace mact
