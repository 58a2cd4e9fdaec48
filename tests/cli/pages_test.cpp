#include "tests/cli/cli_shop.h"

#include <set>
#include <sstream>

namespace mact {
namespace {

using Words = std::set<std::string>;

/// What the build makes from the description of the commands: the manual page, and completions for shells. A
/// shell that is not installed is left out.
class PagesTest : public CliShop {
protected:
    static std::string Page(const std::string& name) {
        return ContentOf(std::filesystem::path(MACT_SHARE_FOLDER) / name);
    }
    static inline const std::string Manual = "man/man1/mact-cli.1";
    static inline const std::string Bash = "bash-completion/completions/mact-cli";
    static inline const std::string Zsh = "zsh/site-functions/_mact-cli";
    static inline const std::string Fish = "fish/vendor_completions.d/mact-cli.fish";
    static std::string PathOf(const std::string& name) { return std::string(MACT_SHARE_FOLDER) + '/' + name; }

    /// The first words of the help's lines below a heading.
    Words FirstWords(const std::vector<std::string>& command, const std::string& heading) const {
        std::vector<std::string> arguments = command;
        arguments.emplace_back("--help");
        std::istringstream lines(Run(arguments).Output);
        Words words;
        bool isBelow = false;
        for (std::string line; std::getline(lines, line);) {
            if (line == heading) isBelow = true;
            if (line.empty()) isBelow = false;
            if (isBelow && line.starts_with("  ") && line[2] != ' ')
                words.insert(line.substr(2, line.find(' ', 2) - 2));
        }
        return words;
    }
    /// The options that the help lists, apart: -h,--help.
    Words OptionsOf(const std::vector<std::string>& command) const {
        Words options;
        for (const std::string& names : FirstWords(command, "Options:"))
            for (const std::string_view name : Split(names, ','))
                options.emplace(name);
        return options;
    }
    Words CommandNames() const { return FirstWords({}, "Subcommands:"); }

    static Words LinesOf(const std::string& text) {
        Words words;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);)
            words.insert(line.substr(0, line.find('\t'))); // fish: what comes behind is a description
        return words;
    }
    /// What bash offers for the last of the words.
    Words OfferedByBash(const std::vector<std::string>& words) const {
        const std::string script = R"(
            source "$0"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _mact_cli "$1"
            printf '%s\n' "${COMPREPLY[@]}")";
        std::vector<std::string> arguments = {"--norc", "-c", script, PathOf(Bash), MACT_CLI_PROGRAM};
        arguments.insert(arguments.end(), words.begin(), words.end());
        const ProgramRun run = RunProgram(MACT_BASH, arguments, Config);
        EXPECT_EQ(run.Errors, "");
        Words offered = LinesOf(run.Output);
        offered.erase(""); // of nothing, printf makes an empty line
        return offered;
    }
    /// What fish offers at the end of a line that begins with mact-cli.
    Words OfferedByFish(const std::string& line) const {
        const std::string script =
            "set -x PATH (dirname $argv[1]) $PATH; source $argv[2]; complete -C $argv[3]";
        const ProgramRun run = RunProgram(
            MACT_FISH, {"--no-config", "-c", script, MACT_CLI_PROGRAM, PathOf(Fish), "mact-cli " + line},
            Config);
        EXPECT_EQ(run.Errors, "");
        return LinesOf(run.Output);
    }
};

/// The part of a text from one text up to the next one of another.
std::string Between(const std::string& text, const std::string& from, const std::string& to) {
    const std::size_t start = text.find(from);
    if (start == std::string::npos) return {};
    return text.substr(start, text.find(to, start + from.size()) - start);
}

std::string InRoff(const std::string& text) {
    std::string roff;
    for (const char character : text)
        roff += character == '-' ? std::string("\\-") : std::string(1, character);
    return roff;
}

/// A path as it is typed in a shell.
std::string AsTyped(const std::string& path) {
    std::string typed;
    for (const char character : path)
        typed += (character == ' ' || character == '\'' ? "\\" : "") + std::string(1, character);
    return typed;
}

bool IsOfTheProgram(const std::string& option) {
    return Words{"-h", "--help", "--version", "--folder", "--company"}.contains(option);
}

TEST_F(PagesTest, TheHelpThatTheyAreComparedWithIsUnderstood) {
    EXPECT_EQ(CommandNames().size(), 18U);
    EXPECT_EQ(OptionsOf({}), (Words{"-h", "--help", "--version", "--folder", "--company"}));
    EXPECT_EQ(OptionsOf({"report"}),
              (Words{"-h", "--help", "--version", "--ending", "--output", "--yes", "--json"}));
}

TEST_F(PagesTest, TheManualHasEveryCommandWithEveryOption) {
    const std::string page = Page(Manual);
    const std::string general = Between(page, ".SH OPTIONS\n", ".SH ");
    for (const std::string& option : OptionsOf({}))
        EXPECT_NE(general.find("\\fB" + InRoff(option) + "\\fR"), std::string::npos) << option;
    for (const std::string& command : CommandNames()) {
        const std::string part = Between(page, ".SS " + InRoff(command) + "\n", "\n.S");
        EXPECT_NE(part, "") << command;
        for (const std::string& option : OptionsOf({command})) {
            if (IsOfTheProgram(option)) continue;
            EXPECT_NE(part.find(".TP\n\\fB" + InRoff(option) + "\\fR"), std::string::npos)
                << command << ' ' << option;
        }
        for (const std::string& argument : FirstWords({command}, "Positionals:"))
            EXPECT_NE(part.find(".TP\n\\fI" + argument + "\\fR"), std::string::npos)
                << command << ' ' << argument;
    }
    EXPECT_NE(page.find("\\fBemission\\-average\\fR"), std::string::npos);
    EXPECT_NE(Between(page, ".SH EXIT STATUS", ".SH SEE").find(".TP\n\\fB6\\fR\n"), std::string::npos);
}

TEST_F(PagesTest, TheManualsAreShownWithoutWarnings) {
    if (std::string_view(MACT_GROFF).empty()) GTEST_SKIP() << "groff is not installed.";
    for (const char* name : {"man/man1/mact-cli.1", "man/man1/mact.1"}) {
        if (!std::filesystem::exists(PathOf(name))) continue; // mact.1 is that of the windows
        const ProgramRun run =
            RunProgram(MACT_GROFF, {"-man", "-Tutf8", "-ww", "-P-cbou", PathOf(name)}, Config);
        EXPECT_EQ(run.Status, 0);
        EXPECT_EQ(run.Errors, "") << name;
        EXPECT_NE(run.Output.find("SEE ALSO"), std::string::npos);
    }
}

TEST_F(PagesTest, BashOffersEveryCommandAndEveryOption) {
    if (std::string_view(MACT_BASH).empty()) GTEST_SKIP() << "bash is not installed.";
    EXPECT_EQ(OfferedByBash({""}), CommandNames());
    EXPECT_EQ(OfferedByBash({"-"}), OptionsOf({}));
    for (const std::string& command : CommandNames()) {
        Words expected = OptionsOf({command});
        expected.insert({"--folder", "--company"});
        EXPECT_EQ(OfferedByBash({command, "-"}), expected);
    }
}

TEST_F(PagesTest, BashOffersValuesAndArguments) {
    if (std::string_view(MACT_BASH).empty()) GTEST_SKIP() << "bash is not installed.";
    const std::string folder = AsTyped(PathText(Folder));
    AddCompany("Acme Boats", "Dock 1");
    AddCompany("acme", "Dock 2");
    AddCompany("1st", "Dock 3");
    EXPECT_EQ(OfferedByBash({"re"}), (Words{"report", "restore"}));
    EXPECT_EQ(OfferedByBash({"report", "emi"}), Words{"emission-average"});
    EXPECT_EQ(OfferedByBash({"report", "compliant", ""}), Words{});
    EXPECT_EQ(OfferedByBash({"report", "compliant", "--o"}), Words{"--output"});
    EXPECT_EQ(OfferedByBash({"--company", "report", "undelete", ""}), (Words{"materials", "usage"}));
    EXPECT_EQ(OfferedByBash({"--folder", folder, "--company", "a"}), (Words{"Acme\\ Boats", "acme"}));
    EXPECT_EQ(OfferedByBash({"--folder", folder, "--company", "\"Acme B"}), Words{"Acme Boats"});
    EXPECT_EQ(OfferedByBash({"--folder", '"' + PathText(Folder) + '"', "--company", "'Acme B"}),
              Words{"Acme Boats"});
    EXPECT_EQ(OfferedByBash({"--folder", "=", folder, "status", "--company", "=", "1"}), (Words{"1", "1st"}));
    EXPECT_EQ(OfferedByBash({"--folder", folder, "--company", "="}),
              (Words{"1", "2", "3", "Acme\\ Boats", "acme", "1st"}));
    EXPECT_EQ(OfferedByBash({"report", "--ending", ""}), Words{});
    FileNamed("usage 1.txt", "");
    const std::string begun = AsTyped(PathText(Temporary.Path() / "usa"));
    EXPECT_EQ(OfferedByBash({"import-usage", begun}), Words{PathText(Temporary.Path() / "usage 1.txt")});
    EXPECT_EQ(OfferedByBash({"report", "--output", begun}),
              Words{PathText(Temporary.Path() / "usage 1.txt")});
    EXPECT_EQ(OfferedByBash({"--folder", AsTyped(PathText(Temporary.Path() / "pro"))}),
              Words{PathText(Folder)});
}

TEST_F(PagesTest, WhatIsOfferedCreatesNothing) {
    const std::string folder = AsTyped(PathText(Folder));
    if (!std::string_view(MACT_BASH).empty()) {
        EXPECT_EQ(OfferedByBash({"--folder", folder, "--company", ""}), Words{});
    }
    if (!std::string_view(MACT_FISH).empty()) {
        EXPECT_EQ(OfferedByFish("--folder " + folder + " --company "), Words{});
    }
    EXPECT_TRUE(std::filesystem::is_empty(Folder));
    EXPECT_EQ(Page(Zsh).find(" companies 2>"), std::string::npos); // which would create a data folder
}

TEST_F(PagesTest, FishOffersEveryCommandAndEveryOption) {
    if (std::string_view(MACT_FISH).empty()) GTEST_SKIP() << "fish is not installed.";
    EXPECT_EQ(OfferedByFish(""), CommandNames());
    for (const std::string& command : CommandNames()) {
        Words expected = OptionsOf({command});
        expected.insert({"--folder", "--company"});
        expected.erase("-h");
        EXPECT_EQ(OfferedByFish(command + " --"), expected);
    }
}

TEST_F(PagesTest, FishOffersValuesAndArguments) {
    if (std::string_view(MACT_FISH).empty()) GTEST_SKIP() << "fish is not installed.";
    AddCompany("Acme Boats", "Dock 1");
    AddCompany("2nd", "Dock 2");
    EXPECT_EQ(OfferedByFish("--company report re"), (Words{"report", "restore"}));
    EXPECT_EQ(OfferedByFish("report emi"), Words{"emission-average"});
    EXPECT_EQ(OfferedByFish("undelete "), (Words{"materials", "usage"}));
    EXPECT_EQ(OfferedByFish("companies "), Words{});
    EXPECT_EQ(OfferedByFish("--folder " + AsTyped(PathText(Folder)) + " status --company "),
              (Words{"1", "2", "Acme Boats", "2nd"}));
}

// zsh shows what it offers only on a terminal, so the script is read instead.
TEST_F(PagesTest, ZshTakesTheScriptWhichHasEveryCommandWithEveryOption) {
    const std::string script = Page(Zsh);
    for (const std::string& command : CommandNames()) {
        EXPECT_NE(script.find("\n        '" + command + ':'), std::string::npos) << command;
        const std::string part = Between(script, "\n        " + command + ")\n", ";;");
        EXPECT_NE(part.find("'{-h,--help}'["), std::string::npos) << command;
        Words expected = OptionsOf({command});
        expected.insert({"--folder", "--company"});
        expected.erase("-h");
        expected.erase("--help");
        for (const std::string& option : expected)
            EXPECT_TRUE(part.find('\'' + option + '[') != std::string::npos ||
                        part.find('\'' + option + "=[") != std::string::npos)
                << command << ' ' << option;
    }
    if (std::string_view(MACT_ZSH).empty()) GTEST_SKIP() << "zsh is not installed.";
    const ProgramRun run = RunProgram(MACT_ZSH, {"-f", "-n", PathOf(Zsh)}, Config);
    EXPECT_EQ(run.Status, 0);
    EXPECT_EQ(run.Errors, "");
}

} // namespace
} // namespace mact
