#include "app/frm_main.h"
#include "base/text.h"
#include "dialogs/link_label.h"
#include "lists/frm_list.h"
#include "lists/frm_month_sheet.h"
#include "lists/sheet_view.h"
#include "overview/frm_overview.h"
#include "reports/frm_reports.h"
#include "store/companies.h"
#include "tests/overview/overview_shop.h"
#include "tests/support/gui.h"
#include "tests/support/run_program.h"
#include "transfer/frm_export.h"
#include "transfer/frm_import.h"
#include "usage/usage_record.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <functional>

namespace mact {
namespace {

/// Ten resins, of each 2204.6 lb in every month of 2005, which is 1 Mg. PR-01 to PR-09 have a HAP content of
/// 34 % and a point value of 42.68 kg/Mg, PR-10 has 36 % and 48.61; the allowance is 46. That is 432.73 kg of
/// 460 kg a month, 94.1 %.
struct MonthShop : OverviewShop {
    History Changes;

    MonthShop() {
        if (!AddNewCompany(App, "Heron Boats", "Dock 4")) qFatal("The test's company was not saved");
        std::vector<std::string> materials;
        std::vector<std::string> usage;
        for (const std::string& resin : Resins()) {
            materials.push_back(resin + "|resin|Production resin|Non-Spray|9|" +
                                (resin == "PR-10" ? "36" : "34") + "|0|0|0|0|0|0|0|0|0|0|0|0|0");
        }
        for (int month = 1; month <= 12; ++month)
            for (const std::string& resin : Resins())
                usage.push_back(resin + '|' + std::to_string(month) + "|2005|2204.6|lbs");
        ImportMaterials(materials);
        ImportUsage(usage);
        App.Changes = &Changes;
        Prompts.Shown.clear();
        Prompts.Answers.assign(24, PromptAnswer::Yes);
    }
    static std::vector<std::string> Resins() {
        std::vector<std::string> ids;
        for (int number = 1; number <= 10; ++number)
            ids.push_back(number < 10 ? "PR-0" + std::to_string(number) : "PR-10");
        return ids;
    }
    std::string UsageBytes() const { return ContentOf(DataFile("1_usage.talvor")); }
    /// The lines of a file to import: 100 lb of each resin in a month of 2006.
    static std::string MonthToImport(int month) {
        std::string lines;
        for (const std::string& resin : Resins())
            lines += resin + '|' + std::to_string(month) + "|2006|100|lbs\r\n";
        return lines;
    }
    /// The slots that become of them.
    static std::string MonthSlots(int month, std::int16_t first, bool isLive) {
        std::string bytes;
        for (std::int16_t resin = 1; resin <= 10; ++resin)
            bytes += Pack(UsageLayout, {.UsageId = first++,
                                        .MaterialId = resin,
                                        .Period = std::to_string(month) + "/2006",
                                        .Quantity = 100,
                                        .Unit = UnitLbs,
                                        .Active = isLive});
        return bytes;
    }
};

void Click(const QObject& window, const char* button) {
    Named<QPushButton>(window, button).click();
}

void Press(QWidget& window, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QApplication::setActiveWindow(&window);
    QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, Qt::Key(key), modifiers);
}

/// Digits and letters, a key each; "\n" is Enter.
void Type(QWidget& window, const char* text) {
    for (const char* letter = text; *letter != 0; ++letter)
        *letter == '\n' ? Press(window, Qt::Key_Return) : QTest::keyClick(window.focusWidget(), *letter);
}

QString Label(const QObject& window, const char* name) {
    return Named<QLabel>(window, name).text();
}

QStringList Lines(const QObject& list) {
    const auto& lines = Named<QListWidget>(list, "lst_Main");
    QStringList texts;
    for (int row = 0; row < lines.count(); ++row)
        texts << lines.item(row)->text();
    return texts;
}

void InUsage(const frmMain& window, const std::function<void(frmList&)>& act) {
    InNextModal<frmList>(act);
    Click(window, "cmd_Usage");
}

void AwaitOutlook(const QWidget& sheet) {
    while (Named<QTimer>(sheet, "tmr_Outlook").isActive() || Named<QTimer>(sheet, "tmr_Changed").isActive())
        QCoreApplication::processEvents();
}

/// January: 1 Mg of each, and 2 Mg of PR-10, whose point is forgotten at first: that would be 200 Mg. With
/// the eleven months before, 108 Mg and 211 Mg are 14,866.15 kg of 14,674 kg, and their HAP content is 35.3 %
/// of 35 %; 108 Mg and 13 Mg are 5,241.37 kg of 5,566 kg.
void EnterJanuary(frmMonthSheet& sheet) {
    AwaitOutlook(sheet);
    QCOMPARE(Label(sheet, "lbl_Outlook"), QStringLiteral("As stored, JAN 2006: emission average 94.1 % of "
                                                         "the allowance, 299.97 kg left."));
    QCOMPARE(Named<QComboBox>(sheet, "cbo_Month").currentText(), QStringLiteral("JAN"));
    for (int resin = 1; resin <= 9; ++resin)
        Type(sheet, "2204.6\n");
    Type(sheet, "440920\n");
    AwaitOutlook(sheet);
    QCOMPARE(Label(sheet, "lbl_Outlook"),
             QStringLiteral("With this sheet, JAN 2006: emission average 101.3 % of the allowance, 192.15 kg "
                            "too much (now 94.1 %); 2 figures are over or differ (now 0).\n"
                            "Over with this sheet, and not now: emission average; production resin, "
                            "nonatomized."));
    QVERIFY(Named<QLabel>(sheet, "lbl_Outlook").font().bold());
    Press(sheet, Qt::Key_Up);
    Type(sheet, "4409.2\n");
    AwaitOutlook(sheet);
    QCOMPARE(
        Label(sheet, "lbl_Outlook"),
        QStringLiteral("With this sheet, JAN 2006: emission average 94.2 % of the allowance, 324.63 kg left "
                       "(now 94.1 %)."));
    QCOMPARE(Label(sheet, "lbl_Sums"), QStringLiteral("1/2006 in all: 24250.6 lbs, 11000 kg"));
    Press(sheet, Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(Label(sheet, "lbl_Saved"), QStringLiteral("Saved 10 records of 1/2006."));
    Press(sheet, Qt::Key_Escape);
    QVERIFY(!sheet.isVisible());
}

void GenerateJanuary(frmReports& reports) {
    Named<QComboBox>(reports, "cbo_Month3").setCurrentText(QStringLiteral("JAN"));
    Named<QComboBox>(reports, "cbo_Year3").setCurrentText(QStringLiteral("2006"));
    Click(reports, "cmd_Generate3");
}

template <class W> void Transfer(const frmList& list, const char* button, const std::filesystem::path& file) {
    InNextModal<W>([&](W& window) {
        Named<QLineEdit>(window, "txt_SourceFile").setText(QString::fromStdString(file.string()));
        Click(window, button);
    });
    Click(list, button);
}

} // namespace

/// What a shop does with its months, in the real windows.
class month_story_test : public QObject {
    Q_OBJECT

private slots:
    void A_month_is_entered_on_the_sheet_and_a_slip_is_seen_before_it_is_saved() {
        MonthShop program;
        frmMain window(program.App);
        window.show();
        InUsage(window, [](frmList& list) {
            InNextModal<frmMonthSheet>(EnterJanuary);
            Click(list, "cmd_MonthSheet");
            QStringList january;
            for (const std::string& resin : MonthShop::Resins())
                january << QString::fromStdString(resin + " (1/2006)");
            QCOMPARE(Lines(list).mid(120), january);
            QCOMPARE(Named<QPushButton>(list, "cmd_Undo").accessibleName(),
                     QStringLiteral("Undo: sheet of 1/2006 (10 records)"));
        });
        QTRY_COMPARE(Named<LinkLabel>(window, "lbl_Verdict").text(),
                     QStringLiteral("JAN 2006: emission average 94.2 % of the allowance; nothing needs "
                                    "attention"));
        InNextModal<frmOverview>([](frmOverview& overview) {
            QVERIFY(Label(overview, "lbl_Answer3")
                        .startsWith(QStringLiteral("\u2713 Within. 94.2 % of the allowance")));
        });
        Click(window, "cmd_Overview");
        QVERIFY(program.Prompts.Shown.empty());
        InNextModal<frmReports>(GenerateJanuary);
        Click(window, "cmd_Reports");
        QCOMPARE(program.Prompts.Shown.size(), std::size_t{1}); // where the report is
        QCOMPARE(program.Prompts.Shown.front().Kind, PromptKind::Information);
        const std::string page = ContentOf(program.ProgramFile("report3.htm"));
        QVERIFY(page.find("5241.37") != std::string::npos);
        QVERIFY(page.find("5566") != std::string::npos);
    }

    void A_wrong_import_is_taken_back_and_the_right_one_made() {
        MonthShop program;
        const std::string before = program.UsageBytes();
        const std::filesystem::path wrong = program.ProgramFile("wrong.txt");
        const std::filesystem::path right = program.ProgramFile("right.txt");
        const std::filesystem::path exported = program.ProgramFile("exported.txt");
        WriteContent(wrong, MonthShop::MonthToImport(2));
        WriteContent(right, MonthShop::MonthToImport(1));
        frmMain window(program.App);
        window.show();
        InUsage(window, [&](frmList& list) {
            const QStringList december = Lines(list);
            Transfer<frmImport>(list, "cmd_Import", wrong);
            QCOMPARE(Lines(list).back(), QStringLiteral("PR-10 (2/2006)"));
            Press(list, Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(Lines(list), december);
            QCOMPARE(program.UsageBytes(), before + MonthShop::MonthSlots(2, 121, false));
            Transfer<frmImport>(list, "cmd_Import", right);
            QCOMPARE(Lines(list).size(), 130);
            QCOMPARE(Lines(list).back(), QStringLiteral("PR-10 (1/2006)"));
            Transfer<frmExport>(list, "cmd_Export", exported);
        });
        QCOMPARE(program.UsageBytes(),
                 before + MonthShop::MonthSlots(2, 121, false) + MonthShop::MonthSlots(1, 131, true));
        const std::string lines = ContentOf(exported);
        const std::string year = "PR-10|12|2005|2204.6|lbs\r\n"; // its last line
        QCOMPARE(lines.substr(lines.find(year)),
                 year + MonthShop::MonthToImport(2) + MonthShop::MonthToImport(1));
        QVERIFY(program.Prompts.Shown.empty());
    }

    void A_deleted_year_is_brought_back_by_Undo_and_by_the_command_line() {
        MonthShop program;
        std::vector<std::string> year;
        for (int month = 1; month <= 12; ++month)
            year.push_back("PR-01|" + std::to_string(month) + "|2007|100|lbs");
        program.ImportUsage(year);
        program.Prompts.Shown.clear();
        program.Changes = {};
        const std::string before = program.UsageBytes();
        frmMain window(program.App);
        window.show();
        InUsage(window, [&](frmList& list) {
            DeleteYear(list);
            QCOMPARE(program.Prompts.Shown.size(), std::size_t{12}); // a question each
            for (int month = 12; month >= 1; --month) {
                QCOMPARE(Named<QPushButton>(list, "cmd_Undo").accessibleName(),
                         QStringLiteral("Undo: delete PR-01 (%1/2007)").arg(month));
                Press(list, Qt::Key_Z, Qt::ControlModifier);
            }
            QCOMPARE(Lines(list).size(), 12);
            QCOMPARE(program.UsageBytes(), before);
            DeleteYear(list);
        });
        program.Changes = {}; // the program has ended
        InUsage(window, [](frmList& list) { QVERIFY(!Named<QPushButton>(list, "cmd_Undo").isVisible()); });
        UndeleteYear(program);
        QCOMPARE(program.UsageBytes(), before);
        InUsage(window, [](frmList& list) { QCOMPARE(Lines(list).size(), 132); });
    }

private:
    /// Leaves the list filtered.
    static void DeleteYear(frmList& list) {
        auto& filter = Named<QPushButton>(list, "cmd_Filter");
        if (filter.text() == QLatin1String("&Apply")) {
            Named<QComboBox>(list, "cbo_Year").setCurrentText(QStringLiteral("2007"));
            filter.click();
        }
        QCOMPARE(Lines(list).size(), 12);
        for (int month = 1; month <= 12; ++month) {
            Named<QListWidget>(list, "lst_Main").setCurrentRow(0);
            Click(list, "cmd_Delete");
        }
        QCOMPARE(Lines(list), QStringList());
    }
    static void UndeleteYear(const MonthShop& program) {
        const std::filesystem::path settings = program.Folder.Path() / "settings";
        std::filesystem::create_directories(settings);
        const auto run = [&](std::vector<std::string> arguments) {
            arguments.insert(arguments.begin(),
                             {"--folder", PathText(program.App.ProgramFolder), "--company", "1"});
            return RunProgram(PathFromUtf8(MACT_CLI_PROGRAM), arguments, settings);
        };
        std::string lines;
        std::vector<std::string> undelete = {"undelete", "usage"};
        for (int month = 1; month <= 12; ++month) {
            const std::string number = std::to_string(120 + month);
            lines += "usage|" + number + "|PR-01|" + std::to_string(month) + "/2007|100|lbs\n";
            undelete.push_back(number);
        }
        QCOMPARE(run({"deleted"}).Output, lines);
        const ProgramRun undeleted = run(undelete);
        QCOMPARE(undeleted.Errors, std::string());
        QCOMPARE(undeleted.Output, lines);
        QCOMPARE(run({"deleted"}).Output, std::string());
    }
};
} // namespace mact

QTEST_MAIN(mact::month_story_test)
#include "month_story_test.moc"
