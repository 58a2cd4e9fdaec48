#pragma once

#include "store/data_folder.h"
#include "store/record_changes.h"
#include "usage/usage_record.h"

#include <string>
#include <vector>

namespace mact {

/// Bringing deleted usage back, and taking back what was done to live usage.

/// A deleted record, and what its material is called.
struct DeletedUsage {
    UsageRecord Usage{};
    std::string CustomId{}; ///< of the material, live or deleted; trimmed; empty if there is none
};
/// The deleted records, in file order. Those that are not in the slot of their number are left out: the check
/// of the data names them. Creates nothing.
Result<std::vector<DeletedUsage>> ReadDeletedUsage(const DataFiles& data);

using UsageChange = RecordChange<UsageRecord>;

/// Makes all of the changes, or none and says why: a record is not as it was seen; or it would be live, and
/// another one of its material and month is so too, or its material is deleted or gone. On disk when it
/// returns without refusals. As with a save, another copy can delete the material at the same moment.
Result<Refusals> ChangeUsage(const DataFiles& data, const std::vector<UsageChange>& changes);

/// Brings back deleted usage that is still as it was `seen`, all or none. Only its Active mark is written.
Result<Refusals> UndeleteUsage(const DataFiles& data, const std::vector<UsageRecord>& seen);
} // namespace mact
