#include "dialogs/program_style.h"
#include "dialogs/window_colours.h"
#include "tests/support/all_windows.h"
#include "tests/support/contrast.h"
#include "tests/support/sample_shop.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QStyleOptionButton>
#include <QTest>

namespace mact {
namespace {

constexpr double LeastForText = 4.5;
constexpr double LeastForDisabledText = 3;
constexpr double LeastForOutline = 3;

QString Place(const QWidget& control) {
    return control.metaObject()->className() + QStringLiteral(" ") + control.objectName();
}

QString Fault(const QWidget& control, const QString& text, const QColor& colour, const QColor& behind,
              double ratio) {
    return QStringLiteral("%1 \"%2\": %3 on %4 is %5")
        .arg(Place(control), text, colour.name(), behind.name(), QString::number(ratio, 'f', 2));
}

/// The texts that are hard to read.
QStringList FaintTexts(QWidget& window) {
    QStringList faults;
    const PaintedWindow painted = PaintApart(window);
    if (painted.Texts.empty()) faults << QStringLiteral("no text at all");
    for (const PaintedText& text : painted.Texts) {
        const QWidget* under = window.childAt(text.Place.center());
        const QWidget& control = under ? *under : window;
        const double ratio = ContrastOf(text, painted.Background);
        const bool isEnough = ratio >= (control.isEnabled() ? LeastForText : LeastForDisabledText);
        if (!isEnough)
            faults << Fault(control, text.Text, text.Colour,
                            painted.Background.pixelColor(text.Place.topLeft()), ratio);
    }
    faults.removeDuplicates();
    return faults;
}

/// Where a box or a button that can be ticked is drawn, in its own coordinates.
QRect IndicatorOf(const QAbstractButton& button) {
    QStyleOptionButton option;
    option.initFrom(&button);
    option.text = button.text();
    return button.style()->subElementRect(qobject_cast<const QCheckBox*>(&button)
                                              ? QStyle::SE_CheckBoxIndicator
                                              : QStyle::SE_RadioButtonIndicator,
                                          &option, &button);
}

/// Along the middle of the unticked box: the colour that stands out most from what is outside.
QString FaintOutline(QWidget& window, QAbstractButton& button) {
    const QSignalBlocker silent(button);
    button.setAutoExclusive(false);
    button.setChecked(false);
    const QImage picture = window.grab().toImage();
    const QRect box = IndicatorOf(button).translated(button.mapTo(&window, QPoint(0, 0)));
    const auto colourAt = [&](int x) { return picture.pixelColor(x, box.center().y()); };
    const QColor outside = colourAt(std::max(box.left() - 2, 0));
    const QColor inside = colourAt(box.center().x());
    double best = 1;
    QColor outline = outside;
    for (int x = box.left(); x < box.left() + 4; ++x) {
        const double ratio = std::min(ContrastOf(colourAt(x), outside), ContrastOf(colourAt(x), inside));
        if (ratio <= best) continue;
        best = ratio;
        outline = colourAt(x);
    }
    return best >= LeastForOutline ? QString() : Fault(button, button.text(), outline, outside, best);
}

} // namespace

/// Whether all windows are legible in the program's own colours.
class contrast_test : public QObject {
    Q_OBJECT

    SampleShop m_shop;

    static void EachWindow() {
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("isDark");
        for (std::size_t row = 0; row < AllWindows().size(); ++row)
            for (const bool isDark : {false, true})
                QTest::newRow(qPrintable(QLatin1String(AllWindows()[row].Name) +
                                         QLatin1String(isDark ? " dark" : " light")))
                    << static_cast<int>(row) << isDark;
    }

    void InThisWindow(const std::function<void(QWidget&)>& act) {
        QFETCH(const int, row);
        QFETCH(const bool, isDark);
        ShowWindowsIn(isDark ? Colours::Dark : Colours::Light);
        m_shop.Restore();
        InWindow(AllWindows()[static_cast<std::size_t>(row)], m_shop.App, nullptr, act);
    }

private slots:
    void initTestCase() { QApplication::setStyle(new ProgramStyle); }

    void Black_on_white_has_the_most_contrast() {
        QCOMPARE(ContrastOf(Qt::black, Qt::white), 21.0);
        QCOMPARE(ContrastOf(Qt::white, Qt::black), 21.0);
        QCOMPARE(ContrastOf(Qt::red, Qt::red), 1.0);
        // 0x77 is 0.4667 of 1: ((0.4667 + 0.055) / 1.055) ^ 2.4 = 0.1845, and 1.05 / 0.2345 = 4.48.
        QVERIFY(qAbs(ContrastOf(QColor("#777777"), Qt::white) - 4.48) < 0.005);
    }

    void Text_is_legible_data() { EachWindow(); }
    void Text_is_legible() {
        InThisWindow([](QWidget& window) { QCOMPARE(FaintTexts(window).join(u'\n'), QString()); });
    }

    void An_open_window_stays_legible_when_the_colours_change_data() { EachWindow(); }
    void An_open_window_stays_legible_when_the_colours_change() {
        QFETCH(const bool, isDark);
        InThisWindow([isDark](QWidget& window) {
            ShowWindowsIn(isDark ? Colours::Light : Colours::Dark);
            QCoreApplication::processEvents(); // delivers the change
            QCOMPARE(FaintTexts(window).join(u'\n'), QString());
        });
    }

    void An_unticked_box_can_be_seen_data() { EachWindow(); }
    void An_unticked_box_can_be_seen() {
        InThisWindow([](QWidget& window) {
            QStringList faults;
            for (auto* button : window.findChildren<QAbstractButton*>()) {
                if (!button->isVisibleTo(&window)) continue;
                if (!qobject_cast<QCheckBox*>(button) && !qobject_cast<QRadioButton*>(button)) continue;
                faults << FaintOutline(window, *button);
            }
            faults.removeAll(QString());
            QCOMPARE(faults.join(u'\n'), QString());
        });
    }
};
} // namespace mact

QTEST_MAIN(mact::contrast_test)
#include "contrast_test.moc"
