#pragma once

#include "tests/safety/faults/fault_sweep.h"

#include <optional>
#include <string>
#include <vector>

namespace mact {

/// What a task does when nothing fails.
struct SoundRuns {
    FileTree Before{};
    std::optional<FileTree> Between{}; ///< after its first half, if it has one
    ShopRun Once{};
    ShopRun Twice{}; ///< the second time, after the first
};

/// What is wrong with a run in which a fault struck; empty = nothing.
std::vector<std::string> JudgeFaultyRun(const SweptTask& task, const SoundRuns& sound, const CallFault& fault,
                                        const ShopRun& run);
/// What is wrong with the next run, without a fault, after `run`.
std::vector<std::string> JudgeNextRun(const SweptTask& task, const SoundRuns& sound, const ShopRun& run,
                                      const ShopRun& next);
/// The same of a restore. `started` is the next start after `run`, `next` a restore after that.
std::vector<std::string> JudgeRestore(const SoundRuns& sound, const ShopRun& run, const ShopRun& started,
                                      const ShopRun& next);
} // namespace mact
