#include "base/link_guard.h"

#include "base/text.h"

#include <algorithm>
#include <string_view>
#include <system_error>

namespace mact {
namespace {

/// The program's own files in its folder; those in the data folder need no list.
constexpr std::string_view NamesInProgramFolder[] = {
    "report.htm",
    "report2.htm",
    "report3.htm",
    "report4.htm",
    "report5.htm",
    "material_import_errors.txt",
    "usage_import_errors.txt",
    "usage_export_errors.txt",
    "backup.bat",
};

bool AreSame(const std::filesystem::path& left, const std::filesystem::path& right) {
    std::error_code error; // one that does not exist is the same as none
    return std::filesystem::equivalent(left, right, error) && !error;
}

} // namespace

LinkGuard::LinkGuard(FileAccess& files, std::filesystem::path programFolder,
                     std::filesystem::path settingsFile)
    : m_files(files), m_programFolder(std::move(programFolder)), m_dataFolder(m_programFolder / "data"),
      m_settingsFile(std::move(settingsFile)) {}

Result<std::unique_ptr<OpenedFile>> LinkGuard::Open(const std::filesystem::path& path, OpenMode mode) {
    // A file of the user's may be read whatever it leads to, and the program's temporary names are not
    // followed.
    const bool isChecked = mode != OpenMode::Own && (mode != OpenMode::Read || IsOwnName(path));
    const Done checked = isChecked ? CheckLink(path) : Success();
    if (!checked) return checked.error();
    return m_files.Open(path, mode);
}

Done LinkGuard::CheckLink(const std::filesystem::path& path) {
    if (m_files.KindOfName(path) == NameKind::Plain) return Success(); // nearly always
    const std::optional<std::filesystem::path> other = OtherOwnFileAt(path);
    if (!other) return Success();
    return Failure{"work with the file", path,
                   "it is a link to another file of the program, \"" + PathText(*other) + '"'};
}

bool LinkGuard::IsOwnName(const std::filesystem::path& path) const {
    const std::filesystem::path folder = path.parent_path();
    if (folder == m_dataFolder || path == m_settingsFile) return true;
    return folder == m_programFolder && std::ranges::find(NamesInProgramFolder, PathText(path.filename())) !=
                                            std::end(NamesInProgramFolder);
}

std::vector<std::filesystem::path> LinkGuard::OwnFiles() const {
    std::vector<std::filesystem::path> own;
    for (const std::string_view name : NamesInProgramFolder)
        own.push_back(m_programFolder / name);
    if (!m_settingsFile.empty()) own.push_back(m_settingsFile);
    std::error_code error;
    for (std::filesystem::directory_iterator entry(m_dataFolder, error), end; !error && entry != end;
         entry.increment(error))
        own.push_back(entry->path());
    return own;
}

std::optional<std::filesystem::path> LinkGuard::OtherOwnFileAt(const std::filesystem::path& path) {
    for (const std::filesystem::path& own : OwnFiles()) {
        // A link among them is none of the program's files: what it leads to may be the user's, or a device.
        if (AreSame(own, path) && m_files.KindOfName(own) != NameKind::Link && !AreSameName(own, path))
            return own;
    }
    // A link to a file that is still missing would create it.
    const std::filesystem::path target = EndOfLinks(path);
    std::error_code ignored;
    if (target == path || std::filesystem::exists(target, ignored)) return std::nullopt;
    const std::filesystem::path folder = target.parent_path();
    for (const std::filesystem::path& known : {m_dataFolder, m_programFolder, m_settingsFile.parent_path()}) {
        const std::filesystem::path place = known / target.filename();
        if (AreSame(known, folder) && IsOwnName(place) && !AreSameName(place, path)) return place;
    }
    return std::nullopt;
}
} // namespace mact
