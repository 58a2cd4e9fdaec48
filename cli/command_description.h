#pragma once

#include <CLI/App.hpp>

#include <map>
#include <string>
#include <vector>

namespace mact {

/// The commands and options as the help describes them, for what is made from it: the manual page and the
/// completions of shells. All texts are ASCII.

enum class ValueKind {
    None,   ///< a flag
    Choice, ///< one of DescribedOption::Choices
    File,   ///< or "-"
    Folder,
    Company, ///< an id or a name
    Other,
};

/// An option, or an argument that has its place instead of a name.
struct DescribedOption {
    std::vector<std::string> Names{}; ///< as typed: -h, --help; empty = an argument
    std::string Value{};              ///< what the help calls the value, such as M/YYYY; empty = a flag
    ValueKind Kind = ValueKind::None;
    std::vector<std::string> Choices{};
    bool IsRequired = false;
    bool IsRepeated = false;
    std::string Description{}; ///< a sentence without its full stop
};

struct DescribedCommand {
    std::string Name{};
    std::string Description{};
    std::string Notes{};                    ///< in several lines; empty = those of the program
    std::vector<DescribedOption> Options{}; ///< without those of the program
    std::vector<DescribedOption> Arguments{};
};

struct DescribedProgram {
    std::string Name{};
    std::string Version{};
    std::string Description{};
    std::string Notes{};                    ///< in several lines
    std::vector<DescribedOption> Options{}; ///< before or after any command
    std::vector<DescribedCommand> Commands{};
};
DescribedProgram DescribeProgram(const CLI::App& parser);

/// The options with a value, by name: those of one name are alike in all commands.
std::map<std::string, DescribedOption> ValuedOptions(const DescribedProgram& program);
} // namespace mact
