#pragma once

#include "platform/desktop_colours.h"

#include <QDBusConnection>
#include <QDBusVariant>

namespace mact {

/// What the desktop portal says of the colours (org.freedesktop.portal.Settings, "color-scheme"), now and
/// whenever that changes. Nothing waits for the portal, which may be slow to start or may not be there.
class PortalColours : public DesktopColours {
    Q_OBJECT

public:
    explicit PortalColours(const QDBusConnection& bus);

private slots:
    void HearSetting(const QString& group, const QString& key, const QDBusVariant& value);

private:
    /// `ReadOne` is what newer portals have in the place of `Read`.
    void Ask(const QString& method);

    QDBusConnection m_bus;
};
} // namespace mact
