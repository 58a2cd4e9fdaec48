#include "cli/man_page.h"

#include "base/text.h"
#include "cli/commands.h"

#include <algorithm>

namespace mact {
namespace {

/// The text so that it is shown as it is: with hyphens that can be copied, and no line that reads as a
/// request.
std::string Roff(const std::string& text) {
    std::string roff;
    for (const char character : text) {
        if (character == '-')
            roff += "\\-";
        else if (character == '\\')
            roff += "\\e";
        else
            roff += character;
    }
    return roff.starts_with('.') || roff.starts_with('\'') ? "\\&" + roff : roff;
}

/// A line of running text.
std::string Sentence(std::string text) {
    std::ranges::replace(text, '\n', ' ');
    return Roff(text) + (text.ends_with('.') ? "\n" : ".\n");
}

std::string Bold(const std::string& text) {
    return "\\fB" + Roff(text) + "\\fR";
}
std::string Italic(const std::string& text) {
    return "\\fI" + Roff(text) + "\\fR";
}

/// -h, --help, or --ending M/YYYY
std::string NamesOf(const DescribedOption& option) {
    std::string names;
    for (const std::string& name : option.Names)
        names += (names.empty() ? "" : ", ") + Bold(name);
    if (option.Value.empty()) return names;
    return names + (names.empty() ? "" : " ") + Italic(option.Value) + (option.IsRepeated ? "..." : "");
}

std::string ListOf(const std::vector<DescribedOption>& options) {
    std::string list;
    for (const DescribedOption& option : options) {
        list += ".TP\n" + NamesOf(option) + '\n' + Sentence(option.Description);
        for (std::size_t index = 0; index < option.Choices.size(); ++index)
            list += (index == 0 ? "One of\n" : "") + Bold(option.Choices[index]) +
                    (index + 1 == option.Choices.size() ? ".\n" : ",\n");
    }
    return list;
}

std::string Synopsis(const DescribedProgram& program, const DescribedCommand& command) {
    std::string synopsis = Bold(program.Name) + ' ' + Bold(command.Name);
    for (const std::vector<DescribedOption>& options : {command.Options, command.Arguments})
        for (const DescribedOption& option : options)
            synopsis += option.IsRequired ? ' ' + NamesOf(option) : " [" + NamesOf(option) + ']';
    return synopsis + '\n';
}

std::string PartOf(const DescribedProgram& program, const DescribedCommand& command) {
    return ".SS " + Roff(command.Name) + '\n' + Synopsis(program, command) + ".PP\n" +
           Sentence(command.Description) + ListOf(command.Arguments) + ListOf(command.Options) +
           (command.Notes.empty() ? "" : ".PP\n" + Sentence(command.Notes));
}

/// For the line that names a page, which has no full stop.
std::string WithoutFullStop(std::string text) {
    if (text.ends_with('.')) text.pop_back();
    return Roff(text);
}

} // namespace

std::string ManPage(const DescribedProgram& program) {
    std::string page = ".TH " + UpperCase(Roff(program.Name)) + " 1 \"\" \"" + program.Version +
                       "\"\n.nh\n.ad l\n"; // no word of a command is divided
    page += ".SH NAME\n" + Roff(program.Name) + " \\- " + WithoutFullStop(program.Description) + '\n';
    page += ".SH SYNOPSIS\n" + Bold(program.Name) + " [" + Italic("OPTION") + "]... " + Italic("COMMAND") +
            " [" + Italic("ARGUMENT") + "]...\n";
    page += ".SH DESCRIPTION\n" + Sentence(program.Description);
    page += ".SH OPTIONS\n" + Sentence(program.Notes) + ListOf(program.Options);
    page += ".SH COMMANDS\n";
    for (const DescribedCommand& command : program.Commands)
        page += PartOf(program, command);
    page += ".SH EXIT STATUS\n";
    for (const auto& [status, meaning] : ExitStatusTexts)
        page += ".TP\n" + Bold(std::to_string(status)) + '\n' + Sentence(meaning);
    return page + ".SH SEE ALSO\n" + Bold("mact") + "(1)\n";
}
} // namespace mact
