#include "platform/os_files.h"

#include "platform/os_lock.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string>
#include <thread>
#include <windows.h>

namespace mact {
namespace {

/// The byte that a lock covers, far beyond any record: Windows keeps readers away from locked bytes.
constexpr std::uint64_t LockedByte = 0x7FFF'FFFF'0000'0000;
/// The most that one call reads or writes, in bytes: its count has 32 bits.
constexpr std::size_t LongestTransfer = 1U << 30U;

std::string Utf8(std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    const int count = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(count), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), count, nullptr, nullptr);
    return bytes;
}

/// The system's text in the user's language, without its full stop and line end.
std::string Reason(DWORD error) {
    std::array<wchar_t, 512> buffer{};
    constexpr DWORD flags =
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
    const DWORD length =
        ::FormatMessageW(flags, nullptr, error, 0, buffer.data(), static_cast<DWORD>(buffer.size()), nullptr);
    std::wstring_view text(buffer.data(), length);
    const std::size_t last = text.find_last_not_of(L" .\r\n");
    text = text.substr(0, last == std::wstring_view::npos ? 0 : last + 1);
    return text.empty() ? "system error " + std::to_string(error) : Utf8(text);
}

Failure DescribeError(std::string_view doing, const std::filesystem::path& path, DWORD error) {
    return {std::string(doing), path, Reason(error)};
}

Failure DescribeRefusedOpening(const std::filesystem::path& path, DWORD error) {
    // For a folder, all that the system says is that access is denied.
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    const bool isFolder = error == ERROR_ACCESS_DENIED && attributes != INVALID_FILE_ATTRIBUTES &&
                          (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return isFolder ? Failure{"open the file", path, "Is a directory"}
                    : DescribeError("open the file", path, error);
}

/// Only the position in a file: nothing here runs asynchronously.
OVERLAPPED At(std::uint64_t offset) {
    OVERLAPPED position{};
    position.Offset = static_cast<DWORD>(offset & 0xFFFF'FFFF);
    position.OffsetHigh = static_cast<DWORD>(offset >> 32U);
    return position;
}

/// Whether that is why a file could not be locked, as on some network drives. To go on without a lock would
/// risk records, since nobody can tell that only one computer uses the folder.
bool HasNoLocks(DWORD error) {
    return error == ERROR_INVALID_FUNCTION || error == ERROR_NOT_SUPPORTED ||
           error == ERROR_CALL_NOT_IMPLEMENTED;
}

struct Opening {
    DWORD Access;
    DWORD Creation;
    DWORD Flags = FILE_ATTRIBUTE_NORMAL;
};

Opening OpeningFor(OpenMode mode) {
    switch (mode) {
    case OpenMode::Read:
        return {GENERIC_READ, OPEN_EXISTING};
    case OpenMode::ReadOrCreate:
        return {GENERIC_READ, OPEN_ALWAYS};
    case OpenMode::Update:
        return {GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS};
    case OpenMode::Replace:
        return {GENERIC_WRITE, CREATE_ALWAYS};
    case OpenMode::Own:
        return {GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS,
                FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT};
    }
    return {GENERIC_READ, OPEN_EXISTING};
}

/// Other running copies may read, write and replace the file at the same time; Lock keeps writers apart.
HANDLE OpenHandle(const std::filesystem::path& path, const Opening& opening) {
    constexpr DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return ::CreateFileW(path.c_str(), opening.Access, sharing, nullptr, opening.Creation, opening.Flags,
                         nullptr);
}

class WindowsFile : public OpenedFile {
public:
    /// `opening` is for opening the path again if it has come to name another file.
    WindowsFile(HANDLE handle, std::filesystem::path path, Opening opening)
        : m_handle(handle), m_path(std::move(path)), m_opening(opening) {}
    WindowsFile(const WindowsFile&) = delete;
    WindowsFile& operator=(const WindowsFile&) = delete;
    ~WindowsFile() override { Close(); }

    Result<std::uint64_t> Length() override {
        LARGE_INTEGER length{};
        if (!::GetFileSizeEx(m_handle, &length))
            return DescribeError("read the length of the file", m_path, ::GetLastError());
        return static_cast<std::uint64_t>(length.QuadPart);
    }

    Result<std::int64_t> TimeOfChange() override {
        FILETIME time{};
        if (!::GetFileTime(m_handle, nullptr, nullptr, &time))
            return DescribeError("read the time of the file", m_path, ::GetLastError());
        return static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32U | time.dwLowDateTime);
    }

    Done MakeTimeDifferFrom(std::int64_t earlier) override {
        const Result<std::int64_t> present = TimeOfChange();
        if (!present) return present.error();
        if (*present != earlier) return Success(); // the system may set it only when the file is closed
        FILETIME now{};
        ::GetSystemTimeAsFileTime(&now);
        const auto later = std::max(std::uint64_t{now.dwHighDateTime} << 32U | now.dwLowDateTime,
                                    static_cast<std::uint64_t>(earlier) + 10); // one microsecond
        const FILETIME time{static_cast<DWORD>(later & 0xFFFF'FFFF), static_cast<DWORD>(later >> 32U)};
        if (!::SetFileTime(m_handle, nullptr, nullptr, &time))
            return DescribeError("set the time of the file", m_path, ::GetLastError());
        return Success();
    }

    Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> bytes) override {
        std::size_t count = 0;
        while (count < bytes.size()) {
            const auto wanted = static_cast<DWORD>(std::min(bytes.size() - count, LongestTransfer));
            OVERLAPPED position = At(offset + count);
            DWORD read = 0;
            if (!::ReadFile(m_handle, bytes.data() + count, wanted, &read, &position)) {
                const DWORD error = ::GetLastError();
                if (error == ERROR_HANDLE_EOF) break;
                return DescribeError("read from the file", m_path, error);
            }
            if (read == 0) break; // the end of the file
            count += read;
        }
        return count;
    }

    Done WriteAt(std::uint64_t offset, std::string_view bytes) override {
        while (!bytes.empty()) {
            const auto wanted = static_cast<DWORD>(std::min(bytes.size(), LongestTransfer));
            OVERLAPPED position = At(offset);
            DWORD written = 0;
            if (!::WriteFile(m_handle, bytes.data(), wanted, &written, &position))
                return DescribeError("write to the file", m_path, ::GetLastError());
            bytes.remove_prefix(written);
            offset += written;
        }
        return Success();
    }

    Done CutTo(std::uint64_t length) override {
        const Result<std::uint64_t> present = Length();
        if (!present) return present.error();
        if (*present <= length) return Success(); // the call below would lengthen it
        FILE_END_OF_FILE_INFO end{};
        end.EndOfFile.QuadPart = static_cast<LONGLONG>(length);
        if (!::SetFileInformationByHandle(m_handle, FileEndOfFileInfo, &end, sizeof end))
            return DescribeError("shorten the file", m_path, ::GetLastError());
        return Success();
    }

    Done Flush() override {
        if (::FlushFileBuffers(m_handle)) return Success();
        // A device has nothing to flush.
        const DWORD error = ::GetLastError();
        if (error == ERROR_INVALID_FUNCTION) return Success();
        return DescribeError("write to the disk what was saved in the file", m_path, error);
    }

    Done Lock() override {
        constexpr DWORD flags = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
        const auto giveUpAt = std::chrono::steady_clock::now() + LongestWaitForLock;
        // LockFileEx cannot wait for a limited time, hence the polling.
        for (;;) {
            OVERLAPPED position = At(LockedByte);
            // It would refuse a second lock, even through the same handle.
            m_isLocked = m_isLocked || ::LockFileEx(m_handle, flags, 0, 1, 0, &position) != 0;
            // Asked only now: the last holder may have renamed or removed the file.
            if (m_isLocked && IsAtItsPath()) return Success();
            if (m_isLocked) {
                const Done opened = OpenAgain(); // gives up this lock; the next turn locks the new file
                if (!opened) return opened;
            } else {
                const DWORD error = ::GetLastError();
                if (HasNoLocks(error)) return Failure{"lock the file", m_path, std::string(NoLocks)};
                if (error != ERROR_LOCK_VIOLATION) return DescribeError("lock the file", m_path, error);
                std::this_thread::sleep_for(WaitBetweenTries);
            }
            if (std::chrono::steady_clock::now() >= giveUpAt)
                return Failure{"lock the file", m_path, std::string(UsedByAnotherCopy)};
        }
    }

private:
    void Close() {
        if (m_isLocked) {
            // Closing unlocks too, but Windows may take some time over it.
            OVERLAPPED position = At(LockedByte);
            ::UnlockFileEx(m_handle, 0, 1, 0, &position);
            m_isLocked = false;
        }
        ::CloseHandle(m_handle);
    }

    /// False if another copy has renamed or removed the file since it was opened.
    bool IsAtItsPath() const {
        HANDLE other = OpenHandle(m_path, {0, OPEN_EXISTING}); // only to ask which file it is
        if (other == INVALID_HANDLE_VALUE) return false;
        BY_HANDLE_FILE_INFORMATION mine{};
        BY_HANDLE_FILE_INFORMATION there{};
        const bool isKnown =
            ::GetFileInformationByHandle(m_handle, &mine) && ::GetFileInformationByHandle(other, &there);
        ::CloseHandle(other);
        return isKnown && mine.dwVolumeSerialNumber == there.dwVolumeSerialNumber &&
               mine.nFileIndexHigh == there.nFileIndexHigh && mine.nFileIndexLow == there.nFileIndexLow;
    }

    Done OpenAgain() {
        HANDLE handle = OpenHandle(m_path, m_opening);
        if (handle == INVALID_HANDLE_VALUE) return DescribeRefusedOpening(m_path, ::GetLastError());
        Close();
        m_handle = handle;
        return Success();
    }

    HANDLE m_handle;
    std::filesystem::path m_path;
    Opening m_opening;
    bool m_isLocked = false;
};

/// Repeats what fails while a removed file is still there because somebody has it open: a copy of the program
/// that reads, or a virus scanner. `fails` returns the system's error, 0 if there is none.
template <class Call> DWORD WhileBeingRemoved(const Call& fails) {
    const auto giveUpAt = std::chrono::steady_clock::now() + LongestWaitForLock;
    for (;;) {
        const DWORD error = fails();
        const bool mayBeRemoved = error == ERROR_ACCESS_DENIED || error == ERROR_DELETE_PENDING;
        if (!mayBeRemoved || std::chrono::steady_clock::now() >= giveUpAt) return error;
        std::this_thread::sleep_for(WaitBetweenTries);
    }
}

/// Removes what has the name of a file of our own and is none: a link, or a file with several names.
Done RemoveForeign(const std::filesystem::path& path) {
    if (OsFiles().KindOfName(path) == NameKind::Plain) return Success();
    if (::DeleteFileW(path.c_str())) return Success();
    const DWORD error = ::GetLastError();
    // As elsewhere, one that may not be written to is removed: the copy of a file on a disk that may not.
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    const bool isReadOnly =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (isReadOnly && ::SetFileAttributesW(path.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY}) &&
        ::DeleteFileW(path.c_str()))
        return Success();
    return DescribeError("remove the file", path, error);
}

} // namespace

Result<std::unique_ptr<OpenedFile>> OsFiles::Open(const std::filesystem::path& path, OpenMode mode) {
    if (mode == OpenMode::Own) {
        const Done removed = RemoveForeign(path);
        if (!removed) return removed.error();
    }
    const Opening opening = OpeningFor(mode);
    HANDLE handle = INVALID_HANDLE_VALUE;
    const auto open = [&] {
        handle = OpenHandle(path, opening);
        return handle == INVALID_HANDLE_VALUE ? ::GetLastError() : 0;
    };
    const DWORD error = mode == OpenMode::Own ? WhileBeingRemoved(open) : open();
    if (error != 0) return DescribeRefusedOpening(path, error);
    return std::unique_ptr<OpenedFile>(std::make_unique<WindowsFile>(handle, path, opening));
}

Done OsFiles::Rename(const std::filesystem::path& from, const std::filesystem::path& to) {
    // Write-through returns once the rename is on the disk.
    constexpr DWORD flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    if (!::MoveFileExW(from.c_str(), to.c_str(), flags))
        return DescribeError("replace the file", to, ::GetLastError());
    return Success();
}

Done OsFiles::Remove(const std::filesystem::path& path) {
    if (!::DeleteFileW(path.c_str())) return DescribeError("remove the file", path, ::GetLastError());
    return Success();
}

Result<bool> OsFiles::HasOwn(const std::filesystem::path& path) {
    DWORD attributes = INVALID_FILE_ATTRIBUTES;
    const DWORD error = WhileBeingRemoved([&] {
        attributes = ::GetFileAttributesW(path.c_str());
        return attributes == INVALID_FILE_ATTRIBUTES ? ::GetLastError() : 0;
    });
    if (error == 0) return (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) == 0;
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return false;
    return DescribeError("look for the file", path, error);
}

NameKind OsFiles::KindOfName(const std::filesystem::path& path) {
    HANDLE handle = OpenHandle(path, {0, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT});
    if (handle == INVALID_HANDLE_VALUE) return NameKind::Plain; // nothing, or nothing that opens
    BY_HANDLE_FILE_INFORMATION information{};
    const bool isKnown = ::GetFileInformationByHandle(handle, &information) != 0;
    ::CloseHandle(handle);
    if (!isKnown) return NameKind::Plain;
    if ((information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return NameKind::Link;
    return information.nNumberOfLinks > 1 ? NameKind::OneOfSeveral : NameKind::Plain;
}

Done OsFiles::CreateFolder(const std::filesystem::path& path) {
    if (!::CreateDirectoryW(path.c_str(), nullptr))
        return DescribeError("create the folder", path, ::GetLastError());
    return Success();
}

Done OsFiles::RenameFolder(const std::filesystem::path& from, const std::filesystem::path& to) {
    // A copy of the program that reads a file in it, or a virus scanner, closes it soon.
    const DWORD error = WhileBeingRemoved([&] {
        return ::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH) ? 0 : ::GetLastError();
    });
    return error == 0 ? Success() : Done(DescribeError("rename the folder", from, error));
}

Done OsFiles::FlushFolder(const std::filesystem::path&) {
    return Success(); // a folder has nothing to flush there: what changes it writes through
}

bool OsFiles::RenamesFoldersInUse() const {
    return false;
}

Done OsFiles::AllowOpenFiles(std::size_t) {
    return Success(); // 16 million by themselves
}
} // namespace mact
