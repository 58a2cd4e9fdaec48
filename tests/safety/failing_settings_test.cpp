#include "app/backup.h"
#include "app/configuration.h"
#include "base/text.h"
#include "store/companies.h"
#include "tests/support/folder_content.h"
#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

/// Settings in which one write, counted from 1, fails.
class FailingSettings : public ScriptedSettings {
public:
    void Start(int failingWrite) {
        Values.clear();
        m_failingWrite = failingWrite;
        m_count = 0;
    }

    Done Write(std::string_view section, std::string_view key, std::string_view value) override {
        if (++m_count == m_failingWrite) return Failure{.Doing = "save the setting " + std::string(key)};
        return ScriptedSettings::Write(section, key, value);
    }

private:
    int m_failingWrite = 0;
    int m_count = 0;
};

class FailingSettingsTest : public testing::Test, public TestProgram {
protected:
    FailingSettings SettingsThatFail;
    AppContext Faulty{Prompts, SettingsThatFail, Programs, Dialogs, Calendar, Files, App.ProgramFolder, 1};

    void FailAt(int write) {
        SettingsThatFail.Start(write);
        Prompts.Shown.clear();
    }
    std::string Saved(const std::string& section, const std::string& key) {
        return SettingsThatFail.Read(section, key);
    }
};

TEST_F(FailingSettingsTest, OneOfTheThreeThatIsNotSavedIsShownAndTheOthersAreSaved) {
    WriteContent(ProgramFile("browser"), "");
    const std::map<std::pair<std::string, std::string>, std::string> all = {
        {{"BACKUP", "PATH"},        PathText(App.ProgramFolder)     },
        {{"BACKUP", "AUTO_BACKUP"}, "1"                             },
        {{"BROWSER", "PATH"},       PathText(ProgramFile("browser"))},
    };
    for (int write = 1; write <= 4; ++write) {
        FailAt(write);
        EXPECT_EQ(SaveConfiguration(Faulty.Settings,
                                    {PathText(App.ProgramFolder), true, PathText(ProgramFile("browser"))})
                      .size(),
                  write <= 3 ? 1U : 0U);
        EXPECT_EQ(SettingsThatFail.Values.size(), write <= 3 ? 2U : 3U);
        for (const auto& [key, value] : SettingsThatFail.Values)
            EXPECT_EQ(value, all.at(key));
    }
}

TEST_F(FailingSettingsTest, ACompanyThatCannotBeRememberedIsAFailureAndIsCurrentAllTheSame) {
    FailAt(1);
    EXPECT_TRUE(ShowFailure(
        Faulty, SelectCompany(Faulty, {.CompanyId = 3, .CompanyName = "Acme", .CompanyLocation = "Dock 1"})));
    EXPECT_EQ(ShownTexts(), std::vector<std::string>{"Cannot save the setting DEFAULT."});
    EXPECT_EQ(Faulty.CurrentCompanyId, 3);
    EXPECT_EQ(Saved("COMPANY", "DEFAULT"), "");
}

TEST_F(FailingSettingsTest, ABackupWhoseNextNumberIsNotSavedIsMadeAllTheSame) {
    FailAt(1);
    EXPECT_EQ(RunBackup(Faulty, false), ProgramFile("talvor_backupset_1"));
    EXPECT_EQ(ShownTexts(), std::vector<std::string>{"Cannot save the setting BK_VOLUME."});
    EXPECT_EQ(Programs.Started.size(), 1U);
}

TEST_F(FailingSettingsTest, ABackupThatCannotBeStartedIsShownAndHarmsNoData) {
    WriteContent(DataFile("1_usage.talvor"), std::string(32, 'x'));
    const auto data = FilesIn(App.ProgramFolder / "data");
    Programs.FailsWith = Failure{.Reason = "Cannot start the shell"};
    EXPECT_FALSE(RunBackup(Faulty, true).has_value());
    EXPECT_EQ(ShownTexts(), std::vector<std::string>{"Cannot start the shell."});
    EXPECT_EQ(FilesIn(App.ProgramFolder / "data"), data);
}

} // namespace
} // namespace mact
