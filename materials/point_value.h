#pragma once

#include "store/material_types.h"

namespace mact {

/// Kg of HAP per Mg of material by the method's emission-factor equation (40 CFR 63, Subpart VVVV, Table 3),
/// rounded to 2 decimals; `hapContent` in weight percent. A filled resin's filler does not reduce it and
/// never has. Infinite or not a number if the equation has no result.
double PointValue(const HapContentRecord& method, double hapContent);
} // namespace mact
