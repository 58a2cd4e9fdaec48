#include "platform/os_files.h"

#include "platform/os_lock.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace mact {
namespace {

Failure DescribeError(std::string_view doing, const std::filesystem::path& path, int error) {
    return {std::string(doing), path, std::generic_category().message(error)};
}

/// Repeats a system call while signals interrupt it.
template <class Call> auto Retry(const Call& call) {
    for (;;) {
        const auto result = call();
        if (result != -1 || errno != EINTR) return result;
    }
}

/// Whether that is why a file could not be locked, as on some network file systems. To go on without a lock
/// would risk records, since nobody can tell that only one computer uses the folder.
bool HasNoLocks(int error) {
    return error == ENOLCK || error == ENOSYS || error == EOPNOTSUPP;
}

constexpr mode_t Permissions = 0666; // less the user's umask
constexpr std::int64_t NanosecondsPerSecond = 1'000'000'000;

/// Not every file system can do that, which is ignored; a disk that fails at it is a Failure.
Done FlushEntries(const std::filesystem::path& folder) {
    const int descriptor = Retry([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    if (descriptor < 0) return Success(); // a folder may be one that can be written to, but not be read
    const int error = Retry([&] { return ::fsync(descriptor); }) == 0 ? 0 : errno;
    ::close(descriptor);
    if (error != EIO && error != ENOSPC && error != EDQUOT) return Success();
    return DescribeError("write to the disk what was changed in the folder", folder, error);
}

/// A new or renamed file survives a crash only if its folder is flushed too.
Done FlushFolderOf(const std::filesystem::path& path) {
    return FlushEntries(path.has_parent_path() ? path.parent_path() : ".");
}

class PosixFile : public OpenedFile {
public:
    /// `flags` are for opening the path again if it has come to name another file.
    PosixFile(int descriptor, std::filesystem::path path, int flags)
        : m_descriptor(descriptor), m_path(std::move(path)), m_flags(flags) {}
    /// From the first Flush on, the name is on the disk too.
    void FlushNameToo() { m_isNameUnflushed = true; }
    PosixFile(const PosixFile&) = delete;
    PosixFile& operator=(const PosixFile&) = delete;
    ~PosixFile() override { ::close(m_descriptor); }

    Result<std::uint64_t> Length() override {
        struct stat status {};
        if (Retry([&] { return ::fstat(m_descriptor, &status); }) != 0)
            return DescribeError("read the length of the file", m_path, errno);
        return static_cast<std::uint64_t>(status.st_size);
    }

    Result<std::int64_t> TimeOfChange() override {
        struct stat status {};
        if (Retry([&] { return ::fstat(m_descriptor, &status); }) != 0)
            return DescribeError("read the time of the file", m_path, errno);
        return std::int64_t{status.st_mtim.tv_sec} * NanosecondsPerSecond + status.st_mtim.tv_nsec;
    }

    Done MakeTimeDifferFrom(std::int64_t earlier) override {
        const Result<std::int64_t> present = TimeOfChange();
        if (!present) return present.error();
        if (*present != earlier) return Success();
        const std::int64_t later = earlier + 1000; // as fine as any file system's
        const struct timespec times[] = {
            {0,                            UTIME_OMIT                  },
            {later / NanosecondsPerSecond, later % NanosecondsPerSecond},
        };
        if (Retry([&] { return ::futimens(m_descriptor, times); }) == 0) return Success();
        // Who may write, but does not own the file, may only set the present time; the clock has to move
        // first.
        std::this_thread::sleep_for(WaitBetweenTries);
        if (Retry([&] { return ::futimens(m_descriptor, nullptr); }) != 0)
            return DescribeError("set the time of the file", m_path, errno);
        return Success();
    }

    Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> bytes) override {
        std::size_t count = 0;
        while (count < bytes.size()) {
            const ssize_t read = Retry([&] {
                return ::pread(m_descriptor, bytes.data() + count, bytes.size() - count,
                               static_cast<off_t>(offset + count));
            });
            if (read < 0) return DescribeError("read from the file", m_path, errno);
            if (read == 0) break; // the end of the file
            count += static_cast<std::size_t>(read);
        }
        return count;
    }

    Done WriteAt(std::uint64_t offset, std::string_view bytes) override {
        while (!bytes.empty()) {
            const ssize_t written = Retry([&] {
                return ::pwrite(m_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
            });
            if (written < 0) return DescribeError("write to the file", m_path, errno);
            bytes.remove_prefix(static_cast<std::size_t>(written));
            offset += static_cast<std::uint64_t>(written);
        }
        return Success();
    }

    Done CutTo(std::uint64_t length) override {
        const Result<std::uint64_t> present = Length();
        if (!present) return present.error();
        if (*present <= length) return Success(); // ftruncate would lengthen it
        if (Retry([&] { return ::ftruncate(m_descriptor, static_cast<off_t>(length)); }) != 0)
            return DescribeError("shorten the file", m_path, errno);
        return Success();
    }

    Done Flush() override {
        // Not fsync, which writes the time of the change too. EINVAL: a device, which has nothing to flush.
        if (Retry([&] { return ::fdatasync(m_descriptor); }) != 0 && errno != EINVAL)
            return DescribeError("write to the disk what was saved in the file", m_path, errno);
        const Done flushed = m_isNameUnflushed ? FlushFolderOf(m_path) : Success();
        if (flushed) m_isNameUnflushed = false;
        return flushed;
    }

    Done Lock() override {
        const auto giveUpAt = std::chrono::steady_clock::now() + LongestWaitForLock;
        // flock cannot wait for a limited time, hence the polling.
        for (;;) {
            if (Retry([&] { return ::flock(m_descriptor, LOCK_EX | LOCK_NB); }) == 0) {
                // Asked only now: the last holder may have renamed or removed the file.
                if (IsAtItsPath()) return Success();
                const Done opened = OpenAgain(); // gives up this lock; the next turn locks the new file
                if (!opened) return opened;
            } else {
                const int error = errno;
                if (HasNoLocks(error)) return Failure{"lock the file", m_path, std::string(NoLocks)};
                if (error != EWOULDBLOCK) return DescribeError("lock the file", m_path, error);
                std::this_thread::sleep_for(WaitBetweenTries);
            }
            if (std::chrono::steady_clock::now() >= giveUpAt)
                return Failure{"lock the file", m_path, std::string(UsedByAnotherCopy)};
        }
    }

private:
    /// False if another copy has renamed or removed the file since it was opened.
    bool IsAtItsPath() const {
        struct stat mine {};
        struct stat there {};
        return Retry([&] { return ::fstat(m_descriptor, &mine); }) == 0 &&
               Retry([&] { return ::stat(m_path.c_str(), &there); }) == 0 && mine.st_dev == there.st_dev &&
               mine.st_ino == there.st_ino;
    }

    Done OpenAgain() {
        const int descriptor = Retry([&] { return ::open(m_path.c_str(), m_flags, Permissions); });
        if (descriptor < 0) return DescribeError("open the file", m_path, errno);
        ::close(m_descriptor);
        m_descriptor = descriptor;
        return Success();
    }

    int m_descriptor;
    std::filesystem::path m_path;
    int m_flags;
    bool m_isNameUnflushed = false;
};

int Flags(OpenMode mode) {
    // O_NONBLOCK, because opening a pipe that nobody writes to would never return.
    constexpr int always = O_CLOEXEC | O_NONBLOCK;
    switch (mode) {
    case OpenMode::Read:
        return always | O_RDONLY;
    case OpenMode::ReadOrCreate:
        return always | O_RDONLY | O_CREAT;
    case OpenMode::Update:
        return always | O_RDWR | O_CREAT;
    case OpenMode::Replace:
        return always | O_WRONLY | O_CREAT | O_TRUNC;
    case OpenMode::Own:
        return always | O_RDWR | O_CREAT | O_NOFOLLOW;
    }
    return always | O_RDONLY;
}

/// Removes what has the name of a file of our own and is none: a link, or a file with several names.
Done RemoveForeign(const std::filesystem::path& path) {
    struct stat status {};
    if (Retry([&] { return ::lstat(path.c_str(), &status); }) != 0) {
        if (errno == ENOENT || errno == ENOTDIR) return Success();
        return DescribeError("look for the file", path, errno);
    }
    const bool isOurs = S_ISREG(status.st_mode) && status.st_nlink == 1;
    if (isOurs || S_ISDIR(status.st_mode)) return Success(); // opening a folder fails by itself
    if (Retry([&] { return ::unlink(path.c_str()); }) != 0 && errno != ENOENT)
        return DescribeError("remove the file", path, errno);
    return Success();
}

} // namespace

Result<std::unique_ptr<OpenedFile>> OsFiles::Open(const std::filesystem::path& path, OpenMode mode) {
    if (mode == OpenMode::Own) {
        const Done removed = RemoveForeign(path);
        if (!removed) return removed.error();
    }
    struct stat status {};
    const bool isNew = mode != OpenMode::Read && Retry([&] { return ::stat(path.c_str(), &status); }) != 0;
    const int descriptor = Retry([&] { return ::open(path.c_str(), Flags(mode), Permissions); });
    if (descriptor < 0) return DescribeError("open the file", path, errno);
    // Without O_TRUNC, since opening again must not empty what another copy has put there.
    std::unique_ptr<PosixFile> file = std::make_unique<PosixFile>(descriptor, path, Flags(mode) & ~O_TRUNC);
    if (Retry([&] { return ::fstat(descriptor, &status); }) != 0) {
        const int error = errno;
        if (isNew && mode == OpenMode::Own) ::unlink(path.c_str());
        return DescribeError("open the file", path, error);
    }
    // Opening a folder for reading succeeds.
    if (S_ISDIR(status.st_mode)) return DescribeError("open the file", path, EISDIR);
    if (mode == OpenMode::Own) {
        // One that is there already may be that of a copy which was killed before it flushed anything.
        file->FlushNameToo();
        return std::unique_ptr<OpenedFile>(std::move(file));
    }
    const Done flushed = isNew ? FlushFolderOf(path) : Success();
    if (flushed) return std::unique_ptr<OpenedFile>(std::move(file));
    ::unlink(path.c_str());
    return flushed.error();
}

Done OsFiles::Rename(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (Retry([&] { return ::rename(from.c_str(), to.c_str()); }) != 0)
        return DescribeError("replace the file", to, errno);
    return FlushFolderOf(to);
}

Done OsFiles::Remove(const std::filesystem::path& path) {
    if (Retry([&] { return ::unlink(path.c_str()); }) != 0)
        return DescribeError("remove the file", path, errno);
    return Success();
}

Result<bool> OsFiles::HasOwn(const std::filesystem::path& path) {
    struct stat status {};
    if (Retry([&] { return ::lstat(path.c_str(), &status); }) == 0) return S_ISREG(status.st_mode);
    if (errno == ENOENT || errno == ENOTDIR) return false;
    return DescribeError("look for the file", path, errno);
}

NameKind OsFiles::KindOfName(const std::filesystem::path& path) {
    struct stat status {};
    if (Retry([&] { return ::lstat(path.c_str(), &status); }) != 0) return NameKind::Plain;
    if (S_ISLNK(status.st_mode)) return NameKind::Link;
    return S_ISREG(status.st_mode) && status.st_nlink > 1 ? NameKind::OneOfSeveral : NameKind::Plain;
}

Done OsFiles::CreateFolder(const std::filesystem::path& path) {
    constexpr mode_t permissions = 0777; // less the user's umask
    if (Retry([&] { return ::mkdir(path.c_str(), permissions); }) != 0)
        return DescribeError("create the folder", path, errno);
    return FlushFolderOf(path);
}

Done OsFiles::RenameFolder(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (Retry([&] { return ::rename(from.c_str(), to.c_str()); }) != 0)
        return DescribeError("rename the folder", from, errno);
    return Success();
}

Done OsFiles::FlushFolder(const std::filesystem::path& path) {
    return FlushEntries(path);
}

bool OsFiles::RenamesFoldersInUse() const {
    return true;
}

Done OsFiles::AllowOpenFiles(std::size_t count) {
    constexpr rlim_t others = 256; // of the windows, and what is open for a moment
    struct rlimit limit {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= count + others) return Success();
    // The usual limit is far below the one up to which the user may raise it.
    struct rlimit raised = limit;
    raised.rlim_cur = count + others;
    if (raised.rlim_cur <= limit.rlim_max && ::setrlimit(RLIMIT_NOFILE, &raised) == 0) return Success();
    return Failure{.Doing = "open " + std::to_string(count) + " files at once",
                   .Reason = "the system lets a program open no more than " + std::to_string(limit.rlim_max)};
}
} // namespace mact
