#include "tests/transfer/transfer_fixture.h"

namespace mact {
namespace {

class ImportRemarksTest : public TransferTest {
protected:
    static std::string Line(const std::string& customId, const std::string& filler) {
        return customId + "|a resin|Production resin|Spray|9|30|0|0|0|0|0|0|0|0|0|0|0|0|" + filler + "\r\n";
    }
    ImportCounts Materials(const std::string& content) {
        WriteContent(Source, content);
        return mact::ImportMaterials(Faulty, Source);
    }
    ImportCounts Usage(const std::string& content) {
        WriteContent(Source, content);
        return mact::ImportUsage(Faulty, Source);
    }
};

TEST_F(ImportRemarksTest, FillersThatAreNotZeroAreCounted) {
    const ImportCounts counts =
        Materials(Line("PF-1", "12.5") + Line("PF-2", "0") + Line("PF-3", " 1E-3 ") + Line("PF-4", "0.0"));
    EXPECT_EQ(counts.Processed, 4);
    EXPECT_EQ(counts.Errors, 0);
    EXPECT_EQ(counts.DroppedFillers, 2);
    EXPECT_EQ(
        ImportRemarks(counts, TransferModule::Materials),
        "The filler of 2 materials was not imported: an import stores 0, and no report applies a filler.");
}

TEST_F(ImportRemarksTest, TheFillerOfARejectedLineIsNotDropped) {
    const ImportCounts counts = Materials(Line("PF-1", "1") + Line("PF-2", "twelve") + "PF-3||||5\r\n");
    EXPECT_EQ(counts.Errors, 2);
    EXPECT_EQ(counts.DroppedFillers, 1);
    EXPECT_EQ(
        ImportRemarks(counts, TransferModule::Materials),
        "The filler of 1 material was not imported: an import stores 0, and no report applies a filler.");
}

TEST_F(ImportRemarksTest, MaterialsThatAreThereAreCountedAmongTheErrors) {
    Materials(Line("GC-1", "0"));
    const ImportCounts counts =
        Materials(Line("gc-1", "7") + Line("GC-2", "7") + Line("GC-2", "7") + "x\r\n");
    EXPECT_EQ(counts.Processed, 4);
    EXPECT_EQ(counts.Errors, 3);
    EXPECT_EQ(counts.AlreadyThere, 2);
    EXPECT_EQ(ImportRemarks(counts, TransferModule::Materials),
              "The filler of 1 material was not imported: an import stores 0, and no report applies a "
              "filler. 2 lines were rejected because "
              "the material was there already; what is stored stays as it was.");
}

TEST_F(ImportRemarksTest, UsageThatIsThereIsCounted) {
    AddMaterial("GC-1");
    EXPECT_EQ(Usage("GC-1|3|2005|1|lbs\r\n").AlreadyThere, 0);
    const ImportCounts counts = Usage("GC-1|3|2005|2|lbs\r\nGC-1|4|2005|2|lbs\r\nGC-9|3|2005|2|lbs\r\n");
    EXPECT_EQ(counts.Errors, 2);
    EXPECT_EQ(counts.AlreadyThere, 1);
    EXPECT_EQ(
        ImportRemarks(counts, TransferModule::Usage),
        "1 line was rejected because usage of the material in that month was there already; what is stored "
        "stays as it was.");
}

TEST_F(ImportRemarksTest, WithoutEitherThereIsNothingToSay) {
    EXPECT_EQ(ImportRemarks(Materials(Line("GC-1", "0") + "x\r\n"), TransferModule::Materials), "");
    EXPECT_EQ(ImportRemarks({.Processed = 3, .Errors = 3}, TransferModule::Usage), "");
}

TEST_F(ImportRemarksTest, ADiskThatFillsUpTakesBackTheseCountsToo) {
    Materials(Line("GC-1", "0"));
    const std::uintmax_t slot = std::filesystem::file_size(MaterialData());
    FaultyFiles.Limits[MaterialData()] = {.LongestFile = 2 * slot};
    const ImportCounts counts = Materials(Line("GC-1", "0") + Line("GC-2", "5") + Line("GC-3", "5") +
                                          Line("GC-1", "0") + Line("GC-4", "5"));
    EXPECT_EQ(counts.Processed, 2); // up to GC-3, which found no room
    EXPECT_EQ(counts.Errors, 1);
    EXPECT_EQ(counts.AlreadyThere, 1);
    EXPECT_EQ(counts.DroppedFillers, 1);
}
} // namespace
} // namespace mact
