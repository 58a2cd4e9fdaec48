#include "base/text.h"
#include "tests/transfer/transfer_fixture.h"

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace mact {
namespace {

class ImportFailures : public TransferTest {
protected:
    void Import() { EXPECT_EQ(ImportMaterialFile(Faulty, Source, Processed, Errors), 0); }
    void ExpectCounts(int processed, int errors) const {
        EXPECT_EQ(Processed, processed);
        EXPECT_EQ(Errors, errors);
    }
    void ExpectMessage(const std::string& text) const { EXPECT_EQ(ShownTexts(), std::vector{text}); }
    std::string NoSpaceForTheLog() const {
        return "Cannot write to the file \"" + PathText(MaterialLogFile()) + "\": No space left on device.";
    }
};

TEST_F(ImportFailures, AMissingSourceIsOneFailure) {
    Import();
    ExpectOneFailure("source.txt");
    ExpectCounts(0, 0);
}

TEST_F(ImportFailures, AFolderAsSourceIsOneFailure) {
    std::filesystem::create_directory(Source);
    Import();
    ExpectOneFailure("source.txt");
    ExpectCounts(0, 0);
}

#ifndef _WIN32
TEST_F(ImportFailures, APipeAsSourceIsOneFailureWithoutWaiting) {
    ASSERT_EQ(::mkfifo(Source.c_str(), 0600), 0);
    Import();
    ExpectOneFailure("source.txt\": it is a pipe or a device.");
    ExpectCounts(0, 0);
}

TEST_F(ImportFailures, ADeviceAsSourceIsOneFailure) {
    std::filesystem::create_symlink("/dev/zero", Source);
    Import();
    ExpectOneFailure("source.txt\": it is a pipe or a device.");
    ExpectCounts(0, 0);
}

TEST_F(ImportFailures, APipeAsSourceEmptiesTheLogOfTheRunBefore) {
    WriteContent(MaterialLogFile(), "old");
    ASSERT_EQ(::mkfifo(Source.c_str(), 0600), 0);
    Import();
    EXPECT_EQ(ContentOf(MaterialLogFile()), "");
}

TEST_F(ImportFailures, ADeviceAsSourceEmptiesTheLogOfTheRunBefore) {
    WriteContent(MaterialLogFile(), "old");
    std::filesystem::create_symlink("/dev/null", Source);
    Import();
    EXPECT_EQ(ContentOf(MaterialLogFile()), "");
}

TEST_F(ImportFailures, AFullDiskForTheDataFileStoresAndCountsNothing) {
    std::filesystem::create_symlink("/dev/full", MaterialData());
    ImportMaterials("bad\r\n" + GoodMaterial("A") + "bad\r\n" + GoodMaterial("B"));
    ExpectOneFailure("1_materials.talvor");
    ExpectCounts(1, 1); // the line before the first record that could not be stored
    EXPECT_EQ(ContentOf(MaterialLogFile()), "bad    ***** Invalid number of delimited fields ******\r\n");
}

TEST_F(ImportFailures, AFullDiskForTheLogIsOneFailureAndTheRecordsAreStored) {
    std::filesystem::create_symlink("/dev/full", MaterialLogFile());
    ImportMaterials(GoodMaterial("A") + "bad\r\n" + GoodMaterial("B"));
    ExpectOneFailure("material_import_errors.txt");
    ExpectCounts(3, 1);
    EXPECT_EQ(Materials().size(), 2U);
}

TEST_F(ImportFailures, AFullDiskForDataFileAndLogIsToldOfBoth) {
    std::filesystem::create_symlink("/dev/full", MaterialLogFile());
    FaultyFiles.Limits[MaterialData()] = {.LongestFile = 100};
    ImportMaterials("bad\r\n" + GoodMaterial("A"));
    ExpectMessage("The disk is full. " + NoSpaceForTheLog());
    ExpectCounts(1, 1);
}

TEST_F(ImportFailures, AFullDiskFarFromTheEndOfTheFileIsToldOnceForDataFileAndLog) {
    std::filesystem::create_symlink("/dev/full", MaterialLogFile());
    FaultyFiles.Limits[MaterialData()] = {.LongestFile = 100};
    std::string lines = "bad\r\n";
    for (int number = 1; number <= 3000; ++number) // several times what is written at once
        lines += GoodMaterial("M" + std::to_string(number));
    ImportMaterials(lines);
    ExpectMessage("The disk is full. " + NoSpaceForTheLog());
    ExpectCounts(1, 1);
}
#endif

TEST_F(ImportFailures, ALogThatDidNotReachTheDiskIsToldBesideAFullDisk) {
    FaultyFiles.Limits[MaterialData()] = {.LongestFile = 100};
    FaultyFiles.Limits[MaterialLogFile()] = {.CannotBeFlushed = true};
    ImportMaterials("bad\r\n" + GoodMaterial("A"));
    ExpectMessage("The disk is full. The disk is gone.");
}

TEST_F(ImportFailures, OfAFileThatFailsTwiceTheFirstFailureIsTold) {
    for (const std::filesystem::path& file : {MaterialData(), MaterialLogFile()})
        FaultyFiles.Limits[file] = {.LongestFile = 10, .CannotBeFlushed = true};
    ImportMaterials("bad\r\n" + GoodMaterial("A"));
    ExpectMessage("The disk is full. The disk is full.");
}

TEST_F(ImportFailures, ASourceThatCannotBeReadIsToldBesideALogThatIsLost) {
    FaultyFiles.Limits[Source] = {.LongestFile = 3};
    FaultyFiles.Limits[MaterialLogFile()] = {.CannotBeFlushed = true};
    ImportMaterials("bad\r\n");
    ExpectMessage("The disk is damaged. The disk is gone.");
}

TEST_F(ImportFailures, ALogThatDidNotReachTheDiskIsAFailure) {
    FaultyFiles.Limits[MaterialLogFile()] = {.CannotBeFlushed = true};
    ImportMaterials("bad\r\n" + GoodMaterial("A"));
    ExpectMessage("The disk is gone.");
    ExpectCounts(2, 1);
}

TEST_F(ImportFailures, ARunWithoutSourceEmptiesTheLogOfTheRunBefore) {
    WriteContent(MaterialLogFile(), "old");
    Import();
    EXPECT_EQ(ContentOf(MaterialLogFile()), "");
}

TEST_F(ImportFailures, RecordsBeforeADiskThatFillsUpAreStoredAndCounted) {
    FaultyFiles.Limits[MaterialData()] = {.LongestFile = 2 * 1444 + 1000};
    ImportMaterials(GoodMaterial("A") + "x\r\n" + GoodMaterial("B") + "y\r\n" + GoodMaterial("C") + "z\r\n");
    ExpectOneFailure("The disk is full.");
    ExpectCounts(4, 2);
    EXPECT_EQ(Materials().size(), 2U);
    EXPECT_EQ(std::filesystem::file_size(MaterialData()), 2U * 1444U);
    EXPECT_EQ(ContentOf(MaterialLogFile()), "x    ***** Invalid number of delimited fields ******\r\n"
                                            "y    ***** Invalid number of delimited fields ******\r\n");
}

TEST_F(ImportFailures, CountsAreTrueWhenTheDiskFillsUpFarIntoTheFile) {
    FaultyFiles.Limits[MaterialData()] = {.LongestFile = 2000 * 1444 + 1};
    std::string lines;
    for (int number = 1; number <= 3000; ++number)
        lines += "bad\r\n" + GoodMaterial("M" + std::to_string(number));
    ImportMaterials(lines);
    ExpectOneFailure("The disk is full.");
    EXPECT_EQ(Materials().size(), 2000U);
    ExpectCounts(4001, 2001);
    const std::string entry = "bad    ***** Invalid number of delimited fields ******\r\n";
    EXPECT_EQ(ContentOf(MaterialLogFile()).size(), 2001U * entry.size());
}

TEST_F(ImportFailures, AnImportAfterADiskThatFilledUpGoesOnWhereItEnded) {
    FaultyFiles.Limits[MaterialData()] = {.LongestFile = 1444 + 1000};
    ImportMaterials(GoodMaterial("A") + GoodMaterial("B"));
    FaultyFiles.Limits.clear();
    ImportMaterials(GoodMaterial("A") + GoodMaterial("B"));
    ExpectCounts(2, 1);
    EXPECT_EQ(Materials().at(1).MaterialId, 2);
}

TEST_F(ImportFailures, ASourceThatCannotBeReadToItsEndIsOneFailure) {
    FaultyFiles.Limits[Source] = {.LongestFile = std::uint64_t{1} << 18};
    std::string lines = GoodMaterial("A");
    lines += std::string((std::size_t{1} << 18) - lines.size() - 2, 'x') + "\r\n";
    ImportMaterials(lines + GoodMaterial("B"));
    ExpectOneFailure("The disk is damaged.");
    ExpectCounts(2, 1);
    EXPECT_EQ(Materials().size(), 1U);
    EXPECT_GT(ContentOf(MaterialLogFile()).size(), 200'000U);
}

TEST_F(ImportFailures, ADataFileThatCannotBeReadIsOneFailureAndNothingIsStored) {
    AddMaterial("A");
    FaultyFiles.Limits[MaterialData()] = {.LongestFile = 100};
    ImportMaterials(GoodMaterial("B"));
    ExpectOneFailure("The disk is damaged.");
    ExpectCounts(0, 0);
    EXPECT_EQ(std::filesystem::file_size(MaterialData()), 1444U);
}

TEST_F(ImportFailures, ATypeTableThatCannotBeReadIsOneFailure) {
    std::filesystem::remove(DataFile("hapcontents.talvor"));
    std::filesystem::create_directory(DataFile("hapcontents.talvor"));
    ImportMaterials(GoodMaterial("A") + GoodMaterial("B"));
    ExpectOneFailure("hapcontents.talvor");
    ExpectCounts(0, 0);
}

TEST_F(ImportFailures, ARecordThatDidNotReachTheDiskIsAFailure) {
    FaultyFiles.Limits[MaterialData()] = {.CannotBeFlushed = true};
    ImportMaterials(GoodMaterial("A"));
    ExpectOneFailure("The disk is gone.");
}

TEST_F(ImportFailures, RunningOutOfIdentifiersEndsTheImport) {
    WriteContent(MaterialData(), std::string(32766UL * 1444UL, '\0'));
    ImportMaterials("bad\r\n" + GoodMaterial("A") + GoodMaterial("A") + GoodMaterial("B") +
                    GoodMaterial("C"));
    ExpectOneFailure("is full, with 32767 records");
    ExpectCounts(3, 2);
    EXPECT_EQ(Materials().at(0).MaterialId, 32767);
    EXPECT_EQ(std::filesystem::file_size(MaterialData()), 32767U * 1444U);
    EXPECT_NE(ContentOf(MaterialLogFile()).find("REC#  : 3\r\n"), std::string::npos);
}

TEST_F(ImportFailures, AFullUsageFileTakesNoMore) {
    AddMaterial("A");
    WriteContent(UsageData(), std::string(32767UL * 32UL, '\0'));
    ImportUsage("A|3|2005|1|lbs\r\n");
    ExpectOneFailure("is full, with 32767 records");
    ExpectCounts(0, 0);
}

TEST_F(ImportFailures, ABusyDataFileIsAFailureAndNothingIsStored) {
    FaultyFiles.Limits[MaterialData()] = {.IsLocked = true};
    ImportMaterials(GoodMaterial("A"));
    ExpectOneFailure("The file is locked.");
    EXPECT_EQ(std::filesystem::file_size(MaterialData()), 0U);
}

TEST_F(ImportFailures, ALogThatAnotherCopyIsWritingIsAFailureAndStays) {
    WriteContent(MaterialLogFile(), "of the other copy");
    FaultyFiles.Limits[MaterialLogFile()] = {.IsLocked = true};
    ImportMaterials(GoodMaterial("A"));
    ExpectOneFailure("The file is locked.");
    EXPECT_EQ(ContentOf(MaterialLogFile()), "of the other copy");
    EXPECT_TRUE(Materials().empty());
}

TEST_F(ImportFailures, TheErrorLogItselfIsNoSource) {
    WriteContent(MaterialLogFile(), GoodMaterial("A"));
    EXPECT_EQ(ImportMaterialFile(App, MaterialLogFile(), Processed, Errors), 0);
    ExpectOneFailure("it is the error log that the import is about to write anew.");
    EXPECT_EQ(ContentOf(MaterialLogFile()), GoodMaterial("A"));
    ExpectCounts(0, 0);
}

TEST_F(ImportFailures, AnotherNameOfTheErrorLogIsNoSource) {
    WriteContent(MaterialLogFile(), GoodMaterial("A"));
    std::filesystem::create_hard_link(MaterialLogFile(), Source);
    Import();
    ExpectOneFailure("it is the error log that the import is about to write anew.");
    EXPECT_EQ(ContentOf(MaterialLogFile()), GoodMaterial("A"));
}

TEST_F(ImportFailures, TheLogOfTheOtherImportIsASource) {
    WriteContent(UsageLogFile(), GoodMaterial("A"));
    EXPECT_EQ(ImportMaterialFile(App, UsageLogFile(), Processed, Errors), 0);
    ExpectCounts(1, 0);
}

TEST_F(ImportFailures, TheDataFileItselfIsNoSource) {
    AddMaterial("A");
    const std::string data = ContentOf(MaterialData());
    EXPECT_EQ(ImportMaterialFile(App, MaterialData(), Processed, Errors), 0);
    ExpectOneFailure("it is the data file that the import writes to.");
    EXPECT_EQ(ContentOf(MaterialData()), data);
}

TEST_F(ImportFailures, TheDataFileAsSourceEmptiesTheLogOfTheRunBefore) {
    AddMaterial("A");
    const std::string data = ContentOf(MaterialData());
    WriteContent(MaterialLogFile(), "old");
    std::filesystem::create_hard_link(MaterialData(), Source);
    Import();
    EXPECT_EQ(ContentOf(MaterialLogFile()), "");
    EXPECT_EQ(ContentOf(MaterialData()), data);
}

// Files that are not text at all.

TEST_F(ImportFailures, AnImageIsRejectedLineByLine) {
    std::string image = "\x89PNG\r\n\x1A\n";
    image += std::string("\0\0\0\rIHDR\0|\xFF\xFE", 12);
    ImportMaterials(image);
    ExpectCounts(4, 4);
    EXPECT_EQ(ContentOf(MaterialLogFile()), "\x89PNG    ***** Invalid number of delimited fields ******\r\n"
                                            "\x1A    ***** Invalid number of delimited fields ******\r\n" +
                                                std::string("\0\0\0", 3) +
                                                "    ***** Invalid number of delimited fields ******\r\n" +
                                                std::string("IHDR\0|\xFF\xFE", 8) +
                                                "    ***** Invalid number of delimited fields ******\r\n");
    EXPECT_TRUE(Prompts.Shown.empty());
}

std::string TenMegabytesOf(char character) {
    std::string text;
    text.resize(10'000'000, character);
    return text;
}

TEST_F(ImportFailures, ALineOfTenMegabytesIsOneRejectedLine) {
    const std::string line = TenMegabytesOf('|');
    ImportMaterials(line + "\r\n" + GoodMaterial("A"));
    ExpectCounts(2, 1);
    EXPECT_EQ(ContentOf(MaterialLogFile()), line + "    ***** Invalid number of delimited fields ******\r\n");
}

TEST_F(ImportFailures, AFieldOfTenMegabytesIsCut) {
    ImportMaterials("A|" + TenMegabytesOf('d') +
                    "|Production resin|Spray|9|28|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n");
    ExpectCounts(1, 0);
    EXPECT_EQ(Materials().at(0).Description, std::string(100, 'd'));
}

TEST_F(ImportFailures, ZeroBytesInAFieldAreStored) {
    ImportMaterials(GoodMaterial(std::string("A\0B", 3)) + GoodMaterial("A"));
    ExpectCounts(2, 0);
    EXPECT_EQ(Materials().at(0).CustomId, std::string("A\0B", 3));
}

// The watcher.

TEST_F(ImportFailures, AWatcherSeesEachLine) {
    WriteContent(Source, "bad\r\n" + GoodMaterial("A"));
    std::vector<TransferProgress> seen;
    ImportMaterialFile(App, Source, Processed, Errors, [&](const TransferProgress& progress) {
        seen.push_back(progress);
        return true;
    });
    const std::uint64_t length = 5 + GoodMaterial("A").size();
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[0].Lines, 1);
    EXPECT_EQ(seen[0].BytesDone, 5U);
    EXPECT_EQ(seen[0].BytesInAll, length);
    EXPECT_EQ(seen[1].Lines, 2);
    EXPECT_EQ(seen[1].BytesDone, length);
}

TEST_F(ImportFailures, AWatcherStopsTheImportBehindItsLine) {
    WriteContent(Source, GoodMaterial("A") + "bad\r\n" + GoodMaterial("B"));
    ImportMaterialFile(App, Source, Processed, Errors,
                       [](const TransferProgress& progress) { return progress.Lines < 2; });
    ExpectCounts(2, 1);
    EXPECT_EQ(Materials().size(), 1U);
    EXPECT_EQ(ContentOf(MaterialLogFile()), "bad    ***** Invalid number of delimited fields ******\r\n");
    EXPECT_TRUE(Prompts.Shown.empty());
}

} // namespace
} // namespace mact
