#include "app/configuration.h"
#include "base/text.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace mact {
namespace {

class ConfigurationTest : public testing::Test, public TestProgram {
protected:
    std::filesystem::path Backups = Folder.Path() / u8"backups of Łódź, 100% é";
    std::filesystem::path Browser = Folder.Path() / u8"bröwser";

    ConfigurationTest() {
        std::filesystem::create_directory(Backups);
        WriteContent(Browser, "");
    }
    std::string& BackupPath() { return Settings.Values[{"BACKUP", "PATH"}]; }
    std::string& AutoBackup() { return Settings.Values[{"BACKUP", "AUTO_BACKUP"}]; }
    std::string& BrowserPath() { return Settings.Values[{"BROWSER", "PATH"}]; }
};

TEST_F(ConfigurationTest, WithoutSettingsItIsTheProgramFolderNoBrowserAndNoBackupOnExit) {
    const Configuration read = ReadConfiguration(App);
    EXPECT_EQ(read.BackupFolder, PathText(App.ProgramFolder));
    EXPECT_EQ(read.Browser, "");
    EXPECT_FALSE(read.IsBackedUpOnExit);
}

TEST_F(ConfigurationTest, SettingsAreShownAsTheyAre) {
    BackupPath() = PathText(Backups);
    AutoBackup() = "1";
    BrowserPath() = PathText(Browser);
    const Configuration read = ReadConfiguration(App);
    EXPECT_EQ(read.BackupFolder, PathText(Backups));
    EXPECT_EQ(read.Browser, PathText(Browser));
    EXPECT_TRUE(read.IsBackedUpOnExit);
}

TEST_F(ConfigurationTest, ABackupFolderThatWasDeletedIsShownAsTheProgramFolder) {
    BackupPath() = PathText(Backups);
    std::filesystem::remove(Backups);
    EXPECT_EQ(ReadConfiguration(App).BackupFolder, PathText(App.ProgramFolder));
}

#ifndef _WIN32
TEST_F(ConfigurationTest, WhatCannotBeSeenIsShownAsItIsSet) {
    std::filesystem::create_symlink("loop", Folder.Path() / "loop"); // where it leads, the system cannot tell
    const std::string loop = PathText(Folder.Path() / "loop");
    Settings.Values[{"BACKUP", "PATH"}] = loop;
    Settings.Values[{"BROWSER", "PATH"}] = loop;
    EXPECT_EQ(ReadConfiguration(App).BackupFolder, loop);
    EXPECT_EQ(ReadConfiguration(App).Browser, loop);
    EXPECT_FALSE(ReadConfiguration(App).Unread);
    EXPECT_EQ(SaveConfiguration(Settings, {.BackupFolder = loop, .Browser = loop}).size(), 1U); // the browser
    EXPECT_EQ(BrowserPath(), loop);
}
#endif

TEST_F(ConfigurationTest, AFileIsNoBackupFolder) {
    BackupPath() = PathText(Browser);
    EXPECT_EQ(ReadConfiguration(App).BackupFolder, PathText(App.ProgramFolder));
}

TEST_F(ConfigurationTest, ABrowserThatIsGoneIsShownAsNone) {
    BrowserPath() = PathText(Browser);
    std::filesystem::remove(Browser);
    EXPECT_EQ(ReadConfiguration(App).Browser, "");
}

TEST_F(ConfigurationTest, AFolderIsNoBrowser) {
    BrowserPath() = PathText(Backups);
    EXPECT_EQ(ReadConfiguration(App).Browser, "");
}

TEST_F(ConfigurationTest, TheBackupOnExitIsCheckedWhenTheTextIsTheNumber1) {
    for (const char* text : {"1", " 1", "1.0", "+1"}) {
        AutoBackup() = text;
        EXPECT_TRUE(ReadConfiguration(App).IsBackedUpOnExit) << text;
    }
    for (const char* text : {"", "0", "2", "-1", "yes", "1e999"}) {
        AutoBackup() = text;
        EXPECT_FALSE(ReadConfiguration(App).IsBackedUpOnExit) << text;
    }
}

TEST_F(ConfigurationTest, EverythingIsSaved) {
    EXPECT_TRUE(
        SaveConfiguration(Settings, {PathText(Backups), true, "  " + PathText(Browser) + " "}).empty());
    EXPECT_EQ(BackupPath(), PathText(Backups));
    EXPECT_EQ(AutoBackup(), "1");
    EXPECT_EQ(BrowserPath(), PathText(Browser));
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(ConfigurationTest, NoBackupOnExitIsSavedAs0) {
    EXPECT_TRUE(SaveConfiguration(Settings, {}).empty());
    EXPECT_EQ(AutoBackup(), "0");
}

TEST_F(ConfigurationTest, AnEmptyBackupFolderIsNotSaved) {
    BackupPath() = "earlier";
    EXPECT_TRUE(SaveConfiguration(Settings, {}).empty());
    EXPECT_EQ(BackupPath(), "earlier");
}

TEST_F(ConfigurationTest, AClearedBrowserIsSavedAsTheEmptyText) {
    for (const char* text : {"", "   "}) {
        BrowserPath() = PathText(Browser);
        EXPECT_TRUE(SaveConfiguration(Settings, {.BackupFolder = "", .Browser = text}).empty());
        EXPECT_EQ(BrowserPath(), "");
    }
}

TEST_F(ConfigurationTest, ABrowserThatIsNotThereLeavesTheEarlierOneWithoutAWord) {
    BrowserPath() = PathText(Browser);
    for (const std::filesystem::path& other : {Folder.Path() / "missing", Backups}) {
        EXPECT_TRUE(SaveConfiguration(Settings, {.BackupFolder = "", .Browser = PathText(other)}).empty());
        EXPECT_EQ(BrowserPath(), PathText(Browser));
    }
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(ConfigurationTest, WithoutSettingsNoSystemBrowserAndTheDesktopsColours) {
    EXPECT_FALSE(ReadConfiguration(App).UsesSystemBrowser);
    EXPECT_EQ(ReadConfiguration(App).WindowColours, "");
}

TEST_F(ConfigurationTest, TheSystemsBrowserIsSavedAs1Or0) {
    EXPECT_TRUE(
        SaveConfiguration(Settings, {.BackupFolder = "", .Browser = "", .UsesSystemBrowser = true}).empty());
    EXPECT_EQ(Settings.Read("BROWSER", "SYSTEM"), "1");
    EXPECT_TRUE(ReadConfiguration(App).UsesSystemBrowser);
    EXPECT_TRUE(SaveConfiguration(Settings, {}).empty());
    EXPECT_EQ(Settings.Read("BROWSER", "SYSTEM"), "0");
    EXPECT_FALSE(ReadConfiguration(App).UsesSystemBrowser);
}

TEST_F(ConfigurationTest, TheColoursAreSavedAsWords) {
    for (const char* text : {"light", "dark", ""}) {
        EXPECT_TRUE(
            SaveConfiguration(Settings, {.BackupFolder = "", .Browser = "", .WindowColours = text}).empty());
        EXPECT_EQ(Settings.Read("LOOKS", "COLORS"), text);
        EXPECT_EQ(ReadConfiguration(App).WindowColours, text);
    }
}

TEST_F(ConfigurationTest, ColoursThatAreNotKnownAreShownAsTheDesktops) {
    Settings.Values[{"LOOKS", "COLORS"}] = "pink";
    EXPECT_EQ(ReadConfiguration(App).WindowColours, "");
}

TEST_F(ConfigurationTest, WhatHasNotChangedOfTheTwoIsNotWritten) {
    EXPECT_TRUE(SaveConfiguration(Settings, {}).empty());
    EXPECT_FALSE(Settings.Values.contains({"BROWSER", "SYSTEM"}));
    EXPECT_FALSE(Settings.Values.contains({"LOOKS", "COLORS"}));
}

TEST_F(ConfigurationTest, ABrowserIsSavedIfItIsThereOrEmpty) {
    EXPECT_TRUE(IsBrowserToBeSaved(""));
    EXPECT_TRUE(IsBrowserToBeSaved("  "));
    EXPECT_TRUE(IsBrowserToBeSaved(" " + PathText(Browser) + " "));
    EXPECT_FALSE(IsBrowserToBeSaved(PathText(Folder.Path() / "missing")));
    EXPECT_FALSE(IsBrowserToBeSaved(PathText(Backups)));
}

std::vector<std::string> SentencesOf(const std::vector<Failure>& failures) {
    std::vector<std::string> sentences(failures.size());
    std::ranges::transform(failures, sentences.begin(), SentenceOf);
    return sentences;
}

TEST_F(ConfigurationTest, EachSettingThatCannotBeSavedIsAFailure) {
    Settings.FailsWith = Failure{.Reason = "Cannot save"};
    EXPECT_EQ(SentencesOf(SaveConfiguration(Settings, {PathText(Backups), true, PathText(Browser)})),
              std::vector<std::string>(3, "Cannot save."));
}

/// A store that cannot save one key.
class PartlyBrokenSettings : public ScriptedSettings {
public:
    Done Write(std::string_view section, std::string_view key, std::string_view value) override {
        if (section == "BACKUP" && key == "PATH") return Failure{.Reason = "Cannot save the folder"};
        return ScriptedSettings::Write(section, key, value);
    }
};

TEST_F(ConfigurationTest, ASettingThatCannotBeSavedDoesNotHoldUpTheOthers) {
    PartlyBrokenSettings settings;
    EXPECT_EQ(SentencesOf(SaveConfiguration(settings, {PathText(Backups), true, PathText(Browser)})),
              std::vector<std::string>{"Cannot save the folder."});
    EXPECT_EQ(settings.Read("BACKUP", "AUTO_BACKUP"), "1");
    EXPECT_EQ(settings.Read("BROWSER", "PATH"), PathText(Browser));
}

} // namespace
} // namespace mact
