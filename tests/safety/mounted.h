#pragma once

#include <fcntl.h>
#include <filesystem>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <unistd.h>

namespace mact {

/// Whether this process may mount disks. Nobody else sees its mounts, and they end with it at the latest.
/// Where mounting is not permitted, the tests that need it are skipped.
inline bool CanMount() {
    static const bool can =
        ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    return can;
}

class Mounted {
public:
    Mounted() = default;
    Mounted(const Mounted&) = delete;
    Mounted& operator=(const Mounted&) = delete;
    ~Mounted() {
        if (!m_path.empty()) ::umount2(m_path.c_str(), MNT_DETACH);
    }
    /// Mounts a disk of 2 MB in place of the folder.
    bool SmallDisk(const std::filesystem::path& path) {
        m_path = path;
        return ::mount("none", path.c_str(), "tmpfs", 0, "size=2m") == 0;
    }
    /// Makes the folder read-only.
    bool ReadOnly(const std::filesystem::path& path) {
        m_path = path;
        return ::mount(path.c_str(), path.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
               ::mount("none", path.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) == 0;
    }

private:
    std::filesystem::path m_path;
};

/// Fills the disk that `filler` is on.
inline void FillUp(const std::filesystem::path& filler) {
    const int file = ::open(filler.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const std::string page(4096, 'x');
    while (::write(file, page.data(), page.size()) > 0) {
    }
    ::close(file);
}
} // namespace mact
