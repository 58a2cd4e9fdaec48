#include "cli/completions.h"

#include <string_view>

namespace mact {
namespace {

constexpr const char* Companies = R"zsh(
# Ids and names of companies.
_mact-cli_companies() {
    local -a ids names
    local line folder=${(Q)opt_args[--folder]:-$folder_before}
    for line in ${(f)"$($program ${folder:+--folder} ${folder:+$folder} known-companies 2>/dev/null)"}; do
        ids+=("${line%%|*}:${${line#*|}%%|*}")
        names+=("${${line#*|}%%|*}")
    done
    _describe -t ids id ids
    compadd -M 'm:{a-zA-Z}={A-Za-z}' -a names
}
)zsh";

/// In single quotes.
std::string Quoted(std::string_view text) {
    std::string quoted = "'";
    for (const char character : text)
        quoted += character == '\'' ? std::string("'\\''") : std::string(1, character);
    return quoted + '\'';
}

/// With a backslash before each character that would end a part of an argument's description.
std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        if (character == '[' || character == ']' || character == ':' || character == '\\') escaped += '\\';
        escaped += character;
    }
    return escaped;
}

/// :KIND:(one another)
std::string ValuePart(const DescribedOption& option) {
    std::string part = ':' + Escaped(option.Value) + ':';
    switch (option.Kind) {
    case ValueKind::Choice:
        for (const std::string& choice : option.Choices)
            part += (part.ends_with(':') ? '(' : ' ') + choice;
        return part + ')';
    case ValueKind::File:
        return part + "_files";
    case ValueKind::Folder:
        return part + "_files -/";
    case ValueKind::Company:
        return part + "_mact-cli_companies";
    case ValueKind::None:
    case ValueKind::Other:
        break;
    }
    return part + ' '; // nothing to offer
}

std::string ArgumentOf(const DescribedOption& option) {
    if (option.Names.empty())
        return Quoted((option.IsRepeated ? "*" : option.IsRequired ? "" : ":") + ValuePart(option));
    const bool hasValue = option.Kind != ValueKind::None;
    std::string rest = (hasValue ? "=" : "") + ("[" + Escaped(option.Description) + ']');
    if (hasValue) rest += ValuePart(option);
    if (option.Names.size() == 1) return Quoted(option.Names.front() + rest);
    std::string excluded;
    std::string names;
    for (const std::string& name : option.Names) {
        excluded += (excluded.empty() ? "" : " ") + name;
        names += (names.empty() ? "" : ",") + name;
    }
    return Quoted('(' + excluded + ')') + '{' + names + '}' + Quoted(rest);
}

std::string ArgumentLines(const std::vector<DescribedOption>& options, std::string_view indentation) {
    std::string list;
    for (const DescribedOption& option : options)
        list += " \\\n" + std::string(indentation) + ArgumentOf(option);
    return list;
}

} // namespace

std::string ZshCompletion(const DescribedProgram& program) {
    std::string script =
        "#compdef " + program.Name + "\n# Completion for zsh, made from what the help says.\n";
    script += Companies;
    script += "\n_mact-cli() {\n    local curcontext=$curcontext state program=$words[1] folder_before\n    "
              "local -a line "
              "commands\n"
              "    typeset -A opt_args\n    commands=(\n";
    for (const DescribedCommand& command : program.Commands)
        script += "        " + Quoted(command.Name + ':' + Escaped(command.Description)) + '\n';
    script += "    )\n    _arguments -C" + ArgumentLines(program.Options, "        ") +
              " \\\n        '1:command:->command' '*::argument:->arguments'\n"
              "    case $state in\n    command) _describe -t commands command commands ;;\n"
              "    arguments)\n        folder_before=${(Q)opt_args[--folder]}\n        case $line[1] in\n";
    for (const DescribedCommand& command : program.Commands) {
        script += "        " + command.Name + ")\n            _arguments" +
                  ArgumentLines(program.Options, "                ") +
                  ArgumentLines(command.Options, "                ") +
                  ArgumentLines(command.Arguments, "                ") + "\n            ;;\n";
    }
    return script + "        esac\n        ;;\n    esac\n}\n\n_mact-cli \"$@\"\n";
}
} // namespace mact
