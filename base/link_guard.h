#pragma once

#include "base/files.h"

#include <optional>
#include <vector>

namespace mact {

/// The files of the program, behind a guard: at no name of its own, and at none that the user chooses, does
/// the program open a link to another file of its own. Otherwise a report could be written over a data file.
///
/// Its own files are whatever the data folder holds, the reports, the logs and the backup script in the
/// program folder, and the settings. All other links are followed, to devices too. Both kinds of links count:
/// those that hold a path, and second names of one file.
class LinkGuard : public FileAccess {
public:
    /// `settingsFile` may be empty. `files` must outlive the guard.
    LinkGuard(FileAccess& files, std::filesystem::path programFolder, std::filesystem::path settingsFile);

    Result<std::unique_ptr<OpenedFile>> Open(const std::filesystem::path& path, OpenMode mode) override;
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
    Done CheckLink(const std::filesystem::path& path) override;

private:
    bool IsOwnName(const std::filesystem::path& path) const;
    std::vector<std::filesystem::path> OwnFiles() const;
    /// The file of the program, other than `path` itself, to which `path` leads.
    std::optional<std::filesystem::path> OtherOwnFileAt(const std::filesystem::path& path);

    FileAccess& m_files;
    std::filesystem::path m_programFolder;
    std::filesystem::path m_dataFolder;
    std::filesystem::path m_settingsFile;
};
} // namespace mact
