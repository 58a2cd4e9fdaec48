#pragma once

#include <chrono>

namespace mact {

/// What locking has in common on all systems.

inline constexpr auto LongestWaitForLock = std::chrono::seconds(2);
inline constexpr auto WaitBetweenTries = std::chrono::milliseconds(10);
} // namespace mact
