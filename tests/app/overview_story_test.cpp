#include "app/frm_main.h"
#include "dialogs/link_label.h"
#include "overview/frm_overview.h"
#include "overview/frm_trace.h"
#include "tests/overview/overview_shop.h"
#include "tests/support/gui.h"
#include "usage/frm_usage.h"
#include "usage/usage_store.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTest>
#include <QTreeView>

namespace mact {
namespace {

/// A year's use of two resins: 22,046 lb a month at 34 %, whose point value is 42.68 kg/Mg, and 2,204.6 lb at
/// 36 %, whose is 48.61; the allowance is 46. In December the latter was entered as 2205 Mgal instead of lbs,
/// at 9 lb/gal 19,845,000 lb: 120 Mg and 9012.63 Mg are 443,225.55 kg of 420,100.98 kg. That is 105.5 %. As
/// it should be, 12 Mg, it is 5,704.92 kg of 6,072 kg: 94.0 %.
struct MistypedShop : OverviewShop {
    MistypedShop() {
        ImportMaterials({"PR-1|resin|Production resin|Non-Spray|9|34|0|0|0|0|0|0|0|0|0|0|0|0|0",
                         "PR-2|resin|Production resin|Non-Spray|9|36|0|0|0|0|0|0|0|0|0|0|0|0|0"});
        std::vector<std::string> lines;
        for (int month = 1; month <= 12; ++month) {
            lines.push_back("PR-1|" + std::to_string(month) + "|2005|22046|lbs");
            lines.push_back("PR-2|" + std::to_string(month) +
                            (month < 12 ? "|2005|2204.6|lbs" : "|2005|2205|MG"));
        }
        ImportUsage(lines);
        Prompts.Shown.clear();
    }
};

/// The first line of the tree whose text has all of the words; it is opened down to there.
QModelIndex Find(QTreeView& tree, const QStringList& words, const QModelIndex& parent = {}) {
    const QAbstractItemModel& model = *tree.model();
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex line = model.index(row, 0, parent);
        const QString text = line.data().toString();
        if (std::ranges::all_of(words, [&](const QString& word) { return text.contains(word); })) return line;
        const QModelIndex below = Find(tree, words, line);
        if (!below.isValid()) continue;
        tree.expand(line);
        return below;
    }
    return {};
}

void MendTheUnit(frmUsage& editor) {
    QCOMPARE(Named<QLineEdit>(editor, "txt_Quantiry").text(), QStringLiteral("2205"));
    Named<QComboBox>(editor, "cbo_Unit").setCurrentText(QStringLiteral("lbs"));
    Named<QPushButton>(editor, "cmd_Save").click();
}

/// Follows the figure to the record that does not look right.
void FindTheRecord(frmTrace& trace) {
    auto& tree = Named<QTreeView>(trace, "tre_Parts");
    const QModelIndex record = Find(tree, {QStringLiteral("12/2005"), QStringLiteral("2205")});
    QVERIFY(record.isValid());
    tree.setCurrentIndex(record);
    InNextModal<frmUsage>(MendTheUnit);
    QTest::keyClick(&tree, Qt::Key_Return);
}

QString Answer(const QWidget& window, const char* label) {
    return Named<QLabel>(window, label).text();
}

void AskWhy(frmOverview& overview) {
    QVERIFY(
        Answer(overview, "lbl_Answer3").startsWith(QStringLiteral("\u25B2 Over. 105.5 % of the allowance")));
    auto& table = Named<QTableView>(overview, "tbl_Rows");
    QCOMPARE(table.model()->index(0, 6).data().toString(), QStringLiteral("\u25B2 Over"));
    table.selectRow(0);
    const QAbstractItemModel& attention = *Named<QListView>(overview, "lst_Attention").model();
    QCOMPARE(attention.rowCount(), 1); // the amount is far above its median month
    QVERIFY(attention.index(0, 0).data().toString().contains(QLatin1String("record 24")));
    InNextModal<frmTrace>(FindTheRecord);
    Named<QPushButton>(overview, "cmd_Why").click();
    // The trace has closed, and the figures are those of the mended record.
    QVERIFY(
        Answer(overview, "lbl_Answer3").startsWith(QStringLiteral("\u2713 Within. 94.0 % of the allowance")));
    QCOMPARE(table.model()->index(0, 6).data().toString(), QStringLiteral("\u2713 Within"));
    QCOMPARE(attention.index(0, 0).data().toString(), QStringLiteral("\u2713 No record needs attention."));
}

} // namespace

class overview_story_test : public QObject {
    Q_OBJECT

private slots:
    void The_owner_sees_trouble_asks_why_mends_the_record_and_sees_it_gone() {
        MistypedShop program;
        frmMain window(program.App);
        window.show();
        auto& verdict = Named<LinkLabel>(window, "lbl_Verdict");
        QTRY_COMPARE(verdict.text(),
                     QStringLiteral("DEC 2005: emission average 105.5 % of the allowance; 1 point "
                                    "needs attention"));
        InNextModal<frmOverview>(AskWhy);
        QTest::mouseClick(&verdict, Qt::LeftButton);
        QTRY_COMPARE(verdict.text(),
                     QStringLiteral("DEC 2005: emission average 94.0 % of the allowance; nothing "
                                    "needs attention"));
        std::vector<UsageRecord> found;
        QVERIFY(FindUsage(program.App, {.UsageId = 24}, found));
        QCOMPARE(found.front().Quantity, 2205.0);
        QCOMPARE(found.front().Unit, UnitLbs);
        QVERIFY(program.Prompts.Shown.empty());
    }
};
} // namespace mact

QTEST_MAIN(mact::overview_story_test)
#include "overview_story_test.moc"
