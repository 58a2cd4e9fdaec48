#include "materials/material_store.h"
#include "store/material_types.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"
#include "transfer/frm_error_log.h"
#include "transfer/frm_import.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

namespace mact {
namespace {

/// Lines that every import rejects: enough work for several turns of the event loop.
constexpr int ManyLines = 1'000'000;

std::string ManyBadLines() {
    std::string text;
    for (int line = 0; line < ManyLines; ++line)
        text += "x\r\n";
    return text;
}

QString SourceFile(const TestProgram& program, std::string_view content) {
    const std::filesystem::path path = program.Folder.Path() / "source.txt";
    WriteContent(path, content);
    return QString::fromStdString(path.string());
}

constexpr const char* NotFound =
    "Error(s) found while processing the form:\r\n\r\nFile not found. Please make sure that your have "
    "specified the correct path or use browse feature to give accurate path.";

} // namespace

class frm_import_test : public QObject {
    Q_OBJECT

private slots:
    void Opens_idle_and_waits_for_a_path() {
        TestProgram program;
        frmImport window(program.App, TransferModule::Materials, nullptr);
        QCOMPARE(TextOf<QLabel>(window, "lbl_status"), std::string("Idle"));
        QCOMPARE(TextOf<QLabel>(window, "lbl_Module"), std::string("1"));
        QCOMPARE(window.windowTitle(), QStringLiteral("Import Material Records"));
        const auto& start = Named<QPushButton>(window, "cmd_Import");
        QVERIFY(!start.isEnabled() && !start.isDefault());
        QVERIFY(Named<QPushButton>(window, "cmd_ViewErrors").isHidden());
        Named<QLineEdit>(window, "txt_SourceFile").setText(QStringLiteral("  "));
        QVERIFY(!start.isEnabled());
        Named<QLineEdit>(window, "txt_SourceFile").setText(QStringLiteral(" x "));
        QVERIFY(start.isEnabled() && start.isDefault());
    }

    void Says_which_records_it_imports() {
        TestProgram program;
        InNextModal<frmImport>([](frmImport& window) {
            QCOMPARE(window.windowTitle(), QStringLiteral("Import Usage Records"));
            QCOMPARE(TextOf<QLabel>(window, "lbl_Module"), std::string("2"));
        });
        ShowUsageImport(program.App, nullptr);
    }

    void Browse_puts_the_chosen_path_in() {
        TestProgram program;
        program.Dialogs.Choice = program.Folder.Path() / "chosen.txt";
        frmImport window(program.App, TransferModule::Materials, nullptr);
        Named<QPushButton>(window, "cmd_Browse").click();
        QCOMPARE(TextOf<QLineEdit>(window, "txt_SourceFile"), program.Dialogs.Choice->string());
        program.Dialogs.Choice.reset();
        Named<QPushButton>(window, "cmd_Browse").click();
        QVERIFY(TextOf<QLineEdit>(window, "txt_SourceFile").ends_with("chosen.txt"));
    }

    void A_file_that_does_not_exist_is_an_error_of_the_form() {
        TestProgram program;
        frmImport window(program.App, TransferModule::Materials, nullptr);
        Named<QLineEdit>(window, "txt_SourceFile").setText(QStringLiteral("/no/such/file"));
        Named<QPushButton>(window, "cmd_Import").click();
        QCOMPARE(program.Prompts.LastText(), std::string(NotFound));
        QCOMPARE(TextOf<QLabel>(window, "lbl_status"), std::string("Idle"));
    }

    void A_file_whose_name_ends_in_a_blank_is_found() {
        TestProgram program;
        WriteContent(program.Folder.Path() / "source.txt ", "a|b\r\n");
        frmImport window(program.App, TransferModule::Materials, nullptr);
        Named<QLineEdit>(window, "txt_SourceFile")
            .setText(QString::fromStdString((program.Folder.Path() / "source.txt ").string()));
        Named<QPushButton>(window, "cmd_Import").click();
        QCOMPARE(TextOf<QLabel>(window, "lbl_status"),
                 std::string("Total Records Processed : 1\r\nSucessful Imports : 0\r\nErrors : 1"));
    }

    void Blanks_around_a_path_are_not_part_of_it() {
        TestProgram program;
        frmImport window(program.App, TransferModule::Materials, nullptr);
        Named<QLineEdit>(window, "txt_SourceFile").setText("  " + SourceFile(program, "a|b\r\n") + " ");
        Named<QPushButton>(window, "cmd_Import").click();
        QCOMPARE(TextOf<QLabel>(window, "lbl_status"),
                 std::string("Total Records Processed : 1\r\nSucessful Imports : 0\r\nErrors : 1"));
    }

    void A_folder_is_no_file() {
        TestProgram program;
        frmImport window(program.App, TransferModule::Materials, nullptr);
        Named<QLineEdit>(window, "txt_SourceFile")
            .setText(QString::fromStdString(program.Folder.Path().string()));
        Named<QPushButton>(window, "cmd_Import").click();
        QCOMPARE(program.Prompts.LastText(), std::string(NotFound));
    }

    void Errors_make_the_log_visible_and_the_next_run_hides_it() {
        TestProgram program;
        frmImport window(program.App, TransferModule::Materials, nullptr);
        auto& source = Named<QLineEdit>(window, "txt_SourceFile");
        source.setText(SourceFile(program, "a|b\r\n\r\n"));
        Named<QPushButton>(window, "cmd_Import").click();
        QCOMPARE(TextOf<QLabel>(window, "lbl_status"),
                 std::string("Total Records Processed : 2\r\nSucessful Imports : 0\r\nErrors : 2"));
        QVERIFY(!Named<QPushButton>(window, "cmd_ViewErrors").isHidden());
        source.setText(SourceFile(program, ""));
        Named<QPushButton>(window, "cmd_Import").click();
        QCOMPARE(TextOf<QLabel>(window, "lbl_status"),
                 std::string("Total Records Processed : 0\r\nSucessful Imports : 0\r\nErrors : 0"));
        QVERIFY(Named<QPushButton>(window, "cmd_ViewErrors").isHidden());
        QVERIFY(program.Prompts.Shown.empty());
    }

    void View_errors_shows_the_log_of_the_module() {
        TestProgram program;
        frmImport window(program.App, TransferModule::Usage, nullptr);
        Named<QLineEdit>(window, "txt_SourceFile").setText(SourceFile(program, "caf\xE9|b\r\n"));
        Named<QPushButton>(window, "cmd_Import").click();
        QString log;
        QString title;
        InNextModal<QDialog>([&](QDialog& viewer) {
            log = Named<QPlainTextEdit>(viewer, "txt_Errors").toPlainText();
            title = viewer.windowTitle();
        });
        Named<QPushButton>(window, "cmd_ViewErrors").click();
        QCOMPARE(log, QStringLiteral("caf\u00E9|b    ***** Invalid number of delimited fields ******\n"));
        QCOMPARE(title, QStringLiteral("Material Import - Error Log"));
    }

    void The_error_log_has_a_button_that_closes_it() {
        TestProgram program;
        WriteContent(ImportErrorLog(program.App, TransferModule::Materials), "a line\r\n");
        InNextModal<QDialog>([&](QDialog& viewer) {
            QApplication::setActiveWindow(&viewer);
            QVERIFY(Named<QPlainTextEdit>(viewer, "txt_Errors").hasFocus()); // for the arrow keys
            QVERIFY(Named<QPushButton>(viewer, "cmd_Close").isDefault());
            Named<QPushButton>(viewer, "cmd_Close").click();
            QVERIFY(!viewer.isVisible());
        });
        ShowErrorLog(program.App, ImportErrorLog(program.App, TransferModule::Materials), nullptr);
        QVERIFY(program.Prompts.Shown.empty());
    }

    void What_was_dropped_is_said_below_the_summary_until_the_next_import() {
        TestProgram program;
        QVERIFY(CreateDefaultHapContents(program.App));
        const std::string line = "PF-1|a resin|Production resin|Spray|9|30|0|0|0|0|0|0|0|0|0|0|0|0|5\r\n";
        frmImport window(program.App, TransferModule::Materials, nullptr);
        Named<QLineEdit>(window, "txt_SourceFile").setText(SourceFile(program, line + line));
        QCOMPARE(TextOf<QLabel>(window, "lbl_Remarks"), std::string());
        Named<QPushButton>(window, "cmd_Import").click();
        QCOMPARE(TextOf<QLabel>(window, "lbl_status"),
                 std::string("Total Records Processed : 2\r\nSucessful Imports : 1\r\nErrors : 1"));
        QCOMPARE(
            TextOf<QLabel>(window, "lbl_Remarks"),
            std::string("The filler of 1 material was not imported: an import stores 0, and no report "
                        "applies a filler. 1 line was "
                        "rejected because the material was there already; what is stored stays as it was."));
        QVERIFY(program.Prompts.Shown.empty());
        Named<QLineEdit>(window, "txt_SourceFile").setText(SourceFile(program, ""));
        Named<QPushButton>(window, "cmd_Import").click();
        QCOMPARE(TextOf<QLabel>(window, "lbl_Remarks"), std::string());
    }

    void A_second_start_is_refused_while_it_works() {
        TestProgram program;
        frmImport window(program.App, TransferModule::Materials, nullptr);
        window.show();
        Named<QLineEdit>(window, "txt_SourceFile").setText(SourceFile(program, ManyBadLines()));
        auto& start = Named<QPushButton>(window, "cmd_Import");
        bool wasEnabled = true;
        QTimer::singleShot(0, &window, [&] {
            wasEnabled = start.isEnabled();
            start.click();
            QTest::keyClick(&window, Qt::Key_Return);
            Named<QPushButton>(window, "cmd_Cancel").click();
        });
        start.click();
        QVERIFY(!wasEnabled);
        QVERIFY(start.isEnabled());
    }

    void Cancel_stops_the_work_keeps_the_window_and_shows_the_counts() {
        TestProgram program;
        frmImport window(program.App, TransferModule::Materials, nullptr);
        window.show();
        Named<QLineEdit>(window, "txt_SourceFile").setText(SourceFile(program, ManyBadLines()));
        QTimer::singleShot(0, &window, [&] { Named<QPushButton>(window, "cmd_Cancel").click(); });
        Named<QPushButton>(window, "cmd_Import").click();
        QVERIFY(window.isVisible());
        const std::string status = TextOf<QLabel>(window, "lbl_status");
        QVERIFY(status.starts_with("Total Records Processed : "));
        QVERIFY(!status.starts_with("Total Records Processed : 1000000"));
        QVERIFY(status.find("Sucessful Imports : 0\r\n") != std::string::npos);
    }

    void Escape_and_closing_while_it_works_stop_it_too() {
        for (const bool byEscape : {true, false}) {
            TestProgram program;
            frmImport window(program.App, TransferModule::Usage, nullptr);
            window.show();
            Named<QLineEdit>(window, "txt_SourceFile").setText(SourceFile(program, ManyBadLines()));
            QTimer::singleShot(0, &window, [&] {
                if (byEscape)
                    QTest::keyClick(&window, Qt::Key_Escape);
                else
                    window.close();
            });
            Named<QPushButton>(window, "cmd_Import").click();
            QVERIFY(window.isVisible());
            QVERIFY(TextOf<QLabel>(window, "lbl_status").find(" : 1000000\r\n") == std::string::npos);
        }
    }

    void Enter_after_an_import_does_not_import_again() {
        TestProgram program;
        const QString source = SourceFile(program, "a|b\r\n");
        InNextModal<frmImport>([&](frmImport& window) {
            auto& edit = Named<QLineEdit>(window, "txt_SourceFile");
            edit.setText(source);
            QTest::keyClick(&edit, Qt::Key_Return);
            QVERIFY(TextOf<QLabel>(window, "lbl_status").starts_with("Total Records Processed : 1"));
            QTest::keyClick(window.focusWidget(), Qt::Key_Return);
            QVERIFY(!window.isVisible());
        });
        ShowMaterialImport(program.App, nullptr);
    }

    void Cancel_closes_the_window_when_it_is_idle() {
        TestProgram program;
        frmImport window(program.App, TransferModule::Materials, nullptr);
        window.show();
        Named<QPushButton>(window, "cmd_Cancel").click();
        QVERIFY(!window.isVisible());
    }

    void Progress_shows_only_when_the_work_takes_longer_than_a_blink() {
        int lines = 0;
        int thousandths = 0;
        ImportProgress progress([&](int done, int part) {
            lines = done;
            thousandths = part;
        });
        QElapsedTimer time;
        time.start();
        QVERIFY(progress.Watch({1, 100, 1}));
        QCOMPARE(lines, 0);
        while (lines == 0)
            QVERIFY(progress.Watch({25, 100, 7}));
        QVERIFY(time.elapsed() >= 290);
        QCOMPARE(lines, 7);
        QCOMPARE(thousandths, 250);
    }

    void A_stopped_watch_stops_the_import() {
        ImportProgress progress([](int, int) {});
        progress.Stop();
        QVERIFY(!progress.Watch({1, 100, 1}));
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_import_test)
#include "frm_import_test.moc"
