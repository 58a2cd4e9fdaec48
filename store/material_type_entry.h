#pragma once

#include "base/messages.h"

#include <string>

namespace mact {

/// What the material-type window holds, as typed: code-page text.
struct MaterialTypeEntry {
    std::string Name;
    std::string Type;        ///< meant to be 1 or 2; the check takes any number
    std::string HapContents; ///< weight percent
};

/// One message per failed check, in the order of the form.
FormErrors CheckMaterialTypeEntry(const MaterialTypeEntry& entry);
} // namespace mact
