#include "base/text.h"
#include "tests/safety/program_folder.h"
#include "tests/safety/sampling.h"
#include "tests/support/folder_content.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

/// A restore that is killed before any of its changes to files is finished, or has not happened.
TEST(KilledRestore, HasHappenedWhollyOrNotAtAll) {
    const std::uint32_t seed = Seed();
    SCOPED_TRACE("MACT_TEST_SEED=" + std::to_string(seed));
    std::mt19937 random(seed);
    bool wasOld = false;
    bool wasNew = false;
    bool hasEnded = false;
    for (int change = 1; !hasEnded; change += IsWholeSweep() ? 1 : 1 + static_cast<int>(random() % 8)) {
        SCOPED_TRACE("at change " + std::to_string(change));
        const ProgramFolder folder;
        folder.Run({"add-company", "Acme", "Dock 1"});
        folder.Run({"backup"});
        folder.Run({"add-company", "Beta", "Dock 2"});
        const auto old = FilesIn(folder.Path() / "data");
        const auto ofSet = FilesIn(folder.Path() / "talvor_backupset_1");
        ChildStart start = folder.Start({"restore", "1"});
        start.IsTraced = true;
        ChildProgram program(start);
        hasEnded = program.RunToChange(change) < change;
        program.Kill();
        program.Wait();
        folder.Run({"companies"});
        const auto data = FilesIn(folder.Path() / "data");
        ASSERT_TRUE(data == old || data == ofSet);
        EXPECT_TRUE(!hasEnded || data == ofSet);
        for (const char* left : {"data.mact.new", "data.mact.old", "data.replaced", "restore.mact.note"})
            EXPECT_FALSE(std::filesystem::exists(folder.Path() / left)) << left;
        wasOld |= data == old;
        wasNew |= data == ofSet && !hasEnded;
        folder.Run({"restore", "1"});
        EXPECT_EQ(FilesIn(folder.Path() / "data"), ofSet);
        if (testing::Test::HasFailure()) return;
    }
    EXPECT_TRUE(wasOld);
    EXPECT_TRUE(wasNew || !IsWholeSweep());
}

} // namespace
} // namespace mact
