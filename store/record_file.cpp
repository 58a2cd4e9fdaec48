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

/// Puts the old bytes of `piece` into `chunk`, which begins at `start` of the file.
void CopyInto(std::string& chunk, std::uint64_t start, const Overwritten& piece) {
    const std::uint64_t from = std::max(start, piece.Offset);
    const std::uint64_t to = std::min(start + chunk.size(), piece.Offset + piece.Old.size());
    if (from < to) chunk.replace(from - start, to - from, piece.Old, from - piece.Offset, to - from);
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
    RecordFile file(files, std::move(*opened), path, slotLength);
    const Done begun = mode == OpenMode::Update ? file.BeginWriting() : file.BeginReading();
    if (!begun) return begun.error();
    const std::uint64_t count = CountSlots(file.Length(), slotLength);
    if (count > MostSlots)
        return Failure{"work with the file", path,
                       "it has " + std::to_string(count) + " records, and " + std::to_string(MostSlots) +
                           " is the most that a data file can hold"};
    file.m_count = static_cast<std::int16_t>(count);
    return file;
}

Done RecordFile::BeginWriting() {
    // Before the length is read, since whoever has the lock may be appending.
    Done begun = m_file->Lock();
    if (begun) begun = TakeBackUnfinished(*m_files, m_path, *m_file);
    if (!begun) return begun;
    const Result<std::uint64_t> length = m_file->Length();
    if (!length) return length.error();
    m_before.Length = *length;
    return begun;
}

Done RecordFile::BeginReading() {
    Result<UndoFinding> undo = ReadUndoFile(*m_files, m_path, *m_file);
    if (!undo) return undo.error();
    if (undo->Before) {
        m_before = std::move(*undo->Before);
        return Success();
    }
    const Result<std::uint64_t> length = m_file->Length();
    if (!length) return length.error();
    m_before.Length = *length;
    return Success();
}

Result<std::string_view> RecordFile::ReadChunk(std::int16_t first, std::string& chunk) {
    constexpr std::size_t chunkLength = std::size_t{1} << 18; // bytes
    const std::size_t left = static_cast<std::size_t>(m_count - first) + 1;
    const std::size_t slots = std::min(left, std::max<std::size_t>(1, chunkLength / m_slotLength));
    const std::uint64_t start = StartOf(first);
    chunk.resize(slots * m_slotLength);
    // Less at the end of the file, which may have grown since.
    const std::uint64_t wanted =
        std::min<std::uint64_t>(chunk.size(), std::max(m_before.Length, start) - start);
    const Result<std::size_t> count =
        m_file->ReadAt(start, std::span(chunk).first(static_cast<std::size_t>(wanted)));
    if (!count) return count.error();
    std::fill(chunk.begin() + static_cast<std::ptrdiff_t>(*count), chunk.end(), '\0'); // a short last slot
    for (const Overwritten& piece : m_before.Pieces)
        CopyInto(chunk, start, piece);
    return std::string_view(chunk);
}

Result<RecordFile::Replaced> RecordFile::ReadBeforeWrite(std::uint64_t start) {
    const Result<std::uint64_t> length = m_file->Length();
    if (!length) return length.error();
    Replaced replaced{.Start = start, .Length = *length};
    replaced.Bytes.resize(*length > start ? std::min<std::uint64_t>(*length - start, m_slotLength) : 0);
    const Result<std::size_t> count = m_file->ReadAt(start, replaced.Bytes);
    if (!count) return count.error();
    replaced.Bytes.resize(*count);
    const Result<std::int64_t> time = m_file->TimeOfChange();
    if (!time) return time.error();
    replaced.Time = *time;
    return replaced;
}

Done RecordFile::WriteOver(const Replaced& replaced, std::string_view bytes) {
    const std::string_view over = bytes.substr(0, replaced.Bytes.size());
    const Appended appended{replaced.Start + over.size(), bytes.substr(over.size())};
    if (m_undo) {
        const Done announced = m_undo->Announce(appended);
        if (!announced) return announced;
    } else {
        PlannedChange change{.OldLength = replaced.Length, .SlotLength = m_slotLength};
        if (!over.empty()) change.Pieces.push_back({replaced.Start, replaced.Bytes, std::string(over)});
        Result<UndoFile> undo = UndoFile::Begin(*m_files, m_path, change, appended);
        if (!undo) return undo.error();
        m_undo.emplace(std::move(*undo));
        m_time = replaced.Time;
    }
    return m_file->WriteAt(replaced.Start, bytes);
}

Done RecordFile::Flush() {
    // Who reads meanwhile compares the times, to see that something changed. No reason to refuse a save.
    if (m_time) static_cast<void>(m_file->MakeTimeDifferFrom(*m_time));
    return m_file->Flush(); // a full disk may show only here
}

Done RecordFile::WriteSlot(std::int16_t number, std::string_view slot) {
    if (number < 1 || number > m_count + 1)
        return Failure{"write record " + std::to_string(number) + " of the file", m_path,
                       "it has " + std::to_string(m_count) + " records"};
    const Result<Replaced> replaced = ReadBeforeWrite(StartOf(number));
    if (!replaced) return replaced.error();
    Done written = WriteOver(*replaced, slot);
    if (!m_undo) return written; // nothing has been changed
    if (written) written = Flush();
    if (written) written = m_undo->End();
    if (written) {
        m_undo.reset();
        m_count = std::max(m_count, number);
        m_before.Length = std::max(m_before.Length, replaced->Start + slot.size());
        return written;
    }
    if (TakeBackForGood(*replaced)) return written;
    return InDoubt(written.error(), "of record " + std::to_string(number));
}

bool RecordFile::TakeBackForGood(const Replaced& replaced) {
    if (!TakeBack(replaced)) return false;
    EndTakenBack();
    return true;
}

void RecordFile::EndTakenBack() {
    // If this fails, the undo file stays, which leads to the same. If not, it would change nothing any more.
    if (Flush() && !m_undo->End()) m_undo->Remove();
    m_undo.reset();
}

bool RecordFile::TakeBack(const Replaced& replaced) {
    const std::string& before = replaced.Bytes;
    const Done cut = m_file->CutTo(replaced.Length);
    const Done restored = before.empty() ? Success() : m_file->WriteAt(replaced.Start, before);
    if (cut && restored) return true;
    // A disk that refuses this may have refused all of the failed write too. Then nothing has changed, and
    // the file can be trusted.
    const Result<std::uint64_t> lengthNow = m_file->Length();
    std::string now(before.size(), '\0');
    const Result<std::size_t> count = m_file->ReadAt(replaced.Start, now);
    return lengthNow && *lengthNow == replaced.Length && count && *count == before.size() && now == before;
}

std::optional<Overwritten> RecordFile::PieceOf(std::int16_t number, std::string_view before,
                                               std::string_view after) const {
    const auto first = std::ranges::mismatch(before, after).in1 - before.begin();
    if (static_cast<std::size_t>(first) == before.size()) return std::nullopt;
    std::size_t end = before.size();
    while (before[end - 1] == after[end - 1])
        --end;
    const auto start = static_cast<std::size_t>(first);
    return Overwritten{StartOf(number) + start, std::string(before.substr(start, end - start)),
                       std::string(after.substr(start, end - start))};
}

Done RecordFile::OverwritePieces(const std::vector<Overwritten>& pieces) {
    if (pieces.empty()) return Success();
    const Result<std::int64_t> time = m_file->TimeOfChange();
    if (!time) return time.error();
    const std::uint64_t length = m_before.Length;
    Result<UndoFile> undo = UndoFile::Begin(
        *m_files, m_path, {.OldLength = length, .SlotLength = m_slotLength, .Pieces = pieces}, {length, {}});
    if (!undo) return undo.error();
    m_undo.emplace(std::move(*undo));
    m_time = *time;

    Done written = Success();
    std::uint64_t last = 0; // where the last write began
    for (const Overwritten& piece : pieces) {
        last = piece.Offset;
        written = m_file->WriteAt(piece.Offset, piece.New);
        if (!written) break;
    }
    if (written) written = Flush();
    if (written) written = m_undo->End();
    if (written) {
        m_undo.reset();
        return written;
    }
    if (TakeBack(pieces)) {
        EndTakenBack();
        return written;
    }
    return InDoubt(written.error(), "of record " + std::to_string(last / m_slotLength + 1) +
                                        (pieces.size() > 1 ? " and others" : ""));
}

bool RecordFile::TakeBack(const std::vector<Overwritten>& pieces) {
    bool isRestored = true;
    for (const Overwritten& piece : pieces)
        if (!m_file->WriteAt(piece.Offset, piece.Old)) isRestored = false;
    if (isRestored) return true;
    // As above: what the disk refuses now it may have refused before.
    return std::ranges::all_of(pieces, [&](const Overwritten& piece) {
        std::string now(piece.Old.size(), '\0');
        const Result<std::size_t> count = m_file->ReadAt(piece.Offset, now);
        return count && *count == now.size() && now == piece.Old;
    });
}

Done RecordFile::AppendSlots(std::string_view slots) {
    // Starts behind the full length of a short last slot that counts; the gap becomes zero bytes. A rest too
    // short to count is overwritten. Its bytes are noted, in case they must be put back.
    const Result<Replaced> replaced = ReadBeforeWrite(StartOf(m_count + 1));
    if (!replaced) return replaced.error();
    const std::uint64_t start = replaced->Start;

    const bool isFirst = !m_undo;
    const Done written = WriteOver(*replaced, slots);
    if (isFirst && !m_undo) return written; // nothing has been changed
    const std::uint64_t stored = (written ? slots.size() : LengthWritten(start, slots.size())) / m_slotLength;
    m_count = static_cast<std::int16_t>(m_count + static_cast<std::int64_t>(stored));
    m_before.Length = std::max(m_before.Length, start + stored * m_slotLength);
    if (written) return written;
    // Slots that reached the file whole stay, and are counted by now. A piece of the next one has to go: from
    // about half its length on it would count as a record. Without a whole slot, everything is undone.
    const bool isTakenBack = stored > 0 ? static_cast<bool>(m_file->CutTo(StartOf(m_count + 1)))
                             : isFirst  ? TakeBackForGood(*replaced)
                                        : TakeBack(*replaced);
    if (isTakenBack) return written;
    m_hasPiece = true;
    return InDoubt(written.error(), "from record " + std::to_string(m_count + 1) + " on");
}

Done RecordFile::FinishAppending() {
    // A piece that could not be cut off is tried once more; while it is there, the undo file must stay.
    if (m_hasPiece && !m_file->CutTo(StartOf(m_count + 1))) {
        m_undo.reset();
        return Success(); // the append has failed already
    }
    const Done flushed = Flush();
    if (!m_undo) return flushed;
    const Done ended = m_undo->End();
    if (!ended) m_undo->Remove(); // what was appended is to stay
    m_undo.reset();
    return flushed ? ended : flushed;
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
