#include "dialogs/dialog_routines.h"
#include "dialogs/screen_fit.h"
#include "tests/support/gui.h"
#include "tests/support/test_program.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTest>

namespace mact {
namespace {

constexpr int FieldsThatFit = 3;
constexpr int FieldsBeyondTheScreen = 200;

/// Fields one below the other, and a row of buttons.
struct FormWindow : QDialog {
    QVBoxLayout* Rows = new QVBoxLayout(this);
    QHBoxLayout* Buttons = new QHBoxLayout;

    explicit FormWindow(int fields) {
        setObjectName(QStringLiteral("frmTest"));
        for (int index = 0; index < fields; ++index) {
            auto* field = new QLineEdit;
            field->setObjectName(QStringLiteral("txt_") + QString::number(index));
            Rows->addWidget(field);
        }
        Buttons->addStretch();
        AddButton("cmd_Save")->setDefault(true);
        AddButton("cmd_Cancel");
        Rows->addLayout(Buttons);
    }
    QPushButton* AddButton(const char* name) {
        auto* button = new QPushButton(QString::fromLatin1(name));
        button->setObjectName(QString::fromLatin1(name));
        button->setAutoDefault(false);
        Buttons->addWidget(button);
        return button;
    }
    QScrollArea* Area() const { return findChild<QScrollArea*>(); }
};

void Show(FormWindow& window, const std::function<void(FormWindow&)>& act) {
    TestProgram program;
    InNextModal<QDialog>([&](QDialog&) {
        QVERIFY(QTest::qWaitForWindowActive(&window));
        act(window);
    });
    ShowModally(program.App, window);
}

bool IsSeen(const QWidget& control) {
    return control.visibleRegion().boundingRect() == control.rect();
}

} // namespace

class screen_fit_test : public QObject {
    Q_OBJECT

private slots:
    void A_window_that_fits_is_left_as_it_is() {
        FormWindow window(FieldsThatFit);
        Show(window, [](FormWindow& shown) {
            QVERIFY(!shown.Area());
            QCOMPARE(shown.layout(), shown.Rows);
        });
    }

    void A_window_that_is_too_high_is_scrolled_and_its_buttons_stay_in_view() {
        FormWindow window(FieldsBeyondTheScreen);
        Show(window, [](FormWindow& shown) {
            QVERIFY(shown.Area());
            QVERIFY(shown.height() < shown.screen()->availableSize().height());
            QVERIFY(IsSeen(Named<QPushButton>(shown, "cmd_Save")));
            QVERIFY(IsSeen(Named<QPushButton>(shown, "cmd_Cancel")));
            QVERIFY(IsSeen(Named<QLineEdit>(shown, "txt_0")));
            QVERIFY(!IsSeen(Named<QLineEdit>(shown, "txt_199")));
        });
    }

    void What_gets_the_keyboard_focus_comes_into_view() {
        FormWindow window(FieldsBeyondTheScreen);
        Show(window, [](FormWindow& shown) {
            auto& last = Named<QLineEdit>(shown, "txt_199");
            last.setFocus(Qt::ShortcutFocusReason);
            QVERIFY(IsSeen(last));
            Named<QLineEdit>(shown, "txt_0").setFocus(Qt::TabFocusReason);
            QVERIFY(!IsSeen(last));
        });
    }

    void Tab_goes_through_a_scrolled_window_as_before() {
        FormWindow window(FieldsBeyondTheScreen);
        Show(window, [](FormWindow& shown) {
            for (int index = 0; index < FieldsBeyondTheScreen; ++index) {
                QCOMPARE(shown.focusWidget()->objectName(), QStringLiteral("txt_") + QString::number(index));
                QTest::keyClick(shown.focusWidget(), Qt::Key_Tab);
            }
            QCOMPARE(shown.focusWidget()->objectName(), QStringLiteral("cmd_Save"));
            QTest::keyClick(shown.focusWidget(), Qt::Key_Tab);
            QTest::keyClick(shown.focusWidget(), Qt::Key_Tab);
            QCOMPARE(shown.focusWidget()->objectName(), QStringLiteral("txt_0"));
        });
    }

    void The_field_that_was_to_have_the_focus_has_it() {
        FormWindow window(FieldsBeyondTheScreen);
        Named<QLineEdit>(window, "txt_2").setFocus();
        Show(window,
             [](FormWindow& shown) { QCOMPARE(shown.focusWidget()->objectName(), QStringLiteral("txt_2")); });
    }

    void Enter_in_a_scrolled_field_presses_the_default_button() {
        FormWindow window(FieldsBeyondTheScreen);
        int pressed = 0;
        connect(&Named<QPushButton>(window, "cmd_Save"), &QPushButton::clicked, &window, [&] { ++pressed; });
        Show(window, [&](FormWindow& shown) {
            QTest::keyClick(&Named<QLineEdit>(shown, "txt_5"), Qt::Key_Return);
            QCOMPARE(pressed, 1);
        });
    }

    void A_row_of_buttons_that_is_too_wide_goes_on_in_further_lines() {
        FormWindow window(FieldsThatFit);
        for (int index = 0; index < 40; ++index)
            window.AddButton("cmd_More");
        Show(window, [](FormWindow& shown) {
            QVERIFY(shown.width() <= shown.screen()->availableSize().width());
            int left = -1;
            int top = -1;
            for (const auto* button : shown.findChildren<QPushButton*>()) {
                QVERIFY(IsSeen(*button));
                QVERIFY(button->y() > top || (button->y() == top && button->x() > left)); // the order stays
                left = button->x();
                top = button->y();
            }
        });
    }

    void A_window_that_grows_too_high_while_it_is_open_is_scrolled_from_then_on() {
        FormWindow window(FieldsThatFit);
        auto* label = new QLabel(QStringLiteral("short"));
        window.Rows->insertWidget(0, label);
        Show(window, [label](FormWindow& shown) {
            QVERIFY(!shown.Area());
            Named<QLineEdit>(shown, "txt_1").setFocus();
            label->setText(QStringLiteral("line\n").repeated(200));
            QCoreApplication::processEvents();
            QVERIFY(shown.Area());
            QVERIFY(shown.height() < shown.screen()->availableSize().height());
            QVERIFY(IsSeen(Named<QPushButton>(shown, "cmd_Cancel")));
            QVERIFY(Named<QLineEdit>(shown, "txt_2").isVisible());
            QCOMPARE(shown.focusWidget()->objectName(), QStringLiteral("txt_1"));
        });
    }

    void A_hidden_control_stays_hidden() {
        FormWindow window(FieldsBeyondTheScreen);
        Named<QLineEdit>(window, "txt_1").hide();
        Show(window, [](FormWindow& shown) {
            QVERIFY(shown.Area());
            QVERIFY(!Named<QLineEdit>(shown, "txt_1").isVisible());
            QVERIFY(Named<QLineEdit>(shown, "txt_0").isVisible());
        });
    }

    void A_wrapped_text_that_is_too_high_makes_the_window_wider_first() {
        FormWindow window(FieldsThatFit);
        auto* label = new QLabel(QStringLiteral("word ").repeated(900));
        label->setWordWrap(true);
        window.Rows->insertWidget(0, label);
        window.resize(100, 100);
        Show(window, [label](FormWindow& shown) {
            QVERIFY(!shown.Area());
            QVERIFY(label->height() >= label->heightForWidth(label->width()));
            QVERIFY(shown.height() < shown.screen()->availableSize().height());
        });
    }
};
} // namespace mact

QTEST_MAIN(mact::screen_fit_test)
#include "screen_fit_test.moc"
