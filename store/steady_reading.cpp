#include "store/steady_reading.h"

#include "store/undo_file.h"

#include <chrono>
#include <thread>

namespace mact {
namespace {

// The undo file shows a change under way, the time of the file one that is over.
Result<std::string> ReadState(FileAccess& files, const std::filesystem::path& path) {
    const Result<bool> isThere = IsAnythingAt(path);
    if (!isThere) return isThere.error();
    if (!*isThere) return std::string();
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(path, OpenMode::Read);
    if (!file) return file.error();
    const Result<std::string> mark = ReadUndoMark(files, path);
    if (!mark) return mark.error();
    if (!mark->empty()) return mark; // whatever is written meanwhile, the state before it is what is read
    const Result<std::uint64_t> length = (*file)->Length();
    if (!length) return length.error();
    const Result<std::int64_t> time = (*file)->TimeOfChange();
    if (!time) return time.error();
    if (*length == 0) return std::string(); // like a missing one, which reading creates
    return std::to_string(*length) + ' ' + std::to_string(*time);
}

} // namespace

Result<FileStates> ReadStates(FileAccess& files, const std::vector<std::filesystem::path>& paths) {
    FileStates states;
    states.reserve(paths.size());
    for (const std::filesystem::path& path : paths) {
        Result<std::string> state = ReadState(files, path);
        if (!state) return state.error();
        states.push_back(std::move(*state));
    }
    return states;
}

void WaitForWriter(int tries) {
    constexpr auto first = std::chrono::milliseconds(20);
    std::this_thread::sleep_for(first * tries * tries);
}

Failure InUse(const std::filesystem::path& path) {
    return {"read the file", path, std::string(UsedByAnotherCopy)};
}
} // namespace mact
