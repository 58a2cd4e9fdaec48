#include "base/text.h"
#include "materials/material_store.h"
#include "tests/safety/program_folder.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fcntl.h>
#include <functional>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace mact {
namespace {

constexpr int ImportedLines = 3000;
/// The records of this many rounds fit into one file.
constexpr int MostRounds = 8;
constexpr int SavesAtFirst = 2;
constexpr int UsageBefore = 3000;

/// A record file, and where in its slots the text is that shows who wrote them.
struct Slots {
    const char* File;
    std::size_t Length;
    std::size_t NameAt;
    std::size_t NameLength;
};
constexpr Slots Materials{"1_materials.talvor", 1444, 2, 100};
constexpr Slots Usage{"1_usage.talvor", 32, 4, 7};

/// What another copy does while this one saves.
struct Import {
    std::vector<std::string> Arguments;
    std::function<std::string(int)> SlotsFrom; ///< what it writes, numbered from there on
};

/// Whether another copy has the file locked.
bool IsHeld(const std::filesystem::path& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const bool isFree = ::flock(file, LOCK_EX | LOCK_NB) == 0;
    ::close(file);
    return !isFree;
}

/// This process is one copy. A copy that has to wait for more than two seconds says so and changes nothing,
/// and on a busy machine that can happen to either. So each test is repeated until both copies have done all
/// their work and met while doing it.
class SavingCopy : public testing::Test {
protected:
    ProgramFolder Folder;
    TestProgram Saving;

    SavingCopy() {
        Folder.Run({"add-company", "Acme", "Dock 1"});
        Folder.Run({"select-company", "1"});
        Folder.Run({"import-materials", Folder.MaterialsToImport("Resin", 1)});
        Saving.App.ProgramFolder = Folder.Path();
    }

    /// Saves records named S<round>/1, S<round>/2 ... before, while and after the other copy has the file.
    /// True if they met and neither was refused.
    bool HaveMet(const Slots& slots, int round, const Import& other,
                 const std::function<bool(const std::string&)>& save) {
        const std::size_t before = Folder.Data(slots.File).size();
        Saving.Prompts.Shown.clear();
        std::vector<std::string> saved;
        int tries = 0;
        const auto saveOne = [&] {
            const std::string name = "S" + std::to_string(round) + '/' + std::to_string(++tries);
            if (save(name)) saved.push_back(name);
        };
        ChildProgram importing(Folder.Start(other.Arguments));
        while (tries < SavesAtFirst)
            saveOne();
        while (importing.IsRunning() && !IsHeld(Folder.DataFile(slots.File)))
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        const bool hasBegun = importing.IsRunning();
        do
            saveOne();
        while (importing.IsRunning());
        const bool isImported = importing.Wait() == 0;
        EXPECT_TRUE(isImported || IsRefusal(importing.Errors())) << importing.Errors();
        for (const std::string& text : Saving.ShownTexts())
            EXPECT_TRUE(IsRefusal(text + '\n')) << text;

        const int firstImported = ExpectRecords(slots, before, saved);
        EXPECT_EQ(firstImported != 0, isImported);
        if (firstImported == 0) return false;
        const std::string imported = other.SlotsFrom(firstImported);
        const std::string after = Folder.Data(slots.File);
        EXPECT_EQ(after.size(), before + imported.size() + saved.size() * slots.Length);
        const std::size_t at = static_cast<std::size_t>(firstImported - 1) * slots.Length;
        EXPECT_EQ(after.compare(at, imported.size(), imported), 0) << "an imported record is not right";
        return hasBegun && Saving.Prompts.Shown.empty();
    }

    static bool IsRefusal(const std::string& message) {
        return message.starts_with("Cannot ") &&
               message.ends_with("\": another running copy of the program is working with it.\n");
    }

    /// Expects each slot to have its own number, and those beyond `before` to include all of `saved` in
    /// order. Returns the number of the first one that this copy did not save; 0 if there is none.
    int ExpectRecords(const Slots& slots, std::size_t before, const std::vector<std::string>& saved) const {
        const std::string after = Folder.Data(slots.File);
        EXPECT_EQ(after.size() % slots.Length, 0U);
        std::vector<std::string> found;
        int firstImported = 0;
        for (std::size_t at = 0; at < after.size(); at += slots.Length) {
            const std::size_t number = at / slots.Length + 1;
            EXPECT_EQ(after.substr(at, 2),
                      (std::string{static_cast<char>(number & 0xFFU), static_cast<char>(number >> 8U)}));
            if (at < before) continue;
            const std::string name{Trim(after.substr(at + slots.NameAt, slots.NameLength))};
            if (name.starts_with('S'))
                found.push_back(name);
            else if (firstImported == 0)
                firstImported = static_cast<int>(number);
        }
        EXPECT_EQ(found, saved);
        return firstImported;
    }
};

TEST_F(SavingCopy, AndOneThatImportsMaterialsLoseNoRecord) {
    bool haveMet = false;
    for (int round = 1; round <= MostRounds && !haveMet && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        const std::string before = Folder.Data(Materials.File);
        const std::string name = "Imported" + std::to_string(round);
        Import other;
        other.Arguments = {"import-materials", Folder.MaterialsToImport(name, ImportedLines)};
        other.SlotsFrom = [&](int first) { return MaterialSlots(name, ImportedLines, first); };
        haveMet = HaveMet(Materials, round, other, [&](const std::string& saved) {
            return !SaveMaterial(Saving.App,
                                 {.CustomId = saved, .Contents = "0|0|0|0|0|0", .Factors = "0|0|0|0|0|0"});
        });
        EXPECT_TRUE(Folder.Data(Materials.File).starts_with(before)) << "an earlier record has changed";
    }
    EXPECT_TRUE(haveMet);
}

TEST_F(SavingCopy, ThatDeletesUsageTooAndOneThatImportsItLoseNoRecord) {
    constexpr std::size_t activeAt = 21;
    Folder.Run({"import-usage", Folder.UsageToImport(1000, UsageBefore)});
    std::int16_t deleted = 0;
    bool haveMet = false;
    for (int round = 1; round <= MostRounds && !haveMet && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        std::string before = Folder.Data(Usage.File);
        const int year = 1000 + 1000 * round;
        Import other;
        other.Arguments = {"import-usage", Folder.UsageToImport(year, ImportedLines)};
        other.SlotsFrom = [&](int first) { return UsageSlots(year, ImportedLines, first); };
        haveMet = HaveMet(Usage, round, other, [&](const std::string& saved) {
            if (!DeleteUsage(Saving.App, static_cast<std::int16_t>(deleted + 1)))
                before.replace(static_cast<std::size_t>(deleted++) * Usage.Length + activeAt, 2, 2, '\0');
            return !SaveUsage(Saving.App, {.MaterialId = 1, .Period = saved, .Unit = UnitLbs});
        });
        EXPECT_GT(deleted, 0);
        EXPECT_TRUE(Folder.Data(Usage.File).starts_with(before)) << "an earlier record has changed";
    }
    EXPECT_TRUE(haveMet);
}

} // namespace
} // namespace mact
