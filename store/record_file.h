#pragma once

#include "base/files.h"
#include "base/result.h"
#include "store/record_layout.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// The most slots that a file can be worked with: record numbers are signed 16-bit integers.
inline constexpr std::uint64_t MostSlots = 32767;

/// How many slots a file of `length` bytes has: rounded to the nearest whole number, halves to even.
std::uint64_t CountSlots(std::uint64_t length, std::uint64_t slotLength);

/// A file of fixed-length slots, numbered from 1, without a header.
///
/// It is opened for one operation and closed with it. A file that does not exist is created empty. Bytes that
/// a short last slot lacks read as zero bytes. A file of more than 32,767 slots cannot be worked with: record
/// numbers are signed 16-bit integers.
class RecordFile {
public:
    static Result<RecordFile> OpenForReading(FileAccess& files, const std::filesystem::path& path,
                                             std::size_t slotLength);
    /// For reading; a file that does not exist is a Failure, and is not created.
    static Result<RecordFile> OpenExisting(FileAccess& files, const std::filesystem::path& path,
                                           std::size_t slotLength);
    /// Holds the file against other writers until it is closed.
    static Result<RecordFile> OpenForWriting(FileAccess& files, const std::filesystem::path& path,
                                             std::size_t slotLength);

    /// The file's length divided by the slot length, rounded to the nearest whole number, halves to even: a
    /// last slot that was written short counts from its half on. Kept true by WriteSlot.
    std::int16_t Count() const { return m_count; }

    /// Calls `visit` with each slot's number and bytes, in file order, until it returns false.
    template <class Visitor> Done ForEachSlot(const Visitor& visit) {
        return ForEachChunk([&](std::int16_t first, std::string_view bytes) {
            int number = first;
            for (std::size_t at = 0; at < bytes.size(); at += m_slotLength, ++number)
                if (!visit(static_cast<std::int16_t>(number), bytes.substr(at, m_slotLength))) return false;
            return true;
        });
    }
    /// The same with many whole slots at a time, and the number of their first.
    template <class Visitor> Done ForEachChunk(const Visitor& visit) {
        std::unique_ptr<char[]> chunk;
        for (std::size_t done = 0; done < static_cast<std::size_t>(m_count);) {
            const auto first = static_cast<std::int16_t>(done + 1);
            const Result<std::string_view> bytes = ReadChunk(first, chunk);
            if (!bytes) return bytes.error();
            if (!visit(first, *bytes)) return Success();
            done += bytes->size() / m_slotLength;
        }
        return Success();
    }
    /// Appends when `number` is one more than the count; a number beyond that is a Failure. On disk when it
    /// succeeds. Where it fails the file is as it was, or the Failure says that it could not be made so.
    Done WriteSlot(std::int16_t number, std::string_view slot);
    /// Appends whole slots. Where it fails, those that reached the file count and no piece of another one
    /// stays, or the Failure says that it could not be taken back.
    Done AppendSlots(std::string_view slots);
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
    /// The bytes, of a slot at the most, that a write at `start` would replace in a file of `length` bytes.
    Result<std::string> ReadBeforeWrite(std::uint64_t start, std::uint64_t length);
    /// How many of the `wanted` bytes of a failed append at `start` have reached the file; 0 where the file
    /// does not tell.
    std::uint64_t LengthWritten(std::uint64_t start, std::uint64_t wanted);
    /// Puts the bytes that were at `start` before a write back, and the length; false where it cannot.
    bool TakeBack(std::uint64_t start, std::string_view before, std::uint64_t length);

    /// Some slots from number `first` on, at least one. They stand in `chunk`, which the first call makes.
    Result<std::string_view> ReadChunk(std::int16_t first, std::unique_ptr<char[]>& chunk);

    std::unique_ptr<OpenedFile> m_file;
    std::filesystem::path m_path;
    std::size_t m_slotLength;
    std::int16_t m_count = 0;
};

/// Calls `visit` with each record, in file order. The record is reused: what is to last is copied or moved
/// out.
template <const auto& Layout, class Visitor> Done ForEachRecord(RecordFile& file, const Visitor& visit) {
    LayoutRecord<Layout> record;
    return file.ForEachSlot([&](std::int16_t, std::string_view slot) {
        Unpack<Layout>(slot, record);
        visit(record);
        return true;
    });
}

/// Adds the records whose slots pass, in file order, to `records`. The others are not unpacked.
///
/// Many slots are judged before one is unpacked, and those that pass noted down without a jump: where chance
/// decides which they are, the processor guesses every second jump wrongly.
template <const auto& Layout, class Test>
Done AppendRecords(RecordFile& file, const Test& passes, std::vector<LayoutRecord<Layout>>& records) {
    constexpr std::size_t slotLength = Layout.SlotLength();
    std::array<const char*, 256> passed{};
    return file.ForEachChunk([&](std::int16_t, std::string_view bytes) {
        while (!bytes.empty()) {
            const std::size_t judged = std::min(bytes.size() / slotLength, passed.size());
            std::size_t count = 0;
            for (std::size_t index = 0; index < judged; ++index) {
                const std::string_view slot = bytes.substr(index * slotLength, slotLength);
                passed[count] = slot.data();
                count += static_cast<std::size_t>(passes(slot));
            }
            for (std::size_t index = 0; index < count; ++index)
                Unpack<Layout>({passed[index], slotLength}, records.emplace_back());
            bytes.remove_prefix(judged * slotLength);
        }
        return true;
    });
}

/// Puts `record` into slot `record.*number`, or appends it (setting that number) where the number is 0. The
/// number of the record that was written.
template <class Record>
Result<std::int16_t> WriteRecord(RecordFile& file, const RecordLayout<Record>& layout, Record record,
                                 std::int16_t Record::*number) {
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
template <class Record>
Result<bool> MarkLiveRecordAsDeleted(RecordFile& file, const RecordLayout<Record>& layout, std::int16_t id,
                                     std::int16_t Record::*number, bool Record::*active) {
    Record record;
    std::int16_t foundIn = 0;
    const Done searched = file.ForEachSlot([&](std::int16_t slotNumber, std::string_view slot) {
        Unpack(layout, slot, record);
        if (record.*number == id && record.*active) foundIn = slotNumber;
        return foundIn == 0;
    });
    if (!searched) return searched.error();
    if (foundIn == 0) return false;
    // Unpacking drops the spaces at the end of a text and packing restores them: nothing else changes. The
    // slot is the one in which the record was found: in a damaged file slot `id` may hold another record.
    record.*active = false;
    const Done written = file.WriteSlot(foundIn, Pack(layout, record));
    if (!written) return written.error();
    return true;
}

} // namespace mact
