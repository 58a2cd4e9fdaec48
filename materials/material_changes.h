#pragma once

#include "materials/material_record.h"
#include "materials/material_store.h"
#include "store/data_folder.h"
#include "store/record_changes.h"

#include <vector>

namespace mact {

/// Bringing deleted materials back, and taking back what was done to live ones.

/// The deleted records, in file order. Those that are not in the slot of their number are left out: the check
/// of the data names them. Creates nothing.
Result<std::vector<MaterialRecord>> ReadDeletedMaterials(const DataFiles& data);

using MaterialChange = RecordChange<MaterialRecord>;

/// Makes all of the changes, or none and says why: a record is not as it was seen; it would be live, and so
/// is another one of the same Material ID; or it was seen live, and `isUsed` says that it is used. What that
/// means is the caller's to say: to take back that a material was added it is any usage. On disk when it
/// returns without refusals.
Result<Refusals> ChangeMaterials(const DataFiles& data, const std::vector<MaterialChange>& changes,
                                 const MaterialIsUsed& isUsed);

/// Brings back deleted materials that are still as they were `seen`, all or none. Only their Active mark is
/// written.
Result<Refusals> UndeleteMaterials(const DataFiles& data, const std::vector<MaterialRecord>& seen);
} // namespace mact
