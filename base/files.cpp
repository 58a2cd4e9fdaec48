#include "base/files.h"

#include "base/text.h"

#include <system_error>

namespace {

Done WriteAll(OpenFile& file, std::string_view content) {
    const Done written = file.WriteAt(0, content);
    if (!written) return written;
    return file.Flush();
}

Done WriteToDevice(FileAccess& files, const std::filesystem::path& path, std::string_view content) {
    const Result<std::unique_ptr<OpenFile>> file = files.Open(path, OpenMode::Replace);
    if (!file) return file.error();
    return WriteAll(**file, content);
}

} // namespace

Done ReplaceFile(FileAccess& files, const std::filesystem::path& path, std::string_view content) {
    std::error_code ignored;
    std::filesystem::path target = std::filesystem::canonical(path, ignored);
    if (target.empty()) target = path;
    const std::filesystem::file_status status = std::filesystem::status(target, ignored);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        return WriteToDevice(files, target, content);

    std::filesystem::path temporary = target;
    temporary += ".tmp";
    const Result<std::unique_ptr<OpenFile>> file = files.Open(temporary, OpenMode::Update);
    if (!file) return file.error();
    // Not before it is ours: another running copy may be about to put it in the same file's place.
    const Done locked = (*file)->Lock();
    if (!locked) return locked;
    Done replaced = (*file)->CutTo(0);
    if (replaced) replaced = WriteAll(**file, content);
    if (replaced) replaced = files.Rename(temporary, target);
    if (!replaced) static_cast<void>(files.Remove(temporary)); // the failure to tell is the first
    return replaced;
}

Result<std::string> ReadWholeFile(FileAccess& files, const std::filesystem::path& path) {
    const Result<std::unique_ptr<OpenFile>> file = files.Open(path, OpenMode::Read);
    if (!file) return file.error();
    const Result<std::uint64_t> length = (*file)->Length();
    if (!length) return length.error();
    std::string content(static_cast<std::size_t>(*length), '\0');
    const Result<std::size_t> count = (*file)->ReadAt(0, content);
    if (!count) return count.error();
    content.resize(*count);
    return content;
}

bool IsFileAt(const std::filesystem::path& path) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(path, ignored);
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

bool IsFolderAt(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
}
