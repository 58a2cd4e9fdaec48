#include "dialogs/hint_label.h"

#include <QLineEdit>
#include <QTest>

namespace mact {

class hint_label_test : public QObject {
    Q_OBJECT

    static QColor TextColour(const QWidget& widget) { return widget.palette().color(QPalette::WindowText); }

private slots:
    void A_doubt_is_amber_and_ends_with_the_next_hint() {
        QWidget window;
        HintLabel label(&window);
        label.Show({.Text = "over five times", .IsDoubtful = true});
        QCOMPARE(label.text(), QStringLiteral("over five times"));
        QCOMPARE(TextColour(label), DoubtColour(window.palette()));
        QVERIFY(TextColour(label) != TextColour(window));
        label.Show({.Text = "= 5 lbs"});
        QCOMPARE(TextColour(label), TextColour(window));
    }

    void The_amber_follows_a_change_to_dark_colours() {
        QWidget window;
        HintLabel label(&window);
        label.Show({.Text = "over five times", .IsDoubtful = true});
        const QColor before = TextColour(label);
        window.setPalette(QPalette(QColor(0x20, 0x20, 0x20)));
        QCOMPARE(TextColour(label), DoubtColour(window.palette()));
        QVERIFY(TextColour(label) != before);
    }

    void Fields_are_described_by_it() {
        QWidget window;
        QLineEdit field(&window);
        HintLabel label(&window);
        label.SetFields({&field});
        label.Show({.Text = "= 5 lbs"});
        QCOMPARE(field.accessibleDescription(), QStringLiteral("= 5 lbs"));
        label.Show({});
        QCOMPARE(field.accessibleDescription(), QString());
    }

    void Shows_plain_text_and_never_widens_its_window() {
        HintLabel label;
        label.Show({.Text = "<b>" + std::string(300, 'x')});
        QCOMPARE(label.textFormat(), Qt::PlainText);
        QVERIFY(label.wordWrap());
        QCOMPARE(label.sizePolicy().horizontalPolicy(), QSizePolicy::Ignored);
    }
};
} // namespace mact

QTEST_MAIN(mact::hint_label_test)
#include "hint_label_test.moc"
