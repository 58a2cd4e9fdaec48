#include "tests/transfer/transfer_fixture.h"

#include <limits>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace mact {
namespace {

class ExportTest : public TransferTest {
protected:
    void AddUsage(std::int16_t materialId, const std::string& period, double quantity, std::int16_t unit) {
        EXPECT_FALSE(
            SaveUsage(App, {.MaterialId = materialId, .Period = period, .Quantity = quantity, .Unit = unit}));
    }
    std::string Exported() const { return ContentOf(Target); }
};

// Materials

TEST_F(ExportTest, AMaterialIsALineOfNineteenFields) {
    EXPECT_FALSE(SaveMaterial(App, {.CustomId = "GC-1",
                                    .Description = "  White gel ",
                                    .MaterialType = "Pigmented production gel",
                                    .ApplicationMethod = "All",
                                    .Density = 10.4,
                                    .HapContent = 32,
                                    .EmissionFactor = 99,
                                    .Comments = "measured",
                                    .Contents = "1|3|5|7|9|11",
                                    .Factors = "2|4|6|8|10|12",
                                    .Filler = 0.35}));
    ExportMaterials();
    EXPECT_EQ(Exported(),
              "GC-1|White gel|Pigmented production gel|All|10.4|32|1|2|3|4|5|6|7|8|9|10|11|12|0.35\r\n");
    EXPECT_EQ(Processed, 1);
}

TEST_F(ExportTest, NumbersAreTheirGeneralDecimalText) {
    EXPECT_FALSE(SaveMaterial(App, {.CustomId = "A",
                                    .Density = 12,
                                    .HapContent = 0.00001,
                                    .Contents = "1234567.5|-0|1e15|0.1|0.0001|-2.50",
                                    .Factors = "0|0|0|0|0|0"}));
    ExportMaterials();
    EXPECT_EQ(Exported(), "A||||12|1E-05|1234567.5|0|0|0|1E+15|0|0.1|0|0.0001|0|-2.5|0|0\r\n");
}

TEST_F(ExportTest, NumbersThatAreNotFiniteAreWrittenAsTheyCome) {
    EXPECT_FALSE(SaveMaterial(App, {.CustomId = "A",
                                    .Density = std::numeric_limits<double>::infinity(),
                                    .Contents = "0|0|0|0|0|0",
                                    .Factors = "0|0|0|0|0|0"}));
    ExportMaterials();
    EXPECT_EQ(Exported(), "A||||inf|0|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n");
}

TEST_F(ExportTest, DeletedMaterialsAreExportedLikeLiveOnes) {
    AddMaterial("A");
    AddMaterial("B");
    Delete(1);
    ExportMaterials();
    EXPECT_EQ(Exported(), "A|a resin|Production resin|Spray|0|0|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n"
                          "B|a resin|Production resin|Spray|0|0|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n");
    EXPECT_EQ(Processed, 2);
}

TEST_F(ExportTest, AMaterialExportNeverSetsTheErrorCount) {
    ExportMaterials();
    EXPECT_FALSE(ExportErrors.has_value());
}

TEST_F(ExportTest, NoMaterialsAreAnEmptyFile) {
    WriteContent(Target, "old");
    ExportMaterials();
    EXPECT_EQ(Exported(), "");
    EXPECT_EQ(Processed, 0);
}

TEST_F(ExportTest, AnExportedMaterialFileImportsIntoAnEmptyCompanyButForTheFiller) {
    EXPECT_FALSE(SaveMaterial(App, {.CustomId = "R-\xD8",
                                    .Description = "Filled \xDF \x80",
                                    .MaterialType = "Production resin (Filled)",
                                    .ApplicationMethod = "Non-Spray",
                                    .Density = 9.25,
                                    .HapContent = 34.125,
                                    .Contents = "1|3|5|7|9|11",
                                    .Factors = "2|4|6|8|10|12",
                                    .Filler = 30}));
    ExportMaterials();
    App.CurrentCompanyId = 2;
    ImportMaterialFile(App, Target, Processed, Errors);
    EXPECT_EQ(Errors, 0);
    ASSERT_EQ(Materials().size(), 1U);
    const MaterialRecord material = Materials()[0];
    EXPECT_EQ(material.CustomId, "R-\xD8");
    EXPECT_EQ(material.Description, "Filled \xDF \x80");
    EXPECT_EQ(material.MaterialType, "Production resin (Filled)");
    EXPECT_EQ(material.ApplicationMethod, "Non-Spray");
    EXPECT_EQ(material.Density, 9.25);
    EXPECT_EQ(material.HapContent, 34.125);
    EXPECT_EQ(material.Content6, 11);
    EXPECT_EQ(material.Factor6, 12);
    EXPECT_EQ(material.Filler, 0);
}

TEST_F(ExportTest, ExportingAgainWhatWasImportedGivesTheSameBytes) {
    const std::string lines =
        "GC \xE9\xDF\xD8\x80|d|Clear production gel coat|All|8.9|47.5|12|75|30.5|45|0|0|0|0|0|0|0|0|0\r\n"
        "R 1|a resin|tooling RESIN|Non-Spray|9.05|38|0|0|35.25|6.5|0|0|0|0|0|0|0|0|0\r\n";
    ImportMaterials(lines);
    ExportMaterials();
    EXPECT_EQ(Exported(), lines);
}

// Usage

TEST_F(ExportTest, UsageIsALineOfFiveFields) {
    AddMaterial("GC-110");
    AddUsage(1, "3/2005", 120.5, UnitLbs);
    AddUsage(1, "12/2005", 0.11, UnitMgal);
    ExportUsage();
    EXPECT_EQ(Exported(), "GC-110|3|2005|120.5|lbs\r\nGC-110|12|2005|0.11|Mgal\r\n");
    EXPECT_EQ(ContentOf(ExportLogFile()), "");
    EXPECT_EQ(Processed, 2);
    EXPECT_EQ(ExportErrors, 0);
}

TEST_F(ExportTest, AnyOtherUnitIsLbs) {
    AddMaterial("A");
    AddUsage(1, "3/2005", 1, 7);
    ExportUsage();
    EXPECT_EQ(Exported(), "A|3|2005|1|lbs\r\n");
}

TEST_F(ExportTest, ThePiecesOfAPeriodAreTrimmedAndAMissingOneIsEmpty) {
    AddMaterial("A");
    AddUsage(1, " 3 / 05", 1, UnitLbs);
    AddUsage(1, "2005", 2, UnitLbs);
    ExportUsage();
    EXPECT_EQ(Exported(), "A|3|05|1|lbs\r\nA|2005||2|lbs\r\n");
}

TEST_F(ExportTest, UsageInMgalDoesNotImportAgainButUsageInLbsDoes) {
    AddMaterial("A");
    AddUsage(1, "3/2005", 0.5, UnitMgal);
    AddUsage(1, "4/2005", 7, UnitLbs);
    ExportUsage();
    std::filesystem::remove(UsageData());
    ImportUsageFile(App, Target, Processed, Errors);
    EXPECT_EQ(ContentOf(UsageLogFile()), "REC#  : 1\r\nRECORD: A|3|2005|0.5|Mgal\r\n"
                                         "ERROR : Invalid unit. Unit can only be lbs or mgl.\r\n\r\n");
    ASSERT_EQ(Usage().size(), 1U);
    EXPECT_EQ(Usage()[0].Period, "4/2005");
    EXPECT_EQ(Usage()[0].Quantity, 7);
}

TEST_F(ExportTest, DeletedUsageIsExportedLikeLiveUsage) {
    AddMaterial("A");
    AddUsage(1, "3/2005", 1, UnitLbs);
    EXPECT_FALSE(DeleteUsage(App, 1));
    ExportUsage();
    EXPECT_EQ(Exported(), "A|3|2005|1|lbs\r\n");
}

TEST_F(ExportTest, UsageOfAMissingOrDeletedMaterialGoesToTheLog) {
    AddMaterial("A");
    AddMaterial("B");
    AddUsage(1, "3/2005", 1, UnitLbs);
    AddUsage(2, "3/2005", 2.5, UnitMgal);
    AddUsage(77, "4/2005", 3, UnitLbs);
    Delete(2);
    ExportUsage();
    EXPECT_EQ(Exported(), "A|3|2005|1|lbs\r\n");
    EXPECT_EQ(ContentOf(ExportLogFile()),
              "2|3|2005|2.5|Mgal    ********* Material with this id not found ********\r\n"
              "77|4|2005|3|lbs    ********* Material with this id not found ********\r\n");
    EXPECT_EQ(Processed, 3);
    EXPECT_EQ(ExportErrors, 2);
}

TEST_F(ExportTest, ANegativeMaterialKeepsItsSignInTheLog) {
    AddUsage(-3, "3/2005", 1, UnitLbs);
    ExportUsage();
    EXPECT_EQ(ContentOf(ExportLogFile()),
              "-3|3|2005|1|lbs    ********* Material with this id not found ********\r\n");
}

TEST_F(ExportTest, NoUsageIsAnEmptyFileAndAnEmptyLog) {
    WriteContent(Target, "old");
    WriteContent(ExportLogFile(), "old");
    ExportUsage();
    EXPECT_EQ(Exported(), "");
    EXPECT_EQ(ContentOf(ExportLogFile()), "");
    EXPECT_EQ(ExportSummary(Processed, ExportErrors),
              "Total Records Processed : 0\r\nSucessful Exports : 0\r\nErrors : 0");
}

TEST_F(ExportTest, ExportedNamesKeepTheirBytes) {
    AddMaterial("\xE9\xDF\xD8\x80\x81");
    AddUsage(1, "3/2005", 1, UnitLbs);
    ExportUsage();
    EXPECT_EQ(Exported(), "\xE9\xDF\xD8\x80\x81|3|2005|1|lbs\r\n");
}

// Failures

TEST_F(ExportTest, AFailedExportLeavesTheTargetAndCountsNothing) {
    AddMaterial("A");
    WriteContent(Target, "old");
    const std::filesystem::path temporary = TemporaryFor(Target);
    FaultyFiles.Limits[temporary] = {.LongestFile = 10};
    ExportMaterials();
    ExpectOneFailure("Cannot write the file \"" + PathText(Target) + "\": The disk is full.");
    EXPECT_EQ(Exported(), "old");
    EXPECT_FALSE(std::filesystem::exists(temporary));
    EXPECT_EQ(Processed, 0);
}

TEST_F(ExportTest, DataThatCannotBeReadLeaveTheTarget) {
    AddMaterial("A");
    AddUsage(1, "3/2005", 1, UnitLbs);
    FaultyFiles.Limits[UsageData()] = {.LongestFile = 10};
    WriteContent(Target, "old");
    ExportUsage();
    ExpectOneFailure("The disk is damaged.");
    EXPECT_EQ(Exported(), "old");
    EXPECT_EQ(Processed, 0);
    EXPECT_EQ(ExportErrors, 0);
}

TEST_F(ExportTest, ALogThatDidNotReachTheDiskIsAFailureAndLeavesTheTarget) {
    AddUsage(77, "3/2005", 1, UnitLbs);
    FaultyFiles.Limits[ExportLogFile()] = {.CannotBeFlushed = true};
    WriteContent(Target, "old");
    ExportUsage();
    ExpectOneFailure("The disk is gone.");
    EXPECT_EQ(Exported(), "old");
}

TEST_F(ExportTest, AFolderAsTargetIsOneFailure) {
    std::filesystem::create_directory(Target);
    ExportMaterials();
    ExpectOneFailure("target.txt");
}

TEST_F(ExportTest, ATargetInAMissingFolderIsOneFailure) {
    Target = Folder.Path() / "none" / "target.txt";
    ExportUsage();
    ExpectOneFailure("target.txt");
}

#ifndef _WIN32
TEST_F(ExportTest, AFullDiskAsTargetIsOneFailure) {
    AddMaterial("A");
    std::filesystem::create_symlink("/dev/full", Target);
    ExportMaterials();
    ExpectOneFailure("/dev/full");
    EXPECT_EQ(Processed, 0);
}

TEST_F(ExportTest, AFullDiskForTheLogIsOneFailureAndLeavesTheTarget) {
    AddUsage(77, "3/2005", 1, UnitLbs);
    std::filesystem::create_symlink("/dev/full", ExportLogFile());
    WriteContent(Target, "old");
    ExportUsage();
    ExpectOneFailure("usage_export_errors.txt");
    EXPECT_EQ(Exported(), "old");
}
#endif

// Targets that would destroy the user's data

TEST_F(ExportTest, ADataFileIsNoTarget) {
    AddMaterial("A");
    const std::string data = ContentOf(MaterialData());
    for (const std::string name : {"1_materials.talvor", "hapcontents.talvor", "9_usage.TALVOR"}) {
        Prompts.Shown.clear();
        Target = DataFile(name);
        ExportMaterials();
        ExpectOneFailure("it is a data file of the program.");
        EXPECT_EQ(Processed, 0);
    }
    EXPECT_EQ(ContentOf(MaterialData()), data);
    EXPECT_FALSE(std::filesystem::exists(DataFile("9_usage.TALVOR")));
}

#ifndef _WIN32
TEST_F(ExportTest, APipeIsNoTarget) {
    AddMaterial("A");
    ASSERT_EQ(::mkfifo(Target.c_str(), 0600), 0);
    ExportMaterials();
    ExpectOneFailure("target.txt\": it is a pipe.");
    EXPECT_EQ(Processed, 0);
}

TEST_F(ExportTest, ASocketIsNoTarget) {
    ASSERT_EQ(::mknod(Target.c_str(), S_IFSOCK | 0600, 0), 0);
    ExportUsage();
    ExpectOneFailure("target.txt\": it is a pipe.");
}

TEST_F(ExportTest, ADeviceIsWrittenAsItStands) {
    AddMaterial("A");
    std::filesystem::create_symlink("/dev/null", Target);
    ExportMaterials();
    EXPECT_TRUE(Prompts.Shown.empty());
    EXPECT_EQ(Processed, 1);
    EXPECT_TRUE(std::filesystem::is_character_file(Target));
}
#endif

#ifndef _WIN32 // on Windows, users may not create links
TEST_F(ExportTest, ALinkToADataFileIsNoTarget) {
    AddMaterial("A");
    const std::string data = ContentOf(MaterialData());
    std::filesystem::create_symlink(MaterialData(), Target);
    ExportUsage();
    ExpectOneFailure("it is a data file of the program.");
    EXPECT_EQ(ContentOf(MaterialData()), data);
}
#endif

TEST_F(ExportTest, ADataFileByARoundaboutPathIsNoTarget) {
    AddMaterial("A");
    Target = App.ProgramFolder / "data" / ".." / "data" / "1_materials.talvor";
    ExportUsage();
    ExpectOneFailure("it is a data file of the program.");
}

TEST_F(ExportTest, AnyOtherFileInTheDataFolderIsATarget) {
    Target = DataFile("list.txt");
    ExportMaterials();
    EXPECT_TRUE(Prompts.Shown.empty());
    EXPECT_EQ(Exported(), "");
}

TEST_F(ExportTest, TheErrorLogOfTheExportIsNoTarget) {
    WriteContent(ExportLogFile(), "old");
    Target = ExportLogFile();
    ExportUsage();
    ExpectOneFailure("it is the error log that the export writes.");
    EXPECT_EQ(ContentOf(ExportLogFile()), "old");
}

TEST_F(ExportTest, AnErrorLogThatDoesNotExistYetIsNoTargetEither) {
    Target = App.ProgramFolder / "." / "usage_export_errors.txt";
    ExportUsage();
    ExpectOneFailure("it is the error log that the export writes.");
    EXPECT_FALSE(std::filesystem::exists(ExportLogFile()));
}

} // namespace
} // namespace mact
