#include "cli/commands.h"

#include "app/backup.h"
#include "base/json.h"
#include "base/messages.h"
#include "base/text.h"
#include "check/data_check.h"
#include "cli/record_text.h"
#include "cli/refusals.h"
#include "cli/standard_streams.h"
#include "reports/reports.h"
#include "store/additional_names.h"
#include "store/companies.h"
#include "transfer/transfer.h"
#include "transfer/transfer_guards.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <iostream>

namespace mact {
namespace {

/// Prints the lines of a summary with the console's line ends.
void PrintLines(std::ostream& stream, std::string text) {
    std::erase(text, '\r');
    stream << text << '\n';
}

// Transfers return 0 even if they fail. As the failure is shown, the program ends with StatusFailed.
ExitStatus TransferStatus(int errorCount) {
    return errorCount == 0 ? StatusDone : StatusRejected;
}

struct Report {
    const char* Kind;
    const char* FileName;
    std::int16_t (*Generate)(AppContext&, const ReportPeriod&);
};
constexpr std::array Reports = {
    Report{"compliant",           CompliantMaterialsFile,    GenerateCompliantMaterialsReport   },
    Report{"weighted-average",    WeightedAverageFile,       GenerateWeightedAverageReport      },
    Report{"emission-average",    EmissionAverageFile,       GenerateEmissionAverageReport      },
    Report{"additional-usage",    AdditionalHapUsageFile,    GenerateAdditionalHapUsageReport   },
    Report{"additional-emission", AdditionalHapEmissionFile, GenerateAdditionalHapEmissionReport},
};

/// A file as the user names it; never a Failure.
Result<std::filesystem::path> FileAt(const std::string& utf8File) {
    return PathFromUtf8(utf8File);
}

/// The file that a report is to be written to; a Failure if it is another one of the program's own.
Result<std::filesystem::path> ReportTargetAt(const AppContext& app, const std::string& utf8File,
                                             const char* ownName) {
    std::error_code error;
    std::filesystem::path target = std::filesystem::absolute(PathFromUtf8(utf8File), error);
    if (error) return Failure{"write the file", PathFromUtf8(utf8File), error.message()};
    const Done checked = CheckExportTarget(app, target, {}); // links, data files and pipes
    if (!checked) return checked.error();
    const std::filesystem::path folder = DataFolder(app);
    if (AreSameName(target, folder / target.filename()))
        return Failure{"write a report to the file", target, "it is in the data folder"};
    for (const char* name : ReportFiles)
        if (std::string_view(name) != ownName && AreSameName(target, app.ProgramFolder / name))
            return Failure{"write the report to the file", target, "it is the file of another report"};
    return target;
}

/// Text of the command line as record text; a Failure if it has a character that the code page lacks.
Result<std::string> RecordText(const std::string& utf8Text) {
    const std::string text = CodePageFromUtf8(utf8Text);
    if (Utf8FromCodePage(text) != utf8Text) // some character has become "?"
        return Failure{.Doing = "store \"" + utf8Text + '"',
                       .Reason = "it has a character that the Windows-1252 character set lacks"};
    return text;
}

/// The same for the name of a pollutant, which is stored between "|" in a single line.
Result<std::string> NameText(const std::string& utf8Name) {
    if (utf8Name.find_first_of("|\r\n") != std::string::npos)
        return Failure{.Doing = "store \"" + utf8Name + '"',
                       .Reason = "a name has neither \"|\" nor a line break"};
    return RecordText(utf8Name);
}

std::string CompaniesJson(const std::vector<CompanyRecord>& companies, std::int16_t currentId) {
    std::vector<std::string> objects;
    objects.reserve(companies.size());
    for (const CompanyRecord& company : companies)
        objects.push_back("{\"id\": " + std::to_string(company.CompanyId) +
                          ", \"name\": " + JsonText(Utf8FromCodePage(Trim(company.CompanyName))) +
                          ", \"location\": " + JsonText(Utf8FromCodePage(Trim(company.CompanyLocation))) +
                          ", \"current\": " + (company.CompanyId == currentId ? "true}" : "false}"));
    return JsonLines(objects);
}

/// `file` is empty if none was written.
std::string ReportJson(const WantedReport& report, const std::string& file) {
    return "{\"kind\": " + JsonText(report.Kind) + ", \"ending\": " + JsonTextOrNull(report.Ending) +
           ", \"file\": " + JsonTextOrNull(file) + "}\n";
}

std::string JsonObject(const Finding& finding) {
    const std::string record = finding.Record == 0 ? "null" : std::to_string(finding.Record);
    return "{\"file\": " + JsonText(finding.File) + ", \"record\": " + record +
           ", \"finding\": " + JsonText(finding.What) + '}';
}

} // namespace

ExitStatus ListCompanies(AppContext& app, bool isJson) {
    const Result<std::vector<CompanyRecord>> companies = ReadCompanies(app);
    if (!companies) return Fail(app, companies.error());
    if (isJson) std::cout << CompaniesJson(*companies, app.CurrentCompanyId);
    for (const CompanyRecord& company : *companies)
        if (!isJson)
            std::cout << company.CompanyId << '|' << Shown(company.CompanyName) << '|'
                      << Shown(company.CompanyLocation) << '\n';
    return StatusDone;
}

ExitStatus AddCompany(AppContext& app, const std::string& name, const std::string& location) {
    const Result<std::string> nameText = RecordText(name);
    if (!nameText) return Fail(app, nameText.error());
    const Result<std::string> locationText = RecordText(location);
    if (!locationText) return Fail(app, locationText.error());
    if (Trim(*nameText).empty() || Trim(*locationText).empty()) return Refuse(app, NeedsNameAndLocation);

    const Result<std::int16_t> companyId = AddNewCompany(app, *nameText, *locationText);
    if (!companyId) return Fail(app, companyId.error());
    std::cout << *companyId << '\n';
    return StatusDone;
}

ExitStatus UseCompany(AppContext& app, std::int16_t companyId, bool isRemembered) {
    const Result<std::vector<CompanyRecord>> found = ReadCompanies(app, {.CompanyId = companyId});
    if (!found) return Fail(app, found.error());
    if (found->empty()) return Refuse(app, "There is no company " + std::to_string(companyId) + ".");
    MakeCompanyCurrent(app, found->front());
    const Done remembered = isRemembered ? SelectCompany(app, found->front()) : Success();
    return remembered ? StatusDone : Fail(app, remembered.error());
}

ExitStatus ShowPollutantNames(AppContext& app) {
    if (!HasCompany(app)) return Refuse(app, NeedsCompany);
    const Done read = ReadAdditionalNames(app); // creates a missing file
    if (!read) return Fail(app, read.error());
    for (const std::string& name : SplitAdditionalNames(app.AdditionalNames))
        std::cout << Printable(Utf8FromCodePage(name)) << '\n';
    return StatusDone;
}

ExitStatus SetPollutantNames(AppContext& app, const std::vector<std::string>& names) {
    if (!HasCompany(app)) return Refuse(app, NeedsCompany);
    PollutantNames texts;
    assert(names.size() == texts.size()); // the parser takes six or none
    for (std::size_t index = 0; index < texts.size(); ++index) {
        const Result<std::string> text = NameText(names[index]);
        if (!text) return Fail(app, text.error());
        if (Trim(*text).empty()) return Refuse(app, NameIsEmpty);
        texts[index] = *text;
    }
    const Done saved = SaveAdditionalNames(app, texts);
    return saved ? StatusDone : Fail(app, saved.error());
}

ExitStatus ImportFile(AppContext& app, TransferModule module, const std::string& utf8File) {
    if (!HasCompany(app)) return Refuse(app, NeedsCompany);
    StandardInput input;
    const Result<std::filesystem::path> source = utf8File == StandardStream ? input.Read() : FileAt(utf8File);
    if (!source) return Fail(app, source.error());
    const auto import = module == TransferModule::Materials ? ImportMaterials : ImportUsage;
    const ImportCounts counts = import(app, *source, {});
    PrintLines(std::cout, ImportSummary(counts.Processed, counts.Errors));
    if (const std::string remarks = ImportRemarks(counts, module); !remarks.empty())
        PrintLines(std::cout, remarks);
    return TransferStatus(counts.Errors);
}

ExitStatus ExportFile(AppContext& app, TransferModule module, const std::string& utf8File) {
    if (!HasCompany(app)) return Refuse(app, NeedsCompany);
    StandardOutput output;
    const bool isPrinted = utf8File == StandardStream;
    const Result<std::filesystem::path> target = isPrinted ? output.Path() : FileAt(utf8File);
    if (!target) return Fail(app, target.error());
    int processedCount = 0;
    std::optional<int> errorCount;
    const auto exportTo = module == TransferModule::Materials ? ExportMaterialFile : ExportUsageFile;
    exportTo(app, *target, processedCount, errorCount);
    const Done printed = isPrinted ? output.Print(app.Files) : Success();
    if (!printed) return Fail(app, printed.error());
    PrintLines(isPrinted ? std::cerr : std::cout, ExportSummary(processedCount, errorCount));
    return TransferStatus(errorCount.value_or(0));
}

ExitStatus WriteReport(AppContext& app, const WantedReport& wanted) {
    if (!HasCompany(app)) return Refuse(app, NeedsCompany);
    // There is one: the parser accepts no other kind.
    const auto* const report =
        std::ranges::find_if(Reports, [&](const Report& each) { return wanted.Kind == each.Kind; });
    StandardOutput output;
    const bool isPrinted = wanted.Output == StandardStream;
    if (wanted.Output) {
        const Result<std::filesystem::path> target =
            isPrinted ? output.Path() : ReportTargetAt(app, *wanted.Output, report->FileName);
        if (!target) return Fail(app, target.error());
        app.ReportTarget = *target;
    }
    const std::int16_t generated = report->Generate(app, {.EndText = wanted.Ending});
    if (generated == ReportFailed) return StatusFailed;
    const bool isWritten = generated == ReportPublished;
    const std::filesystem::path file =
        wanted.Output ? app.ReportTarget : app.ProgramFolder / report->FileName;
    if (wanted.IsJson)
        std::cout << ReportJson(wanted, isWritten ? PathText(file) : std::string());
    else if (isWritten && !isPrinted)
        std::cout << PathText(file) << '\n';
    const Done printed = isPrinted ? output.Print(app.Files) : Success();
    if (!printed) return Fail(app, printed.error());
    return isWritten ? StatusDone : StatusDeclined;
}

const std::vector<std::string>& ReportKinds() {
    static const std::vector<std::string> kinds = [] {
        std::vector<std::string> names;
        names.reserve(Reports.size());
        for (const Report& report : Reports)
            names.emplace_back(report.Kind);
        return names;
    }();
    return kinds;
}

ExitStatus CheckDataFolder(AppContext& app, bool isJson) {
    ExitStatus status = StatusDone;
    std::vector<std::string> objects;
    const std::vector<Failure> failures = CheckData(app, [&](const Finding& finding) {
        if (isJson)
            objects.push_back(JsonObject(finding));
        else
            std::cout << LineOf(finding) << '\n';
        status = StatusRejected;
    });
    if (isJson) std::cout << JsonLines(objects);
    for (const Failure& failure : failures)
        ShowError(app, failure);
    return status;
}

ExitStatus BackUp(AppContext& app) {
    const std::optional<std::filesystem::path> set = RunBackupToItsEnd(app);
    if (!set) return StatusFailed;
    std::cout << PathText(*set) << '\n';
    return StatusDone;
}
} // namespace mact
