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

Result<RecordFile::Replaced> RecordFile::ReadBeforeWrite(const std::vector<Run>& runs) {
    const Result<std::uint64_t> length = m_file->Length();
    if (!length) return length.error();
    Replaced replaced{.Length = *length};
    for (const Run& run : runs) {
        std::string& bytes = replaced.Bytes.emplace_back();
        bytes.resize(*length > run.Start ? std::min<std::uint64_t>(*length - run.Start, run.Bytes.size())
                                         : 0);
        const Result<std::size_t> count = m_file->ReadAt(run.Start, bytes);
        if (!count) return count.error();
        bytes.resize(*count);
    }
    const Result<std::int64_t> time = m_file->TimeOfChange();
    if (!time) return time.error();
    replaced.Time = *time;
    return replaced;
}

Done RecordFile::WriteOver(const Replaced& replaced, const std::vector<Run>& runs, std::uint64_t& reached) {
    const Run& last = runs.back();
    const std::size_t over = replaced.Bytes.back().size();
    const Appended appended{last.Start + over, last.Bytes.substr(over)};
    if (m_undo) {
        const Done announced = m_undo->Announce(appended);
        if (!announced) return announced;
    } else {
        PlannedChange change{.OldLength = replaced.Length, .SlotLength = m_slotLength};
        for (std::size_t index = 0; index < runs.size(); ++index) {
            const std::string& old = replaced.Bytes[index];
            if (old.empty()) continue;
            change.Pieces.push_back(
                {runs[index].Start, old, std::string(runs[index].Bytes.substr(0, old.size()))});
        }
        Result<UndoFile> undo = UndoFile::Begin(*m_files, m_path, change, appended);
        if (!undo) return undo.error();
        m_undo.emplace(std::move(*undo));
        m_time = replaced.Time;
    }
    for (const Run& run : runs) {
        reached = run.Start;
        const Done written = m_file->WriteAt(run.Start, run.Bytes);
        if (!written) return written;
    }
    return Success();
}

Done RecordFile::Flush() {
    // Who reads meanwhile compares the times, to see that something changed. No reason to refuse a save.
    if (m_time) static_cast<void>(m_file->MakeTimeDifferFrom(*m_time));
    return m_file->Flush(); // a full disk may show only here
}

Result<std::string> RecordFile::ReadSlot(std::int16_t number) {
    if (number < 1 || number > m_count)
        return Failure{"read record " + std::to_string(number) + " of the file", m_path,
                       "it has " + std::to_string(m_count) + " records"};
    std::string chunk;
    const Result<std::string_view> bytes = ReadChunk(number, chunk);
    if (!bytes) return bytes.error();
    return std::string(bytes->substr(0, m_slotLength));
}

std::optional<Failure> RecordFile::CannotWrite(int number, int count) const {
    if (number >= 1 && number <= count + 1) return std::nullopt;
    return Failure{"write record " + std::to_string(number) + " of the file", m_path,
                   "it has " + std::to_string(count) + " records"};
}

Done RecordFile::WriteSlot(std::int16_t number, std::string_view slot) {
    if (const auto failure = CannotWrite(number, m_count)) return *failure;
    return WriteRuns(
        {
            {StartOf(number), slot}
    },
        number);
}

Done RecordFile::WriteSlots(std::vector<NewSlot> slots) {
    std::ranges::sort(slots, {}, &NewSlot::Number);
    std::vector<Run> runs;
    std::string atEnd; // of slots of which not all is in the file
    std::int16_t before = 0;
    for (const NewSlot& slot : slots) {
        if (const auto failure = CannotWrite(slot.Number, std::max(m_count, before))) return *failure;
        if (slot.Number == before)
            return Failure{"write record " + std::to_string(before) + " of the file", m_path,
                           "it is to be written twice at once"};
        before = slot.Number;
        if (!HasBytesOf(slot.Number, slot.Bytes.size())) {
            atEnd += slot.Bytes;
            continue;
        }
        const Result<Run> run = DifferingRun(slot);
        if (!run) return run.error();
        if (!run->Bytes.empty()) runs.push_back(*run);
    }
    if (!atEnd.empty()) runs.push_back({StartOf(before + 1) - atEnd.size(), atEnd});
    if (runs.empty()) return Success();
    return WriteRuns(runs, before);
}

Result<RecordFile::Run> RecordFile::DifferingRun(const NewSlot& slot) {
    const std::uint64_t start = StartOf(slot.Number);
    const std::string_view after = slot.Bytes;
    std::string before(after.size(), '\0');
    const Result<std::size_t> count = m_file->ReadAt(start, before);
    if (!count) return count.error();
    if (before == after) return Run{start, {}};
    const auto first = std::ranges::mismatch(before, after).in1 - before.begin();
    const auto same = std::mismatch(before.rbegin(), before.rend(), after.rbegin()).first - before.rbegin();
    const auto at = static_cast<std::size_t>(first);
    return Run{start + at, after.substr(at, after.size() - at - static_cast<std::size_t>(same))};
}

Done RecordFile::WriteRuns(const std::vector<Run>& runs, std::int16_t last) {
    const Result<Replaced> replaced = ReadBeforeWrite(runs);
    if (!replaced) return replaced.error();
    std::uint64_t reached = 0;
    Done written = WriteOver(*replaced, runs, reached);
    if (!m_undo) return written; // nothing has been changed
    if (written) written = Flush();
    if (written) written = m_undo->End();
    if (written) {
        m_undo.reset();
        m_count = std::max(m_count, last);
        m_before.Length = std::max(m_before.Length, runs.back().Start + runs.back().Bytes.size());
        return written;
    }
    if (TakeBackForGood(*replaced, runs)) return written;
    return InDoubt(written.error(), "of record " + std::to_string(reached / m_slotLength + 1) +
                                        (runs.size() > 1 ? " and others" : ""));
}

bool RecordFile::TakeBackForGood(const Replaced& replaced, const std::vector<Run>& runs) {
    if (!TakeBack(replaced, runs)) return false;
    // If this fails, the undo file stays, which leads to the same. If not, it would change nothing any more.
    if (Flush() && !m_undo->End()) m_undo->Remove();
    m_undo.reset();
    return true;
}

bool RecordFile::TakeBack(const Replaced& replaced, const std::vector<Run>& runs) {
    bool isTakenBack = static_cast<bool>(m_file->CutTo(replaced.Length));
    for (std::size_t index = 0; index < runs.size(); ++index) {
        const std::string& old = replaced.Bytes[index];
        if (!old.empty() && !m_file->WriteAt(runs[index].Start, old)) isTakenBack = false;
    }
    if (isTakenBack) return true;
    // A disk that refuses this may have refused all of the failed write too. Then nothing has changed, and
    // the file can be trusted.
    const Result<std::uint64_t> lengthNow = m_file->Length();
    if (!lengthNow || *lengthNow != replaced.Length) return false;
    for (std::size_t index = 0; index < runs.size(); ++index) {
        const std::string& old = replaced.Bytes[index];
        std::string now(old.size(), '\0');
        const Result<std::size_t> count = m_file->ReadAt(runs[index].Start, now);
        if (!count || *count != old.size() || now != old) return false;
    }
    return true;
}

Done RecordFile::AppendSlots(std::string_view slots) {
    // Starts behind the full length of a short last slot that counts; the gap becomes zero bytes. A rest too
    // short to count is overwritten. Its bytes are noted, in case they must be put back.
    const std::uint64_t start = StartOf(m_count + 1);
    const std::vector<Run> runs{
        {start, slots}
    };
    const Result<Replaced> replaced = ReadBeforeWrite(runs);
    if (!replaced) return replaced.error();

    const bool isFirst = !m_undo;
    std::uint64_t reached = 0;
    const Done written = WriteOver(*replaced, runs, reached);
    if (isFirst && !m_undo) return written; // nothing has been changed
    const std::uint64_t stored = (written ? slots.size() : LengthWritten(start, slots.size())) / m_slotLength;
    m_count = static_cast<std::int16_t>(m_count + static_cast<std::int64_t>(stored));
    m_before.Length = std::max(m_before.Length, start + stored * m_slotLength);
    if (written) return written;
    // Slots that reached the file whole stay, and are counted by now. A piece of the next one has to go: from
    // about half its length on it would count as a record. Without a whole slot, everything is undone.
    const bool isTakenBack = stored > 0 ? static_cast<bool>(m_file->CutTo(StartOf(m_count + 1)))
                             : isFirst  ? TakeBackForGood(*replaced, runs)
                                        : TakeBack(*replaced, runs);
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
