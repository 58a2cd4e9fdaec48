#include "base/numbers.h"
#include "transfer/transfer.h"
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

std::string ImportSummary(int processedCount, int errorCount) {
    return Summary(TransferTexts::SuccessfulImports, processedCount, errorCount);
}

std::string ExportSummary(int processedCount, std::optional<int> errorCount) {
    return Summary(TransferTexts::SuccessfulExports, processedCount, errorCount);
}

} // namespace mact
