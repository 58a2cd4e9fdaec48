#pragma once

#include "base/app_context.h"
#include "transfer/transfer.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mact {

/// The commands of the command line. They print their results to the standard output in UTF-8 and return the
/// program's exit status. Once a failure has been shown, the program ends with StatusFailed regardless.

enum ExitStatus : int {
    StatusDone = 0,
    StatusFailed = 1,   ///< a failure was shown
    StatusWrongUse = 2, ///< the command line itself is wrong
    StatusDeclined = 3, ///< an empty report was not wanted
    StatusRejected = 4, ///< records were rejected or refused, or a check found something
    StatusTrouble = 5,  ///< a company's figures are over, or differ
    StatusUnknown = 6,  ///< a company has no data, or less than twelve months of it
};

/// What the help says of them.
struct ExitStatusText {
    ExitStatus Status;
    const char* Meaning;
};
inline constexpr ExitStatusText ExitStatusTexts[] = {
    {StatusDone,     "done"                                                           },
    {StatusFailed,   "a failure, which is said"                                       },
    {StatusWrongUse, "wrong usage"                                                    },
    {StatusDeclined, "an empty report was declined; --yes writes it"                  },
    {StatusRejected, "records were rejected or refused, or check found something"     },
    {StatusTrouble,  "status: a company is over, or its figures differ"               },
    {StatusUnknown,  "status: a company has no data, or less than twelve months of it"},
};

/// One line per company: id|name|location
ExitStatus ListCompanies(AppContext& app, bool isJson);
/// Prints the new company's number. The texts are UTF-8.
ExitStatus AddCompany(AppContext& app, const std::string& name, const std::string& location);
/// Makes the company current for this run, and with `isRemembered` for later ones too.
ExitStatus UseCompany(AppContext& app, std::int16_t companyId, bool isRemembered);

/// Prints the six additional pollutant names of the current company, one per line.
ExitStatus ShowPollutantNames(AppContext& app);
/// `names` must be six, in UTF-8.
ExitStatus SetPollutantNames(AppContext& app, const std::vector<std::string>& names);

/// These print the summary. `utf8File` may be "-": the standard input, or the standard output, where the
/// summary goes to the standard error output.
ExitStatus ImportFile(AppContext& app, TransferModule module, const std::string& utf8File);
ExitStatus ExportFile(AppContext& app, TransferModule module, const std::string& utf8File);

struct WantedReport {
    std::string Kind{};   ///< one of ReportKinds()
    std::string Ending{}; ///< M/YYYY; empty = all materials, in the compliant report only
    /// A file in UTF-8, or "-"; without it the report's own in the program folder.
    std::optional<std::string> Output{};
    bool IsJson = false;
};
/// Prints the path of the report or, if the output is "-", the report.
ExitStatus WriteReport(AppContext& app, const WantedReport& wanted);
const std::vector<std::string>& ReportKinds();

/// Prints the findings of CheckData, one per line.
ExitStatus CheckDataFolder(AppContext& app, bool isJson);

/// Prints the folder of the new set once every file is in it.
ExitStatus BackUp(AppContext& app);
} // namespace mact
