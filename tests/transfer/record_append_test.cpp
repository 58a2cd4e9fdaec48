#include "store/record_file.h"
#include "tests/support/limited_files.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

/// Slots of ten bytes.
class RecordAppend : public testing::Test {
protected:
    TemporaryFolder Folder;
    LimitedFiles Files;
    std::filesystem::path File = Folder.Path() / "records";

    RecordFile Open() { return std::move(*RecordFile::OpenForWriting(Files, File, 10)); }
};

TEST_F(RecordAppend, SeveralSlotsAreAppendedAtOnce) {
    WriteContent(File, "0000000000");
    RecordFile file = Open();
    EXPECT_TRUE(file.AppendSlots("11111111112222222222"));
    EXPECT_EQ(file.Count(), 3);
    EXPECT_EQ(ContentOf(File), "000000000011111111112222222222");
}

TEST_F(RecordAppend, SlotsBeforeAFullDiskCountAndNoPieceOfTheNextStays) {
    Files.Limits[File] = {.LongestFile = 28};
    RecordFile file = Open();
    EXPECT_FALSE(file.AppendSlots("000000000011111111112222222222"));
    EXPECT_EQ(file.Count(), 2);
    EXPECT_EQ(ContentOf(File), "00000000001111111111");
}

TEST_F(RecordAppend, ASingleSlotThatDoesNotFitLeavesNoPiece) {
    Files.Limits[File] = {.LongestFile = 17};
    RecordFile file = Open();
    EXPECT_TRUE(file.WriteSlot(1, "0000000000"));
    EXPECT_FALSE(file.WriteSlot(2, "1111111111"));
    EXPECT_EQ(file.Count(), 1);
    EXPECT_EQ(ContentOf(File), "0000000000");
}

TEST_F(RecordAppend, AnAppendBehindAShortLastSlotStartsAtItsProperOffset) {
    WriteContent(File, "000000000011111");
    RecordFile file = Open();
    EXPECT_TRUE(file.AppendSlots("2222222222")); // one slot and a half: 1.5 rounds to 2
    EXPECT_EQ(ContentOf(File), std::string("000000000011111\0\0\0\0\0"
                                           "2222222222",
                                           30));
}

TEST_F(RecordAppend, PendingSlotsAreCountedForTheNextNumber) {
    WriteContent(File, std::string(327650, '0'));
    const RecordFile file = Open();
    EXPECT_EQ(*file.NextNumber(), 32766);
    EXPECT_EQ(*file.NextNumber(1), 32767);
    EXPECT_FALSE(file.NextNumber(2));
}

} // namespace
} // namespace mact
