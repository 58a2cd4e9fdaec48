#include "platform/desktop_colours.h"

#include <QVariant>

#ifdef Q_OS_WIN
#include <QSettings>
#elif defined(MACT_DBUS)
#include "platform/portal_colours.h"

#include <QDBusConnection>
#include <QFileInfo>
#endif

namespace mact {
namespace {

#if defined(MACT_DBUS) && !defined(Q_OS_WIN)

/// Without one, the library would start a bus, which takes its time and knows no portal.
bool IsThereABus() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

#endif

} // namespace

void DesktopColours::Hear(std::optional<Colours> colours) {
    if (colours == m_asked) return;
    m_asked = colours;
    emit Changed();
}

std::optional<Colours> ColoursOfTheme(const QVariant& appsUseLightTheme) {
    bool isNumber = false;
    const int value = appsUseLightTheme.toInt(&isNumber);
    if (!isNumber) return {};
    return value == 0 ? Colours::Dark : Colours::Light;
}

std::unique_ptr<DesktopColours> AskDesktop() {
#if defined(Q_OS_WIN)
    auto colours = std::make_unique<DesktopColours>();
    const QSettings theme(
        QStringLiteral(
            "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize"),
        QSettings::NativeFormat);
    colours->Hear(ColoursOfTheme(theme.value(QStringLiteral("AppsUseLightTheme"))));
    return colours;
#elif defined(MACT_DBUS)
    if (IsThereABus()) return std::make_unique<PortalColours>(QDBusConnection::sessionBus());
    return std::make_unique<DesktopColours>();
#else
    return std::make_unique<DesktopColours>();
#endif
}
} // namespace mact
