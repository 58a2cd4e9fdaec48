#pragma once

#include "base/files.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>

namespace mact {

/// Files that exist only in memory, for tests that work with a great many of them. There are no folders and
/// no locks, and the only failure is a file that does not exist.
class MemoryFiles : public FileAccess {
public:
    /// Creates an empty file if there is none.
    std::string& operator[](const std::filesystem::path& path) {
        std::shared_ptr<Content>& content = m_files[path];
        if (!content) content = std::make_shared<Content>();
        return content->Bytes;
    }
    /// All files by their names.
    std::map<std::filesystem::path, std::string> Contents() const {
        std::map<std::filesystem::path, std::string> contents;
        for (const auto& [path, content] : m_files)
            contents[path] = content->Bytes;
        return contents;
    }
    bool Has(const std::filesystem::path& path) const { return m_files.contains(path); }

    Result<std::unique_ptr<OpenedFile>> Open(const std::filesystem::path& path, OpenMode mode) override {
        if (mode == OpenMode::Read && !Has(path)) return Missing(path);
        std::string& content = (*this)[path];
        if (mode == OpenMode::Replace) content.clear();
        return std::unique_ptr<OpenedFile>(std::make_unique<MemoryFile>(m_files[path]));
    }
    Done Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
        if (!Has(from)) return Missing(from);
        m_files[to] = m_files[from];
        m_files.erase(from);
        return Success();
    }
    Done Remove(const std::filesystem::path& path) override {
        if (m_files.erase(path) == 0) return Missing(path);
        return Success();
    }
    Result<bool> HasOwn(const std::filesystem::path& path) override { return Has(path); }
    Done CreateFolder(const std::filesystem::path&) override { return Success(); }

private:
    struct Content {
        std::string Bytes;
        std::int64_t Time = 0; ///< the number of changes
    };

    class MemoryFile : public OpenedFile {
    public:
        explicit MemoryFile(std::shared_ptr<Content> content) : m_content(std::move(content)) {}

        Result<std::uint64_t> Length() override { return std::uint64_t{m_content->Bytes.size()}; }
        Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> bytes) override {
            if (offset >= m_content->Bytes.size()) return std::size_t{0};
            return m_content->Bytes.copy(bytes.data(), bytes.size(), static_cast<std::size_t>(offset));
        }
        Done WriteAt(std::uint64_t offset, std::string_view bytes) override {
            const auto start = static_cast<std::size_t>(offset);
            std::string& content = m_content->Bytes;
            if (content.size() < start + bytes.size()) content.resize(start + bytes.size());
            content.replace(start, bytes.size(), bytes);
            ++m_content->Time;
            return Success();
        }
        Done CutTo(std::uint64_t length) override {
            m_content->Bytes.resize(std::min(m_content->Bytes.size(), static_cast<std::size_t>(length)));
            ++m_content->Time;
            return Success();
        }
        Done Flush() override { return Success(); }
        Done Lock() override { return Success(); }
        Result<std::int64_t> TimeOfChange() override { return m_content->Time; }
        Done MakeTimeDifferFrom(std::int64_t earlier) override {
            m_content->Time = std::max(m_content->Time, earlier + 1);
            return Success();
        }

    private:
        std::shared_ptr<Content> m_content;
    };

    static Failure Missing(const std::filesystem::path& path) {
        return {"There is no file \"" + path.string() + "\"."};
    }

    std::map<std::filesystem::path, std::shared_ptr<Content>> m_files;
};
} // namespace mact
