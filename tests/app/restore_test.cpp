#include "app/backup.h"
#include "app/data_swap.h"
#include "app/restore.h"
#include "app/startup.h"
#include "base/link_guard.h"
#include "base/text.h"
#include "materials/material_store.h"
#include "store/additional_names.h"
#include "store/companies.h"
#include "store/material_types.h"
#include "tests/support/bytes.h"
#include "tests/support/failing_files.h"
#include "tests/support/folder_content.h"
#include "tests/support/limited_files.h"
#include "usage/usage_store.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/resource.h>
#endif

namespace mact {
namespace {

using Contents = std::map<std::string, std::string>;
using Sentences = std::vector<std::string>;

/// A shop with one company, of which set 1 is a backup; then a second company and a usage record were added.
class RestoreTest : public testing::Test, public TestProgram {
protected:
    std::filesystem::path Data = App.ProgramFolder / "data";
    std::filesystem::path Set = ProgramFile("talvor_backupset_1");
    std::filesystem::path Kept = ProgramFile("talvor_backupset_2");
    Contents OfSet;
    Contents Before;
    Sentences AskedAboutSet;
    Sentences AskedAboutBackup;
    bool GoesOn = false;

    RestoreTest() {
        EXPECT_TRUE(CreateDefaultHapContents(App));
        EXPECT_TRUE(AddNewCompany(App, "Acme", "Dock 1"));
        Use(1);
        EXPECT_TRUE(SaveAdditionalNames(App, {"a", "b", "c", "d", "e", "f"}));
        EXPECT_FALSE(SaveUsage(App, {.MaterialId = 1, .Period = "1/2005", .Quantity = 5, .Unit = 2}));
        EXPECT_TRUE(RunBackupToItsEnd(App));
        OfSet = FilesIn(Set);
        EXPECT_EQ(OfSet.size(), 4U);
        EXPECT_TRUE(AddNewCompany(App, "Beta", "Dock 2"));
        EXPECT_FALSE(SaveUsage(App, {.MaterialId = 1, .Period = "2/2005", .Quantity = 6, .Unit = 2}));
        Before = FilesIn(Data);
        EXPECT_NE(Before, OfSet);
        LoadAdditionalNames(App);
    }
    void Use(std::int16_t companyId) {
        const auto found = ReadCompanies(App, {.CompanyId = companyId});
        ASSERT_TRUE(found && found->size() == 1);
        MakeCompanyCurrent(App, found->front());
    }
    RestoreQuestions Questions() {
        return {.RestoresIncompleteSet =
                    [this](const Sentences& sentences) {
                        AskedAboutSet = sentences;
                        return GoesOn;
                    },
                .GoesOnWithoutBackup =
                    [this](const Sentences& sentences) {
                        AskedAboutBackup = sentences;
                        return GoesOn;
                    }};
    }
    std::optional<Restored> Restore() { return RestoreSet(App, Set, Questions()); }
    std::optional<Restored> RestoreWith(FileAccess& files) {
        AppContext app{Prompts, Settings, Programs, Dialogs, Calendar, files, App.ProgramFolder, 1};
        return RestoreSet(app, Set, Questions());
    }
    /// Neither the note nor a folder beside the data folder.
    void ExpectNothingLeftOver() const {
        for (const char* name : {"restore.mact.note", "data.mact.new", "data.mact.old", "data.replaced"})
            EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(ProgramFile(name)))) << name;
        for (const auto& [name, content] : FilesIn(Data))
            EXPECT_EQ(name.find(".mact."), std::string::npos) << name;
    }
    void ExpectRestored() {
        const auto restored = Restore();
        EXPECT_EQ(ShownTexts(), Sentences());
        ASSERT_TRUE(restored);
        EXPECT_EQ(restored->KeptSet, Kept);
        EXPECT_FALSE(restored->ReplacedFolder);
        EXPECT_EQ(FilesIn(Data), OfSet);
        EXPECT_EQ(FilesIn(Kept), Before);
        ExpectNothingLeftOver();
    }
    void ExpectNothingHasHappened(const std::string& message) {
        EXPECT_EQ(ShownTexts(), message.empty() ? Sentences() : Sentences{message});
        EXPECT_EQ(FilesIn(Data), Before);
        ExpectNothingLeftOver();
    }
    std::string CannotRestore(const std::string& reason) const {
        return "Cannot restore the backup set \"" + PathText(Set) + "\": " + reason + ".";
    }
};

TEST_F(RestoreTest, PutsTheFilesOfTheSetInTheirPlaceAndKeepsTheEarlierOnesAsTheNextSet) {
    ExpectRestored();
    EXPECT_EQ((Settings.Values[{"BACKUP", "BK_VOLUME"}]), "3");
    EXPECT_TRUE(AskedAboutSet.empty());
    EXPECT_TRUE(AskedAboutBackup.empty());
    EXPECT_EQ(FilesIn(Set), OfSet);
}

TEST_F(RestoreTest, CanBeTakenBackWithTheKeptSet) {
    ASSERT_TRUE(Restore());
    ASSERT_TRUE(RestoreSet(App, Kept, Questions()));
    EXPECT_EQ(FilesIn(Data), Before);
    EXPECT_EQ(FilesIn(ProgramFile("talvor_backupset_3")), OfSet);
    ExpectNothingLeftOver();
}

TEST_F(RestoreTest, TellsWhereTheEarlierDataIs) {
    EXPECT_EQ(RestoredText("sets/1", {"sets/2", std::nullopt}),
              "The data has been restored from " + PathText("sets/1") + ". What was there before is in " +
                  PathText("sets/2") + ".");
    EXPECT_EQ(RestoredText("sets/1", {{}, "data.replaced"}),
              "The data has been restored from " + PathText("sets/1") +
                  ". The folder that was replaced holds more than that, and is now data.replaced.");
}

TEST_F(RestoreTest, NeverKeepsTheEarlierDataInASetThatIsThere) {
    Settings.Values[{"BACKUP", "BK_VOLUME"}] = ""; // so the next backup would be copied into set 1
    ExpectRestored();
    EXPECT_EQ(FilesIn(Set), OfSet);
    EXPECT_EQ((Settings.Values[{"BACKUP", "BK_VOLUME"}]), "3");
}

TEST_F(RestoreTest, TheCompanyIsThatOfItsNumberInTheRestoredData) {
    EXPECT_EQ(SaveCompany(App, "Renamed", "Dock 9", 1), 0);
    Use(1);
    EXPECT_TRUE(SaveAdditionalNames(App, {"u", "v", "w", "x", "y", "z"}));
    LoadAdditionalNames(App);
    ASSERT_TRUE(Restore());
    EXPECT_EQ(App.CurrentCompanyId, 1);
    EXPECT_EQ(App.CurrentCompanyName, "Acme");
    EXPECT_EQ(App.CurrentCompanyLocation, "Dock 1");
    EXPECT_EQ(App.AdditionalNames, "a|b|c|d|e|f");
}

TEST_F(RestoreTest, ACompanyThatTheRestoredDataLacksIsNoLongerCurrent) {
    Use(2);
    ASSERT_TRUE(Restore());
    EXPECT_EQ(App.CurrentCompanyId, 0);
    EXPECT_EQ(App.CurrentCompanyName, "");
    EXPECT_EQ(App.CurrentCompanyLocation, "");
    EXPECT_EQ(App.AdditionalNames, "-|-|-|-|-|-");
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(RestoreTest, AnIncompleteSetNeedsAnAnswer) {
    WriteContent(Set / "incomplete.txt", "The file \"1_usage.talvor\" is missing.\r\n");
    EXPECT_FALSE(Restore());
    EXPECT_EQ(AskedAboutSet, (Sentences{"Not every file could be copied into it.",
                                        "The file \"1_usage.talvor\" is missing."}));
    ExpectNothingHasHappened("");
    EXPECT_FALSE(std::filesystem::exists(Kept));
    GoesOn = true;
    ExpectRestored(); // without incomplete.txt
}

TEST_F(RestoreTest, ASetWithoutTheTypeTableGetsTheDefaultOne) {
    std::filesystem::remove(Set / "hapcontents.talvor");
    GoesOn = true;
    ExpectRestored();
    EXPECT_EQ(AskedAboutSet, Sentences{"The file \"hapcontents.talvor\" is missing."});
}

TEST_F(RestoreTest, AnEmptySetIsRefused) {
    std::filesystem::remove_all(Set);
    std::filesystem::create_directory(Set);
    GoesOn = true;
    EXPECT_FALSE(Restore());
    ExpectNothingHasHappened(CannotRestore("it holds no files"));
}

TEST_F(RestoreTest, ASetThatIsNotThereIsRefused) {
    std::filesystem::remove_all(Set);
    EXPECT_FALSE(Restore());
    ExpectNothingHasHappened("Cannot read the folder \"" + PathText(Set) + "\": " +
                             std::make_error_code(std::errc::no_such_file_or_directory).message() + ".");
}

TEST_F(RestoreTest, TheDataFolderItselfIsRefused) {
    Set = Data;
    EXPECT_FALSE(Restore());
    ExpectNothingHasHappened(CannotRestore("it is in the data folder, which is about to be replaced"));
}

/// Copies of their own: what is left of an attempt is removed before the next.
TEST_F(RestoreTest, AFolderOfTheSwapItselfIsRefusedAndStays) {
    for (const char* name : {"data.mact.new", "data.mact.old"}) {
        std::filesystem::copy(Set, ProgramFile(name));
        Prompts.Shown.clear();
        EXPECT_FALSE(RestoreSet(App, ProgramFile(name), Questions()));
        EXPECT_EQ(ShownTexts(), Sentences{"Cannot restore the backup set \"" + PathText(ProgramFile(name)) +
                                          "\": its folder is the program's own, for restoring; copy it to "
                                          "another place first."});
        EXPECT_EQ(FilesIn(ProgramFile(name)), OfSet);
        EXPECT_EQ(FilesIn(Data), Before);
        std::filesystem::remove_all(ProgramFile(name));
    }
}

TEST_F(RestoreTest, ABackupFolderInTheDataFolderIsRefused) {
    Settings.Values[{"BACKUP", "PATH"}] = PathText(Data);
    EXPECT_FALSE(Restore());
    ExpectNothingHasHappened(CannotRestore("the backup folder is in the data folder, which is about to be "
                                           "replaced; choose another one in the configuration"));
}

/// As a killed save leaves it: a second record, and an undo file that takes it back.
TEST_F(RestoreTest, AChangeThatWasCutOffInTheSetIsTakenBack) {
    const std::filesystem::path usage = Set / "1_usage.talvor";
    const std::string added = Before.at("1_usage.talvor").substr(32);
    ASSERT_EQ(added.size(), 32U);
    {
        const PlannedChange change{.OldLength = 32, .SlotLength = 32};
        ASSERT_TRUE(UndoFile::Begin(App.Files, usage, change, {32, added}));
    }
    WriteContent(usage, Before.at("1_usage.talvor"));
    ASSERT_TRUE(std::filesystem::exists(UndoFileOf(usage)));
    ExpectRestored();
    EXPECT_TRUE(std::filesystem::exists(UndoFileOf(usage))); // the set stays as it is
}

/// The undo file says that the present record was added by a save that was killed.
TEST_F(RestoreTest, UndoFilesOfTheReplacedDataGoWithIt) {
    const std::filesystem::path usage = DataFile("1_usage.talvor");
    {
        const std::string added = Before.at("1_usage.talvor").substr(32);
        const PlannedChange change{.OldLength = 32, .SlotLength = 32};
        ASSERT_TRUE(UndoFile::Begin(App.Files, usage, change, {32, added}));
    }
    Before = FilesIn(Data);
    ASSERT_TRUE(Before.contains("1_usage.talvor.mact.undo"));
    ExpectRestored();
}

TEST_F(RestoreTest, TemporaryFilesAreNeitherRestoredNorKept) {
    WriteContent(Set / "companies.talvor.mact.tmp", "of a killed copy");
    WriteContent(DataFile("1_additional.talvor.mact.tmp"), "of a killed copy");
    ExpectRestored();
}

TEST_F(RestoreTest, AFolderInTheDataFolderStaysAndIsNamed) {
    std::filesystem::create_directory(Data / "letters");
    WriteContent(Data / "letters" / "agency.txt", "Dear Sirs");
    const auto restored = Restore();
    ASSERT_TRUE(restored);
    EXPECT_EQ(restored->ReplacedFolder, ProgramFile("data.replaced"));
    EXPECT_EQ(ContentOf(ProgramFile("data.replaced") / "letters" / "agency.txt"), "Dear Sirs");
    EXPECT_EQ(FilesIn(Data), OfSet);
    EXPECT_FALSE(std::filesystem::exists(ProgramFile("restore.mact.note")));
    EXPECT_TRUE(StartUp(App));
    EXPECT_TRUE(std::filesystem::exists(ProgramFile("data.replaced")));
}

TEST_F(RestoreTest, AReplacedFolderThatStaysGetsAFreeName) {
    std::filesystem::create_directory(Data / "letters");
    std::filesystem::create_directory(ProgramFile("data.replaced"));
    WriteContent(ProgramFile("data.replaced2"), "a file of the user's");
    const auto restored = Restore();
    ASSERT_TRUE(restored);
    EXPECT_EQ(restored->ReplacedFolder, ProgramFile("data.replaced3"));
}

TEST_F(RestoreTest, AFileThatCannotBeBackedUpNeedsAnAnswerAndItsFolderStays) {
    LimitedFiles limited;
    limited.Limits[DataFile("1_usage.talvor")].LongestFile = 10;
    EXPECT_FALSE(RestoreWith(limited));
    ASSERT_EQ(AskedAboutBackup.size(), 1U);
    EXPECT_EQ(AskedAboutBackup.front(), "Cannot back up the file \"" + PathText(DataFile("1_usage.talvor")) +
                                            "\": The disk is damaged.");
    ExpectNothingHasHappened("");
    GoesOn = true;
    const auto restored = RestoreWith(limited);
    ASSERT_TRUE(restored);
    EXPECT_EQ(restored->KeptSet, ProgramFile("talvor_backupset_3"));
    EXPECT_EQ(restored->ReplacedFolder, ProgramFile("data.replaced"));
    EXPECT_EQ(FilesIn(Data), OfSet);
    EXPECT_EQ(FilesIn(ProgramFile("data.replaced")).at("1_usage.talvor"), Before.at("1_usage.talvor"));
}

TEST_F(RestoreTest, AFileOfTheSetThatCannotBeReadEndsItWithEverythingAsItWas) {
    LimitedFiles limited;
    limited.Limits[Set / "1_additional.talvor"].LongestFile = 3;
    EXPECT_FALSE(RestoreWith(limited));
    ExpectNothingHasHappened(CannotRestore("cannot copy the file \"" + PathText(Set / "1_additional.talvor") +
                                           "\": The disk is damaged"));
    EXPECT_FALSE(std::filesystem::exists(Kept));
}

TEST_F(RestoreTest, AnotherCopyThatIsSavingMustBeClosed) {
    const Result<std::unique_ptr<OpenedFile>> other = Files.Open(DataFile("1_usage.talvor"), OpenMode::Read);
    // From then on, so that the file can be kept in the set before.
    class LateLock : public WrappedFiles {
    public:
        explicit LateLock(OpenedFile& file) : m_file(file) {}
        Result<std::unique_ptr<OpenedFile>> Open(const std::filesystem::path& path, OpenMode mode) override {
            if (path.filename() == "1_additional.talvor.mact.tmp") {
                EXPECT_TRUE(m_file.Lock());
            }
            return WrappedFiles::Open(path, mode);
        }

    private:
        OpenedFile& m_file;
    } late(**other);
    EXPECT_FALSE(RestoreWith(late));
    ExpectNothingHasHappened(CannotRestore("another running copy of the program is working with the data; "
                                           "close it and try again"));
}

/// What another copy saves after the present data was copied into the kept set would be lost.
TEST_F(RestoreTest, AnotherCopyThatHasSavedMeanwhileMustBeClosed) {
    class LateSave : public WrappedFiles {
    public:
        explicit LateSave(AppContext& app) : m_app(app) {}
        Result<std::unique_ptr<OpenedFile>> Open(const std::filesystem::path& path, OpenMode mode) override {
            if (path.filename() == "1_additional.talvor.mact.tmp" && mode == OpenMode::Own && !m_hasSaved) {
                m_hasSaved = true;
                EXPECT_TRUE(AddNewCompany(m_app, "Gamma", "Dock 3"));
            }
            return WrappedFiles::Open(path, mode);
        }

    private:
        AppContext& m_app;
        bool m_hasSaved = false;
    } late(App);
    EXPECT_FALSE(RestoreWith(late));
    Before = FilesIn(Data);
    EXPECT_EQ(Before.at("companies.talvor").size(), 3U * 504);
    ExpectNothingHasHappened(CannotRestore("another running copy of the program is working with the data; "
                                           "close it and try again"));
}

TEST_F(RestoreTest, AnotherCopyThatIsRestoringIsWaitedForAndThenSaid) {
    {
        const Result<RestoreNote> other = RestoreNote::Take(App);
        ASSERT_TRUE(other);
        EXPECT_FALSE(Restore());
        EXPECT_EQ(ShownTexts(), Sentences{CannotRestore("cannot work with the data: another running copy of "
                                                        "the program is restoring a backup set")});
        const Done started = StartUp(App);
        ASSERT_FALSE(started);
        EXPECT_EQ(SentenceOf(started.error()), "Cannot work with the data: another running copy of the "
                                               "program is restoring a backup set.");
        EXPECT_EQ(FilesIn(Data), Before);
    }
    Prompts.Shown.clear();
    ExpectRestored();
}

#ifndef _WIN32
/// All of them are locked at once: three hundred companies have more files than a program may usually open.
TEST_F(RestoreTest, MoreFilesThanMayBeOpenAtOnceAreReplacedAllTheSame) {
    for (int company = 2; company <= 150; ++company)
        WriteContent(DataFile(std::to_string(company) + "_overview.txt"), "");
    Before = FilesIn(Data);
    struct rlimit limit {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    struct rlimit lower = limit;
    lower.rlim_cur = 120;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &lower), 0);
    ExpectRestored();
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
}

TEST_F(RestoreTest, AsManyOpenFilesAsNoSystemAllowsAreAFailure) {
    struct rlimit limit {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    const Done allowed = Files.AllowOpenFiles(std::size_t{1} << 40U);
    ASSERT_FALSE(allowed);
    EXPECT_EQ(SentenceOf(allowed.error()),
              "Cannot open 1099511627776 files at once: the system lets a program "
              "open no more than " +
                  std::to_string(limit.rlim_max) + ".");
}
#endif

TEST_F(RestoreTest, MoreFilesThanTheSystemAllowsAreRefusedWithEverythingAsItWas) {
    class FewFiles : public WrappedFiles {
    public:
        Done AllowOpenFiles(std::size_t count) override {
            return Failure{.Doing = "open " + std::to_string(count) + " files at once", .Reason = "too many"};
        }
    } few;
    EXPECT_FALSE(RestoreWith(few));
    ExpectNothingHasHappened(CannotRestore("cannot open 4 files at once: too many"));
}

/// Two openers: one has the file open when its folder is replaced, and saves afterwards.
TEST_F(RestoreTest, WhoHadAFileOpenSavesIntoTheRestoredOne) {
    const std::filesystem::path usage = DataFile("1_usage.talvor");
    Result<std::unique_ptr<OpenedFile>> opened = Files.Open(usage, OpenMode::Update);
    ASSERT_TRUE(opened);
    if (!Files.RenamesFoldersInUse()) GTEST_SKIP() << "an open file keeps its folder from being replaced";
    ExpectRestored();
    ASSERT_TRUE((*opened)->Lock());
    ASSERT_TRUE((*opened)->WriteAt(32, std::string(32, 'x')));
    EXPECT_EQ(ContentOf(usage), OfSet.at("1_usage.talvor") + std::string(32, 'x'));
}

/// The system's files, with something in the way of a rename.
class DisturbedRenames : public WrappedFiles {
public:
    std::function<void(const std::filesystem::path& from)> AfterRename = [](const auto&) {};
    std::string Refused{}; ///< the end of the folder's name that cannot be renamed

    Done RenameFolder(const std::filesystem::path& from, const std::filesystem::path& to) override {
        if (!Refused.empty() && PathText(from.filename()).ends_with(Refused))
            return Failure{"rename the folder", from, "It is in use"};
        const Done renamed = WrappedFiles::RenameFolder(from, to);
        AfterRename(from);
        return renamed;
    }
};

TEST_F(RestoreTest, AFirstRenameThatFailsChangesNothing) {
    DisturbedRenames files;
    files.Refused = "data";
    EXPECT_FALSE(RestoreWith(files));
    ExpectNothingHasHappened(
        CannotRestore("cannot rename the folder \"" + PathText(Data) + "\": It is in use"));
}

TEST_F(RestoreTest, ASecondRenameThatFailsIsTakenBack) {
    DisturbedRenames files;
    files.Refused = ".mact.new";
    EXPECT_FALSE(RestoreWith(files));
    ExpectNothingHasHappened(CannotRestore("cannot rename the folder \"" +
                                           PathText(ProgramFile("data.mact.new")) + "\": It is in use"));
}

/// By a copy of the program that looked for a restore just before there was one.
TEST_F(RestoreTest, ADataFolderMadeDuringTheRenamesIsPutAside) {
    DisturbedRenames files;
    int made = 0;
    files.AfterRename = [&](const std::filesystem::path& from) {
        if (from != Data || ++made > 1) return;
        std::filesystem::create_directory(Data);
        WriteContent(DataFile("hapcontents.talvor"), "a default table");
    };
    const auto restored = RestoreWith(files);
    ASSERT_TRUE(restored) << testing::PrintToString(ShownTexts());
    EXPECT_EQ(FilesIn(Data), OfSet);
    EXPECT_EQ(FilesIn(ProgramFile("data.replaced")), (Contents{
                                                         {"hapcontents.talvor", "a default table"}
    }));
    EXPECT_FALSE(std::filesystem::exists(ProgramFile("data.mact.old")));
}

TEST_F(RestoreTest, ARestoreThatCannotBeTakenBackIsFinishedByTheNextStart) {
    class NoWayBack : public WrappedFiles {
    public:
        Done RenameFolder(const std::filesystem::path& from, const std::filesystem::path& to) override {
            if (PathText(from).ends_with("data")) return WrappedFiles::RenameFolder(from, to);
            return Failure{"rename the folder", from, "It is in use"};
        }
    } stuck;
    EXPECT_FALSE(RestoreWith(stuck));
    EXPECT_EQ(ShownTexts(),
              Sentences{CannotRestore("cannot rename the folder \"" + PathText(ProgramFile("data.mact.new")) +
                                      "\": It is in use; the next start of the program "
                                      "finishes the restore")});
    EXPECT_FALSE(std::filesystem::exists(Data));
    ASSERT_TRUE(StartUp(App));
    EXPECT_EQ(FilesIn(Data), OfSet);
    ExpectNothingLeftOver();
}

TEST_F(RestoreTest, ADamagedDataFolderIsReplaced) {
    WriteContent(DataFile("1_usage.talvor"), std::string(32767 * 32 + 500, '\xFF'));
    WriteContent(DataFile("companies.talvor"), "x");
    WriteContent(DataFile("hapcontents.talvor"), "");
    std::filesystem::create_directory(DataFile("1_materials.talvor"));
    Before = FilesIn(Data);
    const auto restored = Restore();
    ASSERT_TRUE(restored) << testing::PrintToString(ShownTexts());
    EXPECT_EQ(FilesIn(Data), OfSet);
    EXPECT_EQ(FilesIn(Kept), Before);
    EXPECT_EQ(restored->ReplacedFolder, ProgramFile("data.replaced")); // for the folder in it
    EXPECT_EQ(App.CurrentCompanyName, "Acme");
}

TEST_F(RestoreTest, AMissingDataFolderIsMade) {
    std::filesystem::remove_all(Data);
    const auto restored = Restore();
    ASSERT_TRUE(restored) << testing::PrintToString(ShownTexts());
    EXPECT_EQ(restored->KeptSet, std::filesystem::path());
    EXPECT_EQ(FilesIn(Data), OfSet);
    ExpectNothingLeftOver();
}

TEST_F(RestoreTest, WhatIsLeftOfAnAttemptIsReplaced) {
    std::filesystem::create_directory(ProgramFile("data.mact.new"));
    WriteContent(ProgramFile("data.mact.new") / "9_usage.talvor", "half of it");
    ExpectRestored();
}

#ifndef _WIN32
/// As a copy is for a moment if its set is on a disk that may not be written to.
TEST_F(RestoreTest, WhatIsLeftOfAnAttemptIsReplacedEvenIfItMayNotBeWrittenTo) {
    std::filesystem::create_directory(ProgramFile("data.mact.new"));
    const std::filesystem::path left = ProgramFile("data.mact.new") / "1_usage.talvor";
    WriteContent(left, "cut off");
    std::filesystem::permissions(left, std::filesystem::perms::owner_read);
    ExpectRestored();
}

TEST_F(RestoreTest, LinksAndDevicesInTheSetAreNotRestored) {
    std::filesystem::create_symlink("/dev/zero", Set / "2_usage.talvor");
    WriteContent(Folder.Path() / "private.txt", "private");
    std::filesystem::create_symlink(Folder.Path() / "private.txt", Set / "2_materials.talvor");
    GoesOn = true;
    ExpectRestored();
    EXPECT_EQ(AskedAboutSet, (Sentences{"\"2_materials.talvor\" is a link, which is not restored.",
                                        "\"2_usage.talvor\" is a link, which is not restored."}));
}

TEST_F(RestoreTest, ALinkInThePlaceOfTheSecondFolderIsNotFollowed) {
    const std::filesystem::path elsewhere = Folder.Path() / "elsewhere";
    std::filesystem::create_directory(elsewhere);
    WriteContent(elsewhere / "1_usage.talvor", "of somebody else");
    std::filesystem::create_directory_symlink(elsewhere, ProgramFile("data.mact.new"));
    ExpectRestored();
    EXPECT_EQ(ContentOf(elsewhere / "1_usage.talvor"), "of somebody else");
}

TEST_F(RestoreTest, ADataFolderThatIsALinkStaysOne) {
    const std::filesystem::path disk = Folder.Path() / "other disk";
    std::filesystem::create_directory(disk);
    std::filesystem::rename(Data, disk / "shop");
    std::filesystem::create_directory_symlink("../other disk/shop/", Data);
    ExpectRestored();
    EXPECT_TRUE(std::filesystem::is_symlink(Data));
    EXPECT_EQ(FilesIn(disk / "shop"), OfSet);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk), {}), 1);
}

TEST_F(RestoreTest, ALinkToADataFolderMayEndWithADot) {
    const std::filesystem::path disk = Folder.Path() / "other disk";
    std::filesystem::create_directory(disk);
    std::filesystem::rename(Data, disk / "shop");
    std::filesystem::create_directory_symlink("../other disk/shop/.", Data);
    ExpectRestored();
    EXPECT_EQ(FilesIn(disk / "shop"), OfSet);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk), {}), 1);
}

TEST_F(RestoreTest, ALinkedDataFileIsKeptAndItsFolderStays) {
    const std::filesystem::path target = Folder.Path() / "usage on another disk";
    std::filesystem::rename(DataFile("1_usage.talvor"), target);
    std::filesystem::create_symlink(target, DataFile("1_usage.talvor"));
    const auto restored = Restore();
    ASSERT_TRUE(restored);
    EXPECT_EQ(FilesIn(Kept), Before);
    EXPECT_EQ(FilesIn(Data), OfSet);
    EXPECT_EQ(restored->ReplacedFolder, ProgramFile("data.replaced"));
    EXPECT_EQ(ContentOf(target), Before.at("1_usage.talvor"));
}

TEST_F(RestoreTest, TheRestoredFolderIsAsPrivateAndItsFilesCanBeWritten) {
    using std::filesystem::perms;
    std::filesystem::permissions(Data, perms::owner_all);
    std::filesystem::permissions(Set / "1_usage.talvor", perms::owner_read);
    ExpectRestored();
    EXPECT_EQ(std::filesystem::status(Data).permissions(), perms::owner_all);
    EXPECT_EQ(std::filesystem::status(DataFile("1_usage.talvor")).permissions(),
              perms::owner_read | perms::owner_write);
}
#endif

TEST_F(RestoreTest, WorksBehindTheGuardOfTheLinks) {
    OsFiles systemFiles;
    LinkGuard guard(systemFiles, App.ProgramFolder, {});
    ASSERT_TRUE(RestoreWith(guard)) << testing::PrintToString(ShownTexts());
    EXPECT_EQ(FilesIn(Data), OfSet);
    ExpectNothingLeftOver();
}

/// What the next start finds of a restore that was cut off.
class FinishRestoreTest : public RestoreTest {
protected:
    std::filesystem::path Second = ProgramFile("data.mact.new");
    std::filesystem::path Old = ProgramFile("data.mact.old");

    FinishRestoreTest() {
        std::filesystem::copy(Set, Second);
        std::filesystem::copy(Data, Kept);
    }
    void Note() {
        Result<RestoreNote> note = RestoreNote::Take(App);
        ASSERT_TRUE(note);
        ASSERT_TRUE(note->Write(Kept));
    }
    void ExpectFinished() {
        const Done started = StartUp(App);
        ASSERT_TRUE(started) << SentenceOf(started.error());
        EXPECT_EQ(FilesIn(Data), OfSet);
        ExpectNothingLeftOver();
    }
};

TEST_F(FinishRestoreTest, WithoutANoteNothingIsTouched) {
    ASSERT_TRUE(StartUp(App));
    EXPECT_EQ(FilesIn(Data), Before);
}

TEST_F(FinishRestoreTest, WithAnEmptyNoteTheSecondFolderIsRemoved) {
    WriteContent(ProgramFile("restore.mact.note"), "");
    ASSERT_TRUE(StartUp(App));
    EXPECT_EQ(FilesIn(Data), Before);
    ExpectNothingLeftOver();
}

TEST_F(FinishRestoreTest, ANoteThatWasNotWrittenToItsEndIsAnEmptyOne) {
    Note();
    const std::string note = ContentOf(ProgramFile("restore.mact.note"));
    for (std::size_t length = 0; length < note.size(); ++length) {
        for (const std::size_t zeros : {std::size_t{0}, note.size() - length}) {
            SCOPED_TRACE(length);
            WriteContent(ProgramFile("restore.mact.note"), note.substr(0, length) + Zeros(zeros));
            if (length + zeros == note.size() && length + 1 == note.size()) continue; // its last byte is zero
            ASSERT_TRUE(FinishRestore(App));
            ASSERT_EQ(FilesIn(Data), Before);
        }
    }
}

TEST_F(FinishRestoreTest, BeforeTheFirstRenameItIsFinished) {
    Note();
    ExpectFinished();
}

TEST_F(FinishRestoreTest, BetweenTheRenamesItIsFinished) {
    Note();
    std::filesystem::rename(Data, Old);
    ExpectFinished();
}

TEST_F(FinishRestoreTest, AfterTheRenamesItIsFinished) {
    Note();
    std::filesystem::rename(Data, Old);
    std::filesystem::rename(Second, Data);
    ExpectFinished();
}

TEST_F(FinishRestoreTest, WhileTheReplacedFolderWasBeingRemovedItIsFinished) {
    Note();
    std::filesystem::rename(Data, Old);
    std::filesystem::rename(Second, Data);
    std::filesystem::remove(Old / "1_usage.talvor");
    ExpectFinished();
}

TEST_F(FinishRestoreTest, AReplacedFolderThatHoldsMoreThanTheKeptSetStays) {
    Note();
    WriteContent(DataFile("3_usage.talvor"), Zeros(32));
    ASSERT_TRUE(StartUp(App));
    EXPECT_EQ(FilesIn(Data), OfSet);
    EXPECT_EQ(FilesIn(ProgramFile("data.replaced")).size(), Before.size() + 1);
    EXPECT_FALSE(std::filesystem::exists(ProgramFile("restore.mact.note")));
}

/// As an older copy of the program does, which knows nothing of the note.
TEST_F(FinishRestoreTest, ADataFolderMadeBetweenTheRenamesIsPutAside) {
    Note();
    std::filesystem::rename(Data, Old);
    std::filesystem::create_directory(Data);
    WriteContent(DataFile("hapcontents.talvor"), "a default table");
    ASSERT_TRUE(StartUp(App));
    EXPECT_EQ(FilesIn(Data), OfSet);
    EXPECT_EQ(FilesIn(ProgramFile("data.replaced")), (Contents{
                                                         {"hapcontents.talvor", "a default table"}
    }));
    EXPECT_FALSE(std::filesystem::exists(Old));
}

TEST_F(FinishRestoreTest, ANoteThatIsDamagedBetweenTheRenamesLeadsBack) {
    std::filesystem::rename(Data, Old);
    WriteContent(ProgramFile("restore.mact.note"), "damaged");
    ASSERT_TRUE(StartUp(App));
    EXPECT_EQ(FilesIn(Data), Before);
    ExpectNothingLeftOver();
}

TEST_F(FinishRestoreTest, FoldersThatAreNotThereAreAFailureAndTheNoteStays) {
    Note();
    std::filesystem::remove_all(Data);
    std::filesystem::remove_all(Second);
    const Done started = StartUp(App);
    ASSERT_FALSE(started);
    EXPECT_EQ(SentenceOf(started.error()),
              "Cannot finish the restore of a backup set \"" + PathText(Data) + "\": the folder is missing.");
    EXPECT_TRUE(std::filesystem::exists(ProgramFile("restore.mact.note")));
    EXPECT_FALSE(std::filesystem::exists(Data));
}

TEST_F(FinishRestoreTest, WaitsForTheCopyThatIsRestoring) {
    const Result<RestoreNote> other = RestoreNote::Take(App);
    ASSERT_TRUE(other);
    EXPECT_FALSE(FinishRestore(App));
    EXPECT_TRUE(std::filesystem::exists(Second));
}

} // namespace
} // namespace mact
