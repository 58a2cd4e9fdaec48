#pragma once

#include "cli/commands.h"

#include <string>

namespace mact {

/// Prints a line for each backup set, newest first: folder|date|companies|materials|usage records|findings of
/// the check|complete or incomplete
ExitStatus ListSets(AppContext& app);

/// What is restored although something is wrong.
struct RestoreConsent {
    bool ToIncompleteSet = false;
    bool ToIncompleteBackup = false; ///< of the present data, whose folder then stays
};
/// `utf8Set` is a folder, or the name or number of a set. Prints where the earlier data is: the folder that
/// was replaced if it stays, then the kept set's folder.
ExitStatus Restore(AppContext& app, const std::string& utf8Set, const RestoreConsent& consent);
} // namespace mact
