#include "store/record_file.h"
#include "tests/support/failing_files.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

/// Slots of ten bytes. Writing one takes four operations: reading the length, reading what is in its place,
/// writing and flushing. Appending many takes the first three.
class RecordWriteFailures : public testing::Test {
protected:
    TemporaryFolder Folder;
    FailingFiles Files;
    std::filesystem::path File = Folder.Path() / "records";

    /// The sentence with which WriteSlot fails when its `operation` fails; empty if it succeeds.
    std::string Write(std::int16_t number, std::string_view slot, int operation, FaultKind kind) {
        RecordFile file = std::move(*RecordFile::OpenForWriting(Files, File, 10));
        Files.Start({operation, kind});
        const Done written = file.WriteSlot(number, slot);
        return written ? std::string{} : SentenceOf(written.error());
    }
    /// The same for AppendSlots; `count` is set to the number of slots there are afterwards.
    std::string Append(std::string_view slots, int operation, FaultKind kind, int& count) {
        RecordFile file = std::move(*RecordFile::OpenForWriting(Files, File, 10));
        Files.Start({operation, kind});
        const Done written = file.AppendSlots(slots);
        count = file.Count();
        return written ? std::string{} : SentenceOf(written.error());
    }
    std::string CannotWrite() const {
        return "Cannot write to the file \"" + PathText(File) + "\": No space left on device";
    }
};
constexpr int TheWrite = 6;
constexpr int TheFlush = 7;

TEST_F(RecordWriteFailures, AnOverwriteThatStopsHalfWayIsTakenBack) {
    WriteContent(File, "aaaaaaaaaabbbbbbbbbb");
    EXPECT_EQ(Write(1, "cccccccccc", TheWrite, FaultKind::HalfWritten), CannotWrite() + ".");
    EXPECT_EQ(ContentOf(File), "aaaaaaaaaabbbbbbbbbb");
}

TEST_F(RecordWriteFailures, AnOverwriteThatCannotBeTakenBackSaysSo) {
    WriteContent(File, "aaaaaaaaaabbbbbbbbbb");
    EXPECT_EQ(Write(1, "cccccccccc", TheWrite, FaultKind::FillsUp),
              CannotWrite() + "; what was written of record 1 could not be taken back.");
    EXPECT_EQ(ContentOf(File), "cccccaaaaabbbbbbbbbb");
}

TEST_F(RecordWriteFailures, AnOverwriteThatTheDiskRefusedAsAWholeNeedsNotBeTakenBack) {
    WriteContent(File, "aaaaaaaaaabbbbbbbbbb");
    EXPECT_EQ(Write(1, "cccccccccc", TheWrite, FaultKind::IsFull), CannotWrite() + ".");
    EXPECT_EQ(ContentOf(File), "aaaaaaaaaabbbbbbbbbb");
}

TEST_F(RecordWriteFailures, AnOverwrittenShortLastSlotIsShortAgain) {
    WriteContent(File, "aaaaaaaaaabbbbbb");
    EXPECT_EQ(Write(2, "cccccccccc", TheFlush, FaultKind::Once),
              "Cannot write to the disk what was saved in the file \"" + PathText(File) +
                  "\": No space left on device.");
    EXPECT_EQ(ContentOf(File), "aaaaaaaaaabbbbbb");
}

TEST_F(RecordWriteFailures, AnAppendThatStopsHalfWayLeavesNothing) {
    WriteContent(File, "aaaaaaaaaa");
    for (const FaultKind kind : {FaultKind::HalfWritten, FaultKind::FillsUp}) {
        EXPECT_EQ(Write(2, "cccccccccc", TheWrite, kind), CannotWrite() + ".");
        EXPECT_EQ(ContentOf(File), "aaaaaaaaaa");
    }
}

TEST_F(RecordWriteFailures, AnAppendOverARestThatDoesNotCountPutsTheRestBack) {
    WriteContent(File, "aaaaaaaaaabbb");
    EXPECT_EQ(Write(2, "cccccccccc", TheWrite, FaultKind::HalfWritten), CannotWrite() + ".");
    EXPECT_EQ(ContentOf(File), "aaaaaaaaaabbb");
}

TEST_F(RecordWriteFailures, AnAppendBehindAShortLastSlotLeavesItShort) {
    WriteContent(File, "aaaaaaaaaabbbbbb");
    EXPECT_EQ(Write(3, "cccccccccc", TheWrite, FaultKind::HalfWritten), CannotWrite() + ".");
    EXPECT_EQ(ContentOf(File), "aaaaaaaaaabbbbbb");
}

TEST_F(RecordWriteFailures, AnAppendThatDidNotReachTheDiskIsTakenBack) {
    WriteContent(File, "aaaaaaaaaa");
    EXPECT_NE(Write(2, "cccccccccc", TheFlush, FaultKind::Once), "");
    EXPECT_EQ(ContentOf(File), "aaaaaaaaaa");
}

TEST_F(RecordWriteFailures, ADiskThatIsGoneIsToldWithTheRecordThatIsInDoubt) {
    WriteContent(File, "aaaaaaaaaa");
    EXPECT_EQ(Write(2, "cccccccccc", TheWrite, FaultKind::IsGone),
              CannotWrite() + "; what was written of record 2 could not be taken back.");
}

TEST_F(RecordWriteFailures, OfAppendedSlotsThoseThatReachedTheFileStayAndNoPieceOfTheNext) {
    WriteContent(File, "aaaaaaaaaa");
    int count = 0;
    EXPECT_EQ(Append("bbbbbbbbbbccccccccccdddddddddd", TheWrite, FaultKind::HalfWritten, count),
              CannotWrite() + ".");
    EXPECT_EQ(count, 2);
    EXPECT_EQ(ContentOf(File), "aaaaaaaaaabbbbbbbbbb");
}

TEST_F(RecordWriteFailures, AppendedSlotsOfWhichNoneReachedTheFileLeaveItAsItWas) {
    for (const std::string content : {"aaaaaaaaaabbb", "aaaaaaaaaabbbbbb"})
        for (const FaultKind kind : {FaultKind::Once, FaultKind::HalfWritten}) {
            WriteContent(File, content);
            int count = 0;
            EXPECT_EQ(Append("cccccccccc", TheWrite, kind, count), CannotWrite() + ".");
            EXPECT_EQ(count, content.size() == 13 ? 1 : 2);
            EXPECT_EQ(ContentOf(File), content);
        }
}

TEST_F(RecordWriteFailures, AppendedSlotsThatCannotBeTakenBackAreSaidToBeInDoubt) {
    WriteContent(File, "aaaaaaaaaa");
    int count = 0;
    EXPECT_EQ(Append("bbbbbbbbbbcccccccccc", TheWrite, FaultKind::IsGone, count),
              CannotWrite() + "; what was written from record 2 on could not be taken back.");
    EXPECT_EQ(count, 1);
}

TEST_F(RecordWriteFailures, AnUndoFileThatCannotBeMadeVoidTakesTheChangeBack) {
    WriteContent(File, "aaaaaaaaaa");
    constexpr int theVoid = 8; // after the write and the flush
    for (const int operation : {theVoid, theVoid + 1}) {
        EXPECT_NE(Write(1, "cccccccccc", operation, FaultKind::Once), "");
        EXPECT_EQ(ContentOf(File), "aaaaaaaaaa");
        EXPECT_FALSE(std::filesystem::exists(Folder.Path() / "records.mact.undo"));
    }
}

TEST_F(RecordWriteFailures, APieceThatCouldNotBeCutOffIsTakenBackByTheNextOpening) {
    WriteContent(File, "aaaaaaaaaa");
    {
        RecordFile file = std::move(*RecordFile::OpenForWriting(Files, File, 10));
        Files.Start({TheWrite, FaultKind::IsGone});
        EXPECT_FALSE(file.AppendSlots("bbbbbbbbbbbbbbbbbbbb")); // the first half of it, and no cutting
        static_cast<void>(file.FinishAppending());
    }
    Files.Start({});
    EXPECT_EQ(RecordFile::OpenForWriting(Files, File, 10)->Count(), 1);
    EXPECT_EQ(ContentOf(File), "aaaaaaaaaa");
}

/// Four slots, of which the first and the third are to be overwritten and a fifth appended: three writes.
class SeveralSlotsFailing : public RecordWriteFailures {
protected:
    const std::string Before = "aaaaaaaaaabbbbbbbbbbccccccccccdddddddddd";
    SeveralSlotsFailing() { WriteContent(File, Before); }

    std::string WriteThem(Fault fault) {
        RecordFile file = std::move(*RecordFile::OpenForWriting(Files, File, 10));
        Files.Start(fault);
        const Done written = file.WriteSlots({
            {1, "1111111111"},
            {3, "3333333333"},
            {5, "5555555555"}
        });
        return written ? std::string{} : SentenceOf(written.error());
    }
};

TEST_F(SeveralSlotsFailing, AreAllTakenBackWhicheverOperationFails) {
    ASSERT_EQ(WriteThem({}), "");
    const int operations = Files.Count();
    int failed = 0;
    for (int at = 1; at <= operations; ++at)
        for (const FaultKind kind : {FaultKind::Once, FaultKind::HalfWritten}) {
            WriteContent(File, Before);
            const std::string failure = WriteThem({at, kind});
            failed += failure.empty() ? 0 : 1;
            // The last operation removes an undo file that is void by then.
            EXPECT_EQ(failure.empty(), at == operations) << at;
            EXPECT_EQ(ContentOf(File),
                      failure.empty() ? "1111111111bbbbbbbbbb3333333333dddddddddd5555555555" : Before)
                << at << failure;
        }
    EXPECT_EQ(failed, 2 * (operations - 1));
}

TEST_F(SeveralSlotsFailing, AreTakenBackByTheNextOpeningIfTheDiskLetsNothingBeWritten) {
    constexpr int theSecondWrite = TheWrite + 5; // behind two more readings of two slots, and the first write
    EXPECT_EQ(WriteThem({theSecondWrite, FaultKind::FillsUp}),
              CannotWrite() + "; what was written of record 3 and others could not be taken back.");
    EXPECT_EQ(ContentOf(File), "1111111111bbbbbbbbbb33333cccccdddddddddd");
    Files.Start({});
    EXPECT_EQ(RecordFile::OpenForReading(Files, File, 10)->Count(), 4);
    EXPECT_TRUE(RecordFile::OpenForWriting(Files, File, 10));
    EXPECT_EQ(ContentOf(File), Before);
    EXPECT_FALSE(std::filesystem::exists(UndoFileOf(File)));
}

} // namespace
} // namespace mact
