#include "cli/command_line.h"

#include "base/text.h"
#include "cli/deleted_commands.h"
#include "cli/standard_streams.h"
#include "overview/half_year.h"
#include "reports/report_period.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>

namespace mact {
namespace {

CLI::App& AddCommand(CLI::App& parser, CommandLine& asked, const std::string& name,
                     const std::string& description, const std::function<ExitStatus(AppContext&)>& command,
                     CommandStart start = CommandStart::Whole) {
    CLI::App& added = *parser.add_subcommand(name, description);
    added.set_version_flag("--version", parser.version()); // a command does not inherit it
    // Only noted here: the command runs once the whole line has been checked.
    added.callback([&asked, name, command, start] {
        asked.CommandName = name;
        asked.Command = command;
        asked.Start = start;
    });
    return added;
}

void AddCompanyCommands(CLI::App& parser, CommandLine& asked) {
    CLI::App& companies = AddCommand(parser, asked, "companies", "List the companies: id|name|location",
                                     [&](AppContext& app) { return ListCompanies(app, asked.IsJson); });
    companies.add_flag("--json", asked.IsJson,
                       "Print JSON: id, name, location, and whether it is the current company");
    CLI::App& add = AddCommand(parser, asked, "add-company", "Add a company and print its id",
                               [&](AppContext& app) { return AddCompany(app, asked.Name, asked.Location); });
    add.add_option("NAME", asked.Name, "Company name")->required();
    add.add_option("LOCATION", asked.Location, "Location")->required();
    CLI::App& select =
        AddCommand(parser, asked, "select-company", "Make a company the current one, now and later",
                   [&](AppContext& app) { return UseCompany(app, asked.SelectedId, true); });
    select.add_option("ID", asked.SelectedId, "The company's id")->required();
}

/// For completions: a key that is pressed by the way must not create a data folder. Not in the help.
void AddKnownCompaniesCommand(CLI::App& parser, CommandLine& asked) {
    AddCommand(
        parser, asked, "known-companies", "List the companies, if there is a data folder",
        [](AppContext& app) { return ListCompanies(app, false); }, CommandStart::Looking)
        .group("");
}

void AddNamesCommand(CLI::App& parser, CommandLine& asked) {
    constexpr int six = 6;
    CLI::App& names =
        AddCommand(parser, asked, "names", "List or set the names of the six additional pollutants",
                   [&](AppContext& app) {
                       return asked.PollutantNames.empty() ? ShowPollutantNames(app)
                                                           : SetPollutantNames(app, asked.PollutantNames);
                   });
    names
        .add_option(
            "NAME", asked.PollutantNames,
            "All six names; \"-\" is one that is not in use. Without names they are listed, one a line")
        ->expected(six);
}

void AddDeletedCommands(CLI::App& parser, CommandLine& asked) {
    constexpr int mostSlots = 32767; // of a data file
    AddCommand(parser, asked, "deleted",
               "List the deleted records: materials|number|Material ID, and "
               "usage|number|Material ID|month|quantity|unit",
               ListDeleted);
    CLI::App& undelete =
        AddCommand(parser, asked, "undelete",
                   "Bring deleted records back: all that are named or, if one is refused, none",
                   [&](AppContext& app) { return Undelete(app, asked.RecordKind, asked.RecordNumbers); });
    undelete.add_option("FILE", asked.RecordKind, "Which records")
        ->required()
        ->check(CLI::IsMember(RecordFileNames()));
    undelete.add_option("ID", asked.RecordNumbers, "Their numbers, as deleted lists them")
        ->required()
        ->check(CLI::Range(1, mostSlots));
    undelete.footer("A record is refused, with the reason, if it is not deleted, has changed meanwhile or is "
                    "damaged,\nif a live material has the same Material ID, if live usage is of the same "
                    "material and month,\nor if the material of the usage is deleted or gone. The status is "
                    "then 4.");
}

constexpr const char* ImportedFile = "The text file; \"-\" reads the standard input";
constexpr const char* ExportedFile =
    "The text file; \"-\" prints it, and the summary goes to the error output";
using Transfer = ExitStatus (*)(AppContext&, TransferModule, const std::string&);

void AddTransferCommand(CLI::App& parser, CommandLine& asked, const std::string& name,
                        const std::string& description, const std::string& fileDescription, Transfer transfer,
                        TransferModule module) {
    CLI::App& added =
        AddCommand(parser, asked, name, description,
                   [&asked, transfer, module](AppContext& app) { return transfer(app, module, asked.File); });
    added.add_option("FILE", asked.File, fileDescription)->required()->type_name("");
}

/// What no option can check by itself.
void CheckReport(const WantedReport& report) {
    if (report.Ending.empty() && report.Kind != "compliant") // the only one that does without a month
        throw CLI::ValidationError("report " + report.Kind, "needs --ending M/YYYY");
    if (report.IsJson && report.Output == StandardStream)
        throw CLI::ValidationError("report", "--json and --output - both print");
}

/// What is wrong with the text; empty if nothing is.
std::string CheckMonth(const std::string& text) {
    return ParsePeriodEnd(text) ? std::string{} : "\"" + text + "\" is not a month M/YYYY";
}

void AddOverviewCommand(CLI::App& parser, CommandLine& asked) {
    CLI::App& overview = AddCommand(
        parser, asked, "overview", "Print where the company stands at the end of each month",
        [&](AppContext& app) { return PrintOverview(app, asked.Span, asked.IsCsv); }, CommandStart::Looking);
    overview
        .add_option("--from", asked.Span.From, "First month end; by default the eleventh before the last")
        ->type_name("M/YYYY")
        ->check(CheckMonth);
    overview.add_option("--to", asked.Span.To, "Last month end; by default the newest month with use")
        ->type_name("M/YYYY")
        ->check(CheckMonth);
    overview.add_flag("--csv", asked.IsCsv, "Print comma-separated values");
}

void AddStatusCommand(CLI::App& parser, CommandLine& asked) {
    CLI::App& status = AddCommand(
        parser, asked, "status", "Print in a line where the company stands",
        [&](AppContext& app) { return PrintStatus(app, asked.IsAll, asked.IsJson); }, CommandStart::Looking);
    status.add_flag("--all", asked.IsAll, "All companies, worst first");
    status.add_flag("--json", asked.IsJson, "Print JSON");
}

void AddTraceCommand(CLI::App& parser, CommandLine& asked) {
    CLI::App& trace = AddCommand(
        parser, asked, "trace", "Print what a figure of a month end was calculated from",
        [&](AppContext& app) { return PrintTrace(app, asked.MonthEnd, asked.Figure, asked.Item); },
        CommandStart::Looking);
    trace.add_option("MONTH", asked.MonthEnd, "The month end, M/YYYY")->required()->check(CheckMonth);
    trace.add_option("FIGURE", asked.Figure, "The figure, as in overview --csv")->required();
    trace.add_option("ITEM", asked.Item, "Its item, as in overview --csv");
}

void AddHalfYearCommand(CLI::App& parser, CommandLine& asked) {
    CLI::App& pack =
        AddCommand(parser, asked, "half-year", "Write the half-year pack and print its paths",
                   [&](AppContext& app) { return WriteHalfYear(app, asked.HalfYear, asked.AnswersYes); });
    pack.add_option("HALF", asked.HalfYear, "1/2005 is January to June 2005, 2/2005 July to December")
        ->required()
        ->check([](const std::string& text) {
            return ParseHalfYear(text) ? std::string{} : "\"" + text + "\" is not 1/YYYY or 2/YYYY";
        });
    pack.add_flag("--yes", asked.AnswersYes, "Replace a pack that is there");
}

void AddReportCommand(CLI::App& parser, CommandLine& asked) {
    CLI::App& report = AddCommand(parser, asked, "report", "Write a report and print its path",
                                  [&](AppContext& app) { return WriteReport(app, asked.Report); });
    report.add_option("KIND", asked.Report.Kind, "Which report")
        ->required()
        ->check(CLI::IsMember(ReportKinds()));
    report
        .add_option("--ending", asked.Report.Ending,
                    "Last month of the twelve; without it the compliant report has all materials")
        ->type_name("M/YYYY")
        ->check(CheckMonth);
    report
        .add_option("--output", asked.Report.Output,
                    "Write to this file instead of the one in the program folder; \"-\" prints the report")
        ->type_name("FILE");
    report.add_flag("--yes", asked.AnswersYes, "Write a report without records too");
    report.add_flag("--json", asked.Report.IsJson, "Print JSON: kind, ending, and file or null");
    report.parse_complete_callback([&asked] { CheckReport(asked.Report); });
}

void AddCheckCommand(CLI::App& parser, CommandLine& asked) {
    CLI::App& check = AddCommand(
        parser, asked, "check", "Look through the data files of all companies and print what is wrong",
        [&](AppContext& app) { return CheckDataFolder(app, asked.IsJson); }, CommandStart::None);
    check.add_flag("--json", asked.IsJson, "Print JSON: file, record and finding of each");
}

void AddRestoreCommand(CLI::App& parser, CommandLine& asked) {
    CLI::App& restore = AddCommand(
        parser, asked, "restore", "Put a backup set in the place of the data files, or list the sets",
        [&](AppContext& app) {
            return asked.IsList || asked.Set.empty() ? ListSets(app) : Restore(app, asked.Set, asked.Consent);
        },
        CommandStart::None);
    restore.add_option("SET", asked.Set,
                       "A set's folder, name or number. Without it the sets are listed, one a line");
    restore.add_flag("--list", asked.IsList, "List the sets, newest first");
    restore.add_flag("--incomplete", asked.Consent.ToIncompleteSet,
                     "Restore a set that is cut or incomplete too");
    restore.add_flag("--without-backup", asked.Consent.ToIncompleteBackup,
                     "Go on if the present data cannot be backed up");
}

/// Not a callback of `check`: the parser sets main options such as --company only after those have run.
void CheckCompanyOption(const CommandLine& asked) {
    if (asked.Start == CommandStart::None && asked.Company)
        throw CLI::ValidationError(asked.CommandName, "looks at all companies, without --company");
}

std::string ExitStatusLines() {
    std::string lines;
    for (const auto& [status, meaning] : ExitStatusTexts)
        lines += (lines.empty() ? "  " : "\n  ") + std::to_string(status) + "  " + meaning;
    return lines;
}

} // namespace

void DescribeCommands(CLI::App& parser, CommandLine& asked) {
    parser.description("HAP content records and reports of a composites shop, without windows.");
    parser.name("mact-cli");
    parser.set_version_flag("--version", "MACT (V" MACT_VERSION_TEXT ")");
    parser.require_subcommand(1);
    parser.fallthrough(); // inherited: a command passes on the options that it does not know
    parser.add_option("--folder", asked.Folder, "The program folder, which holds the data folder")
        ->type_name("DIR");
    parser
        .add_option("--company", asked.Company,
                    "Work with the company of this id or name, without remembering it")
        ->type_name("COMPANY");
    parser.footer(CommonNotes); // of every command without notes of its own
    AddCompanyCommands(parser, asked);
    AddNamesCommand(parser, asked);
    AddTransferCommand(parser, asked, "import-materials", "Import materials", ImportedFile, ImportFile,
                       TransferModule::Materials);
    AddTransferCommand(parser, asked, "import-usage", "Import monthly usage", ImportedFile, ImportFile,
                       TransferModule::Usage);
    AddTransferCommand(parser, asked, "export-materials", "Export all materials", ExportedFile, ExportFile,
                       TransferModule::Materials);
    AddTransferCommand(parser, asked, "export-usage", "Export all monthly usage", ExportedFile, ExportFile,
                       TransferModule::Usage);
    AddDeletedCommands(parser, asked);
    AddReportCommand(parser, asked);
    AddOverviewCommand(parser, asked);
    AddStatusCommand(parser, asked);
    AddTraceCommand(parser, asked);
    AddHalfYearCommand(parser, asked);
    AddCheckCommand(parser, asked);
    AddCommand(parser, asked, "backup", "Copy the data files into a new backup set and print its folder",
               BackUp);
    AddRestoreCommand(parser, asked);
    AddKnownCompaniesCommand(parser, asked);
    parser.footer(CommonNotes + ("\n\nExit status:\n" + ExitStatusLines())); // of the program only
}

std::optional<ExitStatus> ReadCommandLine(std::vector<std::string> arguments, CommandLine& asked) {
    CLI::App parser;
    DescribeCommands(parser, asked);
    std::ranges::reverse(arguments); // the parser takes them from the vector's end
    try {
        parser.parse(arguments);
        CheckCompanyOption(asked);
    } catch (const CLI::Success& help) { // --help or --version
        parser.exit(help, std::cout, std::cerr);
        return StatusDone;
    } catch (const CLI::ParseError& error) {
        std::cerr << "mact-cli: " << Printable(error.what()) << '\n';
        return StatusWrongUse;
    }
    return std::nullopt;
}
} // namespace mact
