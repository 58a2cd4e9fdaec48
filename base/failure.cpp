#include "base/failure.h"

#include "base/text.h"

namespace mact {
namespace {

std::string Sentence(std::string_view cannot, const Failure& failure) {
    std::string text = failure.Doing.empty() ? failure.Reason : std::string(cannot) + ' ' + failure.Doing;
    if (!failure.Path.empty()) text += " \"" + PathText(failure.Path) + '"';
    if (!failure.Doing.empty() && !failure.Reason.empty()) text += ": " + failure.Reason;
    return text;
}

} // namespace

std::string SentenceOf(const Failure& failure) {
    const std::string text = Sentence("Cannot", failure);
    return text.ends_with('.') ? text : text + '.'; // a reason may bring its own
}

std::string ClauseOf(const Failure& failure) {
    return Sentence("cannot", failure);
}

Failure BothOf(const Failure& first, const Failure& second) {
    Failure both = first;
    (both.Reason.empty() ? both.Doing : both.Reason) += ". " + SentenceOf(second);
    return both;
}
} // namespace mact
