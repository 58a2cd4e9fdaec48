#include "materials/frm_material.h"
#include "materials/material_store.h"
#include "overview/frm_trace.h"
#include "store/additional_names.h"
#include "store/material_types.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"
#include "usage/frm_usage.h"
#include "usage/usage_store.h"

#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTreeView>

#include <functional>

namespace mact {
namespace {

constexpr MonthNumber MonthEnd = MonthNumberOf(2005, 12);

/// A gel coat of 33 % and a resin of 35 %, each exactly at the limit of its row, and three usage records.
struct TraceProgram : TestProgram {
    TraceProgram() {
        if (!CreateDefaultHapContents(App)) qFatal("The test's material types were not written");
        AddMaterial("GC-1", "Pigmented production gel", "All", 10, 33);
        AddMaterial("PR-A", "Production resin", "Non-Spray", 8, 35);
    }
    void AddMaterial(const std::string& customId, const char* type, const char* method, double density,
                     double content, double filler = 0) {
        if (SaveMaterial(App, {.CustomId = customId,
                               .Description = "d",
                               .MaterialType = type,
                               .ApplicationMethod = method,
                               .Density = density,
                               .HapContent = content,
                               .Contents = "0|0|0|0|0|0",
                               .Factors = "0|0|0|0|0|0",
                               .Filler = filler}))
            qFatal("The test's material was not saved");
    }
    void AddUsage(std::int16_t materialId, const char* period, double quantity, std::int16_t unit) {
        if (SaveUsage(App, {.MaterialId = materialId, .Period = period, .Quantity = quantity, .Unit = unit}))
            qFatal("The test's usage was not saved");
    }
    void AddUse() {
        AddUsage(1, "12/2005", 2204.6, UnitLbs);
        AddUsage(2, "1/2005", 2, UnitMgal);
        AddUsage(2, "7/2005", 6000, UnitLbs);
    }
    double StoredQuantity(std::int16_t usageId) {
        std::vector<UsageRecord> found;
        return FindUsage(App, {.UsageId = usageId}, found) ? found.front().Quantity : -1;
    }
};

bool InTrace(TestProgram& program, const ShopRecords& records, const std::string& figure,
             const std::string& item, const std::function<void(frmTrace&)>& act) {
    const ShopFigures shop(records);
    InNextModal<frmTrace>(act);
    return ShowTrace(program.App, shop, shop.At(MonthEnd), figure, item, nullptr);
}

bool InTrace(TestProgram& program, const std::string& figure, const std::string& item,
             const std::function<void(frmTrace&)>& act) {
    const Result<ShopRecords> records = ReadShopRecords(program.App);
    if (!records) qFatal("The test's records were not read");
    return InTrace(program, *records, figure, item, act);
}

QTreeView& Tree(const QWidget& window) {
    return Named<QTreeView>(window, "tre_Parts");
}

QComboBox& Choice(const QWidget& window) {
    return Named<QComboBox>(window, "cbo_Figure");
}

QPushButton& OpenButton(const QWidget& window) {
    return Named<QPushButton>(window, "cmd_Open");
}

QString CurrentLine(const QWidget& window) {
    return Tree(window).currentIndex().data().toString();
}

/// The lines that are to be seen by opening and scrolling, without those below a closed one.
QStringList OpenLines(const QWidget& window) {
    const QTreeView& tree = Tree(window);
    QStringList lines;
    for (QModelIndex line = tree.model()->index(0, 0); line.isValid(); line = tree.indexBelow(line))
        lines << line.data().toString();
    return lines;
}

void Press(QTreeView& tree, std::initializer_list<Qt::Key> keys) {
    for (const Qt::Key key : keys)
        QTest::keyClick(&tree, key);
}

/// From the title of a figure with two formulas down to the first record of its first material.
void GoToFirstUse(const QWidget& window) {
    Press(Tree(window), {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Down, Qt::Key_Down,
                         Qt::Key_Down, Qt::Key_Down});
}

void SaveQuantity(frmUsage& editor, const char* quantity) {
    Named<QLineEdit>(editor, "txt_Quantiry").setText(QString::fromLatin1(quantity));
    Named<QPushButton>(editor, "cmd_Save").click();
}

const QString GelCoatTitle =
    QStringLiteral("content of pigmented gel coat in the twelve months to 12/2005: report 33 %, exact 33 %; "
                   "limit 33 %; within");
const QString GelCoatLine =
    QStringLiteral("GC-1: Pigmented production gel, All; density 10 lb/gal; h 33 %; f 0 %; c 0.445; e 1.675; "
                   "K 159 kg/Mg; p 155.55 kg/Mg; a 1000 kg; m 1 Mg");
const QString GelCoatUse =
    QStringLiteral("1_usage.talvor, record 1, period \"12/2005\": 2204.6 lbs = 2204.6 lb = 1000 kg");

} // namespace

class frm_trace_test : public QObject {
    Q_OBJECT

private slots:
    /// Emissions: 1 Mg * 155.55 + 9.98 Mg * 45.59 = 610.5382 kg; allowance: 159 + 9.98 * 46 = 618.08 kg.
    void Every_figure_is_listed_with_its_state_or_value() {
        TraceProgram program;
        program.AddUse();
        InTrace(program, "emissions", "", [](frmTrace& window) {
            QStringList figures;
            for (int row = 0; row < Choice(window).count(); ++row)
                figures << Choice(window).itemText(row);
            QCOMPARE(figures.join(u'\n'), QStringLiteral("Months that count: 12 of 12\n"
                                                         "Content of production resin, nonatomized: Within\n"
                                                         "Content of pigmented gel coat: Within\n"
                                                         "Emissions: Within\n"
                                                         "Allowance: 618.08 kg\n"
                                                         "Headroom: 7.54 kg\n"
                                                         "Headroom in percent: 1.22 %\n"
                                                         "Point value of production resin: 45.59 kg/Mg\n"
                                                         "Point value of pigmented gel coat: 155.55 kg/Mg\n"
                                                         "Amount of pigmented gel coat in December 2005 "
                                                         "alone: 1000 kg"));
        });
    }

    void The_figure_that_was_asked_for_is_shown_first() {
        TraceProgram program;
        program.AddUse();
        InTrace(program, "content", "pigmented gel coat", [](frmTrace& window) {
            QCOMPARE(Choice(window).currentText(), QStringLiteral("Content of pigmented gel coat: Within"));
            QCOMPARE(TextOf<QLabel>(window, "lbl_Value"),
                     "Twelve months ending December 2005: report 33 %, exact 33 %. Limit 33 %. Within.");
            const QString report = QStringLiteral(
                "Report: round2((sum of a * h / 100) / (sum of a) * 100) = round2(330 / 1000 * 100) = 33 %");
            const QString exact =
                QStringLiteral("Exact: (sum of lb * h) / (sum of lb) = 72751.8 / 2204.6 = 33 %");
            QCOMPARE(OpenLines(window), QStringList({GelCoatTitle, report, exact, GelCoatLine,
                                                     QStringLiteral("Sum: report 33 %, exact 33 %")}));
            QCOMPARE(CurrentLine(window), GelCoatTitle);
            QCOMPARE(window.focusWidget(), static_cast<QWidget*>(&Choice(window)));
        });
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Another_figure_can_be_chosen() {
        TraceProgram program;
        program.AddUse();
        InTrace(program, "emissions", "", [](frmTrace& window) {
            Tree(window).expandAll();
            QTest::keyClick(&Choice(window), Qt::Key_Down);
            QCOMPARE(TextOf<QLabel>(window, "lbl_Value"),
                     "Twelve months ending December 2005: report 618.08 kg, exact 618.040189 kg.");
            QVERIFY(CurrentLine(window).startsWith(QStringLiteral("allowance in the twelve months to")));
            QCOMPARE(OpenLines(window).size(), 7); // title, two formulas, two materials, the report, the sum
            QTest::keyClick(&Choice(window), Qt::Key_End);
            QCOMPARE(TextOf<QLabel>(window, "lbl_Value"), "The month December 2005: exact 1000 kg.");
            QTest::keyClick(&Choice(window), Qt::Key_Home);
            QCOMPARE(TextOf<QLabel>(window, "lbl_Value"),
                     "Twelve months ending December 2005: 12 of 12 months count. Without entry: 2/2005 "
                     "3/2005 4/2005 5/2005 6/2005 8/2005 9/2005 10/2005 11/2005.");
        });
    }

    void A_figure_that_there_is_not_is_an_error() {
        TraceProgram program;
        program.AddUse();
        const Result<ShopRecords> records = ReadShopRecords(program.App);
        QVERIFY(bool(records));
        const ShopFigures shop(*records);
        QVERIFY(!ShowTrace(program.App, shop, shop.At(MonthEnd), "content", "tooling gel coat", nullptr));
        QCOMPARE(program.Prompts.Shown.size(), std::size_t(1));
    }

    void Enter_on_a_usage_record_opens_its_editor() {
        TraceProgram program;
        program.AddUse();
        const bool isSaved = InTrace(program, "content", "pigmented gel coat", [](frmTrace& window) {
            GoToFirstUse(window);
            QCOMPARE(CurrentLine(window), GelCoatUse);
            QVERIFY(OpenButton(window).isEnabled() && OpenButton(window).isDefault());
            InNextModal<frmUsage>([](frmUsage& editor) {
                QCOMPARE(TextOf<QLineEdit>(editor, "txt_Quantiry"), "2204.6");
                SaveQuantity(editor, "2000");
            });
            QTest::keyClick(&Tree(window), Qt::Key_Return);
            QVERIFY(!window.isVisible());
        });
        QVERIFY(isSaved);
        QCOMPARE(program.StoredQuantity(1), 2000.0);
    }

    void An_editor_that_saved_nothing_leaves_the_window_as_it_is() {
        TraceProgram program;
        program.AddUse();
        const bool isSaved = InTrace(program, "content", "pigmented gel coat", [](frmTrace& window) {
            GoToFirstUse(window);
            InNextModal<frmUsage>([](frmUsage& editor) { QTest::keyClick(&editor, Qt::Key_Escape); });
            QTest::keyClick(&Tree(window), Qt::Key_Enter, Qt::KeypadModifier);
            QVERIFY(window.isVisible());
            QCOMPARE(CurrentLine(window), GelCoatUse);
        });
        QVERIFY(!isSaved);
    }

    void A_material_opens_its_editor() {
        TraceProgram program;
        program.AddUse();
        const bool isSaved = InTrace(program, "point_value", "production resin", [](frmTrace& window) {
            Press(Tree(window), {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down});
            QVERIFY(CurrentLine(window).startsWith(QStringLiteral("PR-A: Production resin")));
            InNextModal<frmMaterial>([](frmMaterial& editor) {
                QCOMPARE(TextOf<QLineEdit>(editor, "txt_CustomId"), "PR-A");
                Named<QLineEdit>(editor, "txt_HapContents").setText(QStringLiteral("34"));
                Named<QPushButton>(editor, "cmd_Save").click();
            });
            OpenButton(window).click();
        });
        QVERIFY(isSaved);
        const Result<ShopRecords> records = ReadShopRecords(program.App);
        QVERIFY(bool(records));
        QCOMPARE(records->Materials[1].HapContent, 34.0);
    }

    void A_materials_editor_has_the_companys_own_pollutant_names() {
        TraceProgram program;
        program.AddUse();
        QVERIFY(SaveAdditionalNames(program.App, {"A1", "A2", "A3", "A4", "A5", "A6"}));
        program.App.AdditionalNames = "B1|B2|B3|B4|B5|B6"; // of the company before
        InTrace(program, "point_value", "production resin", [&](frmTrace& window) {
            Press(Tree(window), {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down});
            InNextModal<frmMaterial>([](frmMaterial&) {});
            OpenButton(window).click();
        });
        QCOMPARE(program.App.AdditionalNames, std::string("A1|A2|A3|A4|A5|A6"));
    }

    /// 0.014 * 34^2.275 = 42.68 kg/Mg and 0.014 * 60^2.275 = 155.39 kg/Mg.
    void Of_filled_resins_with_the_same_id_the_chosen_row_is_shown() {
        TraceProgram program;
        for (const double content : {34.0, 60.0})
            program.AddMaterial("FR", "Production resin (Filled)", "Non-Spray", 9, content);
        program.AddUsage(3, "12/2005", 1000, UnitLbs);
        program.AddUsage(4, "12/2005", 1000, UnitLbs);
        const Result<ShopRecords> records = ReadShopRecords(program.App);
        QVERIFY(bool(records));
        const ShopFigures shop(*records);
        const std::pair<std::size_t, const char*> resins[] = {
            {2, "42.681785" },
            {3, "155.389665"},
        };
        for (const auto& [material, value] : resins) {
            InNextModal<frmTrace>([value = value](frmTrace& window) {
                const std::string shown = TextOf<QLabel>(window, "lbl_Value");
                QVERIFY2(shown.find(value) != std::string::npos, shown.c_str());
            });
            ShowTraceOfRow(program.App, shop, shop.At(MonthEnd),
                           {.Figure = "filled", .Item = "FR", .Material = material}, nullptr);
        }
    }

    void A_double_click_opens_the_record() {
        TraceProgram program;
        program.AddUse();
        const bool isSaved = InTrace(program, "amount", "pigmented gel coat", [](frmTrace& window) {
            Tree(window).expandAll();
            const QModelIndex root = Tree(window).model()->index(0, 0);
            const QModelIndex use = root.model()->index(2, 0, root.model()->index(1, 0, root));
            QCOMPARE(use.data().toString(), GelCoatUse);
            InNextModal<frmUsage>([](frmUsage& editor) { SaveQuantity(editor, "3"); });
            const QPoint place = Tree(window).visualRect(use).topLeft() + QPoint(9, 5);
            QTest::mouseClick(Tree(window).viewport(), Qt::LeftButton, {}, place);
            QTest::mouseDClick(Tree(window).viewport(), Qt::LeftButton, {}, place);
        });
        QVERIFY(isSaved);
        QCOMPARE(program.StoredQuantity(1), 3.0);
    }

    void Enter_on_any_other_line_closes_and_opens_it() {
        TraceProgram program;
        program.AddUse();
        InTrace(program, "emissions", "", [](frmTrace& window) {
            QVERIFY(!OpenButton(window).isEnabled() && !OpenButton(window).isDefault());
            QTest::keyClick(&Tree(window), Qt::Key_Return);
            QCOMPARE(OpenLines(window).size(), 1);
            QTest::keyClick(&Tree(window), Qt::Key_Return);
            QCOMPARE(OpenLines(window).size(), 7);
            QTest::keyClick(&Tree(window), Qt::Key_Left);
            QCOMPARE(OpenLines(window).size(), 1);
            QTest::keyClick(&Tree(window), Qt::Key_Right);
            QCOMPARE(OpenLines(window).size(), 7);
        });
    }

    /// 7 lines, 4 below the gel coat, 5 below the resin with its two records, 2 lines of the report with a
    /// material each.
    void An_asterisk_opens_everything() {
        TraceProgram program;
        program.AddUse();
        InTrace(program, "emissions", "", [](frmTrace& window) {
            QTest::keyClick(&Tree(window), Qt::Key_Asterisk);
            QCOMPARE(OpenLines(window).size(), 7 + 4 + 5 + 2 + 2);
            QVERIFY(OpenLines(window).constLast().startsWith(QStringLiteral("Sum: report 610.54 kg")));
        });
    }

    void An_asterisk_further_down_opens_what_is_below_that_line() {
        TraceProgram program;
        program.AddUse();
        InTrace(program, "emissions", "", [](frmTrace& window) {
            Press(Tree(window), {Qt::Key_End, Qt::Key_Up});
            QCOMPARE(CurrentLine(window),
                     QStringLiteral("Report, by the lines of the emission-average report"));
            QTest::keyClick(&Tree(window), Qt::Key_Asterisk);
            QCOMPARE(OpenLines(window).size(), 7 + 2 + 2);
        });
    }

    void Closing_the_title_closes_all_below_it() {
        TraceProgram program;
        program.AddUse();
        InTrace(program, "emissions", "", [](frmTrace& window) {
            QTest::keyClick(&Tree(window), Qt::Key_Asterisk);
            QTest::keyClick(&Tree(window), Qt::Key_Left);
            QCoreApplication::processEvents();
            QTest::keyClick(&Tree(window), Qt::Key_Right);
            QCOMPARE(OpenLines(window).size(), 7);
        });
    }

    void Copy_takes_all_lines() {
        TraceProgram program;
        program.AddUse();
        InTrace(program, "amount", "pigmented gel coat", [](frmTrace& window) {
            Named<QPushButton>(window, "cmd_Copy").click();
            QCOMPARE(QApplication::clipboard()->text(),
                     QStringLiteral("amount of pigmented gel coat in 12/2005: exact 1000 kg\n"
                                    "  Exact: sum of lb / 2.2046 = 1000 kg\n"
                                    "  ") +
                         GelCoatLine +
                         QStringLiteral("\n"
                                        "    Exact: 2204.6 / 2.2046 = 1000 kg\n"
                                        "    lb = 2204.6, the sum of these usage records:\n"
                                        "    ") +
                         GelCoatUse + QStringLiteral("\n  Sum: exact 1000 kg\n"));
        });
    }

    void The_copy_key_takes_the_line_and_what_is_below_it() {
        TraceProgram program;
        program.AddUse();
        InTrace(program, "amount", "pigmented gel coat", [](frmTrace& window) {
            Press(Tree(window), {Qt::Key_Down, Qt::Key_Down});
            QTest::keyClick(&Tree(window), Qt::Key_C, Qt::ControlModifier);
            QCOMPARE(QApplication::clipboard()->text(),
                     GelCoatLine +
                         QStringLiteral("\n"
                                        "  Exact: 2204.6 / 2.2046 = 1000 kg\n"
                                        "  lb = 2204.6, the sum of these usage records:\n"
                                        "  ") +
                         GelCoatUse + QLatin1Char('\n'));
        });
    }

    void A_record_that_another_copy_has_deleted_is_said_to_be_gone() {
        TraceProgram program;
        program.AddUse();
        const bool isSaved = InTrace(program, "content", "pigmented gel coat", [&program](frmTrace& window) {
            GoToFirstUse(window);
            QVERIFY(!DeleteUsage(program.App, 1));
            QTest::keyClick(&Tree(window), Qt::Key_Return);
            QCOMPARE(program.Prompts.Shown.size(), std::size_t(1));
            QVERIFY(program.Prompts.LastText().find("- Usage not found.") != std::string::npos);
            QVERIFY(window.isVisible());
        });
        QVERIFY(!isSaved);
    }

    // As much of 0.3 % as of 33 %: 16.65 %. The amount has no content in it, and the resin is another row.
    void A_figure_that_is_not_trusted_says_so() {
        TraceProgram program;
        program.AddUse();
        program.AddMaterial("GC-2", "Pigmented production gel", "All", 10, 0.3);
        program.AddUsage(3, "12/2005", 2204.6, UnitLbs);
        InTrace(program, "content", "pigmented gel coat", [](frmTrace& window) {
            QCOMPARE(
                TextOf<QLabel>(window, "lbl_Value"),
                "Twelve months ending December 2005: report 16.65 %, exact 16.65 %. Limit 33 %. Within. Not "
                "trusted: 1 finding.");
            QVERIFY(!CurrentLine(window).contains(QStringLiteral("trusted")));
            QTest::keyClick(&Choice(window), Qt::Key_End);
            QCOMPARE(TextOf<QLabel>(window, "lbl_Value"), "The month December 2005: exact 2000 kg.");
            QTest::keyClick(&Choice(window), Qt::Key_Home);
            QCOMPARE(TextOf<QLabel>(window, "lbl_Value"), "Twelve months ending December 2005: 12 of 12 "
                                                          "months count. Without entry: 2/2005 3/2005 4/2005 "
                                                          "5/2005 6/2005 8/2005 9/2005 10/2005 11/2005.");
            QTest::keyClick(&Choice(window), Qt::Key_Down);
            QVERIFY(TextOf<QLabel>(window, "lbl_Value").ends_with(" Limit 35 %. Within."));
        });
    }

    void Without_any_use_there_is_nothing_to_open() {
        TraceProgram program;
        InTrace(program, "emissions", "", [](frmTrace& window) {
            QCOMPARE(Choice(window).count(), 5); // months and the four of the average
            QCOMPARE(Choice(window).currentText(), QStringLiteral("Emissions: Too early (0 of 12 months)"));
            QCOMPARE(TextOf<QLabel>(window, "lbl_Value"),
                     "Twelve months ending December 2005: report 0 kg, exact 0 kg. Limit 0 kg. Too early "
                     "(0 of 12 months).");
            QTest::keyClick(&Tree(window), Qt::Key_Asterisk);
            QCOMPARE(OpenLines(window).size(), 5); // title, two formulas, the report, the sum
            for (int line = 0; line < 5; ++line) {
                QVERIFY(!OpenButton(window).isEnabled());
                QTest::keyClick(&Tree(window), Qt::Key_Return);
                QTest::keyClick(&Tree(window), Qt::Key_Down);
            }
            QTest::keyClick(&Choice(window), Qt::Key_End);
            QCOMPARE(Choice(window).currentText(), QStringLiteral("Headroom in percent: none"));
        });
        QVERIFY(program.Prompts.Shown.empty());
    }

    void Of_two_resins_with_one_name_each_can_be_chosen() {
        TraceProgram program;
        program.AddMaterial("FR", "Production resin (Filled)", "Non-Spray", 9, 40, 20);
        program.AddMaterial("FR 2", "Production resin (Filled)", "Non-Spray", 9, 30, 20);
        program.AddUsage(3, "1/2005", 100, UnitLbs);
        program.AddUsage(4, "1/2005", 100, UnitLbs);
        Result<ShopRecords> records = ReadShopRecords(program.App);
        QVERIFY(bool(records));
        records->Materials[3].CustomId = "FR";
        InTrace(program, *records, "filled", "FR", [](frmTrace& window) {
            QVERIFY(OpenLines(window)[1].endsWith(QStringLiteral("this is the first.")));
            QVERIFY(OpenLines(window)[3].contains(QStringLiteral("; h 40 %; ")));
            QTest::keyClick(&Choice(window), Qt::Key_Down);
            QVERIFY(OpenLines(window)[1].endsWith(QStringLiteral("this is number 2.")));
            QVERIFY(OpenLines(window)[3].contains(QStringLiteral("; h 30 %; ")));
        });
    }

    void Long_names_are_scrolled_to_and_do_not_widen_the_window() {
        TraceProgram program;
        program.AddMaterial("FR", "Production resin (Filled)", "Non-Spray", 9, 40, 20);
        program.AddUsage(3, "1/2005", 100, UnitLbs);
        Result<ShopRecords> records = ReadShopRecords(program.App);
        QVERIFY(bool(records));
        const std::string name = "<b>" + std::string(247, 'W');
        int width = 0;
        InTrace(program, *records, "filled", "FR", [&width](frmTrace& window) { width = window.width(); });
        records->Materials[2].CustomId = name;
        InTrace(program, *records, "filled", name, [&](frmTrace& window) {
            QCOMPARE(window.width(), width);
            QVERIFY(window.minimumSizeHint().width() <= width);
            const QTreeView& tree = Tree(window);
            const QString title = OpenLines(window).constFirst();
            QVERIFY(title.contains(QString::fromStdString(name)));
            QVERIFY(tree.horizontalScrollBar()->maximum() + tree.viewport()->width() >=
                    tree.fontMetrics().horizontalAdvance(OpenLines(window)[2]));
            const QString toolTip = tree.currentIndex().data(Qt::ToolTipRole).toString();
            QVERIFY(toolTip.contains(QStringLiteral("&lt;b&gt;WWW"))); // no bold letters
        });
    }
};
} // namespace mact

QTEST_MAIN(mact::frm_trace_test)
#include "frm_trace_test.moc"
