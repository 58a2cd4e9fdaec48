#include "base/files.h"
#include "base/text.h"
#include "tests/support/failing_files.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace mact {
namespace {

class ReplaceFileTest : public testing::Test {
protected:
    TemporaryFolder Folder;
    OsFiles Files;
    std::filesystem::path File = Folder.Path() / "names.txt";

    std::size_t CountFiles() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(Folder.Path()), {}));
    }
};

TEST_F(ReplaceFileTest, ReplacesTheContentAndLeavesNothingBeside) {
    WriteContent(File, "a long old content");
    EXPECT_TRUE(ReplaceFile(Files, File, "new"));
    EXPECT_EQ(ContentOf(File), "new");
    EXPECT_EQ(CountFiles(), 1U);
}

#ifndef _WIN32 // on Windows, users may not create links
TEST_F(ReplaceFileTest, FollowsALink) {
    WriteContent(Folder.Path() / "real.txt", "old");
    std::filesystem::create_symlink("real.txt", File);
    EXPECT_TRUE(ReplaceFile(Files, File, "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(File));
    EXPECT_EQ(ContentOf(Folder.Path() / "real.txt"), "new");
}

TEST_F(ReplaceFileTest, FollowsALinkToAFileThatDoesNotExistYet) {
    std::filesystem::create_symlink("real.txt", File);
    EXPECT_TRUE(ReplaceFile(Files, File, "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(File));
    EXPECT_EQ(ContentOf(Folder.Path() / "real.txt"), "new");
}

TEST_F(ReplaceFileTest, KeepsThePermissionsOfTheFile) {
    WriteContent(File, "old");
    constexpr auto ofOwner = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
    std::filesystem::permissions(File, ofOwner);
    EXPECT_TRUE(ReplaceFile(Files, File, "new"));
    EXPECT_EQ(std::filesystem::status(File).permissions(), ofOwner);
}

TEST_F(ReplaceFileTest, AFullDeviceIsAFailureThatNamesFileAndReason) {
    std::filesystem::create_symlink("/dev/full", File);
    const Done replaced = ReplaceFile(Files, File, "new");
    ASSERT_FALSE(replaced);
    EXPECT_EQ(SentenceOf(replaced.error()),
              "Cannot write to the file \"/dev/full\": No space left on device.");
}
#endif

TEST_F(ReplaceFileTest, AFolderInTheFilesPlaceIsAFailure) {
    std::filesystem::create_directory(File);
    const Done replaced = ReplaceFile(Files, File, "new");
    ASSERT_FALSE(replaced);
    EXPECT_EQ(SentenceOf(replaced.error()),
              "Cannot open the file \"" + PathText(File) + "\": Is a directory.");
}

TEST_F(ReplaceFileTest, AMissingFolderIsAFailureThatNamesTheFileAndLeavesNothing) {
    const std::filesystem::path missing = Folder.Path() / "missing" / "names.txt";
    const Done replaced = ReplaceFile(Files, missing, "new");
    ASSERT_FALSE(replaced);
    EXPECT_TRUE(
        SentenceOf(replaced.error())
            .starts_with("Cannot write the file \"" + PathText(missing) + "\": cannot open the file \""));
    EXPECT_EQ(CountFiles(), 0U);
}

TEST_F(ReplaceFileTest, AFileThatMayNotBeWrittenIsNotReplaced) {
    WriteContent(File, "old");
    FailingFiles files;
    files.Start({.At = 1}); // opening the file for writing
    const Done replaced = ReplaceFile(files, File, "new");
    ASSERT_FALSE(replaced);
    EXPECT_TRUE(SentenceOf(replaced.error()).starts_with("Cannot open the file \"" + PathText(File) + '"'));
    EXPECT_EQ(ContentOf(File), "old");
    EXPECT_EQ(CountFiles(), 1U);
}

TEST_F(ReplaceFileTest, AFileOfTheUsersWithALikeNameStays) {
    std::filesystem::path like = File;
    like += ".tmp";
    WriteContent(like, "precious");
    EXPECT_TRUE(ReplaceFile(Files, File, "new"));
    EXPECT_EQ(ContentOf(like), "precious");
}

TEST_F(ReplaceFileTest, AContentThatAnotherCopyIsAboutToPutThereIsLeftAlone) {
    WriteContent(File, "old");
    const std::filesystem::path temporary = TemporaryFor(File);
    const auto ofOther = Files.Open(temporary, OpenMode::Update);
    ASSERT_TRUE((*ofOther)->Lock());
    ASSERT_TRUE((*ofOther)->WriteAt(0, "theirs"));
    const Done replaced = ReplaceFile(Files, File, "mine");
    ASSERT_FALSE(replaced);
    EXPECT_EQ(SentenceOf(replaced.error()),
              "Cannot write the file \"" + PathText(File) + "\": cannot lock the file \"" +
                  PathText(temporary) + "\": another running copy of the program is working with it.");
    EXPECT_EQ(ContentOf(File), "old");
    EXPECT_EQ(ContentOf(temporary), "theirs");
}

TEST_F(ReplaceFileTest, WhatACopyThatWasKilledLeftIsReplaced) {
    WriteContent(File, "old");
    const std::filesystem::path temporary = TemporaryFor(File);
    WriteContent(temporary, "a longer content that was never put in place");
    EXPECT_TRUE(ReplaceFile(Files, File, "new"));
    EXPECT_EQ(ContentOf(File), "new");
    EXPECT_EQ(CountFiles(), 1U);
}

class ReadWholeFileTest : public ReplaceFileTest {};

TEST_F(ReadWholeFileTest, AFileOf64MegabytesIsReadToItsEnd) {
    WriteContent(File, "x");
    std::filesystem::resize_file(File, 67'108'864);
    const Result<std::string> content = ReadWholeFile(Files, File);
    ASSERT_TRUE(content);
    EXPECT_EQ(content->size(), 67'108'864U);
    EXPECT_EQ(content->substr(0, 2), std::string("x\0", 2));
}

TEST_F(ReadWholeFileTest, ALongerFileIsAFailureThatNamesFileAndReason) {
    WriteContent(File, "x");
    std::filesystem::resize_file(File, 67'108'865);
    const Result<std::string> content = ReadWholeFile(Files, File);
    ASSERT_FALSE(content);
    EXPECT_EQ(SentenceOf(content.error()),
              "Cannot read the file \"" + PathText(File) +
                  "\": it has 67108865 bytes, and 67108864 is the most that is read as a whole.");
}

class OsFilesTest : public ReplaceFileTest {};

TEST_F(OsFilesTest, AFolderIsNeverOpened) {
    for (const OpenMode mode :
         {OpenMode::Read, OpenMode::ReadOrCreate, OpenMode::Update, OpenMode::Replace}) {
        const auto opened = Files.Open(Folder.Path(), mode);
        ASSERT_FALSE(opened);
        EXPECT_EQ(SentenceOf(opened.error()),
                  "Cannot open the file \"" + PathText(Folder.Path()) + "\": Is a directory.");
    }
}

TEST_F(OsFilesTest, AFileThatSomebodyElseHasLockedIsRefusedAfterTwoSeconds) {
    const auto first = Files.Open(File, OpenMode::Update);
    ASSERT_TRUE((*first)->Lock());
    const auto second = Files.Open(File, OpenMode::Update);
    const auto start = std::chrono::steady_clock::now();
    const Done locked = (*second)->Lock();
    const auto waited = std::chrono::steady_clock::now() - start;
    ASSERT_FALSE(locked);
    EXPECT_EQ(SentenceOf(locked.error()), "Cannot lock the file \"" + PathText(File) +
                                              "\": another running copy of the program is working with it.");
    EXPECT_GE(waited, std::chrono::seconds(2));
    EXPECT_LT(waited, std::chrono::seconds(10));
}

TEST_F(OsFilesTest, ALockEndsWithItsFile) {
    {
        const auto first = Files.Open(File, OpenMode::Update);
        ASSERT_TRUE((*first)->Lock());
    }
    const auto second = Files.Open(File, OpenMode::Update);
    EXPECT_TRUE((*second)->Lock());
}

TEST_F(OsFilesTest, AFileThatWasRenamedWhileALockWasWaitedForIsOpenedAgain) {
    auto first = std::move(*Files.Open(File, OpenMode::Update));
    ASSERT_TRUE(first->Lock());
    const auto second = Files.Open(File, OpenMode::Update);
    const std::filesystem::path elsewhere = Folder.Path() / "elsewhere.txt";
    ASSERT_TRUE(first->WriteAt(0, "theirs"));
    ASSERT_TRUE(Files.Rename(File, elsewhere));
    first.reset();
    ASSERT_TRUE((*second)->Lock());
    ASSERT_TRUE((*second)->WriteAt(0, "mine"));
    EXPECT_EQ(ContentOf(elsewhere), "theirs");
    EXPECT_EQ(ContentOf(File), "mine");
}

TEST_F(OsFilesTest, BytesBetweenTheEndAndAWriteAreZero) {
    {
        const auto file = Files.Open(File, OpenMode::Update);
        ASSERT_TRUE((*file)->WriteAt(3, "x"));
    }
    EXPECT_EQ(ContentOf(File), std::string("\0\0\0x", 4));
}

TEST_F(OsFilesTest, AFolderIsNoFileAndAFileNoFolder) {
    WriteContent(File, "x");
    EXPECT_TRUE(IsFileAt(File));
    EXPECT_FALSE(IsFolderAt(File));
    EXPECT_FALSE(IsFileAt(File.parent_path()));
    EXPECT_TRUE(IsFolderAt(File.parent_path()));
    EXPECT_FALSE(IsFileAt(File.parent_path() / "missing"));
    EXPECT_FALSE(IsFolderAt(File.parent_path() / "missing"));
    EXPECT_FALSE(IsFileAt({}));
    EXPECT_FALSE(IsFolderAt({}));
}

#ifndef _WIN32
TEST_F(OsFilesTest, AFileOfOurOwnIsNeverWhatALinkLeadsTo) {
    const std::filesystem::path others = Folder.Path() / "others";
    const std::filesystem::path own = Folder.Path() / "own";
    WriteContent(others, "precious");
    const auto writeOwn = [&] {
        const auto file = Files.Open(own, OpenMode::Own);
        ASSERT_TRUE(file);
        EXPECT_TRUE((*file)->WriteAt(0, "x"));
        EXPECT_EQ(ContentOf(others), "precious");
        EXPECT_EQ(ContentOf(own), "x");
        EXPECT_TRUE(*Files.HasOwn(own));
        std::filesystem::remove(own);
    };
    EXPECT_FALSE(*Files.HasOwn(own));
    writeOwn();
    std::filesystem::create_symlink(others, own);
    EXPECT_FALSE(*Files.HasOwn(own));
    writeOwn();
    std::filesystem::create_symlink("missing", own);
    writeOwn();
    EXPECT_FALSE(std::filesystem::exists(Folder.Path() / "missing"));
    std::filesystem::create_hard_link(others, own);
    writeOwn();
    ASSERT_EQ(::mkfifo(own.c_str(), 0600), 0);
    EXPECT_FALSE(*Files.HasOwn(own));
    writeOwn();
}
#endif

TEST_F(OsFilesTest, TheTimeOfAChangeCanBeMadeLater) {
    const auto file = Files.Open(Folder.Path() / "file", OpenMode::Update);
    ASSERT_TRUE(file);
    ASSERT_TRUE((*file)->WriteAt(0, "x"));
    const std::int64_t before = *(*file)->TimeOfChange();
    EXPECT_TRUE((*file)->MakeTimeDifferFrom(before));
    const std::int64_t after = *(*file)->TimeOfChange();
    EXPECT_GT(after, before);
    EXPECT_TRUE((*file)->MakeTimeDifferFrom(before)); // is later already
    EXPECT_EQ(*(*file)->TimeOfChange(), after);
}

TEST(IsAnythingAtTest, TellsWhatIsThereFromWhatCannotBeTold) {
    const TemporaryFolder folder;
    WriteContent(folder.Path() / "file", "");
    EXPECT_TRUE(*IsAnythingAt(folder.Path() / "file"));
    EXPECT_TRUE(*IsAnythingAt(folder.Path()));
    EXPECT_FALSE(*IsAnythingAt(folder.Path() / "missing"));
#ifndef _WIN32
    std::filesystem::create_symlink("loop", folder.Path() / "loop");
    EXPECT_FALSE(IsAnythingAt(folder.Path() / "loop"));
#endif
}

} // namespace
} // namespace mact
