#pragma once

#include "cli/commands.h"

#include <string>

namespace mact {

/// Makes the company that --company names current for this run: a whole number is an id, anything else a
/// name, compared without regard to case and to blanks around it. A name that no company or that several have
/// is refused, with the companies that there are to choose from.
ExitStatus UseCompanyMeant(AppContext& app, const std::string& utf8Text);
} // namespace mact
