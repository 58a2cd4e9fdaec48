#include "tests/safety/child_program.h"

#include "base/text.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace mact {

StartSignal::StartSignal() {
    if (::pipe2(m_pipe, O_CLOEXEC) != 0) std::abort();
}

void StartSignal::Give() {
    for (int& end : m_pipe) {
        if (end >= 0) ::close(end);
        end = -1;
    }
}

ChildProgram::ChildProgram(const ChildStart& start) {
    // All memory is allocated before the fork.
    const std::string settings = "XDG_CONFIG_HOME=" + PathText(start.SettingsFolder);
    std::vector<std::string> arguments = {PathText(start.Program)};
    arguments.insert(arguments.end(), start.Arguments.begin(), start.Arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    std::string environment = settings;

    std::FILE* const errors = std::tmpfile();
    if (!errors) std::abort();
    m_errors = ::fcntl(::fileno(errors), F_DUPFD_CLOEXEC, 0);
    static_cast<void>(std::fclose(errors));

    m_process = ::fork();
    if (m_process < 0) std::abort();
    if (m_process > 0) return;
    ::putenv(environment.data());
    ::dup2(m_errors, STDERR_FILENO);
    ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
    if (start.LongestFile) {
        const rlimit none{0, 0};
        ::setrlimit(RLIMIT_CORE, &none);
        const rlimit longest{*start.LongestFile, *start.LongestFile};
        ::setrlimit(RLIMIT_FSIZE, &longest);
    }
    if (start.Signal) {
        ::close(start.Signal->m_pipe[1]);
        std::array<char, 1> none{};
        while (::read(start.Signal->m_pipe[0], none.data(), none.size()) > 0) {
        }
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
}

void ChildProgram::Kill() const {
    ::kill(m_process, SIGKILL);
}

bool ChildProgram::IsRunning() {
    if (m_process > 0 && ::waitpid(m_process, &m_status, WNOHANG) == m_process) m_process = -1;
    return m_process > 0;
}

int ChildProgram::Wait() {
    while (m_process > 0 && ::waitpid(m_process, &m_status, 0) < 0 && errno == EINTR) {
    }
    m_process = -1;
    return WIFEXITED(m_status) ? WEXITSTATUS(m_status) : -1;
}

std::string ChildProgram::Errors() const {
    std::string text;
    std::array<char, 512> piece{};
    for (off_t at = 0;; at = static_cast<off_t>(text.size())) {
        const ssize_t count = ::pread(m_errors, piece.data(), piece.size(), at);
        if (count <= 0) return text;
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
}
} // namespace mact
