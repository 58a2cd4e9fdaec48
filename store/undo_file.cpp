#include "store/undo_file.h"

#include "store/record_layout.h"

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <system_error>

namespace mact {
namespace {

constexpr std::string_view Magic = "MACTUNDO";
/// Magic, the change's number, the old length, the slot length, the length of the pieces, and a checksum of
/// all that and of the pieces: 8 bytes each. Less than a sector, which a disk writes whole or not at all.
constexpr std::size_t HeaderLength = 48;
constexpr std::size_t WithoutChecksum = HeaderLength - 8;
/// A piece begins with its offset (8 bytes) and the length of each of its two texts (4 bytes).
constexpr std::size_t PieceHeadLength = 12;
/// An announcement begins with a checksum of the rest of it, its offset, and the length announced: 8 bytes
/// each.
constexpr std::size_t AnnouncementHeadLength = 24;
/// Bytes. An import of as many materials as fit needs 0.3 MB; a longer file is no undo file of ours.
constexpr std::uint64_t LongestUndoFile = std::uint64_t{4} << 20U;
/// Bytes, far beyond any record file: a hostile undo file must not make sums overflow.
constexpr std::uint64_t LongestRecordFile = std::uint64_t{1} << 40U;
/// What a disk writes whole or not at all, in bytes.
constexpr std::uint64_t SectorLength = 512;

/// For what a torn or stale write leaves, not against forgery: sums of words, and sums of those sums, which
/// depend on the order, like Fletcher's. Four of each in turn, so that a processor need not wait for one
/// addition before the next: an import of materials at the limit has 47 MB to be summed up.
std::uint64_t Checksum(std::string_view bytes, std::uint64_t seed) {
    std::array<std::uint64_t, 4> sums{seed, bytes.size(), 0, 0};
    std::array<std::uint64_t, 4> sumsOfSums{};
    const auto add = [&](std::size_t turn, std::uint64_t word) {
        sums[turn] += word;
        sumsOfSums[turn] += sums[turn];
    };
    constexpr std::size_t round = sums.size() * 8;
    for (; bytes.size() >= round; bytes.remove_prefix(round))
        for (std::size_t turn = 0; turn < sums.size(); ++turn)
            add(turn, LoadLittleEndian<std::uint64_t>(bytes.substr(turn * 8, 8)));
    std::size_t turn = 0;
    for (; bytes.size() >= 8; bytes.remove_prefix(8))
        add(turn++, LoadLittleEndian<std::uint64_t>(bytes));
    std::uint64_t last = 0; // zero bytes fill it up; the count is in a sum already
    for (std::size_t index = 0; index < bytes.size(); ++index)
        last |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[index])) << (8 * index);
    add(turn, last);
    // Turned and multiplied, each differently, so that no two can make up for each other.
    std::uint64_t all = 0;
    std::uint64_t factor = 1;
    for (turn = 0; turn < sums.size(); ++turn) {
        const int bits = static_cast<int>(16 * turn);
        all += std::rotl(sums[turn], bits) * (factor *= 0x9E3779B97F4A7C15U);
        all += std::rotl(sumsOfSums[turn], bits + 8) * (factor *= 0x9E3779B97F4A7C15U);
    }
    return all ^ all >> 32U;
}

template <class Integer> void Append(std::string& bytes, Integer value) {
    bytes.resize(bytes.size() + sizeof value);
    StoreLittleEndian(std::span(bytes).last(sizeof value), value);
}

/// Takes an integer off the front.
template <class Integer> Integer Take(std::string_view& bytes) {
    const auto value = LoadLittleEndian<Integer>(bytes);
    bytes.remove_prefix(sizeof value);
    return value;
}

/// The checksums of the parts into which sectors and slots divide appended bytes. Parts, since a power cut
/// can leave each sector as it was; and slots, since another program that adds records adds whole ones.
template <class Visitor>
bool ForEachPart(std::uint64_t start, std::uint64_t end, std::uint64_t slotLength, const Visitor& visit) {
    std::uint64_t sectorEnd = (start / SectorLength + 1) * SectorLength;
    std::uint64_t slotEnd = (start / slotLength + 1) * slotLength;
    for (std::uint64_t at = start; at < end;) {
        const std::uint64_t partEnd = std::min({sectorEnd, slotEnd, end});
        if (!visit(at, partEnd)) return false;
        if (partEnd == sectorEnd) sectorEnd += SectorLength;
        if (partEnd == slotEnd) slotEnd += slotLength;
        at = partEnd;
    }
    return true;
}

using PartSum = std::uint16_t;

/// Short, since a part can be: the undo file of an import of usage has a sum for every 32 bytes, and a file
/// system takes 1 ms longer to remove one of twice the length.
PartSum SumOfPart(std::string_view bytes) {
    const std::uint64_t sum = Checksum(bytes, 0);
    return static_cast<PartSum>(sum ^ sum >> 16U);
}

std::string HeadBytes(const PlannedChange& change, std::uint64_t number) {
    std::string pieces;
    for (const Overwritten& piece : change.Pieces) {
        Append(pieces, piece.Offset);
        Append(pieces, static_cast<std::uint32_t>(piece.Old.size()));
        pieces += piece.Old;
        pieces += piece.New;
    }
    std::string bytes(Magic);
    Append(bytes, number);
    Append(bytes, change.OldLength);
    Append(bytes, change.SlotLength);
    Append(bytes, std::uint64_t{pieces.size()});
    Append(bytes, Checksum(pieces, Checksum(bytes, 0)));
    return bytes + pieces;
}

/// Empty if nothing is appended.
std::string AnnouncementBytes(const Appended& appended, std::uint64_t number, std::uint64_t slotLength) {
    if (appended.Bytes.empty()) return {};
    std::string rest;
    rest.reserve(appended.Bytes.size() /
                 128); // a part of materials has 361 bytes on average, one of usage 32
    Append(rest, appended.Offset);
    Append(rest, std::uint64_t{appended.Bytes.size()});
    ForEachPart(appended.Offset, appended.Offset + appended.Bytes.size(), slotLength,
                [&](std::uint64_t start, std::uint64_t end) {
                    Append(rest, SumOfPart(appended.Bytes.substr(start - appended.Offset, end - start)));
                    return true;
                });
    std::string bytes;
    Append(bytes, Checksum(rest, number));
    return bytes + rest;
}

/// What an undo file holds.
struct UndoContent {
    PlannedChange Change;
    struct Announcement {
        std::uint64_t Start; ///< bytes
        std::uint64_t End;
        std::string Sums; ///< a PartSum for each part
    };
    std::vector<Announcement> Announcements;
};

bool ParsePieces(std::string_view bytes, PlannedChange& change) {
    while (!bytes.empty()) {
        if (bytes.size() < PieceHeadLength) return false;
        Overwritten& piece = change.Pieces.emplace_back();
        piece.Offset = Take<std::uint64_t>(bytes);
        const std::size_t length = Take<std::uint32_t>(bytes);
        if (length == 0 || bytes.size() < 2 * length) return false;
        if (piece.Offset > change.OldLength || length > change.OldLength - piece.Offset) return false;
        piece.Old = bytes.substr(0, length);
        piece.New = bytes.substr(length, length);
        bytes.remove_prefix(2 * length);
    }
    return true;
}

/// Only what was flushed as a whole counts, and the rest behind it was never acted upon.
void ParseAnnouncements(std::string_view bytes, std::uint64_t number, UndoContent& content) {
    std::uint64_t end = content.Change.OldLength;
    while (bytes.size() >= AnnouncementHeadLength) {
        std::string_view rest = bytes.substr(8);
        const std::uint64_t sum = Take<std::uint64_t>(bytes);
        const auto start = Take<std::uint64_t>(bytes);
        const auto length = Take<std::uint64_t>(bytes);
        if (start < end || start > LongestRecordFile || length > LongestRecordFile) return;
        std::size_t sums = 0;
        ForEachPart(start, start + length, content.Change.SlotLength, [&](std::uint64_t, std::uint64_t) {
            sums += sizeof(PartSum);
            return sums <= bytes.size();
        });
        if (sums > bytes.size()) return;
        rest = rest.substr(0, AnnouncementHeadLength - 8 + sums);
        if (sum != Checksum(rest, number)) return;
        end = start + length;
        content.Announcements.push_back({start, end, std::string(bytes.substr(0, sums))});
        bytes.remove_prefix(sums);
    }
}

/// Empty if the undo file was never completed, or is void.
std::optional<UndoContent> Parse(std::string_view bytes) {
    if (bytes.size() < HeaderLength || !bytes.starts_with(Magic)) return std::nullopt;
    const std::string_view summed = bytes.substr(0, WithoutChecksum);
    bytes.remove_prefix(Magic.size());
    UndoContent content;
    const auto number = Take<std::uint64_t>(bytes);
    content.Change.OldLength = Take<std::uint64_t>(bytes);
    content.Change.SlotLength = Take<std::uint64_t>(bytes);
    const auto length = Take<std::uint64_t>(bytes);
    const auto sum = Take<std::uint64_t>(bytes);
    if (length > bytes.size() || content.Change.OldLength > LongestRecordFile) return std::nullopt;
    if (content.Change.SlotLength == 0 || content.Change.SlotLength > LongestRecordFile) return std::nullopt;
    const std::string_view pieces = bytes.substr(0, static_cast<std::size_t>(length));
    if (sum != Checksum(pieces, Checksum(summed, 0))) return std::nullopt;
    if (!ParsePieces(pieces, content.Change)) return std::nullopt;
    ParseAnnouncements(bytes.substr(pieces.size()), number, content);
    return content;
}

/// Whether every byte is the old or the new one.
Result<bool> HoldsOldOrNew(OpenedFile& file, const Overwritten& piece) {
    std::string present(piece.Old.size(), '\0');
    const Result<std::size_t> count = file.ReadAt(piece.Offset, present);
    if (!count) return count.error();
    if (*count < present.size()) return false;
    for (std::size_t at = 0; at < present.size(); ++at)
        if (present[at] != piece.Old[at] && present[at] != piece.New[at]) return false;
    return true;
}

/// Whether every part up to `length` holds what was announced, or zero bytes: a file can grow before its new
/// bytes reach the disk. The part in which the file ends was cut off while it was written.
Result<bool> HoldsAnnounced(OpenedFile& file, const UndoContent::Announcement& announced,
                            std::uint64_t slotLength, std::uint64_t length) {
    std::string_view sums = announced.Sums;
    std::string chunk; // as many parts as one reading yields
    std::uint64_t chunkStart = announced.Start;
    std::optional<Failure> failure;
    const bool isHeld =
        ForEachPart(announced.Start, announced.End, slotLength, [&](std::uint64_t start, std::uint64_t end) {
            const auto expected = Take<PartSum>(sums);
            if (end > length) return true;
            if (end > chunkStart + chunk.size()) {
                constexpr std::uint64_t chunkLength = std::uint64_t{1} << 18U; // bytes
                chunkStart = start;
                chunk.resize(static_cast<std::size_t>(std::min(length - start, chunkLength)));
                const Result<std::size_t> count = file.ReadAt(start, chunk);
                if (!count) failure = count.error();
                if (!count || *count < chunk.size()) return false;
            }
            const std::string_view part = std::string_view(chunk).substr(
                static_cast<std::size_t>(start - chunkStart), static_cast<std::size_t>(end - start));
            return SumOfPart(part) == expected || part.find_first_not_of('\0') == std::string_view::npos;
        });
    if (failure) return *failure;
    return isHeld;
}

/// Whether the change, begun and cut off anywhere, can have made the record file what it is.
Result<bool> Belongs(const UndoContent& content, OpenedFile& file, std::uint64_t length) {
    const std::uint64_t longest =
        content.Announcements.empty() ? content.Change.OldLength : content.Announcements.back().End;
    if (length < content.Change.OldLength || length > longest) return false;
    for (const Overwritten& piece : content.Change.Pieces) {
        const Result<bool> isHeld = HoldsOldOrNew(file, piece);
        if (!isHeld || !*isHeld) return isHeld;
    }
    for (const UndoContent::Announcement& announced : content.Announcements) {
        const Result<bool> isHeld = HoldsAnnounced(file, announced, content.Change.SlotLength, length);
        if (!isHeld || !*isHeld) return isHeld;
    }
    return true;
}

/// Names the record file first: the user does not know the undo file.
Failure CannotChange(const std::filesystem::path& recordFile, const Failure& ofUndoFile) {
    return {"write to the file", recordFile, ClauseOf(ofUndoFile)};
}

/// The whole undo file, or a byte more than the longest that counts.
Result<std::string> ReadAtMost(FileAccess& files, const std::filesystem::path& path) {
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(path, OpenMode::Read);
    if (!file) return file.error();
    const Result<std::uint64_t> length = (*file)->Length();
    if (!length) return length.error();
    std::string bytes(static_cast<std::size_t>(std::min<std::uint64_t>(*length, LongestUndoFile + 1)), '\0');
    const Result<std::size_t> count = (*file)->ReadAt(0, bytes);
    if (!count) return count.error();
    bytes.resize(*count);
    return bytes;
}

/// Returns once that is on the disk. A single byte, since of several a write that fails could leave some.
Done MakeVoid(OpenedFile& undoFile) {
    const Done written = undoFile.WriteAt(0, std::string_view("\0", 1));
    return written ? undoFile.Flush() : written;
}

/// Beside those set aside before, which nobody has looked at yet.
Done SetAside(FileAccess& files, const std::filesystem::path& recordFile) {
    const std::filesystem::path first = SetAsideUndoFileOf(recordFile);
    for (int number = 1;; ++number) {
        std::filesystem::path aside = first;
        if (number > 1) aside += std::to_string(number);
        const Result<bool> isTaken = files.HasOwn(aside);
        if (!isTaken) return isTaken.error();
        if (!*isTaken) return files.Rename(UndoFileOf(recordFile), aside);
    }
}

Result<UndoFinding> ReadOnce(FileAccess& files, const std::filesystem::path& recordFile,
                             OpenedFile& openFile) {
    UndoFinding finding;
    const std::filesystem::path path = UndoFileOf(recordFile);
    const Result<bool> isThere = files.HasOwn(path);
    if (!isThere) return isThere.error();
    if (!*isThere) return finding;
    // Before the undo file is read: a writer announces what it adds before it adds it.
    const Result<std::uint64_t> length = openFile.Length();
    if (!length) return length.error();
    const Result<std::string> bytes = ReadAtMost(files, path);
    if (!bytes) {
        // The change may have ended meanwhile.
        const Result<bool> isStillThere = files.HasOwn(path);
        if (isStillThere && !*isStillThere) return finding;
        return bytes.error();
    }
    finding.IsForeign = bytes->size() > LongestUndoFile;
    if (finding.IsForeign) return finding;
    std::optional<UndoContent> content = Parse(*bytes);
    finding.IsSurplus = !content;
    if (!content) return finding;
    const Result<bool> belongs = Belongs(*content, openFile, *length);
    if (!belongs) return belongs.error();
    finding.IsForeign = !*belongs;
    if (*belongs) finding.Before = OldState{content->Change.OldLength, std::move(content->Change.Pieces)};
    return finding;
}

std::filesystem::path WithSuffix(std::filesystem::path path, const char* suffix) {
    path += suffix;
    return path;
}

} // namespace

std::filesystem::path UndoFileOf(const std::filesystem::path& recordFile) {
    return WithSuffix(recordFile, ".mact.undo");
}
std::filesystem::path SetAsideUndoFileOf(const std::filesystem::path& recordFile) {
    return WithSuffix(recordFile, ".mact.undo.aside");
}

Result<UndoFile> UndoFile::Begin(FileAccess& files, const std::filesystem::path& recordFile,
                                 const PlannedChange& change, const Appended& appended) {
    const std::filesystem::path path = UndoFileOf(recordFile);
    const auto number =
        static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
    const std::string bytes =
        HeadBytes(change, number) + AnnouncementBytes(appended, number, change.SlotLength);
    if (bytes.size() > LongestUndoFile) // it would count as none of ours
        return Failure{"write to the file", recordFile, "too many records are to be changed at once"};
    Result<std::unique_ptr<OpenedFile>> file = files.Open(path, OpenMode::Own);
    if (!file) return CannotChange(recordFile, file.error());
    std::error_code ignored; // as private as the record file
    const std::filesystem::file_status status = std::filesystem::status(recordFile, ignored);
    if (std::filesystem::is_regular_file(status))
        std::filesystem::permissions(path, status.permissions(), ignored);

    UndoFile undo(files, recordFile, std::move(*file), number, change.SlotLength);
    const Done written = undo.Write(bytes);
    if (written) return undo;
    static_cast<void>(undo.m_file->CutTo(0));
    static_cast<void>(files.Remove(path)); // the first failure is the one to report
    return CannotChange(recordFile, written.error());
}

Done UndoFile::Announce(const Appended& appended) {
    const Done written = Write(AnnouncementBytes(appended, m_number, m_slotLength));
    return written ? written : CannotChange(m_recordFile, written.error());
}

Done UndoFile::Write(std::string_view bytes) {
    const Done written = m_file->WriteAt(m_length, bytes);
    if (!written) return written;
    m_length += bytes.size();
    return m_file->Flush();
}

Done UndoFile::End() {
    const Done isVoid = MakeVoid(*m_file);
    if (isVoid) {
        Remove(); // a void one that stays does no harm, and the next change writes over it
        return isVoid;
    }
    static_cast<void>(m_file->WriteAt(0, Magic.substr(0, 1))); // whole again, while the change is taken back
    return CannotChange(m_recordFile, isVoid.error());
}

void UndoFile::Remove() {
    static_cast<void>(m_files->Remove(UndoFileOf(m_recordFile)));
}

Result<UndoFinding> ReadUndoFile(FileAccess& files, const std::filesystem::path& recordFile,
                                 OpenedFile& openFile) {
    constexpr int mostTries = 3;
    for (int tries = 1;; ++tries) {
        Result<UndoFinding> finding = ReadOnce(files, recordFile, openFile);
        if (!finding || !finding->IsForeign || tries == mostTries) return finding;
        // Or a writer has announced and written more between the looks at one file and at the other.
    }
}

Done TakeBackUnfinished(FileAccess& files, const std::filesystem::path& recordFile, OpenedFile& openFile) {
    const Result<UndoFinding> finding = ReadUndoFile(files, recordFile, openFile);
    if (!finding) return finding.error();
    const std::filesystem::path path = UndoFileOf(recordFile);
    if (finding->IsForeign) return SetAside(files, recordFile);
    if (finding->Before) {
        for (const Overwritten& piece : finding->Before->Pieces) {
            const Done restored = openFile.WriteAt(piece.Offset, piece.Old);
            if (!restored) return restored;
        }
        Done restored = openFile.CutTo(finding->Before->Length);
        // On the disk before the undo file goes.
        if (restored) restored = openFile.Flush();
        if (!restored) return restored;
        const Result<std::unique_ptr<OpenedFile>> undo = files.Open(path, OpenMode::Own);
        if (!undo) return undo.error();
        const Done isVoid = MakeVoid(**undo);
        if (!isVoid) return isVoid;
    }
    if (finding->Before || finding->IsSurplus)
        static_cast<void>(files.Remove(path)); // a void one does no harm
    return Success();
}

Result<std::string> ReadUndoMark(FileAccess& files, const std::filesystem::path& recordFile) {
    const std::filesystem::path path = UndoFileOf(recordFile);
    const Result<bool> isThere = files.HasOwn(path);
    if (!isThere) return isThere.error();
    if (!*isThere) return std::string();
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(path, OpenMode::Read);
    if (!file) return std::string(); // it has just been removed, or reading the record file fails too
    std::string mark(HeaderLength, '\0');
    const Result<std::size_t> count = (*file)->ReadAt(0, mark);
    return count && *count == mark.size() && mark.starts_with(Magic) ? mark : std::string();
}
} // namespace mact
