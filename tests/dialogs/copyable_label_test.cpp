#include "dialogs/copyable_label.h"

#include "dialogs/elided_label.h"
#include "tests/support/gui.h"

#include <QClipboard>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

namespace mact {
namespace {

/// A value above a field and a button, as in the program's windows.
struct Window : QDialog {
    Window() {
        auto* layout = new QVBoxLayout(this);
        for (QWidget* control : {static_cast<QWidget*>(&Value), static_cast<QWidget*>(&Field),
                                 static_cast<QWidget*>(&Button), static_cast<QWidget*>(&Long)})
            layout->addWidget(control);
        Value.setTextFormat(Qt::PlainText);
        Value.setText(QStringLiteral("(URL: http://example.org)"));
        Button.setAutoDefault(false);
        MakeCopyable(Value);
        MakeCopyable(Long);
        resize(200, 100);
        show();
        QApplication::setActiveWindow(this);
        QGuiApplication::clipboard()->clear();
    }
    ~Window() override {
        for (QWidget* control : {static_cast<QWidget*>(&Value), static_cast<QWidget*>(&Field),
                                 static_cast<QWidget*>(&Button), static_cast<QWidget*>(&Long)})
            control->setParent(nullptr);
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    void Tab() { QTest::keyClick(focusWidget(), Qt::Key_Tab); }
    void Copy() { QTest::keyClick(focusWidget(), Qt::Key_C, Qt::ControlModifier); }

    QLabel Value;
    QLineEdit Field;
    QPushButton Button;
    ElidedLabel Long;
};

QString Copied() {
    return QGuiApplication::clipboard()->text();
}

} // namespace

class copyable_label_test : public QObject {
    Q_OBJECT

private slots:
    void The_first_field_keeps_the_focus_and_values_come_last() {
        Window window;
        QVERIFY(window.Field.hasFocus());
        window.Tab();
        QVERIFY(window.Button.hasFocus());
        window.Tab();
        QVERIFY(window.Value.hasFocus());
        window.Tab(); // past Long, which is empty
        QVERIFY(window.Field.hasFocus());
        QTest::keyClick(&window.Field, Qt::Key_Backtab);
        QVERIFY(window.Value.hasFocus());
    }

    void A_label_is_a_stop_as_long_as_it_has_a_text() {
        Window window;
        window.Value.clear();
        window.Long.setText(QStringLiteral("a"));
        window.Button.setFocus();
        window.Tab();
        QVERIFY(window.Long.hasFocus());
        window.Tab();
        QVERIFY(window.Field.hasFocus());
        window.Value.setText(QStringLiteral("b"));
        window.Button.setFocus();
        window.Tab();
        QVERIFY(window.Value.hasFocus());
    }

    void Copy_takes_the_whole_text() {
        Window window;
        window.Button.setFocus();
        window.Tab();
        QCOMPARE(window.Value.selectedText(), window.Value.text());
        window.Copy();
        QCOMPARE(Copied(), QStringLiteral("(URL: http://example.org)"));
    }

    void Copy_takes_the_selected_part() {
        Window window;
        window.Value.setFocus(Qt::TabFocusReason);
        window.Value.setSelection(6, 18);
        window.Copy();
        QCOMPARE(Copied(), QStringLiteral("http://example.org"));
    }

    void Copy_takes_a_text_that_came_while_the_label_had_the_focus() {
        Window window;
        window.Value.setFocus(Qt::TabFocusReason);
        window.Value.setText(QStringLiteral("Saved."));
        window.Copy();
        QCOMPARE(Copied(), QStringLiteral("Saved."));
    }

    void Copy_takes_lines_as_lines_and_leaves_out_where_a_name_may_break() {
        Window window;
        window.Value.setText(QStringLiteral("Errors : 1\r\nlo\u200bng"));
        window.Value.setFocus(Qt::TabFocusReason);
        QVERIFY(window.Value.hasSelectedText());
        window.Copy();
        QCOMPARE(Copied(), QStringLiteral("Errors : 1\nlong"));
    }

    void Copy_takes_all_of_a_shortened_text() {
        Window window;
        const QString path = QStringLiteral("/home/") + QString(300, u'x') + QStringLiteral("/report.htm");
        window.Long.setText(path);
        QVERIFY(window.Long.ShownText() != path);
        QTest::mouseClick(&window.Long, Qt::LeftButton);
        QVERIFY(window.Long.hasFocus());
        window.Long.setSelection(0, 3);
        window.Copy();
        QCOMPARE(Copied(), path);
        QVERIFY(window.width() < 400);
    }

    void The_label_with_the_focus_looks_different() {
        for (const bool isLong : {false, true}) {
            Window window;
            window.Long.setText(QString(300, u'x'));
            QLabel& label = isLong ? window.Long : window.Value;
            const QImage without = label.grab().toImage();
            label.setFocus(Qt::TabFocusReason);
            QVERIFY(label.grab().toImage() != without);
            label.setSelection(0, 0); // the frame alone is seen too
            QVERIFY(label.grab().toImage() != without);
        }
    }

    void Escape_and_Enter_are_still_the_windows() {
        for (const auto key : {Qt::Key_Escape, Qt::Key_Return}) {
            Window window;
            window.Button.setDefault(true);
            connect(&window.Button, &QPushButton::clicked, &window, &QDialog::accept);
            window.Value.setFocus(Qt::TabFocusReason);
            QTest::keyClick(&window.Value, key);
            QVERIFY(!window.isVisible());
        }
    }

    void A_screen_reader_gets_the_text_of_a_label_with_a_name_of_its_own() {
        Window window;
        window.Value.setAccessibleName(QStringLiteral("Address"));
        window.Value.setFocus(Qt::TabFocusReason);
        QCOMPARE(window.Value.accessibleDescription(), window.Value.text());
    }
};
} // namespace mact

QTEST_MAIN(mact::copyable_label_test)
#include "copyable_label_test.moc"
