#include "dialogs/link_label.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

namespace mact {

class link_label_test : public QObject {
    Q_OBJECT

private slots:
    void A_click_follows_it() {
        LinkLabel label;
        label.setText(QStringLiteral("DEC 2005"));
        label.show();
        const QSignalSpy followed(&label, &LinkLabel::Followed);
        QTest::mouseClick(&label, Qt::LeftButton);
        QCOMPARE(followed.count(), 1);
        QTest::mouseClick(&label, Qt::RightButton);
        QCOMPARE(followed.count(), 1);
        QTest::mousePress(&label, Qt::LeftButton);
        QTest::mouseRelease(&label, Qt::LeftButton, {}, {label.width() + 50, 5}); // thought better of it
        QCOMPARE(followed.count(), 1);
    }

    void Keys_follow_it_data() {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<int>("followed");
        QTest::newRow("return") << Qt::Key_Return << 1;
        QTest::newRow("enter") << Qt::Key_Enter << 1;
        QTest::newRow("space") << Qt::Key_Space << 1;
        QTest::newRow("letter") << Qt::Key_A << 0;
    }
    void Keys_follow_it() {
        QFETCH(Qt::Key, key);
        QFETCH(int, followed);
        LinkLabel label;
        label.show();
        const QSignalSpy spy(&label, &LinkLabel::Followed);
        QTest::keyClick(&label, key);
        QCOMPARE(spy.count(), followed);
        QVERIFY(label.focusPolicy() & Qt::TabFocus);
    }

    void Its_text_can_be_copied() {
        LinkLabel label;
        label.setText(QStringLiteral("DEC 2005"));
        label.show();
        QTest::keyClick(&label, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("DEC 2005"));
    }

    void Shows_plain_text() {
        LinkLabel label;
        label.setText(QStringLiteral("<b>bold</b>"));
        QCOMPARE(label.textFormat(), Qt::PlainText);
        QVERIFY(label.font().underline());
    }

    void Screen_readers_know_it_as_a_link_that_can_be_pressed() {
        LinkLabel label;
        label.setText(QStringLiteral("DEC 2005"));
        QAccessibleInterface* link = QAccessible::queryAccessibleInterface(&label);
        QVERIFY(link);
        QCOMPARE(link->role(), QAccessible::Link);
        QCOMPARE(link->text(QAccessible::Name), QStringLiteral("DEC 2005"));
        const QSignalSpy followed(&label, &LinkLabel::Followed);
        QVERIFY(link->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
        link->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(followed.count(), 1);
    }
};
} // namespace mact

QTEST_MAIN(mact::link_label_test)
#include "link_label_test.moc"
