#pragma once

#include "reports/additional_hap_data.h"

namespace mact {

/// The materials used in the report's months, with the pounds used and their additional pollutants.

/// Only a used material gets rows.
bool IsUsed(const AdditionalHapMaterial& material);
/// Slot 0 is listed even if its name is not in use: its row also holds the material.
bool IsListed(const PollutantNames& names, std::size_t slot);

/// A Failure if the page would have to show a value that is not finite.
Done CheckShownNumbers(const AdditionalHapData& data);

std::string BuildAdditionalHapUsageHtml(const AdditionalHapData& data);
} // namespace mact
