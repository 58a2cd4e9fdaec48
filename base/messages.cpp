#include "base/messages.h"

namespace mact {

void FormErrors::Add(std::string_view message) {
    m_text += message;
    m_text += "\r\n";
}

void ShowFormErrors(AppContext& app, std::string_view errorsText) {
    std::string text = "Error(s) found while processing the form:\r\n\r\n";
    text += errorsText;
    app.Prompts.Show({text, PromptKind::FormErrors});
}

void ShowError(AppContext& app, const Failure& failure) {
    app.Prompts.Show({SentenceOf(failure), PromptKind::Failure});
}

void ShowInformation(AppContext& app, std::string_view text) {
    app.Prompts.Show({std::string(text), PromptKind::Information});
}
} // namespace mact
