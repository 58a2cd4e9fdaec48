#include "dialogs/program_style.h"
#include "tests/support/sample_shop.h"
#include "tests/support/window_rows.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>

#include <algorithm>

namespace mact {
namespace {

bool IsLast(const QPushButton& button) {
    const QString name = button.objectName();
    return name == QLatin1String("cmd_Cancel") || name == QLatin1String("cmd_Close") ||
           name == QLatin1String("cmd_Exit");
}

/// Ends the window with what is in it.
bool IsMainAction(const QPushButton& button) {
    const QString name = button.objectName();
    return name == QLatin1String("cmd_Save") || name == QLatin1String("cmd_OK") ||
           name == QLatin1String("cmd_Import") || name == QLatin1String("cmd_Export") ||
           name == QLatin1String("cmd_Restore");
}

QRect OnScreen(const QWidget& control) {
    return {control.mapToGlobal(QPoint(0, 0)), control.size()};
}

bool IsInRowOf(const QPushButton& one, const QPushButton& other) {
    const int middle = OnScreen(one).center().y();
    return middle > OnScreen(other).top() && middle < OnScreen(other).bottom();
}

/// The buttons beside this one, itself included, from left to right.
std::vector<QPushButton*> RowOf(const QWidget& window, const QPushButton& button) {
    std::vector<QPushButton*> row;
    for (auto* other : window.findChildren<QPushButton*>())
        if (other->isVisibleTo(&window) && other->window() == &window && IsInRowOf(*other, button))
            row.push_back(other);
    std::ranges::sort(row, {}, [](const QPushButton* one) { return OnScreen(*one).left(); });
    return row;
}

/// Of the buttons of a column, such as that beside a list.
bool IsBelow(const QPushButton& one, const QPushButton& other) {
    return one.parentWidget() == other.parentWidget() && OnScreen(one).left() < OnScreen(other).right() &&
           OnScreen(one).right() > OnScreen(other).left() && OnScreen(one).top() > OnScreen(other).bottom();
}

QString NamesOf(const std::vector<QPushButton*>& buttons) {
    QStringList names;
    for (const QPushButton* button : buttons)
        names << button->objectName();
    return names.join(u' ');
}

} // namespace

/// The order of buttons that all windows have: what leads elsewhere, what ends the window, Cancel or Close.
class button_order_test : public QObject {
    Q_OBJECT

    SampleShop m_shop;

    static void EachWindow() { AddRows(AllWindows()); }

    void InThisWindow(const std::function<void(QWidget&)>& act) {
        QFETCH(const int, row);
        m_shop.Restore();
        InWindow(AllWindows()[static_cast<std::size_t>(row)], m_shop.App, nullptr, act);
    }

private slots:
    void initTestCase() { QApplication::setStyle(new ProgramStyle); }

    void Cancel_or_Close_is_the_last_of_its_row_and_column_data() { EachWindow(); }
    void Cancel_or_Close_is_the_last_of_its_row_and_column() {
        InThisWindow([](QWidget& window) {
            for (const auto* button : window.findChildren<QPushButton*>()) {
                if (!IsLast(*button) || button->window() != &window) continue;
                const std::vector<QPushButton*> row = RowOf(window, *button);
                QVERIFY2(row.back() == button, qPrintable(NamesOf(row)));
                for (const auto* other : window.findChildren<QPushButton*>())
                    QVERIFY2(!IsBelow(*other, *button), qPrintable(other->objectName()));
            }
        });
    }

    void What_ends_the_window_stands_before_Cancel_or_Close_data() { EachWindow(); }
    void What_ends_the_window_stands_before_Cancel_or_Close() {
        InThisWindow([](QWidget& window) {
            for (const auto* button : window.findChildren<QPushButton*>()) {
                if (!IsLast(*button) || button->window() != &window) continue;
                const std::vector<QPushButton*> row = RowOf(window, *button);
                const auto main = std::ranges::find_if(
                    row.rbegin(), row.rend(), [](const QPushButton* one) { return IsMainAction(*one); });
                if (main == row.rend() || row.size() < 2) continue;
                QVERIFY2(row[row.size() - 2] == *main, qPrintable(NamesOf(row)));
            }
        });
    }

    void Tab_goes_through_a_row_of_buttons_from_left_to_right_data() { EachWindow(); }
    void Tab_goes_through_a_row_of_buttons_from_left_to_right() {
        InThisWindow([](QWidget& window) {
            const QPushButton* last = nullptr;
            for (QWidget* next = window.nextInFocusChain(); next != &window;
                 next = next->nextInFocusChain()) {
                const auto* button = qobject_cast<QPushButton*>(next);
                if (!button || !button->isVisibleTo(&window)) continue;
                const bool isSameRow =
                    last && last->parentWidget() == button->parentWidget() && IsInRowOf(*last, *button);
                QVERIFY2(!isSameRow || OnScreen(*last).left() < OnScreen(*button).left(),
                         qPrintable(button->objectName()));
                last = button;
            }
        });
    }
};
} // namespace mact

QTEST_MAIN(mact::button_order_test)
#include "button_order_test.moc"
