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
        std::shared_ptr<std::string>& content = m_files[path];
        if (!content) content = std::make_shared<std::string>();
        return *content;
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
    Done CreateFolder(const std::filesystem::path&) override { return Success(); }

private:
    class MemoryFile : public OpenedFile {
    public:
        explicit MemoryFile(std::shared_ptr<std::string> content) : m_content(std::move(content)) {}

        Result<std::uint64_t> Length() override { return std::uint64_t{m_content->size()}; }
        Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> bytes) override {
            if (offset >= m_content->size()) return std::size_t{0};
            return m_content->copy(bytes.data(), bytes.size(), static_cast<std::size_t>(offset));
        }
        Done WriteAt(std::uint64_t offset, std::string_view bytes) override {
            const auto start = static_cast<std::size_t>(offset);
            if (m_content->size() < start + bytes.size()) m_content->resize(start + bytes.size());
            m_content->replace(start, bytes.size(), bytes);
            return Success();
        }
        Done CutTo(std::uint64_t length) override {
            m_content->resize(std::min(m_content->size(), static_cast<std::size_t>(length)));
            return Success();
        }
        Done Flush() override { return Success(); }
        Done Lock() override { return Success(); }

    private:
        std::shared_ptr<std::string> m_content;
    };

    static Failure Missing(const std::filesystem::path& path) {
        return {"There is no file \"" + path.string() + "\"."};
    }

    std::map<std::filesystem::path, std::shared_ptr<std::string>> m_files;
};
} // namespace mact
