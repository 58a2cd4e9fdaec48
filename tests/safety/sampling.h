#pragma once

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string_view>

namespace mact {

/// Long tests do a sample of their work, chosen by a seed, unless MACT_SWEEP=all asks for all of it.

/// Setting MACT_TEST_SEED to the seed in a failure's message repeats that run.
inline std::uint32_t Seed() {
    const char* given = std::getenv("MACT_TEST_SEED"); // NOLINT(concurrency-mt-unsafe): one thread
    return given ? static_cast<std::uint32_t>(std::strtoul(given, nullptr, 10)) : std::random_device{}();
}

inline bool IsWholeSweep() {
    const char* given = std::getenv("MACT_SWEEP"); // NOLINT(concurrency-mt-unsafe): one thread
    return given && std::string_view(given) == "all";
}
} // namespace mact
