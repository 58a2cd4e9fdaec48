#pragma once

#include "tests/support/wrapped_files.h"

#include <map>
#include <optional>

namespace mact {

/// What goes wrong with a file.
struct FileLimits {
    std::optional<std::uint64_t> LongestFile{}; ///< bytes; nothing beyond can be written or read
    bool CannotBeCut = false;
    bool CannotBeFlushed = false;
    bool IsLocked = false; ///< by another running copy
};

/// The operating system's files, some of which fail like a disk that is full or damaged from some byte on.
class LimitedFiles : public WrappedFiles {
public:
    std::map<std::filesystem::path, FileLimits> Limits;

    Result<std::unique_ptr<OpenedFile>> Open(const std::filesystem::path& path, OpenMode mode) override {
        Result<std::unique_ptr<OpenedFile>> file = WrappedFiles::Open(path, mode);
        const auto limits = Limits.find(path);
        if (!file || limits == Limits.end()) return file;
        return std::unique_ptr<OpenedFile>(std::make_unique<LimitedFile>(std::move(*file), limits->second));
    }

private:
    class LimitedFile : public WrappedFile {
    public:
        LimitedFile(std::unique_ptr<OpenedFile> file, const FileLimits& limits)
            : WrappedFile(std::move(file)), m_limits(limits) {}

        Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> bytes) override {
            const Result<std::size_t> count = WrappedFile::ReadAt(offset, bytes);
            if (count && m_limits.LongestFile && offset + *count > *m_limits.LongestFile)
                return Failure{.Reason = "The disk is damaged"};
            return count;
        }
        Done WriteAt(std::uint64_t offset, std::string_view bytes) override {
            const std::uint64_t longest = m_limits.LongestFile.value_or(UINT64_MAX);
            if (offset + bytes.size() <= longest) return WrappedFile::WriteAt(offset, bytes);
            if (offset < longest)
                static_cast<void>(WrappedFile::WriteAt(offset, bytes.substr(0, longest - offset)));
            return Failure{.Reason = "The disk is full"};
        }
        Done CutTo(std::uint64_t length) override {
            if (m_limits.CannotBeCut) return Failure{.Reason = "The file cannot be cut"};
            return WrappedFile::CutTo(length);
        }
        Done Flush() override {
            if (m_limits.CannotBeFlushed) return Failure{.Reason = "The disk is gone"};
            return WrappedFile::Flush();
        }
        Done Lock() override {
            if (m_limits.IsLocked) return Failure{.Reason = "The file is locked"};
            return WrappedFile::Lock();
        }

    private:
        const FileLimits& m_limits;
    };
};
} // namespace mact
