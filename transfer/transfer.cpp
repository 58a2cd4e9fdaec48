#include "transfer/transfer.h"

#include "base/numbers.h"
#include "base/text.h"
#include "base/text_lines.h"
#include "transfer/transfer_texts.h"

namespace mact {
namespace {

// A window needs many times the memory of the text that it shows: about 75 MB with any of these.
constexpr std::size_t LongestShownLine = 4096;               // bytes
constexpr std::size_t MostShownBytes = std::size_t{8} << 20; // and a line more
constexpr int MostShownLines = 100'000;

/// In front of the text, where it is seen.
std::string NoteOnShortened(const std::filesystem::path& log) {
    return "(This log is long and is shown shortened. All of it is in the file " +
           CodePageFromUtf8(PathText(log.filename())) + ".)\r\n\r\n";
}

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

std::string ImportRemarks(const ImportCounts& counts, TransferModule module) {
    std::string remarks;
    if (counts.DroppedFillers > 0)
        remarks = "The filler of " + Counted(static_cast<std::uint64_t>(counts.DroppedFillers), "material") +
                  " was not imported: an import stores 0, and no report applies a filler.";
    if (counts.AlreadyThere == 0) return remarks;
    if (!remarks.empty()) remarks += ' ';
    AppendAll(remarks, Counted(static_cast<std::uint64_t>(counts.AlreadyThere), "line"),
              counts.AlreadyThere == 1 ? " was" : " were", " rejected because ",
              module == TransferModule::Materials ? "the material" : "usage of the material in that month",
              " was there already; what is stored stays as it was.");
    return remarks;
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
    TextLines lines(**file, {.Longest = LongestShownLine, .KeptOfLonger = LongestShownLine});
    std::string text;
    bool isShortened = false;
    for (int count = 0;; ++count) {
        const Result<std::optional<std::string_view>> line = lines.Next();
        if (!line) return line.error();
        if (!*line) break;
        isShortened = isShortened || lines.IsTooLong();
        if (count == MostShownLines || text.size() > MostShownBytes) {
            isShortened = true;
            break;
        }
        text += **line;
        text += "\r\n";
    }
    if (isShortened) text.insert(0, NoteOnShortened(log));
    return text;
}
} // namespace mact
