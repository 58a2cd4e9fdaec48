#include "cli/command_description.h"

#include "base/text.h"
#include "cli/command_line.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace mact {
namespace {

/// The parser shows them in the type of the value: TEXT:{materials,usage}
std::vector<std::string> ChoicesIn(const std::string& typeName) {
    const std::size_t start = typeName.find('{');
    const std::size_t end = typeName.find('}', start);
    if (end == std::string::npos) return {};
    const std::string list = typeName.substr(start + 1, end - start - 1);
    std::vector<std::string> choices;
    for (const std::string_view choice : Split(list, ','))
        choices.emplace_back(choice);
    return choices;
}

ValueKind KindOf(const DescribedOption& option) {
    if (option.Value.empty()) return ValueKind::None;
    if (!option.Choices.empty()) return ValueKind::Choice;
    if (option.Value == "FILE") return ValueKind::File;
    if (option.Value == "DIR") return ValueKind::Folder;
    if (option.Value == "COMPANY") return ValueKind::Company;
    return ValueKind::Other;
}

DescribedOption Described(const CLI::Option& option) {
    DescribedOption described{.Choices = ChoicesIn(option.get_type_name()),
                              .IsRequired = option.get_required(),
                              .IsRepeated = option.get_items_expected_max() > 1,
                              .Description = option.get_description()};
    for (const std::string& name : option.get_snames())
        described.Names.push_back('-' + name);
    for (const std::string& name : option.get_lnames())
        described.Names.push_back("--" + name);
    if (option.get_positional())
        described.Value = option.get_name(true);
    else if (option.get_items_expected_max() > 0)
        described.Value = option.get_type_name();
    described.Kind = KindOf(described);
    return described;
}

DescribedCommand Described(const CLI::App& command, const CLI::App& parser) {
    DescribedCommand described{.Name = command.get_name(), .Description = command.get_description()};
    if (command.get_footer() != CommonNotes) described.Notes = command.get_footer();
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_positional())
            described.Arguments.push_back(Described(*option));
        else if (parser.get_option_no_throw(option->get_name()) == nullptr)
            described.Options.push_back(Described(*option));
    }
    return described;
}

} // namespace

DescribedProgram DescribeProgram(const CLI::App& parser) {
    DescribedProgram program{.Name = parser.get_name(),
                             .Version = parser.version(),
                             .Description = parser.get_description(),
                             .Notes = CommonNotes};
    for (const CLI::Option* option : parser.get_options())
        program.Options.push_back(Described(*option));
    for (const CLI::App* command : parser.get_subcommands({}))
        if (!command->get_group().empty()) // as in the help
            program.Commands.push_back(Described(*command, parser));
    return program;
}

std::map<std::string, DescribedOption> ValuedOptions(const DescribedProgram& program) {
    std::map<std::string, DescribedOption> valued;
    const auto add = [&](const std::vector<DescribedOption>& options) {
        for (const DescribedOption& option : options)
            for (const std::string& name : option.Names)
                if (option.Kind != ValueKind::None) valued[name] = option;
    };
    add(program.Options);
    for (const DescribedCommand& command : program.Commands)
        add(command.Options);
    return valued;
}
} // namespace mact
