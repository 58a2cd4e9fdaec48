#include "materials/material_store.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"
#include "transfer/frm_export.h"
#include "usage/usage_store.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

namespace mact {
namespace {

std::string Export(frmExport& window, const std::filesystem::path& target) {
    Named<QLineEdit>(window, "txt_SourceFile").setText(QString::fromStdString(target.string()));
    Named<QPushButton>(window, "cmd_Export").click();
    return TextOf<QLabel>(window, "lbl_status");
}

} // namespace

class frm_export_test : public QObject {
    Q_OBJECT

private slots:
    void Opens_idle_and_waits_for_a_path() {
        TestProgram program;
        frmExport window(program.App, TransferModule::Materials, nullptr);
        QCOMPARE(window.windowTitle(), QStringLiteral("Export Material Records"));
        QCOMPARE(TextOf<QLabel>(window, "lbl_status"), std::string("Idle"));
        QVERIFY(!Named<QPushButton>(window, "cmd_Export").isEnabled());
        QVERIFY(Named<QPushButton>(window, "cmd_ViewErrors").isHidden());
        Named<QLineEdit>(window, "txt_SourceFile").setText(QStringLiteral("x"));
        QVERIFY(Named<QPushButton>(window, "cmd_Export").isEnabled());
    }

    void Browse_puts_the_chosen_path_in() {
        TestProgram program;
        program.Dialogs.Choice = program.Folder.Path() / "chosen.txt";
        frmExport window(program.App, TransferModule::Usage, nullptr);
        QCOMPARE(window.windowTitle(), QStringLiteral("Export Usage Records"));
        Named<QPushButton>(window, "cmd_Browse").click();
        QCOMPARE(TextOf<QLineEdit>(window, "txt_SourceFile"), program.Dialogs.Choice->string());
    }

    void A_material_export_leaves_the_error_count_unset() {
        TestProgram program;
        QVERIFY(!SaveMaterial(program.App,
                              {.CustomId = "GC-110", .Contents = "0|0|0|0|0|0", .Factors = "0|0|0|0|0|0"}));
        frmExport window(program.App, TransferModule::Materials, nullptr);
        QCOMPARE(Export(window, program.Folder.Path() / "out.txt"),
                 std::string("Total Records Processed : 1\r\nSucessful Exports : 1\r\nErrors : "));
        QCOMPARE(ContentOf(program.Folder.Path() / "out.txt"),
                 std::string("GC-110||||0|0|0|0|0|0|0|0|0|0|0|0|0|0|0\r\n"));
    }

    void A_file_whose_name_ends_in_a_blank_is_replaced() {
        TestProgram program;
        const std::filesystem::path target = program.Folder.Path() / "out.txt ";
        WriteContent(target, "old");
        frmExport window(program.App, TransferModule::Materials, nullptr);
        Export(window, target);
        QCOMPARE(ContentOf(target), std::string());
    }

    void Blanks_around_a_path_are_not_part_of_it() {
        TestProgram program;
        frmExport window(program.App, TransferModule::Materials, nullptr);
        Export(window, program.Folder.Path() / "out.txt ");
        QVERIFY(std::filesystem::exists(program.Folder.Path() / "out.txt"));
    }

    void An_empty_usage_file_is_counted_as_three_zeros() {
        TestProgram program;
        frmExport window(program.App, TransferModule::Usage, nullptr);
        QCOMPARE(Export(window, program.Folder.Path() / "out.txt"),
                 std::string("Total Records Processed : 0\r\nSucessful Exports : 0\r\nErrors : 0"));
        QVERIFY(Named<QPushButton>(window, "cmd_ViewErrors").isHidden());
    }

    void Usage_without_its_material_can_be_viewed_in_the_log() {
        TestProgram program;
        QVERIFY(!SaveUsage(program.App, {.MaterialId = 9, .Period = "3/2005", .Quantity = 1.5, .Unit = 2}));
        frmExport window(program.App, TransferModule::Usage, nullptr);
        QCOMPARE(Export(window, program.Folder.Path() / "out.txt"),
                 std::string("Total Records Processed : 1\r\nSucessful Exports : 0\r\nErrors : 1"));
        QString log;
        InNextModal<QDialog>([&log](QDialog& viewer) {
            log = Named<QPlainTextEdit>(viewer, "txt_Errors").toPlainText();
            QCOMPARE(viewer.windowTitle(), QStringLiteral("Material Import - Error Log"));
        });
        Named<QPushButton>(window, "cmd_ViewErrors").click();
        QCOMPARE(log,
                 QStringLiteral("9|3|2005|1.5|lbs    ********* Material with this id not found ********\n"));
    }

    void A_target_that_cannot_be_written_is_shown_once() {
        TestProgram program;
        frmExport window(program.App, TransferModule::Materials, nullptr);
        const std::string status = Export(window, program.Folder.Path() / "missing" / "out.txt");
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(1));
        QCOMPARE(status, std::string("Total Records Processed : 0\r\nSucessful Exports : 0\r\nErrors : "));
    }

    void A_log_that_cannot_be_read_is_shown_once() {
        TestProgram program;
        QVERIFY(!SaveUsage(program.App, {.MaterialId = 9, .Period = "3/2005"}));
        frmExport window(program.App, TransferModule::Usage, nullptr);
        Export(window, program.Folder.Path() / "out.txt");
        std::filesystem::remove(program.ProgramFile("usage_export_errors.txt"));
        InNextModal<QDialog>([](QDialog&) {});
        Named<QPushButton>(window, "cmd_ViewErrors").click();
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(1));
    }

    void Cancel_closes() {
        TestProgram program;
        InNextModal<frmExport>([](frmExport& window) {
            Named<QPushButton>(window, "cmd_Cancel").click();
            QVERIFY(!window.isVisible());
        });
        ShowMaterialExport(program.App, nullptr);
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_export_test)
#include "frm_export_test.moc"
