#pragma once

#include "base/hint.h"
#include "materials/material_entry.h"
#include "store/material_types.h"

#include <vector>

namespace mact {

/// What the material editor says about its entries while they are typed.
struct MaterialHints {
    Hint Figures{}; ///< limit and point value of type, method and content; what becomes of filler and factor
    Hint Doubts{};  ///< entries that may be a mistake, such as a fraction typed for a percentage
};
MaterialHints HintsOn(const TypedMaterial& material, const std::vector<HapContentRecord>& types);
} // namespace mact
