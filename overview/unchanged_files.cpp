#include "overview/unchanged_files.h"

namespace mact {
namespace {

/// Always empty.
class EmptyFile : public OpenedFile {
public:
    Result<std::uint64_t> Length() override { return std::uint64_t{0}; }
    Result<std::size_t> ReadAt(std::uint64_t, std::span<char>) override { return std::size_t{0}; }
    Done WriteAt(std::uint64_t, std::string_view) override { return Success(); }
    Done CutTo(std::uint64_t) override { return Success(); }
    Done Flush() override { return Success(); }
    Done Lock() override { return Success(); }
    Result<std::int64_t> TimeOfChange() override { return std::int64_t{0}; }
    Done MakeTimeDifferFrom(std::int64_t) override { return Success(); }
};

} // namespace

Result<std::unique_ptr<OpenedFile>> UnchangedFiles::Open(const std::filesystem::path& path, OpenMode mode) {
    if (mode == OpenMode::Read) return m_files.Open(path, mode);
    if (mode == OpenMode::ReadOrCreate) {
        const Result<bool> isThere = IsAnythingAt(path);
        if (!isThere) return isThere.error();
        if (*isThere) return m_files.Open(path, OpenMode::Read);
    }
    return std::unique_ptr<OpenedFile>(std::make_unique<EmptyFile>());
}
} // namespace mact
