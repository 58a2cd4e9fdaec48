#pragma once

#include "overview/half_year.h"

namespace mact {

/// The half-year pack's page. `figures` are those of the source's records.
std::string PackPage(const PackSource& source, const ShopFigures& figures, HalfYear half);
} // namespace mact
