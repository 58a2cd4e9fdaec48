#include "app/frm_config.h"
#include "base/text.h"
#include "store/additional_names.h"
#include "store/frm_extra_pollutants_names.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace mact {
namespace {

/// Settings with a backup folder and a browser that exist. Their names have letters beyond the code page.
struct ConfigProgram : TestProgram {
    std::filesystem::path Backups = Folder.Path() / u8"Łódź";
    std::filesystem::path Browser = Folder.Path() / u8"bröwser Ł";

    ConfigProgram() {
        std::filesystem::create_directory(Backups);
        WriteContent(Browser, "");
        Settings.Values[{"BACKUP", "PATH"}] = PathText(Backups);
        Settings.Values[{"BACKUP", "AUTO_BACKUP"}] = "1";
        Settings.Values[{"BROWSER", "PATH"}] = PathText(Browser);
    }
    void Show(const std::function<void(frmConfig&)>& act) {
        InNextModal<frmConfig>(act);
        ShowConfiguration(App, nullptr);
    }
};

void Press(const QWidget& window, const char* button) {
    Named<QPushButton>(window, button).click();
}

void Type(const QWidget& window, const QString& browser) {
    auto& edit = Named<QLineEdit>(window, "txt_browser");
    edit.clear();
    edit.insert(browser);
}

QString Text(const std::filesystem::path& path) {
    return QString::fromStdString(PathText(path));
}

} // namespace

class frm_config_test : public QObject {
    Q_OBJECT

private slots:
    void Settings_that_cannot_be_read_are_told_and_no_window_can_overwrite_them() {
        ConfigProgram program;
        program.Settings.FailsToReadWith = Failure{.Doing = "read the settings"};
        ShowConfiguration(program.App, nullptr); // would wait for ever if it showed the window
        QCOMPARE(program.ShownTexts(), std::vector<std::string>{"Cannot read the settings."});
    }

    void Has_the_words_that_belong_to_it() {
        ConfigProgram program;
        const frmConfig window(program.App, nullptr);
        QCOMPARE(window.windowTitle(), QStringLiteral("System Configuration"));
        QCOMPARE(TextOf<QPushButton>(window, "cmd_ExtraPollutants"), std::string("&Extra Pollutants Names"));
        QString caption = Named<QCheckBox>(window, "chk_auto").text();
        QCOMPARE(caption.remove(u'&'),
                 QStringLiteral("Automatically backup all the data files when I exit the program."));
    }

    void Shows_the_settings_with_all_their_letters() {
        ConfigProgram program;
        const frmConfig window(program.App, nullptr);
        QCOMPARE(TextOf<QLineEdit>(window, "dir_backup"), PathText(program.Backups));
        QCOMPARE(TextOf<QLineEdit>(window, "txt_browser"), PathText(program.Browser));
        QVERIFY(Named<QCheckBox>(window, "chk_auto").isChecked());
    }

    void The_folder_can_be_read_and_copied_but_not_typed() {
        ConfigProgram program;
        const frmConfig window(program.App, nullptr);
        const auto& folder = Named<QLineEdit>(window, "dir_backup");
        QVERIFY(folder.isReadOnly());
        QVERIFY(folder.isEnabled());
        QVERIFY(folder.focusPolicy() & Qt::TabFocus);
    }

    void A_backup_folder_that_was_deleted_is_shown_as_the_program_folder() {
        ConfigProgram program;
        std::filesystem::remove(program.Backups);
        const frmConfig window(program.App, nullptr);
        QCOMPARE(TextOf<QLineEdit>(window, "dir_backup"), PathText(program.App.ProgramFolder));
    }

    void Opens_with_the_keyboard_in_the_first_field() {
        ConfigProgram program;
        program.Show([](frmConfig& window) {
            QVERIFY(window.focusWidget());
            QCOMPARE(window.focusWidget()->objectName(), QStringLiteral("dir_backup"));
        });
    }

    void Choosing_a_folder_starts_at_the_one_shown_and_shows_the_chosen() {
        ConfigProgram program;
        const frmConfig window(program.App, nullptr);
        program.Dialogs.Choice = program.App.ProgramFolder;
        Press(window, "cmd_Folder");
        QCOMPARE(program.Dialogs.FolderShownFirst, program.Backups);
        QCOMPARE(TextOf<QLineEdit>(window, "dir_backup"), PathText(program.App.ProgramFolder));
    }

    void Choosing_a_browser_shows_its_full_name() {
        ConfigProgram program;
        const frmConfig window(program.App, nullptr);
        program.Dialogs.Choice = program.Folder.Path() / u8"Ł firefox";
        Press(window, "cmd_Browse");
        QCOMPARE(TextOf<QLineEdit>(window, "txt_browser"), PathText(*program.Dialogs.Choice));
    }

    void A_choice_that_is_cancelled_changes_nothing() {
        ConfigProgram program;
        const frmConfig window(program.App, nullptr);
        Press(window, "cmd_Folder");
        Press(window, "cmd_Browse");
        QCOMPARE(TextOf<QLineEdit>(window, "dir_backup"), PathText(program.Backups));
        QCOMPARE(TextOf<QLineEdit>(window, "txt_browser"), PathText(program.Browser));
    }

    void Save_saves_what_is_shown_and_closes() {
        ConfigProgram program;
        program.Show([&program](frmConfig& window) {
            program.Dialogs.Choice = program.App.ProgramFolder;
            Press(window, "cmd_Folder");
            Named<QCheckBox>(window, "chk_auto").click();
            const std::filesystem::path other = program.Folder.Path() / u8"other Ł";
            WriteContent(other, "");
            Type(window, "  " + Text(other) + " ");
            Press(window, "cmd_Save");
            QVERIFY(!window.isVisible());
        });
        QCOMPARE(program.Settings.Read("BACKUP", "PATH"), PathText(program.App.ProgramFolder));
        QCOMPARE(program.Settings.Read("BACKUP", "AUTO_BACKUP"), std::string("0"));
        QCOMPARE(program.Settings.Read("BROWSER", "PATH"), PathText(program.Folder.Path() / u8"other Ł"));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Enter_saves() {
        ConfigProgram program;
        program.Show([](frmConfig& window) {
            Named<QCheckBox>(window, "chk_auto").setChecked(false);
            QTest::keyClick(&Named<QLineEdit>(window, "txt_browser"), Qt::Key_Return);
            QVERIFY(!window.isVisible());
        });
        QCOMPARE(program.Settings.Read("BACKUP", "AUTO_BACKUP"), std::string("0"));
    }

    void A_cleared_browser_is_saved_as_the_empty_text() {
        ConfigProgram program;
        program.Show([](frmConfig& window) {
            Type(window, "");
            Press(window, "cmd_Save");
        });
        QCOMPARE(program.Settings.Read("BROWSER", "PATH"), std::string());
    }

    void A_browser_that_is_not_there_is_not_saved() {
        ConfigProgram program;
        program.Show([](frmConfig& window) {
            Type(window, "/no/such browser");
            Press(window, "cmd_Save");
            QVERIFY(!window.isVisible());
        });
        QCOMPARE(program.Settings.Read("BROWSER", "PATH"), PathText(program.Browser));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Escape_and_Cancel_save_nothing() {
        for (const bool isByKey : {true, false}) {
            ConfigProgram program;
            const auto before = program.Settings.Values;
            program.Show([isByKey](frmConfig& window) {
                Type(window, "");
                Named<QCheckBox>(window, "chk_auto").setChecked(false);
                if (isByKey)
                    QTest::keyClick(&window, Qt::Key_Escape);
                else
                    Press(window, "cmd_Cancel");
                QVERIFY(!window.isVisible());
            });
            QVERIFY(program.Settings.Values == before);
        }
    }

    void Settings_that_cannot_be_saved_keep_the_window_open_as_it_is() {
        ConfigProgram program;
        program.Settings.FailsWith = Failure{.Reason = "Cannot save"};
        program.Show([&program](frmConfig& window) {
            Type(window, "");
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
            QCOMPARE(TextOf<QLineEdit>(window, "txt_browser"), std::string());
            QCOMPARE(program.ShownTexts(), std::vector<std::string>(3, "Cannot save."));
        });
    }

    void A_settings_file_that_cannot_be_written_is_told_once() {
        ConfigProgram program;
        program.Settings.FailsWith = Failure{"save", "settings.conf", "it cannot be written"};
        program.Show([&program](frmConfig& window) {
            Press(window, "cmd_Save");
            QVERIFY(window.isVisible());
            QCOMPARE(program.ShownTexts(),
                     std::vector<std::string>{"Cannot save \"settings.conf\": it cannot be written."});
        });
    }

    void Says_in_words_what_the_browser_box_leads_to() {
        ConfigProgram program;
        const frmConfig window(program.App, nullptr);
        QCOMPARE(TextOf<QLabel>(window, "lbl_BrowserHint"), std::string("Reports open in this program."));
        Type(window, "/no/such browser");
        QCOMPARE(TextOf<QLabel>(window, "lbl_BrowserHint"),
                 std::string("There is no such file: the browser stays as it is."));
        QCOMPARE(Named<QLineEdit>(window, "txt_browser").accessibleDescription(),
                 Named<QLabel>(window, "lbl_BrowserHint").text());
        Type(window, " ");
        QCOMPARE(TextOf<QLabel>(window, "lbl_BrowserHint"),
                 std::string("Reports are saved, but not opened."));
        Named<QCheckBox>(window, "chk_SystemBrowser").click();
        QCOMPARE(TextOf<QLabel>(window, "lbl_BrowserHint"),
                 std::string("Reports open in the system's browser."));
    }

    void The_systems_browser_can_be_chosen() {
        ConfigProgram program;
        program.Show([](frmConfig& window) {
            QVERIFY(!Named<QCheckBox>(window, "chk_SystemBrowser").isChecked());
            Named<QCheckBox>(window, "chk_SystemBrowser").click();
            Press(window, "cmd_Save");
        });
        QCOMPARE(program.Settings.Read("BROWSER", "SYSTEM"), std::string("1"));
        const frmConfig window(program.App, nullptr);
        QVERIFY(Named<QCheckBox>(window, "chk_SystemBrowser").isChecked());
    }

    void Colours_that_are_chosen_are_saved_and_shown_at_once() {
        ConfigProgram program;
        ScriptedColours colours;
        program.App.Colours = &colours;
        program.Show([&colours](frmConfig& window) {
            QCOMPARE(Named<QComboBox>(window, "cbo_Colours").currentText(), QStringLiteral("As the desktop"));
            Named<QComboBox>(window, "cbo_Colours").setCurrentIndex(2);
            QCOMPARE(colours.Followed, 0);
            Press(window, "cmd_Save");
        });
        QCOMPARE(program.Settings.Read("LOOKS", "COLORS"), std::string("dark"));
        QCOMPARE(colours.Followed, 1);
        program.Show([](frmConfig& window) {
            QCOMPARE(Named<QComboBox>(window, "cbo_Colours").currentText(), QStringLiteral("Dark"));
            Named<QComboBox>(window, "cbo_Colours").setCurrentIndex(0);
            Press(window, "cmd_Save");
        });
        QCOMPARE(program.Settings.Read("LOOKS", "COLORS"), std::string());
    }

    void The_pollutants_names_can_be_edited_from_here() {
        ConfigProgram program;
        WriteContent(program.DataFile("1_additional.talvor"), "MMA|-|-|-|-|-\r\n");
        const frmConfig window(program.App, nullptr);
        std::string first;
        InNextModal<frmExtraPollutantsNames>(
            [&first](frmExtraPollutantsNames& names) { first = TextOf<QLineEdit>(names, "txt_pname_0"); });
        Press(window, "cmd_ExtraPollutants");
        QCOMPARE(first, std::string("MMA"));
    }

    void Without_a_company_there_are_no_names_to_edit() {
        ConfigProgram program;
        program.App.CurrentCompanyId = 0;
        const frmConfig window(program.App, nullptr);
        QVERIFY(!Named<QPushButton>(window, "cmd_ExtraPollutants").isEnabled());
        QVERIFY(Named<QPushButton>(window, "cmd_Save").isEnabled());
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_config_test)
#include "frm_config_test.moc"
