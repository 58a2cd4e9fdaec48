#pragma once

#include "materials/material_record.h"
#include "materials/material_store.h"
#include "store/data_folder.h"
#include "store/record_changes.h"

#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// Bringing deleted materials back, and taking back what was done to live ones.

/// The deleted records, in file order. Those that are not in the slot of their number are left out: the check
/// of the data names them. Creates nothing.
Result<std::vector<MaterialRecord>> ReadDeletedMaterials(const DataFiles& data);

using MaterialChange = RecordChange<MaterialRecord>;
using MaterialOutcome = ChangeOutcome<MaterialRecord>;

/// Makes all of the changes or none. One is refused if the record that it replaces is not as it was read; if
/// it would be live, and so is another of the same Material ID; or if it marks a live one as deleted, and
/// `isUsed` says that it is used. On disk when it returns and has refused none.
Result<MaterialOutcome> ChangeMaterials(const DataFiles& data, const std::vector<MaterialChange>& changes,
                                        const MaterialIsUsed& isUsed);

/// Notes what was done with a material, so that it can be taken back, as in "delete PR-101".
void NoteMaterial(AppContext& app, std::string_view doing, const StoredRecord<MaterialRecord>& stored);
/// The same of several materials, under a name for all of them.
void NoteMaterials(AppContext& app, std::string name, std::vector<StoredRecord<MaterialRecord>> stored);

/// Brings back deleted materials that are still as they were `seen`, all or none. Only their Active mark is
/// written. Returns a sentence for each record that stands against it.
Result<std::vector<Failure>> UndeleteMaterials(const DataFiles& data,
                                               const std::vector<MaterialRecord>& seen);
} // namespace mact
