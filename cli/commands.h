#pragma once

#include "base/app_context.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace mact {

/// What each command of the command line does. They print their results to the standard output, UTF-8, and
/// answer the status with which the program ends.

enum ExitStatus : int {
    StatusDone = 0,
    StatusFailed = 1,   ///< a failure was shown
    StatusWrongUse = 2, ///< the command line itself is wrong
    StatusDeclined = 3, ///< an empty report was not wanted
    StatusRejected = 4, ///< an import or export finished with rejected records, or a check found something
};

/// One line per company: id|name|location
ExitStatus ListCompanies(AppContext& app);
/// Prints the new company's number. The texts are UTF-8.
ExitStatus AddCompany(AppContext& app, const std::string& name, const std::string& location);
/// Makes the company current for this start, and with `isRemembered` for later ones.
ExitStatus UseCompany(AppContext& app, std::int16_t companyId, bool isRemembered);

/// The six names of the additional pollutants of the current company, one a line.
ExitStatus ShowPollutantNames(AppContext& app);
/// `names` are six, UTF-8.
ExitStatus SetPollutantNames(AppContext& app, const std::vector<std::string>& names);

ExitStatus ImportMaterials(AppContext& app, const std::filesystem::path& file);
ExitStatus ImportUsage(AppContext& app, const std::filesystem::path& file);
ExitStatus ExportMaterials(AppContext& app, const std::filesystem::path& file);
ExitStatus ExportUsage(AppContext& app, const std::filesystem::path& file);

/// `kind` is one of ReportKinds(); without `ending` (M/YYYY) the compliant materials report has all
/// materials.
ExitStatus WriteReport(AppContext& app, const std::string& kind, const std::string& ending);
const std::vector<std::string>& ReportKinds();

/// Prints what a look through the data files found, one line each.
ExitStatus CheckDataFolder(AppContext& app);

/// Prints the folder of the new set, once every file is in it.
ExitStatus BackUp(AppContext& app);
} // namespace mact
