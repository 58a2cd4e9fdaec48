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

/// The reasons of an outcome, with the records' numbers if there are several.
template <class Type>
Reasons ReasonsOf(const std::vector<RecordChange<Type>>& changes, const ChangeOutcome<Type>& outcome,
                  const RecordMembers<Type>& members) {
    Reasons reasons;
    for (const RefusedChange& refused : outcome.Refused) {
        const std::int16_t number = changes[refused.Change].Record.*members.Number;
        const std::string whose =
            changes.size() > 1 ? std::string(members.Name) + ' ' + std::to_string(number) + ": " : "";
        reasons.push_back(whose + refused.Reason);
    }
    return reasons;
}

template <class Type>
Result<Reasons> MakeStep(const AppContext& app, const std::vector<RecordChange<Type>>& changes,
                         const RecordIsUsed& isUsed, const RecordMembers<Type>& members,
                         MakesChanges<Type> make) {
    const Result<ChangeOutcome<Type>> outcome = make(app, changes, isUsed);
    if (!outcome) return outcome.error();
    return ReasonsOf(changes, *outcome, members);
}

/// What undoes the changes, all of which replace a record.
template <class Type>
std::vector<RecordChange<Type>> Opposite(const std::vector<RecordChange<Type>>& changes) {
    std::vector<RecordChange<Type>> opposite;
    opposite.reserve(changes.size());
    for (const RecordChange<Type>& change : changes)
        opposite.push_back({*change.AsRead, change.Record});
    return opposite;
}

/// Notes that these records were stored. Does nothing if nobody asks for it, or if what one of them replaced
/// is not known.
template <class Type>
void NoteChanges(AppContext& app, const HistoryOf& whose, std::string name,
                 const std::vector<StoredRecord<Type>>& stored, const RecordMembers<Type>& members,
                 MakesChanges<Type> make) {
    const auto isKnown = [](const StoredRecord<Type>& each) { return each.IsNew || each.Before; };
    if (!app.Changes || !std::ranges::all_of(stored, isKnown)) return;
    HistoryStep step{.Name = std::move(name)};
    auto back = std::make_shared<std::vector<RecordChange<Type>>>();
    back->reserve(stored.size());
    for (const StoredRecord<Type>& each : stored) {
        RecordChange<Type>& change =
            back->emplace_back(RecordChange<Type>{each.Before.value_or(each.Record), each.Record});
        if (each.IsNew) change.Record.*members.Active = false;
        if (each.IsNew) step.HasAdded = true;
    }
    step.TakeBack = [back, members, make](const AppContext& context, const RecordIsUsed& isUsed) {
        return MakeStep<Type>(context, *back, isUsed, members, make);
    };
    step.DoAgain = [back, members, make](const AppContext& context, const RecordIsUsed& isUsed) {
        return MakeStep<Type>(context, Opposite(*back), isUsed, members, make);
    };
    app.Changes->Note(whose, std::move(step));
}
} // namespace mact
