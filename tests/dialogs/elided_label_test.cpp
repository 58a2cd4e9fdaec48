#include "dialogs/elided_label.h"

#include <QHelpEvent>
#include <QLineEdit>
#include <QTest>
#include <QToolTip>

namespace mact {

class elided_label_test : public QObject {
    Q_OBJECT

    static QString LongName() { return QString(120, u'a') + QString(120, u'z'); }

    static QString ToolTipOver(ElidedLabel& label) {
        QToolTip::hideText();
        QHelpEvent help(QEvent::ToolTip, {5, 5}, label.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&label, &help);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    }

private slots:
    void A_text_that_fits_is_shown_whole() {
        ElidedLabel label;
        label.setText(QStringLiteral("Company: Acme Boats, Port"));
        label.resize(label.sizeHint());
        label.show();
        QCOMPARE(label.ShownText(), QStringLiteral("Company: Acme Boats, Port"));
        QCOMPARE(ToolTipOver(label), QString());
    }

    void A_long_text_is_shortened_in_the_middle_with_the_whole_as_tool_tip() {
        ElidedLabel label;
        label.setText(LongName());
        label.resize(200, label.sizeHint().height());
        label.show();
        QVERIFY(label.ShownText().startsWith(u'a'));
        QVERIFY(label.ShownText().endsWith(u'z'));
        QVERIFY(label.ShownText().contains(QChar(0x2026)));
        QVERIFY(label.fontMetrics().horizontalAdvance(label.ShownText()) <= 200);
        QCOMPARE(label.text(), LongName());
        QVERIFY(ToolTipOver(label).contains(LongName()));
    }

    void Each_line_is_shortened_by_itself() {
        ElidedLabel label;
        label.setText(LongName() + QStringLiteral("\nDock 4"));
        label.resize(200, label.sizeHint().height());
        label.show();
        const QStringList lines = label.ShownText().split(u'\n');
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines[0].startsWith(u'a') && lines[0].endsWith(u'z'));
        QCOMPARE(lines[1], QStringLiteral("Dock 4"));
        QVERIFY(label.sizeHint().height() >= 2 * label.fontMetrics().height());
    }

    void Never_widens_its_window() {
        ElidedLabel label;
        label.setText(LongName());
        QVERIFY(label.minimumSizeHint().width() < 100);
        QCOMPARE(label.minimumSizeHint().height(), label.sizeHint().height());
    }

    void Shows_plain_text() {
        ElidedLabel label;
        label.setText(QStringLiteral("<b>R&D</b>"));
        label.resize(label.sizeHint());
        QCOMPARE(label.textFormat(), Qt::PlainText);
        QCOMPARE(label.ShownText(), QStringLiteral("<b>R&D</b>"));
    }

    void The_accelerator_of_a_buddy_is_not_part_of_the_text() {
        ElidedLabel label;
        QLineEdit box;
        label.setBuddy(&box);
        label.setText(QStringLiteral("&Resin && wax"));
        label.resize(label.sizeHint());
        QCOMPARE(label.ShownText(), QStringLiteral("Resin & wax"));
    }
};
} // namespace mact

QTEST_MAIN(mact::elided_label_test)
#include "elided_label_test.moc"
