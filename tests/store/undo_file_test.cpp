#include "store/undo_file.h"

#include "base/text.h"
#include "store/record_file.h"
#include "tests/support/bytes.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

/// A record file with slots of ten bytes, and what a copy that was killed has left beside it.
class UndoFileTest : public testing::Test {
protected:
    static constexpr std::size_t SlotLength = 10;
    TemporaryFolder Folder;
    OsFiles Files;
    std::filesystem::path File = Folder.Path() / "1_things.talvor";
    std::filesystem::path Undo = Folder.Path() / "1_things.talvor.mact.undo";
    std::filesystem::path Aside = Folder.Path() / "1_things.talvor.mact.undo.aside";

    /// Announces the change of a file that holds `content`, and is killed before it begins.
    void Announce(std::string_view content, std::vector<Overwritten> pieces, std::string_view appended) {
        WriteContent(File, content);
        ASSERT_TRUE(UndoFile::Begin(Files, File, {content.size(), SlotLength, std::move(pieces)},
                                    {content.size(), appended}));
        ASSERT_TRUE(std::filesystem::exists(Undo));
    }
    std::string ReadAll() {
        std::string read;
        Result<RecordFile> file = RecordFile::OpenExisting(Files, File, SlotLength);
        EXPECT_TRUE(file);
        EXPECT_TRUE(file->ForEachSlot([&](std::int16_t, std::string_view slot) {
            read += slot;
            return true;
        }));
        return read;
    }
    void ExpectTakenBackTo(const std::string& content) {
        EXPECT_EQ(ReadAll(), content);
        EXPECT_TRUE(std::filesystem::exists(Undo)) << "reading has removed it";
        EXPECT_TRUE(RecordFile::OpenForWriting(Files, File, SlotLength));
        EXPECT_EQ(mact::ContentOf(File), content);
        EXPECT_FALSE(std::filesystem::exists(Undo));
        EXPECT_FALSE(std::filesystem::exists(Aside));
    }
    void ExpectSetAside(const std::string& content) {
        EXPECT_EQ(ReadAll(), content);
        EXPECT_TRUE(RecordFile::OpenForWriting(Files, File, SlotLength));
        EXPECT_EQ(mact::ContentOf(File), content);
        EXPECT_FALSE(std::filesystem::exists(Undo));
        EXPECT_TRUE(std::filesystem::exists(Aside));
    }
};

const std::string TwoSlots = "aaaaaaaaaabbbbbbbbbb";

TEST_F(UndoFileTest, HoldsTheOldLengthAndTheBytesBeforeAndAfter) {
    Announce(TwoSlots,
             {
                 {12, "bb", "xy"}
    },
             "cccccccccc");
    const std::string bytes = mact::ContentOf(Undo);
    EXPECT_EQ(bytes.substr(0, 8), "MACTUNDO");
    // From 8 on the number of the change, which differs each time; from 40 on a checksum.
    EXPECT_EQ(bytes.substr(16, 24), Hex("14 00 00 00 00 00 00 00"    // the old length
                                        "0A 00 00 00 00 00 00 00"    // the slot length
                                        "10 00 00 00 00 00 00 00")); // the pieces' length
    EXPECT_EQ(bytes.substr(48, 16), Hex("0C 00 00 00 00 00 00 00 02 00 00 00") + "bbxy");
    // From 64 on a checksum; 80 = its own length and the appended bytes' start and length, and one sum.
    EXPECT_EQ(bytes.substr(72, 16), Hex("14 00 00 00 00 00 00 00 0A 00 00 00 00 00 00 00"));
    EXPECT_EQ(bytes.size(), 90U);
}

TEST_F(UndoFileTest, AnAppendCutOffAtAnyByteHasNotHappened) {
    const std::string three = "ccccccccccddddddddddeeeeeeeeee";
    for (std::size_t written = 0; written <= three.size(); ++written) {
        SCOPED_TRACE(written);
        Announce(TwoSlots, {}, three);
        WriteContent(File, TwoSlots + three.substr(0, written));
        ExpectTakenBackTo(TwoSlots);
    }
}

TEST_F(UndoFileTest, AnAppendWhoseBytesHaveNotReachedTheDiskHasNotHappened) {
    Announce(TwoSlots, {}, "ccccccccccdddddddddd");
    WriteContent(File, TwoSlots + std::string(10, '\0') + "dddddddddd");
    ExpectTakenBackTo(TwoSlots);
}

TEST_F(UndoFileTest, AnEditCutOffAtAnyByteHasNotHappened) {
    for (std::size_t written = 0; written <= 10; ++written) {
        SCOPED_TRACE(written);
        Announce(TwoSlots,
                 {
                     {10, "bbbbbbbbbb", "0123456789"}
        },
                 {});
        WriteContent(File, TwoSlots.substr(0, 10) + std::string("0123456789").substr(0, written) +
                               std::string(10 - written, 'b'));
        ExpectTakenBackTo(TwoSlots);
    }
}

TEST_F(UndoFileTest, AChangeOfSeveralSlotsIsTakenBackAsAWhole) {
    const std::string before = "aaaaaaaaaabbbbbbbbbbcccccccccc";
    Announce(before,
             {
                 {0,  "aaaaaaaaaa", "1111111111"},
                 {20, "cccccccccc", "3333333333"}
    },
             "4444444444");
    WriteContent(File, "1111111111bbbbbbbbbbcccccccccc44444"); // the middle one was not to change
    ExpectTakenBackTo(before);
}

TEST_F(UndoFileTest, TheSlotThatReplacedSurplusBytesGivesThemBack) {
    const std::string before = TwoSlots + "ccc";
    WriteContent(File, before);
    ASSERT_TRUE(UndoFile::Begin(Files, File, {before.size(), SlotLength, {{20, "ccc", "ddd"}}},
                                {before.size(), "ddddddd"}));
    WriteContent(File, TwoSlots + "dddddddddd");
    EXPECT_EQ(ReadAll(), TwoSlots); // three of ten bytes do not count
    EXPECT_TRUE(RecordFile::OpenForWriting(Files, File, SlotLength));
    EXPECT_EQ(mact::ContentOf(File), before);
}

TEST_F(UndoFileTest, ARecordThatAnOlderProgramAddedMeanwhileStays) {
    Announce(TwoSlots, {}, "ccccccccccddddddddddeeeeeeeeee");
    WriteContent(File, TwoSlots + "cccccccccc" + "olderolder");
    ExpectSetAside(TwoSlots + "cccccccccc" + "olderolder");
}

TEST_F(UndoFileTest, ARecordThatAnOlderProgramEditedMeanwhileStays) {
    Announce(TwoSlots,
             {
                 {10, "bbbbbbbbbb", "0123456789"}
    },
             {});
    WriteContent(File, "aaaaaaaaaabbbolder!!");
    ExpectSetAside("aaaaaaaaaabbbolder!!");
}

TEST_F(UndoFileTest, ABackupSetThatWasPutBackMeanwhileStays) {
    Announce(TwoSlots, {}, "cccccccccc");
    WriteContent(File, "aaaaaaaaaa"); // shorter than before the change
    ExpectSetAside("aaaaaaaaaa");
}

TEST_F(UndoFileTest, AnotherRecordThatAnOlderProgramEditedStaysWhileTheChangeIsTakenBack) {
    Announce(TwoSlots,
             {
                 {10, "bbbbbbbbbb", "0123456789"}
    },
             {});
    WriteContent(File, "olderolder0123456789");
    ExpectTakenBackTo("olderolderbbbbbbbbbb");
}

TEST_F(UndoFileTest, ThatWasNotCompletedSaysNothingAndGoes) {
    Announce(TwoSlots,
             {
                 {10, "bbbbbbbbbb", "0123456789"}
    },
             {});
    const std::string whole = mact::ContentOf(Undo);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        WriteContent(Undo, whole.substr(0, length));
        ExpectTakenBackTo(TwoSlots);
    }
}

TEST_F(UndoFileTest, ThatIsDamagedAtAnyByteChangesNothing) {
    Announce(TwoSlots,
             {
                 {10, "bbbbbbbbbb", "0123456789"}
    },
             "cccccccccc");
    const std::string whole = mact::ContentOf(Undo);
    for (std::size_t at = 0; at < whole.size(); ++at) {
        SCOPED_TRACE(at);
        std::string damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x40);
        WriteContent(Undo, damaged);
        ExpectTakenBackTo(TwoSlots);
    }
}

TEST_F(UndoFileTest, ThatIsTooLongToBeOneIsSetAsideUnread) {
    WriteContent(File, TwoSlots);
    WriteContent(Undo, "MACTUNDO");
    std::filesystem::resize_file(Undo, (std::uintmax_t{4} << 20U) + 1);
    ExpectSetAside(TwoSlots);
}

TEST_F(UndoFileTest, ThatIsSetAsideLeavesThoseSetAsideBefore) {
    WriteContent(Aside, "not looked at yet");
    Announce(TwoSlots, {}, "cccccccccc");
    WriteContent(File, "aaaaaaaaaa");
    ExpectSetAside("aaaaaaaaaa");
    EXPECT_EQ(mact::ContentOf(Aside), "not looked at yet");
    EXPECT_TRUE(std::filesystem::exists(Folder.Path() / "1_things.talvor.mact.undo.aside2"));
}

TEST_F(UndoFileTest, ThatIsVoidSaysNothing) {
    Announce(TwoSlots, {}, "cccccccccc");
    std::string bytes = mact::ContentOf(Undo);
    bytes[0] = '\0';
    WriteContent(Undo, bytes);
    WriteContent(File, TwoSlots + "cccccccccc");
    ExpectTakenBackTo(TwoSlots + "cccccccccc");
}

TEST_F(UndoFileTest, GoesOnceAChangeIsDone) {
    WriteContent(File, TwoSlots);
    {
        Result<RecordFile> file = RecordFile::OpenForWriting(Files, File, SlotLength);
        ASSERT_TRUE(file->WriteSlot(1, "xxxxxxxxxx"));
        EXPECT_FALSE(std::filesystem::exists(Undo));
        ASSERT_TRUE(file->AppendSlots("cccccccccc"));
        EXPECT_TRUE(std::filesystem::exists(Undo));
        EXPECT_EQ(ReadAll(), "xxxxxxxxxxbbbbbbbbbb");
        ASSERT_TRUE(file->AppendSlots("dddddddddd"));
        EXPECT_EQ(ReadAll(), "xxxxxxxxxxbbbbbbbbbb");
        ASSERT_TRUE(file->FinishAppending());
    }
    EXPECT_FALSE(std::filesystem::exists(Undo));
    EXPECT_EQ(ReadAll(), "xxxxxxxxxxbbbbbbbbbbccccccccccdddddddddd");
}

TEST_F(UndoFileTest, OfAppendsThatWereNotFinishedTakesAllBack) {
    WriteContent(File, TwoSlots);
    {
        Result<RecordFile> file = RecordFile::OpenForWriting(Files, File, SlotLength);
        ASSERT_TRUE(file->AppendSlots("cccccccccc"));
        ASSERT_TRUE(file->AppendSlots("ddddddddddeeeeeeeeee"));
    }
    EXPECT_EQ(mact::ContentOf(File), TwoSlots + "ccccccccccddddddddddeeeeeeeeee");
    ExpectTakenBackTo(TwoSlots);
}

#ifndef _WIN32 // users may not create links there, and a file's permissions are another matter
TEST_F(UndoFileTest, IsNeverWhatALinkLeadsTo) {
    WriteContent(File, TwoSlots);
    const std::filesystem::path other = Folder.Path() / "other";
    WriteContent(other, "precious");
    std::filesystem::create_symlink(other, Undo);
    EXPECT_EQ(ReadAll(), TwoSlots);
    EXPECT_TRUE(RecordFile::OpenForWriting(Files, File, SlotLength)->WriteSlot(1, "xxxxxxxxxx"));
    EXPECT_EQ(mact::ContentOf(other), "precious");
    EXPECT_EQ(ReadAll(), "xxxxxxxxxxbbbbbbbbbb");
}

TEST_F(UndoFileTest, IsAsPrivateAsTheDataFile) {
    using std::filesystem::perms;
    WriteContent(File, TwoSlots);
    std::filesystem::permissions(File, perms::owner_read | perms::owner_write);
    ASSERT_TRUE(UndoFile::Begin(Files, File, {TwoSlots.size(), SlotLength, {}}, {20, "cccccccccc"}));
    EXPECT_TRUE(std::filesystem::status(Undo).permissions() == (perms::owner_read | perms::owner_write));
}
#endif

} // namespace
} // namespace mact
