#include "base/text.h"
#include "tests/safety/program_folder.h"
#include "tests/safety/sampling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <thread>

namespace mact {
namespace {

using Clock = std::chrono::steady_clock;
using Files = std::map<std::string, std::string>;

enum class Kind {
    Records,  ///< writes slots of a record file
    Replaces, ///< replaces a whole file
    Settings, ///< replaces the settings
    Backup,   ///< counts the sets in the settings, then makes one
};

/// What is killed. An argument that begins with "@" stands for a file to import.
struct Operation {
    const char* Name;
    Kind Does;
    std::string File; ///< that it changes, in the program folder
    bool IsCommand;   ///< of the command line; otherwise of store_program
    std::vector<std::string> Arguments;
    std::vector<std::string> Next;                       ///< the next of its kind
    std::vector<std::vector<std::string>> Preparation{}; ///< imports, and what store_program does
};
void PrintTo(const Operation& operation, std::ostream* out) {
    *out << operation.Name;
}

/// When a process is killed: before one of its changes to files, or at a time.
struct Moment {
    int Change = 0; ///< 0 = at the time
    Clock::duration Time{};
};

/// All that an operation may change, as the commands show it and in the files that are replaced whole.
using Picture = std::vector<std::string>;

constexpr std::size_t KillsOfEach = 40; // 880 of all operations, of which some have ended before
constexpr std::size_t MostChanges = 22; // the rest is killed at a time
constexpr auto TimeForASample = std::chrono::milliseconds(1600);
constexpr auto LongestCommand = std::chrono::seconds(10);

constexpr const char* FirstSettings = "[BACKUP]\nAUTO_BACKUP=1\nBK_VOLUME=4\n\n"
                                      "[BROWSER]\nPATH=/usr/bin/a browser\n\n[COMPANY]\nDEFAULT=1\n";
constexpr const char* KilledSet = "program/talvor_backupset_4/";
constexpr int LinesAtOnce = 1000; // of materials, 1.4 MB: two writes

/// What is in the folder and all below it, by the path from it on.
Files AllFilesIn(const std::filesystem::path& folder) {
    Files files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file())
            files[PathText(entry.path().lexically_relative(folder))] = ContentOf(entry.path());
    return files;
}

class KilledOperation : public testing::TestWithParam<Operation> {
protected:
    KilledOperation() {
        Folder.Run({"add-company", "Acme", "Dock 1"});
        Folder.Run({"add-company", "Beta", "Dock 2"});
        Folder.Run({"select-company", "1"});
        Folder.Run({"names", "a", "b", "c", "d", "e", "f"});
        Folder.Run({"import-materials", Folder.MaterialsToImport("Resin", 30)});
        Folder.Run({"import-usage", Folder.UsageToImport(2000, 40)});
        Folder.Run({"report", "compliant"});
        Folder.Run({"report", "weighted-average", "--ending", "12/2001"});
        Folder.Run({"export-usage", PathText(Folder.Path() / "exported.txt")});
        // So that reports and exports differ from those that are there.
        EndsWell(Folder.StartStore({"save-material", "5", "Resin-5", "7"}));
        EndsWell(Folder.StartStore({"save-usage", "0", "5/2001", "999"}));
        for (const char* number : {"25", "26", "27"})
            EndsWell(Folder.StartStore({"delete-usage", number}));
        for (const char* number : {"20", "21", "22"})
            EndsWell(Folder.StartStore({"delete-material", number}));
        for (const auto& arguments : GetParam().Preparation)
            EndsWell(StartOf(arguments, arguments.front().starts_with("import-")));
        WriteContent(Folder.SettingsFolder() / "MACT" / "TALVOR_QUME_APP.conf", FirstSettings);
        m_before = Look();
    }

    Files Look() const {
        Files files;
        for (const auto& folder : {Folder.Path(), Folder.SettingsFolder()})
            for (auto& [name, content] : AllFilesIn(folder))
                files[PathText(folder.filename()) + '/' + name] = std::move(content);
        return files;
    }
    void PutBack(const Files& files) const {
        const std::filesystem::path above = Folder.Path().parent_path();
        const Files present = Look();
        for (const auto& [name, content] : present)
            if (!files.contains(name)) std::filesystem::remove(above / PathFromUtf8(name));
        for (const auto& [name, content] : files) {
            const auto there = present.find(name);
            if (there != present.end() && there->second == content) continue;
            std::filesystem::create_directories((above / PathFromUtf8(name)).parent_path());
            WriteContent(above / PathFromUtf8(name), content);
        }
        for (const char* set : {"talvor_backupset_4", "talvor_backupset_5"})
            if (!files.contains("program/" + std::string(set) + "/companies.talvor"))
                std::filesystem::remove_all(Folder.Path() / set);
    }

    ChildStart StartOf(std::vector<std::string> arguments) const {
        return StartOf(std::move(arguments), GetParam().IsCommand);
    }
    ChildStart StartOf(std::vector<std::string> arguments, bool isCommand) const {
        for (std::string& argument : arguments) {
            if (argument == "@materials") argument = Folder.MaterialsToImport("K", LinesAtOnce);
            if (argument == "@next materials") argument = Folder.MaterialsToImport("N", 20);
            if (argument == "@usage") argument = Folder.UsageToImport(3000, LinesAtOnce);
            if (argument == "@next usage") argument = Folder.UsageToImport(4000, 20);
            if (argument == "@exported") argument = PathText(Folder.Path() / "exported.txt");
        }
        return isCommand ? Folder.Start(arguments) : Folder.StartStore(arguments);
    }

    /// Runs the program to its end, which must be a good one and soon.
    static std::string EndsWell(const ChildStart& start) {
        const auto begin = Clock::now();
        ChildProgram program(start);
        EXPECT_EQ(program.Wait(), 0) << testing::PrintToString(start.Arguments) << program.Errors();
        EXPECT_LT(Clock::now() - begin, LongestCommand) << testing::PrintToString(start.Arguments);
        return program.Output();
    }
    std::string Exported(const char* command) const {
        const std::filesystem::path file = Folder.FileBeside("shown.txt");
        EndsWell(Folder.Start({command, PathText(file)}));
        return ContentOf(file);
    }
    /// What the commands show, and the files that are replaced whole.
    Picture TakePicture(const Files& files) const {
        Picture picture = {EndsWell(Folder.Start({"companies"})), EndsWell(Folder.Start({"names"})),
                           Exported("export-materials"), Exported("export-usage"),
                           EndsWell(Folder.StartStore({"list"}))};
        for (const auto& name : {FileOf(GetParam()), SettingsFile()})
            picture.push_back(IsReplaced(name) && files.contains(name) ? files.at(name) : "");
        return picture;
    }

    static std::string FileOf(const Operation& operation) { return "program/" + operation.File; }
    static std::string SettingsFile() { return "settings/MACT/TALVOR_QUME_APP.conf"; }

    /// Whether the killed operation may leave this file in any state.
    static bool IsItsOwn(const std::string& name) {
        const Operation& operation = GetParam();
        const bool isBackup = operation.Does == Kind::Backup;
        if (name == FileOf(operation) + ".mact.tmp" || name.ends_with("_errors.txt")) return true;
        if (operation.Does == Kind::Records)
            return name == FileOf(operation) || name == FileOf(operation) + ".mact.undo";
        if (isBackup && (name.starts_with(KilledSet) || name == FileOf(operation))) return true;
        if (isBackup && name.starts_with("program/backup.mact.note")) return true; // of the set
        return (isBackup || operation.Does == Kind::Settings) && name.starts_with(SettingsFile() + '.');
    }
    static bool IsReplaced(const std::string& name) {
        const Kind does = GetParam().Does;
        if (name == SettingsFile()) return does == Kind::Settings || does == Kind::Backup;
        return does == Kind::Replaces && name == FileOf(GetParam());
    }
    /// Every file that the operation does not change is as before, one that is replaced is old or new, and no
    /// other file has come.
    void ExpectNoneHarmed(const Files& after) const {
        for (const auto& [name, content] : m_before)
            EXPECT_TRUE(after.contains(name)) << name << " is gone";
        for (const auto& file : after) {
            if (IsItsOwn(file.first)) continue;
            const auto isIn = [&](const Files& files) { return std::ranges::count(files, file) == 1; };
            EXPECT_TRUE(isIn(m_before) || (IsReplaced(file.first) && isIn(m_done))) << file.first;
        }
    }
    /// Of a backup set that was killed, only that it does no harm.
    static Files WithoutKilledSetAndLogs(Files files) {
        std::erase_if(files, [](const auto& file) {
            return file.first.ends_with("_errors.txt") ||
                   (GetParam().Does == Kind::Backup && file.first.starts_with(KilledSet));
        });
        return files;
    }
    static void ExpectSameFiles(const Files& found, const Files& expected) {
        for (const auto& [name, content] : found)
            EXPECT_TRUE(expected.contains(name)) << name << " is left over";
        for (const auto& [name, content] : expected)
            EXPECT_TRUE(found.contains(name) && found.at(name) == content) << name;
    }

    /// Runs the operation and the next one without killing them, from before and after the operation on.
    void RunWithoutKilling() {
        m_pictureBefore = TakePicture(m_before);
        PutBack(m_before);
        EndsWell(StartOf(GetParam().Next));
        m_nextToBefore = Look();
        PutBack(m_before);
        const auto begin = Clock::now();
        EndsWell(StartOf(GetParam().Arguments));
        m_usualTime = Clock::now() - begin;
        m_done = Look();
        m_pictureDone = TakePicture(m_done);
        EndsWell(StartOf(GetParam().Next));
        m_nextToDone = Look();
        ASSERT_NE(m_pictureBefore, m_pictureDone);
    }

    std::vector<Moment> Moments(std::mt19937& random) {
        PutBack(m_before);
        ChildStart start = StartOf(GetParam().Arguments);
        start.IsTraced = true;
        ChildProgram program(start);
        const int changes = program.RunToChange(0);
        EXPECT_EQ(program.Wait(), 0) << program.Errors();
        EXPECT_GE(changes, 3); // write, flush, and its last word
        std::vector<Moment> moments;
        for (int change = 1; change <= changes; ++change)
            moments.push_back({.Change = change});
        std::ranges::shuffle(moments, random);
        if (moments.size() > MostChanges) moments.resize(MostChanges);
        std::uniform_real_distribution<double> share(0, 1.1);
        while (moments.size() < KillsOfEach)
            moments.push_back(
                {.Time = std::chrono::duration_cast<Clock::duration>(share(random) * m_usualTime)});
        std::ranges::shuffle(moments, random);
        // At a change first: at a time it may have ended, and on a busy machine the sample is small.
        std::ranges::iter_swap(moments.begin(), std::ranges::find_if(moments, [](const Moment& moment) {
                                   return moment.Change != 0;
                               }));
        return moments;
    }

    /// Runs the operation and kills it at the moment, unless it has ended before. True if it succeeded.
    bool RunAndKill(const Moment& moment) const {
        ChildStart start = StartOf(GetParam().Arguments);
        start.IsTraced = moment.Change != 0;
        ChildProgram program(start);
        if (start.IsTraced)
            program.RunToChange(moment.Change);
        else
            std::this_thread::sleep_for(moment.Time);
        program.Kill();
        const int status = program.Wait();
        EXPECT_TRUE(status == 0 || status == -1) << program.Errors();
        return status == 0;
    }

    void KillAndCheck(const Moment& moment) {
        PutBack(m_before);
        const bool isDone = RunAndKill(moment);
        m_kills += isDone ? 0 : 1;
        const Files after = Look();
        ExpectNoneHarmed(after);
        const Picture picture = TakePicture(after);
        const bool isOld = picture == m_pictureBefore && !isDone;
        EXPECT_TRUE(isOld || picture == m_pictureDone) << Difference(picture);
        EndsWell(StartOf(GetParam().Next));
        ExpectSameFiles(WithoutKilledSetAndLogs(Look()),
                        WithoutKilledSetAndLogs(isOld ? m_nextToBefore : m_nextToDone));
    }
    /// What a picture shows that is neither old nor new.
    std::string Difference(const Picture& picture) const {
        const char* const parts[] = {"companies",    "names",    "materials",   "usage",
                                     "live records", "the file", "the settings"};
        std::string text;
        for (std::size_t at = 0; at < picture.size(); ++at)
            text += std::string(parts[at]) + ": " + std::to_string(m_pictureBefore[at].size()) +
                    " bytes before, " + std::to_string(m_pictureDone[at].size()) + " after, " +
                    std::to_string(picture[at].size()) + " found" +
                    (picture[at] == m_pictureBefore[at] ? ", old" : "") +
                    (picture[at] == m_pictureDone[at] ? ", new\n" : "\n");
        return text;
    }

    ProgramFolder Folder;
    Files m_before;
    Files m_done;
    Files m_nextToBefore; ///< after the next operation, if this one has not happened
    Files m_nextToDone;
    Picture m_pictureBefore;
    Picture m_pictureDone;
    Clock::duration m_usualTime{};
    int m_kills = 0;
};

TEST_P(KilledOperation, HasHappenedWhollyOrNotAtAll) {
    const std::uint32_t seed = Seed();
    std::mt19937 random(seed);
    RunWithoutKilling();
    const std::vector<Moment> moments = Moments(random);
    const auto begin = Clock::now();
    std::size_t tried = 0;
    for (const Moment& moment : moments) {
        if (!IsWholeSweep() && Clock::now() - begin > TimeForASample) break;
        SCOPED_TRACE("MACT_TEST_SEED=" + std::to_string(seed) + ", kill " + std::to_string(++tried) +
                     (moment.Change != 0
                          ? " at change " + std::to_string(moment.Change)
                          : " after " + std::to_string(moment.Time / std::chrono::microseconds(1)) + " us"));
        KillAndCheck(moment);
        if (HasFailure()) return;
    }
    EXPECT_GT(m_kills, 0);
    RecordProperty("kills", m_kills);
}

constexpr const char* Materials = "data/1_materials.talvor";
constexpr const char* Usage = "data/1_usage.talvor";
constexpr const char* Companies = "data/companies.talvor";

INSTANTIATE_TEST_SUITE_P(
    Operations, KilledOperation,
    testing::Values(
        Operation{
            "ImportMaterials",
            Kind::Records,
            Materials,
            true,
            {"import-materials", "@materials"     },
            {"import-materials", "@next materials"}
},
        Operation{"ImportUsage",
                  Kind::Records,
                  Usage,
                  true,
                  {"import-usage", "@usage"},
                  {"import-usage", "@next usage"}},
        Operation{"AddCompany",
                  Kind::Records,
                  Companies,
                  true,
                  {"add-company", "C", "Dock 3"},
                  {"add-company", "D", "Dock 4"}},
        Operation{"SaveEditedCompany",
                  Kind::Records,
                  Companies,
                  false,
                  {"save-company", "2", "Beta Boats"},
                  {"save-company", "1", "Acme Boats"}},
        Operation{"SaveNewMaterial",
                  Kind::Records,
                  Materials,
                  false,
                  {"save-material", "0", "New", "1"},
                  {"save-material", "0", "Newer", "2"}},
        Operation{"SaveEditedMaterial",
                  Kind::Records,
                  Materials,
                  false,
                  {"save-material", "3", "Resin-3", "1"},
                  {"save-material", "4", "Resin-4", "2"}},
        Operation{"DeleteMaterial",
                  Kind::Records,
                  Materials,
                  false,
                  {"delete-material", "9"},
                  {"delete-material", "10"}},
        Operation{"SaveNewUsage",
                  Kind::Records,
                  Usage,
                  false,
                  {"save-usage", "0", "1/2031", "5"},
                  {"save-usage", "0", "2/2031", "6"}},
        Operation{"SaveEditedUsage",
                  Kind::Records,
                  Usage,
                  false,
                  {"save-usage", "17", "5/2001", "5"},
                  {"save-usage", "18", "6/2001", "6"}},
        Operation{"SaveUsageTogether",
                  Kind::Records,
                  Usage,
                  false,
                  {"save-usage-together", "17", "1/2031", "5"},
                  {"save-usage-together", "18", "2/2031", "6"}},
        Operation{"DeleteUsage", Kind::Records, Usage, false, {"delete-usage", "17"}, {"delete-usage", "18"}},
        Operation{"UndeleteMaterials",
                  Kind::Records,
                  Materials,
                  true,
                  {"undelete", "materials", "20", "22"},
                  {"undelete", "materials", "21"}},
        Operation{"UndeleteUsage",
                  Kind::Records,
                  Usage,
                  true,
                  {"undelete", "usage", "25", "27"},
                  {"undelete", "usage", "26"}},
        Operation{"TakeBackUsage",
                  Kind::Records,
                  Usage,
                  false,
                  {"take-back", "10", "1/2031"},
                  {"take-back", "13", "2/2031"},
                  {{"change-usage", "10", "1/2031"}, {"change-usage", "13", "2/2031"}}},
        Operation{"TakeBackImportedMaterials",
                  Kind::Records,
                  Materials,
                  false,
                  {"take-back-import", "31", "1030"},
                  {"take-back-import", "1031", "1050"},
                  {{"import-materials", "@materials"}, {"import-materials", "@next materials"}}},
        Operation{"Names",
                  Kind::Replaces,
                  "data/1_additional.talvor",
                  true,
                  {"names", "A", "B", "C", "D", "E", "F"},
                  {"names", "g", "h", "i", "j", "k", "l"}},
        Operation{
            "SelectCompany", Kind::Settings, "", true, {"select-company", "2"}, {"select-company", "1"}},
        Operation{"CompliantReport",
                  Kind::Replaces,
                  "report.htm",
                  true,
                  {"report", "compliant"},
                  {"report", "compliant"}},
        Operation{"WeightedAverageReport",
                  Kind::Replaces,
                  "report2.htm",
                  true,
                  {"report", "weighted-average", "--ending", "12/2001"},
                  {"report", "weighted-average", "--ending", "6/2001"}},
        Operation{"ExportUsage",
                  Kind::Replaces,
                  "exported.txt",
                  true,
                  {"export-usage", "@exported"},
                  {"export-materials", "@exported"}},
        Operation{"ExportMaterials",
                  Kind::Replaces,
                  "exported.txt",
                  true,
                  {"export-materials", "@exported"},
                  {"export-usage", "@exported"}},
        Operation{"Backup", Kind::Backup, "backup.bat", true, {"backup"}, {"backup"}}),
    [](const auto& given) { return std::string(given.param.Name); });

/// The first start makes the data folder and the material-type table, and then the company.
TEST(KilledFirstStart, IsMadeUpForByTheNext) {
    const std::string whole = [] {
        const ProgramFolder folder;
        folder.Run({"add-company", "Acme", "Dock 1"});
        return folder.Data("hapcontents.talvor");
    }();
    int change = 0;
    for (bool hasEnded = false; !hasEnded;) {
        SCOPED_TRACE("at change " + std::to_string(++change));
        const ProgramFolder folder;
        ChildStart start = folder.Start({"add-company", "Acme", "Dock 1"});
        start.IsTraced = true;
        ChildProgram program(start);
        hasEnded = program.RunToChange(change) < change;
        program.Kill();
        program.Wait();
        folder.Run({"add-company", "Beta", "Dock 2"});
        EXPECT_TRUE(folder.Data("hapcontents.talvor") == whole);
        const std::string companies = folder.Data("companies.talvor");
        EXPECT_TRUE(companies == CompanySlot("Beta", 1, "Dock 2") ||
                    companies == CompanySlot("Acme", 1) + CompanySlot("Beta", 2, "Dock 2"));
        EXPECT_EQ(AllFilesIn(folder.Path()).size(), 2U);
    }
    EXPECT_GT(change, 8); // two files made, written and flushed, with their folder
}

} // namespace
} // namespace mact
