#include "store/steady_reading.h"

#include "base/text.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

class SteadyReadingTest : public testing::Test {
protected:
    static constexpr std::size_t SlotLength = 10;
    TemporaryFolder Folder;
    OsFiles Files;
    std::filesystem::path File = Folder.Path() / "1_things.talvor";
    std::filesystem::path Other = Folder.Path() / "1_others.talvor";

    SteadyReadingTest() {
        WriteContent(File, "aaaaaaaaaa");
        WriteContent(Other, "aaaaaaaaaa");
    }
    void Write(const std::filesystem::path& path, std::string_view slot) {
        EXPECT_TRUE(RecordFile::OpenForWriting(Files, path, SlotLength)->WriteSlot(1, slot));
    }
    /// Reads both files, while another copy does `meanwhile` in the first `times` tries. How often it read.
    template <class Meanwhile> Result<int> Read(int times, const Meanwhile& meanwhile) {
        int tries = 0;
        return ReadSteadily(Files, {File, Other}, [&]() -> Result<int> {
            ++tries;
            if (tries <= times) meanwhile();
            return tries;
        });
    }
};

TEST_F(SteadyReadingTest, ReadsOnceIfNothingChanges) {
    EXPECT_EQ(*Read(0, [] {}), 1);
}

TEST_F(SteadyReadingTest, ReadsAgainIfAFileChanges) {
    EXPECT_EQ(*Read(1, [&] { Write(File, "bbbbbbbbbb"); }), 2);
    EXPECT_EQ(*Read(2, [&] { Write(Other, "cccccccccc"); }), 3);
}

TEST_F(SteadyReadingTest, NoticesAChangeThatLeadsBackToTheSameContent) {
    for (int round = 0; round < 100; ++round) // in quick succession: the system's clock may not have moved
        EXPECT_EQ(*Read(1,
                        [&] {
                            Write(File, "bbbbbbbbbb");
                            Write(File, "aaaaaaaaaa");
                        }),
                  2);
}

TEST_F(SteadyReadingTest, NoticesAChangeThatHasOnlyBegun) {
    std::vector<Result<RecordFile>> open;
    EXPECT_EQ(*Read(1,
                    [&] {
                        open.push_back(RecordFile::OpenForWriting(Files, File, SlotLength));
                        EXPECT_TRUE(open.front()->AppendSlots("bbbbbbbbbb"));
                    }),
              2);
    // While it goes on, the file stands as before.
    EXPECT_EQ(*Read(0, [] {}), 1);
    EXPECT_EQ(*Read(1, [&] { EXPECT_TRUE(open.front()->FinishAppending()); }), 2);
}

TEST_F(SteadyReadingTest, GivesUpAfterThreeTriesAndNamesTheFile) {
    const Result<int> read = Read(3, [&] { Write(Other, "bbbbbbbbbb"); });
    ASSERT_FALSE(read);
    EXPECT_EQ(SentenceOf(read.error()), "Cannot read the file \"" + PathText(Other) +
                                            "\": another running copy of the program is working with it.");
}

TEST_F(SteadyReadingTest, TakesAMissingFileForAnEmptyOne) {
    std::filesystem::remove(File);
    EXPECT_EQ(*Read(1, [&] { WriteContent(File, ""); }), 1);
}

TEST_F(SteadyReadingTest, AFailureWhileNothingChangesIsTheAnswer) {
    int tries = 0;
    const Result<int> read = ReadSteadily(Files, {File}, [&]() -> Result<int> {
        ++tries;
        return Failure{.Doing = "read it"};
    });
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().Doing, "read it");
    EXPECT_EQ(tries, 1);
}

} // namespace
} // namespace mact
