#pragma once

#include "base/services.h"
#include "platform/desktop_colours.h"

#include <QObject>

namespace mact {

/// Shows the windows as the user has set or, without that, as the desktop asks, also when it changes its mind
/// while the program runs. They are light until it has answered, and if it never does.
class QtWindowColours : public WindowColours {
public:
    QtWindowColours(SettingsStore& settings, DesktopColours& desktop);
    void FollowSetting() override;

private:
    Colours Wanted() const;

    SettingsStore& m_settings;
    DesktopColours& m_desktop;
    std::string m_setting;
    QObject m_listener; ///< ends the connection with the desktop
};
} // namespace mact
