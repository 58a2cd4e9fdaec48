#include "tests/safety/faults/fault_sweep.h"

#include "tests/safety/faults/fault_judge.h"
#include "tests/safety/sampling.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <random>

namespace mact {
namespace {

/// The ways in which calls fail.
std::vector<CallFault> WaysToFail() {
    std::vector<CallFault> ways;
    const auto add = [&](CallKind kind, std::initializer_list<int> errors) {
        for (const int error : errors)
            ways.push_back({.Kind = kind, .Error = error});
        ways.push_back({.Kind = kind, .Error = EINTR});
    };
    add(CallKind::Open, {EIO, EACCES, ESTALE, ENOSPC});
    add(CallKind::Read, {EIO, ESTALE});
    add(CallKind::Write, {EIO, ENOSPC});
    add(CallKind::Fsync, {EIO, ENOSPC});
    add(CallKind::Rename, {EIO, EACCES, ENOSPC});
    add(CallKind::Unlink, {EIO, EACCES});
    add(CallKind::Mkdir, {EIO, EACCES, ENOSPC});
    add(CallKind::Stat, {EIO, EACCES, ESTALE});
    add(CallKind::Flock, {EIO, ENOLCK});
    add(CallKind::Truncate, {EIO});
    for (const CallKind kind : {CallKind::Read, CallKind::Write})
        for (const CallFaultMode mode : {CallFaultMode::Half, CallFaultMode::Byte})
            ways.push_back({.Kind = kind, .Mode = mode});
    ways.push_back({.Kind = CallKind::Write, .Mode = CallFaultMode::Full, .Error = ENOSPC});
    return ways;
}

/// All faults of the task, or one call of each way to fail.
std::vector<CallFault> FaultsToTry(const FaultRun& sound, std::uint32_t seed) {
    const bool isWhole = IsWholeSweep();
    std::mt19937 random(seed);
    std::vector<CallFault> faults;
    for (CallFault way : WaysToFail()) {
        const std::uint32_t calls = sound.Counts.at(static_cast<std::size_t>(way.Kind));
        if (calls == 0) continue;
        for (way.Number = 1; isWhole && way.Number <= calls; ++way.Number)
            faults.push_back(way);
        if (isWhole) continue;
        way.Number = 1 + static_cast<std::uint32_t>(random() % calls);
        faults.push_back(way);
    }
    return faults;
}

} // namespace

void SweepFaults(FaultShop& shop, const SweptTask& task) {
    SoundRuns sound{.Before = shop.Files()};
    if (task.FirstHalf) {
        sound.Between = shop.Run(*task.FirstHalf).Files;
        ASSERT_NE(sound.Between, sound.Before);
        shop.Restore(sound.Before);
    }
    sound.Once = shop.Run(task.Start);
    sound.Twice = shop.Run(task.Start);
    ASSERT_EQ(sound.Once.Errors, "");
    ASSERT_NE(sound.Once.Status, -1);
    const std::uint32_t seed = Seed();
    SCOPED_TRACE("MACT_TEST_SEED=" + std::to_string(seed));
    const std::vector<CallFault> faults = FaultsToTry(sound.Once, seed);
    for (const CallFault& fault : faults) {
        shop.Restore(sound.Before);
        const ShopRun run = shop.Run(task.Start, &fault);
        std::vector<std::string> problems;
        if (task.IsRestore) {
            const ShopRun started = shop.Run(shop.CommandLine({"companies"}));
            problems = JudgeRestore(sound, run, started, shop.Run(task.Start));
        } else {
            problems = JudgeFaultyRun(task, sound, fault, run);
            const ShopRun next = shop.Run(task.Start);
            for (std::string& problem : JudgeNextRun(task, sound, run, next))
                problems.push_back(std::move(problem));
        }
        std::string text;
        for (const std::string& problem : problems)
            text += "\n  " + problem;
        if (!problems.empty())
            ADD_FAILURE() << TextOf(fault) << ", in " << run.StruckCall << " by " << run.StruckProgram
                          << " of " << run.StruckPath << text << "\n  told: " << run.Errors;
    }
    testing::Test::RecordProperty("faults", static_cast<int>(faults.size()));
    shop.Restore(sound.Before);
}

void PrepareRestore(FaultShop& shop) {
    ASSERT_EQ(shop.Run(shop.CommandLine({"backup"})).Status, 0);
    ASSERT_EQ(shop.Run(shop.CommandLine({"add-company", "Gamma", "Dock 3"})).Status, 0);
}
} // namespace mact
