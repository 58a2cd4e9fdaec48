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
        auto data = FilesIn(folder.Path() / "data");
        // Those by which files that are replaced as a whole are locked; the next replacement takes them.
        std::erase_if(data, [](const auto& file) { return file.first.ends_with(".mact.tmp"); });
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

/// What a copy reports as saved is in the data afterwards, or in what the restore has kept.
TEST(RestoreBesideASavingCopy, LosesNothing) {
    const ProgramFolder folder;
    folder.Run({"add-company", "Acme", "Dock 1"});
    folder.Run({"backup"});
    const std::string ofSet = folder.Data("companies.talvor");
    const int turns = IsWholeSweep() ? 300 : 20;
    int restoredBeside = 0;
    for (int turn = 0; turn < turns; ++turn) {
        SCOPED_TRACE(turn);
        const std::string name = "Company " + std::to_string(turn) + '.';
        ChildProgram restoring(folder.Start({"restore", "1"}));
        ChildProgram saving(folder.Start({"add-company", name, "Dock"}));
        const bool isSaved = saving.Wait() == 0;
        const bool isRestored = restoring.Wait() == 0;
        EXPECT_TRUE(isRestored || restoring.Errors().find("another running copy") != std::string::npos)
            << restoring.Errors();
        const std::string companies = folder.Data("companies.talvor");
        const bool isInData = companies.find(name) != std::string::npos;
        int kept = 0;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path()))
            if (entry.path().filename() == "companies.talvor" &&
                entry.path().parent_path() != folder.Path() / "data")
                kept += ContentOf(entry.path()).find(name) != std::string::npos ? 1 : 0;
        EXPECT_TRUE(!isSaved || isInData || kept > 0) << "the company is lost";
        EXPECT_EQ(companies.size() % 504, 0U);
        EXPECT_EQ(companies.substr(0, 504), ofSet);
        restoredBeside += isSaved && isRestored ? 1 : 0;
        if (testing::Test::HasFailure()) return;
    }
    EXPECT_GT(restoredBeside, 0);
}

} // namespace
} // namespace mact
