#pragma once

#include "base/app_context.h"
#include "base/result.h"

#include <string>
#include <string_view>

namespace mact {

/// What is wrong with a form's entries: one message per failed check, in the order of the form.
class FormErrors {
public:
    /// `message` begins with "- "; the line break is added here.
    void Add(std::string_view message);
    bool IsEmpty() const { return m_text.empty(); }
    const std::string& Text() const { return m_text; }

private:
    std::string m_text;
};

/// Shows the errors under "Error(s) found while processing the form:".
void ShowFormErrors(AppContext& app, std::string_view errorsText);

/// Shows a failure's sentence. Each failure is shown once, by the module operation in which it occurred.
void ShowError(AppContext& app, const Failure& failure);

/// Shows the failure if the result is one. Returns whether it was.
template <class T> Failed ShowFailure(AppContext& app, const Result<T>& result) {
    if (!result) ShowError(app, result.error());
    return !result;
}

void ShowInformation(AppContext& app, std::string_view text);
} // namespace mact
