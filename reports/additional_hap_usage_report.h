#pragma once

#include "reports/additional_hap_data.h"

namespace mact {

/// The materials used in the report's months with the pounds used and their additional pollutants.

/// A material without use gets no rows.
bool IsUsed(const AdditionalHapMaterial& material);
/// Slot 0 is listed whatever its name: the row also holds the material.
bool IsListed(const PollutantNames& names, std::size_t slot);

/// A Failure when a number that the page would show is none.
Done CheckShownNumbers(const AdditionalHapData& data);

std::string BuildAdditionalHapUsageHtml(const AdditionalHapData& data);
} // namespace mact
