#include "app/backup.h"
#include "app/backup_script.h"
#include "base/text.h"
#include "tests/support/limited_files.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

#include <functional>

namespace mact {
namespace {

#ifdef _WIN32
constexpr char Separator = '\\';
constexpr const char* LineEnd = "\r\n";
#else
constexpr char Separator = '/';
constexpr const char* LineEnd = "\n";
#endif

class BackupTest : public testing::Test, public TestProgram {
protected:
    std::filesystem::path Base = Folder.Path() / "backup base";

    void UseBase() {
        std::filesystem::create_directory(Base);
        Settings.Values[{"BACKUP", "PATH"}] = PathText(Base);
    }
    std::string& Volume() { return Settings.Values[{"BACKUP", "BK_VOLUME"}]; }
    static std::filesystem::path SetIn(const std::filesystem::path& base, const std::string& number) {
        return base / ("talvor_backupset_" + number);
    }
    std::string Script() const { return ContentOf(ProgramFile("backup.bat")); }
    bool IsScriptThere() const { return std::filesystem::exists(ProgramFile("backup.bat")); }
    static std::string FileExists() { return ReasonOf(std::errc::file_exists, 183); }
    /// The only line that the script should have.
    std::string ScriptTo(const std::filesystem::path& target) const {
        return "copy \"" + PathText(App.ProgramFolder) + Separator + "data" + Separator + Separator +
               "*.*\" \"" + PathText(target) + Separator + "*.*\"" + LineEnd;
    }
};

TEST_F(BackupTest, TheFirstOneWithoutSettingsIsSet1InTheProgramFolder) {
    const std::filesystem::path target = SetIn(App.ProgramFolder, "1");
    EXPECT_EQ(RunBackup(App, true), target);
    EXPECT_TRUE(std::filesystem::is_directory(target));
    EXPECT_EQ(Volume(), "2");
    EXPECT_EQ(Script(), ScriptTo(target));
}

#ifndef _WIN32
TEST_F(BackupTest, AFolderThatCannotBeSeenIsNotTakenForMissing) {
    std::filesystem::create_symlink("loop", Folder.Path() / "loop"); // where it leads, the system cannot tell
    const std::filesystem::path base = Folder.Path() / "loop";
    Settings.Values[{"BACKUP", "PATH"}] = PathText(base);
    for (const auto& backUp : std::vector<std::function<void()>>{
             [&] { EXPECT_FALSE(RunBackup(App, true)); }, [&] { EXPECT_FALSE(RunBackupToItsEnd(App)); },
             [&] { BackUpOnRequest(App, [] { FAIL(); }); }}) {
        Prompts.Shown.clear();
        backUp();
        EXPECT_EQ(ShownTexts(),
                  std::vector<std::string>{"Cannot look for the folder \"" + PathText(base) + "\": " +
                                           ReasonOf(std::errc::too_many_symbolic_link_levels, 0) + '.'});
        EXPECT_FALSE(std::filesystem::exists(ProgramFile("talvor_backupset_1")));
    }
    EXPECT_EQ(Volume(), ""); // no number is used up
}
#endif

TEST_F(BackupTest, SettingsThatCannotBeReadAreNotTakenForUnset) {
    Settings.FailsToReadWith = Failure{.Doing = "read the settings"};
    for (const auto& backUp : std::vector<std::function<void()>>{
             [&] { EXPECT_FALSE(RunBackup(App, true)); }, [&] { EXPECT_FALSE(RunBackupToItsEnd(App)); },
             [&] { BackUpOnRequest(App, [] { FAIL(); }); }, [&] { BackUpOnExit(App); }}) {
        Prompts.Shown.clear();
        backUp();
        EXPECT_EQ(ShownTexts(), std::vector<std::string>{"Cannot read the settings."});
        EXPECT_FALSE(std::filesystem::exists(ProgramFile("talvor_backupset_1")));
        EXPECT_FALSE(Settings.Values.contains({"BACKUP", "BK_VOLUME"}));
    }
}

TEST_F(BackupTest, AVolumeThatIsNoNumberIs1) {
    Volume() = "abc";
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "1"));
    EXPECT_EQ(Volume(), "2");
}

TEST_F(BackupTest, EachSetHasTheNextNumber) {
    Volume() = "9";
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "9"));
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "10"));
    EXPECT_EQ(Volume(), "11");
}

struct VolumeCase {
    const char* Name;
    const char* Text;
    double Volume;
};
void PrintTo(const VolumeCase& given, std::ostream* out) {
    *out << given.Name;
}
constexpr VolumeCase VolumeCases[] = {
    {"Missing",            "",                  1                },
    {"Whole",              "12",                12               },
    {"WithBlanksAround",   " 7\t",              7                },
    {"Fraction",           "2.5",               2.5              },
    {"SmallFraction",      "1e-5",              0.00001          },
    {"FractionOfItsText",  "123456789012345.5", 123456789012346  },
    {"Negative",           "-3",                -3               },
    {"NegativeFraction",   "-0.5",              -0.5             },
    {"NegativeZero",       "-0",                0                },
    {"Scientific",         "1e3",               1000             },
    {"Largest",            "9007199254740991",  9007199254740991 },
    {"LargestNegative",    "-9007199254740991", -9007199254740991},
    {"TooLarge",           "9007199254740992",  1                },
    {"BeyondWholeNumbers", "1e300",             1                },
    {"Infinite",           "1e999",             1                },
    {"Hexadecimal",        "0x10",              1                },
    {"WithText",           "3 sets",            1                },
};
class BackupVolumeTest : public testing::TestWithParam<VolumeCase> {};
TEST_P(BackupVolumeTest, IsReadAs) {
    EXPECT_EQ(BackupVolume(GetParam().Text), GetParam().Volume);
}
INSTANTIATE_TEST_SUITE_P(Texts, BackupVolumeTest, testing::ValuesIn(VolumeCases),
                         [](const auto& given) { return given.param.Name; });

TEST_F(BackupTest, AFractionIsUsedAsItIsAndCountedUp) {
    Volume() = "2.5";
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "2.5"));
    EXPECT_EQ(Volume(), "3.5");
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "3.5"));
    EXPECT_EQ(Volume(), "4.5");
}

TEST_F(BackupTest, ANegativeFractionIsCountedUpBeyondZero) {
    Volume() = "-0.25";
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "-0.25"));
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "0.75"));
    EXPECT_EQ(Volume(), "1.75");
}

TEST_F(BackupTest, NegativeZeroIsZero) {
    Volume() = "-0";
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "0"));
    EXPECT_EQ(Volume(), "1");
}

TEST_F(BackupTest, AFractionTooLongForItsTextIsCountedUpAllTheSame) {
    Volume() = "123456789012345.5"; // 15 digits are written
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "123456789012346"));
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "123456789012347"));
}

TEST_F(BackupTest, TheLargestVolumeHasANextOne) {
    Volume() = "9007199254740991";
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "9007199254740991"));
    EXPECT_EQ(Volume(), "9007199254740992");
}

TEST_F(BackupTest, ADefinedFolderTakesTheSets) {
    UseBase();
    EXPECT_EQ(RunBackup(App, true), SetIn(Base, "1"));
    EXPECT_EQ(Script(), ScriptTo(SetIn(Base, "1")));
    EXPECT_FALSE(std::filesystem::exists(SetIn(App.ProgramFolder, "1")));
}

TEST_F(BackupTest, AMissingFolderGivesWayToTheProgramFolder) {
    Settings.Values[{"BACKUP", "PATH"}] = PathText(Base);
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "1"));
}

TEST_F(BackupTest, AFileInTheFoldersPlaceGivesWayToTheProgramFolder) {
    WriteContent(Base, "x");
    Settings.Values[{"BACKUP", "PATH"}] = PathText(Base);
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "1"));
}

TEST_F(BackupTest, SeparatorsAtTheEndOfAFolderAreNotDoubled) {
    UseBase();
    Settings.Values[{"BACKUP", "PATH"}] += std::string(2, Separator);
    EXPECT_EQ(RunBackup(App, true), SetIn(Base, "1"));
    EXPECT_EQ(Script(), ScriptTo(SetIn(Base, "1")));
}

TEST_F(BackupTest, TheScriptIsStartedHidden) {
    RunBackup(App, true);
    ASSERT_EQ(Programs.Started.size(), 1U);
    const ProgramStart& start = Programs.Started.front();
    const std::string script = PathText(ProgramFile("backup.bat"));
    EXPECT_TRUE(start.HasHiddenWindow);
    EXPECT_EQ(start.CommandLine, '"' + script + '"');
    EXPECT_EQ(PathText(start.Script), script);
    EXPECT_EQ(start.Program, "/bin/sh");
    ASSERT_EQ(start.Arguments.size(), 4U);
    EXPECT_EQ(start.Arguments[0], "-c");
    EXPECT_EQ(start.Arguments[3], script);
}

TEST_F(BackupTest, WhatTheShellRunsIsTheSameForEveryFolder) {
    RunBackup(App, true);
    UseBase();
    RunBackup(App, true);
    ASSERT_EQ(Programs.Started.size(), 2U);
    EXPECT_EQ(Programs.Started[0].Arguments[1], Programs.Started[1].Arguments[1]);
}

TEST_F(BackupTest, AnEarlierScriptIsReplaced) {
    WriteContent(ProgramFile("backup.bat"), std::string(5000, 'x'));
    RunBackup(App, true);
    EXPECT_EQ(Script(), ScriptTo(SetIn(App.ProgramFolder, "1")));
}

TEST_F(BackupTest, TheCompletionIsToldBeforeAnythingIsCopied) {
    WriteContent(DataFile("companies.talvor"), "x");
    RunBackup(App, true); // the script is written but never run
    EXPECT_EQ(Prompts.Shown.size(), 1U);
    EXPECT_TRUE(std::filesystem::is_empty(SetIn(App.ProgramFolder, "1")));
}

TEST_F(BackupTest, TheCompletionNamesTheFolder) {
    const std::filesystem::path target = SetIn(App.ProgramFolder, "1");
    RunBackup(App, true);
    ASSERT_EQ(Prompts.Shown.size(), 1U);
    EXPECT_EQ(Prompts.LastText(), "Backup has been completed in folder " + PathText(target));
    EXPECT_EQ(Prompts.Shown.front().Kind, PromptKind::Information);
    EXPECT_EQ(Prompts.Shown.front().Buttons, PromptButtons::Ok);
}

TEST_F(BackupTest, WithoutTheMessageNothingIsShown) {
    EXPECT_TRUE(RunBackup(App, false));
    EXPECT_TRUE(Prompts.Shown.empty());
    EXPECT_EQ(Programs.Started.size(), 1U);
}

TEST_F(BackupTest, AFolderOfThatNumberIsToldAndGetsTheFilesAllTheSame) {
    const std::filesystem::path target = SetIn(App.ProgramFolder, "1");
    std::filesystem::create_directory(target);
    EXPECT_EQ(RunBackup(App, true), target);
    EXPECT_EQ(ShownTexts(),
              (std::vector<std::string>{"Cannot create the folder \"" + PathText(target) +
                                            "\": " + FileExists() + ".",
                                        "Backup has been completed in folder " + PathText(target)}));
    EXPECT_EQ(Prompts.Shown.front().Kind, PromptKind::Failure);
    EXPECT_EQ(Programs.Started.size(), 1U);
    EXPECT_EQ(Script(), ScriptTo(target));
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "2"));
}

TEST_F(BackupTest, WithoutAFolderToCopyIntoNothingIsStarted) {
    const std::filesystem::path target = SetIn(App.ProgramFolder, "1");
    WriteContent(target, "a file in the folder's place");
    WriteContent(ProgramFile("backup.bat"), "an older one");
    EXPECT_FALSE(RunBackup(App, true));
    EXPECT_EQ(ShownTexts(), std::vector<std::string>{"Cannot create the folder \"" + PathText(target) +
                                                     "\": " + FileExists() + "."});
    EXPECT_TRUE(Programs.Started.empty());
    EXPECT_EQ(Script(), "an older one");
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "2"));
}

#ifndef _WIN32
TEST_F(BackupTest, ALinkInTheSetsPlaceIsNotFollowed) {
    const std::filesystem::path target = SetIn(App.ProgramFolder, "1");
    WriteContent(DataFile("companies.talvor"), "x");
    std::filesystem::create_directory_symlink("data", target);
    for (const auto& run : {std::function([&] { return RunBackup(App, true); }),
                            std::function([&] { return RunBackupToItsEnd(App); })}) {
        Volume() = "1";
        Prompts.Shown.clear();
        EXPECT_FALSE(run());
        EXPECT_EQ(ShownTexts(), std::vector<std::string>{"Cannot create the folder \"" + PathText(target) +
                                                         "\": File exists."});
    }
    EXPECT_TRUE(Programs.Started.empty());
    EXPECT_EQ(ContentOf(DataFile("companies.talvor")), "x");
}
#endif

TEST_F(BackupTest, ADataFolderThatCannotBeReadIsAFailureAndNothingIsStarted) {
    std::filesystem::remove(App.ProgramFolder / "data");
    EXPECT_FALSE(RunBackup(App, true));
    ASSERT_EQ(Prompts.Shown.size(), 1U);
    EXPECT_TRUE(Prompts.LastText().starts_with("Cannot read the folder \"" +
                                               PathText(App.ProgramFolder / "data") + "\": "))
        << Prompts.LastText();
    EXPECT_TRUE(Programs.Started.empty());
}

TEST_F(BackupTest, ANoteThatCannotBeWrittenIsAFailureAndNothingIsStarted) {
    std::filesystem::create_directory(ProgramFile("backup.mact.note"));
    EXPECT_FALSE(RunBackup(App, true));
    EXPECT_EQ(ShownTexts(),
              std::vector<std::string>{"Cannot open the file \"" + PathText(ProgramFile("backup.mact.note")) +
                                       "\": Is a directory."});
    EXPECT_TRUE(Programs.Started.empty());
}

TEST_F(BackupTest, AScriptThatCannotBeWrittenIsAFailureAndNothingIsStarted) {
    std::filesystem::create_directory(ProgramFile("backup.bat"));
    EXPECT_FALSE(RunBackup(App, true));
    EXPECT_EQ(ShownTexts(),
              std::vector<std::string>{"Cannot open the file \"" + PathText(ProgramFile("backup.bat")) +
                                       "\": Is a directory."});
    EXPECT_TRUE(Programs.Started.empty());
    EXPECT_TRUE(std::filesystem::is_directory(SetIn(App.ProgramFolder, "1")));
    EXPECT_FALSE(std::filesystem::exists(ProgramFile("backup.mact.note")));
}

TEST_F(BackupTest, AFullDiskKeepsTheOlderScriptAndDoesNotStartIt) {
    WriteContent(ProgramFile("backup.bat"), "an older one");
    LimitedFiles files;
    files.Limits[TemporaryFor(ProgramFile("backup.bat"))].LongestFile = 10;
    AppContext app{Prompts, Settings, Programs, Dialogs, Calendar, files, App.ProgramFolder};
    EXPECT_FALSE(RunBackup(app, true));
    EXPECT_EQ(ShownTexts(),
              std::vector<std::string>{"Cannot write the file \"" + PathText(ProgramFile("backup.bat")) +
                                       "\": The disk is full."});
    EXPECT_TRUE(Programs.Started.empty());
    EXPECT_EQ(Script(), "an older one");
}

TEST_F(BackupTest, AScriptThatCannotBeStartedIsAFailureAndNoCompletion) {
    Programs.FailsWith = Failure{.Reason = "Cannot start"};
    EXPECT_FALSE(RunBackup(App, true));
    EXPECT_EQ(ShownTexts(), std::vector<std::string>{"Cannot start."});
    EXPECT_FALSE(std::filesystem::exists(ProgramFile("backup.mact.note")));
    EXPECT_TRUE(std::filesystem::is_directory(SetIn(App.ProgramFolder, "1")));
}

TEST_F(BackupTest, ANumberThatCannotBeSavedIsShownAndTheBackupIsMade) {
    Settings.FailsWith = Failure{.Reason = "Cannot save"};
    EXPECT_EQ(RunBackup(App, true), SetIn(App.ProgramFolder, "1"));
    EXPECT_EQ(ShownTexts(),
              (std::vector<std::string>{"Cannot save.", "Backup has been completed in folder " +
                                                            PathText(SetIn(App.ProgramFolder, "1"))}));
    EXPECT_EQ(Programs.Started.size(), 1U);
}

class BackupOnRequest : public BackupTest {
protected:
    int AskedToDefine = 0;
    void Press(PromptAnswer answer) {
        Prompts.Answers = {answer};
        BackUpOnRequest(App, [this] {
            ++AskedToDefine;
            UseBase();
        });
    }
    bool IsQuestionShown() const {
        return !Prompts.Shown.empty() && Prompts.Shown.front().Kind == PromptKind::Question;
    }
};

TEST_F(BackupOnRequest, WithoutAFolderTheUserIsAsked) {
    Press(PromptAnswer::Cancel);
    ASSERT_EQ(Prompts.Shown.size(), 1U);
    EXPECT_EQ(Prompts.LastText(),
              "You do not have a backup folder defined. By default the program will make backups in the "
              "program folder.\r\nDo you want to define backup folder now?");
    EXPECT_EQ(Prompts.Shown.front().Kind, PromptKind::Question);
    EXPECT_EQ(Prompts.Shown.front().Buttons, PromptButtons::YesNoCancel);
}

TEST_F(BackupOnRequest, CancelDoesNothing) {
    Press(PromptAnswer::Cancel);
    EXPECT_TRUE(Programs.Started.empty());
    EXPECT_FALSE(IsScriptThere());
    EXPECT_EQ(Settings.Values.size(), 0U);
    EXPECT_EQ(AskedToDefine, 0);
}

TEST_F(BackupOnRequest, NoBacksUpInTheProgramFolder) {
    Press(PromptAnswer::No);
    EXPECT_EQ(AskedToDefine, 0);
    EXPECT_EQ(Script(), ScriptTo(SetIn(App.ProgramFolder, "1")));
    EXPECT_EQ(Prompts.LastText(),
              "Backup has been completed in folder " + PathText(SetIn(App.ProgramFolder, "1")));
}

TEST_F(BackupOnRequest, YesLetsTheUserDefineTheFolderAndBacksUpThere) {
    Press(PromptAnswer::Yes);
    EXPECT_EQ(AskedToDefine, 1);
    EXPECT_EQ(Prompts.LastText(), "Backup has been completed in folder " + PathText(SetIn(Base, "1")));
}

TEST_F(BackupOnRequest, AFolderThatIsGoneIsAskedFor) {
    Settings.Values[{"BACKUP", "PATH"}] = PathText(Base);
    Press(PromptAnswer::Cancel);
    EXPECT_TRUE(IsQuestionShown());
}

TEST_F(BackupOnRequest, AFolderThatIsThereIsNotAskedFor) {
    UseBase();
    Press(PromptAnswer::Cancel);
    EXPECT_EQ(ShownTexts(),
              std::vector<std::string>{"Backup has been completed in folder " + PathText(SetIn(Base, "1"))});
}

TEST_F(BackupTest, OnExitItIsMadeWithoutAMessageWhenTheSettingIs1) {
    Settings.Values[{"BACKUP", "AUTO_BACKUP"}] = "1";
    BackUpOnExit(App);
    EXPECT_EQ(Programs.Started.size(), 1U);
    EXPECT_TRUE(Prompts.Shown.empty());
}

TEST_F(BackupTest, OnExitNoneIsMadeUnlessTheSettingIs1ToTheLetter) {
    for (const char* setting : {"", "0", "2", "yes", "1.0", " 1", "-1"}) {
        Settings.Values[{"BACKUP", "AUTO_BACKUP"}] = setting;
        BackUpOnExit(App);
        EXPECT_TRUE(Programs.Started.empty()) << setting;
    }
    EXPECT_FALSE(IsScriptThere());
}

} // namespace
} // namespace mact
