// Preloaded into a program: counts its system calls and makes one of them fail. See fault_record.h.

#include "tests/safety/faults/fault_record.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace mact;

namespace {

using PathBuffer = std::array<char, 4096>;

/// What the environment asks for. Without a record nothing is counted.
struct Order {
    FaultRecord* Record = nullptr;
    const char* Folder = "";
    std::size_t FolderLength = 0;
    std::size_t Kind = CallKindNames.size(); ///< none
    std::uint32_t Number = 0;
    CallFaultMode Mode = CallFaultMode::Error;
    int Error = EIO;
};

template <std::size_t Count>
std::size_t IndexOf(const std::array<std::string_view, Count>& names, const char* name) {
    return static_cast<std::size_t>(std::find(names.begin(), names.end(), name ? name : "") - names.begin());
}

int NumberIn(const char* variable, int otherwise) {
    const char* const text = std::getenv(variable);
    return text ? std::atoi(text) : otherwise;
}

Order ReadOrder() {
    Order order;
    const char* const folder = std::getenv(FaultFolderVariable);
    const char* const file = std::getenv(FaultRecordVariable);
    if (!folder || !file) return order;
    order.Folder = folder;
    order.FolderLength = std::strlen(folder);
    order.Kind = IndexOf(CallKindNames, std::getenv(CallKindVariable));
    order.Number = static_cast<std::uint32_t>(NumberIn(FaultNumberVariable, 0));
    order.Mode = static_cast<CallFaultMode>(IndexOf(CallFaultModeNames, std::getenv(FaultModeVariable)));
    order.Error = NumberIn(FaultErrorVariable, EIO);
    // Not open, which is the one below.
    const auto descriptor = static_cast<int>(::syscall(SYS_openat, AT_FDCWD, file, O_RDWR | O_CLOEXEC));
    if (descriptor < 0) return order;
    void* const memory =
        ::mmap(nullptr, sizeof(FaultRecord), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    ::syscall(SYS_close, descriptor);
    if (memory != MAP_FAILED) order.Record = static_cast<FaultRecord*>(memory);
    return order;
}

const Order& TheOrder() {
    static const Order order = ReadOrder();
    return order;
}

/// The path of an open file or of the current folder, by what the system says of it.
void PathOfDescriptor(int descriptor, PathBuffer& path) {
    std::array<char, 32> link{};
    if (descriptor == AT_FDCWD)
        std::snprintf(link.data(), link.size(), "/proc/self/cwd");
    else
        std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    const ssize_t length = ::readlink(link.data(), path.data(), path.size() - 1);
    path[length > 0 ? static_cast<std::size_t>(length) : 0] = '\0';
}

void PathOf(int folder, const char* name, PathBuffer& path) {
    if (!name || name[0] == '\0') {
        PathOfDescriptor(folder, path);
        return;
    }
    if (name[0] == '/') {
        std::snprintf(path.data(), path.size(), "%s", name);
        return;
    }
    PathOfDescriptor(folder, path);
    const std::size_t length = std::strlen(path.data());
    std::snprintf(path.data() + length, path.size() - length, "/%s", name);
}

/// Takes "." and ".." out of an absolute path, as if there were no links on the way.
void Tidy(PathBuffer& path) {
    if (path[0] != '/') return; // a pipe, which has no path
    std::size_t length = 0;
    for (const char* rest = path.data(); *rest != '\0';) {
        while (*rest == '/')
            ++rest;
        const std::string_view part(rest, std::strcspn(rest, "/"));
        rest += part.size();
        if (part.empty() || part == ".") continue;
        if (part == "..") {
            while (length > 0 && path[--length] != '/') {
            }
            continue;
        }
        path[length++] = '/';
        std::memmove(path.data() + length, part.data(), part.size());
        length += part.size();
    }
    path[length] = '\0';
}

bool IsInFolder(const PathBuffer& path) {
    const Order& order = TheOrder();
    if (std::strncmp(path.data(), order.Folder, order.FolderLength) != 0) return false;
    const char next = path[order.FolderLength];
    return next == '\0' || next == '/';
}

template <std::size_t Length> void Note(std::array<char, Length>& field, const char* text) {
    const std::size_t length = std::min(std::strlen(text), Length - 1);
    std::memcpy(field.data(), text, length);
    field[length] = '\0';
}

enum class Verdict : std::uint8_t { Pass, Fail, Half, Byte };

/// Counts the call, and says what becomes of it. `path` is that of the file.
Verdict CountAt(CallKind kind, const char* call, const PathBuffer& path) {
    const Order& order = TheOrder();
    if (!IsInFolder(path)) return Verdict::Pass;
    const auto index = static_cast<std::size_t>(kind);
    const std::uint32_t number = order.Record->Counts[index].fetch_add(1) + 1;
    if (index != order.Kind || number < order.Number) return Verdict::Pass;
    if (number > order.Number) return order.Mode == CallFaultMode::Full ? Verdict::Fail : Verdict::Pass;
    Note(order.Record->Program, program_invocation_short_name);
    Note(order.Record->Call, call);
    Note(order.Record->Path, path.data());
    order.Record->IsStruck = 1;
    switch (order.Mode) {
    case CallFaultMode::Error:
        return Verdict::Fail;
    case CallFaultMode::Byte:
        return Verdict::Byte;
    default:
        return Verdict::Half;
    }
}

/// The same for a call with a path, or with an open file.
Verdict Count(CallKind kind, const char* call, int folder, const char* name) {
    if (!TheOrder().Record) return Verdict::Pass;
    const int before = errno;
    PathBuffer path;
    PathOf(folder, name, path);
    Tidy(path);
    errno = before;
    return CountAt(kind, call, path);
}

/// True, with errno set, if the call has to fail.
bool Fails(CallKind kind, const char* call, int folder, const char* name) {
    if (Count(kind, call, folder, name) == Verdict::Pass) return false;
    errno = TheOrder().Error;
    return true;
}

/// The number of bytes that a read or write may transfer; empty, with errno set, if it has to fail.
struct Allowed {
    bool Fails;
    std::size_t Length;
};
Allowed Limit(CallKind kind, const char* call, int descriptor, std::size_t length) {
    switch (Count(kind, call, descriptor, nullptr)) {
    case Verdict::Fail:
        errno = TheOrder().Error;
        return {true, 0};
    case Verdict::Half:
        return {false, length > 1 ? length / 2 : length};
    case Verdict::Byte:
        return {false, std::min<std::size_t>(length, 1)};
    case Verdict::Pass:
        break;
    }
    return {false, length};
}

/// The system's own routine of that name.
template <class Routine> Routine* Next(const char* name) {
    return reinterpret_cast<Routine*>(::dlsym(RTLD_NEXT, name)); // NOLINT: what dlsym is for
}

} // namespace

// In each routine `next` is looked up once. The parameters have the types of the system's headers.
#define NEXT(name) static auto* const next = Next<decltype(name)>(#name)

/// The permissions of a file that is created; 0 if there are none among the arguments.
#define PERMISSIONS(flags)                                                                                   \
    mode_t permissions = 0;                                                                                  \
    if (((flags) & (O_CREAT | __O_TMPFILE)) != 0) {                                                          \
        va_list more;                                                                                        \
        va_start(more, flags);                                                                               \
        permissions = va_arg(more, mode_t);                                                                  \
        va_end(more);                                                                                        \
    }

extern "C" {

int open(const char* path, int flags, ...) {
    NEXT(open);
    PERMISSIONS(flags)
    return Fails(CallKind::Open, "open", AT_FDCWD, path) ? -1 : next(path, flags, permissions);
}
int open64(const char* path, int flags, ...) {
    NEXT(open64);
    PERMISSIONS(flags)
    return Fails(CallKind::Open, "open64", AT_FDCWD, path) ? -1 : next(path, flags, permissions);
}
int openat(int folder, const char* path, int flags, ...) {
    NEXT(openat);
    PERMISSIONS(flags)
    return Fails(CallKind::Open, "openat", folder, path) ? -1 : next(folder, path, flags, permissions);
}
int openat64(int folder, const char* path, int flags, ...) {
    NEXT(openat64);
    PERMISSIONS(flags)
    return Fails(CallKind::Open, "openat64", folder, path) ? -1 : next(folder, path, flags, permissions);
}
int creat(const char* path, mode_t permissions) {
    NEXT(creat);
    return Fails(CallKind::Open, "creat", AT_FDCWD, path) ? -1 : next(path, permissions);
}
FILE* fopen(const char* path, const char* mode) {
    NEXT(fopen);
    return Fails(CallKind::Open, "fopen", AT_FDCWD, path) ? nullptr : next(path, mode);
}
FILE* fopen64(const char* path, const char* mode) {
    NEXT(fopen64);
    return Fails(CallKind::Open, "fopen64", AT_FDCWD, path) ? nullptr : next(path, mode);
}
DIR* opendir(const char* path) {
    NEXT(opendir);
    return Fails(CallKind::Open, "opendir", AT_FDCWD, path) ? nullptr : next(path);
}
// What programs call that were built with checks of their buffers. The names are the C library's.
// NOLINTBEGIN(bugprone-reserved-identifier)
int __open_2(const char* path, int flags) {
    static auto* const next = Next<int(const char*, int)>("__open_2");
    return Fails(CallKind::Open, "__open_2", AT_FDCWD, path) ? -1 : next(path, flags);
}
int __open64_2(const char* path, int flags) {
    static auto* const next = Next<int(const char*, int)>("__open64_2");
    return Fails(CallKind::Open, "__open64_2", AT_FDCWD, path) ? -1 : next(path, flags);
}
int __openat_2(int folder, const char* path, int flags) {
    static auto* const next = Next<int(int, const char*, int)>("__openat_2");
    return Fails(CallKind::Open, "__openat_2", folder, path) ? -1 : next(folder, path, flags);
}
int __openat64_2(int folder, const char* path, int flags) {
    static auto* const next = Next<int(int, const char*, int)>("__openat64_2");
    return Fails(CallKind::Open, "__openat64_2", folder, path) ? -1 : next(folder, path, flags);
}
// NOLINTEND(bugprone-reserved-identifier)

ssize_t read(int file, void* bytes, size_t length) {
    NEXT(read);
    const Allowed allowed = Limit(CallKind::Read, "read", file, length);
    return allowed.Fails ? -1 : next(file, bytes, allowed.Length);
}
ssize_t pread(int file, void* bytes, size_t length, off_t offset) {
    NEXT(pread);
    const Allowed allowed = Limit(CallKind::Read, "pread", file, length);
    return allowed.Fails ? -1 : next(file, bytes, allowed.Length, offset);
}
ssize_t pread64(int file, void* bytes, size_t length, off64_t offset) {
    NEXT(pread64);
    const Allowed allowed = Limit(CallKind::Read, "pread64", file, length);
    return allowed.Fails ? -1 : next(file, bytes, allowed.Length, offset);
}
// NOLINTNEXTLINE(bugprone-reserved-identifier)
ssize_t __read_chk(int file, void* bytes, size_t length, size_t room) {
    static auto* const next = Next<ssize_t(int, void*, size_t, size_t)>("__read_chk");
    const Allowed allowed = Limit(CallKind::Read, "__read_chk", file, length);
    return allowed.Fails ? -1 : next(file, bytes, allowed.Length, room);
}

ssize_t write(int file, const void* bytes, size_t length) {
    NEXT(write);
    const Allowed allowed = Limit(CallKind::Write, "write", file, length);
    return allowed.Fails ? -1 : next(file, bytes, allowed.Length);
}
ssize_t pwrite(int file, const void* bytes, size_t length, off_t offset) {
    NEXT(pwrite);
    const Allowed allowed = Limit(CallKind::Write, "pwrite", file, length);
    return allowed.Fails ? -1 : next(file, bytes, allowed.Length, offset);
}
ssize_t pwrite64(int file, const void* bytes, size_t length, off64_t offset) {
    NEXT(pwrite64);
    const Allowed allowed = Limit(CallKind::Write, "pwrite64", file, length);
    return allowed.Fails ? -1 : next(file, bytes, allowed.Length, offset);
}
ssize_t copy_file_range(int from, off64_t* fromOffset, int to, off64_t* toOffset, size_t length,
                        unsigned int flags) {
    NEXT(copy_file_range);
    const Allowed allowed = Limit(CallKind::Write, "copy_file_range", to, length);
    return allowed.Fails ? -1 : next(from, fromOffset, to, toOffset, allowed.Length, flags);
}

int fsync(int file) {
    NEXT(fsync);
    return Fails(CallKind::Fsync, "fsync", file, nullptr) ? -1 : next(file);
}
int fdatasync(int file) {
    NEXT(fdatasync);
    return Fails(CallKind::Fsync, "fdatasync", file, nullptr) ? -1 : next(file);
}
int syncfs(int file) noexcept {
    NEXT(syncfs);
    return Fails(CallKind::Fsync, "syncfs", file, nullptr) ? -1 : next(file);
}

int rename(const char* from, const char* to) noexcept {
    NEXT(rename);
    return Fails(CallKind::Rename, "rename", AT_FDCWD, to) ? -1 : next(from, to);
}
int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
    NEXT(renameat);
    return Fails(CallKind::Rename, "renameat", toFolder, to) ? -1 : next(fromFolder, from, toFolder, to);
}
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned int flags) noexcept {
    NEXT(renameat2);
    return Fails(CallKind::Rename, "renameat2", toFolder, to) ? -1
                                                              : next(fromFolder, from, toFolder, to, flags);
}
int link(const char* from, const char* to) noexcept {
    NEXT(link);
    return Fails(CallKind::Rename, "link", AT_FDCWD, to) ? -1 : next(from, to);
}
int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
    NEXT(linkat);
    return Fails(CallKind::Rename, "linkat", toFolder, to) ? -1 : next(fromFolder, from, toFolder, to, flags);
}

int unlink(const char* path) noexcept {
    NEXT(unlink);
    return Fails(CallKind::Unlink, "unlink", AT_FDCWD, path) ? -1 : next(path);
}
int unlinkat(int folder, const char* path, int flags) noexcept {
    NEXT(unlinkat);
    return Fails(CallKind::Unlink, "unlinkat", folder, path) ? -1 : next(folder, path, flags);
}
int remove(const char* path) noexcept {
    NEXT(remove);
    return Fails(CallKind::Unlink, "remove", AT_FDCWD, path) ? -1 : next(path);
}

int mkdir(const char* path, mode_t permissions) noexcept {
    NEXT(mkdir);
    return Fails(CallKind::Mkdir, "mkdir", AT_FDCWD, path) ? -1 : next(path, permissions);
}
int mkdirat(int folder, const char* path, mode_t permissions) noexcept {
    NEXT(mkdirat);
    return Fails(CallKind::Mkdir, "mkdirat", folder, path) ? -1 : next(folder, path, permissions);
}

int stat(const char* path, struct stat* status) noexcept {
    NEXT(stat);
    return Fails(CallKind::Stat, "stat", AT_FDCWD, path) ? -1 : next(path, status);
}
int stat64(const char* path, struct stat64* status) noexcept {
    NEXT(stat64);
    return Fails(CallKind::Stat, "stat64", AT_FDCWD, path) ? -1 : next(path, status);
}
int lstat(const char* path, struct stat* status) noexcept {
    NEXT(lstat);
    return Fails(CallKind::Stat, "lstat", AT_FDCWD, path) ? -1 : next(path, status);
}
int lstat64(const char* path, struct stat64* status) noexcept {
    NEXT(lstat64);
    return Fails(CallKind::Stat, "lstat64", AT_FDCWD, path) ? -1 : next(path, status);
}
int fstat(int file, struct stat* status) noexcept {
    NEXT(fstat);
    return Fails(CallKind::Stat, "fstat", file, nullptr) ? -1 : next(file, status);
}
int fstat64(int file, struct stat64* status) noexcept {
    NEXT(fstat64);
    return Fails(CallKind::Stat, "fstat64", file, nullptr) ? -1 : next(file, status);
}
int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept {
    NEXT(fstatat);
    return Fails(CallKind::Stat, "fstatat", folder, path) ? -1 : next(folder, path, status, flags);
}
int fstatat64(int folder, const char* path, struct stat64* status, int flags) noexcept {
    NEXT(fstatat64);
    return Fails(CallKind::Stat, "fstatat64", folder, path) ? -1 : next(folder, path, status, flags);
}
int statx(int folder, const char* path, int flags, unsigned int mask, struct statx* status) noexcept {
    NEXT(statx);
    return Fails(CallKind::Stat, "statx", folder, path) ? -1 : next(folder, path, flags, mask, status);
}

int flock(int file, int operation) noexcept {
    NEXT(flock);
    return Fails(CallKind::Flock, "flock", file, nullptr) ? -1 : next(file, operation);
}

int ftruncate(int file, off_t length) noexcept {
    NEXT(ftruncate);
    return Fails(CallKind::Truncate, "ftruncate", file, nullptr) ? -1 : next(file, length);
}
int ftruncate64(int file, off64_t length) noexcept {
    NEXT(ftruncate64);
    return Fails(CallKind::Truncate, "ftruncate64", file, nullptr) ? -1 : next(file, length);
}
int truncate(const char* path, off_t length) noexcept {
    NEXT(truncate);
    return Fails(CallKind::Truncate, "truncate", AT_FDCWD, path) ? -1 : next(path, length);
}
} // extern "C"
