#include "base/text.h"
#include "store/record_file.h"
#include "tests/support/bytes.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

constexpr std::size_t SlotLength = 10;

class RecordFileTest : public testing::Test {
protected:
    TemporaryFolder Folder;
    OsFiles Files;
    std::filesystem::path File = Folder.Path() / "1_things.talvor";

    Result<RecordFile> ForReading() { return RecordFile::OpenForReading(Files, File, SlotLength); }
    Result<RecordFile> ForWriting() { return RecordFile::OpenForWriting(Files, File, SlotLength); }
    int CountOf(std::size_t length) {
        WriteContent(File, std::string(length, 'x'));
        return ForReading()->Count();
    }
    std::vector<std::string> Slots() {
        std::vector<std::string> slots;
        Result<RecordFile> file = ForReading();
        EXPECT_TRUE(file->ForEachSlot([&](std::int16_t number, std::string_view slot) {
            EXPECT_EQ(number, static_cast<int>(slots.size()) + 1);
            slots.emplace_back(slot);
            return true;
        }));
        return slots;
    }
};

TEST_F(RecordFileTest, AMissingFileIsCreatedEmptyAndHasNoRecord) {
    EXPECT_EQ(ForReading()->Count(), 0);
    EXPECT_EQ(ContentOf(File), "");
}

TEST_F(RecordFileTest, AFileThatMustExistIsNotCreated) {
    EXPECT_FALSE(RecordFile::OpenExisting(Files, File, SlotLength));
    EXPECT_FALSE(std::filesystem::exists(File));
    WriteContent(File, std::string(2 * SlotLength, 'x'));
    EXPECT_EQ(RecordFile::OpenExisting(Files, File, SlotLength)->Count(), 2);
}

TEST_F(RecordFileTest, TheCountIsTheLengthInSlotsRoundedWithHalvesToEven) {
    EXPECT_EQ(CountOf(0), 0);
    EXPECT_EQ(CountOf(4), 0);
    EXPECT_EQ(CountOf(5), 0); // 0.5
    EXPECT_EQ(CountOf(6), 1);
    EXPECT_EQ(CountOf(15), 2); // 1.5
    EXPECT_EQ(CountOf(24), 2);
    EXPECT_EQ(CountOf(25), 2); // 2.5
    EXPECT_EQ(CountOf(26), 3);
}

TEST_F(RecordFileTest, BytesThatAShortLastSlotLacksAreZero) {
    WriteContent(File, "aaaaaaaaaabbbbbb");
    EXPECT_EQ(Slots(), (std::vector<std::string>{"aaaaaaaaaa", "bbbbbb" + Zeros(4)}));
}

TEST_F(RecordFileTest, AnAppendAfterAShortLastSlotThatCountsStartsAtItsProperPlace) {
    WriteContent(File, "aaaaaaaaaabbbbbb");
    Result<RecordFile> file = ForWriting();
    EXPECT_EQ(*file->NextNumber(), 3);
    EXPECT_TRUE(file->WriteSlot(3, "cccccccccc"));
    EXPECT_EQ(ContentOf(File), "aaaaaaaaaabbbbbb" + Zeros(4) + "cccccccccc");
}

TEST_F(RecordFileTest, AnAppendAfterAShortRestThatDoesNotCountReplacesIt) {
    WriteContent(File, "aaaaaaaaaabbb");
    Result<RecordFile> file = ForWriting();
    EXPECT_EQ(*file->NextNumber(), 2);
    EXPECT_TRUE(file->WriteSlot(2, "cccccccccc"));
    EXPECT_EQ(ContentOf(File), "aaaaaaaaaacccccccccc");
}

TEST_F(RecordFileTest, SlotsAreVisitedInOrderAcrossManyReads) {
    std::string content;
    for (int number = 0; number < 32767; ++number)
        content += Padded(std::to_string(number), SlotLength);
    WriteContent(File, content);
    const std::vector<std::string> slots = Slots();
    ASSERT_EQ(slots.size(), 32767U);
    EXPECT_EQ(slots[26214], Padded("26214", SlotLength)); // the second read begins here
    EXPECT_EQ(slots[32766], Padded("32766", SlotLength));
}

TEST_F(RecordFileTest, AFileOfMoreThan32767SlotsCannotBeWorkedWith) {
    WriteContent(File, std::string(SlotLength * 32768, 'x'));
    for (const Result<RecordFile>& opened : {ForReading(), ForWriting()}) {
        ASSERT_FALSE(opened);
        EXPECT_EQ(SentenceOf(opened.error()),
                  "Cannot work with the file \"" + PathText(File) +
                      "\": it has 32768 records, and 32767 is the most that a data file can hold.");
    }
}

TEST_F(RecordFileTest, AFullFileTakesNoFurtherRecord) {
    WriteContent(File, std::string(SlotLength * 32767, 'x'));
    const Result<std::int16_t> next = ForWriting()->NextNumber();
    ASSERT_FALSE(next);
    EXPECT_EQ(SentenceOf(next.error()),
              "Cannot add a record to the file \"" + PathText(File) + "\": it is full, with 32767 records.");
}

TEST_F(RecordFileTest, ASlotBeyondTheNextIsNotWritten) {
    WriteContent(File, "aaaaaaaaaa");
    Result<RecordFile> file = ForWriting();
    EXPECT_FALSE(file->WriteSlot(3, "cccccccccc"));
    EXPECT_FALSE(file->WriteSlot(0, "cccccccccc"));
    EXPECT_EQ(ContentOf(File), "aaaaaaaaaa");
}

TEST_F(RecordFileTest, SeveralSlotsAreOverwrittenAndAppendedAtOnceInAnyOrder) {
    WriteContent(File, "aaaaaaaaaabbbbbbbbbbccccccccccdddddddddd");
    Result<RecordFile> file = ForWriting();
    ASSERT_TRUE(file->WriteSlots({
        {6, "6666666666"},
        {2, "2222222222"},
        {4, "4444444444"},
        {5, "5555555555"}
    }));
    EXPECT_EQ(file->Count(), 6);
    EXPECT_EQ(ContentOf(File), "aaaaaaaaaa2222222222cccccccccc444444444455555555556666666666");
    EXPECT_FALSE(std::filesystem::exists(UndoFileOf(File)));
}

TEST_F(RecordFileTest, SeveralSlotsWrittenAtOnceFillAShortLastOne) {
    WriteContent(File, "aaaaaaaaaabbbbbb"); // the second counts
    ASSERT_TRUE(ForWriting()->WriteSlots({
        {1, "1111111111"},
        {3, "3333333333"}
    }));
    EXPECT_EQ(ContentOf(File), "1111111111bbbbbb" + Zeros(4) + "3333333333");
    WriteContent(File, "aaaaaaaaaabbbbbb");
    ASSERT_TRUE(ForWriting()->WriteSlots({
        {2, "2222222222"},
        {3, "3333333333"}
    }));
    EXPECT_EQ(ContentOf(File), "aaaaaaaaaa22222222223333333333");
    WriteContent(File, "aaaaaaaaaabbb"); // what is there of a second does not count
    ASSERT_TRUE(ForWriting()->WriteSlots({
        {1, "1111111111"},
        {2, "2222222222"}
    }));
    EXPECT_EQ(ContentOf(File), "11111111112222222222");
}

TEST_F(RecordFileTest, OfSeveralSlotsNoneIsWrittenIfOneHasNoPlace) {
    const std::string before = "aaaaaaaaaabbbbbbbbbb";
    WriteContent(File, before);
    Result<RecordFile> file = ForWriting();
    const auto reason = [&](std::int16_t first, std::int16_t second) {
        const Done written = file->WriteSlots({
            {first,  "1111111111"},
            {second, "2222222222"}
        });
        return written ? std::string() : written.error().Reason;
    };
    EXPECT_EQ(reason(1, 4), "it has 2 records");
    EXPECT_EQ(reason(3, 5), "it has 3 records"); // with the first of them
    EXPECT_EQ(reason(0, 1), "it has 2 records");
    EXPECT_EQ(reason(2, 2), "it is to be written twice at once");
    EXPECT_EQ(ContentOf(File), before);
    EXPECT_TRUE(file->WriteSlots({}));
    EXPECT_EQ(ContentOf(File), before);
}

TEST_F(RecordFileTest, OfSeveralSlotsOnlyTheBytesThatDifferAreNotedAndWritten) {
    constexpr std::size_t large = std::size_t{1} << 20U; // three of them, old and new, are too much to note
    const std::string before(3 * large, 'a');
    std::string after = before;
    WriteContent(File, before);
    for (const std::size_t at : {std::size_t{0}, large + 7, 3 * large - 1})
        after[at] = 'b';
    Result<RecordFile> file = RecordFile::OpenForWriting(Files, File, large);
    ASSERT_TRUE(file->WriteSlots({
        {1, after.substr(0,         large)},
        {2, after.substr(large,     large)},
        {3, after.substr(2 * large, large)}
    }));
    EXPECT_TRUE(ContentOf(File) == after);
    EXPECT_TRUE(file->WriteSlots({
        {2, after.substr(large, large)}
    })); // nothing differs
    EXPECT_TRUE(ContentOf(File) == after);
}

TEST_F(RecordFileTest, ASlotGivenWithoutItsEndKeepsTheEnd) {
    WriteContent(File, "aaaaaaaaaabbbbbbbbbb");
    ASSERT_TRUE(ForWriting()->WriteSlots({
        {1, "1111"}
    }));
    EXPECT_EQ(ContentOf(File), "1111aaaaaabbbbbbbbbb");
}

TEST_F(RecordFileTest, MoreThanAnUndoFileCanHoldIsRefused) {
    constexpr std::size_t large = std::size_t{1} << 20U; // three of them, old and new, are too much
    const std::string before(3 * large, 'a');
    WriteContent(File, before);
    Result<RecordFile> file = RecordFile::OpenForWriting(Files, File, large);
    const std::string slot(large, 'b');
    const Done written = file->WriteSlots({
        {1, slot},
        {2, slot},
        {3, slot}
    });
    ASSERT_FALSE(written);
    EXPECT_EQ(SentenceOf(written.error()), "Cannot write to the file \"" + PathText(File) +
                                               "\": too many records are to be changed at once.");
    EXPECT_TRUE(ContentOf(File) == before);
    EXPECT_FALSE(std::filesystem::exists(UndoFileOf(File)));
    EXPECT_TRUE(file->WriteSlots({
        {3, slot}
    })); // the file can still be written
}

} // namespace
} // namespace mact
