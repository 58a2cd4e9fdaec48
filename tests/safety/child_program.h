#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace mact {

/// Holds children back until all of them have been started.
class StartSignal {
public:
    StartSignal();
    StartSignal(const StartSignal&) = delete;
    StartSignal& operator=(const StartSignal&) = delete;
    ~StartSignal() { Give(); }
    void Give();
    /// In a child: returns once it has been given.
    void Await() const;

private:
    int m_pipe[2] = {-1, -1};
};

/// What a child is started with.
struct ChildStart {
    std::filesystem::path Program{};
    std::vector<std::string> Arguments{};
    std::filesystem::path SettingsFolder{};     ///< instead of the user's own; temporary files go beside it
    std::vector<std::string> Environment{};     ///< more of it, as NAME=value
    std::optional<std::uint64_t> LongestFile{}; ///< bytes; a write beyond them kills the child
    std::optional<std::uint64_t> MostMemory{};  ///< bytes of address space
    int LockError = 0;                          ///< errno with which each lock fails; 0 = locks work
    unsigned LongestTime = 0;                   ///< seconds until it is killed; 0 = never
    const StartSignal* Signal = nullptr;        ///< the child waits for it
    bool IsTraced = false;                      ///< it stops at its start: RunToChange takes it on
    bool CountsReads = false;                   ///< reading counts as a change does, and stops it too
};

/// A child process. It leads a process group, so that killing it kills what it has started too.
class ChildProgram {
public:
    explicit ChildProgram(const ChildStart& start);
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;
    ~ChildProgram();

    bool IsRunning();
    /// Like kill -9.
    void Kill() const;
    /// Stops it and all that it has started, wherever they are, until Continue.
    void Pause() const;
    void Continue() const;
    /// Lets a traced child run until it begins system call `number` of those that change files (open what may
    /// be new, write, flush, rename, remove ...). There it stays, until Kill or Release. Returns how many
    /// such calls it began: fewer if it has ended.
    int RunToChange(int number);
    /// Lets a traced child that stays somewhere run on, no longer traced.
    void Release() const;
    /// Waits for the end. Returns the exit status; -1 = it was killed.
    int Wait();
    /// Waits for the end of the programs that it started as well.
    int WaitForAll();
    /// What it wrote to its error output.
    std::string Errors() const;
    /// What it wrote to its standard output.
    std::string Output() const;
    /// The most memory that it had at once, in bytes, once it has ended.
    std::uint64_t PeakMemory() const { return m_peakMemory; }

private:
    pid_t m_process = -1; ///< -1 = it has ended
    int m_status = 0;     ///< as waitpid reports it
    std::uint64_t m_peakMemory = 0;
    int m_errors = -1;  ///< its error output, in a file without a name
    int m_output = -1;  ///< the same for its standard output
    int m_alive = -1;   ///< a pipe that ends with the last program that it started
    bool m_countsReads; ///< as in ChildStart
};
} // namespace mact
