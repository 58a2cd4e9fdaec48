#include "store/material_type_entry.h"

#include "base/numbers.h"
#include "base/text.h"

namespace mact {

FormErrors CheckMaterialTypeEntry(const MaterialTypeEntry& entry) {
    FormErrors errors;
    if (Trim(entry.Name).empty()) errors.Add("- You must provide Material Type Name.");
    if (!IsNumeric(Trim(entry.Type))) errors.Add("- Material type can only be a numeric value (1 or 2).");
    if (!IsNumeric(Trim(entry.HapContents))) errors.Add("- HAP Content limit should be a numeric value(%).");
    return errors;
}
} // namespace mact
