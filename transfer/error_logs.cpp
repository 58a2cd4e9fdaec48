#include "base/messages.h"
#include "base/text_lines.h"
#include "transfer/transfer.h"

namespace mact {
namespace {

Result<std::string> ReadLines(AppContext& app, const std::filesystem::path& log) {
    const Result<std::unique_ptr<OpenedFile>> file = app.Files.Open(log, OpenMode::Read);
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

} // namespace

std::filesystem::path ImportErrorLog(const AppContext& app, TransferModule module) {
    return app.ProgramFolder /
           (module == TransferModule::Materials ? "material_import_errors.txt" : "usage_import_errors.txt");
}

std::filesystem::path UsageExportErrorLog(const AppContext& app) {
    return app.ProgramFolder / "usage_export_errors.txt";
}

std::string ReadErrorLog(AppContext& app, const std::filesystem::path& log) {
    const Result<std::string> text = ReadLines(app, log);
    if (text) return *text;
    ShowError(app, text.error());
    return {};
}

} // namespace mact
