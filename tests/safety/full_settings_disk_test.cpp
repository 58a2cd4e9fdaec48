#include "base/text.h"
#include "tests/safety/mounted.h"
#include "tests/safety/program_folder.h"
#include "tests/support/folder_content.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

TEST(SettingsOnAFullDisk, StayWholeAndAFailedSaveIsToldInOneSentence) {
    if (!CanMount()) GTEST_SKIP() << "Mounting a small disk is not permitted here.";
    const ProgramFolder folder;
    const std::filesystem::path disk = folder.Start({}).SettingsFolder;
    Mounted mounted;
    ASSERT_TRUE(mounted.SmallDisk(disk));
    std::filesystem::create_directory(disk / "MACT");
    const std::filesystem::path settings = disk / "MACT" / "TALVOR_QUME_APP.conf";
    WriteContent(settings, "[BACKUP]\nPATH=/backups\n");
    folder.Run({"add-company", "Acme", "Dock 1"});
    folder.Run({"add-company", "Beta", "Dock 2"});
    folder.Run({"select-company", "1"});
    const auto before = FilesIn(disk / "MACT");
    ASSERT_EQ(ContentOf(settings), "[BACKUP]\nPATH=/backups\n\n[COMPANY]\nDEFAULT=1\n");

    FillUp(disk / "filler");
    ChildProgram program(folder.Start({"select-company", "2"}));
    EXPECT_EQ(program.Wait(), 1);
    EXPECT_EQ(program.Errors(), "Cannot save the setting COMPANY/DEFAULT in \"" + PathText(settings) +
                                    "\": it cannot be written.\n");
    EXPECT_TRUE(FilesIn(disk / "MACT") == before);

    std::filesystem::remove(disk / "filler");
    folder.Run({"select-company", "2"});
    EXPECT_EQ(ContentOf(settings), "[BACKUP]\nPATH=/backups\n\n[COMPANY]\nDEFAULT=2\n");
}

TEST(SettingsOnAFullDisk, WithOneFreeBlockAreSavedWholeOrStay) {
    if (!CanMount()) GTEST_SKIP() << "Mounting a small disk is not permitted here.";
    const ProgramFolder folder;
    const std::filesystem::path disk = folder.Start({}).SettingsFolder;
    Mounted mounted;
    ASSERT_TRUE(mounted.SmallDisk(disk));
    std::filesystem::create_directory(disk / "MACT");
    const std::filesystem::path settings = disk / "MACT" / "TALVOR_QUME_APP.conf";
    folder.Run({"add-company", "Acme", "Dock 1"});
    folder.Run({"add-company", "Beta", "Dock 2"});
    const std::string before = "[BACKUP]\nPATH=/backups\n\n[COMPANY]\nDEFAULT=1\n";
    const std::string after = "[BACKUP]\nPATH=/backups\n\n[COMPANY]\nDEFAULT=2\n";
    constexpr std::uintmax_t block = 4096;
    for (std::uintmax_t freeBlocks = 0; freeBlocks < 4; ++freeBlocks) {
        SCOPED_TRACE(freeBlocks);
        WriteContent(settings, before);
        FillUp(disk / "filler");
        std::filesystem::resize_file(disk / "filler",
                                     std::filesystem::file_size(disk / "filler") - freeBlocks * block);
        ChildProgram program(folder.Start({"select-company", "2"}));
        EXPECT_EQ(ContentOf(settings), program.Wait() == 0 ? after : before);
        std::filesystem::remove(disk / "filler");
    }
}

} // namespace
} // namespace mact
