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
    double
        MostTimesFloor; ///< the target as a multiple of the floor; at least 5 ms, unless it has its own floor
    void (*Run)(BenchShop& shop);
    std::vector<std::filesystem::path> (*Inputs)(BenchShop& shop); ///< read by the operation
    /// The file it writes, flushed; an empty path if there is none.
    std::filesystem::path (*Output)(BenchShop& shop);
    /// The output is a new file; otherwise it replaces an old one.
    bool IsOutputNew = false;
    /// Its own floor, if it is not to read the inputs and write the output.
    void (*Floor)(BenchShop& shop) = nullptr;
};
const std::vector<Operation>& AllOperations();

/// Removes the output of an operation that needs a new file. Not timed.
void PrepareRun(const Operation& operation, BenchShop& shop);

/// The operation's own floor; or else reads the inputs in chunks and writes `outputBytes` to one file,
/// flushed once, or nothing for 0.
void RunFloor(const Operation& operation, BenchShop& shop, std::uint64_t outputBytes);

/// Where the floor writes. If the operation makes a new file, this one must be removed before each run.
std::filesystem::path FloorOutput(BenchShop& shop);
} // namespace mact
