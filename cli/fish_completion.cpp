#include "cli/completions.h"

#include <string_view>

namespace mact {
namespace {

// In the lines that are made, VALUED are the options with a value.
constexpr const char* Functions = R"fish(
# Prints the command that has been typed, or an empty line.
function __mact_cli_command
    set -l words (commandline -opc)
    set -l is_value
    for word in $words[2..-1]
        if set -q is_value[1]
            set is_value
            continue
        end
        if contains -- $word VALUED
            set is_value yes
        else if not string match -q -- '-?*' $word
            echo $word
            return
        end
    end
    echo
end

function __mact_cli_is
    test (__mact_cli_command) = "$argv"
end

# Ids and names of companies, each with the other beside it.
function __mact_cli_companies
    set -l words (commandline -opc)
    type -q $words[1]; or return
    set -l program $words[1]
    set -l place (contains -i -- --folder $words)
    and test $place -lt (count $words)
    and set -a program --folder $words[(math $place + 1)]
    for line in (command $program known-companies 2>/dev/null)
        set -l parts (string split '|' -- $line)
        printf '%s\t%s\n%s\t%s\n' $parts[1] $parts[2] $parts[2] $parts[1]
    end
end
)fish";

/// In single quotes.
std::string Quoted(std::string_view text) {
    std::string quoted = "'";
    for (const char character : text) {
        if (character == '\'' || character == '\\') quoted += '\\';
        quoted += character;
    }
    return quoted + '\'';
}

/// What follows -x or stands for an argument.
std::string Values(const DescribedOption& option) {
    switch (option.Kind) {
    case ValueKind::Choice: {
        std::string words;
        for (const std::string& choice : option.Choices)
            words += (words.empty() ? "" : " ") + choice;
        return " -a " + Quoted(words);
    }
    case ValueKind::Folder:
        return " -a '(__fish_complete_directories)'";
    case ValueKind::Company:
        return " -a '(__mact_cli_companies)'";
    case ValueKind::None:
    case ValueKind::File:
    case ValueKind::Other:
        break;
    }
    return {};
}

/// A line; `condition` says when it holds.
std::string Line(const DescribedProgram& program, const std::string& condition, const std::string& what,
                 const std::string& description) {
    return "complete -c " + program.Name + condition + what + " -d " + Quoted(description) + '\n';
}

std::string NamesOf(const DescribedOption& option) {
    std::string names;
    for (const std::string& name : option.Names)
        names += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    return names;
}

std::string LinesOf(const DescribedProgram& program, const std::string& condition,
                    const std::vector<DescribedOption>& options) {
    std::string lines;
    for (const DescribedOption& option : options) {
        const bool isFile = option.Kind == ValueKind::File;
        std::string what = NamesOf(option);
        if (!option.Names.empty() && option.Kind != ValueKind::None) what += isFile ? " -r -F" : " -x";
        if (option.Names.empty() && isFile) what += " -F";
        what += Values(option);
        if (!what.empty()) lines += Line(program, condition, what, option.Description);
    }
    return lines;
}

std::string FunctionsFor(const DescribedProgram& program) {
    std::string names;
    for (const auto& [name, option] : ValuedOptions(program))
        names += (names.empty() ? "" : " ") + name;
    std::string functions = Functions;
    return functions.replace(functions.find("VALUED"), std::string_view("VALUED").size(), names);
}

} // namespace

std::string FishCompletion(const DescribedProgram& program) {
    std::string script = "# Completion of mact-cli for fish, made from what its help says.\n";
    script += FunctionsFor(program) + "\ncomplete -c " + program.Name + " -f\n";
    script += LinesOf(program, "", program.Options);
    for (const DescribedCommand& command : program.Commands)
        script += Line(program, " -n __mact_cli_is", " -a " + command.Name, command.Description);
    for (const DescribedCommand& command : program.Commands) {
        const std::string condition = " -n '__mact_cli_is " + command.Name + '\'';
        script +=
            LinesOf(program, condition, command.Options) + LinesOf(program, condition, command.Arguments);
    }
    return script;
}
} // namespace mact
