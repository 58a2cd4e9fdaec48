#pragma once

#include <chrono>
#include <string_view>

namespace mact {

/// What locking has in common on all systems.

inline constexpr auto LongestWaitForLock = std::chrono::seconds(2);
inline constexpr auto WaitBetweenTries = std::chrono::milliseconds(10);
inline constexpr std::string_view LockedByAnotherCopy =
    "another running copy of the program is working with it";
} // namespace mact
