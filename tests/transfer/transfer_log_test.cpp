#include "tests/support/limited_files.h"
#include "tests/support/test_program.h"
#include "transfer/transfer_log.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

class TransferLogTest : public testing::Test {
protected:
    TemporaryFolder Folder;
    std::filesystem::path Path = Folder.Path() / "log.txt";
    LimitedFiles Files;

    /// Writes the lines "first" and "second" where there is room for `bytes` bytes.
    void WriteWithin(std::uint64_t bytes) {
        Files.Limits[Path] = {.LongestFile = bytes};
        Result<TransferLog> log = TransferLog::Open(Files, Path);
        ASSERT_TRUE(log);
        log->AddLine("first");
        log->AddLine("second");
        const Done written = log->Write();
        ASSERT_FALSE(written);
        EXPECT_EQ(SentenceOf(written.error()), "The disk is full.");
    }
};

TEST_F(TransferLogTest, AFullDiskLeavesNoPieceOfALine) {
    WriteWithin(10); // "first", CR, LF, "sec"
    EXPECT_EQ(ContentOf(Path), "first\r\n");
}

TEST_F(TransferLogTest, HalfALineEndEndsNoLine) {
    WriteWithin(6);
    EXPECT_EQ(ContentOf(Path), "");
}

TEST_F(TransferLogTest, ALineThatJustFitsStays) {
    WriteWithin(7);
    EXPECT_EQ(ContentOf(Path), "first\r\n");
}

TEST_F(TransferLogTest, ADiskWithoutAnyRoomLeavesAnEmptyFile) {
    WriteWithin(0);
    EXPECT_EQ(ContentOf(Path), "");
}

TEST_F(TransferLogTest, LinesOfAnEarlierWriteStay) {
    Files.Limits[Path] = {.LongestFile = 12};
    Result<TransferLog> log = TransferLog::Open(Files, Path);
    ASSERT_TRUE(log);
    log->AddLine("first");
    EXPECT_TRUE(log->Write());
    log->AddLine("second");
    EXPECT_FALSE(log->Write());
    EXPECT_EQ(ContentOf(Path), "first\r\n");
}

TEST_F(TransferLogTest, AWriteThatIsTriedAgainLeavesEachLineOnce) {
    Files.Limits[Path] = {.LongestFile = 10};
    Result<TransferLog> log = TransferLog::Open(Files, Path);
    ASSERT_TRUE(log);
    log->AddLine("first");
    log->AddLine("second");
    EXPECT_FALSE(log->Write());
    Files.Limits[Path].LongestFile.reset();
    EXPECT_TRUE(log->Write());
    EXPECT_EQ(ContentOf(Path), "first\r\nsecond\r\n");
}

TEST_F(TransferLogTest, AFailureToCutIsNotToldInThePlaceOfTheWrite) {
    Files.Limits[Path] = {.LongestFile = 10};
    Result<TransferLog> log = TransferLog::Open(Files, Path);
    ASSERT_TRUE(log);
    Files.Limits[Path].CannotBeCut = true;
    log->AddLine("first");
    log->AddLine("second");
    const Done written = log->Write();
    ASSERT_FALSE(written);
    EXPECT_EQ(SentenceOf(written.error()), "The disk is full.");
    EXPECT_EQ(ContentOf(Path), "first\r\nsec");
}

} // namespace
} // namespace mact
