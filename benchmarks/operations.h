#pragma once

#include "benchmarks/bench_shop.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace mact {

/// One operation as the benchmark runs it, and what its floor has to do.
struct Operation {
    const char* Name;
    double MostTimesFloor; ///< the target, where that is more than 5 ms
    void (*Run)(BenchShop& shop);
    std::vector<std::filesystem::path> (*Inputs)(BenchShop& shop); ///< read by the operation
    /// What it writes: an empty path for nothing. Flushed.
    std::filesystem::path (*Output)(BenchShop& shop);
    /// The output is a new file; otherwise an old one is replaced.
    bool IsOutputNew = false;
};
const std::vector<Operation>& Operations();

/// Removes the output of an operation that makes it new. Not timed.
void PrepareRun(const Operation& operation, BenchShop& shop);

/// Reads the inputs in chunks and writes `outputBytes` to one file, flushed once; nothing for 0.
void RunFloor(const Operation& operation, BenchShop& shop, std::uint64_t outputBytes);

/// Where the floor writes; to be removed before each run of a floor whose operation makes a new file.
std::filesystem::path FloorOutput(BenchShop& shop);
} // namespace mact
