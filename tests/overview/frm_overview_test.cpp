#include "overview/frm_overview.h"

#include "materials/frm_material.h"
#include "overview/frm_half_year.h"
#include "overview/frm_overview_help.h"
#include "overview/frm_overview_options.h"
#include "overview/frm_trace.h"
#include "overview/frm_what_if.h"
#include "overview/half_year.h"
#include "overview/overview_chart.h"
#include "overview/overview_csv.h"
#include "store/additional_names.h"
#include "tests/overview/overview_shop.h"
#include "tests/overview/six_shops.h"
#include "tests/support/folder_content.h"
#include "tests/support/gui.h"
#include "usage/frm_usage.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QTextEdit>
#include <QToolButton>

namespace mact {
namespace {

std::vector<std::string> EachMonth(const std::string& material, int year, int pounds) {
    std::vector<std::string> lines;
    for (int month = 1; month <= 12; ++month)
        lines.push_back(material + '|' + std::to_string(month) + '|' + std::to_string(year) + '|' +
                        std::to_string(pounds) + "|lbs");
    return lines;
}

/// 22,046 lb of a resin at 34 % in each month of 2005: 120 Mg at 42.68 kg/Mg are 5,121.60 kg, of 120 Mg times
/// 46 = 5,520 kg.
struct YearShop : OverviewShop {
    YearShop() {
        App.CurrentCompanyName = "Acme Boats";
        App.CurrentCompanyLocation = "Port Ellery";
        ImportMaterials({"PR-1|resin|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        ImportUsage(EachMonth("PR-1", 2005, 22046));
    }
};

QAbstractItemModel& Table(const QWidget& window) {
    return *Named<QTableView>(window, "tbl_Rows").model();
}
QString Cell(const QWidget& window, int row, int column) {
    return Table(window).index(row, column).data().toString();
}
QStringList Row(const QWidget& window, int row) {
    QStringList cells;
    for (int column = 0; column < Table(window).columnCount(); ++column)
        cells << Cell(window, row, column);
    return cells;
}
QStringList Attentions(const QWidget& window) {
    const QAbstractItemModel& list = *Named<QListView>(window, "lst_Attention").model();
    QStringList lines;
    for (int row = 0; row < list.rowCount(); ++row)
        lines << list.index(row, 0).data().toString();
    return lines;
}
QString MonthShown(const QWidget& window) {
    return Named<QComboBox>(window, "cbo_Month").currentText() + QLatin1Char(' ') +
           Named<QComboBox>(window, "cbo_Year").currentText();
}
void GoTo(const QWidget& window, MonthNumber month) {
    Named<QComboBox>(window, "cbo_Month").setCurrentIndex(month % 12);
    Named<QComboBox>(window, "cbo_Year").setEditText(QString::number(month / 12));
}
QString Answer(const QWidget& window, int number) {
    return Named<QLabel>(window, qPrintable(QStringLiteral("lbl_Answer%1").arg(number))).text();
}
void Press(const QWidget& window, const char* button) {
    Named<QAbstractButton>(window, button).click();
}
void Activate(const QWidget& window, int line) {
    auto& list = Named<QListView>(window, "lst_Attention");
    list.setCurrentIndex(list.model()->index(line, 0));
    QTest::keyClick(&list, Qt::Key_Return);
}

void CompareRows(const QJsonObject& month, const QWidget& window) {
    QMap<QString, QStringList> rows;
    for (int row = 0; row < Table(window).rowCount(); ++row) {
        const QString exact = Table(window).index(row, 2).data(Qt::ToolTipRole).toString();
        rows[Cell(window, row, 0)] = {Cell(window, row, 2), exact.section(QLatin1Char(' '), -1),
                                      Cell(window, row, 3), Cell(window, row, 6)};
    }
    const auto expect = [&](const QString& name, const QString& value, const QString& exact,
                            const QString& limit, const QJsonObject& its) {
        QString state = In(its, "overview_state").toString();
        const std::string cause = CauseIn(its);
        if (!cause.empty()) state += QStringLiteral(" (%1)").arg(QString::fromStdString(cause));
        const QStringList shown = rows.take(name);
        QCOMPARE(shown.mid(0, 3), (QStringList{value, exact, limit}));
        QVERIFY2(shown[3].mid(2).toLower().startsWith(state), qPrintable(shown[3]));
    };
    const QJsonObject contents = In(month, "weighted").toObject();
    for (const QString& row : contents.keys()) {
        const QJsonObject its = contents.value(row).toObject();
        expect(row, QString::fromStdString(Short(In(its, "report_pct")) + " %"),
               QString::fromStdString(Exact(In(its, "rule_pct"))),
               QString::fromStdString(Short(In(its, "limit")) + " %"), its);
    }
    const QJsonObject filled = In(month, "filled").toObject();
    for (const QString& material : filled.keys()) {
        const QJsonObject its = filled.value(material).toObject();
        const double value = In(its, "point_value_rule").toDouble();
        expect(material + QStringLiteral(" (filled resin)"),
               QString::number(value, 'f', 2) + QStringLiteral(" kg/Mg"),
               QString::fromStdString(Exact(value)),
               QString::fromStdString(Short(In(its, "ceiling")) + " kg/Mg"), its);
    }
    QVERIFY(rows.isEmpty());
}

void CompareAverage(const QJsonObject& month, const QWidget& window) {
    const QJsonObject average = In(month, "average").toObject();
    const double left = In(average, "report_headroom_kg").toDouble();
    const QString kilograms =
        QLocale::c().toString(qAbs(left), 'f', 2) + QLatin1String(left < 0 ? " kg too much." : " kg left.");
    QVERIFY2(Answer(window, 3).contains(kilograms), qPrintable(Answer(window, 3) + kilograms));
    const QString state = In(average, "overview_state").toString();
    QVERIFY(Answer(window, 3).mid(2).toLower().startsWith(state));
    const auto line = [&](const char* name, const char* report, const char* exact) {
        return QStringLiteral("%1 %2 kg; not rounded: %3 kg")
            .arg(QLatin1String(name), QString::fromStdString(Short(In(average, report))),
                 QString::fromStdString(Exact(In(average, exact))));
    };
    QCOMPARE(Named<QWidget>(window, "Frame_Answer3").toolTip(),
             line("Emissions", "report_kg", "rule_kg") + QLatin1Char('\n') +
                 line("Allowance", "report_limit_kg", "rule_limit_kg"));
}

} // namespace

class frm_overview_test : public QObject {
    Q_OBJECT

private slots:
    void Six_shops_have_the_figures_of_exact_arithmetic() {
        for (const auto& each : SixShops()) {
            const QJsonObject shop = each.toObject();
            OverviewShop program;
            program.ImportMaterials(Texts(In(shop, "materials")));
            program.ImportUsage(Texts(In(shop, "usage")));
            frmOverview window(program.App, nullptr);
            for (const auto& monthEnd : In(shop, "month_ends").toArray()) {
                const QJsonObject month = monthEnd.toObject();
                GoTo(window, MonthIn(month, "month_end"));
                CompareRows(month, window);
                CompareAverage(month, window);
                if (QTest::currentTestFailed())
                    QFAIL(qPrintable(In(shop, "case").toString() + In(month, "month_end").toString()));
            }
        }
    }

    void Opens_at_the_newest_month_with_use() {
        YearShop program;
        const frmOverview window(program.App, nullptr);
        QCOMPARE(window.windowTitle(), QStringLiteral("Compliance Overview"));
        QCOMPARE(TextOf<QLabel>(window, "lbl_Company"), std::string("Acme Boats, Port Ellery"));
        QCOMPARE(TextOf<QLabel>(window, "lbl_Newest"),
                 std::string("The newest month with use is December 2005."));
        QCOMPARE(MonthShown(window), QStringLiteral("DEC 2005"));
    }

    void Answers_three_questions_in_words_with_a_sign() {
        YearShop program;
        const frmOverview window(program.App, nullptr);
        QCOMPARE(Answer(window, 1), QStringLiteral("\u2713 No material in use is above its limit."));
        QCOMPARE(Answer(window, 2), QStringLiteral("\u2713 Within."));
        QCOMPARE(Answer(window, 3),
                 QStringLiteral("\u2713 Within. 92.8 % of the allowance, 398.40 kg left."));
        QCOMPARE(TextOf<QLabel>(window, "lbl_Meaning1"),
                 std::string("One option is enough for each operation: materials within their limits need no "
                             "averaging. See the Compliant Materials Report."));
        QCOMPARE(Named<QWidget>(window, "Frame_Answer3").accessibleName(),
                 QStringLiteral("Emissions against the allowance"));
        QCOMPARE(Named<QWidget>(window, "Frame_Answer3").accessibleDescription(),
                 QStringLiteral("Within. 92.8 % of the allowance, 398.40 kg left."));
    }

    void A_row_of_the_table_says_everything_about_it() {
        YearShop program;
        const frmOverview window(program.App, nullptr);
        QCOMPARE(Table(window).rowCount(), 1);
        // 1 of 35 points is left.
        QCOMPARE(Row(window, 0),
                 (QStringList{QStringLiteral("production resin, nonatomized"), QStringLiteral("120"),
                              QStringLiteral("34 %"), QStringLiteral("35 %"), QString(),
                              QStringLiteral("2.86 %"), QStringLiteral("\u2713 Within"), QString()}));
        QCOMPARE(Table(window).index(0, 4).data(Qt::AccessibleTextRole).toString(),
                 QStringLiteral("97.14 % of the limit"));
    }

    void Months_are_stepped_by_buttons_and_page_keys() {
        YearShop program;
        frmOverview window(program.App, nullptr);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        Press(window, "cmd_Previous");
        QCOMPARE(MonthShown(window), QStringLiteral("NOV 2005"));
        QCOMPARE(Answer(window, 3),
                 QStringLiteral("\u2013 Too early (11 of 12 months). 92.8 % of the allowance, "
                                "365.20 kg left.")); // 110 Mg
        QTest::keyClick(&window, Qt::Key_PageUp);
        QCOMPARE(MonthShown(window), QStringLiteral("OCT 2005"));
        QTest::keyClick(&window, Qt::Key_PageDown);
        Press(window, "cmd_Next");
        Press(window, "cmd_Next");
        QCOMPARE(MonthShown(window), QStringLiteral("JAN 2006"));
        QVERIFY(Answer(window, 3).startsWith(QStringLiteral("\u2713 Within. 92.8 %")));
    }

    void A_typed_year_is_shown_once_it_has_four_digits() {
        YearShop program;
        frmOverview window(program.App, nullptr);
        auto& year = Named<QComboBox>(window, "cbo_Year");
        year.setEditText(QStringLiteral("200"));
        QCOMPARE(Table(window).rowCount(), 1);
        year.setEditText(QStringLiteral("2009"));
        QCOMPARE(Table(window).rowCount(), 0);
        QCOMPARE(Answer(window, 3), QStringLiteral("\u2013 Nothing was used that is averaged."));
    }

    void The_first_and_last_months_have_no_neighbour() {
        YearShop program;
        const frmOverview window(program.App, nullptr);
        GoTo(window, FirstMonthEnd);
        QVERIFY(!Named<QToolButton>(window, "cmd_Previous").isEnabled());
        QVERIFY(Named<QToolButton>(window, "cmd_Next").isEnabled());
        GoTo(window, LastMonthEnd);
        QVERIFY(Named<QToolButton>(window, "cmd_Previous").isEnabled());
        QVERIFY(!Named<QToolButton>(window, "cmd_Next").isEnabled());
    }

    void The_chart_shows_twelve_to_36_month_ends() {
        YearShop program;
        const frmOverview window(program.App, nullptr);
        const auto& chart = Named<OverviewChart>(window, "cht_Months");
        QCOMPARE(chart.accessibleName(), QStringLiteral("Emissions in percent of the allowance"));
        QStringList values = chart.accessibleDescription().split(QStringLiteral("; "));
        QCOMPARE(values.size(), 12);
        QCOMPARE(values.front(), QStringLiteral("JAN 2005: 92.8 %, too early (1 of 12 months)"));
        QCOMPARE(values.back(), QStringLiteral("DEC 2005: 92.8 %, within"));
        Named<QComboBox>(window, "cbo_Span").setCurrentIndex(2);
        values = chart.accessibleDescription().split(QStringLiteral("; "));
        QCOMPARE(values.size(), 36);
        QCOMPARE(values.front(), QStringLiteral("JAN 2003: no figure"));
    }

    void A_selected_row_takes_the_place_of_the_emissions_in_the_chart() {
        YearShop program;
        frmOverview window(program.App, nullptr);
        const auto& chart = Named<OverviewChart>(window, "cht_Months");
        Named<QTableView>(window, "tbl_Rows").selectRow(0);
        QCOMPARE(chart.accessibleName(),
                 QStringLiteral("production resin, nonatomized in percent of its limit"));
        QVERIFY(chart.accessibleDescription().endsWith(QLatin1String("DEC 2005: 97.1 %, within")));
        Press(window, "cmd_Next"); // the row stays selected
        QVERIFY(chart.accessibleDescription().endsWith(QLatin1String("JAN 2006: 97.1 %, within")));
        Named<QTableView>(window, "tbl_Rows").clearSelection();
        QCOMPARE(chart.accessibleName(), QStringLiteral("Emissions in percent of the allowance"));
    }

    void Rows_are_worst_first_and_can_be_sorted() {
        OverviewShop program;
        program.ImportMaterials({"GC-1|gel|Pigmented production gel|All|9|30|0|0|0|0|0|0|0|0|0|0|0|0|0",
                                 "PR-1|resin|Production resin|Non-Spray|9|36|0|0|0|0|0|0|0|0|0|0|0|0|0",
                                 "TR-1|tool|Tooling resin|Non-Spray|9|38|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        for (const char* material : {"GC-1", "PR-1", "TR-1"})
            program.ImportUsage(EachMonth(material, 2005, 1000));
        frmOverview window(program.App, nullptr);
        const auto items = [&] {
            return QStringList{Cell(window, 0, 0), Cell(window, 1, 0), Cell(window, 2, 0)};
        };
        const QStringList worstFirst = {QStringLiteral("production resin, nonatomized"),
                                        QStringLiteral("tooling resin, nonatomized"),
                                        QStringLiteral("pigmented gel coat")};
        QCOMPARE(items(), worstFirst);
        auto& table = Named<QTableView>(window, "tbl_Rows");
        table.selectRow(0);
        table.sortByColumn(0, Qt::AscendingOrder);
        QCOMPARE(items(), (QStringList{worstFirst[2], worstFirst[0], worstFirst[1]}));
        QCOMPARE(table.currentIndex().row(), 1);    // it is the same row
        table.sortByColumn(3, Qt::DescendingOrder); // limits 39, 35, 33
        QCOMPARE(items(), (QStringList{worstFirst[1], worstFirst[0], worstFirst[2]}));
        table.sortByColumn(6, Qt::AscendingOrder);
        QCOMPARE(items(), worstFirst);
    }

    void The_table_is_copied_with_tabs() {
        YearShop program;
        const frmOverview window(program.App, nullptr);
        Press(window, "cmd_Copy");
        QCOMPARE(QApplication::clipboard()->text(),
                 QStringLiteral("Type and method\tMg used\tContent\tLimit\tHeadroom\tState\tFirst trouble\n"
                                "production resin, nonatomized\t120\t34 %\t35 %\t2.86 %\t\u2713 Within\t\n"));
    }

    void Nothing_that_needs_attention_is_said() {
        YearShop program;
        const frmOverview window(program.App, nullptr);
        QCOMPARE(Attentions(window), QStringList{QStringLiteral("\u2713 No record needs attention.")});
    }

    void Enter_on_a_finding_opens_the_record_and_what_was_mended_is_gone() {
        YearShop program;
        program.ImportUsage({"PR-1|1|2006|-5|lbs"});
        frmOverview window(program.App, nullptr);
        window.show();
        QVERIFY2(Attentions(window)[0].startsWith(QStringLiteral("\u25B2 1_usage.talvor, record 13")),
                 qPrintable(Attentions(window)[0]));
        QVERIFY(Cell(window, 0, 6).endsWith(QLatin1String("; not trusted: 1 finding")));
        QVERIFY(Answer(window, 3).contains(QLatin1String(" Not trusted: 1 finding.")));
        InNextModal<frmUsage>([](frmUsage& editor) {
            Named<QLineEdit>(editor, "txt_Quantiry").setText(QStringLiteral("22046"));
            Press(editor, "cmd_Save");
        });
        Activate(window, 0);
        QCOMPARE(Attentions(window), QStringList{QStringLiteral("\u2713 No record needs attention.")});
        QCOMPARE(Cell(window, 0, 6), QStringLiteral("\u2713 Within"));
    }

    void A_tool_tip_shows_quotes_as_quotes() {
        OverviewShop program;
        program.ImportMaterials({"PR-1|resin|Production resin|Non-Spray|60|34|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        program.ImportUsage(EachMonth("PR-1", 2005, 1000));
        const frmOverview window(program.App, nullptr);
        const QModelIndex finding = Named<QListView>(window, "lst_Attention").model()->index(0, 0);
        const QString toolTip = finding.data(Qt::ToolTipRole).toString();
        QVERIFY2(toolTip.contains(QLatin1String("&quot;PR-1&quot;")), qPrintable(toolTip));
        QVERIFY(Qt::mightBeRichText(toolTip));
        const QString state = Table(window).index(0, 6).data(Qt::ToolTipRole).toString();
        QCOMPARE(state, QStringLiteral("<qt>\u2713 Within"));
    }

    void Enter_on_a_finding_about_a_material_opens_its_editor() {
        OverviewShop program;
        program.ImportMaterials({"PR-1|resin|Production resin|Non-Spray|60|34|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        program.ImportUsage(EachMonth("PR-1", 2005, 1000));
        frmOverview window(program.App, nullptr);
        window.show();
        bool isOpen = false;
        InNextModal<frmMaterial>([&isOpen](frmMaterial& editor) {
            isOpen = Named<QLineEdit>(editor, "txt_CustomId").text() == QLatin1String("PR-1");
        });
        Activate(window, 0);
        QVERIFY(isOpen);
    }

    void A_month_in_which_the_average_will_be_over_is_foretold() {
        OverviewShop program;
        // 42.68 kg/Mg in nine months, 48.61 in three; of 46 it is over once three quarters are of the latter.
        program.ImportMaterials({"PR-1|resin|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0",
                                 "PR-2|resin|Production resin|Non-Spray|9|36|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        for (int month = 1; month <= 12; ++month)
            program.ImportUsage(
                {(month <= 9 ? "PR-1|" : "PR-2|") + std::to_string(month) + "|2005|1000|lbs"});
        const frmOverview window(program.App, nullptr);
        const QString foretold = QStringLiteral(
            "\u2013 If use goes on as the mean of the last three months, material by material, the "
            "average is over in April 2006 (looked ahead 24 months).");
        QVERIFY2(Attentions(window).contains(foretold),
                 qPrintable(Attentions(window).join(QLatin1Char('\n'))));
    }

    void A_kept_pack_whose_figures_have_changed_is_said() {
        YearShop program;
        QVERIFY(WritePack(program.App, {.Year = 2005, .Half = 2}, false));
        {
            frmOverview window(program.App, nullptr);
            QTRY_VERIFY(!TextOf<QLabel>(window, "lbl_Packs").empty()); // compared
            QCOMPARE(Attentions(window), QStringList{QStringLiteral("\u2713 No record needs attention.")});
        }
        program.ImportMaterials({"PR-2|resin|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        program.ImportUsage({"PR-2|7|2005|22046|lbs"});
        frmOverview window(program.App, nullptr);
        QTRY_VERIFY(Attentions(window)[0].startsWith(QStringLiteral(
            "\u2013 The half-year pack for July to December 2005 no longer comes out the same: ")));
    }

    void Saved_options_hold_at_once() {
        YearShop program;
        frmOverview window(program.App, nullptr);
        InNextModal<frmOverviewOptions>([](frmOverviewOptions& options) {
            Named<QComboBox>(options, "cbo_StartMonth").setCurrentText(QStringLiteral("JUL"));
            Named<QComboBox>(options, "cbo_StartYear").setEditText(QStringLiteral("2005"));
            Press(options, "cmd_Save");
        });
        Press(window, "cmd_Options");
        QVERIFY2(Answer(window, 3).startsWith(QStringLiteral("\u2013 Too early (6 of 12 months)")),
                 qPrintable(Answer(window, 3)));
    }

    void A_pack_that_was_made_in_its_window_is_compared() {
        YearShop program;
        frmOverview window(program.App, nullptr);
        InNextModal<frmHalfYear>([](frmHalfYear& packs) { Press(packs, "cmd_Make"); });
        Press(window, "cmd_HalfYear");
        QVERIFY(std::filesystem::exists(program.ProgramFile("half-year") / "1" / "2005-2.csv"));
        WriteContent(program.ProgramFile("half-year") / "1" / "2005-2.csv", "no pack");
        InNextModal<frmHalfYear>([](frmHalfYear&) {});
        Press(window, "cmd_HalfYear");
        QTRY_VERIFY(Attentions(window)[0].contains(QLatin1String("2005-2.csv")));
    }

    void What_if_and_help_open_from_it() {
        YearShop program;
        frmOverview window(program.App, nullptr);
        window.show();
        QStringList opened;
        InNextModal<frmWhatIf>([&](frmWhatIf& what) { opened << what.windowTitle(); });
        Press(window, "cmd_WhatIf");
        QApplication::setActiveWindow(&window); // shortcuts are of the active window
        InNextModal<frmOverviewHelp>([&](frmOverviewHelp& help) { opened << help.windowTitle(); });
        QTest::keyClick(&window, Qt::Key_F1);
        QCOMPARE(opened.size(), 2);
        QCOMPARE(opened[0], QStringLiteral("What if: nothing is saved"));
    }

    void The_pages_are_previewed_and_saved_as_a_pdf() {
        YearShop program;
        frmOverview window(program.App, nullptr);
        QString opened;
        InNextModal<QDialog>([&](QDialog& preview) { opened = preview.objectName(); });
        Press(window, "cmd_Print");
        QCOMPARE(opened, QStringLiteral("frmPrintPreview"));
        program.Dialogs.Choice = program.ProgramFile("overview.pdf");
        Press(window, "cmd_Pdf");
        QVERIFY(ContentOf(program.ProgramFile("overview.pdf")).starts_with("%PDF-"));
        QVERIFY(program.Prompts.Shown.empty());
        program.Dialogs.Choice = program.ProgramFile("data"); // a folder
        Press(window, "cmd_Pdf");
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(1));
    }

    void A_pdf_that_is_not_wanted_after_all_is_not_written() {
        YearShop program;
        const auto before = FilesIn(program.App.ProgramFolder);
        const frmOverview window(program.App, nullptr);
        program.Dialogs.Choice.reset();
        Press(window, "cmd_Pdf");
        QCOMPARE(FilesIn(program.App.ProgramFolder), before);
    }

    void The_chart_on_paper_is_in_light_colours() {
        YearShop program;
        frmOverview window(program.App, nullptr);
        QPalette dark(Qt::black);
        window.setPalette(dark);
        const QImage picture = Named<OverviewChart>(window, "cht_Months").Picture();
        QCOMPARE(picture.pixelColor(2, 2), QColor(Qt::white));
        QVERIFY(picture.width() >= 1000);
    }

    void All_five_reports_go_to_a_folder_of_the_month() {
        YearShop program;
        const auto before = FilesIn(program.App.ProgramFolder);
        const frmOverview window(program.App, nullptr);
        Press(window, "cmd_Reports");
        QCOMPARE(FilesIn(program.ProgramFile("reports") / "1" / "2005-12").size(), std::size_t(6));
        QCOMPARE(FilesIn(program.App.ProgramFolder), before);
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(1));
        // Without a browser the index is named as a report is.
        QVERIFY(program.Prompts.LastText().find(PathText(program.ProgramFile("reports") / "1" / "2005-12" /
                                                         "index.htm")) != std::string::npos);
    }

    void A_selected_row_is_left_for_the_emissions_by_a_button() {
        YearShop program;
        frmOverview window(program.App, nullptr);
        auto& back = Named<QPushButton>(window, "cmd_Emissions");
        QVERIFY(!back.isEnabled());
        Named<QTableView>(window, "tbl_Rows").selectRow(0);
        QVERIFY(back.isEnabled());
        back.click();
        QCOMPARE(Named<OverviewChart>(window, "cht_Months").accessibleName(),
                 QStringLiteral("Emissions in percent of the allowance"));
        QVERIFY(!back.isEnabled());
    }

    void The_menu_of_the_table_sorts_by_keyboard() {
        YearShop program;
        program.ImportMaterials({"GC-1|gel|Pigmented production gel|All|9|30|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        program.ImportUsage(EachMonth("GC-1", 2005, 1000));
        frmOverview window(program.App, nullptr);
        QCOMPARE(Cell(window, 0, 0), QStringLiteral("production resin, nonatomized")); // less headroom
        const QList<QAction*> actions = Named<QTableView>(window, "tbl_Rows").actions();
        QCOMPARE(actions.size(), 7); // all but the bars
        QCOMPARE(actions.front()->text(), QStringLiteral("Sort by Type and method"));
        actions.front()->trigger();
        QCOMPARE(Cell(window, 0, 0), QStringLiteral("pigmented gel coat"));
    }

    void Enter_on_a_note_opens_where_it_can_be_seen_to() {
        YearShop program;
        WriteContent(program.DataFile("1_overview.txt"), "start=13/2005\n");
        QVERIFY(WritePack(program.App, {.Year = 2005, .Half = 2}, false));
        WriteContent(program.ProgramFile("half-year") / "1" / "2005-2.csv", "no pack");
        frmOverview window(program.App, nullptr);
        QTRY_COMPARE(Attentions(window).size(), 2);
        QStringList opened;
        InNextModal<frmOverviewOptions>([&](frmOverviewOptions&) { opened << QStringLiteral("options"); });
        Activate(window, 0);
        QTRY_COMPARE(Attentions(window).size(), 2);
        InNextModal<frmHalfYear>([&](frmHalfYear&) { opened << QStringLiteral("packs"); });
        Activate(window, 1);
        QCOMPARE(opened, (QStringList{QStringLiteral("options"), QStringLiteral("packs")}));
    }

    void Kept_packs_are_counted_beside_the_newest_month() {
        YearShop program;
        for (const int half : {1, 2})
            QVERIFY(WritePack(program.App, {.Year = 2005, .Half = half}, false));
        const frmOverview window(program.App, nullptr);
        QTRY_COMPARE(TextOf<QLabel>(window, "lbl_Packs"),
                     std::string("Half-year packs kept: 2; their figures are still the same"));
        program.ImportMaterials({"PR-2|resin|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        program.ImportUsage({"PR-2|7|2005|22046|lbs"});
        const frmOverview other(program.App, nullptr);
        QTRY_COMPARE(TextOf<QLabel>(other, "lbl_Packs"),
                     std::string("Half-year packs kept: 2; figures have changed in 1"));
    }

    void It_fits_a_small_screen_at_twice_the_letters() {
        const QFont before = QApplication::font();
        QFont large = before;
        large.setPointSizeF(before.pointSizeF() * 2);
        QApplication::setFont(large);
        {
            YearShop program;
            frmOverview window(program.App, nullptr);
            window.show();
            window.resize(1024, 560); // 600 less a title bar
            QCoreApplication::processEvents();
            QVERIFY2(window.height() <= 560, qPrintable(QString::number(window.height())));
            QVERIFY2(window.width() <= 1024, qPrintable(QString::number(window.width())));
            QCOMPARE(Named<QScrollArea>(window, "scroll_Form").horizontalScrollBar()->maximum(), 0);
        }
        QApplication::setFont(before);
    }

    void The_focus_is_on_the_month_at_first() {
        YearShop program;
        frmOverview window(program.App, nullptr);
        window.show();
        QCOMPARE(window.focusWidget(), &Named<QComboBox>(window, "cbo_Month"));
    }

    void A_file_that_cannot_be_read_is_said_in_the_window() {
        YearShop program;
        std::filesystem::remove(program.DataFile("1_usage.talvor"));
        std::filesystem::create_directory(program.DataFile("1_usage.talvor"));
        program.Prompts.Shown.clear();
        const frmOverview window(program.App, nullptr);
        QVERIFY(TextOf<QLabel>(window, "lbl_Newest").starts_with("Cannot "));
        QVERIFY(TextOf<QLabel>(window, "lbl_Newest").find("1_usage.talvor") != std::string::npos);
        QVERIFY(program.Prompts.Shown.empty());
        // Neither is it said that there is nothing.
        QVERIFY(Attentions(window)[0].startsWith(QStringLiteral("\u2013 Cannot ")));
        for (const int card : {1, 2, 3})
            QCOMPARE(Answer(window, card), QStringLiteral("? No answer: the records cannot be read."));
    }

    void One_cause_that_fails_all_reports_is_told_once() {
        YearShop program;
        const frmOverview window(program.App, nullptr);
        std::filesystem::remove(program.DataFile("1_usage.talvor"));
        std::filesystem::create_directory(program.DataFile("1_usage.talvor"));
        program.Prompts.Shown.clear();
        Press(window, "cmd_Reports");
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(2)); // and where the index is
    }

    void A_materials_editor_has_the_companys_own_pollutant_names() {
        OverviewShop program;
        program.ImportMaterials({"PR-1|resin|Production resin|Non-Spray|60|34|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        program.ImportUsage(EachMonth("PR-1", 2005, 1000));
        QVERIFY(SaveAdditionalNames(program.App, {"A1", "A2", "A3", "A4", "A5", "A6"}));
        program.App.AdditionalNames = "B1|B2|B3|B4|B5|B6"; // of the company before
        frmOverview window(program.App, nullptr);
        window.show();
        InNextModal<frmMaterial>([](frmMaterial&) {});
        Activate(window, 0);
        QCOMPARE(program.App.AdditionalNames, std::string("A1|A2|A3|A4|A5|A6"));
    }

    void Enter_on_the_row_with_the_keyboard_focus_traces_that_row() {
        YearShop program;
        frmOverview window(program.App, nullptr);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto& rows = Named<QTableView>(window, "tbl_Rows");
        rows.setFocus(Qt::TabFocusReason);
        QVERIFY(!rows.selectionModel()->hasSelection());
        InNextModal<frmTrace>([](frmTrace& trace) {
            QVERIFY(
                Named<QComboBox>(trace, "cbo_Figure").currentText().startsWith(QLatin1String("Content of ")));
        });
        QTest::keyClick(&rows, Qt::Key_Return);
        QVERIFY(rows.selectionModel()->hasSelection());
    }

    void A_year_that_is_left_unfinished_is_that_of_the_figures_again() {
        YearShop program;
        frmOverview window(program.App, nullptr);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto& year = *Named<QComboBox>(window, "cbo_Year").lineEdit();
        year.setFocus();
        year.selectAll();
        QTest::keyClicks(&year, QStringLiteral("18"));
        QTest::keyClick(&year, Qt::Key_Tab);
        QCOMPARE(MonthShown(window), QStringLiteral("DEC 2005"));
    }

    void Trouble_that_is_over_is_told_as_such() {
        OverviewShop program;
        program.ImportMaterials({"PR-1|resin|Production resin|Non-Spray|9|40|0|0|0|0|0|0|0|0|0|0|0|0|0",
                                 "PR-2|resin|Production resin|Non-Spray|9|30|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        program.ImportUsage(EachMonth("PR-1", 2004, 1000));
        program.ImportUsage(EachMonth("PR-2", 2005, 1000));
        frmOverview window(program.App, nullptr);
        QVERIFY(Answer(window, 3).endsWith(QLatin1String(" left. First trouble in DEC 2004.")));
        GoTo(window, MonthNumberOf(2004, 12));
        QVERIFY(Answer(window, 3).endsWith(QLatin1String(" too much. Trouble since DEC 2004.")));
    }

    void Damage_of_the_files_themselves_is_said() {
        YearShop program;
        const std::string usage = ContentOf(program.DataFile("1_usage.talvor"));
        WriteContent(program.DataFile("1_usage.talvor"), usage + "abc");
        std::string materials = ContentOf(program.DataFile("1_materials.talvor"));
        materials[0] = 7; // its own number, in the place of record 1
        WriteContent(program.DataFile("1_materials.talvor"), materials);
        const frmOverview window(program.App, nullptr);
        QTRY_VERIFY(Attentions(window).contains(
            QStringLiteral("\u2013 1_materials.talvor, record 1: its identifier is 7, not its number")));
        QVERIFY(Attentions(window).contains(
            QStringLiteral("\u2013 1_usage.talvor: 3 surplus bytes after 12 records")));
    }

    void A_shop_without_records_says_so() {
        OverviewShop program;
        program.Calendar.Month = std::chrono::year(2026) / 3;
        const frmOverview window(program.App, nullptr);
        QCOMPARE(TextOf<QLabel>(window, "lbl_Newest"), std::string("No use is recorded yet."));
        QCOMPARE(MonthShown(window), QStringLiteral("MAR 2026"));
        QCOMPARE(Table(window).rowCount(), 0);
        QCOMPARE(Answer(window, 1),
                 QStringLiteral("\u2013 Nothing was used that has a limit of its content."));
        QCOMPARE(Answer(window, 2),
                 QStringLiteral("\u2013 Nothing was used that has a limit of its content."));
        QCOMPARE(Answer(window, 3), QStringLiteral("\u2013 Too early (0 of 12 months)."));
    }

    void A_long_company_name_does_not_widen_the_window() {
        YearShop program;
        const QSize narrow = frmOverview(program.App, nullptr).minimumSizeHint();
        program.App.CurrentCompanyName = std::string(250, 'W');
        program.App.CurrentCompanyLocation = std::string(250, 'M');
        const frmOverview window(program.App, nullptr);
        QCOMPARE(window.minimumSizeHint().width(), narrow.width());
    }

    void The_statements_are_folded_to_one_line() {
        YearShop program;
        frmOverview window(program.App, nullptr);
        window.show();
        const auto& statements = Named<QTextEdit>(window, "txt_Statements");
        QVERIFY(!statements.isVisible());
        Press(window, "cmd_Statements");
        QVERIFY(statements.isVisible());
        QVERIFY(statements.toPlainText().startsWith(
            QLatin1String("1. Calculated from the records as they are now")));
        QVERIFY(statements.toPlainText().contains(
            QLatin1String("\n7. \"Within\" is arithmetic, not a finding of compliance.")));
        Press(window, "cmd_Statements");
        QVERIFY(!statements.isVisible());
    }

    void The_statements_cover_nothing_when_they_are_unfolded() {
        YearShop program;
        frmOverview window(program.App, nullptr);
        window.show();
        const auto& button = Named<QToolButton>(window, "cmd_Statements");
        const int least = window.minimumSizeHint().width();
        for (int width = least; width < least + 300; width += 10) { // texts wrap in other places
            window.resize(width, 560);
            QCoreApplication::processEvents();
            Press(window, "cmd_Statements"); // which makes a scroll bar appear
            QCoreApplication::processEvents();
            const int top = button.mapTo(&window, QPoint(0, 0)).y();
            for (const char* name : {"cbo_Span", "lst_Attention"}) {
                const auto& above = Named<QWidget>(window, name);
                QVERIFY2(above.mapTo(&window, above.rect().bottomLeft()).y() < top, name);
            }
            Press(window, "cmd_Statements");
        }
    }

    void Its_use_changes_no_data_file() {
        YearShop program;
        const auto before = FilesIn(program.App.ProgramFolder / "data");
        frmOverview window(program.App, nullptr);
        window.show();
        for (const char* button : {"cmd_Previous", "cmd_Next", "cmd_Statements", "cmd_Copy", "cmd_Reports"})
            Press(window, button);
        for (const char* button :
             {"cmd_Why", "cmd_WhatIf", "cmd_HalfYear", "cmd_Print", "cmd_Options", "cmd_Help"}) {
            InNextModal<QDialog>([](QDialog&) {});
            Press(window, button);
        }
        Named<QTableView>(window, "tbl_Rows").selectRow(0);
        QCOMPARE(FilesIn(program.App.ProgramFolder / "data"), before);
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_overview_test)
#include "frm_overview_test.moc"
