#pragma once

#include "base/app_context.h"
#include "base/messages.h"
#include "cli/commands.h"

#include <string>
#include <string_view>

namespace mact {

/// How the commands say no.

inline ExitStatus Fail(AppContext& app, const Failure& failure) {
    ShowError(app, failure);
    return StatusFailed;
}
inline ExitStatus Refuse(AppContext& app, std::string_view why) {
    app.Prompts.Show({std::string(why), PromptKind::Failure});
    return StatusFailed;
}

inline constexpr std::string_view NeedsCompany =
    "No company is selected. Name one with --company, or select one with select-company.";
inline bool HasCompany(const AppContext& app) {
    return app.CurrentCompanyId != 0;
}
} // namespace mact
