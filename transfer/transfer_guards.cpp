#include "transfer/transfer_guards.h"

#include "base/text.h"
#include "store/data_folder.h"

#include <system_error>

namespace mact {
namespace {

/// Whatever the paths look like; links are followed. The files need not exist.
bool IsSameFile(const std::filesystem::path& left, const std::filesystem::path& right) {
    std::error_code error;
    if (std::filesystem::equivalent(left, right, error)) return true;
    // `equivalent` fails if a file does not exist; then the names decide.
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(left, error);
    return !error && resolved == std::filesystem::weakly_canonical(right, error) && !error;
}

bool HasDataFileName(const std::filesystem::path& path) {
    return EqualsIgnoringCase(PathText(path.extension()), ".talvor");
}

bool IsDataFile(const AppContext& app, const std::filesystem::path& path) {
    const std::filesystem::path folder = DataFolder(app);
    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(path, error);
    if (!error && HasDataFileName(resolved) && IsSameFile(resolved.parent_path(), folder)) return true;
    // Or another name for one of them: a link, or a short name on Windows.
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        if (HasDataFileName(entry->path()) && IsSameFile(entry->path(), path)) return true;
    return false;
}

} // namespace

Done CheckSourceIsNotLog(const std::filesystem::path& source, const std::filesystem::path& log) {
    if (IsSameFile(source, log))
        return Failure{"import the file", source,
                       "it is the error log that the import is about to write anew"};
    return Success();
}

Done CheckImportSource(const std::filesystem::path& source, const std::filesystem::path& dataFile) {
    if (IsSameFile(source, dataFile))
        return Failure{"import the file", source, "it is the data file that the import writes to"};
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(source, error);
    // A missing file and a folder are left to Open, which reports them.
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status) &&
        !std::filesystem::is_directory(status))
        return Failure{"import the file", source, "it is a pipe or a device"};
    return Success();
}

Done CheckExportTarget(const AppContext& app, const std::filesystem::path& target,
                       const std::filesystem::path& log) {
    if (IsDataFile(app, target))
        return Failure{"export to the file", target, "it is a data file of the program"};
    if (!log.empty() && IsSameFile(target, log))
        return Failure{"export to the file", target, "it is the error log that the export writes"};
    const Done followed = app.Files.CheckLink(target); // now, before the export empties its log
    if (!followed) return followed;
    // A device can be written to directly, but a pipe has no offsets to write at.
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(target, ignored);
    if (std::filesystem::is_fifo(status) || std::filesystem::is_socket(status))
        return Failure{"export to the file", target, "it is a pipe"};
    return Success();
}
} // namespace mact
