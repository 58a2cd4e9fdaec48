#pragma once

#include "app/os_files.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>

/// What goes wrong with a file.
struct FileLimits {
    std::optional<std::uint64_t> LongestFile{}; ///< bytes; what lies beyond cannot be written or read
    bool CannotBeFlushed = false;
    bool IsLocked = false; ///< by another running copy
};

/// The operating system's files, some of which fail: as a disk that is full, or damaged, from some byte on.
class LimitedFiles : public FileAccess {
public:
    std::map<std::filesystem::path, FileLimits> Limits;

    Result<std::unique_ptr<OpenFile>> Open(const std::filesystem::path& path, OpenMode mode) override {
        Result<std::unique_ptr<OpenFile>> file = m_files.Open(path, mode);
        const auto limits = Limits.find(path);
        if (!file || limits == Limits.end()) return file;
        return std::unique_ptr<OpenFile>(std::make_unique<LimitedFile>(std::move(*file), limits->second));
    }
    Done Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
        return m_files.Rename(from, to);
    }
    Done Remove(const std::filesystem::path& path) override { return m_files.Remove(path); }
    Done CreateFolder(const std::filesystem::path& path) override { return m_files.CreateFolder(path); }

private:
    class LimitedFile : public OpenFile {
    public:
        LimitedFile(std::unique_ptr<OpenFile> file, const FileLimits& limits)
            : m_file(std::move(file)), m_limits(limits) {}

        Result<std::uint64_t> Length() override { return m_file->Length(); }
        Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> bytes) override {
            const Result<std::size_t> count = m_file->ReadAt(offset, bytes);
            if (count && m_limits.LongestFile && offset + *count > *m_limits.LongestFile)
                return Failure{"The disk is damaged."};
            return count;
        }
        Done WriteAt(std::uint64_t offset, std::string_view bytes) override {
            const std::uint64_t longest = m_limits.LongestFile.value_or(UINT64_MAX);
            if (offset + bytes.size() <= longest) return m_file->WriteAt(offset, bytes);
            if (offset < longest)
                static_cast<void>(m_file->WriteAt(offset, bytes.substr(0, longest - offset)));
            return Failure{"The disk is full."};
        }
        Done CutTo(std::uint64_t length) override { return m_file->CutTo(length); }
        Done Flush() override {
            if (m_limits.CannotBeFlushed) return Failure{"The disk is gone."};
            return m_file->Flush();
        }
        Done Lock() override {
            if (m_limits.IsLocked) return Failure{"The file is locked."};
            return m_file->Lock();
        }

    private:
        std::unique_ptr<OpenFile> m_file;
        const FileLimits& m_limits;
    };

    OsFiles m_files;
};
