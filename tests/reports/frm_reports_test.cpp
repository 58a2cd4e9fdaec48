#include "reports/frm_reports.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"
#include "usage/usage_store.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <chrono>

namespace mact {
namespace {

QString Numbered(const char* name, int frame) {
    return QString::fromLatin1(name) + (frame == 1 ? QString() : QString::number(frame));
}

QComboBox& Month(const frmReports& window, int frame) {
    return Named<QComboBox>(window, qPrintable(Numbered("cbo_Month", frame)));
}

QComboBox& Year(const frmReports& window, int frame) {
    return Named<QComboBox>(window, qPrintable(Numbered("cbo_Year", frame)));
}

QPushButton& GenerateButton(const frmReports& window, int frame) {
    return Named<QPushButton>(window, qPrintable(Numbered("cmd_Generate", frame)));
}

/// A caption without the & before its underlined letter.
template <class T> QString Words(const frmReports& window, const char* name) {
    return Named<T>(window, name).text().remove(u'&');
}

QString Content(const frmReports& window, int frame) {
    return Named<QLabel>(window, qPrintable(Numbered("lbl_Content", frame))).text();
}

/// Usage of two months; the day is in March 2005.
struct UsedProgram : TestProgram {
    UsedProgram() {
        for (const char* period : {"3/2004", "4/2004", "5/2004"})
            if (SaveUsage(App, {.MaterialId = 1, .Period = period, .Unit = UnitLbs})) qFatal("Not saved");
    }
};

constexpr const char* ReportFiles[] = {"report.htm", "report2.htm", "report3.htm", "report4.htm",
                                       "report5.htm"};

/// A program whose user wants empty reports too.
struct ReportsProgram : TestProgram {
    ReportsProgram() { Prompts.Answers.assign(10, PromptAnswer::Yes); }
    /// A browser that can be started.
    std::filesystem::path SetBrowser() {
        std::filesystem::path browser = Folder.Path() / "browser";
        WriteContent(browser, "");
        Settings.Values[{"BROWSER", "PATH"}] = PathText(browser);
        return browser;
    }
    /// A report as if made that many hours ago.
    void MakeReport(int frame, int hoursAgo) {
        WriteContent(ProgramFile(ReportFiles[frame - 1]), "<html></html>");
        std::filesystem::last_write_time(ProgramFile(ReportFiles[frame - 1]),
                                         std::filesystem::file_time_type::clock::now() -
                                             std::chrono::hours(hoursAgo));
    }
    bool HasFile(int frame) const { return std::filesystem::exists(ProgramFile(ReportFiles[frame - 1])); }
};

} // namespace

class frm_reports_test : public QObject {
    Q_OBJECT

private slots:
    void The_first_frame_asks_for_all_materials() {
        TestProgram program;
        const frmReports window(program.App, nullptr);
        QCOMPARE(window.windowTitle(), QStringLiteral("Reports"));
        QVERIFY(Named<QRadioButton>(window, "opt_materials_0").isChecked());
        QVERIFY(!Month(window, 1).isEnabled() && !Year(window, 1).isEnabled());
        QCOMPARE(Month(window, 1).currentIndex(), -1);
        QCOMPARE(Year(window, 1).currentIndex(), -1);
        QCOMPARE(Year(window, 1).currentText(), QString());
    }

    void The_captions_are_those_of_the_reports() {
        TestProgram program;
        const frmReports window(program.App, nullptr);
        QStringList titles;
        for (int frame = 0; frame < 5; ++frame)
            titles
                << Named<QGroupBox>(window, qPrintable(QStringLiteral("FrameReport_%1").arg(frame))).title();
        QCOMPARE(titles,
                 QStringList({"Compliant Materials Report ", "Weighted-Average HAP Content Report ",
                              "Emission Averaging HAP Content Report ", "Additional HAP(s) Usage Report",
                              "Additional HAP(s) Emission Report"}));
    }

    void The_buttons_say_what_they_do() {
        TestProgram program;
        const frmReports window(program.App, nullptr);
        QCOMPARE(Words<QRadioButton>(window, "opt_materials_0"), QStringLiteral("Get all materials"));
        QCOMPARE(Words<QRadioButton>(window, "opt_materials_1"),
                 QStringLiteral("Get Materials used in last 12 months from "));
        for (int frame = 1; frame <= 5; ++frame)
            QCOMPARE(GenerateButton(window, frame).text().remove(u'&'), QStringLiteral("Generate"));
    }

    void The_lists_hold_twelve_months_and_eleven_years() {
        TestProgram program;
        const frmReports window(program.App, nullptr);
        for (int frame = 1; frame <= 5; ++frame) {
            QCOMPARE(Month(window, frame).count(), 12);
            QCOMPARE(Month(window, frame).itemText(11), QStringLiteral("DEC"));
            QCOMPARE(Month(window, frame).itemData(11).toInt(), 12);
            QCOMPARE(Year(window, frame).count(), 11);
            QCOMPARE(Year(window, frame).itemText(10), QStringLiteral("2010"));
            QCOMPARE(Year(window, frame).itemData(10), QVariant(0));
        }
    }

    void The_other_frames_start_with_the_current_month() {
        TestProgram program;
        program.Calendar.Month = std::chrono::year{2007} / std::chrono::November;
        const frmReports window(program.App, nullptr);
        for (int frame = 2; frame <= 5; ++frame) {
            QCOMPARE(Month(window, frame).currentText(), QStringLiteral("NOV"));
            QCOMPARE(Year(window, frame).currentText(), QStringLiteral("2007"));
        }
    }

    void A_current_year_after_2010_leaves_2000() {
        TestProgram program;
        program.Calendar.Month = std::chrono::year{2026} / std::chrono::May;
        const frmReports window(program.App, nullptr);
        for (int frame = 2; frame <= 5; ++frame) {
            QCOMPARE(Month(window, frame).currentText(), QStringLiteral("MAY"));
            QCOMPARE(Year(window, frame).currentText(), QStringLiteral("2000"));
        }
    }

    void The_second_option_opens_the_first_frames_period_and_the_first_closes_it() {
        TestProgram program;
        const frmReports window(program.App, nullptr);
        Named<QRadioButton>(window, "opt_materials_1").click();
        QVERIFY(Month(window, 1).isEnabled() && Year(window, 1).isEnabled());
        QCOMPARE(Month(window, 1).currentText(), QStringLiteral("MAR"));
        QCOMPARE(Year(window, 1).currentText(), QStringLiteral("2005"));
        Named<QRadioButton>(window, "opt_materials_0").click();
        QVERIFY(!Month(window, 1).isEnabled() && !Year(window, 1).isEnabled());
        QCOMPARE(Month(window, 1).currentIndex(), -1);
        QCOMPARE(Year(window, 1).currentText(), QString());
    }

    void Each_button_writes_its_own_report() {
        for (int frame = 1; frame <= 5; ++frame) {
            ReportsProgram program;
            const frmReports window(program.App, nullptr);
            GenerateButton(window, frame).click();
            for (int other = 1; other <= 5; ++other)
                QCOMPARE(program.HasFile(other), other == frame);
        }
    }

    void The_period_ends_with_the_chosen_month_and_year() {
        ReportsProgram program;
        const frmReports window(program.App, nullptr);
        Month(window, 2).setCurrentIndex(2);
        Year(window, 2).setCurrentIndex(8);
        GenerateButton(window, 2).click();
        QVERIFY(ContentOf(program.ProgramFile("report2.htm")).find("03/2008") != std::string::npos);
    }

    void A_year_that_the_list_lacks_can_be_typed() {
        ReportsProgram program;
        const frmReports window(program.App, nullptr);
        QLineEdit& edit = *Year(window, 2).lineEdit();
        edit.clear();
        QTest::keyClicks(&edit, QStringLiteral("x2026"));
        QTest::keyClick(&edit, Qt::Key_Return);
        QCOMPARE(Year(window, 2).currentText(), QStringLiteral("2026"));
        QCOMPARE(Year(window, 2).count(), 11);
        GenerateButton(window, 2).click();
        QVERIFY(ContentOf(program.ProgramFile("report2.htm")).find("03/2026") != std::string::npos);
    }

    void A_year_that_is_being_typed_is_not_completed() {
        TestProgram program;
        const frmReports window(program.App, nullptr);
        QLineEdit& edit = *Year(window, 3).lineEdit();
        edit.clear();
        QTest::keyClicks(&edit, QStringLiteral("20"));
        QCOMPARE(edit.text(), QStringLiteral("20"));
    }

    void Without_a_year_a_failure_is_shown_and_nothing_is_written() {
        for (int frame = 1; frame <= 5; ++frame) {
            ReportsProgram program;
            const frmReports window(program.App, nullptr);
            Named<QRadioButton>(window, "opt_materials_1").click();
            Year(window, frame).clearEditText();
            GenerateButton(window, frame).click();
            QCOMPARE(program.Prompts.Shown.size(), std::size_t(1));
            QCOMPARE(program.Prompts.Shown[0].Kind, PromptKind::Failure);
            QVERIFY(!program.HasFile(frame));
        }
    }

    void Without_a_month_a_failure_is_shown_and_nothing_is_written() {
        ReportsProgram program;
        const frmReports window(program.App, nullptr);
        Month(window, 4).setCurrentIndex(-1);
        GenerateButton(window, 4).click();
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(1));
        QCOMPARE(program.Prompts.Shown[0].Kind, PromptKind::Failure);
        QVERIFY(!program.HasFile(4));
    }

    void Each_frame_says_what_its_months_hold() {
        UsedProgram program;
        const frmReports window(program.App, nullptr);
        QCOMPARE(Content(window, 1), QStringLiteral("No materials have been entered yet."));
        for (int frame = 2; frame <= 5; ++frame) {
            QCOMPARE(Content(window, frame), QStringLiteral("2 records")); // April 2004 to March 2005
            QCOMPARE(Month(window, frame).accessibleDescription(), QStringLiteral("2 records"));
            QCOMPARE(Year(window, frame).accessibleDescription(), QStringLiteral("2 records"));
        }
    }

    void What_the_months_hold_follows_the_month_and_each_key_in_the_year() {
        UsedProgram program;
        const frmReports window(program.App, nullptr);
        Month(window, 4).setCurrentIndex(3); // April 2005: May 2004 on
        QCOMPARE(Content(window, 4), QStringLiteral("1 record"));
        QLineEdit& edit = *Year(window, 4).lineEdit();
        edit.selectAll();
        QTest::keyClicks(&edit, QStringLiteral("202"));
        QCOMPARE(Content(window, 4), QStringLiteral("Type a year from 1900 to 9999."));
        QTest::keyClicks(&edit, QStringLiteral("6"));
        QCOMPARE(Content(window, 4), QStringLiteral("No usage; the newest is MAY 2004"));
        Month(window, 4).setCurrentIndex(-1);
        QCOMPARE(Content(window, 4), QStringLiteral("Choose a month."));
        QCOMPARE(Content(window, 3), QStringLiteral("2 records")); // each frame says its own
    }

    void The_first_frame_counts_materials_or_usage_as_its_report_does() {
        UsedProgram program;
        const frmReports window(program.App, nullptr);
        Named<QRadioButton>(window, "opt_materials_1").click();
        QCOMPARE(Content(window, 1), QStringLiteral("2 records"));
        Named<QRadioButton>(window, "opt_materials_0").click();
        QCOMPARE(Content(window, 1), QStringLiteral("No materials have been entered yet."));
    }

    void One_button_sets_all_frames_to_the_newest_month_with_usage() {
        UsedProgram program;
        program.Calendar.Month = std::chrono::year{2026} / std::chrono::May;
        const frmReports window(program.App, nullptr);
        Named<QPushButton>(window, "cmd_NewestMonth").click();
        QVERIFY(Named<QRadioButton>(window, "opt_materials_1").isChecked());
        for (int frame = 1; frame <= 5; ++frame) {
            QVERIFY(Month(window, frame).isEnabled() && Year(window, frame).isEnabled());
            QCOMPARE(Month(window, frame).currentText(), QStringLiteral("MAY"));
            QCOMPARE(Year(window, frame).currentText(), QStringLiteral("2004"));
            QCOMPARE(Content(window, frame), QStringLiteral("3 records"));
        }
    }

    void The_newest_month_may_be_of_a_year_that_the_list_lacks() {
        UsedProgram program;
        QVERIFY(!SaveUsage(program.App, {.MaterialId = 1, .Period = "2/2026", .Unit = UnitLbs}));
        const frmReports window(program.App, nullptr);
        Named<QPushButton>(window, "cmd_NewestMonth").click();
        QCOMPARE(Year(window, 3).currentText(), QStringLiteral("2026"));
        QCOMPARE(Year(window, 3).count(), 11);
        QCOMPARE(Content(window, 3), QStringLiteral("1 record"));
    }

    void Without_usage_there_is_no_newest_month_and_nothing_is_created() {
        TestProgram program;
        const frmReports window(program.App, nullptr);
        QCOMPARE(Content(window, 2), QStringLiteral("No usage has been entered yet."));
        QVERIFY(!Named<QPushButton>(window, "cmd_NewestMonth").isEnabled());
        QVERIFY(!Named<QPushButton>(window, "cmd_NewestMonth").toolTip().isEmpty());
        QVERIFY(std::filesystem::is_empty(program.DataFile("")));
    }

    void Usage_that_cannot_be_read_is_said_in_the_window() {
        TestProgram program;
        std::filesystem::create_directory(program.DataFile("1_usage.talvor"));
        const frmReports window(program.App, nullptr);
        QCOMPARE(Content(window, 5), QStringLiteral("The usage cannot be read."));
        QVERIFY(!Named<QPushButton>(window, "cmd_NewestMonth").isEnabled());
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Enter_in_a_month_or_a_year_generates_the_report_of_its_frame() {
        for (int frame = 1; frame <= 5; ++frame) {
            for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
                ReportsProgram program;
                frmReports window(program.App, nullptr);
                Named<QRadioButton>(window, "opt_materials_1").click();
                QTest::keyClick(&Month(window, frame), key);
                for (int other = 1; other <= 5; ++other)
                    QCOMPARE(program.HasFile(other), other == frame);
                QVERIFY(std::filesystem::remove(program.ProgramFile(ReportFiles[frame - 1])));
                QTest::keyClick(&Year(window, frame), key);
                QVERIFY(program.HasFile(frame));
            }
        }
    }

    void Enter_takes_the_year_as_typed_and_counts_once() {
        ReportsProgram program;
        program.SetBrowser();
        frmReports window(program.App, nullptr);
        QLineEdit& edit = *Year(window, 2).lineEdit();
        edit.selectAll();
        QTest::keyClicks(&edit, QStringLiteral("2026"));
        QTest::keyClick(&Year(window, 2), Qt::Key_Return);
        QVERIFY(ContentOf(program.ProgramFile("report2.htm")).find("03/2026") != std::string::npos);
        QCOMPARE(program.Programs.Started.size(), std::size_t(1));
    }

    void Enter_held_down_generates_no_more_reports() {
        ReportsProgram program;
        frmReports window(program.App, nullptr);
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(&Month(window, 3), &repeated);
        QVERIFY(!program.HasFile(3));
    }

    void Without_a_report_there_is_none_to_show() {
        ReportsProgram program;
        const frmReports window(program.App, nullptr);
        const auto& button = Named<QPushButton>(window, "cmd_LastReport");
        QVERIFY(!button.isEnabled());
        QCOMPARE(button.toolTip(), QStringLiteral("No report has been made"));
        QCOMPARE(TextOf<QLabel>(window, "lbl_LastReport"), std::string());
    }

    void Show_last_report_opens_the_one_just_generated_and_makes_none() {
        ReportsProgram program;
        const std::filesystem::path browser = program.SetBrowser();
        program.MakeReport(5, -1); // later than any that is made now
        const frmReports window(program.App, nullptr);
        GenerateButton(window, 2).click();
        const std::string page = ContentOf(program.ProgramFile("report2.htm"));
        Named<QPushButton>(window, "cmd_LastReport").click();
        QCOMPARE(program.Programs.Started.size(), std::size_t(2));
        QCOMPARE(program.Programs.Started[1].Program, browser);
        QCOMPARE(program.Programs.Started[1].CommandLine, program.Programs.Started[0].CommandLine);
        QCOMPARE(ContentOf(program.ProgramFile("report2.htm")), page);
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Show_last_report_opens_the_newest_of_an_earlier_run() {
        ReportsProgram program;
        program.SetBrowser();
        program.MakeReport(1, 3);
        program.MakeReport(3, 1);
        program.MakeReport(5, 2);
        const frmReports window(program.App, nullptr);
        Named<QPushButton>(window, "cmd_LastReport").click();
        QCOMPARE(program.Programs.Started.size(), std::size_t(1));
        QVERIFY(program.Programs.Started[0].CommandLine.ends_with("report3.htm"));
        QCOMPARE(TextOf<QLabel>(window, "lbl_LastReport"),
                 "Last report: " + PathText(program.ProgramFile("report3.htm")));
    }

    void A_report_that_was_declined_is_not_the_last() {
        TestProgram program; // whose user wants no empty reports
        const frmReports window(program.App, nullptr);
        GenerateButton(window, 1).click();
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(1)); // the question
        QVERIFY(!Named<QPushButton>(window, "cmd_LastReport").isEnabled());
    }

    void Without_a_browser_the_window_says_where_the_last_report_is() {
        ReportsProgram program;
        program.MakeReport(4, 1);
        const frmReports window(program.App, nullptr);
        Named<QPushButton>(window, "cmd_LastReport").click();
        QCOMPARE(TextOf<QLabel>(window, "lbl_LastReport"),
                 "No browser is configured. The report is " + PathText(program.ProgramFile("report4.htm")));
        QVERIFY(program.Prompts.Shown.empty());
        QVERIFY(program.Programs.Started.empty());
    }

    void A_browser_that_does_not_start_is_said_in_the_window() {
        ReportsProgram program;
        program.SetBrowser();
        program.Programs.FailsWith = Failure{.Doing = "start the program", .Reason = "Permission denied"};
        program.MakeReport(4, 1);
        const frmReports window(program.App, nullptr);
        Named<QPushButton>(window, "cmd_LastReport").click();
        QCOMPARE(TextOf<QLabel>(window, "lbl_LastReport"),
                 std::string("Cannot start the program: Permission denied."));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void A_last_report_that_is_gone_is_not_opened() {
        ReportsProgram program;
        program.SetBrowser();
        program.MakeReport(4, 1);
        const frmReports window(program.App, nullptr);
        std::filesystem::remove(program.ProgramFile("report4.htm"));
        Named<QPushButton>(window, "cmd_LastReport").click();
        QVERIFY(program.Programs.Started.empty());
        QCOMPARE(TextOf<QLabel>(window, "lbl_LastReport"),
                 "This report is no longer there: " + PathText(program.ProgramFile("report4.htm")));
        QVERIFY(!Named<QPushButton>(window, "cmd_LastReport").isEnabled());
    }

    void Close_closes() {
        TestProgram program;
        InNextModal<frmReports>([](frmReports& window) {
            Named<QPushButton>(window, "cmd_Close").click();
            QVERIFY(!window.isVisible());
        });
        ShowReportsForm(program.App, nullptr);
    }

    void Escape_closes() {
        TestProgram program;
        InNextModal<frmReports>([](frmReports& window) {
            QTest::keyClick(&window, Qt::Key_Escape);
            QVERIFY(!window.isVisible());
        });
        ShowReportsForm(program.App, nullptr);
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_reports_test)
#include "frm_reports_test.moc"
