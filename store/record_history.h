#pragma once

#include "base/app_context.h"
#include "store/data_folder.h"
#include "store/record_changes.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace mact {

/// Noting what was done to records, so that it can be taken back (base/history.h).

/// A routine that makes changes, all or none: ChangeMaterials, ChangeUsage, ChangeCompanies.
template <class Type>
using MakesChanges = Result<ChangeOutcome<Type>> (*)(const DataFiles& data,
                                                     const std::vector<RecordChange<Type>>& changes,
                                                     const RecordIsUsed& isUsed);

/// Why an outcome was refused, with the records' numbers if there are several.
template <class Type>
HistoryRefusal RefusalOf(const std::vector<RecordChange<Type>>& changes, const ChangeOutcome<Type>& outcome,
                         const RecordMembers<Type>& members) {
    HistoryRefusal refusal;
    for (const RefusedChange& refused : outcome.Refused) {
        const std::int16_t number = changes[refused.Change].Record.*members.Number;
        const std::string whose =
            changes.size() > 1 ? std::string(members.Name) + ' ' + std::to_string(number) + ": " : "";
        refusal.Reasons.push_back(whose + refused.Reason);
        refusal.IsForGood = refusal.IsForGood || refused.IsForGood;
    }
    return refusal;
}

/// The changes that take the records back or, if it `isAgain`, store them once more.
template <class Type>
std::vector<RecordChange<Type>> ChangesOf(const std::vector<StoredRecord<Type>>& stored,
                                          const RecordMembers<Type>& members, bool isAgain) {
    std::vector<RecordChange<Type>> changes;
    changes.reserve(stored.size());
    for (const StoredRecord<Type>& each : stored) {
        Type old = each.Before.value_or(each.Record);
        if (each.IsNew) old.*members.Active = false;
        if (isAgain)
            changes.push_back({each.Record, std::move(old)});
        else
            changes.push_back({std::move(old), each.Record});
    }
    return changes;
}

/// The changes are made when they are wanted: an import can have 32,767 records, and is seldom taken back.
template <class Type>
HistoryStep::Action ActionOf(std::shared_ptr<const std::vector<StoredRecord<Type>>> stored,
                             const RecordMembers<Type>& members, MakesChanges<Type> make, bool isAgain) {
    return [stored = std::move(stored), members, make,
            isAgain](const AppContext& app, const RecordIsUsed& isUsed) -> Result<HistoryRefusal> {
        const std::vector<RecordChange<Type>> changes = ChangesOf(*stored, members, isAgain);
        const Result<ChangeOutcome<Type>> outcome = make(app, changes, isUsed);
        if (!outcome) return outcome.error();
        return RefusalOf(changes, *outcome, members);
    };
}

/// Notes that these records were stored. Does nothing if nobody asks for it, or if what one of them replaced
/// is not known.
template <class Type>
void NoteChanges(AppContext& app, const HistoryOf& whose, std::string name,
                 std::vector<StoredRecord<Type>> stored, const RecordMembers<Type>& members,
                 MakesChanges<Type> make) {
    const auto isKnown = [](const StoredRecord<Type>& each) { return each.IsNew || each.Before; };
    if (!app.Changes || !std::ranges::all_of(stored, isKnown)) return;
    const bool hasAdded = std::ranges::any_of(stored, &StoredRecord<Type>::IsNew);
    const auto kept = std::make_shared<const std::vector<StoredRecord<Type>>>(std::move(stored));
    HistoryStep step{.Name = std::move(name), .HasAdded = hasAdded};
    step.TakeBack = ActionOf<Type>(kept, members, make, false);
    step.DoAgain = ActionOf<Type>(kept, members, make, true);
    app.Changes->Note(whose, std::move(step));
}
} // namespace mact
