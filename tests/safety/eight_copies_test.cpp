#include "base/text.h"
#include "tests/safety/program_folder.h"
#include "tests/safety/sampling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <thread>

namespace mact {
namespace {

using Clock = std::chrono::steady_clock;
using Lines = std::multiset<std::string>;

constexpr auto TimeForARound = std::chrono::seconds(55);
constexpr int Copies = 8;
constexpr int RecordsOfEach =
    20; ///< that are there at first; the first half is edited, the other one deleted
constexpr int RecordsAtFirst = Copies * RecordsOfEach;
constexpr int MaterialsAtOnce = 5;
constexpr int UsageAtOnce = 12;

std::vector<std::string> LinesOf(const std::string& text, const std::string& end) {
    std::vector<std::string> lines;
    for (std::size_t at = 0, stop = 0; (stop = text.find(end, at)) != std::string::npos;
         at = stop + end.size())
        lines.push_back(text.substr(at, stop - at));
    return lines;
}

/// An exported material that store_program has saved.
std::string MaterialLine(const std::string& name, int state) {
    return name + "|state " + std::to_string(state) + "|Production resin|Spray|9.5|" +
           std::to_string(state % 100) + "|1|7|2|8|3|9|4|10|5|11|6|12|0";
}

/// Records of one kind as they should be.
struct Expected {
    std::map<int, std::string> AtFirst{}; ///< exported lines by number
    std::set<int> Deleted{};
    Lines Added{};
};

/// A command that one of the copies runs, and what it changes if it succeeds.
struct Doing {
    std::string Name{};
    std::unique_ptr<ChildProgram> Child{};
    std::function<void()> Note{};
};

/// A shop in which eight copies of the program work at once.
class BusyShop {
public:
    explicit BusyShop(std::uint32_t seed) : m_random(seed) {
        m_folder.Run({"add-company", "Acme", "Dock 1"});
        m_folder.Run({"add-company", "Beta", "Dock 2"});
        m_companies = {"Acme", "Beta"};
        m_folder.Run({"select-company", "1"});
        WriteContent(Settings(), "[BACKUP]\nAUTO_BACKUP=1\nBK_VOLUME=4\n\n[COMPANY]\nDEFAULT=1\n");
        m_folder.Run({"names", "a", "b", "c", "d", "e", "f"});
        m_names = {"a|b|c|d|e|f\r\n"};
        m_folder.Run({"import-materials", m_folder.MaterialsToImport("Resin", RecordsAtFirst)});
        m_folder.Run({"import-usage", m_folder.UsageToImport(1980, RecordsAtFirst)});
        m_materials.AtFirst = Numbered(Exported("export-materials"));
        m_usage.AtFirst = Numbered(Exported("export-usage"));
        m_filesAtFirst = FileNames();
    }

    void Work(Clock::duration time) {
        const auto end = Clock::now() + time;
        std::array<Doing, Copies> copies;
        while (Clock::now() < end && !testing::Test::HasFailure()) {
            bool isAnyIdle = false;
            for (int copy = 0; copy < Copies; ++copy) {
                Doing& doing = copies.at(static_cast<std::size_t>(copy));
                if (doing.Child && doing.Child->IsRunning()) continue;
                isAnyIdle = true;
                if (doing.Child) End(doing);
                doing = Next(copy);
            }
            if (!isAnyIdle) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        for (Doing& doing : copies)
            if (doing.Child) End(doing);
    }

    /// Every success is there once and whole, and nothing else.
    void ExpectNothingLost() const {
        const std::vector<std::string> lines = LinesOf(Output({"--company", "1", "companies"}), "\n");
        Lines companies;
        for (std::size_t at = 0; at < lines.size(); ++at) {
            EXPECT_TRUE(lines[at].starts_with(std::to_string(at + 1) + '|')) << lines[at];
            const std::size_t begin = lines[at].find('|') + 1;
            companies.insert(lines[at].substr(begin, lines[at].find('|', begin) - begin));
        }
        EXPECT_EQ(companies, m_companies);
        ExpectRecords("materials", 1444, m_materials);
        ExpectRecords("usage", 32, m_usage);
        EXPECT_TRUE(m_names.contains(m_folder.Data("1_additional.talvor")))
            << m_folder.Data("1_additional.talvor");
        const std::string settings = ContentOf(Settings());
        EXPECT_TRUE(settings == "[BACKUP]\nAUTO_BACKUP=1\nBK_VOLUME=4\n\n[COMPANY]\nDEFAULT=1\n" ||
                    settings == "[BACKUP]\nAUTO_BACKUP=1\nBK_VOLUME=4\n\n[COMPANY]\nDEFAULT=2\n")
            << settings;
        EXPECT_EQ(FileNames(), m_filesAtFirst); // the logs are there already
        EXPECT_EQ(Output({"check"}), "");
    }

    /// So that nobody takes a run in which nothing happened for a good one.
    void ExpectBusy() const {
        for (const auto& [name, count] : m_done) {
            EXPECT_GE(count, 5) << name;
            testing::Test::RecordProperty(name, count);
        }
        EXPECT_EQ(m_done.size(), 13U);
        testing::Test::RecordProperty("refused", m_refused);
    }

private:
    std::filesystem::path Settings() const {
        return m_folder.SettingsFolder() / "MACT" / "TALVOR_QUME_APP.conf";
    }

    /// All files of the shop but what the copies export.
    std::set<std::string> FileNames() const {
        std::set<std::string> names;
        for (const auto& folder : {m_folder.Path(), m_folder.SettingsFolder()})
            for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
                names.insert(PathText(entry.path()));
        return names;
    }

    std::string Output(const std::vector<std::string>& arguments) const {
        ChildProgram program(m_folder.Start(arguments));
        EXPECT_EQ(program.Wait(), 0) << testing::PrintToString(arguments) << program.Output()
                                     << program.Errors();
        return program.Output();
    }
    std::vector<std::string> Exported(const std::string& command) const {
        const std::filesystem::path file = m_folder.FileBeside("exported.txt");
        Output({"--company", "1", command, PathText(file)});
        return LinesOf(ContentOf(file), "\r\n");
    }
    static std::map<int, std::string> Numbered(const std::vector<std::string>& lines) {
        std::map<int, std::string> numbered;
        for (const std::string& line : lines)
            numbered.emplace(static_cast<int>(numbered.size()) + 1, line);
        return numbered;
    }

    /// The live records' numbers, of the kind "material" or "usage".
    std::set<int> LiveNumbers(const std::string& kind) const {
        ChildProgram program(m_folder.StartStore({"list"}));
        EXPECT_EQ(program.Wait(), 0) << program.Errors();
        std::set<int> numbers;
        for (const std::string& line : LinesOf(program.Output(), "\n"))
            if (line.starts_with(kind + ' ')) numbers.insert(std::stoi(line.substr(kind.size() + 1)));
        return numbers;
    }

    void ExpectRecords(const std::string& kind, std::size_t slotLength, const Expected& expected) const {
        SCOPED_TRACE(kind);
        const std::vector<std::string> lines = Exported("export-" + kind);
        std::set<int> live;
        Lines added;
        for (int number = 1; number <= static_cast<int>(lines.size()); ++number) {
            const std::string& line = lines[static_cast<std::size_t>(number) - 1];
            if (!expected.Deleted.contains(number)) live.insert(number);
            if (number > RecordsAtFirst)
                added.insert(line);
            else
                EXPECT_EQ(line, expected.AtFirst.at(number)) << number;
        }
        EXPECT_TRUE(added == expected.Added) << added.size() << " of " << expected.Added.size();
        EXPECT_EQ(LiveNumbers(kind == "usage" ? "usage" : "material"), live);
        const std::string content = m_folder.Data("1_" + kind + ".talvor");
        ASSERT_EQ(content.size(), lines.size() * slotLength);
        for (std::size_t number = 1; number <= lines.size(); ++number)
            EXPECT_EQ(content.substr((number - 1) * slotLength, 2),
                      (std::string{static_cast<char>(number & 0xFFU), static_cast<char>(number >> 8U)}));
    }

    void End(Doing& doing) {
        const int status = doing.Child->Wait();
        if (status == 0) {
            ++m_done[doing.Name];
            doing.Note();
            return;
        }
        ++m_refused;
        const std::string errors = doing.Child->Errors();
        EXPECT_TRUE(status == 1 &&
                    errors.ends_with("another running copy of the program is working with it.\n"))
            << doing.Name << ": " << status << ' ' << errors;
    }

    Doing Command(const std::string& name, std::vector<std::string> arguments,
                  std::function<void()> note) const {
        arguments.insert(arguments.begin(), {"--company", "1"}); // another copy may select another one
        return {name, std::make_unique<ChildProgram>(m_folder.Start(arguments)), std::move(note)};
    }
    Doing Store(const std::vector<std::string>& arguments, const std::string& name,
                std::function<void()> note) const {
        return {name, std::make_unique<ChildProgram>(m_folder.StartStore(arguments)), std::move(note)};
    }

    int Below(int end) { return std::uniform_int_distribution<>(0, end - 1)(m_random); }
    /// One of the copy's own records. Each is deleted once.
    int ToEdit(int copy) { return copy * RecordsOfEach + 1 + Below(RecordsOfEach / 2); }
    static std::optional<int> ToDelete(int copy, const Expected& expected) {
        for (int number = copy * RecordsOfEach + RecordsOfEach / 2 + 1; number <= (copy + 1) * RecordsOfEach;
             ++number)
            if (!expected.Deleted.contains(number)) return number;
        return std::nullopt;
    }

    Doing Next(int copy) {
        switch (Below(12)) {
        case 0:
            return AddCompany();
        case 1:
            return ImportMaterials();
        case 2:
            return ImportUsage();
        case 3:
            return SaveMaterial(copy);
        case 4:
            return SaveUsage(copy);
        case 5:
            return Delete(copy);
        case 6:
            return SaveNames();
        case 7:
            return Command("select-company", {"select-company", std::to_string(1 + Below(2))}, [] {});
        case 8:
            return Export("materials", copy, m_materials);
        case 9:
            return Export("usage", copy, m_usage);
        case 10:
            return AppendMaterial();
        default:
            return AppendUsage();
        }
    }

    Doing AddCompany() {
        const std::string name = "Company " + std::to_string(++m_number);
        return Command("add-company", {"add-company", name, "Dock 1"},
                       [this, name] { m_companies.insert(name); });
    }
    Doing Import(const std::string& kind, const std::string& file, Expected& expected) {
        return Command("import-" + kind, {"import-" + kind, file}, [file, &expected] {
            const std::vector<std::string> lines = LinesOf(ContentOf(PathFromUtf8(file)), "\r\n");
            expected.Added.insert(lines.begin(), lines.end());
        });
    }
    Doing ImportMaterials() {
        const std::string name = "I" + std::to_string(++m_number);
        return Import("materials", m_folder.MaterialsToImport(name, MaterialsAtOnce), m_materials);
    }
    Doing ImportUsage() {
        constexpr int firstYear = 2100;
        return Import("usage", m_folder.UsageToImport(firstYear + m_imports++, UsageAtOnce), m_usage);
    }
    Doing SaveMaterial(int copy) {
        const int number = ToEdit(copy);
        const int state = ++m_number % 30000;
        const std::string name = "Resin-" + std::to_string(number);
        return Store({"save-material", std::to_string(number), name, std::to_string(state)}, "edit-material",
                     [=, this] { m_materials.AtFirst[number] = MaterialLine(name, state); });
    }
    Doing AppendMaterial() {
        const int state = ++m_number % 30000;
        const std::string name = "S" + std::to_string(m_number);
        return Store({"save-material", "0", name, std::to_string(state)}, "save-material",
                     [=, this] { m_materials.Added.insert(MaterialLine(name, state)); });
    }
    Doing SaveUsage(int copy) {
        const int number = ToEdit(copy);
        const std::string year = NewYear();
        return Store({"save-usage", std::to_string(number), "5/" + year, year}, "edit-usage",
                     [=, this] { m_usage.AtFirst[number] = "Resin-1|5|" + year + '|' + year + "|lbs"; });
    }
    Doing AppendUsage() {
        const std::string year = NewYear();
        return Store({"save-usage", "0", "6/" + year, year}, "save-usage",
                     [=, this] { m_usage.Added.insert("Resin-1|6|" + year + '|' + year + "|lbs"); });
    }
    /// One that no usage record has.
    std::string NewYear() {
        constexpr int firstYear = 4000;
        return std::to_string(firstYear + ++m_years);
    }
    Doing Delete(int copy) {
        const bool isUsage = Below(2) == 1;
        Expected& expected = isUsage ? m_usage : m_materials;
        const std::optional<int> number = ToDelete(copy, expected);
        if (!number) return SaveUsage(copy); // all of the copy's own are deleted
        const std::string command = isUsage ? "delete-usage" : "delete-material";
        return Store({command, std::to_string(*number)}, command,
                     [=, &expected] { expected.Deleted.insert(*number); });
    }
    Doing SaveNames() {
        const std::string name = "name " + std::to_string(++m_number);
        return Command("names", {"names", name, "b", "c", "d", "e", "f"},
                       [=, this] { m_names.insert(name + "|b|c|d|e|f\r\n"); });
    }
    /// An export has at least what was there when it began, and of each import all or nothing.
    Doing Export(const std::string& kind, int copy, const Expected& expected) const {
        const std::filesystem::path file = m_folder.FileBeside(kind + std::to_string(copy));
        const std::size_t fewest = RecordsAtFirst + expected.Added.size();
        return Command("export-" + kind, {"export-" + kind, PathText(file)}, [=] {
            const std::vector<std::string> lines = LinesOf(ContentOf(file), "\r\n");
            EXPECT_GE(lines.size(), fewest) << kind;
            std::map<std::string, int> imported;
            for (const std::string& line : lines)
                ++imported[ImportOf(line)];
            imported.erase("");
            for (const auto& [name, count] : imported)
                EXPECT_EQ(count, kind == "usage" ? UsageAtOnce : MaterialsAtOnce) << name;
        });
    }
    /// What tells the import that a line is from: I17 of I17-3|..., or the year. Empty if it is from none.
    static std::string ImportOf(const std::string& line) {
        if (line.starts_with('I')) return line.substr(0, line.find('-'));
        const std::vector<std::string> fields = LinesOf(line + '|', "|");
        const bool isImported = fields.size() == 5 && fields[2] >= "2100" && fields[2] < "4000";
        return isImported ? fields[2] : "";
    }

    ProgramFolder m_folder;
    std::mt19937 m_random;
    std::set<std::string> m_filesAtFirst;
    std::map<std::string, int> m_done; ///< how many of each command succeeded
    int m_refused = 0;
    int m_number = 0; ///< makes each command's text different
    int m_imports = 0;
    int m_years = 0;
    Lines m_companies;
    std::set<std::string> m_names; ///< all that the file may hold
    Expected m_materials;
    Expected m_usage;
};

TEST(EightCopies, ThatWorkForAMinuteLoseNothing) {
    const int rounds = IsWholeSweep() ? 10 : 1;
    for (int round = 0; round < rounds && !testing::Test::HasFailure(); ++round) {
        const std::uint32_t seed = Seed() + static_cast<std::uint32_t>(round);
        SCOPED_TRACE("MACT_TEST_SEED=" + std::to_string(seed));
        BusyShop shop(seed);
        shop.Work(TimeForARound);
        shop.ExpectNothingLost();
        shop.ExpectBusy();
    }
}

} // namespace
} // namespace mact
