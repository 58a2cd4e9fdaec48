#pragma once

#include "base/result.h"
#include "base/text.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>

namespace mact {

/// What the operating systems' file access has in common: how a failure is told, and how long a lock is
/// waited for.

inline constexpr auto LongestWaitForLock = std::chrono::seconds(2);
inline constexpr auto WaitBetweenTries = std::chrono::milliseconds(10);
inline constexpr std::string_view LockedByAnotherCopy =
    "another running copy of the program is working with it";

/// The sentence for a failed operation; `doing` is as in "open the file", `reason` lacks its period.
inline Failure DescribeFailure(std::string_view doing, const std::filesystem::path& path,
                               std::string_view reason) {
    std::string sentence = "Cannot ";
    sentence += doing;
    sentence += " \"" + PathText(path) + "\": ";
    sentence += reason;
    sentence += '.';
    return {sentence};
}

} // namespace mact
