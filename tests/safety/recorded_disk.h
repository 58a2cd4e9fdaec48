#pragma once

#include "tests/support/memory_files.h"
#include "tests/support/wrapped_files.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace mact {

/// What is done to a disk, step by step, and what a power cut can leave of it.

/// A step that reaches the disk only once it is flushed.
struct DiskStep {
    enum class Kind { Create, Write, Cut, Flush, FlushFolder, Rename, RenameFolder, Remove };
    Kind What;
    std::filesystem::path Path{};   ///< of FlushFolder, empty = all folders
    std::filesystem::path Target{}; ///< of Rename and RenameFolder
    std::uint64_t Offset = 0;       ///< of Write; the new length of Cut
    std::string Bytes{};
};

/// The files by their names.
using DiskContent = std::map<std::filesystem::path, std::string>;

/// Files in memory that note every step. Like the operating system's (platform/os_files_posix.cpp), they
/// flush the folder when a file is created or renamed, that of one opened as Own with its first flush, and
/// not when one is removed.
class RecordedFiles : public MemoryFiles {
public:
    std::vector<DiskStep> Steps;

    Result<std::unique_ptr<OpenedFile>> Open(const std::filesystem::path& path, OpenMode mode) override {
        const bool isNew = mode != OpenMode::Read && !Has(path);
        Result<std::unique_ptr<OpenedFile>> file = MemoryFiles::Open(path, mode);
        if (!file) return file;
        if (isNew) {
            Steps.push_back({.What = DiskStep::Kind::Create, .Path = path});
            if (mode != OpenMode::Own) Steps.push_back({.What = DiskStep::Kind::FlushFolder});
        } else if (mode == OpenMode::Replace) {
            Steps.push_back({.What = DiskStep::Kind::Cut, .Path = path});
        }
        return std::unique_ptr<OpenedFile>(
            std::make_unique<RecordedFile>(std::move(*file), *this, path, mode));
    }
    Done Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
        Steps.push_back({.What = DiskStep::Kind::Rename, .Path = from, .Target = to});
        Steps.push_back({.What = DiskStep::Kind::FlushFolder});
        return MemoryFiles::Rename(from, to);
    }
    Done Remove(const std::filesystem::path& path) override {
        Steps.push_back({.What = DiskStep::Kind::Remove, .Path = path});
        return MemoryFiles::Remove(path);
    }

private:
    class RecordedFile : public WrappedFile {
    public:
        RecordedFile(std::unique_ptr<OpenedFile> file, RecordedFiles& files, std::filesystem::path path,
                     OpenMode mode)
            : WrappedFile(std::move(file)), m_files(files), m_path(std::move(path)),
              m_isNameUnflushed(mode == OpenMode::Own) {}

        Done WriteAt(std::uint64_t offset, std::string_view bytes) override {
            m_files.Steps.push_back({.What = DiskStep::Kind::Write,
                                     .Path = m_path,
                                     .Offset = offset,
                                     .Bytes = std::string(bytes)});
            return WrappedFile::WriteAt(offset, bytes);
        }
        Done CutTo(std::uint64_t length) override {
            m_files.Steps.push_back({.What = DiskStep::Kind::Cut, .Path = m_path, .Offset = length});
            return WrappedFile::CutTo(length);
        }
        Done Flush() override {
            m_files.Steps.push_back({.What = DiskStep::Kind::Flush, .Path = m_path});
            if (std::exchange(m_isNameUnflushed, false))
                m_files.Steps.push_back({.What = DiskStep::Kind::FlushFolder});
            return WrappedFile::Flush();
        }

    private:
        RecordedFiles& m_files;
        std::filesystem::path m_path;
        bool m_isNameUnflushed;
    };
};

/// What can be on the disk after some first steps and a power cut: whatever was not flushed is there or not,
/// each change of a folder, each change of a length and each 512-byte sector by itself.
class PowerCut {
public:
    /// The power goes after the first `count` of `steps`.
    PowerCut(const DiskContent& before, const std::vector<DiskStep>& steps, std::size_t count);

    /// How many changes may be there or not.
    std::size_t OpenCount() const { return m_openCount; }
    /// The content if of those changes the ones are there for which `isThere` says so. It is asked once for
    /// each.
    DiskContent Content(const std::function<bool()>& isThere) const;

private:
    bool IsFlushed(std::size_t step) const;

    const DiskContent& m_before;
    const std::vector<DiskStep>& m_steps;
    std::size_t m_count;
    std::vector<bool> m_isFlushed; ///< by step
    std::size_t m_openCount = 0;
};
} // namespace mact
