#include "platform/portal_colours.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace mact {
namespace {

const QString Service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString Object = QStringLiteral("/org/freedesktop/portal/desktop");
const QString Interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString Group = QStringLiteral("org.freedesktop.appearance");
const QString Key = QStringLiteral("color-scheme");

/// 0, and any number that is not known, means that the user has no preference.
std::optional<Colours> ColoursOfScheme(QVariant scheme) {
    while (scheme.userType() == qMetaTypeId<QDBusVariant>()) // "Read" wraps the value twice
        scheme = scheme.value<QDBusVariant>().variant();
    const uint number = scheme.toUInt();
    if (number == 1) return Colours::Dark;
    if (number == 2) return Colours::Light;
    return {};
}

} // namespace

PortalColours::PortalColours(const QDBusConnection& bus) : m_bus(bus) {
    m_bus.connect(Service, Object, Interface, QStringLiteral("SettingChanged"), this,
                  SLOT(HearSetting(QString, QString, QDBusVariant)));
    Ask(QStringLiteral("Read"));
}

void PortalColours::Ask(const QString& method) {
    QDBusMessage question = QDBusMessage::createMethodCall(Service, Object, Interface, method);
    question << Group << Key;
    auto* answer = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, method] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (!reply.isError())
            Hear(ColoursOfScheme(reply.value().variant()));
        else if (reply.error().type() == QDBusError::UnknownMethod && method == QLatin1String("Read"))
            Ask(QStringLiteral("ReadOne"));
    });
}

void PortalColours::HearSetting(const QString& group, const QString& key, const QDBusVariant& value) {
    if (group == Group && key == Key) Hear(ColoursOfScheme(value.variant()));
}
} // namespace mact
