#include "base/text.h"
#include "tests/safety/program_folder.h"
#include "tests/safety/sampling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <map>
#include <thread>

namespace mact {
namespace {

using Clock = std::chrono::steady_clock;

/// A command that is killed, and what it may leave behind.
struct Command {
    std::vector<std::string> Arguments;
    std::string File;           ///< the data file that it changes
    std::size_t SlotLength = 0; ///< 0 = the file is replaced
    std::string Written;        ///< what it appends, or the new content
};

constexpr int MaterialsAtOnce = 1000; // 1.4 MB: two writes
constexpr int UsageAtOnce = 400;

class KilledProgram : public testing::Test {
protected:
    ProgramFolder Folder;

    KilledProgram() {
        Folder.Run({"add-company", "Acme", "Dock 1"});
        Folder.Run({"select-company", "1"});
        Folder.Run({"names", "a", "b", "c", "d", "e", "f"});
        Folder.Run({"import-materials", Folder.MaterialsToImport("Resin", 1)});
        Kept = AllData();
    }

    /// What the data file holds once the operations that have not happened are taken back.
    std::map<std::string, std::string> Kept;

    int NextNumber(const std::string& file, std::size_t slotLength) const {
        return static_cast<int>(Kept.at(file).size() / slotLength) + 1;
    }
    /// `run` makes the records of each run different.
    Command MaterialImport(int run) const {
        const std::string name = "K" + std::to_string(run);
        return {
            {"import-materials", Folder.MaterialsToImport(name, MaterialsAtOnce)},
            "1_materials.talvor",
            1444,
            MaterialSlots(name, MaterialsAtOnce, NextNumber("1_materials.talvor", 1444))
        };
    }
    Command UsageImport(int run) const {
        const int year = 1000 + run * 40; // UsageAtOnce months fit into 40 years
        return {
            {"import-usage", Folder.UsageToImport(year, UsageAtOnce)},
            "1_usage.talvor",
            32,
            UsageSlots(year, UsageAtOnce, NextNumber("1_usage.talvor", 32))
        };
    }
    Command AddCompany(int run) const {
        const std::string name = "Company " + std::to_string(run);
        return {
            {"add-company", name, "Dock 1"},
            "companies.talvor",
            504,
            CompanySlot(name, NextNumber("companies.talvor", 504))
        };
    }
    static Command SetNames(int run) {
        const std::string name = "name " + std::to_string(run);
        return {
            {"names", name, "b", "c", "d", "e", "f"},
            "1_additional.talvor", 0, name + "|b|c|d|e|f\r\n"
        };
    }
    Command CommandOf(int run) const {
        switch (run % 4) {
        case 0:
            return MaterialImport(run);
        case 1:
            return UsageImport(run);
        case 2:
            return AddCompany(run);
        default:
            return SetNames(run);
        }
    }

    std::map<std::string, std::string> AllData() const {
        std::map<std::string, std::string> data;
        for (const char* name : {"hapcontents.talvor", "companies.talvor", "1_materials.talvor",
                                 "1_usage.talvor", "1_additional.talvor"})
            data[name] = Folder.Data(name);
        return data;
    }

    /// How many records the program reads.
    std::size_t RecordsRead(const std::string& file) const {
        if (file == "companies.talvor") {
            ChildProgram program(Folder.Start({"companies"}));
            EXPECT_EQ(program.Wait(), 0) << program.Errors();
            return CountLines(program.Output());
        }
        const std::string exported = PathText(Folder.FileBeside("exported.txt"));
        Folder.Run({file == "1_usage.talvor" ? "export-usage" : "export-materials", exported});
        return CountLines(ContentOf(exported));
    }
    static std::size_t CountLines(const std::string& text) {
        return static_cast<std::size_t>(std::ranges::count(text, '\n'));
    }

    /// The file is as before or replaced as a whole. Or it has its earlier slots, followed by as much as was
    /// written, and the program reads all of that or, as the command has not happened, none of it.
    void ExpectOldOrNew(const Command& command) {
        std::string& kept = Kept.at(command.File);
        const std::string after = Folder.Data(command.File);
        if (command.SlotLength == 0) {
            EXPECT_TRUE(after == kept || after == command.Written) << after;
            kept = after;
            return;
        }
        EXPECT_TRUE(after.starts_with(kept)) << command.File << ": an earlier record has changed";
        const std::size_t read = RecordsRead(command.File) * command.SlotLength;
        if (read == kept.size()) return;
        kept += command.Written;
        EXPECT_EQ(read, kept.size()) << command.File;
        EXPECT_TRUE(after == kept) << command.File << ": a record is not right";
    }
    void ExpectNothingElseChanged(const Command& command, std::map<std::string, std::string> before) const {
        auto after = AllData();
        before.erase(command.File);
        after.erase(command.File);
        EXPECT_TRUE(after == before) << command.File << " was not the only file that changed";
    }
    /// The command works at the next start, whatever was left behind.
    void ExpectWorks(const Command& command) {
        ChildProgram program(Folder.Start(command.Arguments));
        EXPECT_EQ(program.Wait(), 0) << program.Errors();
        std::string& kept = Kept.at(command.File);
        kept = (command.SlotLength == 0 ? "" : kept) + command.Written;
        EXPECT_TRUE(Folder.Data(command.File) == kept) << command.File;
        const std::filesystem::path undo = Folder.DataFile(command.File + ".mact.undo");
        EXPECT_FALSE(std::filesystem::exists(undo));
    }
    /// How long the command takes when it is left alone.
    Clock::duration UsualTime(const Command& command) {
        const auto start = Clock::now();
        ExpectWorks(command);
        return Clock::now() - start;
    }
};

class KilledAtARandomTime : public KilledProgram, public testing::WithParamInterface<int> {};

// Six times fifty, so that no file grows so large that reading it takes most of the time.
TEST_P(KilledAtARandomTime, LosesNoRecordAndGoesOn) {
    const std::uint32_t seed = Seed();
    std::mt19937 random(seed);
    std::array<Clock::duration, 4> usualTimes{};
    int run = 0;
    for (Clock::duration& time : usualTimes) {
        time = UsualTime(CommandOf(run));
        ++run;
    }
    constexpr int runs = 50;
    for (const int end = run + runs; run < end; ++run) {
        SCOPED_TRACE("MACT_TEST_SEED=" + std::to_string(seed) + ", run " + std::to_string(run));
        const auto before = AllData();
        const Command command = CommandOf(run);
        std::uniform_real_distribution<double> share(0, 1.1);
        const auto wait = share(random) * usualTimes.at(static_cast<std::size_t>(run % 4));
        {
            ChildProgram program(Folder.Start(command.Arguments));
            std::this_thread::sleep_for(wait);
            program.Kill();
            program.Wait();
        }
        ExpectOldOrNew(command);
        ExpectNothingElseChanged(command, before);
        if (run % 10 == 9) ExpectWorks(CommandOf(run + 1000 - run % 4 + run / 10 % 2));
        if (HasFailure()) return;
    }
    for (int command = 0; command < 4; ++command)
        ExpectWorks(CommandOf(2000 + command));
}
INSTANTIATE_TEST_SUITE_P(FiftyRuns, KilledAtARandomTime, testing::Range(0, 6));

/// The process is killed at the very byte beyond which its file may not grow.
TEST_F(KilledProgram, InTheMiddleOfAWriteLeavesAPieceThatTheNextStartMends) {
    int run = 0;
    ExpectWorks(MaterialImport(run++)); // so that the undo file stays below the limit
    for (const std::size_t piece : {1U, 700U, 722U, 723U, 1443U, 1444U, 1445U, 3000U}) {
        SCOPED_TRACE(piece);
        const Command command = MaterialImport(run++);
        const std::string kept = Kept.at(command.File);
        ChildStart start = Folder.Start(command.Arguments);
        start.LongestFile = kept.size() + piece;
        ChildProgram program(start);
        EXPECT_EQ(program.Wait(), -1);
        EXPECT_TRUE(Folder.Data(command.File) == kept + command.Written.substr(0, piece));
        EXPECT_EQ(RecordsRead(command.File) * 1444, kept.size()); // it has not happened
        ExpectWorks(MaterialImport(run++));
    }
}

/// The note of what the set should hold outlives the copy, so that the next start sees what is missing.
TEST_F(KilledProgram, InTheMiddleOfABackupLeavesItsNoteAndTheNextBackupWorks) {
    const std::string materials =
        Folder.Data("1_materials.talvor") + std::string(std::size_t{20} * 1444, 'm');
    WriteContent(Folder.DataFile("1_materials.talvor"), materials);
    ChildStart start = Folder.Start({"backup"});
    start.LongestFile = materials.size() - 1;
    ChildProgram program(start);
    EXPECT_EQ(program.Wait(), -1);
    const std::filesystem::path note = Folder.Path() / "backup.mact.note";
    EXPECT_NE(ContentOf(note).find("1_materials.talvor"), std::string::npos);
    const std::filesystem::path copy = Folder.Path() / "talvor_backupset_1" / "1_materials.talvor";
    EXPECT_LT(ContentOf(copy).size(), materials.size());
    EXPECT_EQ(Folder.Data("1_materials.talvor"), materials);
    Folder.Run({"backup"});
    EXPECT_EQ(ContentOf(Folder.Path() / "talvor_backupset_2" / "1_materials.talvor"), materials);
    EXPECT_FALSE(std::filesystem::exists(note));
}

TEST_F(KilledProgram, BeforeARenameLeavesTheOldNamesAndATemporaryFileThatIsReplaced) {
    const std::filesystem::path temporary = Folder.LeaveATemporaryFile();
    EXPECT_EQ(Folder.Data("1_additional.talvor"), "a|b|c|d|e|f\r\n");
    EXPECT_EQ(ContentOf(temporary), "MMA|b");
    ExpectWorks(SetNames(1));
    EXPECT_EQ(Folder.TemporaryFiles(), std::vector<std::filesystem::path>{});
}

} // namespace
} // namespace mact
