#include "check/data_check.h"

#include "base/text.h"
#include "materials/material_record.h"
#include "store/companies.h"
#include "store/material_types.h"
#include "store/undo_file.h"
#include "tests/support/folder_content.h"
#include "tests/support/test_program.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace mact {
namespace {

constexpr double Infinite = std::numeric_limits<double>::infinity();

/// A program with one company and one row in the material-type table, to which each test adds a fault.
class DataCheckTest : public testing::Test, public TestProgram {
protected:
    using Lines = std::vector<std::string>;

    DataCheckTest() { WriteSharedFiles(); }

    void WriteSharedFiles() const {
        WriteRows({
            {.MaterialType = "Resin", .HapLimit = 28, .ApplicationMethod = "Spray"}
        });
        WriteCompanies({
            {.CompanyId = 1, .CompanyName = "Acme"}
        });
    }
    /// Writes the table and the company, one material and one usage record of it, all of them good.
    void WriteGoodFiles() const {
        WriteSharedFiles();
        WriteMaterials({Good(1)});
        WriteUsage({GoodUse(1)});
    }

    template <class Record, class... Types>
    void Write(const std::string& name, const RecordLayout<Record, Types...>& layout,
               const std::vector<Record>& records) const {
        std::string slots;
        for (const Record& record : records)
            slots += Pack(layout, record);
        WriteContent(DataFile(name), slots);
    }
    void WriteRows(const std::vector<HapContentRecord>& rows) const {
        Write("hapcontents.talvor", HapContentLayout, rows);
    }
    void WriteCompanies(const std::vector<CompanyRecord>& companies) const {
        Write("companies.talvor", CompanyLayout, companies);
    }
    void WriteMaterials(const std::vector<MaterialRecord>& materials) const {
        Write("1_materials.talvor", MaterialLayout, materials);
    }
    void WriteUsage(const std::vector<UsageRecord>& usage) const {
        Write("1_usage.talvor", UsageLayout, usage);
    }
    static MaterialRecord Good(std::int16_t number) {
        return {.MaterialId = number,
                .CustomId = "R-" + std::to_string(number),
                .MaterialType = "Resin",
                .ApplicationMethod = "Spray",
                .Density = 9,
                .HapContent = 28};
    }
    static UsageRecord GoodUse(std::int16_t number) {
        return {.UsageId = number,
                .MaterialId = 1,
                .Period = std::to_string(number) + "/2005",
                .Quantity = 5,
                .Unit = UnitLbs};
    }
    /// Writes live usage records of material 1, good except for their periods.
    void WritePeriods(const std::vector<std::string>& periods) const {
        std::vector<UsageRecord> usage;
        for (const std::string& period : periods) {
            usage.push_back(GoodUse(static_cast<std::int16_t>(usage.size() + 1)));
            usage.back().Period = period;
        }
        WriteMaterials({Good(1)});
        WriteUsage(usage);
    }
    Lines Check() {
        Lines lines;
        const std::vector<Failure> failures =
            CheckData(App, [&](const std::string& line) { lines.push_back(line); });
        for (const Failure& failure : failures)
            ShowError(App, failure);
        return lines;
    }
};

TEST_F(DataCheckTest, GoodFilesHaveNoFindings) {
    WriteMaterials({Good(1), Good(2)});
    WriteUsage({GoodUse(1), GoodUse(2)});
    WriteContent(DataFile("1_additional.talvor"), "MMA|Styrene|-|-|-|-\r\n");
    Settings.Values[{"COMPANY", "DEFAULT"}] = "1";
    EXPECT_EQ(Check(), Lines{});
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(DataCheckTest, TheOptionsOfTheOverviewAreNoFinding) {
    WriteGoodFiles();
    WriteContent(DataFile("1_overview.txt"), "start=3/2005\r\n");
    EXPECT_EQ(Check(), Lines{});
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(DataCheckTest, AMissingFolderIsAFindingAndIsNotCreated) {
    std::filesystem::remove_all(App.ProgramFolder);
    EXPECT_EQ(Check(),
              Lines{"data: the folder \"" + PathText(App.ProgramFolder / "data") + "\" does not exist"});
    EXPECT_FALSE(std::filesystem::exists(App.ProgramFolder));
}

TEST_F(DataCheckTest, AMissingTableIsAFindingAndIsNotCreated) {
    std::filesystem::remove(DataFile("hapcontents.talvor"));
    WriteMaterials({Good(1)});
    EXPECT_EQ(Check(), Lines{"hapcontents.talvor: it does not exist"});
    EXPECT_FALSE(std::filesystem::exists(DataFile("hapcontents.talvor")));
}

TEST_F(DataCheckTest, ATableWithoutMaterialTypesIsOneFinding) {
    WriteGoodFiles();
    WriteRows({});
    EXPECT_EQ(Check(), Lines{"hapcontents.talvor: it holds no material types"});
}

TEST_F(DataCheckTest, NothingInTheFolderChanges) {
    WriteContent(DataFile("1_usage.talvor"), std::string(50, 'x'));
    WriteContent(DataFile("2_additional.talvor"), "");
    const auto before = FilesIn(App.ProgramFolder / "data");
    EXPECT_FALSE(Check().empty());
    EXPECT_EQ(FilesIn(App.ProgramFolder / "data"), before);
    EXPECT_EQ(FilesIn(App.ProgramFolder), FilesIn(Folder.Path() / "none"));
}

TEST_F(DataCheckTest, AnIdentifierThatIsNotTheSlotsNumberIsAFindingOfDeletedRecordsToo) {
    WriteCompanies({{.CompanyId = 1}, {.CompanyId = 9}});
    MaterialRecord deleted = Good(3);
    deleted.Active = false;
    WriteMaterials({Good(1), deleted});
    UsageRecord usage = GoodUse(1);
    usage.UsageId = -4;
    WriteUsage({usage});
    EXPECT_EQ(Check(), (Lines{"companies.talvor, record 2: its identifier is 9, not its number",
                              "1_materials.talvor, record 2: its identifier is 3, not its number",
                              "1_usage.talvor, record 1: its identifier is -4, not its number"}));
}

TEST_F(DataCheckTest, AShortLastSlotThatCountsIsAFinding) {
    WriteMaterials({Good(1)});
    WriteContent(DataFile("1_usage.talvor"), Pack(UsageLayout, GoodUse(1)).substr(0, 23));
    EXPECT_EQ(Check(), Lines{"1_usage.talvor, record 1: it is short, with 23 of 32 bytes"});
}

TEST_F(DataCheckTest, HalfASlotCountsAfterAnOddNumberOfSlotsAndNotAfterAnEvenOne) {
    const std::string deleted = Pack(UsageLayout, {.UsageId = 1, .Active = false});
    WriteContent(DataFile("1_usage.talvor"),
                 deleted + Pack(UsageLayout, {.UsageId = 2, .Active = false}).substr(0, 16));
    EXPECT_EQ(Check(), Lines{"1_usage.talvor, record 2: it is short, with 16 of 32 bytes"});
    WriteContent(DataFile("1_usage.talvor"), std::string(16, 'x'));
    EXPECT_EQ(Check(), Lines{"1_usage.talvor: 16 surplus bytes after 0 records"});
}

/// What a copy leaves that is killed while it appends a usage record.
TEST_F(DataCheckTest, AChangeThatWasCutOffIsReadAsIfItHadNotBegun) {
    WriteGoodFiles();
    const std::string before = ContentOf(DataFile("1_usage.talvor"));
    const std::string added = Pack(UsageLayout, GoodUse(2));
    ASSERT_TRUE(
        UndoFile::Begin(Files, DataFile("1_usage.talvor"), {before.size(), 32, {}}, {before.size(), added}));
    WriteContent(DataFile("1_usage.talvor"), before + added.substr(0, 20));
    EXPECT_EQ(Check(), Lines{});
    EXPECT_TRUE(std::filesystem::exists(DataFile("1_usage.talvor.mact.undo"))); // looking changes nothing
}

TEST_F(DataCheckTest, AnUndoFileOfAnotherStateIsAFinding) {
    WriteGoodFiles();
    const std::string before = ContentOf(DataFile("1_usage.talvor"));
    ASSERT_TRUE(UndoFile::Begin(Files, DataFile("1_usage.talvor"), {2 * before.size(), 32, {}}, {}));
    EXPECT_EQ(Check(), Lines{"1_usage.talvor: a change that was cut off cannot be taken back, since the file "
                             "has changed meanwhile"});
    EXPECT_FALSE(SaveUsage(App, {.MaterialId = 1, .Period = "1/2031", .Quantity = 1, .Unit = UnitLbs}));
    EXPECT_EQ(
        Check(),
        Lines{"1_usage.talvor.mact.undo.aside: a change that was cut off was not taken back, since "
              "the data file had changed meanwhile; compare that with a backup, then remove this file"});
}

TEST_F(DataCheckTest, SurplusBytesAreAFindingOfEveryKindOfFile) {
    WriteContent(DataFile("hapcontents.talvor"), ContentOf(DataFile("hapcontents.talvor")) + "x");
    WriteContent(DataFile("companies.talvor"), ContentOf(DataFile("companies.talvor")) + "xy");
    WriteContent(DataFile("1_materials.talvor"), Pack(MaterialLayout, Good(1)) + std::string(721, 'x'));
    EXPECT_EQ(Check(), (Lines{"hapcontents.talvor: 1 surplus byte after 1 record",
                              "companies.talvor: 2 surplus bytes after 1 record",
                              "1_materials.talvor: 721 surplus bytes after 1 record"}));
}

TEST_F(DataCheckTest, AFileOfTooManySlotsIsOneFinding) {
    struct TooLong {
        const char* Name;
        std::uintmax_t SlotLength; ///< bytes
    };
    constexpr TooLong files[] = {
        {"hapcontents.talvor", 232 },
        {"companies.talvor",   504 },
        {"1_materials.talvor", 1444},
        {"1_usage.talvor",     32  },
    };
    Settings.Values[{"COMPANY", "DEFAULT"}] = "1";
    for (const TooLong& file : files) {
        SCOPED_TRACE(file.Name);
        WriteGoodFiles();
        std::filesystem::resize_file(DataFile(file.Name), 32768 * file.SlotLength);
        EXPECT_EQ(Check(), Lines{std::string(file.Name) +
                                 ": it has 32768 records and cannot be worked with: 32767 is the most that a "
                                 "data file can hold"});
        EXPECT_TRUE(Prompts.Shown.empty());
    }
}

TEST_F(DataCheckTest, AFullFileIsNoFinding) {

    std::string slots;
    for (int number = 1; number <= 32767; ++number) {
        slots += std::string{static_cast<char>(number & 0xFF), static_cast<char>(number >> 8)};
        slots += std::string(30, '\0');
    }
    WriteContent(DataFile("1_usage.talvor"), slots);
    EXPECT_EQ(Check(), Lines{});
}

TEST_F(DataCheckTest, PeriodsThatNoReportMatchesAreFindings) {
    WritePeriods({"03/2005", "13/2005", "0/2005", "3/05", "3.5/200", "10/1234", "3", "/2005", "3/", "1/1899",
                  "3 /2005", "+3/2005", "a/b\n"});
    Lines expected;
    for (const char* period : {"03/2005", "13/2005", "0/2005", "3/05", "3.5/200", "10/1234", "3", "/2005",
                               "3/", "1/1899", "3 /2005", "+3/2005", "a/b?"})
        expected.push_back("1_usage.talvor, record " + std::to_string(expected.size() + 1) +
                           ": its period \"" + period +
                           "\" is in no report; a month is written as in 3/2005");
    EXPECT_EQ(Check(), expected);
}

TEST_F(DataCheckTest, PeriodsThatAReportMatchesAreNoFindings) {
    WritePeriods({"1/2005", "12/2005", " 3/2005", "2/1899", "12/9999"});
    EXPECT_EQ(Check(), Lines{});
}

TEST_F(DataCheckTest, AnEmptyPeriodIsInEveryReport) {
    WritePeriods({"   "});
    EXPECT_EQ(Check(), Lines{"1_usage.talvor, record 1: its period is empty, and every report counts it"});
}

TEST_F(DataCheckTest, UnitsOtherThanMgalAndLbsAreFindings) {
    UsageRecord none = GoodUse(1);
    none.Unit = 0;
    UsageRecord third = GoodUse(2);
    third.Unit = 3;
    WriteMaterials({Good(1)});
    WriteUsage({none, third});
    EXPECT_EQ(Check(), (Lines{"1_usage.talvor, record 1: its unit 0 is neither 1 (Mgal) nor 2 (lbs)",
                              "1_usage.talvor, record 2: its unit 3 is neither 1 (Mgal) nor 2 (lbs)"}));
}

TEST_F(DataCheckTest, UsageOfMissingAndDeletedMaterialsIsAFinding) {
    MaterialRecord deleted = Good(2);
    deleted.Active = false;
    WriteMaterials({Good(1), deleted});
    UsageRecord ofDeleted = GoodUse(1);
    ofDeleted.MaterialId = 2;
    UsageRecord ofMissing = GoodUse(2);
    ofMissing.MaterialId = 7;
    WriteUsage({ofDeleted, ofMissing});
    EXPECT_EQ(Check(), (Lines{"1_usage.talvor, record 1: its material 2 is deleted",
                              "1_usage.talvor, record 2: its material 7 does not exist"}));
}

TEST_F(DataCheckTest, UsageWithoutAMaterialsFileIsOfMissingMaterials) {
    WriteUsage({GoodUse(1)});
    EXPECT_EQ(Check(), Lines{"1_usage.talvor, record 1: its material 1 does not exist"});
}

TEST_F(DataCheckTest, TwoLiveRecordsOfOneMaterialAndMonthAreAFinding) {
    UsageRecord again = GoodUse(2);
    again.Period = " 1/2005";
    UsageRecord deleted = GoodUse(3);
    deleted.Period = "1/2005";
    deleted.Active = false;
    WriteMaterials({Good(1)});
    WriteUsage({GoodUse(1), again, deleted});
    EXPECT_EQ(Check(),
              Lines{"1_usage.talvor, record 2: its material 1 and period \"1/2005\" are those of record 1 "
                    "too"});
}

TEST_F(DataCheckTest, TwoLiveMaterialsWithOneMaterialIdAreAFindingWhateverTheirCase) {
    MaterialRecord first = Good(1);
    first.CustomId = "\xE9-1";
    MaterialRecord second = Good(2);
    second.CustomId = " \xC9-1";
    MaterialRecord deleted = second;
    deleted.MaterialId = 3;
    deleted.Active = false;
    WriteMaterials({first, second, deleted});
    EXPECT_EQ(Check(),
              Lines{"1_materials.talvor, record 2: its Material ID \"\u00C9-1\" is that of record 1 too"});
}

TEST_F(DataCheckTest, ControlCharactersOfARecordAreShownAsQuestionMarks) {
    WritePeriods({"\x1B[2J", "\x01\x1F\x7F", "\x81\x8D\x8F\x90\x9D", "\x80\x9F\xA0\xFF"});
    Lines expected;
    for (const char* period : {"?[2J", "???", "?????", "\u20AC\u0178\u00A0\u00FF"})
        expected.push_back("1_usage.talvor, record " + std::to_string(expected.size() + 1) +
                           ": its period \"" + period +
                           "\" is in no report; a month is written as in 3/2005");
    EXPECT_EQ(Check(), expected);
}

TEST_F(DataCheckTest, ATypeAndMethodThatTheTableLacksIsAFinding) {
    MaterialRecord otherCase = Good(1);
    otherCase.MaterialType = " RESIN";
    MaterialRecord unknown = Good(2);
    unknown.ApplicationMethod = "All";
    WriteMaterials({otherCase, unknown});
    EXPECT_EQ(Check(),
              Lines{"1_materials.talvor, record 2: its type and method, \"Resin\" and \"All\", are not in "
                    "the material-type table"});
}

TEST_F(DataCheckTest, EveryValueThatIsNotFiniteIsAFinding) {
    WriteRows({
        {.MaterialType = "Resin",
         .HapLimit = NAN,
         .ApplicationMethod = "Spray",
         .EfCoefficient = Infinite,
         .EfExponent = -Infinite,
         .EmissionLimit = NAN}
    });
    MaterialRecord material = Good(1);
    material.Density = NAN;
    material.HapContent = Infinite;
    material.EmissionFactor = NAN;
    material.Content1 = NAN;
    material.Factor6 = -Infinite;
    material.Filler = NAN;
    WriteMaterials({material});
    UsageRecord usage = GoodUse(1);
    usage.Quantity = NAN;
    WriteUsage({usage});
    EXPECT_EQ(
        Check(),
        (Lines{"hapcontents.talvor, record 1: the HAP limit is not a finite number",
               "hapcontents.talvor, record 1: the coefficient is not a finite number",
               "hapcontents.talvor, record 1: the exponent is not a finite number",
               "hapcontents.talvor, record 1: the emission limit is not a finite number",
               "1_materials.talvor, record 1: the density is not a finite number",
               "1_materials.talvor, record 1: the HAP content is not a finite number",
               "1_materials.talvor, record 1: the emission factor is not a finite number",
               "1_materials.talvor, record 1: the content of pollutant 1 is not a finite number",
               "1_materials.talvor, record 1: the emission factor of pollutant 6 is not a finite number",
               "1_materials.talvor, record 1: the filler is not a finite number",
               "1_usage.talvor, record 1: the quantity is not a finite number"}));
}

TEST_F(DataCheckTest, ADensityThatIsNotAboveZeroIsAFindingWhereTheMaterialIsUsed) {
    MaterialRecord inMgal = Good(1);
    inMgal.Density = 0;
    MaterialRecord inLbs = Good(2);
    inLbs.Density = -1.5;
    MaterialRecord inBoth = Good(3);
    inBoth.Density = 0;
    MaterialRecord unused = Good(4);
    unused.Density = 0;
    WriteMaterials({inMgal, inLbs, inBoth, unused});
    std::vector<UsageRecord> usage = {GoodUse(1), GoodUse(2), GoodUse(3), GoodUse(4), GoodUse(5)};
    usage[0].Unit = UnitMgal;
    usage[1].MaterialId = 2;
    usage[2].MaterialId = 3;
    usage[3].MaterialId = 3;
    usage[3].Unit = UnitMgal;
    usage[4].MaterialId = 4;
    usage[4].Active = false;
    WriteUsage(usage);
    EXPECT_EQ(Check(),
              (Lines{"1_materials.talvor, record 1: its density is 0, and it has use in Mgal",
                     "1_materials.talvor, record 2: its density is -1.5, and it has use in lbs",
                     "1_materials.talvor, record 3: its density is 0, and it has use in Mgal and lbs"}));
}

TEST_F(DataCheckTest, AHapContentOutsideZeroToAHundredPercentIsAFinding) {
    std::vector<MaterialRecord> materials = {Good(1), Good(2), Good(3), Good(4)};
    materials[0].HapContent = 0;
    materials[1].HapContent = 100;
    materials[2].HapContent = -0.5;
    materials[3].HapContent = 100.25;
    WriteMaterials(materials);
    EXPECT_EQ(Check(),
              (Lines{"1_materials.talvor, record 3: the HAP content -0.5 is not from 0 to 100 percent",
                     "1_materials.talvor, record 4: the HAP content 100.25 is not from 0 to 100 percent"}));
}

TEST_F(DataCheckTest, DeletedRecordsAreNotJudgedByTheirContent) {
    MaterialRecord material{.MaterialId = 1, .Density = NAN, .HapContent = 200, .Active = false};
    WriteMaterials({material});
    WriteUsage({
        {.UsageId = 1, .MaterialId = 9, .Period = "x", .Quantity = NAN, .Unit = 5, .Active = false}
    });
    EXPECT_EQ(Check(), Lines{});
}

TEST_F(DataCheckTest, AMarkOfALiveRecordOtherThanMinusOneAndZeroIsAFinding) {
    const auto mark = [&](const char* name, std::size_t offset, std::string_view flag) {
        std::string slot = ContentOf(DataFile(name));
        WriteContent(DataFile(name), slot.replace(offset, 2, flag));
    };
    WriteGoodFiles();
    mark("companies.talvor", 502, {"\x01\x00", 2});
    mark("1_materials.talvor", 681, {"\x00\x80", 2});
    mark("1_usage.talvor", 21, {"\xFF\x00", 2});
    EXPECT_EQ(Check(), (Lines{"companies.talvor, record 1: its mark of a live record is 1, neither -1 nor 0: "
                              "it counts as deleted",
                              "companies.talvor: company 1, which has data files, does not exist",
                              "1_materials.talvor, record 1: its mark of a live record is -32768, neither "
                              "-1 nor 0: it counts as deleted",
                              "1_usage.talvor, record 1: its mark of a live record is 255, neither -1 nor "
                              "0: it counts as deleted"}));
}

TEST_F(DataCheckTest, NamesThatAreNotSixAreAFinding) {
    WriteContent(DataFile("1_additional.talvor"), "MMA|Styrene|-|-|-|-\r\n");
    EXPECT_EQ(Check(), Lines{});
    for (const char* content : {"", "MMA|-|-|-|-", "-|-|-|-|-|-|-", "1|2|3|4|5|6\r\n\r\n", "-|-|-|-|-|-,"}) {
        SCOPED_TRACE(content);
        WriteContent(DataFile("1_additional.talvor"), content);
        EXPECT_EQ(Check(), Lines{"1_additional.talvor: it does not hold six names"});
    }
}

TEST_F(DataCheckTest, EveryCompanyOfTheFolderIsCheckedInTheOrderOfTheirNumbers) {
    WriteCompanies({{.CompanyId = 1}, {.CompanyId = 2}});
    for (const char* name : {"12_additional.talvor", "2_additional.talvor", "1_additional.talvor"})
        WriteContent(DataFile(name), "x");
    EXPECT_EQ(Check(), (Lines{"1_additional.talvor: it does not hold six names",
                              "2_additional.talvor: it does not hold six names",
                              "companies.talvor: company 12, which has data files, does not exist",
                              "12_additional.talvor: it does not hold six names"}));
}

TEST_F(DataCheckTest, FilesThatTheProgramNeverOpensAreLeftAlone) {
    for (const char* name :
         {"01_usage.talvor", "0_usage.talvor", "-1_usage.talvor", "32768_usage.talvor",
          "1_usage.talvor.mact.tmp", "_usage.talvor", "usage.talvor", "1.0_usage.talvor", "x"})
        WriteContent(DataFile(name), "x");
    EXPECT_EQ(Check(), Lines{});
}

#ifdef _WIN32 // elsewhere these are different files, which the program never opens
TEST_F(DataCheckTest, FilesAreCheckedWhateverTheLetterCaseOfTheirNames) {
    WriteGoodFiles();
    WriteUsage({GoodUse(2)});
    WriteContent(DataFile("1_additional.talvor"), "");
    const std::pair<const char*, const char*> names[] = {
        {"hapcontents.talvor",  "HapContents.talvor" },
        {"companies.talvor",    "COMPANIES.TALVOR"   },
        {"1_materials.talvor",  "1_MATERIALS.talvor" },
        {"1_usage.talvor",      "1_Usage.Talvor"     },
        {"1_additional.talvor", "1_additional.TALVOR"},
    };
    for (const auto& [name, otherName] : names) {
        const std::string content = ContentOf(DataFile(name));
        std::filesystem::remove(DataFile(name));
        WriteContent(DataFile(otherName), content);
    }
    EXPECT_EQ(Check(), (Lines{"1_usage.talvor, record 1: its identifier is 2, not its number",
                              "1_additional.talvor: it does not hold six names"}));
}
#endif

TEST_F(DataCheckTest, ARememberedCompanyThatDoesNotExistIsAFinding) {
    for (const char* remembered : {"7", "x"}) {
        Settings.Values[{"COMPANY", "DEFAULT"}] = remembered;
        EXPECT_EQ(Check(), Lines{"settings: the remembered company \"" + std::string(remembered) +
                                 "\" does not exist"});
    }
}

TEST_F(DataCheckTest, AFileThatCannotBeReadIsShownAndTheOthersAreChecked) {
    std::filesystem::create_directory(DataFile("1_materials.talvor"));
    UsageRecord usage = GoodUse(1);
    usage.Unit = 3;
    WriteUsage({usage});
    EXPECT_EQ(Check(), Lines{"1_usage.talvor, record 1: its unit 3 is neither 1 (Mgal) nor 2 (lbs)"});
    ASSERT_EQ(Prompts.Shown.size(), 1U);
    EXPECT_EQ(Prompts.LastText(),
              "Cannot open the file \"" + PathText(DataFile("1_materials.talvor")) + "\": Is a directory.");
}

TEST_F(DataCheckTest, ANamesFileLongerThanAnyIsShownAndTheRestIsChecked) {
    WriteContent(DataFile("1_additional.talvor"), "");
    std::filesystem::resize_file(DataFile("1_additional.talvor"), 67'108'865);
    WriteContent(DataFile("2_additional.talvor"), "");
    WriteCompanies({{.CompanyId = 1}, {.CompanyId = 2}});
    EXPECT_EQ(Check(), Lines{"2_additional.talvor: it does not hold six names"});
    ASSERT_EQ(Prompts.Shown.size(), 1U);
    EXPECT_EQ(Prompts.LastText(),
              "Cannot read the file \"" + PathText(DataFile("1_additional.talvor")) +
                  "\": it has 67108865 bytes, and 67108864 is the most that is read as a whole.");
}

TEST_F(DataCheckTest, SharedFilesThatCannotBeReadAreShownAndNothingIsJudgedByThem) {
    for (const char* name : {"hapcontents.talvor", "companies.talvor"}) {
        std::filesystem::remove(DataFile(name));
        std::filesystem::create_directory(DataFile(name));
    }
    WriteMaterials({Good(1)});
    Settings.Values[{"COMPANY", "DEFAULT"}] = "1";
    EXPECT_EQ(Check(), Lines{});
    EXPECT_EQ(Prompts.Shown.size(), 2U);
}

TEST_F(DataCheckTest, AFileInTheFoldersPlaceIsShown) {
    std::filesystem::remove_all(App.ProgramFolder / "data");
    WriteContent(App.ProgramFolder / "data", "x");
    EXPECT_EQ(Check(), Lines{});
    EXPECT_EQ(Prompts.LastText(),
              "Cannot list the folder \"" + PathText(App.ProgramFolder / "data") + "\": Not a directory.");
}

} // namespace
} // namespace mact
