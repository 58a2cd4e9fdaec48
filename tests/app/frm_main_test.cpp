#include "app/backup.h"
#include "app/frm_config.h"
#include "app/frm_main.h"
#include "app/startup.h"
#include "base/text.h"
#include "dialogs/pictures.h"
#include "lists/frm_list.h"
#include "reports/frm_reports.h"
#include "store/companies.h"
#include "store/frm_company.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace mact {
namespace {

constexpr const char* NeedCompany[] = {"cmd_Material", "cmd_Usage", "cmd_Reports"};

bool IsEnabled(const frmMain& window, const char* button) {
    return Named<QPushButton>(window, button).isEnabled();
}

/// A program with no company yet.
struct NewProgram : TestProgram {
    NewProgram() { App.CurrentCompanyId = 0; }
};

/// The copy of the last backup wrote down that a file is not in the set.
void LeaveAnIncompleteBackup(TestProgram& program) {
    const auto set = RunBackup(program.App, false);
    if (!set) qFatal("There is no backup");
    WriteContent(*set / "incomplete.txt", "Cannot back up the file.\r\n");
}

bool IsWarningShown(const frmMain& window) {
    return !Named<QLabel>(window, "lbl_Backup").isHidden();
}

/// Shows the window and waits until it has looked at the last backup.
void ShowUntilItHasLooked(frmMain& window) {
    QSignalSpy looked(window.findChild<QTimer*>(), &QTimer::timeout);
    window.show();
    QVERIFY(looked.count() > 0 || looked.wait());
}

/// Counts the windows that are asked whether they may close.
class CloseWatcher : public QObject {
public:
    int Asked = 0;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Close) ++Asked;
        return false;
    }
};

} // namespace

class frm_main_test : public QObject {
    Q_OBJECT

private slots:
    void Bears_the_programs_title() {
        TestProgram program;
        const frmMain window(program.App);
        QCOMPARE(window.windowTitle(), QStringLiteral("EPA - MACT (HAP Content Reporting Application)"));
    }

    void The_picture_is_centred() {
        TestProgram program;
        frmMain window(program.App);
        window.show();
        const auto& picture = Named<PictureView>(window, "Picture1");
        QCOMPARE(picture.x(), (window.width() - picture.width()) / 2);
    }

    void On_a_first_run_only_companies_can_be_worked_with() {
        NewProgram program;
        std::filesystem::remove_all(program.App.ProgramFolder / "data");
        QVERIFY(StartUp(program.App));
        QCOMPARE(ContentOf(program.DataFile("hapcontents.talvor")).size(), std::size_t(29 * 232));
        const frmMain window(program.App);
        for (const char* button : NeedCompany) {
            QVERIFY(!IsEnabled(window, button));
            QCOMPARE(Named<QPushButton>(window, button).toolTip(),
                     QStringLiteral("Choose Companies first: add a company or select one."));
        }
        for (const char* button : {"cmd_Company", "cmd_Config", "cmd_Backup", "cmd_Abount", "cmd_Exit"})
            QVERIFY(IsEnabled(window, button));
        QVERIFY(TextOf<QLabel>(window, "lbl_Company").starts_with("No company selected yet"));
    }

    void A_remembered_company_that_does_not_exist_leaves_none_selected() {
        NewProgram program;
        program.Settings.Values[{"COMPANY", "DEFAULT"}] = "7";
        QVERIFY(StartUp(program.App));
        const frmMain window(program.App);
        QVERIFY(!IsEnabled(window, "cmd_Material"));
    }

    void With_a_company_everything_can_be_worked_with() {
        TestProgram program;
        program.App.CurrentCompanyName = "Caf\xE9 <b>Hulls";
        program.App.CurrentCompanyLocation = "Nice";
        const frmMain window(program.App);
        for (const char* button : NeedCompany)
            QVERIFY(IsEnabled(window, button));
        QCOMPARE(TextOf<QLabel>(window, "lbl_Company"),
                 std::string("Current company: Caf\xC3\xA9 <b>Hulls, Nice"));
        QCOMPARE(Named<QLabel>(window, "lbl_Company").textFormat(), Qt::PlainText);
    }

    void Selecting_a_company_enables_the_buttons() {
        NewProgram program;
        SaveCompany(program.App, "Acme", "Port");
        frmMain window(program.App);
        window.show();
        InNextModal<frmCompany>([](frmCompany& companies) {
            Named<QListWidget>(companies, "lst_Companies").setCurrentRow(0);
            Named<QPushButton>(companies, "cmd_Switch").click();
        });
        Named<QPushButton>(window, "cmd_Company").click();
        for (const char* button : NeedCompany)
            QVERIFY(IsEnabled(window, button));
        QCOMPARE(TextOf<QLabel>(window, "lbl_Company"), std::string("Current company: Acme, Port"));
    }

    void Becoming_active_tells_of_a_change() {
        NewProgram program;
        frmMain window(program.App);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QWidget other;
        other.show();
        QApplication::setActiveWindow(&other);
        program.App.CurrentCompanyId = 1;
        QVERIFY(!IsEnabled(window, "cmd_Material"));
        QApplication::setActiveWindow(&window);
        QVERIFY(IsEnabled(window, "cmd_Material"));
    }

    void The_button_without_a_task_is_not_shown() {
        TestProgram program;
        const frmMain window(program.App);
        QVERIFY(Named<QPushButton>(window, "cmd_About").isHidden());
    }

    void Materials_open_with_the_companys_pollutant_names() {
        TestProgram program;
        WriteContent(program.DataFile("1_additional.talvor"), "\"Styrene|-|-|-|-|-\"\r\n");
        frmMain window(program.App);
        QString title;
        InNextModal<frmList>([&title](frmList& list) { title = list.windowTitle(); });
        Named<QPushButton>(window, "cmd_Material").click();
        QCOMPARE(title, QStringLiteral("Maintain Material"));
        QCOMPARE(program.App.AdditionalNames, std::string("Styrene|-|-|-|-|-"));
    }

    void Usage_opens() {
        TestProgram program;
        frmMain window(program.App);
        QString title;
        InNextModal<frmList>([&title](frmList& list) { title = list.windowTitle(); });
        Named<QPushButton>(window, "cmd_Usage").click();
        QCOMPARE(title, QStringLiteral("Maintain Usage"));
    }

    void Reports_open_with_the_companys_pollutant_names() {
        TestProgram program;
        WriteContent(program.DataFile("1_additional.talvor"), "\"Styrene|-|-|-|-|-\"\r\n");
        frmMain window(program.App);
        bool isOpen = false;
        InNextModal<frmReports>([&isOpen](frmReports&) { isOpen = true; });
        Named<QPushButton>(window, "cmd_Reports").click();
        QVERIFY(isOpen);
        QCOMPARE(program.App.AdditionalNames, std::string("Styrene|-|-|-|-|-"));
    }

    void The_configuration_opens_with_the_companys_pollutant_names() {
        TestProgram program;
        WriteContent(program.DataFile("1_additional.talvor"), "\"Styrene|-|-|-|-|-\"\r\n");
        frmMain window(program.App);
        bool isOpen = false;
        InNextModal<frmConfig>([&isOpen](frmConfig&) { isOpen = true; });
        Named<QPushButton>(window, "cmd_Config").click();
        QVERIFY(isOpen);
        QCOMPARE(program.App.AdditionalNames, std::string("Styrene|-|-|-|-|-"));
    }

    void A_backup_without_a_folder_lets_the_user_configure_one_first() {
        TestProgram program;
        const std::filesystem::path backups = program.Folder.Path() / "backups";
        std::filesystem::create_directory(backups);
        program.Prompts.Answers = {PromptAnswer::Yes};
        program.Dialogs.Choice = backups;
        WriteContent(program.DataFile("1_additional.talvor"), "\"Styrene|-|-|-|-|-\"\r\n");
        frmMain window(program.App);
        InNextModal<frmConfig>([](frmConfig& configuration) {
            Named<QPushButton>(configuration, "cmd_Folder").click();
            Named<QPushButton>(configuration, "cmd_Save").click();
        });
        Named<QPushButton>(window, "cmd_Backup").click();
        QCOMPARE(program.Prompts.LastText(),
                 "Backup has been completed in folder " + PathText(backups / "talvor_backupset_1"));
        QCOMPARE(program.App.AdditionalNames, std::string("Styrene|-|-|-|-|-"));
    }

    void A_backup_whose_configuration_is_cancelled_is_made_in_the_program_folder() {
        TestProgram program;
        program.Prompts.Answers = {PromptAnswer::Yes};
        frmMain window(program.App);
        InNextModal<frmConfig>(
            [](frmConfig& configuration) { Named<QPushButton>(configuration, "cmd_Cancel").click(); });
        Named<QPushButton>(window, "cmd_Backup").click();
        QCOMPARE(program.Prompts.LastText(), "Backup has been completed in folder " +
                                                 PathText(program.ProgramFile("talvor_backupset_1")));
    }

    void A_backup_can_be_cancelled() {
        TestProgram program;
        program.Prompts.Answers = {PromptAnswer::Cancel};
        frmMain window(program.App);
        Named<QPushButton>(window, "cmd_Backup").click();
        QVERIFY(program.Programs.Started.empty());
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(1));
    }

    void An_incomplete_backup_is_said_in_the_window_once_it_is_painted() {
        TestProgram program;
        LeaveAnIncompleteBackup(program);
        frmMain window(program.App);
        QVERIFY(!IsWarningShown(window));
        window.show();
        QTRY_VERIFY(IsWarningShown(window));
        const auto& label = Named<QLabel>(window, "lbl_Backup");
        QCOMPARE(label.text().toStdString(),
                 "The last backup is incomplete: see " +
                     PathText(program.ProgramFile("talvor_backupset_1") / "incomplete.txt") +
                     ". Please make a new one.");
        QCOMPARE(label.accessibleName(), label.text());
        QCOMPARE(label.textFormat(), Qt::PlainText);
        QVERIFY(label.height() >= label.heightForWidth(label.width()));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void A_backup_that_was_cut_short_is_said_and_written_down() {
        TestProgram program;
        WriteContent(program.DataFile("1_usage.talvor"), std::string(32, 'u'));
        const auto set = RunBackup(program.App, false);
        QVERIFY(set);
        WriteContent(*set / "1_usage.talvor", "uuu");
        const auto earlier = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
        for (const auto& path : {*set / "1_usage.talvor", *set, program.ProgramFile("backup.mact.note")})
            std::filesystem::last_write_time(path, earlier);
        frmMain window(program.App);
        window.show();
        QTRY_VERIFY(IsWarningShown(window));
        QCOMPARE(ContentOf(*set / "incomplete.txt"),
                 std::string("The file \"1_usage.talvor\" is cut short: it has 3 bytes instead of 32.\r\n"));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void An_incomplete_backup_moves_no_control_of_the_window() {
        TestProgram program;
        frmMain window(program.App);
        ShowUntilItHasLooked(window);
        const QSize size = window.size();
        const auto places = [](const frmMain& of) {
            QList<QRect> rectangles;
            for (const char* name : {"Picture1", "lbl_Company", "Frame1", "cmd_Material", "cmd_Exit"})
                rectangles << Named<QWidget>(of, name).geometry();
            return rectangles;
        };
        const QList<QRect> before = places(window);
        LeaveAnIncompleteBackup(program);
        frmMain other(program.App);
        other.show();
        QTRY_VERIFY(IsWarningShown(other));
        QTRY_VERIFY(other.height() > size.height());
        QCOMPARE(other.width(), size.width());
        QCOMPARE(places(other), before);
    }

    void Without_an_incomplete_backup_the_window_says_nothing() {
        TestProgram program;
        LeaveAnIncompleteBackup(program);
        std::filesystem::remove_all(program.ProgramFile("talvor_backupset_1")); // a stick that was pulled out
        frmMain window(program.App);
        ShowUntilItHasLooked(window);
        QVERIFY(!IsWarningShown(window));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void A_newer_complete_backup_ends_the_warning_at_the_next_start() {
        TestProgram program;
        LeaveAnIncompleteBackup(program);
        QVERIFY(RunBackupToItsEnd(program.App));
        frmMain window(program.App);
        ShowUntilItHasLooked(window);
        QVERIFY(!IsWarningShown(window));
    }

    void A_newer_complete_backup_ends_the_warning_in_the_same_window_too() {
        TestProgram program;
        LeaveAnIncompleteBackup(program);
        frmMain window(program.App);
        window.LookAtBackup();
        QVERIFY(IsWarningShown(window));
        QVERIFY(RunBackupToItsEnd(program.App));
        window.LookAtBackup();
        QVERIFY(!IsWarningShown(window));
        QCOMPARE(Named<QLabel>(window, "lbl_Backup").accessibleName(), QString());
    }

    void After_a_backup_the_window_looks_again_later() {
        TestProgram program;
        program.Prompts.Answers = {PromptAnswer::No};
        frmMain window(program.App);
        const auto* nextLook = window.findChild<QTimer*>();
        QVERIFY(!nextLook->isActive());
        Named<QPushButton>(window, "cmd_Backup").click();
        QVERIFY(nextLook->isActive());
        QCOMPARE(nextLook->interval(), 15'000);
        window.LookAtBackup(); // the copy, which the scripted services did not start, may be running
        QVERIFY(nextLook->isActive());
        QVERIFY(!IsWarningShown(window));
    }

    void About_says_what_the_program_is_and_OK_closes_it() {
        TestProgram program;
        frmMain window(program.App);
        InNextModal<QDialog>([](QDialog& about) {
            QCOMPARE(about.objectName(), QStringLiteral("frmAbout"));
            QCOMPARE(TextOf<QLabel>(about, "lbl_Version"), std::string("MACT (V1.1)"));
            QCOMPARE(TextOf<QLabel>(about, "lbl_Maker"), std::string("The MACT maintainers"));
            Named<QPushButton>(about, "cmd_OK").click();
            QVERIFY(!about.isVisible());
        });
        Named<QPushButton>(window, "cmd_Abount").click();
    }

    void Exit_ends_the_program_without_asking_a_window() {
        TestProgram program;
        frmMain window(program.App);
        window.show();
        CloseWatcher watcher;
        window.installEventFilter(&watcher);
        QTimer::singleShot(0, &window, [&] { Named<QPushButton>(window, "cmd_Exit").click(); });
        QCOMPARE(QApplication::exec(), 0);
        QCOMPARE(watcher.Asked, 0);
        QVERIFY(window.isVisible());
    }

    void Exit_backs_up_without_a_message_when_it_is_set_to_1() {
        TestProgram program;
        program.Settings.Values[{"BACKUP", "AUTO_BACKUP"}] = "1";
        frmMain window(program.App);
        QTimer::singleShot(0, &window, [&] { Named<QPushButton>(window, "cmd_Exit").click(); });
        QCOMPARE(QApplication::exec(), 0);
        QCOMPARE(program.Programs.Started.size(), std::size_t(1));
        QVERIFY(std::filesystem::is_directory(program.ProgramFile("talvor_backupset_1")));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Closing_the_window_makes_no_backup() {
        TestProgram program;
        program.Settings.Values[{"BACKUP", "AUTO_BACKUP"}] = "1";
        frmMain window(program.App);
        window.show();
        QTimer::singleShot(0, &window, [&] { window.close(); });
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(program.Programs.Started.empty());
    }

    void Exit_makes_no_backup_unless_it_is_set_to_1() {
        for (const char* setting : {"", "0", "2", "yes", "1.0", " 1"}) {
            TestProgram program;
            program.Settings.Values[{"BACKUP", "AUTO_BACKUP"}] = setting;
            frmMain window(program.App);
            QTimer::singleShot(0, &window, [&] { Named<QPushButton>(window, "cmd_Exit").click(); });
            QCOMPARE(QApplication::exec(), 0);
            QVERIFY(program.Programs.Started.empty());
        }
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_main_test)
#include "frm_main_test.moc"
