#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// mact_turns ROUNDS [--fresh FILE]... -- COMMAND ARGUMENT... -- COMMAND ARGUMENT...
//
// Runs the two commands in turn and prints the median time of each, in ms, and how many times longer the
// second takes. The fresh files are removed before each run. What the commands print is dropped.

extern char** environ;

namespace {

using Command = std::vector<char*>; // ends with a null pointer

/// In ms. Stops the process when the command fails.
double TimeOf(const Command& command) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const auto start = std::chrono::steady_clock::now();
    pid_t process = 0;
    int status = -1;
    if (posix_spawnp(&process, command.front(), &actions, nullptr, command.data(), environ) == 0)
        waitpid(process, &status, 0);
    const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
    posix_spawn_file_actions_destroy(&actions);
    if (status != 0) {
        std::fprintf(stderr, "mact_turns: %s failed\n", command.front());
        std::exit(1);
    }
    return taken.count();
}

double Median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char* argv[]) {
    const std::vector<char*> arguments(argv + 1, argv + argc);
    std::vector<std::string> fresh;
    std::vector<Command> commands;
    for (std::size_t at = 1; at < arguments.size(); ++at) {
        if (arguments[at] == std::string("--"))
            commands.emplace_back();
        else if (!commands.empty())
            commands.back().push_back(arguments[at]);
        else if (arguments[at] == std::string("--fresh") && at + 1 < arguments.size())
            fresh.emplace_back(arguments[++at]);
    }
    const int rounds = arguments.empty() ? 0 : std::atoi(arguments.front());
    if (rounds < 1 || commands.size() != 2 || commands[0].empty() || commands[1].empty()) {
        std::fprintf(stderr, "mact_turns ROUNDS [--fresh FILE]... -- COMMAND... -- COMMAND...\n");
        return 2;
    }
    for (Command& command : commands)
        command.push_back(nullptr);

    std::vector<double> times[2];
    for (int round = -1; round < rounds; ++round) { // round -1 may read from the disk and does not count
        for (std::size_t which = 0; which < 2; ++which) {
            for (const std::string& file : fresh)
                std::filesystem::remove(file);
            const double time = TimeOf(commands[which]);
            if (round >= 0) times[which].push_back(time);
        }
    }
    const double first = Median(times[0]);
    const double second = Median(times[1]);
    std::printf("%10.1f %10.1f %7.2f", first, second, second / first);
    return 0;
}
