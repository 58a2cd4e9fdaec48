#include "dialogs/window_colours.h"
#include "platform/qt_window_colours.h"
#include "tests/support/scripted_services.h"

#include <QApplication>
#include <QTest>

namespace mact {
namespace {

bool IsDark() {
    return QApplication::palette().color(QPalette::Window) ==
           PaletteOf(Colours::Dark).color(QPalette::Window);
}

} // namespace

class window_colours_setting_test : public QObject {
    Q_OBJECT

    ScriptedSettings m_settings;

    void Set(const char* colours) { m_settings.Values[{"LOOKS", "COLORS"}] = colours; }

private slots:
    void init() { m_settings.Values.clear(); }

    void Windows_are_light_until_the_desktop_has_answered() {
        DesktopColours desktop;
        const QtWindowColours colours(m_settings, desktop);
        QVERIFY(!IsDark());
    }

    void Without_a_setting_they_follow_the_desktop() {
        DesktopColours desktop;
        const QtWindowColours colours(m_settings, desktop);
        desktop.Hear(Colours::Dark);
        QVERIFY(IsDark());
        desktop.Hear(Colours::Light);
        QVERIFY(!IsDark());
        desktop.Hear(Colours::Dark);
        desktop.Hear({}); // has no preference any more
        QVERIFY(!IsDark());
    }

    void What_the_desktop_said_before_counts() {
        DesktopColours desktop;
        desktop.Hear(Colours::Dark);
        const QtWindowColours colours(m_settings, desktop);
        QVERIFY(IsDark());
    }

    void A_setting_counts_more_than_the_desktop() {
        DesktopColours desktop;
        desktop.Hear(Colours::Dark);
        Set("light");
        const QtWindowColours colours(m_settings, desktop);
        QVERIFY(!IsDark());
        desktop.Hear(Colours::Light);
        desktop.Hear(Colours::Dark);
        QVERIFY(!IsDark());
    }

    void A_setting_that_is_changed_is_followed_at_once() {
        DesktopColours desktop;
        QtWindowColours colours(m_settings, desktop);
        Set("dark");
        QVERIFY(!IsDark());
        colours.FollowSetting();
        QVERIFY(IsDark());
        Set("");
        colours.FollowSetting();
        QVERIFY(!IsDark());
    }

    void A_setting_that_is_not_known_means_the_desktop() {
        DesktopColours desktop;
        desktop.Hear(Colours::Dark);
        Set("DARKISH");
        const QtWindowColours colours(m_settings, desktop);
        QVERIFY(IsDark());
    }

    void A_setting_that_cannot_be_read_means_the_desktop() {
        ScriptedSettings settings;
        settings.FailsToReadWith = Failure{.Doing = "read the settings"};
        DesktopColours desktop;
        desktop.Hear(Colours::Dark);
        const QtWindowColours colours(settings, desktop);
        QVERIFY(IsDark());
    }

    void The_registry_says_whether_programs_are_to_be_light() {
        QCOMPARE(ColoursOfTheme(0), Colours::Dark);
        QCOMPARE(ColoursOfTheme(1), Colours::Light);
        QVERIFY(!ColoursOfTheme(QVariant())); // before Windows 10
        QVERIFY(!ColoursOfTheme(QStringLiteral("x")));
    }
};
} // namespace mact

QTEST_MAIN(mact::window_colours_setting_test)
#include "window_colours_setting_test.moc"
