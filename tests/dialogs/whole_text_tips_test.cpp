#include "dialogs/program_style.h"

#include <QApplication>
#include <QComboBox>
#include <QHelpEvent>
#include <QListWidget>
#include <QTableWidget>
#include <QTest>
#include <QToolTip>

namespace mact {
namespace {

QString LongName() {
    return u'a' + QString(298, u'W') + u'z';
}

QString ToolTipOver(QWidget& widget, const QPoint& at) {
    QToolTip::hideText();
    QHelpEvent help(QEvent::ToolTip, at, widget.mapToGlobal(at));
    QApplication::sendEvent(&widget, &help);
    return QToolTip::isVisible() ? QToolTip::text() : QString();
}

} // namespace

class whole_text_tips_test : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QApplication::setStyle(new ProgramStyle); }

    void A_choice_that_is_cut_has_the_whole_as_its_tool_tip() {
        QComboBox combo;
        combo.addItems({QStringLiteral("short"), LongName()});
        combo.resize(200, 30);
        combo.show();
        QCOMPARE(ToolTipOver(combo, {5, 5}), QString());
        combo.setCurrentIndex(1);
        QVERIFY(ToolTipOver(combo, {5, 5}).contains(LongName()));
    }

    void A_choice_that_is_cut_is_shortened_in_the_middle() {
        QComboBox combo;
        combo.addItem(LongName());
        combo.resize(200, 30);
        combo.show();
        const QImage shortened = combo.grab().toImage();
        combo.setItemText(0, LongName().left(LongName().size() - 1) + u'W'); // another last letter
        QVERIFY(combo.grab().toImage() != shortened);                        // is seen
    }

    void A_tool_tip_of_its_own_stays() {
        QComboBox combo;
        combo.setToolTip(QStringLiteral("its own"));
        combo.addItem(LongName());
        combo.resize(200, 30);
        combo.show();
        QCOMPARE(ToolTipOver(combo, {5, 5}), QStringLiteral("its own"));
    }

    void A_cell_that_is_cut_has_the_whole_as_its_tool_tip() {
        QTableWidget table(2, 1);
        table.setItem(0, 0, new QTableWidgetItem(QStringLiteral("short")));
        table.setItem(1, 0, new QTableWidgetItem(LongName()));
        table.show();
        const auto tip = [&table](int row) {
            return ToolTipOver(*table.viewport(), table.visualRect(table.model()->index(row, 0)).center());
        };
        QCOMPARE(tip(0), QString());
        QVERIFY(tip(1).contains(LongName()));
        QCOMPARE(table.textElideMode(), Qt::ElideMiddle);
    }

    void A_line_that_is_partly_scrolled_away_has_the_whole_as_its_tool_tip() {
        QListWidget list;
        list.addItems({QStringLiteral("short"), LongName()});
        list.resize(200, 100);
        list.show();
        QCOMPARE(ToolTipOver(*list.viewport(), {5, 5}), QString());
        QVERIFY(ToolTipOver(*list.viewport(), {5, list.visualItemRect(list.item(1)).center().y()})
                    .contains(LongName()));
    }

    void A_tool_tip_shows_plain_text() {
        QComboBox combo;
        combo.addItem(QStringLiteral("<b>") + LongName());
        combo.resize(200, 30);
        combo.show();
        QVERIFY(ToolTipOver(combo, {5, 5}).contains(QStringLiteral("&lt;b&gt;")));
    }
};
} // namespace mact

QTEST_MAIN(mact::whole_text_tips_test)
#include "whole_text_tips_test.moc"
