#pragma once

#include "platform/os_files.h"

#include <filesystem>
#include <memory>
#include <utility>

namespace mact {

/// The operating system's files, for tests that override some of their operations.

class WrappedFile : public OpenedFile {
public:
    explicit WrappedFile(std::unique_ptr<OpenedFile> file) : m_file(std::move(file)) {}

    Result<std::uint64_t> Length() override { return m_file->Length(); }
    Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> bytes) override {
        return m_file->ReadAt(offset, bytes);
    }
    Done WriteAt(std::uint64_t offset, std::string_view bytes) override {
        return m_file->WriteAt(offset, bytes);
    }
    Done CutTo(std::uint64_t length) override { return m_file->CutTo(length); }
    Done Flush() override { return m_file->Flush(); }
    Done Lock() override { return m_file->Lock(); }
    Result<std::int64_t> TimeOfChange() override { return m_file->TimeOfChange(); }
    Done MakeTimeDifferFrom(std::int64_t earlier) override { return m_file->MakeTimeDifferFrom(earlier); }

private:
    std::unique_ptr<OpenedFile> m_file;
};

class WrappedFiles : public FileAccess {
public:
    Result<std::unique_ptr<OpenedFile>> Open(const std::filesystem::path& path, OpenMode mode) override {
        return m_files.Open(path, mode);
    }
    Done Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
        return m_files.Rename(from, to);
    }
    Done Remove(const std::filesystem::path& path) override { return m_files.Remove(path); }
    Result<bool> HasOwn(const std::filesystem::path& path) override { return m_files.HasOwn(path); }
    Done CreateFolder(const std::filesystem::path& path) override { return m_files.CreateFolder(path); }
    Done RenameFolder(const std::filesystem::path& from, const std::filesystem::path& to) override {
        return m_files.RenameFolder(from, to);
    }
    Done FlushFolder(const std::filesystem::path& path) override { return m_files.FlushFolder(path); }
    bool RenamesFoldersInUse() const override { return m_files.RenamesFoldersInUse(); }
    Done AllowOpenFiles(std::size_t count) override { return m_files.AllowOpenFiles(count); }
    NameKind KindOfName(const std::filesystem::path& path) override { return m_files.KindOfName(path); }

private:
    OsFiles m_files;
};
} // namespace mact
