#include "cli/restore_command.h"

#include "app/backup_sets.h"
#include "app/restore.h"
#include "base/text.h"
#include "cli/refusals.h"

#include <iostream>

namespace mact {
namespace {

/// The sentences behind the first one, in a line.
std::string InALine(const std::string& first, const std::vector<std::string>& sentences,
                    const std::string& last) {
    std::string line = first;
    for (const std::string& sentence : sentences)
        line += ' ' + sentence;
    return line + ' ' + last;
}

/// Answers as the command line says, and refuses if it does not say so.
RestoreQuestions Questions(AppContext& app, const RestoreConsent& consent) {
    RestoreQuestions questions;
    questions.RestoresIncompleteSet = [&app, consent](const std::vector<std::string>& sentences) {
        if (!consent.ToIncompleteSet)
            Refuse(app, InALine("The backup set is cut or incomplete.", sentences,
                                "Nothing has been restored; --incomplete restores what is in it."));
        return consent.ToIncompleteSet;
    };
    questions.GoesOnWithoutBackup = [&app, consent](const std::vector<std::string>& sentences) {
        if (!consent.ToIncompleteBackup)
            Refuse(app, InALine("The present data cannot be backed up.", sentences,
                                "Nothing has been restored; --without-backup restores the set all the same "
                                "and keeps the present data folder under another name."));
        return consent.ToIncompleteBackup;
    };
    return questions;
}

} // namespace

ExitStatus ListSets(AppContext& app) {
    const Result<std::vector<FoundSet>> sets = FindBackupSets(app);
    if (!sets) return Fail(app, sets.error());
    for (const FoundSet& found : *sets) {
        const SetDescription set = DescribeSet(app, found.Folder);
        std::cout << Printable(PathText(set.Folder)) << '|' << DateText(set.Newest) << '|'
                  << Printable(CompaniesText(set)) << '|' << set.Materials << '|' << set.UsageRecords << '|'
                  << set.Findings.size() << '|' << (set.Faults.empty() ? "complete" : "incomplete") << '\n';
    }
    return StatusDone;
}

ExitStatus Restore(AppContext& app, const std::string& utf8Set, const RestoreConsent& consent) {
    const Result<std::optional<std::filesystem::path>> set = SetMeantBy(app, utf8Set);
    if (!set) return Fail(app, set.error());
    if (!*set)
        return Refuse(app, "There is no backup set \"" + utf8Set + "\". Without a set, restore lists them.");
    const std::optional<Restored> restored = RestoreSet(app, **set, Questions(app, consent));
    if (!restored) return StatusFailed;
    if (restored->ReplacedFolder) std::cout << PathText(*restored->ReplacedFolder) << '\n';
    if (!restored->KeptSet.empty()) std::cout << PathText(restored->KeptSet) << '\n';
    return StatusDone;
}
} // namespace mact
