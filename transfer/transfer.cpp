#include "transfer/transfer.h"

#include "base/numbers.h"
#include "base/text.h"
#include "base/text_lines.h"
#include "transfer/transfer_texts.h"

namespace mact {
namespace {

std::string Summary(std::string_view successLabel, int processedCount, std::optional<int> errorCount) {
    std::string text(TransferTexts::TotalProcessed);
    text += WholeNumberText(processedCount);
    text += "\r\n";
    text += successLabel;
    text += WholeNumberText(processedCount - errorCount.value_or(0));
    text += "\r\n";
    text += TransferTexts::Errors;
    if (errorCount) text += WholeNumberText(*errorCount);
    return text;
}

} // namespace

std::filesystem::path TypedPath(std::string_view utf8Text) {
    const std::filesystem::path asItStands = PathFromUtf8(utf8Text);
    return IsFileAt(asItStands) ? asItStands : PathFromUtf8(Trim(utf8Text)); // a name may end in a blank
}

std::string ImportSummary(int processedCount, int errorCount) {
    return Summary(TransferTexts::SuccessfulImports, processedCount, errorCount);
}

std::string ExportSummary(int processedCount, std::optional<int> errorCount) {
    return Summary(TransferTexts::SuccessfulExports, processedCount, errorCount);
}

std::filesystem::path ImportErrorLog(const AppContext& app, TransferModule module) {
    return app.ProgramFolder /
           (module == TransferModule::Materials ? "material_import_errors.txt" : "usage_import_errors.txt");
}

std::filesystem::path UsageExportErrorLog(const AppContext& app) {
    return app.ProgramFolder / "usage_export_errors.txt";
}

Result<std::string> ReadErrorLog(FileAccess& files, const std::filesystem::path& log) {
    const Result<std::unique_ptr<OpenedFile>> file = files.Open(log, OpenMode::Read);
    if (!file) return file.error();
    TextLines lines(**file);
    std::string text;
    for (;;) {
        const Result<std::optional<std::string_view>> line = lines.Next();
        if (!line) return line.error();
        if (!*line) return text;
        text += **line;
        text += "\r\n";
    }
}
} // namespace mact
