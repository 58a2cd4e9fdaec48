#include "tests/safety/child_program.h"

#include "base/text.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace mact {
namespace {

int NamelessFile() {
    std::FILE* const file = std::tmpfile();
    if (!file) std::abort();
    const int descriptor = ::fcntl(::fileno(file), F_DUPFD_CLOEXEC, 0);
    static_cast<void>(std::fclose(file));
    return descriptor;
}

std::string ContentOfNameless(int file) {
    std::string text;
    std::array<char, 4096> piece{};
    for (;;) {
        const ssize_t count = ::pread(file, piece.data(), piece.size(), static_cast<off_t>(text.size()));
        if (count <= 0) return text;
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
}

bool MayCreate(std::uint64_t flags) {
    return (flags & (O_CREAT | O_TRUNC)) != 0;
}

/// Whether a process's open file has a name: pipes have none, and a sanitizer writes to some.
bool IsFile(pid_t process, std::uint64_t descriptor) {
    std::error_code ignored;
    const std::string link = "/proc/" + std::to_string(process) + "/fd/" + std::to_string(descriptor);
    return std::filesystem::read_symlink(link, ignored).is_absolute();
}

/// Whether the system call that a traced process begins changes a file, or makes a change last.
bool IsChange(pid_t process, const __ptrace_syscall_info& call) {
    switch (call.entry.nr) {
#ifdef SYS_open
    case SYS_open:
        return MayCreate(call.entry.args[1]);
    case SYS_rename:
    case SYS_unlink:
    case SYS_mkdir:
    case SYS_link:
    case SYS_chmod:
#endif
    case SYS_write:
    case SYS_writev:
        return IsFile(process, call.entry.args[0]);
    case SYS_pwrite64:
    case SYS_pwritev:
    case SYS_ftruncate:
    case SYS_fallocate:
    case SYS_fsync:
    case SYS_fdatasync:
    case SYS_renameat:
    case SYS_renameat2:
    case SYS_unlinkat:
    case SYS_mkdirat:
    case SYS_linkat:
    case SYS_fchmod:
    case SYS_fchmodat:
    case SYS_copy_file_range:
        return true;
    case SYS_openat:
        return MayCreate(call.entry.args[2]);
    default:
        return false;
    }
}

/// Has the system refuse each flock of this process, as a file system without locks does.
void RefuseLocks(int error) {
    const auto answer = static_cast<std::uint32_t>(SECCOMP_RET_ERRNO | static_cast<unsigned>(error));
    sock_filter steps[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_flock, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, answer),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{static_cast<unsigned short>(std::size(steps)), steps};
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
        ::_exit(126);
}

void LimitItself(const ChildStart& start) {
    ::alarm(start.LongestTime);
    if (start.LongestFile) {
        const rlimit none{0, 0};
        ::setrlimit(RLIMIT_CORE, &none);
        const rlimit longest{*start.LongestFile, *start.LongestFile};
        ::setrlimit(RLIMIT_FSIZE, &longest);
    }
    if (start.MostMemory) {
        const rlimit most{*start.MostMemory, *start.MostMemory};
        ::setrlimit(RLIMIT_AS, &most);
    }
    if (start.LockError != 0) RefuseLocks(start.LockError);
}

} // namespace

StartSignal::StartSignal() {
    if (::pipe2(m_pipe, O_CLOEXEC) != 0) std::abort();
}

void StartSignal::Give() {
    for (int& end : m_pipe) {
        if (end >= 0) ::close(end);
        end = -1;
    }
}

void StartSignal::Await() const {
    ::close(m_pipe[1]);
    std::array<char, 1> none{};
    while (::read(m_pipe[0], none.data(), none.size()) > 0) {
    }
}

ChildProgram::ChildProgram(const ChildStart& start) : m_countsReads(start.CountsReads) {
    // All memory is allocated before the fork.
    std::vector<std::string> environment = {
        "XDG_CONFIG_HOME=" + PathText(start.SettingsFolder),
        // What a killed program leaves there goes with the folder.
        "TMPDIR=" + PathText(start.SettingsFolder.parent_path()),
    };
    environment.insert(environment.end(), start.Environment.begin(), start.Environment.end());
    std::vector<std::string> arguments = {PathText(start.Program)};
    arguments.insert(arguments.end(), start.Arguments.begin(), start.Arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);

    m_errors = NamelessFile();
    m_output = NamelessFile();
    // The leak detector of a sanitizer traces the process itself and cannot in one that is traced.
    std::string withoutLeakDetector = "ASAN_OPTIONS=detect_leaks=0";

    int alive[2] = {-1, -1};
    if (::pipe2(alive, O_CLOEXEC) != 0) std::abort();
    m_alive = alive[0];

    m_process = ::fork();
    if (m_process < 0) std::abort();
    if (m_process > 0) {
        ::close(alive[1]);
        ::setpgid(m_process, m_process); // whoever comes first, this process or the child
        return;
    }
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL); // a test that is killed leaves none behind
    for (std::string& variable : environment)
        ::putenv(variable.data());
    ::dup2(m_errors, STDERR_FILENO);
    ::dup2(m_output, STDOUT_FILENO);
    ::fcntl(alive[1], F_SETFD, 0); // all that it starts keep it open
    LimitItself(start);
    if (start.Signal) start.Signal->Await();
    if (start.IsTraced) {
        ::putenv(withoutLeakDetector.data());
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    }
    ::execv(pointers[0], pointers.data());
    ::_exit(127);
}

ChildProgram::~ChildProgram() {
    if (m_process > 0) {
        Kill();
        Wait();
    }
    ::close(m_errors);
    ::close(m_output);
    ::close(m_alive);
}

void ChildProgram::Kill() const {
    if (m_process > 0) ::kill(-m_process, SIGKILL); // its group
}

void ChildProgram::Pause() const {
    if (m_process > 0) ::kill(-m_process, SIGSTOP);
}

void ChildProgram::Continue() const {
    if (m_process > 0) ::kill(-m_process, SIGCONT);
}

void ChildProgram::Release() const {
    if (m_process > 0) ::ptrace(PTRACE_DETACH, m_process, nullptr, nullptr);
}

int ChildProgram::RunToChange(int number) {
    constexpr int atSystemCall = SIGTRAP | 0x80; // by PTRACE_O_TRACESYSGOOD
    int changes = 0;
    long signal = 0;
    bool isStarted = false;
    while (::waitpid(m_process, &m_status, 0) == m_process) {
        if (!WIFSTOPPED(m_status)) {
            m_process = -1;
            return changes;
        }
        signal = WSTOPSIG(m_status);
        if (!isStarted) { // the stop at its start
            ::ptrace(PTRACE_SETOPTIONS, m_process, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
            isStarted = true;
            signal = 0;
        } else if (signal == atSystemCall) {
            signal = 0;
            __ptrace_syscall_info call{};
            ::ptrace(PTRACE_GET_SYSCALL_INFO, m_process, sizeof(call), &call);
            const bool isBegin = call.op == PTRACE_SYSCALL_INFO_ENTRY;
            const bool isRead = m_countsReads && call.entry.nr == SYS_pread64;
            if (isBegin && (isRead || IsChange(m_process, call)) && ++changes == number) return changes;
        }
        ::ptrace(PTRACE_SYSCALL, m_process, nullptr, signal);
    }
    return changes;
}

bool ChildProgram::IsRunning() {
    if (m_process > 0 && ::waitpid(m_process, &m_status, WNOHANG) == m_process) m_process = -1;
    return m_process > 0;
}

int ChildProgram::Wait() {
    rusage used{};
    while (m_process > 0 && ::wait4(m_process, &m_status, 0, &used) < 0 && errno == EINTR) {
    }
    if (m_process > 0) m_peakMemory = static_cast<std::uint64_t>(used.ru_maxrss) * 1024; // it is in KiB
    m_process = -1;
    return WIFEXITED(m_status) ? WEXITSTATUS(m_status) : -1;
}

int ChildProgram::WaitForAll() {
    const int status = Wait();
    std::array<char, 1> none{};
    while (::read(m_alive, none.data(), none.size()) != 0) { // 0 = nobody has it open any more
    }
    return status;
}

std::string ChildProgram::Errors() const {
    return ContentOfNameless(m_errors);
}

std::string ChildProgram::Output() const {
    return ContentOfNameless(m_output);
}
} // namespace mact
