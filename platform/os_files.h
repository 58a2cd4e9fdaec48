#pragma once

#include "base/files.h"

namespace mact {

/// The operating system's files. A lock is advisory, so readers do not wait, and belongs to one open file.
class OsFiles : public FileAccess {
public:
    Result<std::unique_ptr<OpenedFile>> Open(const std::filesystem::path& path, OpenMode mode) override;
    Done Rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
    Done Remove(const std::filesystem::path& path) override;
    Result<bool> HasOwn(const std::filesystem::path& path) override;
    Done CreateFolder(const std::filesystem::path& path) override;
    Done RenameFolder(const std::filesystem::path& from, const std::filesystem::path& to) override;
    Done FlushFolder(const std::filesystem::path& path) override;
    bool RenamesFoldersInUse() const override;
    Done AllowOpenFiles(std::size_t count) override;
    NameKind KindOfName(const std::filesystem::path& path) override;
};
} // namespace mact
