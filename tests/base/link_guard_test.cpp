#include "base/link_guard.h"
#include "base/text.h"
#include "reports/reports.h"
#include "tests/support/test_program.h"
#include "transfer/transfer.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

class LinkGuardTest : public testing::Test, public TestProgram {
protected:
    const std::filesystem::path SettingsFile = Folder.Path() / "settings.conf";
    const std::filesystem::path Outside = Folder.Path() / "outside.txt";
    LinkGuard Guarded{Files, App.ProgramFolder, SettingsFile};

    static void Link(const std::filesystem::path& from, const std::filesystem::path& to) {
        std::filesystem::create_symlink(to, from);
    }
    static void SecondName(const std::filesystem::path& name, const std::filesystem::path& of) {
        std::filesystem::create_hard_link(of, name);
    }
    bool Opens(const std::filesystem::path& path, OpenMode mode) {
        return static_cast<bool>(Guarded.Open(path, mode));
    }
    /// Expects that nothing is opened, created or replaced at `path`, since it leads to `to`.
    void ExpectRefused(const std::filesystem::path& path, const std::filesystem::path& to) {
        SCOPED_TRACE(PathText(path));
        const std::string sentence = "Cannot work with the file \"" + PathText(path) +
                                     "\": it is a link to another file of the program, \"" + PathText(to) +
                                     "\".";
        for (const OpenMode mode : {OpenMode::Update, OpenMode::ReadOrCreate, OpenMode::Replace}) {
            const auto opened = Guarded.Open(path, mode);
            ASSERT_FALSE(opened);
            EXPECT_EQ(SentenceOf(opened.error()), sentence);
        }
        const Done replaced = ReplaceFile(Guarded, path, "new");
        ASSERT_FALSE(replaced);
        EXPECT_EQ(SentenceOf(replaced.error()), sentence);
        EXPECT_FALSE(std::filesystem::exists(TemporaryFor(to)));
    }
};

TEST_F(LinkGuardTest, ALinkToAnotherFileOfTheProgramIsRefused) {
    const std::filesystem::path own[] = {DataFile("1_usage.talvor"), DataFile("notes"),
                                         ProgramFile("report5.htm"), ProgramFile("usage_export_errors.txt"),
                                         ProgramFile("backup.bat"),  SettingsFile};
    for (const auto& to : own) {
        WriteContent(to, "kept");
        for (const auto& from : {ProgramFile("report.htm"), DataFile("2_usage.talvor"), Outside}) {
            Link(from, to);
            ExpectRefused(from, to);
            std::filesystem::remove(from);
            SecondName(from, to);
            ExpectRefused(from, to);
            std::filesystem::remove(from);
        }
        EXPECT_EQ(ContentOf(to), "kept");
    }
}

TEST_F(LinkGuardTest, ALinkToALinkToAnotherFileOfTheProgramIsRefused) {
    WriteContent(DataFile("1_usage.talvor"), "kept");
    std::filesystem::create_directory(Folder.Path() / "links");
    Link(Folder.Path() / "links" / "second", "../program/data/1_usage.talvor");
    Link(ProgramFile("report.htm"), "../links/second");
    ExpectRefused(ProgramFile("report.htm"), DataFile("1_usage.talvor"));
}

TEST_F(LinkGuardTest, ALinkToAMissingFileOfTheProgramIsRefusedAndCreatesNone) {
    Link(ProgramFile("report.htm"), "data/1_usage.talvor");
    ExpectRefused(ProgramFile("report.htm"), DataFile("1_usage.talvor"));
    Link(ProgramFile("report2.htm"), Folder.Path() / "settings.conf");
    ExpectRefused(ProgramFile("report2.htm"), SettingsFile);
    Link(Outside, "program/report3.htm");
    ExpectRefused(Outside, ProgramFile("report3.htm"));
    EXPECT_TRUE(std::filesystem::is_empty(ProgramFile("data")));
}

TEST_F(LinkGuardTest, AllOtherLinksAreFollowed) {
    WriteContent(Outside, "");
    std::filesystem::create_directory(Folder.Path() / "links");
    Link(DataFile("1_usage.talvor"), Outside);
    Link(ProgramFile("report.htm"), Folder.Path() / "links" / "missing yet.htm");
    Link(ProgramFile("report2.htm"), Outside); // as another one of the program's does
    for (const auto& path :
         {DataFile("1_usage.talvor"), ProgramFile("report.htm"), ProgramFile("report2.htm")}) {
        EXPECT_TRUE(Opens(path, OpenMode::Update));
        EXPECT_TRUE(ReplaceFile(Guarded, path, PathText(path)));
        EXPECT_TRUE(std::filesystem::is_symlink(path));
    }
    EXPECT_EQ(ContentOf(Folder.Path() / "links" / "missing yet.htm"), PathText(ProgramFile("report.htm")));
    EXPECT_EQ(ContentOf(Outside), PathText(ProgramFile("report2.htm")));
}

TEST_F(LinkGuardTest, AFileWithASecondNameElsewhereIsOpened) {
    WriteContent(DataFile("1_usage.talvor"), "x");
    SecondName(Outside, DataFile("1_usage.talvor")); // such as a copy of a folder made of hard links
    EXPECT_TRUE(Opens(DataFile("1_usage.talvor"), OpenMode::Update));
    EXPECT_FALSE(Opens(Outside, OpenMode::Update));
}

TEST_F(LinkGuardTest, WhatTheUserWantsToReadIsReadWhateverItLeadsTo) {
    WriteContent(DataFile("1_usage.talvor"), "x");
    Link(Outside, DataFile("1_usage.talvor"));
    Link(DataFile("2_usage.talvor"), DataFile("1_usage.talvor"));
    Link(ProgramFile("usage_import_errors.txt"), DataFile("1_usage.talvor"));
    EXPECT_TRUE(Opens(Outside, OpenMode::Read));
    EXPECT_FALSE(Opens(DataFile("2_usage.talvor"), OpenMode::Read));
    EXPECT_FALSE(Opens(ProgramFile("usage_import_errors.txt"), OpenMode::Read));
}

TEST_F(LinkGuardTest, ADataFolderThatIsALinkIsFollowed) {
    std::filesystem::remove(ProgramFile("data"));
    std::filesystem::create_directory(Folder.Path() / "real");
    std::filesystem::create_directory_symlink(Folder.Path() / "real", ProgramFile("data"));
    EXPECT_TRUE(ReplaceFile(Guarded, DataFile("1_additional.talvor"), "x"));
    Link(ProgramFile("report.htm"), Folder.Path() / "real" / "1_additional.talvor");
    ExpectRefused(ProgramFile("report.htm"), DataFile("1_additional.talvor"));
}

TEST_F(LinkGuardTest, ATemporaryNameIsNeverFollowed) {
    WriteContent(DataFile("1_usage.talvor"), "kept");
    Link(TemporaryFor(ProgramFile("report.htm")), DataFile("1_usage.talvor"));
    EXPECT_TRUE(ReplaceFile(Guarded, ProgramFile("report.htm"), "new"));
    EXPECT_EQ(ContentOf(ProgramFile("report.htm")), "new");
    EXPECT_EQ(ContentOf(DataFile("1_usage.talvor")), "kept");
}

TEST_F(LinkGuardTest, EachFileThatTheProgramWritesIsKnown) {
    const std::filesystem::path written[] = {
        ProgramFile(CompliantMaterialsFile),        ProgramFile(WeightedAverageFile),
        ProgramFile(EmissionAverageFile),           ProgramFile(AdditionalHapUsageFile),
        ProgramFile(AdditionalHapEmissionFile),     ImportErrorLog(App, TransferModule::Materials),
        ImportErrorLog(App, TransferModule::Usage), UsageExportErrorLog(App)};
    for (const auto& path : written) {
        Link(Outside, path);
        ExpectRefused(Outside, path);
        std::filesystem::remove(Outside);
    }
}

#ifndef _WIN32
TEST_F(LinkGuardTest, ALinkToADeviceIsFollowed) {
    Link(DataFile("1_usage.talvor"), "/dev/full");
    Link(DataFile("2_usage.talvor"), "/dev/full");
    const auto file = Guarded.Open(DataFile("1_usage.talvor"), OpenMode::Update);
    ASSERT_TRUE(file);
    EXPECT_EQ((*file)->WriteAt(0, "x").error().Reason, "No space left on device");
}

TEST_F(LinkGuardTest, ARoundOfLinksIsTheSystemsFailure) {
    Link(ProgramFile("report.htm"), "report2.htm");
    Link(ProgramFile("report2.htm"), "report.htm");
    EXPECT_FALSE(Opens(ProgramFile("report.htm"), OpenMode::Update));
}
#endif

} // namespace
} // namespace mact
