#include "base/text.h"
#include "platform/os_files.h"
#include "tests/safety/program_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>

namespace mact {
namespace {

constexpr const char* MaterialsFile = "1_materials.talvor";
constexpr const char* UsageFile = "1_usage.talvor";
constexpr const char* CompaniesFile = "companies.talvor";

/// What one of several copies writes: successive slots, each beginning with its number in two bytes.
struct Share {
    std::vector<std::string> Arguments;
    std::string File;
    std::size_t SlotLength;
    std::string Slots; ///< numbered from 1
};

class TwoCopies : public testing::Test {
protected:
    ProgramFolder Folder;

    TwoCopies() {
        Folder.Run({"add-company", "Acme", "Dock 1"});
        Folder.Run({"select-company", "1"});
        Folder.Run({"import-materials", Folder.MaterialsToImport("Resin", 1)});
    }

    /// One sentence, which may first name the file that was to be replaced.
    static void ExpectRefusal(const std::string& message, const std::filesystem::path& file) {
        EXPECT_TRUE(message.starts_with("Cannot ")) << message;
        EXPECT_TRUE(message.ends_with("annot lock the file \"" + PathText(file) +
                                      "\": another running copy of the program is working with it.\n"))
            << message;
        EXPECT_EQ(std::ranges::count(message, '\n'), 1) << message;
    }

    /// Starts all of them at once. True for each that succeeded; the others must say that they waited too
    /// long.
    std::vector<bool> Race(const std::vector<Share>& shares) const {
        StartSignal signal;
        std::vector<std::unique_ptr<ChildProgram>> children;
        for (const Share& share : shares) {
            ChildStart start = Folder.Start(share.Arguments);
            start.Signal = &signal;
            children.push_back(std::make_unique<ChildProgram>(start));
        }
        signal.Give();
        std::vector<bool> succeeded;
        for (const auto& child : children) {
            const int status = child->Wait();
            succeeded.push_back(status == 0);
            if (status == 0) continue;
            EXPECT_EQ(status, 1);
            EXPECT_TRUE(
                child->Errors().ends_with("\": another running copy of the program is working with it.\n"))
                << child->Errors();
        }
        return succeeded;
    }

    /// Each slot of the file has its own number, followed by what was there before or what one of the shares
    /// wrote. A share that succeeded is there once and whole; one that failed is not there.
    void ExpectAllOf(const std::vector<Share>& shares, const std::vector<bool>& succeeded,
                     const std::string& file, std::size_t slotLength, const std::string& before) const {
        const std::string after = Folder.Data(file);
        ASSERT_EQ(after.size() % slotLength, 0U);
        EXPECT_TRUE(after.starts_with(before)) << "an earlier record has changed";
        std::multiset<std::string> expected;
        for (std::size_t index = 0; index < shares.size(); ++index)
            for (std::size_t at = 0;
                 succeeded[index] && shares[index].File == file && at < shares[index].Slots.size();
                 at += slotLength)
                expected.insert(shares[index].Slots.substr(at + 2, slotLength - 2));
        std::multiset<std::string> found;
        for (std::size_t at = before.size(); at < after.size(); at += slotLength) {
            const std::size_t number = at / slotLength + 1;
            EXPECT_EQ(after.substr(at, 2),
                      (std::string{static_cast<char>(number & 0xFFU), static_cast<char>(number >> 8U)}));
            found.insert(after.substr(at + 2, slotLength - 2));
        }
        EXPECT_TRUE(found == expected)
            << file << ": " << found.size() << " of " << expected.size() << " records";
    }
};

TEST_F(TwoCopies, ThatImportAndAddAtOnceLoseNoRecord) {
    constexpr int rounds = 6;
    constexpr int lines = 250;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        std::vector<Share> shares;
        for (const int copy : {1, 2}) {
            const std::string name = "R" + std::to_string(round) + "C" + std::to_string(copy);
            const int year = 1000 + round * 100 + copy * 40;
            shares.push_back({
                {"import-materials", Folder.MaterialsToImport(name, lines)},
                MaterialsFile,
                1444,
                MaterialSlots(name, lines, 1)
            });
            shares.push_back({
                {"import-usage", Folder.UsageToImport(year, lines)},
                UsageFile,
                32,
                UsageSlots(year, lines, 1)
            });
            shares.push_back({
                {"add-company", name, "Dock 1"},
                CompaniesFile, 504, CompanySlot(name, 1)
            });
        }
        const std::string materials = Folder.Data(MaterialsFile);
        const std::string usage = Folder.Data(UsageFile);
        const std::string companies = Folder.Data(CompaniesFile);
        const std::vector<bool> succeeded = Race(shares);
        EXPECT_TRUE(std::ranges::count(succeeded, true) >= 3);
        ExpectAllOf(shares, succeeded, MaterialsFile, 1444, materials);
        ExpectAllOf(shares, succeeded, UsageFile, 32, usage);
        ExpectAllOf(shares, succeeded, CompaniesFile, 504, companies);
        if (HasFailure()) return;
    }
}

TEST_F(TwoCopies, ThatSaveTheNamesAtOnceLeaveThoseOfOne) {
    for (int round = 0; round < 10; ++round) {
        std::vector<Share> shares;
        for (const char* name : {"MMA", "Styrene", "Vinyl toluene"})
            shares.push_back({
                {"names", name, "b", "c", "d", "e", "f"},
                "", 0, ""
            });
        const std::vector<bool> succeeded = Race(shares);
        EXPECT_TRUE(std::ranges::count(succeeded, true) >= 1);
        const std::string names = Folder.Data("1_additional.talvor");
        EXPECT_TRUE(names == "MMA|b|c|d|e|f\r\n" || names == "Styrene|b|c|d|e|f\r\n" ||
                    names == "Vinyl toluene|b|c|d|e|f\r\n")
            << names;
        EXPECT_EQ(Folder.TemporaryFiles(), std::vector<std::filesystem::path>{});
    }
}

TEST_F(TwoCopies, ThatStartInANewFolderAtOnceBothDo) {
    for (int round = 0; round < 10; ++round) {
        std::filesystem::remove_all(Folder.Path() / "data");
        const Share start{
            {"add-company", "Acme", "Dock 1"},
            CompaniesFile, 504, CompanySlot("Acme", 1)
        };
        const std::vector<Share> shares = {start, start};
        const std::vector<bool> succeeded = Race(shares);
        EXPECT_EQ(succeeded, (std::vector<bool>{true, true}));
        ExpectAllOf(shares, succeeded, CompaniesFile, 504, "");
        EXPECT_EQ(Folder.Data("hapcontents.talvor").size(), 29U * 232);
    }
}

/// A copy that waits too long, and the file that another copy holds.
struct Waiting {
    const char* Name;
    std::vector<std::string> Arguments; ///< "materials" and "usage" stand for the files to import
    std::string File;                   ///< in the data folder; empty = the temporary file of the names
};
void PrintTo(const Waiting& waiting, std::ostream* out) {
    *out << waiting.Name;
}

class WaitingCopy : public TwoCopies, public testing::WithParamInterface<Waiting> {
protected:
    std::filesystem::path HeldFile() const {
        return GetParam().File.empty() ? Folder.LeaveATemporaryFile() : Folder.DataFile(GetParam().File);
    }
};

TEST_P(WaitingCopy, SaysSoInOneSentenceAndChangesNothing) {
    std::vector<std::string> arguments = GetParam().Arguments;
    std::ranges::replace(arguments, "materials", Folder.MaterialsToImport("Waiting", 3));
    std::ranges::replace(arguments, "usage", Folder.UsageToImport(2031, 3));
    OsFiles files;
    const std::filesystem::path file = HeldFile();
    const auto held = files.Open(file, OpenMode::Update);
    ASSERT_TRUE((*held)->Lock());
    std::map<std::string, std::string> before;
    for (const auto& entry : std::filesystem::directory_iterator(Folder.Path() / "data"))
        before[entry.path().filename().string()] = ContentOf(entry.path());

    ChildProgram program(Folder.Start(arguments));
    EXPECT_EQ(program.Wait(), 1);
    ExpectRefusal(program.Errors(), file);
    std::map<std::string, std::string> after;
    for (const auto& entry : std::filesystem::directory_iterator(Folder.Path() / "data"))
        after[entry.path().filename().string()] = ContentOf(entry.path());
    EXPECT_TRUE(after == before);
}

INSTANTIATE_TEST_SUITE_P(Commands, WaitingCopy,
                         testing::Values(
                             Waiting{
                                 "ImportOfMaterials", {"import-materials", "materials"},
                                  MaterialsFile
},
                             Waiting{"ImportOfUsage", {"import-usage", "usage"}, UsageFile},
                             Waiting{"NewCompany", {"add-company", "Beta", "Dock 2"}, CompaniesFile},
                             Waiting{"Names", {"names", "a", "b", "c", "d", "e", "f"}, ""}),
                         [](const auto& given) { return std::string(given.param.Name); });

TEST_F(TwoCopies, OfWhichOneWaitsForTheLogOfAnImportChangesNothing) {
    const std::filesystem::path log = Folder.Path() / "usage_import_errors.txt";
    OsFiles files;
    const auto held = files.Open(log, OpenMode::Update);
    ASSERT_TRUE((*held)->Lock());
    ChildProgram program(Folder.Start({"import-usage", Folder.UsageToImport(2031, 3)}));
    EXPECT_EQ(program.Wait(), 1);
    ExpectRefusal(program.Errors(), log);
    EXPECT_EQ(Folder.Data(UsageFile), "");
}

TEST_F(TwoCopies, ThatBringBackUsageOfOneMaterialAndMonthAtOnceLeaveOneOfItLive) {
    constexpr int rounds = 12;
    std::string deleted;
    for (const std::int16_t number : {std::int16_t{1}, std::int16_t{2}})
        deleted += Pack(UsageLayout, {.UsageId = number,
                                      .MaterialId = 1,
                                      .Period = "3/2005",
                                      .Quantity = 120.5,
                                      .Unit = UnitLbs,
                                      .Active = false});
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        WriteContent(Folder.DataFile(UsageFile), deleted);
        StartSignal signal;
        std::vector<std::unique_ptr<ChildProgram>> children;
        for (const char* number : {"1", "2"}) {
            ChildStart start = Folder.Start({"undelete", "usage", number});
            start.Signal = &signal;
            children.push_back(std::make_unique<ChildProgram>(start));
        }
        signal.Give();
        const std::multiset<int> statuses = {children[0]->Wait(), children[1]->Wait()};
        EXPECT_EQ(statuses.count(0), 1U) << children[0]->Errors() << children[1]->Errors();
        EXPECT_NE(children[0]->Errors(), children[1]->Errors()); // the other one says why not
        std::string first = deleted;
        first.replace(21, 2, 2, '\xFF');
        std::string second = deleted;
        second.replace(32 + 21, 2, 2, '\xFF');
        const std::string after = Folder.Data(UsageFile);
        EXPECT_TRUE(after == first || after == second);
    }
}

} // namespace
} // namespace mact
