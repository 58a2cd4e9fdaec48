#include "tests/safety/program_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>

namespace mact {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool IsMeasurable = false;
#elif defined(__has_feature)
constexpr bool IsMeasurable = !__has_feature(address_sanitizer);
#else
constexpr bool IsMeasurable = true;
#endif

constexpr std::size_t Mebibyte = std::size_t{1} << 20;
constexpr std::size_t LongestLine = 16 * Mebibyte;
constexpr std::uint64_t MostMemory = 100'000'000;
/// More, since the program's libraries have addresses that they never use.
constexpr std::uint64_t MostAddresses = 128 * Mebibyte;

const std::string AfterId = "|a resin|Production resin|Spray|9.1|28|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n";

/// An import file to be written.
struct LongLines {
    const char* Name;
    const char* Command;
    std::function<void(std::ostream& file)> Write;
    int Status;
};
void PrintTo(const LongLines& lines, std::ostream* out) {
    *out << lines.Name;
}

void Write(std::ostream& file, char character, std::size_t count) {
    const std::string piece(Mebibyte, character);
    for (; count > piece.size(); count -= piece.size())
        file << piece;
    file << piece.substr(0, count);
}

void WriteOneOf400Mebibytes(std::ostream& file) {
    Write(file, 'x', 400 * Mebibyte);
}
template <std::size_t Length> void WriteSeveral(std::ostream& file) {
    for (int line = 0; line < 4; ++line) {
        Write(file, 'x', Length);
        file << "\r\n";
    }
}
/// 32,767 materials, among them one whose line is as long as can be, and two lines more as long as that.
void WriteAsManyMaterialsAsCanBe(std::ostream& file) {
    for (int number = 1; number <= 32767; ++number) {
        if (number == 16000)
            Write(file, 'M', LongestLine - AfterId.size() + 2);
        else
            file << "M-" << number << std::string(90, 'x');
        file << AfterId;
    }
    Write(file, 'x', LongestLine);
    file << '\n';
    Write(file, 'x', LongestLine);
}
/// Each text field in turn takes nearly all of its line, which is good.
void WriteLongFields(std::ostream& file) {
    constexpr std::size_t most = LongestLine - 100;
    Write(file, 'A', most);
    file << AfterId << "B|";
    Write(file, 'd', most);
    file << "|Production resin|Spray" << AfterId.substr(AfterId.find("|9.1")) << "C|d|Production resin";
    Write(file, ' ', most);
    file << "|Spray" << AfterId.substr(AfterId.find("|9.1")) << "D|d|Production resin|Spray";
    Write(file, ' ', most);
    file << AfterId.substr(AfterId.find("|9.1"));
}
void WriteLongPeriods(std::ostream& file) {
    constexpr std::size_t most = LongestLine - 100;
    file << "Resin-1|";
    Write(file, '0', most);
    file << "1|2005|2|lbs\r\nResin-1|1|";
    Write(file, '0', most);
    file << "|2|lbs\r\n";
    Write(file, 'R', most);
    file << "|1|2005|2|lbs\r\n"; // no such material
}

class MemoryTest : public testing::TestWithParam<LongLines> {
protected:
    MemoryTest() {
        Folder.Run({"add-company", "Acme", "Dock 1"});
        Folder.Run({"select-company", "1"});
        Folder.Run({"import-materials", Folder.MaterialsToImport("Resin", 1)});
        if (GetParam().Command == std::string("import-materials"))
            std::filesystem::remove(Folder.DataFile("1_materials.talvor"));
        std::ofstream file(Source, std::ios::binary);
        GetParam().Write(file);
        EXPECT_TRUE(file.flush());
    }
    ProgramFolder Folder;
    std::filesystem::path Source = Folder.Path() / "long lines.txt";
};

TEST_P(MemoryTest, AnImportNeedsLessThan100MegabytesAndEndsAsEverAtALimit) {
    if (!IsMeasurable) GTEST_SKIP() << "The address sanitizer needs memory of its own.";
    ChildStart start = Folder.Start({GetParam().Command, Source.string()});
    start.MostMemory = MostAddresses;
    ChildProgram program(start);
    EXPECT_EQ(program.Wait(), GetParam().Status) << program.Errors();
    EXPECT_EQ(program.Errors(), "");
    EXPECT_GT(program.PeakMemory(), Mebibyte); // it was measured
    EXPECT_LT(program.PeakMemory(), MostMemory);
    RecordProperty("PeakMemory", std::to_string(program.PeakMemory()));
}

// 0 = every line was stored, 4 = some were rejected.
const LongLines Files[] = {
    {"OneLineOf400Mebibytes",     "import-materials", WriteOneOf400Mebibytes,      4},
    {"LinesOf16Mebibytes",        "import-materials", WriteSeveral<LongestLine>,   4},
    {"UsageInLinesOf16Mebibytes", "import-usage",     WriteSeveral<LongestLine>,   4},
    {"LinesOf17Mebibytes",        "import-materials", WriteSeveral<17 * Mebibyte>, 4},
    {"AsManyMaterialsAsCanBe",    "import-materials", WriteAsManyMaterialsAsCanBe, 4},
    {"LongFields",                "import-materials", WriteLongFields,             0},
    {"LongPeriods",               "import-usage",     WriteLongPeriods,            4},
};
INSTANTIATE_TEST_SUITE_P(Files, MemoryTest, testing::ValuesIn(Files),
                         [](const auto& given) { return std::string(given.param.Name); });

TEST(MemoryOfNames, IsLessThan100MegabytesHoweverTheirFileIsDamaged) {
    if (!IsMeasurable) GTEST_SKIP() << "The address sanitizer needs memory of its own.";
    const ProgramFolder folder;
    folder.Run({"add-company", "Acme", "Dock 1"});
    folder.Run({"select-company", "1"});
    for (const char content : {'a', '|'}) { // one long name, and many empty ones
        std::ofstream file(folder.DataFile("1_additional.talvor"), std::ios::binary);
        Write(file, content, 64 * Mebibyte);
        ASSERT_TRUE(file.flush());
        ChildProgram program(folder.Start({"names"}));
        EXPECT_EQ(program.Wait(), 0) << program.Errors();
        EXPECT_EQ(program.Output(), "-\n-\n-\n-\n-\n-\n");
        EXPECT_LT(program.PeakMemory(), MostMemory) << content;
    }
}

} // namespace
} // namespace mact
