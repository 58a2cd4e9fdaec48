#include "base/text.h"
#include "tests/safety/program_folder.h"
#include "tests/safety/sampling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <numeric>
#include <thread>

namespace mact {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int MaterialsAtFirst = 600; // 866 KB
constexpr int UsageAtFirst = 6000;    // 192 KB
constexpr int LinesAtOnce = 1000;
constexpr int Imports = 5;
constexpr int FewestReads = 8;
constexpr auto LongestRace = std::chrono::minutes(5);
Clock::duration ShortestRace() {
    return std::chrono::seconds(IsWholeSweep() ? 60 : 5);
}
constexpr auto TimeForASample = std::chrono::milliseconds(2500);

std::vector<std::string> PartsOf(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    std::size_t at = 0;
    for (std::size_t end = 0; (end = text.find(separator, at)) != std::string::npos;
         at = end + separator.size())
        parts.push_back(text.substr(at, end - at));
    parts.push_back(text.substr(at));
    return parts;
}

/// What a reader shows of the records that the writers change: those of store_program's steps, and how many
/// each import has stored.
struct State {
    std::vector<int> First{};
    std::vector<int> Last{};
    std::vector<int> Added{};
    std::vector<int> Imported{}; ///< by the number of the import, from 0 on
    int Others = 0;

    void Add(const std::string& name, const std::string& told) {
        if (name == "First") {
            First.push_back(std::stoi(told));
        } else if (name == "Last") {
            Last.push_back(std::stoi(told));
        } else if (name == "Added") {
            Added.push_back(std::stoi(told));
        } else if (name.starts_with("Import")) {
            const std::size_t number = std::stoul(name.substr(6));
            if (Imported.size() <= number) Imported.resize(number + 1);
            ++Imported[number];
        } else {
            ++Others;
        }
    }
};

/// Of exported materials: First|state 12|...
State MaterialsState(const std::string& exported) {
    State state;
    constexpr std::size_t toldAt = 6; // behind "state "
    for (const std::string& line : PartsOf(exported, "\r\n")) {
        const std::vector<std::string> fields = PartsOf(line, "|");
        if (fields.size() > 1)
            state.Add(fields[0], fields[1].starts_with("state ") ? fields[1].substr(toldAt) : "0");
    }
    return state;
}
/// Of a page of all materials, whose rows begin with First - state 12.
State PageState(const std::string& page) {
    State state;
    for (std::string row :
         PartsOf(page, "<tr><td align='left' valign='top'><font face='Verdana' size='1'>")) {
        row.resize(std::min(row.find("</font>"), row.size()));
        const std::vector<std::string> names = PartsOf(row, " - ");
        if (names.size() != 2 || row.find('<') != std::string::npos) continue;
        state.Add(names[0], names[1].starts_with("state ") ? names[1].substr(6) : "0");
    }
    return state;
}
/// Of exported usage: Resin-1|1|1900|12|lbs, where the month says which record it is, and Resin-1|3|2000|...
/// of an import, which has forty years from 2000 on.
State UsageState(const std::string& exported) {
    State state;
    for (const std::string& line : PartsOf(exported, "\r\n")) {
        const std::vector<std::string> fields = PartsOf(line, "|");
        if (fields.size() != 5) continue;
        const int year = std::stoi(fields[2]);
        constexpr int firstImported = 2000;
        if (year == 1900)
            state.Add(fields[1] == "1" ? "First" : fields[1] == "12" ? "Last" : "Added", fields[3]);
        else if (year >= firstImported)
            state.Add("Import" + std::to_string((year - firstImported) / 100), "0");
        else
            state.Add("", "");
    }
    return state;
}

/// Whether the state existed between two operations. `isLiveOnly`: deleted records do not show.
testing::AssertionResult Existed(const State& state, int others, int linesAtOnce, bool isLiveOnly) {
    const auto no = [&](const std::string& why) {
        return testing::AssertionFailure()
               << why << ": first " << testing::PrintToString(state.First) << ", last "
               << testing::PrintToString(state.Last) << ", added " << testing::PrintToString(state.Added)
               << ", imported " << testing::PrintToString(state.Imported) << ", others " << state.Others;
    };
    if (state.Others != others) return no("Other records");
    for (const int count : state.Imported)
        if (count != linesAtOnce) return no("Half an import");
    if (state.First.size() != 1 || state.Last.size() != 1) return no("Not one first and one last");
    const int first = state.First.front();
    const int last = state.Last.front();
    const int added = state.Added.empty() ? 0 : state.Added.back();
    if (first < last || last < added || added < first - 1) return no("Steps out of order");
    const int oldest = state.Added.empty() ? 1 : state.Added.front();
    if (static_cast<int>(state.Added.size()) != added - oldest + 1)
        return no("An appended record is missing");
    // The one appended before is deleted last in a step.
    const bool mayBeTwo = first == last && last == added;
    const std::size_t most = isLiveOnly ? (mayBeTwo ? 2 : 1) : static_cast<std::size_t>(added);
    if (isLiveOnly ? state.Added.size() > most : state.Added.size() != most)
        return no("Deletions out of order");
    return testing::AssertionSuccess();
}

bool IsInUse(const std::string& message) {
    return message.starts_with("Cannot ") && message.ends_with(" working with it.\n") &&
           std::ranges::count(message, '\n') == 1;
}

/// A command that reads, again and again, and what it must show.
struct Reader {
    std::vector<std::string> Arguments;
    std::filesystem::path Shows;
    State (*StateOf)(const std::string&);
    bool IsLiveOnly = false;
    std::unique_ptr<ChildProgram> Child{};
    int Reads = 0;
    int Refused = 0;
    State Before{};
};

/// Runs a command to its end, which must be a good one. Returns what it printed.
std::string OutputOf(const ChildStart& start) {
    ChildProgram program(start);
    EXPECT_EQ(program.Wait(), 0) << testing::PrintToString(start.Arguments) << program.Errors();
    return program.Output();
}

class ReadersBesideWriters : public testing::Test {
protected:
    ReadersBesideWriters() {
        Folder.Run({"add-company", "Acme", "Dock 1"});
        Folder.Run({"select-company", "1"});
        Folder.Run({"import-materials", Folder.MaterialsToImport("Resin", MaterialsAtFirst)});
        Folder.Run({"import-usage", Folder.UsageToImport(1000, UsageAtFirst)});
    }

    Reader ExportOf(const std::string& what, int number, State (*stateOf)(const std::string&)) const {
        const std::filesystem::path file = Folder.FileBeside(what + std::to_string(number));
        return {
            {"export-" + what, PathText(file)},
            file, stateOf
        };
    }
    Reader PageOfAll() const {
        return {
            {"report", "compliant"},
            Folder.Path() / "report.htm", PageState, true
        };
    }

    /// Looks at what the reader that has ended shows.
    static void CheckRead(Reader& reader, int others) {
        const int status = reader.Child->Wait();
        if (status != 0) {
            EXPECT_TRUE(status == 1 && IsInUse(reader.Child->Errors()))
                << status << ' ' << reader.Child->Errors();
            ++reader.Refused;
            return;
        }
        ++reader.Reads;
        const State state = reader.StateOf(ContentOf(reader.Shows));
        EXPECT_TRUE(Existed(state, others, LinesAtOnce, reader.IsLiveOnly))
            << testing::PrintToString(reader.Arguments);
        if (reader.Reads > 1) {
            EXPECT_GE(state.First, reader.Before.First) << "back in time";
            EXPECT_GE(state.Last, reader.Before.Last) << "back in time";
            EXPECT_GE(state.Imported.size(), reader.Before.Imported.size()) << "back in time";
        }
        reader.Before = state;
    }

    /// Lets the readers read while store_program goes from step to step and the imports follow one another,
    /// until the imports are done and each reader has often been told a state. Then the steps are cut off.
    void Race(std::vector<Reader>& readers, const std::string& stepCommand, int last,
              const std::vector<std::vector<std::string>>& imports) {
        const int others = last - 2; // all that are there at first but two
        OutputOf(Folder.StartStore({stepCommand, std::to_string(last), "1", "1"}));
        const auto begin = Clock::now();
        ChildProgram stepping(Folder.StartStore({stepCommand, std::to_string(last), "2", "30000"}));
        std::unique_ptr<ChildProgram> importing;
        std::size_t imported = 0;
        const auto isEnough = [&] {
            const auto time = Clock::now() - begin;
            const bool isRead = std::ranges::all_of(
                readers, [](const Reader& reader) { return reader.Reads >= FewestReads; });
            return HasFailure() || time > LongestRace ||
                   (imported == imports.size() && !importing && isRead && time > ShortestRace());
        };
        while (!isEnough()) {
            for (Reader& reader : readers) {
                if (reader.Child && reader.Child->IsRunning()) continue;
                if (reader.Child) CheckRead(reader, others);
                reader.Child = std::make_unique<ChildProgram>(Folder.Start(reader.Arguments));
            }
            if (!importing && imported < imports.size())
                importing = std::make_unique<ChildProgram>(Folder.Start(imports[imported]));
            if (importing && !importing->IsRunning()) {
                const bool isDone = importing->Wait() == 0;
                EXPECT_TRUE(isDone || IsInUse(importing->Errors())) << importing->Errors();
                imported += isDone ? 1 : 0; // or once more
                importing.reset();
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        EXPECT_TRUE(stepping.IsRunning()) << stepping.Errors();
        stepping.Kill();
        for (Reader& reader : readers) {
            CheckRead(reader, others);
            EXPECT_GE(reader.Reads, FewestReads) << testing::PrintToString(reader.Arguments);
            RecordProperty(reader.Arguments.front() + " reads", reader.Reads);
            RecordProperty(reader.Arguments.front() + " refused", reader.Refused);
        }
    }

    ProgramFolder Folder;
};

TEST_F(ReadersBesideWriters, OfMaterialsShowOnlyStatesBetweenTwoOperations) {
    std::vector<std::vector<std::string>> imports;
    imports.reserve(Imports);
    for (int number = 0; number < Imports; ++number)
        imports.push_back(
            {"import-materials", Folder.MaterialsToImport("Import" + std::to_string(number), LinesAtOnce)});
    std::vector<Reader> readers;
    readers.push_back(ExportOf("materials", 1, MaterialsState));
    readers.push_back(ExportOf("materials", 2, MaterialsState));
    readers.push_back(PageOfAll());
    Race(readers, "step-materials", MaterialsAtFirst, imports);
}

TEST_F(ReadersBesideWriters, OfUsageShowOnlyStatesBetweenTwoOperations) {
    std::vector<std::vector<std::string>> imports;
    imports.reserve(Imports);
    for (int number = 0; number < Imports; ++number)
        imports.push_back({"import-usage", Folder.UsageToImport(2000 + 100 * number, LinesAtOnce)});
    std::vector<Reader> readers;
    readers.push_back(ExportOf("usage", 1, UsageState));
    readers.push_back(ExportOf("usage", 2, UsageState));
    Race(readers, "step-usage", UsageAtFirst, imports);
}

class SmallShop : public testing::Test {
protected:
    SmallShop() {
        Folder.Run({"add-company", "Acme", "Dock 1"});
        Folder.Run({"select-company", "1"});
        Folder.Run({"names", "a", "b", "c", "d", "e", "f"});
        Folder.Run({"import-materials", Folder.MaterialsToImport("Resin", 60)});
        Folder.Run({"import-usage", Folder.UsageToImport(2000, 60)});
    }

    /// The imported lines are new ones for each number.
    ChildStart StartOf(std::vector<std::string> arguments, int number) const {
        const std::string name = "N" + std::to_string(number);
        for (std::string& argument : arguments) {
            if (argument == "@many materials") argument = Folder.MaterialsToImport(name, LinesAtOnce);
            if (argument == "@many usage") argument = Folder.UsageToImport(3000 + 100 * number, LinesAtOnce);
            if (argument == "@material") argument = Folder.MaterialsToImport(name, 1);
            if (argument == "@its usage")
                argument = Folder.FileNamed("usage of " + name, name + "-1|7|2001|5|lbs\r\n");
            if (argument == "@number") argument = std::to_string(number);
            if (argument == "@unused") argument = std::to_string(number + 10);
        }
        const bool isOfStore =
            arguments.front().starts_with("save-") || arguments.front().starts_with("delete-");
        return isOfStore ? Folder.StartStore(arguments) : Folder.Start(arguments);
    }

    /// Where to stop the program, in an order by the seed: before each of its changes (and reads), and after
    /// the last.
    static std::vector<int> StopsOf(ChildStart start, std::uint32_t seed) {
        start.IsTraced = true;
        ChildProgram program(start);
        std::vector<int> stops(static_cast<std::size_t>(program.RunToChange(0)) + 1);
        EXPECT_EQ(program.Wait(), 0) << program.Errors();
        std::iota(stops.begin(), stops.end(), 1);
        std::mt19937 random(seed);
        std::ranges::shuffle(stops, random);
        return stops;
    }
    /// Calls `stop` with a number that rises and with each of the stops, or as many as a sample has time for.
    static void ForEachStop(const std::vector<int>& stops, std::uint32_t seed,
                            const std::function<void(int, int)>& stop) {
        constexpr std::size_t fewestStops = 4; // open, write, flush, and its end
        EXPECT_GE(stops.size(), fewestStops);
        const auto begin = Clock::now();
        int number = 1; // has been used to find the stops
        for (const int change : stops) {
            if (!IsWholeSweep() && Clock::now() - begin > TimeForASample) return;
            SCOPED_TRACE("MACT_TEST_SEED=" + std::to_string(seed) + ", before change " +
                         std::to_string(change));
            stop(++number, change);
            if (HasFailure()) return;
        }
    }

    ProgramFolder Folder;
};

/// What a writer does while it is stopped before each of its changes, one after the other.
using Arguments = std::vector<std::string>;
class StoppedWriter : public SmallShop, public testing::WithParamInterface<Arguments> {
protected:
    Arguments TakePicture() const {
        const std::filesystem::path file = Folder.FileBeside("shown.txt");
        Arguments picture = {OutputOf(Folder.Start({"companies"})), OutputOf(Folder.StartStore({"list"}))};
        for (const char* command : {"export-materials", "export-usage"}) {
            OutputOf(Folder.Start({command, PathText(file)}));
            picture.push_back(ContentOf(file));
        }
        return picture;
    }
};

TEST_P(StoppedWriter, LetsReadersSeeTheOldOrTheNewState) {
    const std::uint32_t seed = Seed();
    const std::vector<int> stops = StopsOf(StartOf(GetParam(), 1), seed);
    Arguments before = TakePicture();
    ForEachStop(stops, seed, [&](int number, int change) {
        ChildStart start = StartOf(GetParam(), number);
        start.IsTraced = true;
        ChildProgram writer(start);
        const bool hasEnded = writer.RunToChange(change) < change;
        const Arguments beside = TakePicture();
        writer.Release();
        EXPECT_EQ(writer.Wait(), 0) << writer.Errors();
        const Arguments after = TakePicture();
        EXPECT_NE(before, after);
        EXPECT_TRUE(beside == after || (beside == before && !hasEnded));
        before = after;
    });
}

INSTANTIATE_TEST_SUITE_P(Writers, StoppedWriter,
                         testing::Values(Arguments{"import-materials", "@many materials"},
                                         Arguments{"import-usage", "@many usage"},
                                         Arguments{"add-company", "Beta", "Dock 2"},
                                         Arguments{"save-company", "1", "@number"},
                                         Arguments{"save-material", "3", "Resin-3", "@number"},
                                         Arguments{"save-usage", "0", "1/2031", "@number"},
                                         Arguments{"delete-material", "@unused"},
                                         Arguments{"delete-usage", "@number"}));

/// Two operations on two files, one after the other.
struct TwoWrites {
    const char* Name;
    Arguments First;
    Arguments Second;
};
void PrintTo(const TwoWrites& writes, std::ostream* out) {
    *out << writes.Name;
}

struct TwoFileReader {
    const char* Name;
    Arguments Command;
    const char* File; ///< in the program folder
};
void PrintTo(const TwoFileReader& reader, std::ostream* out) {
    *out << reader.Name;
}

class ReaderOfTwoFiles : public SmallShop,
                         public testing::WithParamInterface<std::tuple<TwoFileReader, TwoWrites>> {
protected:
    ChildStart StartIn(const std::filesystem::path& folder) const {
        Arguments command = std::get<0>(GetParam()).Command;
        if (command.front() == "export-usage") command.push_back(PathText(FileIn(folder)));
        ChildStart start = Folder.Start(command);
        start.Arguments.at(1) = PathText(folder);
        start.CountsReads = true;
        return start;
    }
    static std::filesystem::path FileIn(const std::filesystem::path& folder) {
        return folder / std::get<0>(GetParam()).File;
    }
    /// What the reader shows of a copy, where no other reader is in its way.
    std::string Show() const {
        const std::filesystem::path copy = Folder.FileBeside("copy");
        std::filesystem::remove_all(copy);
        std::filesystem::copy(Folder.Path(), copy, std::filesystem::copy_options::recursive);
        OutputOf(StartIn(copy));
        return ContentOf(FileIn(copy));
    }
};

TEST_P(ReaderOfTwoFiles, ShowsAStateThatExisted) {
    const std::uint32_t seed = Seed();
    const TwoWrites& writes = std::get<1>(GetParam());
    const std::vector<int> stops = StopsOf(StartIn(Folder.Path()), seed);
    ForEachStop(stops, seed, [&](int number, int change) {
        const std::string before = Show();
        ChildStart start = StartIn(Folder.Path());
        start.IsTraced = true;
        ChildProgram reader(start);
        reader.RunToChange(change);
        OutputOf(StartOf(writes.First, number));
        const std::string between = Show();
        OutputOf(StartOf(writes.Second, number));
        reader.Release();
        EXPECT_EQ(reader.Wait(), 0) << reader.Errors();
        const std::string shown = ContentOf(FileIn(Folder.Path()));
        const std::string after = Show();
        EXPECT_NE(after, before);
        EXPECT_TRUE(shown == before || shown == between || shown == after);
    });
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, ReaderOfTwoFiles,
    testing::Combine(
        testing::Values(
            TwoFileReader{
                "Export", {"export-usage"},
                 "exported.txt"
},
            TwoFileReader{"CompliantReport", {"report", "compliant", "--ending", "12/2001"}, "report.htm"},
            TwoFileReader{
                "WeightedAverage", {"report", "weighted-average", "--ending", "12/2001"}, "report2.htm"}),
        testing::Values(
            TwoWrites{"ImportsOfBoth", {"import-materials", "@material"}, {"import-usage", "@its usage"}},
            TwoWrites{"MaterialThenUsage",
                      {"save-material", "1", "@number", "@number"},
                      {"save-usage", "17", "5/2001", "@number"}},
            TwoWrites{"UsageThenMaterial",
                      {"save-usage", "17", "5/2001", "@number"},
                      {"save-material", "1", "@number", "@number"}})),
    [](const auto& given) {
        return std::string(std::get<0>(given.param).Name) + std::get<1>(given.param).Name;
    });

} // namespace
} // namespace mact
