#pragma once

#include "base/files.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// The undo file beside a record file: what is needed to take back a change that was cut off.
///
/// Before a record file is changed, its length and the bytes about to be overwritten are written to the undo
/// file and flushed. Once the change itself is on the disk, the first byte of the undo file is overwritten
/// with zero and flushed, and the file is removed. So an undo file that is whole means that the change has
/// not happened: who opens the record file reads it as it was, and the next writer, holding the lock, puts
/// the old bytes back. docs/file-formats.md describes the format, docs/reliability.md what it promises.

/// Names that only the program uses, so links there are never followed.
std::filesystem::path UndoFileOf(const std::filesystem::path& recordFile);
/// Where an undo file is put that does not belong to its record file; a further one gets a number behind that
/// name. The check of the data reports them.
std::filesystem::path SetAsideUndoFileOf(const std::filesystem::path& recordFile);

/// A piece of a record file that a change overwrites. Both texts have the same length.
struct Overwritten {
    std::uint64_t Offset = 0; ///< bytes
    std::string Old;
    std::string New;
};

/// Bytes that a change appends. Their content is known to the undo file only by checksums.
struct Appended {
    std::uint64_t Offset = 0; ///< bytes; may lie beyond the old end: the gap becomes zero bytes
    std::string_view Bytes;
};

/// The change that an undo file takes back.
struct PlannedChange {
    std::uint64_t OldLength = 0;  ///< of the record file, in bytes
    std::uint64_t SlotLength = 0; ///< bytes
    std::vector<Overwritten> Pieces{};
};

/// The undo file of a change under way.
class UndoFile {
public:
    /// Returns once it is on the disk; then, and not before, the record file may be changed as announced. The
    /// record file must be locked. After a failure no undo file is left, or one that changes nothing.
    static Result<UndoFile> Begin(FileAccess& files, const std::filesystem::path& recordFile,
                                  const PlannedChange& change, const Appended& appended);
    /// Announces more bytes, behind those announced so far. Returns once that is on the disk.
    Done Announce(const Appended& appended);
    /// To be called once the change is on the disk: makes the undo file void, on the disk too, and removes
    /// it. After a failure it stays whole, as far as possible, to take the change back.
    Done End();
    /// Removes it as it is, if it would change nothing any more.
    void Remove();

private:
    UndoFile(FileAccess& files, std::filesystem::path recordFile, std::unique_ptr<OpenedFile> file,
             std::uint64_t number, std::uint64_t slotLength)
        : m_files(&files), m_recordFile(std::move(recordFile)), m_file(std::move(file)), m_number(number),
          m_slotLength(slotLength) {}
    /// Adds the bytes at the end.
    Done Write(std::string_view bytes);

    FileAccess* m_files;
    std::filesystem::path m_recordFile;
    std::unique_ptr<OpenedFile> m_file;
    std::uint64_t m_number; ///< tells the changes of a file apart
    std::uint64_t m_slotLength;
    std::uint64_t m_length = 0; ///< bytes written
};

/// The state before a change that has not happened.
struct OldState {
    std::uint64_t Length = 0; ///< of the record file, in bytes
    std::vector<Overwritten> Pieces{};
};

/// What a record file's undo file says about it.
struct UndoFinding {
    bool IsSurplus = false; ///< an undo file is there that says nothing: void, or never completed
    bool IsForeign = false; ///< a whole undo file is there, but the record file is not the one it is of
    std::optional<OldState> Before; ///< empty = there is nothing to take back
};
/// `openFile` is the record file. A Failure if the undo file cannot be read.
Result<UndoFinding> ReadUndoFile(FileAccess& files, const std::filesystem::path& recordFile,
                                 OpenedFile& openFile);

/// Takes back a change that was cut off. The record file must be open for writing, and locked. An undo file
/// that does not belong to it is set aside.
Done TakeBackUnfinished(FileAccess& files, const std::filesystem::path& recordFile, OpenedFile& openFile);

/// Identifies the change under way; empty if there is none.
Result<std::string> ReadUndoMark(FileAccess& files, const std::filesystem::path& recordFile);
} // namespace mact
