#include "platform/qt_settings.h"

#include "base/settings.h"
#include "base/text.h"

#include <QDir>
#include <QSettings>
#include <QStringList>
#include <QVariant>

namespace mact {
namespace {

QString ToQt(std::string_view utf8Text) {
    return QString::fromUtf8(utf8Text.data(), static_cast<qsizetype>(utf8Text.size()));
}

/// The user's own settings; those that an administrator made for all users do not show through.
class UserSettings : public QSettings {
public:
    UserSettings() : QSettings(NativeFormat, UserScope, QStringLiteral("MACT"), ToQt(Settings::Application)) {
        setFallbacksEnabled(false);
    }
};

QString KeyText(std::string_view section, std::string_view key) {
    return ToQt(section) + u'/' + ToQt(key);
}

} // namespace

std::string QtSettings::Read(std::string_view section, std::string_view key) {
    const UserSettings settings; // made anew: another running copy may have written
    const QVariant value = settings.value(KeyText(section, key));
    // Qt reads a value with an unquoted comma, from a file edited by hand, as a list.
    if (value.typeId() == QMetaType::QStringList) return value.toStringList().join(u',').toStdString();
    return value.toString().toStdString();
}

Done QtSettings::Write(std::string_view section, std::string_view key, std::string_view value) {
    UserSettings settings;
    settings.setValue(KeyText(section, key), ToQt(value));
    settings.sync();
    if (settings.status() == QSettings::NoError) return Success();
    const std::string reason =
        settings.status() == QSettings::AccessError ? "it cannot be written" : "it is not a settings file";
    return Failure{"save the setting " + KeyText(section, key).toStdString() + " in",
                   PathFromUtf8(QDir::toNativeSeparators(settings.fileName()).toStdString()), reason};
}
} // namespace mact
