#pragma once

#include <chrono>

namespace mact {

/// What locking has in common on all systems.

inline constexpr auto LongestWaitForLock = std::chrono::seconds(2);
inline constexpr auto WaitBetweenTries = std::chrono::milliseconds(10);
inline constexpr std::string_view NoLocks =
    "the file system of this folder has no locks, which keep two running "
    "copies of the program from overwriting each other's work";
} // namespace mact
