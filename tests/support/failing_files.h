#pragma once

#include "base/text.h"
#include "platform/os_lock.h"
#include "tests/support/wrapped_files.h"

#include <set>
#include <string>
#include <string_view>

namespace mact {

enum class FaultKind {
    Once,        ///< the operation fails and has done nothing
    HalfWritten, ///< the same, but a write has written half of its bytes
    IsFull,      ///< fails as with Once, and so does every later write
    FillsUp,     ///< fails as with HalfWritten, and every later write fails as with Once
    IsGone,      ///< fails as with HalfWritten, and every later operation fails as with Once
};

inline constexpr std::string_view DiskIsFull = "No space left on device";
inline constexpr std::string_view DiskIsDamaged = "Input/output error";
inline constexpr std::string_view NotPermitted = "Permission denied";

/// Which operation fails, counted from 1 over all files; 0 = none.
struct Fault {
    int At = 0;
    FaultKind Kind = FaultKind::Once;
    std::string_view Reason = DiskIsFull; ///< without a period
};

/// The operating system's files, of which one operation fails. Flush does not wait for the disk, but which
/// files were flushed is recorded.
class FailingFiles : public WrappedFiles {
public:
    /// Sets the fault and counts from 1 again.
    void Start(Fault fault) {
        m_fault = fault;
        m_count = 0;
        m_hasFailedInAWrite = false;
        m_notRemoved.clear();
        m_unflushed.clear();
        m_renamedUnflushed.clear();
    }
    int Count() const { return m_count; }
    /// Whether the operation that failed was a write.
    bool HasFailedInAWrite() const { return m_hasFailedInAWrite; }
    /// The last file that could not be removed; empty if there is none.
    const std::filesystem::path& NotRemoved() const { return m_notRemoved; }
    /// The files that were changed and not flushed since, except those that no longer exist.
    const std::set<std::string>& Unflushed() const { return m_unflushed; }
    /// The files that were renamed before they were flushed.
    const std::set<std::string>& RenamedUnflushed() const { return m_renamedUnflushed; }

    Result<std::unique_ptr<OpenedFile>> Open(const std::filesystem::path& path, OpenMode mode) override {
        if (Fails()) return Failed("open the file", path);
        Result<std::unique_ptr<OpenedFile>> file = WrappedFiles::Open(path, mode);
        if (!file) return file;
        if (mode == OpenMode::Replace) m_unflushed.insert(PathText(path));
        return std::unique_ptr<OpenedFile>(std::make_unique<FailingFile>(std::move(*file), *this, path));
    }
    Done Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
        if (Fails()) return Failed("replace the file", to);
        Done renamed = WrappedFiles::Rename(from, to);
        if (!renamed) return renamed;
        m_unflushed.erase(PathText(to));
        if (m_unflushed.erase(PathText(from)) == 0) return renamed;
        m_unflushed.insert(PathText(to));
        m_renamedUnflushed.insert(PathText(from));
        return renamed;
    }
    Done Remove(const std::filesystem::path& path) override {
        if (Fails()) {
            m_notRemoved = path;
            return Failed("remove the file", path);
        }
        Done removed = WrappedFiles::Remove(path);
        if (removed) m_unflushed.erase(PathText(path));
        return removed;
    }
    Result<bool> HasOwn(const std::filesystem::path& path) override {
        if (Fails()) return Failed("look for the file", path);
        return WrappedFiles::HasOwn(path);
    }
    Done CreateFolder(const std::filesystem::path& path) override {
        if (Fails()) return Failed("create the folder", path);
        return WrappedFiles::CreateFolder(path);
    }
    Done RenameFolder(const std::filesystem::path& from, const std::filesystem::path& to) override {
        if (Fails()) return Failed("rename the folder", from);
        return WrappedFiles::RenameFolder(from, to);
    }
    Done FlushFolder(const std::filesystem::path& path) override {
        if (Fails()) return Failed("write to the disk what was changed in the folder", path);
        return Success();
    }

private:
    bool IsNow() const { return m_count == m_fault.At; }
    bool IsPast() const { return m_fault.At != 0 && m_count > m_fault.At; }
    bool Fails() {
        ++m_count;
        return IsNow() || (IsPast() && m_fault.Kind == FaultKind::IsGone);
    }
    bool WriteFails() {
        const bool isFull = m_fault.Kind == FaultKind::IsFull || m_fault.Kind == FaultKind::FillsUp;
        return Fails() || (IsPast() && isFull);
    }
    bool WritesHalf() const {
        return IsNow() && m_fault.Kind != FaultKind::Once && m_fault.Kind != FaultKind::IsFull;
    }
    Failure Failed(std::string_view doing, const std::filesystem::path& path) const {
        return {std::string(doing), path, std::string(m_fault.Reason)};
    }

    class FailingFile : public WrappedFile {
    public:
        FailingFile(std::unique_ptr<OpenedFile> file, FailingFiles& files, std::filesystem::path path)
            : WrappedFile(std::move(file)), m_files(files), m_path(std::move(path)) {}

        Result<std::uint64_t> Length() override {
            if (m_files.Fails()) return m_files.Failed("read the length of the file", m_path);
            return WrappedFile::Length();
        }
        Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> bytes) override {
            if (m_files.Fails()) return m_files.Failed("read from the file", m_path);
            return WrappedFile::ReadAt(offset, bytes);
        }
        Done WriteAt(std::uint64_t offset, std::string_view bytes) override {
            if (!m_files.WriteFails()) {
                NoteChange();
                return WrappedFile::WriteAt(offset, bytes);
            }
            m_files.m_hasFailedInAWrite |= m_files.IsNow();
            if (m_files.WritesHalf()) {
                NoteChange();
                const Done half = WrappedFile::WriteAt(offset, bytes.substr(0, bytes.size() / 2));
                if (!half) return half;
            }
            return m_files.Failed("write to the file", m_path);
        }
        Done CutTo(std::uint64_t length) override {
            if (m_files.Fails()) return m_files.Failed("shorten the file", m_path);
            NoteChange();
            return WrappedFile::CutTo(length);
        }
        Done Flush() override {
            if (m_files.Fails())
                return m_files.Failed("write to the disk what was saved in the file", m_path);
            m_files.m_unflushed.erase(PathText(m_path));
            return Success();
        }
        Done Lock() override {
            if (m_files.Fails()) return m_files.Failed("lock the file", m_path);
            return WrappedFile::Lock();
        }

    private:
        void NoteChange() { m_files.m_unflushed.insert(PathText(m_path)); }

        FailingFiles& m_files;
        std::filesystem::path m_path;
    };

    Fault m_fault;
    int m_count = 0;
    bool m_hasFailedInAWrite = false;
    std::filesystem::path m_notRemoved;
    std::set<std::string> m_unflushed;
    std::set<std::string> m_renamedUnflushed;
};
} // namespace mact
