#pragma once

#include "usage/usage_record.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// What the list's status line says. UTF-8.

/// "Saved PF-402, NOV 2026, 402 lbs; 10 records this month". `customId` is the material's, in the code page;
/// `live` has all live usage, the saved record included.
std::string SavedUsageText(const UsageRecord& saved, std::string_view customId,
                           const std::vector<UsageRecord>& live);

/// "187 records", or what passes a filter: "12 of 187 records".
std::string ListedText(std::size_t listed, std::size_t all, std::string_view of);
} // namespace mact
