#include "app/frm_main.h"
#include "app/startup.h"
#include "base/text.h"
#include "lists/frm_list.h"
#include "reports/frm_reports.h"
#include "store/frm_company.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"
#include "transfer/frm_error_log.h"
#include "transfer/frm_export.h"
#include "transfer/frm_import.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

namespace mact {

/// A new user's first day, in the real windows: from an empty folder to the five reports.
class first_day_test : public QObject {
    Q_OBJECT

    static void Click(const QObject& window, const char* button) {
        Named<QPushButton>(window, button).click();
    }
    static void Type(const QObject& window, const char* edit, const QString& text) {
        auto& line = Named<QLineEdit>(window, edit);
        line.clear();
        line.insert(text);
    }
    static QString Sample(const char* name) { return QStringLiteral(MACT_SOURCE_FOLDER "/samples/") + name; }

    /// Imports a file from the open list window and returns the summary.
    static std::string ImportFrom(const frmList& list, const char* sample) {
        std::string summary;
        InNextModal<frmImport>([&](frmImport& window) {
            Type(window, "txt_SourceFile", Sample(sample));
            Click(window, "cmd_Import");
            summary = TextOf<QLabel>(window, "lbl_status");
            Click(window, "cmd_Cancel");
        });
        Click(list, "cmd_Import");
        return summary;
    }
    static void SelectMonth(const QObject& window, const char* month, const char* year) {
        auto& months = Named<QComboBox>(window, month);
        months.setCurrentIndex(months.findData(12));
        Named<QComboBox>(window, year).setCurrentText(QStringLiteral("2005"));
    }
    /// All five for the twelve months to December 2005.
    static void GenerateAllReports(frmReports& window) {
        Named<QRadioButton>(window, "opt_materials_1").click();
        SelectMonth(window, "cbo_Month", "cbo_Year");
        Click(window, "cmd_Generate");
        SelectMonth(window, "cbo_Month2", "cbo_Year2");
        Click(window, "cmd_Generate2");
        SelectMonth(window, "cbo_Month3", "cbo_Year3");
        Click(window, "cmd_Generate3");
        SelectMonth(window, "cbo_Month4", "cbo_Year4");
        Click(window, "cmd_Generate4");
        SelectMonth(window, "cbo_Month5", "cbo_Year5");
        Click(window, "cmd_Generate5");
    }
    static void ExpectFivePages(const TestProgram& program) {
        const struct {
            const char* File;
            const char* Title;
        } reports[] = {
            {"report.htm",  "COMPLIANT MATERIALS REPORT"         },
            {"report2.htm", "WEIGHTED-AVERAGE HAP CONTENT REPORT"},
            {"report3.htm", "EMISSION-AVERAGE HAP CONTENT REPORT"},
            {"report4.htm", "ADDITIONAL HAP(s) USAGE REPORT"     },
            {"report5.htm", "ADDITIONAL HAP(s) EMISSION REPORT"  }
        };
        for (const auto& [file, title] : reports) {
            const std::string page = ContentOf(program.ProgramFile(file));
            QVERIFY2(page.find(title) != std::string::npos, file);
            QVERIFY2(page.find("<u>\xD8st B\xE5ter <b></u>") != std::string::npos, file);
            QVERIFY2(page.find("<u>01/2005</u>") != std::string::npos, file);
            QVERIFY2(page.find("<u>12/2005</u>") != std::string::npos, file);
        }
    }

private slots:
    void From_an_empty_folder_to_five_reports() {
        TestProgram program;
        AppContext& app = program.App;
        std::filesystem::remove_all(app.ProgramFolder / "data");
        app.CurrentCompanyId = 0;
        const std::filesystem::path browser = program.ProgramFile("browser");
        WriteContent(browser, "stand-in");
        program.Settings.Values[{"BROWSER", "PATH"}] = PathText(browser);
        QVERIFY(StartUp(app));
        frmMain main(app);
        main.show();

        InNextModal<frmCompany>([](frmCompany& window) {
            Type(window, "txt_CompanyName", QStringLiteral("\u00D8st B\u00E5ter <b>"));
            Type(window, "txt_CompanyLocation", QStringLiteral("\u20AC Pier 3, \u0141\u00F3d\u017A"));
            Click(window, "cmd_Save");
            Named<QListWidget>(window, "lst_Companies").setCurrentRow(0);
            Click(window, "cmd_Switch");
        });
        Click(main, "cmd_Company");
        QCOMPARE(app.CurrentCompanyName, std::string("\xD8st B\xE5ter <b>"));
        QCOMPARE(app.CurrentCompanyLocation, std::string("\x80 Pier 3, ?\xF3"
                                                         "d?"));

        InNextModal<frmList>([](frmList& list) {
            QCOMPARE(Named<QListWidget>(list, "lst_Main").count(), 0);
            QCOMPARE(ImportFrom(list, "materials.txt"),
                     std::string("Total Records Processed : 29\r\nSucessful Imports : 29\r\nErrors : 0"));
            QCOMPARE(Named<QListWidget>(list, "lst_Main").count(), 29);
        });
        Click(main, "cmd_Material");

        InNextModal<frmList>([](frmList& list) {
            QCOMPARE(ImportFrom(list, "usage.txt"),
                     std::string("Total Records Processed : 619\r\nSucessful Imports : 619\r\nErrors : 0"));
            QCOMPARE(Named<QListWidget>(list, "lst_Main").count(), 619);
        });
        Click(main, "cmd_Usage");

        InNextModal<frmReports>([](frmReports& window) { GenerateAllReports(window); });
        Click(main, "cmd_Reports");

        QCOMPARE(program.ShownTexts(), std::vector<std::string>{}); // nothing went wrong on the way
        QCOMPARE(program.Programs.Started.size(), std::size_t{5});
        ExpectFivePages(program);
        // The shop sprayed so much of one resin that the average of that method is above the limit of 28.
        const std::string averages = ContentOf(program.ProgramFile("report2.htm"));
        QCOMPARE(CountOf(averages, "color='red'>No<"), 1);
        QCOMPARE(std::filesystem::file_size(program.DataFile("1_materials.talvor")),
                 std::uintmax_t{29} * 1444);
        QCOMPARE(std::filesystem::file_size(program.DataFile("1_usage.talvor")), std::uintmax_t{619} * 32);
    }

    void What_was_rejected_is_shown_and_what_was_stored_comes_out_again() {
        TestProgram program;
        QVERIFY(StartUp(program.App));
        const std::filesystem::path target = program.ProgramFile("exported.txt");
        InNextModal<frmList>([&](frmList& list) {
            ImportFrom(list, "materials.txt");
            InNextModal<frmImport>([](frmImport& window) {
                Type(window, "txt_SourceFile", Sample("materials_with_errors.txt"));
                Click(window, "cmd_Import");
                InNextModal<QDialog>([](QDialog& log) {
                    const std::string shown =
                        Named<QPlainTextEdit>(log, "txt_Errors").toPlainText().toStdString();
                    QVERIFY(shown.find("ERROR : Material with this id already exsists.") !=
                            std::string::npos);
                });
                Click(window, "cmd_ViewErrors");
                Click(window, "cmd_Cancel");
            });
            Click(list, "cmd_Import");
            InNextModal<frmExport>([&](frmExport& window) {
                Type(window, "txt_SourceFile", QString::fromStdString(PathText(target)));
                Click(window, "cmd_Export");
                Click(window, "cmd_Cancel");
            });
            Click(list, "cmd_Export");
        });
        ShowMaterialList(program.App, nullptr);
        QCOMPARE(program.ShownTexts(), std::vector<std::string>{});
        QCOMPARE(ContentOf(program.ProgramFile("material_import_errors.txt")),
                 ContentOf(ToFolder(MACT_SOURCE_FOLDER) / "samples/expected/material_import_errors.txt"));
        QCOMPARE(CountOf(ContentOf(target), "\r\n"),
                 31); // 29 materials, and the two good lines of the other file
    }

private:
    static std::filesystem::path ToFolder(const char* utf8Path) { return PathFromUtf8(utf8Path); }
    static int CountOf(const std::string& text, std::string_view part) {
        int count = 0;
        for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
            ++count;
        return count;
    }
};
} // namespace mact

QTEST_MAIN(mact::first_day_test)
#include "first_day_test.moc"
