#include "cli/completions.h"

#include <map>
#include <string_view>

namespace mact {
namespace {

constexpr const char* Routines = R"sh(
# Offers the words behind the first that begin with it.
_mact_cli_words() {
    local typed=$1 word
    shift
    for word; do
        [[ $word == "$typed"* ]] && COMPREPLY+=("$word")
    done
}

# Sets plain to what has been typed, without the quotes and backslashes of the shell.
_mact_cli_unquote() {
    local typed=$1 quote='' character
    plain=''
    while [[ -n $typed ]]; do
        character=${typed:0:1}
        typed=${typed:1}
        if [[ $character == \\ && $quote != \' ]]; then
            plain+=${typed:0:1}
            typed=${typed:1}
        elif [[ $character == "$quote" ]]; then
            quote=''
        elif [[ -z $quote && $character == [\"\'] ]]; then
            quote=$character
        else
            plain+=$character
        fi
    done
}

# Offers files (-f) or folders (-d).
_mact_cli_paths() {
    local plain
    _mact_cli_unquote "$2"
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen "$1" -- "$plain")
}

# Offers ids and names of companies. The program and its options come before what is typed.
_mact_cli_companies() {
    local typed=${*: -1} plain id name rest
    _mact_cli_unquote "$typed"
    while IFS='|' read -r id name rest; do
        [[ $id == "$plain"* ]] && COMPREPLY+=("$id")
        [[ -n $name && ${name,,} == "${plain,,}"* ]] || continue
        # Within quotes, which stay, a name needs no backslashes.
        [[ $typed == [\"\']* ]] || printf -v name %q "$name"
        COMPREPLY+=("$name")
    done < <("${@:1:$#-1}" known-companies 2>/dev/null)
}
)sh";

// In the lines that are made, VALUED are the options with a value.
constexpr const char* Reading = R"sh(
_mact_cli() {
    local typed=${COMP_WORDS[COMP_CWORD]} program=("$1") command='' count=0 option='' index=1 word plain
    COMPREPLY=()
    while ((index < COMP_CWORD)); do
        word=${COMP_WORDS[index]}
        case $word in
        VALUED)
            option=$word
            ((index++))
            [[ ${COMP_WORDS[index]} == = ]] && ((index++)) # bash takes --option=value apart
            if ((index < COMP_CWORD)); then
                option=''
                _mact_cli_unquote "${COMP_WORDS[index]}"
                [[ $word == --folder ]] && program+=(--folder "${plain/#\~/$HOME}")
            fi
            ;;
        -?*) ;;
        *) if [[ -z $command ]]; then command=$word; else ((count++)); fi ;;
        esac
        ((index++))
    done
    [[ $typed == = ]] && typed=''
)sh";

/// What completes a value; empty if nothing does.
std::string Action(const DescribedOption& option) {
    switch (option.Kind) {
    case ValueKind::Choice: {
        std::string words = R"(_mact_cli_words "$typed")";
        for (const std::string& choice : option.Choices)
            words += ' ' + choice;
        return words;
    }
    case ValueKind::File:
        return R"(_mact_cli_paths -f "$typed")";
    case ValueKind::Folder:
        return R"(_mact_cli_paths -d "$typed")";
    case ValueKind::Company:
        return R"(_mact_cli_companies "${program[@]}" "$typed")";
    case ValueKind::None:
    case ValueKind::Other:
        break;
    }
    return {};
}

std::string Names(const std::vector<DescribedOption>& options) {
    std::string names;
    for (const DescribedOption& option : options)
        for (const std::string& name : option.Names)
            names += (names.empty() ? "" : " ") + name;
    return names;
}

/// A branch of a case.
std::string Branch(const std::string& pattern, const std::string& action) {
    return "    " + pattern + ") " + action + " ;;\n";
}

std::string ReadingFor(const std::map<std::string, DescribedOption>& valued) {
    std::string names;
    for (const auto& [name, option] : valued)
        names += (names.empty() ? "" : " | ") + name;
    std::string reading = Reading;
    return reading.replace(reading.find("VALUED"), std::string_view("VALUED").size(), names);
}

} // namespace

std::string BashCompletion(const DescribedProgram& program) {
    const std::map<std::string, DescribedOption> valued = ValuedOptions(program);
    std::string script = "# Completion of mact-cli for bash, made from what its help says.\n";
    script += Routines + ReadingFor(valued) + "    case $option in\n    '') ;;\n";
    for (const auto& [name, option] : valued) {
        const std::string action = Action(option);
        script += Branch(name, action.empty() ? "return" : action + "; return");
    }
    script += "    esac\n    local options='" + Names(program.Options) + "'\n    case $command in\n";
    std::string commands = R"(_mact_cli_words "$typed")";
    for (const DescribedCommand& command : program.Commands) {
        commands += ' ' + command.Name;
        if (!command.Options.empty())
            script += Branch(command.Name, "options+=' " + Names(command.Options) + '\'');
    }
    script += "    esac\n    if [[ $typed == -* ]]; then\n"
              "        # shellcheck disable=SC2086 # names without blanks\n"
              "        _mact_cli_words \"$typed\" $options\n        return\n    fi\n"
              "    case $command:$count in\n" +
              Branch(":0", commands);
    for (const DescribedCommand& command : program.Commands)
        for (std::size_t place = 0; place < command.Arguments.size(); ++place) {
            const std::string action = Action(command.Arguments[place]);
            if (!action.empty()) script += Branch(command.Name + ':' + std::to_string(place), action);
        }
    return script + "    esac\n}\ncomplete -F _mact_cli " + program.Name + '\n';
}
} // namespace mact
