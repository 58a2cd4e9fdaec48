#include "store/record_file.h"

#include "base/text.h"

#include <algorithm>
#include <span>

namespace mact {
namespace {

/// The Failure of a write that could not be undone.
Failure InDoubt(Failure failure, const std::string& records) {
    failure.Reason += "; what was written " + records + " could not be taken back";
    return failure;
}

} // namespace

std::uint64_t CountSlots(std::uint64_t length, std::uint64_t slotLength) {
    const std::uint64_t whole = length / slotLength;
    const std::uint64_t twiceRest = 2 * (length % slotLength);
    const bool isUp = twiceRest > slotLength || (twiceRest == slotLength && whole % 2 == 1);
    return isUp ? whole + 1 : whole;
}

Result<RecordFile> RecordFile::Open(FileAccess& files, const std::filesystem::path& path,
                                    std::size_t slotLength, OpenMode mode) {
    Result<std::unique_ptr<OpenedFile>> opened = files.Open(path, mode);
    if (!opened) return opened.error();
    // Before the length is read, since whoever has the lock may be appending.
    if (mode == OpenMode::Update) {
        const Done locked = (*opened)->Lock();
        if (!locked) return locked.error();
    }
    const Result<std::uint64_t> length = (*opened)->Length();
    if (!length) return length.error();
    const std::uint64_t count = CountSlots(*length, slotLength);
    if (count > MostSlots)
        return Failure{"work with the file", path,
                       "it has " + std::to_string(count) + " records, and " + std::to_string(MostSlots) +
                           " is the most that a data file can hold"};
    RecordFile file(std::move(*opened), path, slotLength);
    file.m_count = static_cast<std::int16_t>(count);
    return file;
}

Result<std::string_view> RecordFile::ReadChunk(std::int16_t first, std::string& chunk) {
    constexpr std::size_t chunkLength = std::size_t{1} << 18; // bytes
    const std::size_t left = static_cast<std::size_t>(m_count - first) + 1;
    const std::size_t slots = std::min(left, std::max<std::size_t>(1, chunkLength / m_slotLength));
    chunk.resize(slots * m_slotLength);
    const Result<std::size_t> count = m_file->ReadAt(StartOf(first), chunk);
    if (!count) return count.error();
    std::fill(chunk.begin() + static_cast<std::ptrdiff_t>(*count), chunk.end(), '\0'); // a short last slot
    return std::string_view(chunk);
}

Result<std::string> RecordFile::ReadBeforeWrite(std::uint64_t start, std::uint64_t length) {
    std::string before(length > start ? std::min<std::uint64_t>(length - start, m_slotLength) : 0, '\0');
    const Result<std::size_t> count = m_file->ReadAt(start, before);
    if (!count) return count.error();
    before.resize(*count);
    return before;
}

Done RecordFile::WriteSlot(std::int16_t number, std::string_view slot) {
    if (number < 1 || number > m_count + 1)
        return Failure{"write record " + std::to_string(number) + " of the file", m_path,
                       "it has " + std::to_string(m_count) + " records"};
    // To be able to undo a failed write: the file's length, and the bytes that it overwrites.
    const std::uint64_t start = StartOf(number);
    const Result<std::uint64_t> length = m_file->Length();
    if (!length) return length.error();
    const Result<std::string> before = ReadBeforeWrite(start, *length);
    if (!before) return before.error();

    Done written = m_file->WriteAt(start, slot);
    if (written) written = m_file->Flush(); // a full disk may show only here
    if (written) {
        m_count = std::max(m_count, number);
        return written;
    }
    if (TakeBack(start, *before, *length)) return written;
    return InDoubt(written.error(), "of record " + std::to_string(number));
}

bool RecordFile::TakeBack(std::uint64_t start, std::string_view before, std::uint64_t length) {
    const Done cut = m_file->CutTo(length);
    const Done restored = before.empty() ? Success() : m_file->WriteAt(start, before);
    if (cut && restored) return true;
    // A disk that refuses this may have refused all of the failed write too. Then nothing has changed, and
    // the file can be trusted.
    const Result<std::uint64_t> lengthNow = m_file->Length();
    std::string now(before.size(), '\0');
    const Result<std::size_t> count = m_file->ReadAt(start, now);
    return lengthNow && *lengthNow == length && count && *count == before.size() && now == before;
}

Done RecordFile::AppendSlots(std::string_view slots) {
    // Starts behind the full length of a short last slot that counts; the gap becomes zero bytes.
    const std::uint64_t start = StartOf(m_count + 1);
    const Result<std::uint64_t> length = m_file->Length();
    if (!length) return length.error();
    // A rest too short to count is overwritten. Its bytes are noted, in case they must be put back.
    const Result<std::string> before = ReadBeforeWrite(start, *length);
    if (!before) return before.error();

    const Done written = m_file->WriteAt(start, slots);
    const std::uint64_t stored = (written ? slots.size() : LengthWritten(start, slots.size())) / m_slotLength;
    m_count = static_cast<std::int16_t>(m_count + static_cast<std::int64_t>(stored));
    if (written) return written;
    // Slots that reached the file whole stay, and are counted by now. A piece of the next one has to go: from
    // about half its length on it would count as a record. Without a whole slot, everything is undone.
    const bool isTakenBack = stored == 0 ? TakeBack(start, *before, *length)
                                         : static_cast<bool>(m_file->CutTo(StartOf(m_count + 1)));
    if (isTakenBack) return written;
    return InDoubt(written.error(), "from record " + std::to_string(m_count + 1) + " on");
}

std::uint64_t RecordFile::LengthWritten(std::uint64_t start, std::uint64_t wanted) {
    const Result<std::uint64_t> length = m_file->Length();
    return length ? std::clamp(*length, start, start + wanted) - start : 0;
}

Result<std::int16_t> RecordFile::NextNumber(std::size_t pending) const {
    const std::uint64_t next = static_cast<std::uint64_t>(m_count) + pending + 1;
    if (next > MostSlots)
        return Failure{"add a record to the file", m_path,
                       "it is full, with " + std::to_string(MostSlots) + " records"};
    return static_cast<std::int16_t>(next);
}
} // namespace mact
