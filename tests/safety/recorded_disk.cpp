#include "tests/safety/recorded_disk.h"

#include <algorithm>

namespace mact {
namespace {

constexpr std::uint64_t SectorLength = 512;

/// A file on the disk. Bytes beyond its length are not seen.
struct DiskFile {
    std::string Bytes;
    std::uint64_t Length = 0;
    std::uint64_t Seen = 0; ///< its length as the program sees it

    void Write(std::uint64_t offset, std::string_view bytes) {
        const auto start = static_cast<std::size_t>(offset);
        if (Bytes.size() < start + bytes.size()) Bytes.resize(start + bytes.size());
        Bytes.replace(start, bytes.size(), bytes);
    }
    void CutTo(std::uint64_t length) {
        Length = std::min(Length, length);
        Bytes.resize(static_cast<std::size_t>(Length));
    }
};

using NamedFiles = std::map<std::filesystem::path, std::shared_ptr<DiskFile>>;

/// What had the new name before is no longer seen.
void MoveFolder(NamedFiles& files, const DiskStep& step) {
    NamedFiles moved;
    for (const auto& [path, file] : files) {
        if (path.parent_path() == step.Path)
            moved[step.Target / path.filename()] = file;
        else if (path.parent_path() != step.Target)
            moved[path] = file;
    }
    files = std::move(moved);
}

/// Each sector by itself may be on the disk, and so may the file's new length.
void WriteSectors(DiskFile& file, const DiskStep& step, const std::function<bool()>& isDone) {
    const std::uint64_t end = step.Offset + step.Bytes.size();
    for (std::uint64_t at = step.Offset; at < end;) {
        const std::uint64_t next = std::min(end, (at / SectorLength + 1) * SectorLength);
        if (isDone()) file.Write(at, std::string_view(step.Bytes).substr(at - step.Offset, next - at));
        at = next;
    }
    if (end <= file.Seen) return;
    file.Seen = end;
    if (isDone()) file.Length = std::max(file.Length, end);
}

} // namespace

PowerCut::PowerCut(const DiskContent& before, const std::vector<DiskStep>& steps, std::size_t count)
    : m_before(before), m_steps(steps), m_count(count) {
    for (std::size_t step = 0; step < count; ++step)
        m_isFlushed.push_back(IsFlushed(step));
    Content([this] {
        ++m_openCount;
        return true;
    });
}

bool PowerCut::IsFlushed(std::size_t step) const {
    using enum DiskStep::Kind;
    const DiskStep& change = m_steps[step];
    const bool isOfFolder = change.What == Create || change.What == Rename || change.What == RenameFolder ||
                            change.What == Remove;
    const std::filesystem::path folder = change.Path.parent_path();
    return std::any_of(m_steps.begin() + static_cast<std::ptrdiff_t>(step),
                       m_steps.begin() + static_cast<std::ptrdiff_t>(m_count), [&](const DiskStep& later) {
                           return isOfFolder ? later.What == FlushFolder &&
                                                   (later.Path.empty() || later.Path == folder)
                                             : later.What == Flush && later.Path == change.Path;
                       });
}

DiskContent PowerCut::Content(const std::function<bool()>& isThere) const {
    using enum DiskStep::Kind;
    // A name leads to a file, by which the steps know it; a rename gives the file another name.
    NamedFiles onDisk;
    for (const auto& [path, bytes] : m_before)
        onDisk[path] = std::make_shared<DiskFile>(DiskFile{bytes, bytes.size(), bytes.size()});
    auto named = onDisk; // as the program sees it
    for (std::size_t number = 0; number < m_count; ++number) {
        const DiskStep& step = m_steps[number];
        const auto isDone = [&] { return m_isFlushed[number] || isThere(); };
        switch (step.What) {
        case Create:
            named[step.Path] = std::make_shared<DiskFile>();
            if (isDone()) onDisk[step.Path] = named[step.Path];
            break;
        case Rename:
            named[step.Target] = named[step.Path];
            named.erase(step.Path);
            if (isDone()) {
                onDisk[step.Target] = named[step.Target];
                onDisk.erase(step.Path);
            }
            break;
        case RenameFolder:
            MoveFolder(named, step);
            if (isDone()) MoveFolder(onDisk, step);
            break;
        case Remove:
            named.erase(step.Path);
            if (isDone()) onDisk.erase(step.Path);
            break;
        case Cut:
            named[step.Path]->Seen = std::min(named[step.Path]->Seen, step.Offset);
            if (isDone()) named[step.Path]->CutTo(step.Offset);
            break;
        case Write:
            WriteSectors(*named[step.Path], step, isDone);
            break;
        case Flush:
        case FlushFolder:
            break;
        }
    }
    DiskContent content;
    for (const auto& [path, file] : onDisk) {
        content[path] = file->Bytes;
        content[path].resize(static_cast<std::size_t>(file->Length));
    }
    return content;
}
} // namespace mact
