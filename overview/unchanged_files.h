#pragma once

#include "base/files.h"

namespace mact {

/// Files that are read and never changed, for routines that would create a missing file while they only look:
/// they see an empty one, and whatever else they do to files succeeds without being done.
class UnchangedFiles : public FileAccess {
public:
    /// `files` must outlive it.
    explicit UnchangedFiles(FileAccess& files) : m_files(files) {}

    Result<std::unique_ptr<OpenedFile>> Open(const std::filesystem::path& path, OpenMode mode) override;
    Done Rename(const std::filesystem::path&, const std::filesystem::path&) override { return Success(); }
    Done Remove(const std::filesystem::path&) override { return Success(); }
    Result<bool> HasOwn(const std::filesystem::path& path) override { return m_files.HasOwn(path); }
    Done CreateFolder(const std::filesystem::path&) override { return Success(); }
    NameKind KindOfName(const std::filesystem::path& path) override { return m_files.KindOfName(path); }
    Done CheckLink(const std::filesystem::path& path) override { return m_files.CheckLink(path); }

private:
    FileAccess& m_files;
};
} // namespace mact
