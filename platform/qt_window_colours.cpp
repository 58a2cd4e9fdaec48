#include "platform/qt_window_colours.h"

#include "base/settings.h"

namespace mact {

QtWindowColours::QtWindowColours(SettingsStore& settings, DesktopColours& desktop)
    : m_settings(settings), m_desktop(desktop) {
    QObject::connect(&desktop, &DesktopColours::Changed, &m_listener, [this] { ShowWindowsIn(Wanted()); });
    QtWindowColours::FollowSetting();
}

void QtWindowColours::FollowSetting() {
    m_setting = m_settings.Read(Settings::Looks, Settings::WindowColours);
    ShowWindowsIn(Wanted());
}

Colours QtWindowColours::Wanted() const {
    if (m_setting == Settings::Light) return Colours::Light;
    if (m_setting == Settings::Dark) return Colours::Dark;
    return m_desktop.Asked().value_or(Colours::Light);
}
} // namespace mact
