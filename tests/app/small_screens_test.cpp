#include "dialogs/program_style.h"
#include "dialogs/window_colours.h"
#include "platform/qt_prompts.h"
#include "tests/support/sample_shop.h"
#include "tests/support/window_rows.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

namespace mact {
namespace {

constexpr int LargePoints = 20;
constexpr int TitleBar = 24; // pixels

QString Place(const QWidget& control) {
    return control.metaObject()->className() + QStringLiteral(" ") + control.objectName();
}

QSize Room(const QWidget& window) {
    return window.screen()->availableSize() - QSize(0, TitleBar);
}

/// As the user would: with Tab or, if that does not lead to it, by scrolling.
void GoTo(QWidget& control) {
    if (control.isEnabled() && control.focusPolicy() & Qt::TabFocus) control.setFocus(Qt::TabFocusReason);
    QCoreApplication::processEvents();
    if (control.isEnabled() && control.focusPolicy() & Qt::TabFocus) return;
    for (QWidget* parent = control.parentWidget(); parent; parent = parent->parentWidget())
        if (auto* area = qobject_cast<QScrollArea*>(parent)) area->ensureWidgetVisible(&control, 0, 0);
    QCoreApplication::processEvents();
}

/// Or, of a box whose caption alone is wider than the window, as much as there is room for.
bool IsInView(const QAbstractButton& button) {
    const QRect seen = button.visibleRegion().boundingRect();
    if (seen == button.rect()) return true;
    for (const QWidget* parent = button.parentWidget(); parent; parent = parent->parentWidget()) {
        const auto* area = qobject_cast<const QScrollArea*>(parent);
        if (!area || area->viewport()->width() >= button.width()) continue;
        return button.isCheckable() && seen.left() == 0 && seen.height() == button.height() &&
               seen.width() >= area->viewport()->width() - 2;
    }
    return false;
}

/// The buttons of which a part is never on the screen.
QStringList OutOfReach(QWidget& window) {
    QStringList names;
    for (auto* button : window.findChildren<QAbstractButton*>()) {
        if (button->window() != &window || !button->isVisibleTo(&window)) continue;
        if (qobject_cast<QAbstractItemView*>(button->parentWidget())) continue; // a table's corner
        GoTo(*button);
        if (!IsInView(*button)) names << Place(*button);
    }
    return names;
}

void Ask(const std::string& text) {
    QtPrompts().Show({text, PromptKind::Question, PromptButtons::YesNoCancel});
}

void AskWithManyLines(AppContext&, QWidget*) {
    std::string text;
    for (int line = 1; line <= 60; ++line)
        text += "- Line " + std::to_string(line) + " of what is wrong with this form.\r\n";
    Ask(text);
}

void AskWithALongText(AppContext&, QWidget*) {
    std::string text;
    for (int word = 0; word < 600; ++word)
        text += "word" + std::to_string(word) + ' ';
    Ask(text);
}

void AskWithALongName(AppContext&, QWidget*) {
    Ask("Are you sure you want to delete " + std::string(300, 'W') + "? This can not be undone.");
}

/// All windows, and message boxes that say a lot.
const std::vector<WindowState>& States() {
    static const std::vector<WindowState> states = [] {
        const auto asItOpens = [](const QWidget&) {};
        std::vector<WindowState> all = AllWindows();
        all.push_back({"message_many_lines", AskWithManyLines, asItOpens});
        all.push_back({"message_long_text", AskWithALongText, asItOpens});
        all.push_back({"message_long_name", AskWithALongName, asItOpens});
        return all;
    }();
    return states;
}

} // namespace

/// Windows on screens that are small for them: with a font of 20 points, or with everything at 150 %.
class small_screens_test : public QObject {
    Q_OBJECT

    SampleShop m_shop;

    static void EachWindow() { AddRows(States()); }

    void InThisWindow(const std::function<void(QWidget&)>& act) {
        QFETCH(const int, row);
        m_shop.Restore();
        InWindow(States()[static_cast<std::size_t>(row)], m_shop.App, nullptr, act);
    }

private slots:
    void initTestCase() {
        QApplication::setStyle(new ProgramStyle);
        ShowWindowsIn(Colours::Light);
        if (qApp->devicePixelRatio() > 1) return;
        QFont large = QApplication::font();
        large.setPointSize(LargePoints);
        QApplication::setFont(large);
    }

    void Every_window_fits_on_the_screen_data() { EachWindow(); }
    void Every_window_fits_on_the_screen() {
        InThisWindow([](QWidget& window) {
            QCoreApplication::processEvents();
            const QSize room = Room(window);
            QVERIFY2(window.size().boundedTo(room) == window.size(),
                     qPrintable(QStringLiteral("%1x%2 in %3x%4, min %5x%6")
                                    .arg(window.width())
                                    .arg(window.height())
                                    .arg(room.width())
                                    .arg(room.height())
                                    .arg(window.minimumSizeHint().width())
                                    .arg(window.minimumSizeHint().height())));
        });
    }

    void Nothing_is_scrolled_that_has_room_data() { EachWindow(); }
    void Nothing_is_scrolled_that_has_room() {
        InThisWindow([](QWidget& window) {
            QCoreApplication::processEvents();
            const auto* area = window.findChild<QScrollArea*>(QStringLiteral("scroll_Window"));
            if (!area) return;
            const QScrollBar& across = *area->horizontalScrollBar();
            const int width = area->widget()->minimumSizeHint().width() + across.sizeHint().height();
            QVERIFY2(!across.isVisible() || width > Room(window).width(), qPrintable(QString::number(width)));
        });
    }

    void Every_button_can_be_reached_data() { EachWindow(); }
    void Every_button_can_be_reached() {
        InThisWindow([](QWidget& window) {
            QVERIFY(QTest::qWaitForWindowActive(&window));
            QCOMPARE(OutOfReach(window).join(QLatin1String(", ")), QString());
        });
    }
};
} // namespace mact

QTEST_MAIN(mact::small_screens_test)
#include "small_screens_test.moc"
