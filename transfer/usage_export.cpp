#include "base/messages.h"
#include "base/numbers.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "store/steady_reading.h"
#include "transfer/transfer.h"
#include "transfer/transfer_guards.h"
#include "transfer/transfer_log.h"
#include "transfer/transfer_texts.h"
#include "usage/usage_store.h"

namespace mact {
namespace {

struct UsageExport {
    std::string Content;
    /// What is wrong, for the log: a line each.
    std::vector<std::string> Rejected{};
    int Processed = 0;
    int Errors = 0;
};

std::string LineAfterMaterial(const UsageRecord& usage) {
    const PeriodPieces period = SplitPeriod(usage.Period);
    std::string line = "|";
    line += period.Month;
    line += '|';
    line += period.Year;
    line += '|';
    line += NumberText(usage.Quantity);
    line += usage.Unit == UnitMgal ? "|Mgal" : "|lbs"; // an unknown unit too, which reports take for Mgal
    return line;
}

void AddUsage(UsageExport& output, const MaterialIds& materials, const UsageRecord& usage) {
    ++output.Processed;
    const std::optional<std::string>& material = materials[usage.MaterialId];
    if (!material) {
        ++output.Errors;
        // No Material ID to name.
        output.Rejected.push_back(WholeNumberText(usage.MaterialId) + LineAfterMaterial(usage));
        return;
    }
    output.Content += *material;
    output.Content += LineAfterMaterial(usage);
    output.Content += "\r\n";
}

/// Including deleted records, on purpose.
Result<UsageExport> ReadUsageToExport(const DataFiles& data) {
    const Result<MaterialIds> materials = ReadMaterialIds(data);
    if (!materials) return materials.error();
    UsageExport output;
    const Done read =
        VisitUsage(data, [&](const UsageRecord& usage) { AddUsage(output, *materials, usage); });
    if (!read) return read.error();
    return output;
}

Done WriteLog(TransferLog& log, const std::vector<std::string>& rejected) {
    for (const std::string& line : rejected)
        log.AddLine(line, TransferTexts::MaterialNotFound);
    const Done written = log.Write();
    return written ? log.Flush() : written;
}

Result<UsageExport> Export(AppContext& app, const std::filesystem::path& target) {
    const std::filesystem::path logFile = UsageExportErrorLog(app);
    const Done checked = CheckExportTarget(app, target, logFile); // before Open empties the log
    if (!checked) return checked.error();
    Result<TransferLog> log = TransferLog::Open(app.Files, logFile);
    if (!log) return log.error();

    const Result<UsageExport> output =
        ReadSteadily(app.Files, {MaterialsFile(app), UsageFile(app)}, [&] { return ReadUsageToExport(app); });
    if (!output) return output.error();
    // The log first: a target is replaced only once its log is complete.
    Done done = WriteLog(*log, output->Rejected);
    if (done) done = ReplaceFile(app.Files, target, output->Content);
    if (!done) return done.error();
    return output;
}

} // namespace

std::int16_t ExportUsageFile(AppContext& app, const std::filesystem::path& target, int& processedCount,
                             std::optional<int>& errorCount) {
    const Result<UsageExport> exported = Export(app, target);
    ShowFailure(app, exported);
    processedCount = exported ? exported->Processed : 0;
    errorCount = exported ? exported->Errors : 0;
    return 0;
}
} // namespace mact
