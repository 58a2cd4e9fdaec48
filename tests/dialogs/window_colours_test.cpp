#include "dialogs/program_style.h"
#include "dialogs/window_colours.h"
#include "overview/state_colours.h"
#include "tests/support/contrast.h"

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QToolTip>

namespace mact {
namespace {

struct Pair {
    QPalette::ColorRole Text;
    QPalette::ColorRole Behind;
};
constexpr Pair Pairs[] = {
    {QPalette::WindowText,      QPalette::Window       },
    {QPalette::WindowText,      QPalette::Base         },
    {QPalette::Text,            QPalette::Base         },
    {QPalette::Text,            QPalette::AlternateBase},
    {QPalette::Text,            QPalette::Window       },
    {QPalette::PlaceholderText, QPalette::Base         },
    {QPalette::PlaceholderText, QPalette::AlternateBase},
    {QPalette::PlaceholderText, QPalette::Window       },
    {QPalette::ButtonText,      QPalette::Button       },
    {QPalette::BrightText,      QPalette::Window       },
    {QPalette::HighlightedText, QPalette::Highlight    },
    {QPalette::Link,            QPalette::Window       },
    {QPalette::Link,            QPalette::Base         },
    {QPalette::LinkVisited,     QPalette::Base         },
    {QPalette::ToolTipText,     QPalette::ToolTipBase  },
};
constexpr QPalette::ColorGroup Groups[] = {QPalette::Active, QPalette::Inactive, QPalette::Disabled};

void EachPalette() {
    QTest::addColumn<bool>("isDark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

Colours ColoursOfRow() {
    QFETCH(const bool, isDark);
    return isDark ? Colours::Dark : Colours::Light;
}

} // namespace

class window_colours_test : public QObject {
    Q_OBJECT

private slots:
    void Every_role_has_a_colour_data() { EachPalette(); }
    void Every_role_has_a_colour() {
        const QPalette palette = PaletteOf(ColoursOfRow());
        for (const QPalette::ColorGroup group : Groups)
            for (int role = 0; role < QPalette::NColorRoles; ++role) {
                if (role == QPalette::NoRole) continue;
                QVERIFY2(palette.isBrushSet(group, static_cast<QPalette::ColorRole>(role)),
                         qPrintable(QString::number(role)));
            }
    }

    void Text_is_legible_in_every_state_of_a_window_data() { EachPalette(); }
    void Text_is_legible_in_every_state_of_a_window() {
        const QPalette palette = PaletteOf(ColoursOfRow());
        for (const QPalette::ColorGroup group : Groups)
            for (const Pair& pair : Pairs) {
                const double ratio =
                    ContrastOf(palette.color(group, pair.Text), palette.color(group, pair.Behind));
                QVERIFY2(ratio >= (group == QPalette::Disabled ? 3 : 4.5),
                         qPrintable(QStringLiteral("group %1, role %2 on %3: %4")
                                        .arg(group)
                                        .arg(pair.Text)
                                        .arg(pair.Behind)
                                        .arg(ratio)));
            }
    }

    void A_selected_line_stands_out_data() { EachPalette(); }
    void A_selected_line_stands_out() {
        const QPalette palette = PaletteOf(ColoursOfRow());
        QVERIFY(ContrastOf(palette.color(QPalette::Highlight), palette.color(QPalette::Base)) >= 3);
    }

    void States_and_figures_are_legible_data() { EachPalette(); }
    void States_and_figures_are_legible() {
        const QPalette palette = PaletteOf(ColoursOfRow());
        const QColor base = palette.color(QPalette::Base);
        for (const QColor& behind : {base, palette.color(QPalette::Window)})
            for (const State state : {State::Within, State::Over, State::Differs, State::TooEarly})
                for (const bool isNarrow : {false, true})
                    QVERIFY(ContrastOf(ColourOf(state, isNarrow, palette), behind) >= 4.5);
        QVERIFY(ContrastOf(FigureColour(palette), base) >= 3); // lines and bars
    }

    void Dark_is_darker_than_its_text_and_light_is_lighter() {
        const auto isDark = [](const QPalette& palette) {
            return palette.color(QPalette::Window).lightness() <
                   palette.color(QPalette::WindowText).lightness();
        };
        QVERIFY(isDark(PaletteOf(Colours::Dark)));
        QVERIFY(!isDark(PaletteOf(Colours::Light)));
    }

    void Open_windows_and_tool_tips_change_their_colours() {
        QLabel label(QStringLiteral("text"));
        label.show();
        for (const Colours colours : {Colours::Dark, Colours::Light}) {
            ShowWindowsIn(colours);
            QCoreApplication::processEvents(); // delivers the change
            const QPalette expected = PaletteOf(colours);
            QCOMPARE(label.palette().color(QPalette::Window), expected.color(QPalette::Window));
            QCOMPARE(label.grab().toImage().pixelColor(0, 0), expected.color(QPalette::Window));
            QToolTip::showText(QPoint(0, 0), QStringLiteral("tip"), &label);
            const QWidget* tip = nullptr;
            for (const QWidget* widget : QApplication::topLevelWidgets())
                if (widget->inherits("QTipLabel")) tip = widget;
            QVERIFY(tip);
            QCOMPARE(tip->palette().color(QPalette::ToolTipBase), expected.color(QPalette::ToolTipBase));
            QCOMPARE(tip->palette().color(QPalette::ToolTipText), expected.color(QPalette::ToolTipText));
        }
    }
};
} // namespace mact

QTEST_MAIN(mact::window_colours_test)
#include "window_colours_test.moc"
