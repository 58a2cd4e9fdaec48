#pragma once

#include "cli/commands.h"
#include "cli/overview_commands.h"
#include "cli/restore_command.h"

#include <CLI/App.hpp>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace mact {

/// What is done before a command.
enum class CommandStart {
    Whole,   ///< as the program starts, which creates a data folder if there is none
    Looking, ///< the remembered company is made current; nothing is created
    None,    ///< nothing, and no company: what is looked at may be damaged
};

/// What the command line asks for. Not copyable, since the commands hold references to it.
struct CommandLine {
    CommandLine() = default;
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    std::string Folder{};
    std::optional<std::string> Company{}; ///< an id or a name, in UTF-8
    std::string CommandName{};
    std::function<ExitStatus(AppContext&)> Command{};
    CommandStart Start = CommandStart::Whole;

    std::string Name{};
    std::string Location{};
    std::int16_t SelectedId = 0;
    std::string File{};
    std::string RecordKind{};
    WantedReport Report{};
    bool AnswersYes = false;
    OverviewSpan Span{};
    bool IsCsv = false;
    bool IsAll = false;
    bool IsJson = false;
    std::string MonthEnd{};
    std::string Figure{};
    std::string Item{};
    std::string HalfYear{};
    std::vector<std::string> PollutantNames{};
    std::vector<std::int16_t> RecordNumbers{};
    std::string Set{};
    bool IsList = false;
    RestoreConsent Consent{};
};

/// Follows the help of the program, and of each command that has no notes of its own.
inline constexpr const char* CommonNotes =
    "--folder and --company may also follow the command. A company's name is its whole name, in any case; a\n"
    "number is always an id.";

/// Describes all commands and options to the parser, which stores what it reads in `asked`.
void DescribeCommands(CLI::App& parser, CommandLine& asked);

/// Reads the arguments, in UTF-8 and without the program's name. The status to end with; empty if there is a
/// command to run.
std::optional<ExitStatus> ReadCommandLine(std::vector<std::string> arguments, CommandLine& asked);
} // namespace mact
