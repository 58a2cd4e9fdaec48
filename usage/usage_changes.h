#pragma once

#include "base/app_context.h"
#include "store/data_folder.h"
#include "store/record_changes.h"
#include "usage/usage_record.h"

#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// Usage records that are saved together, brought back, or taken back: all of them or none.

using UsageChange = RecordChange<UsageRecord>;
using UsageOutcome = ChangeOutcome<UsageRecord>;

/// A change is refused if the record that it replaces is not as it was read, or if it would be live and its
/// material is deleted or gone, or the file or another of the changes has a live record of the same material
/// and month. As with IsDuplicate, of several in the file the first can still be edited. On disk when it
/// returns and has refused none. As with a save, another copy can delete the material at the same moment.
Result<UsageOutcome> ChangeUsage(const DataFiles& data, const std::vector<UsageChange>& changes);

/// Notes what was done with a record, so that it can be taken back, as in "delete PR-101 (3/2005)".
void NoteUsage(AppContext& app, std::string_view doing, const StoredRecord<UsageRecord>& stored);
/// The same of several records, under a name for all of them.
void NoteUsageTogether(AppContext& app, std::string name, std::vector<StoredRecord<UsageRecord>> stored);

/// As ChangeUsage, for a month's sheet; a failure and what was refused are shown, in one message. False if
/// all are stored.
[[nodiscard]] Failed SaveUsageTogether(AppContext& app, const std::vector<UsageChange>& changes,
                                       UsageOutcome& outcome);

/// A deleted record, and what its material is called.
struct DeletedUsage {
    UsageRecord Usage{};
    std::string CustomId{}; ///< of the material, live or deleted; trimmed; empty if there is none
};
/// The deleted records, in file order. Those that are not in the slot of their number are left out: the check
/// of the data names them. Creates nothing.
Result<std::vector<DeletedUsage>> ReadDeletedUsage(const DataFiles& data);

/// Brings back deleted usage that is still as it was `seen`, all or none. Only its Active mark is written.
/// Returns a sentence for each record that stands against it.
Result<std::vector<Failure>> UndeleteUsage(const DataFiles& data, const std::vector<UsageRecord>& seen);
} // namespace mact
