#include "store/material_type_entry.h"

#include "base/numbers.h"
#include "base/text.h"
#include "store/material_type_texts.h"

namespace mact {

FormErrors CheckMaterialTypeEntry(const MaterialTypeEntry& entry) {
    FormErrors errors;
    if (Trim(entry.Name).empty()) errors.Add(MaterialTypeTexts::NeedsName);
    if (!IsNumeric(Trim(entry.Type))) errors.Add(MaterialTypeTexts::TypeNotNumeric);
    if (!IsNumeric(Trim(entry.HapContents))) errors.Add(MaterialTypeTexts::HapContentsNotNumeric);
    return errors;
}

} // namespace mact
